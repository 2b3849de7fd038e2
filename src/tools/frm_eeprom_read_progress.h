// The small window of an EEPROM that is being read: how far it is, and a way to stop it.
#pragma once

#include "common/controls.h"
#include "tools/run_bar.h"

namespace tarnlink {

class frm_EEPROMRead_Progress {
 public:
  frm_EEPROMRead_Progress() { form.Visible = false; }

  Control form{"frm_EEPROMRead_Progress"};
  Label caption{"frm_EEPROMRead_Progress.Caption", "EEPROM Reading in progress"};
  RunBar ProgressBar1{"ProgressBar1"};
  Label lblItem{"lblItem"};  // the address in work, and what is left
  CommandButton Cancel{"Cancel", "Cancel"};
};

}  // namespace tarnlink
