// The tools for files put together with their windows: parameters, EEPROM images, the configuration
// check and the pressure conversion.
#pragma once

#include <QWidget>
#include <memory>

#include "tools/frm_cfg_check.h"
#include "tools/frm_eeprom.h"
#include "tools/frm_eeprom_down.h"
#include "tools/frm_wp_conversion.h"
#include "tools/frm_write_parameters.h"
#include "ui/cfg_check_dialog.h"
#include "ui/eeprom_dialog.h"
#include "ui/eeprom_down_dialog.h"
#include "ui/wp_conversion_dialog.h"
#include "ui/write_parameters_dialog.h"

namespace tarnlink {

class FileTools {
 public:
  // `host` and `parent`, the window that they open over, outlive it.
  FileTools(ToolHost& host, QWidget* parent);

  frmWriteParameters parameters;
  frm_EEPROM eeprom;
  frm_EEPROM_Down eeprom_down;
  frm_CfgCheck cfg_check;
  frmWPconversion wp_conversion;

 private:
  std::unique_ptr<WriteParametersDialog> parameters_dialog_;
  std::unique_ptr<EepromDialog> eeprom_dialog_;
  std::unique_ptr<EepromDownDialog> eeprom_down_dialog_;
  std::unique_ptr<CfgCheckDialog> cfg_check_dialog_;
  std::unique_ptr<WpConversionDialog> wp_conversion_dialog_;
};

}  // namespace tarnlink
