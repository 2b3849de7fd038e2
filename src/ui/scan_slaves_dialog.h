// The widget of the slave scan.
#pragma once

#include "tools/frm_scan_slaves.h"
#include "ui/tool_dialog.h"

class QLayout;

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

  frm_ScanSlaves& form_;
};

}  // namespace tarnlink
