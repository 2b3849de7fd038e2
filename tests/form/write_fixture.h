// Writes through the dialogs: a user at the value boxes, the simulated boiler at the other end.
#pragma once

#include <string>

#include "form/boiler_on_line.h"
#include "form/monitor_fixture.h"
#include "support/zolt_text.h"

namespace tarnlink {

// Free memory of the boiler, and the register that is its first word but 128.
inline constexpr std::uint16_t kFree = 0xF410;

Location WriteId(const std::string& address, int data_class, std::uint8_t select);
Location WriteRegisterOf(const std::string& address, std::uint8_t select = kBoth);
Location BitAt(const std::string& address, int bit);

class WriteTest : public MonitorTest {
 protected:
  explicit WriteTest(int protocol);

  // The double click on a value box.
  void Ask(int index) { monitor.main.RAM_LOC_VAL.DblClick(index); }
  // The whole way: double click, value, "Write Ok".
  void WriteDecimal(int index, const std::string& text) { WriteAs(index, kDecimal, text); }
  void WriteHexadecimal(int index, const std::string& text) { WriteAs(index, kHexadecimal, text); }
  void WriteBit(int index, bool value);

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

 private:
  void WriteAs(int index, int format, const std::string& text);
};

class TarnlinkWrite : public WriteTest {
 protected:
  TarnlinkWrite() : WriteTest(kTarnlinkProtocol) {}
};

class ZoltDialogWrite : public WriteTest {
 protected:
  ZoltDialogWrite() : WriteTest(kZoltProtocol) {}

  // A line of `Sent`; the CRC is the last of the digits.
  static std::string At(int type, const std::string& digits, int milliseconds) {
    return std::to_string(milliseconds) + " ms: " + HexText(Frame(type, digits)) + "\n";
  }
};

class ModbusDialogWrite : public WriteTest {
 protected:
  ModbusDialogWrite() : WriteTest(kModbusProtocol) {}
};

}  // namespace tarnlink
