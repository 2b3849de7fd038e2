// The widget of the EEPROM writer.
#pragma once

#include "tools/frm_eeprom.h"
#include "ui/tool_dialog.h"

class QLayout;
class QListWidget;

namespace tarnlink {

class EepromDialog final : public ToolDialog {
 public:
  // Shows `form`, which outlives it, while that is visible. Closing it in the middle of a write
  // asks.
  EepromDialog(frm_EEPROM& form, SettingsStore& settings, QWidget* parent);
  ~EepromDialog() override;

  void done(int result) override;

 protected:
  void FormChanged() override;

 private:
  QWidget* BuildSource();
  QWidget* BuildOutput();
  QWidget* BuildSlave();
  QWidget* BuildRun();
  QWidget* BuildResults();
  QWidget* BuildMap();
  QLayout* BuildFoot();
  // Only what is new is added; who looks at the last row goes on doing so.
  void ShowResults();

  frm_EEPROM& form_;
  QPushButton* browse_ = nullptr;
  QListWidget* results_ = nullptr;
};

}  // namespace tarnlink
