// The widget of the parameter writer.
#pragma once

#include "tools/frm_write_parameters.h"
#include "ui/tool_dialog.h"

class QLayout;
class QLineEdit;

namespace tarnlink {

class TextMonitor;

class WriteParametersDialog final : public ToolDialog {
 public:
  // Shows `form`, which outlives it, while that is visible. Closing it in the middle of a write
  // asks.
  WriteParametersDialog(frmWriteParameters& form, SettingsStore& settings, QWidget* parent);
  ~WriteParametersDialog() override;

  void done(int result) override;

 protected:
  void FormChanged() override;

 private:
  QLayout* BuildFile();
  QLayout* BuildSlave();
  QWidget* BuildMonitor();
  QLayout* BuildFoot();

  frmWriteParameters& form_;
  QPushButton* browse_ = nullptr;
  QLineEdit* slave_ = nullptr;
  TextMonitor* monitor_ = nullptr;
};

}  // namespace tarnlink
