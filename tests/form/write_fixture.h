// Writes through the dialogs: a user at the value boxes, the simulated boiler at the other end.
#pragma once

#include <string>

#include "form/boiler_frames.h"
#include "form/boiler_on_line.h"
#include "form/locations.h"
#include "form/monitor_fixture.h"

namespace tarnlink {

// Free memory of the boiler, and the register that is its first word but 128.
inline constexpr std::uint16_t kFree = 0xF410;

class WriteTest : public MonitorTest {
 protected:
  explicit WriteTest(int protocol);

  // The double click on a value box.
  void Ask(int index) { monitor.main.RAM_LOC_VAL.DblClick(index); }
  // The run has begun, the first Location is being read or has been.
  void Run(const std::vector<Location>& locations);

  frm_WriteValue& dialog() { return monitor.write_value; }
  frm_WriteBitValue& bit_dialog() { return monitor.write_bit; }
  frm_multiple_reg& registers() { return monitor.write_registers; }
  std::string Caption(const Label& label) const { return label.Caption; }
  int Memory(int offset = 0) {
    return boiler.controller().memory().Byte(static_cast<std::uint16_t>(kFree + offset));
  }

  BoilerOnLine boiler;
};

class TarnlinkWrite : public WriteTest {
 protected:
  TarnlinkWrite() : WriteTest(kTarnlinkProtocol) {}
};

class ZoltDialogWrite : public WriteTest {
 protected:
  ZoltDialogWrite() : WriteTest(kZoltProtocol) {}
};

class ModbusDialogWrite : public WriteTest {
 protected:
  ModbusDialogWrite() : WriteTest(kModbusProtocol) {}
};

}  // namespace tarnlink
