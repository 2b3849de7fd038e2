// The widget of the slave scan.
#pragma once

#include "tools/frm_scan_slaves.h"
#include "ui/tool_dialog.h"

class QLayout;
class QPushButton;

namespace tarnlink {

class ScanSlavesDialog final : public ToolDialog {
 public:
  // Shows `form`, which outlives it, while that is visible. Closing it ends the walk.
  ScanSlavesDialog(frm_ScanSlaves& form, SettingsStore& settings, QWidget* parent);
  ~ScanSlavesDialog() override;

  void done(int result) override;

 private:
  QWidget* BuildTable();
  QLayout* BuildFoot();
  QPushButton* Button(CommandButton& control);

  frm_ScanSlaves& form_;
};

}  // namespace tarnlink
