#include "common/text_file.h"
#include "fuzz/claim.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/readers/reader_claims.h"
#include "fuzz/readers/readers.h"
#include "fuzz/readers/small_desk.h"
#include "monitor/setting_keys.h"
#include "platform/port_devices.h"

namespace tarnlink {
namespace {

constexpr std::array<SettingKey, 16> kKeys = {
    setting::kProtocol,   setting::kBaudrate,     setting::kCommport,      setting::kStopBits,
    setting::kParity,     setting::kExcelPath,    setting::kIgnoreErrors,  setting::kFileLogging,
    setting::kDdeLogging, setting::kMsgTimeout,   setting::kScanning,      setting::kMicroprocessor,
    setting::kLogPath,    setting::kIdDefinition, setting::kDatabaseFiles, setting::kMemoryMap};

void ClaimSelected(const OptionGroup& group) {
  Claim(group.Selected() >= 0 && group.Selected() < group.count(), "one button is set");
}

void ClaimOptions(SmallDesk& desk) {
  frm_Options& options = desk.options;
  for (const OptionGroup* group : {&options.opt_Protocol, &options.opt_Baudrate, &options.opt_stop,
                                   &options.opt_parity, &options.MicroSelect}) {
    ClaimSelected(*group);
  }
  const SettingsStore& store = desk.world.settings();
  Claim(StoredBaudrate(store) == options.opt_Baudrate.Selected(), "the speed is the stored one");
  Claim(desk.main.MicroType == options.MicroSelect.Selected(), "the microprocessor is the chosen");
  const int timeout = options.sld_MsgTimeout.Value;
  Claim(timeout >= options.sld_MsgTimeout.minimum && timeout <= options.sld_MsgTimeout.maximum,
        "the time-out is one of the slider");
  const std::string& port = options.ComPortNumber.Text;
  Claim(!port.empty() && std::stoi(port) >= kFirstPort && std::stoi(port) <= kLastPort,
        "the port is one of sixteen");
  Claim(options.txt_LogPath.Text.get() == ReadSetting(store, setting::kLogPath),
        "a path stands there as it is stored");
}

void Run(std::string_view input) {
  SmallDesk& desk = CleanDesk();
  FuzzInput bytes(input);
  SettingsStore& store = desk.world.settings();
  std::uint32_t there = bytes.Word();
  for (const SettingKey& key : kKeys) {
    if ((there & 1) != 0) WriteSetting(store, key, DecodeText(bytes.Field()));
    there >>= 1;
  }
  LoadOptions(desk.main, desk.options);
  ClaimOptions(desk);
  const int number = bytes.Byte();
  const std::string device = DecodeText(bytes.Field());
  SaveDevicePath(number, device, store);
  const bool is_port = number >= kFirstPort && number <= kLastPort;
  const std::string path = DevicePath(number, store, desk.world.devices());
  Claim(is_port ? device.empty() || path == device : path.empty(), "a port has its device");
}

std::vector<std::string> Seeds() {
  using namespace std::string_literals;
  return {
      "\xFF\xFF"
      "1\0"
      "2\0"
      "3\0"
      "1\0"
      "1\0/e\0"
      "1\0"
      "0\0"
      "1\0"
      "3\0"
      "0\0"
      "2\0/l\0/i\0.\0/m\0\5/dev/ttyUSB0\0"s,
      "\x07\0-1\0"
      "99999999999\0&HFFFF\0"s,
      "\0\x0A\x41.5\0NaN\0"s, "\xFF\xFF"s};
}

}  // namespace

FuzzTarget SettingsTarget() { return {"settings", Run, Seeds}; }

}  // namespace tarnlink
