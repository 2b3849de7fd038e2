#include "monitor/frm_options.h"

#include <algorithm>
#include <array>

#include "common/numbers.h"
#include "common/paths.h"
#include "common/run_time_error.h"
#include "monitor/frm_main.h"
#include "monitor/project_paths.h"
#include "monitor/setting_keys.h"

namespace tarnlink {

namespace {

constexpr const char* kParityLetters = "NEO";

// What the options know of each protocol, by its index.
struct ProtocolFacts {
  const char* caption;
  const char* panel_text;
  // What a click on its button presets: indices of speed, parity and stop bits.
  int baudrate;
  int parity;
  int stop;
};
constexpr std::array<ProtocolFacts, kProtocolCount> kProtocols = {{
    {"Tarnlink Protocol", "TarnLink Protocol", 3, 0, 0},
    {"ZOLT External Protocol", "ZOLT Protocol", 1, 0, 0},
    {"ModBus", "ModBus Protocol", 4, 1, 0},
}};
constexpr int kPresetTimeout = 3;  // seconds

const ProtocolFacts& FactsOf(int protocol) {
  return kProtocols.at(static_cast<std::size_t>(protocol));
}

std::vector<std::string> ProtocolCaptions() {
  std::vector<std::string> captions;
  for (const ProtocolFacts& facts : kProtocols) captions.emplace_back(facts.caption);
  return captions;
}

std::string CheckText(const CheckBox& box) { return box.Value ? "1" : "0"; }

void SaveIndex(SettingsStore& store, const SettingKey& key, const OptionGroup& group) {
  if (group.Selected() >= 0) WriteSetting(store, key, std::to_string(group.Selected()));
}

}  // namespace

frm_Options::frm_Options(Platform& platform, frm_Main& main)
    : opt_Protocol("opt_Protocol", ProtocolCaptions()), platform_(platform), main_(main) {
  form.Visible = false;
  ComPortNumber.ToolTipText = "Set 1  to 16";
  txt_PathToExcel.Text = "J:\\MSOFFICE\\OFFICE\\EXCEL.EXE";
  BindButtons();
  ShowTimeout();
}

void frm_Options::BindButtons() {
  main_.M_options.Click = [this] { ShowOptions(); };
  opt_Protocol.Click = [this](int index) { PresetPort(index); };
  opt_CommPort.Click = [this](int index) {
    ComPortNumber.Enabled = index == kOtherPort;
    ShowPortDevice();
  };
  ComPortNumber.Change = [this] { ShowPortDevice(); };
  sld_MsgTimeout.Change = [this] { ShowTimeout(); };
  MicroSelect.Click = [this](int index) { main_.MicroType = static_cast<std::int16_t>(index); };
  cmd_OptionsOk.Click = [this] { ApplyOptions(); };
  cmd_OptionsCancel.Click = [this] { form.Visible = false; };
  cmdBrowseMapFile.Click = [this] { BrowseMapFile(); };
  cmdBrowseZOLTIDFile.Click = [this] {
    Browse(txt_ZOLTIDDef, "ZOLT ID definition file", "ZOLT ID file (*.ids)|*.ids");
  };
  cmdBrowseExcel.Click = [this] { Browse(txt_PathToExcel, "Excel", "(Excel.exe)|Excel.exe"); };
  cmdBrowseLogPath.Click = [this] { BrowseFolder(txt_LogPath, "Log Path"); };
  cmdBrowseDatabasefiles.Click = [this] {
    BrowseFolder(txt_databasefiles, "Path to database files");
  };
}

int frm_Options::SelectedProtocol() const {
  const int index = opt_Protocol.Selected();
  return index < 0 ? kModbusProtocol : index;
}

void frm_Options::PresetPort(int protocol) {
  opt_Baudrate.Clear();
  opt_parity.Clear();
  opt_stop.Clear();
  const ProtocolFacts& preset = FactsOf(protocol);
  opt_Baudrate.Select(preset.baudrate);
  opt_parity.Select(preset.parity);
  opt_stop.Select(preset.stop);
  sld_MsgTimeout.SetValue(kPresetTimeout);
}

void frm_Options::ShowTimeout() {
  sld_MsgTimeout.ToolTipText = std::to_string(sld_MsgTimeout.Value.get()) + " second(s)";
}

void frm_Options::SelectPortButton() {
  const int number = ValInt(ComPortNumber.Text.get(), kFirstPort, kLastPort);
  if (number > kOtherPort) {
    opt_CommPort.Select(kOtherPort);
  } else {
    opt_CommPort.Select(number - 1);
    ComPortNumber.Enabled = false;
  }
}

void frm_Options::ShowOptions() {
  SelectPortButton();
  ScanningBox.Visible = true;
  device_is_shown_ = true;
  RefreshPortDevices();
  form.Visible = true;
}

// --- The device behind the port number -----------------------------------------------------------

int frm_Options::ChosenPort() const {
  const int button = opt_CommPort.Selected();
  if (button >= 0 && button != kOtherPort) return button + 1;
  return ValInt(ComPortNumber.Text.get(), 0, kLastPort + 1);
}

void frm_Options::ForgetPortDevice() {
  device_is_shown_ = false;
  shown_device_.clear();
  cmbPortDevice.Text = shown_device_;
}

void frm_Options::ShowPortDevice() {
  if (!device_is_shown_) return;
  const int number = ChosenPort();
  shown_device_ = number >= kFirstPort && number <= kLastPort
                      ? DevicePath(number, platform_.settings(), platform_.devices())
                      : std::string();
  cmbPortDevice.Text = shown_device_;
}

void frm_Options::RefreshPortDevices() {
  std::vector<ComboBox::Item> lines;
  const std::vector<PortDevice> present = platform_.devices().Present();
  for (const PortDevice& device : present) {
    lines.push_back({Describe(device), static_cast<int>(lines.size())});
  }
  const bool typed = cmbPortDevice.Text.get() != shown_device_;
  cmbPortDevice.List = lines;
  if (!typed) ShowPortDevice();
}

std::string frm_Options::ChosenDevice() const {
  const std::string& text = cmbPortDevice.Text;
  for (const PortDevice& device : platform_.devices().Present()) {
    if (Describe(device) != text) continue;
    return device.stable_path.empty() ? device.path : device.stable_path;
  }
  return text;
}

void frm_Options::SavePortDevice(int number) {
  // An untouched box saves nothing: a number without an entry goes on counting through the devices.
  if (cmbPortDevice.Text.get() == shown_device_) return;
  const std::string device = ChosenDevice();
  if (device == shown_device_) return;
  SaveDevicePath(number, device, platform_.settings());
  shown_device_ = device;
  cmbPortDevice.Text = device;
}

// --- OK ------------------------------------------------------------------------------------------

// The order counts: the port takes speed and stop bits from the store, as just written.
void frm_Options::ApplyOptions() {
  SaveIndex(platform_.settings(), setting::kBaudrate, opt_Baudrate);
  if (!SavePort()) return;
  const char parity = SaveParity();
  SaveIndex(platform_.settings(), setting::kStopBits, opt_stop);
  main_.MicroType = static_cast<std::int16_t>(MicroSelect.Selected() < 0 ? MicroSelect.count() - 1
                                                                         : MicroSelect.Selected());
  SaveOtherOptions();
  SaveProtocol();
  ShowAndSetPort(parity);
  form.Visible = false;
  ReloadNames();
  ResetEmptyScreen();
  main_.FirstLoad = false;
  main_.TellStoreFailure();
}

bool frm_Options::SavePort() {
  const int number = ChosenPort();
  if (number < kFirstPort || number > kLastPort) {
    platform_.dialogs().MessageBox({.text = "Choose a port between 1 and 16",
                                    .title = "COM port Error",
                                    .icon = Icon::kCritical});
    ComPortNumber.Text = std::to_string(kLastPort);
    return false;
  }
  if (opt_CommPort.Selected() >= 0) {
    WriteSetting(platform_.settings(), setting::kCommport, std::to_string(number));
  }
  SavePortDevice(number);
  ComPortNumber.Text = std::to_string(number);
  return true;
}

char frm_Options::SaveParity() {
  SaveIndex(platform_.settings(), setting::kParity, opt_parity);
  return kParityLetters[std::max(opt_parity.Selected(), 0)];
}

void frm_Options::SaveOtherOptions() {
  SettingsStore& store = platform_.settings();
  WriteSetting(store, setting::kExcelPath, txt_PathToExcel.Text.get());
  WriteSetting(store, setting::kIgnoreErrors, CheckText(chk_DisableCommErrors));
  WriteSetting(store, setting::kFileLogging, CheckText(chk_GeneralLogging(0)));
  WriteSetting(store, setting::kDdeLogging, CheckText(chk_GeneralLogging(1)));
  WriteSetting(store, setting::kMsgTimeout, std::to_string(sld_MsgTimeout.Value.get()));
  WriteSetting(store, setting::kScanning, CheckText(ScanningBox));
  WriteSetting(store, setting::kMicroprocessor, std::to_string(main_.MicroType));
  WriteSetting(store, setting::kLogPath, txt_LogPath.Text.get());
  WriteSetting(store, setting::kIdDefinition, txt_ZOLTIDDef.Text.get());
  WriteSetting(store, setting::kDatabaseFiles, txt_databasefiles.Text.get());
  WriteSetting(store, setting::kMemoryMap, txt_MapFile.Text.get());
}

void frm_Options::SaveProtocol() {
  SaveIndex(platform_.settings(), setting::kProtocol, opt_Protocol);
  const int index = opt_Protocol.Selected();
  if (index >= 0) main_.StatusBar1(kProtocolPanel).Text = FactsOf(index).panel_text;
}

void frm_Options::ShowAndSetPort(char parity) {
  const SettingsStore& store = platform_.settings();
  const int speed =
      BaudrateOfIndex(ValInt(ReadSetting(store, setting::kBaudrate), 0, opt_Baudrate.count() - 1));
  const int stop_bits = ValInt(ReadSetting(store, setting::kStopBits), 0, opt_stop.count() - 1) + 1;
  const std::string behind_speed = std::string(",") + parity + ",8," + Str(stop_bits);
  main_.StatusBar1(kSettingsPanel).Text =
      "COM" + ComPortNumber.Text.get() + "," + Str(speed) + behind_speed;
  try {
    main_.Comm->SetSettings(Str(speed) + behind_speed);
  } catch (const RunTimeError& error) {
    // The watchdog had the port open, and it cannot be had again: the next Start says why.
    if (error.code() != kPortUnavailable) throw;
  }
  main_.Comm->SetCommPort(ValInt(ComPortNumber.Text.get(), kFirstPort, kLastPort));
}

void frm_Options::ReloadMap() {
  if (!main_.LoadClass7) return;
  main_.LoadClass7(FileOfGroup(main_, "lst", txt_MapFile.Text));
}

void frm_Options::ReloadNames() {
  ReloadMap();
  if (main_.ReadIDItems) {
    main_.ReadIDItems(FileOfGroup(main_, "ids", txt_ZOLTIDDef.Text));
  }
}

void frm_Options::ResetEmptyScreen() {
  if (main_.MaxId != 0) return;
  main_.InitForm();
  main_.InitLocations();
  if (main_.TextInfoCount == 0 && main_.ForgetEdits) main_.ForgetEdits();
  main_.M_Tools.Enabled = ToolsFitProtocol();
}

}  // namespace tarnlink
