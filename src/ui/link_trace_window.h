// The window of the line's trace. Not modal: it stays open beside everything else.
#pragma once

#include <QAbstractTableModel>

#include "platform/settings_store.h"
#include "tools/frm_link_trace.h"
#include "ui/tool_dialog.h"

class QTableView;

namespace tarnlink {

// The rows of a trace for a view of Qt's.
class TraceModel final : public QAbstractTableModel {
 public:
  // `rows` outlives it.
  TraceModel(TraceRows& rows, QObject* parent);
  ~TraceModel() override;

  int rowCount(const QModelIndex& parent) const override;
  int columnCount(const QModelIndex& parent) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  TraceRows& rows_;
};

class LinkTraceWindow final : public ToolDialog {
 public:
  // Both outlive it.
  LinkTraceWindow(frm_LinkTrace& form, SettingsStore& settings, QWidget* parent);
  ~LinkTraceWindow() override;

  void done(int result) override;
  QSize sizeHint() const override;

 private:
  void BuildTable();
  QLayout* BuildFoot();
  // Who looks at the end goes on looking at it.
  void FollowEnd();

  frm_LinkTrace& form_;
  QTableView* table_ = nullptr;
  bool is_at_end_ = true;
};

}  // namespace tarnlink
