// The options dialog. Its controls are the live copy of the options: the run and other forms read
// them here, whether the dialog is shown or not.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "common/control_array.h"
#include "common/controls.h"
#include "monitor/location_table.h"
#include "platform/platform.h"

namespace tarnlink {

class frm_Main;

// The button of `opt_CommPort` with a number of its own, which stands in `ComPortNumber`.
inline constexpr int kOtherPort = 4;

// 1200 times 2 to the index of `opt_Baudrate`.
inline constexpr int kBaudrates = 6;
constexpr int BaudrateOfIndex(int index) { return 1200 << index; }

class frm_Options {
 public:
  // Outlived by both. Fills nothing: `LoadOptions` does.
  frm_Options(Platform& platform, frm_Main& main);

  Control form{"frm_Options"};

  OptionGroup opt_Protocol;
  OptionGroup opt_Baudrate{"opt_Baudrate", {"1200", "2400", "4800", "9600", "19200", "38400"}};
  OptionGroup opt_CommPort{"opt_CommPort", {"COM1", "COM2", "COM3", "COM4", "COM"}};
  TextBox ComPortNumber{"ComPortNumber"};
  // The device behind the port number: picked among those present, or typed.
  ComboBox cmbPortDevice{"cmbPortDevice"};
  OptionGroup opt_stop{"opt_stop", {"One", "Two"}};
  OptionGroup opt_parity{"opt_parity", {"None", "Even", "Odd"}};
  Control frmMicro{"frmMicro"};
  OptionGroup MicroSelect{"MicroSelect", {"ATMega", "XMega", "NEC", "Renesas"}};
  TextBox txt_MapFile{"txt_MapFile"};
  CommandButton cmdBrowseMapFile{"cmdBrowseMapFile", "Browse..."};
  TextBox txt_ZOLTIDDef{"txt_ZOLTIDDef"};
  CommandButton cmdBrowseZOLTIDFile{"cmdBrowseZOLTIDFile", "Browse..."};
  TextBox txt_databasefiles{"txt_databasefiles"};
  CommandButton cmdBrowseDatabasefiles{"cmdBrowseDatabasefiles", "Browse..."};
  TextBox txt_LogPath{"txt_LogPath"};
  CommandButton cmdBrowseLogPath{"cmdBrowseLogPath", "Browse..."};
  TextBox txt_PathToExcel{"txt_PathToExcel"};
  CommandButton cmdBrowseExcel{"cmdBrowseExcel", "Browse..."};
  FixedArray<CheckBox> chk_GeneralLogging{"chk_GeneralLogging", 0, {"File Logging", "DDE Support"}};
  CheckBox chk_DisableCommErrors{"chk_DisableCommErrors", "Ignore Communication Errors"};
  Slider sld_MsgTimeout{"sld_MsgTimeout", 0, 5, 3};
  CheckBox ScanningBox{"ScanningBox", "Scanning box"};
  CheckBox chkGridOn{"chkGridOn", "Grid  on"};
  CheckBox chkClearAllValues{"chkClearAllValues", "Clear all values at start of communication"};
  CommandButton cmd_OptionsOk{"cmd_OptionsOk", "Ok"};
  CommandButton cmd_OptionsCancel{"cmd_OptionsCancel", "Cancel"};

  // Whether the tools of the menu can be used, which speak ZOLT only.
  bool ToolsFitProtocol() const { return SelectedProtocol() != kModbusProtocol; }
  // The index of the selected protocol; ModBus while no button is set, as everywhere that asks.
  int SelectedProtocol() const;

  // The Options entry of the menu: shows the dialog. The view's modal box hangs on `form.Visible`.
  void ShowOptions();

  // What OK does, and the start of the program once: stores the options and takes them over.
  void ApplyOptions();

  // Has the memory map read again: the project's, or without one that of `txt_MapFile`.
  void ReloadMap();

  // The lines that `cmbPortDevice` offers, anew after a device came or went. What the user typed
  // stays.
  void RefreshPortDevices();
  // Empties the device box, which costs a look at the machine, until the dialog is shown again.
  void ForgetPortDevice();
  // The device path that the text of `cmbPortDevice` stands for.
  std::string ChosenDevice() const;

 private:
  void BindButtons();
  void PresetPort(int protocol);
  void SelectPortButton();
  void ShowTimeout();
  void ShowPortDevice();
  int ChosenPort() const;

  bool SavePort();
  void SavePortDevice(int number);
  char SaveParity();
  void SaveOtherOptions();
  void SaveProtocol();
  void ShowAndSetPort(char parity);
  void ReloadNames();
  void ResetEmptyScreen();

  void BrowseMapFile();
  void Browse(TextBox& box, const std::string& title, const std::string& filter);
  void BrowseFolder(TextBox& box, const std::string& title);

  Platform& platform_;
  frm_Main& main_;
  bool device_is_shown_ = false;
  std::string shown_device_;  // the device of the shown number, as the store has it
};

// Reads the stored options into the controls of `options` and sets the main form's MicroType. An
// index that names no control counts as its default.
void LoadOptions(frm_Main& main, frm_Options& options);

// The speed that tools use: how often 1200 is doubled, as it is stored, whatever the dialog shows.
int StoredBaudrate(const SettingsStore& store);

}  // namespace tarnlink
