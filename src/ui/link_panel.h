// The panel below the status bar that tells how the line is.
#pragma once

#include <QWidget>

#include "tools/frm_link_health.h"

class QTableWidget;

namespace tarnlink {

class LinkPanel final : public QWidget {
 public:
  // Shown while `form` is visible; `form` outlives it.
  explicit LinkPanel(frm_LinkHealth& form, QWidget* parent = nullptr);
  ~LinkPanel() override;

 private:
  QTableWidget* Table(Label& headings, ListBox& rows, const QString& name);
  void ShowForm();

  frm_LinkHealth& form_;
};

}  // namespace tarnlink
