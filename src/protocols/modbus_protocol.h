// Modbus RTU in the run: registers of several slaves, single ones and blocks, one exchange at a
// time.
#pragma once

#include <string>
#include <string_view>

#include "protocols/protocol_run.h"

namespace tarnlink {

// Sends the next read request. Skips a Location that is not there, and passes over those that an
// earlier one of their block reads with it.
void Modbus_Protocol(ProtocolRun& run);

// Takes the bytes that wait as the answer to the request that is out. Neither slave nor register is
// compared. A RunTimeError leaves the exchange to the watchdog.
void ModbusSlaveResponse(ProtocolRun& run);

// Sends a write to Location `index`, where the scan goes on: `value`, hexadecimal text, by function
// 6, or the stored registers by function 16. `Function_code` says which and is set before.
void BuildModbusWriteMessage(ProtocolRun& run, int index, const std::string& value);

// True if the frame is bad: its last two bytes are not the CRC of what the function has.
bool CheckMessage(std::string_view raw, std::uint8_t Function_code, std::int16_t Nreg);

class ModbusProtocol final : public Protocol {
 public:
  void SendNextPoll(ProtocolRun& run) override { Modbus_Protocol(run); }
  void TakeResponse(ProtocolRun& run) override { ModbusSlaveResponse(run); }
  void SendWrite(ProtocolRun& run, int index, std::string& value) override {
    BuildModbusWriteMessage(run, index, value);
  }
  int ReceivePause(int baud_index) const override;
  int ResponseLength(const RunFields& fields) const override;
};

}  // namespace tarnlink
