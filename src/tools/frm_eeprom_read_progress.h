// The small window of an EEPROM that is being read: how far it is, and a way to stop it.
#pragma once

#include "common/dialog_controls.h"

namespace tarnlink {

class frm_EEPROMRead_Progress {
 public:
  frm_EEPROMRead_Progress() { form.Visible = false; }

  Control form{"frm_EEPROMRead_Progress"};
  Label caption{"frm_EEPROMRead_Progress.Caption", "EEPROM Reading in progress"};
  CountBar ProgressBar1{"ProgressBar1"};
  Label lblItem{"lblItem"};        // the address in work, and what is left
  Label lblTrouble{"lblTrouble"};  // how often it had to be sent again, and why
  CommandButton Cancel{"Cancel", "Cancel"};
};

}  // namespace tarnlink
