// The dialog for one item of the sniffer: its ID, its name, and what is shown of its value.
#pragma once

#include <string>

#include "common/controls.h"
#include "common/dialog_controls.h"
#include "tools/frm_sniffer.h"

namespace tarnlink {

class frm_Sniff_Settings {
 public:
  // `sniffer` outlives it; a double click on an item opens the dialog, leaving the sniffer closes
  // it.
  explicit frm_Sniff_Settings(frmSniffer& sniffer);

  Control form{"frm_Sniff_Settings"};
  Label caption{"frm_Sniff_Settings.Caption", "Settings For Sniffer Item"};

  Label lbl_SniffAddress{"lbl_SniffAddress", "ID:"};
  TextBox txt_SniffAddress{"txt_SniffAddress"};
  Label lbl_SniffAlias{"lbl_SniffAlias", "Alias:"};
  TextBox txt_SniffAlias{"txt_SniffAlias"};
  GroupBox frm_storage_type{"frm_storage_type", "Storage type"};
  OptionGroup opt_sniff_storage_type{"opt_sniff_storage_type",
                                     {"Bit", "Signed high byte", "Unsigned high byte",
                                      "Signed low byte", "Unsigned word", "Signed word"}};
  Label lbl_SniffBitAddress{"lbl_SniffBitAddress", "Bit:"};
  TextBox txt_SniffBitAddress{"txt_SniffBitAddress"};
  GroupBox frm_Representation{"frm_Representation", "Representation"};
  OptionGroup opt_Representation;
  CheckBox chk_Log{"chk_Log", "Log to file"};
  CheckBox chk_UseDDE{"chk_UseDDE", "DDE"};
  TextBox txt_ExcelColumn{"txt_ExcelColumn"};
  SpinButton ud_Col{"ud_Col"};
  Label lbl_Wrong{"lbl_Wrong"};  // why Ok has taken nothing over
  CommandButton cmd_Ok{"cmd_Ok", "Ok"};
  CommandButton cmd_Cancel{"cmd_Cancel", "Cancel"};
  CommandButton cmdDeleteLocation{"cmdDeleteLocation", "Delete Location"};

  void Show(int Index);
  void Close() { form.Visible = false; }
  int Index() const { return index_; }

 private:
  void TypeClicked(int type);
  void StepColumn(int step);
  bool HasOtherId() const;
  // Empty if all can be taken over.
  std::string WhatIsWrong() const;
  void TakeOver();

  frmSniffer& sniffer_;
  int index_ = 0;
};

}  // namespace tarnlink
