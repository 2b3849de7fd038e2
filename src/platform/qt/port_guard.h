// Keeps a serial device for one port: says beforehand why it cannot be had, and holds a lock on it
// that also keeps out a second port of this process and a program that runs as root. QSerialPort
// adds the exclusive mode, which keeps out programs that know of no lock.
#pragma once

#include <string>

#include "platform/port_settings.h"

namespace tarnlink {

class PortGuard {
 public:
  // `number` and `path` are as the user knows them; links are followed. Throws RunTimeError 8005.
  PortGuard(int number, const std::string& path);
  ~PortGuard();
  PortGuard(const PortGuard&) = delete;
  PortGuard& operator=(const PortGuard&) = delete;

  // The device behind all links.
  const std::string& device() const { return device_; }
  // "COM3 (/dev/ttyUSB0)"
  const std::string& name() const { return name_; }

  // Throw RunTimeError 8005 for an opening that failed although the checks had passed.
  [[noreturn]] void RefuseAsBusy() const;
  [[noreturn]] void RefuseSettings(const PortSettings& settings) const;
  [[noreturn]] void RefuseBecause(const std::string& what) const;

 private:
  friend std::string WhyUnusable(int number, const std::string& path);

  // Only finds the device.
  struct FindOnly {};
  PortGuard(int number, const std::string& path, FindOnly);

  void FindDevice(const std::string& path);
  void OpenHandle();
  void TakeLock() const;
  [[noreturn]] void RefuseAsForbidden() const;

  std::string name_;
  std::string device_;
  int handle_ = -1;
};

// The sentence with which a port would refuse a device that is not there, is no serial port or is
// not this user's; empty for any other. The device is not opened: that would reach what is behind
// it.
std::string WhyUnusable(int number, const std::string& path);

}  // namespace tarnlink
