#include "platform/port_devices.h"

namespace tarnlink {
namespace {

constexpr const char* kSection = "Ports";

std::string Key(int number) { return "COM" + std::to_string(number); }

}  // namespace

std::string DevicePath(int number, const SettingsStore& settings, const PortDevices& devices) {
  if (number < kFirstPort || number > kLastPort) return {};
  std::string entry = settings.GetSetting(kSection, Key(number), "");
  if (!entry.empty()) return entry;
  const std::vector<PortDevice> present = devices.Present();
  const auto place = static_cast<std::size_t>(number - kFirstPort);
  return place < present.size() ? present[place].path : std::string();
}

void SaveDevicePath(int number, const std::string& path, SettingsStore& settings) {
  settings.SaveSetting(kSection, Key(number), path);
}

std::string Describe(const PortDevice& device) {
  std::string line = device.path;
  for (const std::string* part : {&device.description, &device.maker}) {
    if (!part->empty()) line += ", " + *part;
  }
  return line;
}

}  // namespace tarnlink
