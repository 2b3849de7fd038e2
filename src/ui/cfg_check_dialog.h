// The widget of the configuration check.
#pragma once

#include "tools/frm_cfg_check.h"
#include "ui/tool_dialog.h"

class QLayout;
class QTableWidget;
class QTableWidgetItem;

namespace tarnlink {

class CfgCheckDialog final : public ToolDialog {
 public:
  // Shows `form`, which outlives it, while that is visible. Closing it in the middle of a check
  // asks.
  CfgCheckDialog(frm_CfgCheck& form, SettingsStore& settings, QWidget* parent);
  ~CfgCheckDialog() override;

  void done(int result) override;
  QSize sizeHint() const override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QLayout* BuildHead();
  void BuildTable();
  QLayout* BuildProgress();
  QLayout* BuildFoot();
  void ShowList();
  void ShowRow(int row, const QStringList& cells);
  void FollowWork();
  void FitDescription();
  void MakeRoom(const QTableWidgetItem& item);

  frm_CfgCheck& form_;
  QTableWidget* table_ = nullptr;
  int in_work_ = -1;  // the row that is marked
};

}  // namespace tarnlink
