// The stored options, read into the controls of the options dialog.

#include <limits>

#include "common/numbers.h"
#include "monitor/frm_main.h"
#include "monitor/frm_options.h"
#include "monitor/setting_keys.h"

namespace tarnlink {

namespace {

int StoredNumber(const SettingsStore& store, const SettingKey& key) {
  constexpr int kAny = std::numeric_limits<int>::max();
  return ValInt(ReadSetting(store, key), -kAny, kAny);
}

// A stored index, or the default where no control has that index: the program starts whatever the
// store holds.
int StoredIndex(const SettingsStore& store, const SettingKey& key, int count) {
  const int index = StoredNumber(store, key);
  if (index >= 0 && index < count) return index;
  return ValInt(key.fallback, 0, count - 1);
}

void LoadCheck(CheckBox& box, const SettingsStore& store, const SettingKey& key) {
  box.Value = StoredNumber(store, key) != 0;
}

void LoadPort(frm_Options& options, const SettingsStore& store) {
  options.ForgetPortDevice();
  const int number = StoredNumber(store, setting::kCommport);
  if (number < kFirstPort || number > kLastPort) {
    options.ComPortNumber.Text = "1";
  } else if (number > kOtherPort) {
    options.ComPortNumber.Text = std::to_string(number);
    options.opt_CommPort.Select(kOtherPort);
  } else {
    options.ComPortNumber.Text = std::to_string(number);
    options.opt_CommPort.Select(number - 1);
    options.ComPortNumber.Enabled = false;
  }
}

}  // namespace

int StoredBaudrate(const SettingsStore& store) {
  return StoredIndex(store, setting::kBaudrate, kBaudrates);
}

void LoadOptions(frm_Main& main, frm_Options& options) {
  const SettingsStore& store = main.platform().settings();
  // The protocol first: its click presets what the lines below then set as stored.
  options.opt_Protocol.Select(StoredIndex(store, setting::kProtocol, options.opt_Protocol.count()));
  options.opt_Baudrate.Select(StoredBaudrate(store));
  LoadPort(options, store);
  options.opt_stop.Select(StoredIndex(store, setting::kStopBits, options.opt_stop.count()));
  options.opt_parity.Select(StoredIndex(store, setting::kParity, options.opt_parity.count()));
  options.txt_PathToExcel.Text = ReadSetting(store, setting::kExcelPath);
  LoadCheck(options.chk_DisableCommErrors, store, setting::kIgnoreErrors);
  LoadCheck(options.chk_GeneralLogging(0), store, setting::kFileLogging);
  LoadCheck(options.chk_GeneralLogging(1), store, setting::kDdeLogging);
  options.sld_MsgTimeout.SetValue(StoredNumber(store, setting::kMsgTimeout));
  LoadCheck(options.ScanningBox, store, setting::kScanning);
  options.txt_LogPath.Text = ReadSetting(store, setting::kLogPath);
  options.txt_ZOLTIDDef.Text = ReadSetting(store, setting::kIdDefinition);
  options.txt_databasefiles.Text = ReadSetting(store, setting::kDatabaseFiles);
  options.txt_MapFile.Text = ReadSetting(store, setting::kMemoryMap);
  const int micro = StoredIndex(store, setting::kMicroprocessor, options.MicroSelect.count());
  main.MicroType = static_cast<std::int16_t>(micro);
  options.MicroSelect.Select(micro);
}

}  // namespace tarnlink
