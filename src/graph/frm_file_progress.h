// The small window of a file that takes long: how far it is, and a way to stop it.
#pragma once

#include <string>

#include "common/controls.h"

namespace tarnlink {

class ProgressBar : public Control {
 public:
  using Control::Control;

  Property<int> Value{this, 0};  // percent
};

class frmFileProgress {
 public:
  frmFileProgress() { form.Visible = false; }

  Control form{"frmFileProgress"};
  Label caption{"frmFileProgress.Caption"};
  Label lblFile{"lblFile"};  // its name, with its path
  ProgressBar prgShare{"prgShare"};
  CommandButton cmdCancel{"cmdCancel", "Cancel"};

  // Whether the user waits for it; else it must not take the keyboard from what the user does.
  bool TakesFocus = true;
};

}  // namespace tarnlink
