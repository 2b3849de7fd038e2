// The widgets of the EEPROM downloader: its form, and the small window of an EEPROM that is being
// read.
#pragma once

#include "tools/frm_eeprom_down.h"
#include "ui/tool_dialog.h"

class QLayout;

namespace tarnlink {

class EepromReadDialog final : public ToolDialog {
 public:
  // Shows `form`, which outlives it, while that is visible. Closing it ends the reading.
  EepromReadDialog(frm_EEPROMRead_Progress& form, SettingsStore& settings, QWidget* parent);

  void done(int result) override;

 private:
  frm_EEPROMRead_Progress& form_;
};

class EepromDownDialog final : public ToolDialog {
 public:
  // Shows `form`, which outlives it, while that is visible. Closing it ends the reading.
  EepromDownDialog(frm_EEPROM_Down& form, SettingsStore& settings, QWidget* parent);

  void done(int result) override;

 protected:
  // A click into the box of the file asks for its name.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget* BuildSlave();
  QWidget* BuildDevice();
  QWidget* BuildSize();
  QWidget* BuildFile();
  QLayout* BuildFoot();

  frm_EEPROM_Down& form_;
};

}  // namespace tarnlink
