// The About box.
#pragma once

#include <string>

#include "common/controls.h"
#include "monitor/frm_main.h"

namespace tarnlink {

class frmAbout {
 public:
  // Binds the About entry.
  explicit frmAbout(frm_Main& main) {
    form.Visible = false;
    main.M_About.Click = [this] { form.Visible = true; };
    cmdOk.Click = [this] { form.Visible = false; };
  }

  Control form{"frmAbout"};
  Label caption{"frmAbout.Caption", "About " + std::string(kProgramTitle)};
  Label lblVersion{"lblVersion", "V" TARNLINK_VERSION};
  CommandButton cmdOk{"cmdOK", "OK"};
};

}  // namespace tarnlink
