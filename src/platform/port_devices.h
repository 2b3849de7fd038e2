// Which serial devices are there, and which of them a port number means. Real class:
// `QtPortDevices`; fake: `FakePortDevices`.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/settings_store.h"

namespace tarnlink {

inline constexpr int kFirstPort = 1;
inline constexpr int kLastPort = 16;

struct PortDevice {
  std::string path;         // "/dev/ttyUSB0"
  std::string stable_path;  // the by-id link that survives replugging; may be empty
  std::string description;
  std::string maker;

  bool operator==(const PortDevice&) const = default;
};

class PortDevices {
 public:
  virtual ~PortDevices() = default;

  // In the order in which the system lists them.
  virtual std::vector<PortDevice> Present() const = 0;

  // Called after a device came or went. An empty handler stops the watch; nothing wakes up then.
  virtual void Watch(std::function<void()> handler) = 0;
};

// The device path behind a port number: the entry "COM" and the number in section "Ports" of the
// store; without an entry the number counts through the devices that are present. Empty when
// there is none.
std::string DevicePath(int number, const SettingsStore& settings, const PortDevices& devices);

// Makes `path` the device of a port number; an empty path lets the number count again.
void SaveDevicePath(int number, const std::string& path, SettingsStore& settings);

// One line for a person: path, description and maker.
std::string Describe(const PortDevice& device);

}  // namespace tarnlink
