// The dialog that makes a parameter file of the screen: what goes in, and where it is saved.
#pragma once

#include <string>

#include "common/controls.h"
#include "monitor/frm_main.h"
#include "monitor/gen_parameter_file.h"

namespace tarnlink {

class frmGenParFile {
 public:
  // Binds the menu entry. `main` outlives it; its `ParCmnDlg` is the file dialog.
  explicit frmGenParFile(frm_Main& main);

  Control form{"frmGenParFile"};
  Label caption{"frmGenParFile.Caption", "Generate parameter file"};
  CheckBox chkClass5{"chkClass5", "Class 5 Parameters"};
  CheckBox chkClass7EE{"chkClass7EE", "Class 7 EEPROM"};
  CheckBox chkClass7RAM{"chkClass7RAM", "Class 7 RAM"};
  Label lblCount{"lblCount"};  // how many locations of the screen go in
  CommandButton cmdSave{"cmdSave", "Save"};
  CommandButton cmdCancel{"cmdCancel", "Cancel"};

  void Show();
  void Hide() { form.Visible = false; }

 private:
  void Save();
  std::string DefaultName() const;
  ParameterSelection Selection() const;
  void ShowCount();
  void OfferToAddToProject(const std::string& path);

  frm_Main& main_;
};

}  // namespace tarnlink
