// The dialog that defines a Location: its controls, and how they act on each other while the user
// works with them. Opening it, OK and the rest stand in location_settings.
#pragma once

#include <functional>
#include <string>

#include "common/controls.h"
#include "common/dialog_controls.h"
#include "monitor/frm_main.h"
#include "monitor/frm_options.h"
#include "monitor/id_names.h"
#include "monitor/memory_map.h"

namespace tarnlink {

// Members of `optSpecification`.
inline constexpr int kMemorySpecification = 0;
inline constexpr int kClassSpecification = 1;

inline constexpr std::string_view kNoFunctionCode = "Select";

class frm_Settings {
 public:
  // All outlive it.
  frm_Settings(frm_Main& main, const frm_Options& options, const MemoryMap& map, IdNames& ids);

  Control form{"frm_Settings"};
  Label caption{"frm_Settings.Caption", "Settings For Memory Location"};

  GroupBox Frame9{"Frame9", "Specification"};
  OptionGroup optSpecification{"optSpecification", {"Memory Location", "Class"}};
  PickBox cmbClass{"cmbClass"};
  Label lbl_ActualVariable{"lbl_ActualVariable", "Actual Variable Name:"};
  PickBox cmbActualVariable{"cmbActualVariable"};
  Label lbl_Alias{"lbl_Alias", "Alias:"};
  TextBox txt_Alias{"txt_Alias"};

  GroupBox frmAddress{"frmAddress", "Address"};
  TextBox txt_Address{"txt_Address"};
  TextBox txt_Address_dec{"txt_Address_dec"};
  GroupBox frm_BitAddress{"frm_BitAddress", "Bit"};
  TextBox txt_BitAddress{"txt_BitAddress"};

  GroupBox frmStorageType{"frmStorageType", "Storage type"};
  OptionGroup opt_StorageType;
  OptionGroup opt_Representation;
  GroupBox frmSelectByte{"frmSelectByte", "Select Byte"};
  OptionGroup optSelectByte{"optSelectByte", {"Msb", "Lsb", "Both"}};

  GroupBox Frame10{"Frame10", "Slave Address"};
  TextBox txt_SlaveAddress{"txt_SlaveAddress"};
  SpinButton UpDown1{"UpDown1"};

  CheckBox chk_Log{"chk_Log", "Log to file"};
  CheckBox chk_UseDDE{"chk_UseDDE", "DDE"};
  TextBox txt_ExcelColumn{"txt_ExcelColumn"};
  SpinButton ud_Col{"ud_Col"};

  CheckBox chk_DisableScanning{"chk_DisableScanning", "Disable Scanning"};
  CheckBox chk_contwrite{"chk_contwrite", "Continuous Write"};

  GroupBox Function_code{"Function_code", " Function Code"};
  PickBox CmbFunc{"CmbFunc"};
  TextBox txt_NumReg{"txt_NumReg"};

  CommandButton cmd_Ok{"cmd_Ok", "Ok"};
  CommandButton cmd_Cancel{"cmd_Cancel", "Cancel"};
  CommandButton cmdDeleteLocation{"cmdDeleteLocation", "Delete Location"};

  // Offers the names that fit memory or class, microprocessor and storage type. The text in the box
  // stays if `KeepText` is set and is emptied otherwise.
  void FillActualVariables(bool KeepText);
  // The index of the storage type that is set, -1 for none.
  int GetStorageTypeIndex() const { return opt_StorageType.Selected(); }
  void ShowClass(int data_class);
  // `txt_Address_dec` takes what `txt_Address` says.
  void ShowDecimalAddress();

  bool IsMemory() const { return optSpecification.Selected() == kMemorySpecification; }
  bool IsModbus() const { return options_.SelectedProtocol() == kModbusProtocol; }

 private:
  void BindGroups();
  void BindBoxes();
  void FillLists();

  void SpecificationClicked(int Index);
  void ShowRevision();
  void SelectByteClicked(int Index);
  void StorageTypeClicked();
  void EnableStorage(bool bytes, bool words);
  void ActualVariableClicked();
  void TakeMapName(int row);
  void TakeTypedName();
  void TakeIdName(int row);
  void AddressLeft();
  void DecimalAddressLeft();
  void StepColumn(int step);
  void StepSlave(int step);

  frm_Main& main_;
  const frm_Options& options_;
  const MemoryMap& map_;
  const IdNames& ids_;
};

}  // namespace tarnlink
