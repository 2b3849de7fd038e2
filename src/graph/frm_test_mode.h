// The dialog for the test mode command of the graph: on or off, and at what power. It sends nothing
// itself, and closing it always takes the settings over.
#pragma once

#include "common/controls.h"
#include "common/dialog_controls.h"
#include "graph/frm_graphic.h"

namespace tarnlink {

class frmTestMode {
 public:
  // `graph` outlives it.
  explicit frmTestMode(frmGraphic& graph);

  Control form{"frmTestMode"};
  Label caption{"frmTestMode.Caption", "Testmode"};
  GroupBox Frame1{"Frame1", "Testmode"};
  OptionGroup optTestMode{"optTestMode", {"On", "Off"}};
  Label Label1{"Label1", "Test power %"};
  Slider sldTestPower{"sldTestPower", 0, 100, 100};
  TextBox txtTestPower{"txtTestPower"};
  Label Label2{"Label2", "Settings are use with next testmode"};

  void Show();
  void Close();

 private:
  void EnablePower(bool on);
  void TakeText();

  frmGraphic& graph_;
  bool is_typing_ = false;  // the slider moves because of the text, which stays as it is
};

}  // namespace tarnlink
