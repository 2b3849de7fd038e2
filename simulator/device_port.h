// A port that is a serial device of the machine: 8 data bits, no parity, one stop bit.
#pragma once

#include <string>

#include "simulator/file_descriptor.h"
#include "simulator/port.h"

namespace boiler {

class DevicePort : public Port {
 public:
  // Unplugged at first. Throws Problem for a speed that serial devices do not have.
  DevicePort(std::string path, int baud);

  int File() const override { return device_.number(); }
  const std::string& Path() const override { return path_; }
  void Plug(bool under_other_name) override;
  void Unplug() override { device_.Close(); }
  void Block(FaultKind kind) override;
  void Unblock() override {}

 private:
  std::string path_;
  unsigned speed_;
  FileDescriptor device_;
};

}  // namespace boiler
