#include "protocols/modbus_protocol.h"

#include <algorithm>
#include <array>

#include "common/numbers.h"
#include "common/text.h"
#include "protocols/exchange.h"
#include "protocols/frame_bytes.h"
#include "protocols/modbus_frame.h"
#include "protocols/scan_order.h"

namespace tarnlink {

namespace {

// By the index of the speed: about the time of ten bytes. Any other speed is the fastest one.
constexpr std::array<int, 5> kPauses = {80, 40, 20, 10, 5};  // ms
constexpr int kShortestPause = 1;                            // ms

std::uint8_t FunctionOf(const Location& location) {
  return static_cast<std::uint8_t>(ValInt(location.FunctionCode, 0, UINT8_MAX));
}

// The value of a Location that is written continuously, as the bytes of a request. Its digits are
// decimal and read as hexadecimal; slaves of these screens expect that.
std::string HeldBytes(const Location& location) {
  return modbus_frame::RegisterBytes(std::to_string(location.RawValue).substr(0, 4));
}

// What a register block shows of one register. Whether it is a bit goes by the block's first
// Location, all else by its own.
void ShowRegister(ProtocolRun& run, int index, modbus_frame::RegisterValue bytes) {
  Location& location = run.locations()[index];
  const DecodedValue value = SelectValue(location, bytes.high, bytes.low, false);
  location.RawValue = value.RawValue;
  bool& bit = run.fields().BitState;
  if (!value.is_word) bit = IsBitSet(value.RawValue, location.BitAddress);
  const bool shows_bit = run.locations()[run.fields().MsgPointer].StorageType == kBit;
  run.ShowValue(index, shows_bit ? BitText(bit) : DecodedValueText(location, value));
}

void TakeRead(ProtocolRun& run, std::string_view raw) {
  RunFields& fields = run.fields();
  for (int r = 0; r < fields.Nreg; ++r) {
    // The scan's pointer goes back to 0 behind the last Location, and the block with it.
    const int index = fields.MsgPointer + r;
    ShowRegister(run, index, modbus_frame::RegisterAt(raw, static_cast<std::size_t>(r)));
    run.RecordValue(index);
    FinishLocation(run, index);
  }
}

void TakeWriteAcknowledge(ProtocolRun& run) {
  RunFields& fields = run.fields();
  const int registers = fields.Function_code == modbus_frame::kWriteRegister ? 1 : fields.Nreg;
  for (int r = 0; r < registers; ++r) {
    const int index = fields.MsgPointer + r;
    const Location& location = run.locations()[index];
    run.ShowValue(index, location.ScanFlags > 0 ? HexDigits(location.RawValue, 4) : "-");
  }
  // The next poll reads it back. An acknowledge that comes again goes back no further than to where
  // the scan begins.
  if (fields.MsgPointer > 0) --fields.MsgPointer;
}

void TakeSound(ProtocolRun& run, std::string_view raw) {
  const std::uint8_t function = run.fields().Function_code;
  if (modbus_frame::IsRead(function)) {
    TakeRead(run, raw);
  } else if (modbus_frame::IsWrite(function)) {
    TakeWriteAcknowledge(run);
  } else if (modbus_frame::IsException(function)) {
    run.ShowPanel(kConnectionPanel,
                  "Exception code:" + std::to_string(modbus_frame::ExceptionCode(raw)));
  }
}

}  // namespace

int ModbusProtocol::ReceivePause(int baud_index) const {
  const bool listed = baud_index >= 0 && baud_index < static_cast<int>(kPauses.size());
  return listed ? kPauses[static_cast<std::size_t>(baud_index)] : kShortestPause;
}

int ModbusProtocol::ResponseLength(const RunFields& fields) const {
  return modbus_frame::ExpectedLength(fields.Function_code, fields.Nreg);
}

bool CheckMessage(std::string_view raw, std::uint8_t Function_code, std::int16_t Nreg) {
  return !modbus_frame::IsGood(raw, Function_code, Nreg);
}

void Modbus_Protocol(ProtocolRun& run) {
  RunFields& fields = run.fields();
  run.Comm().SetRThreshold(modbus_frame::kShortestResponse);
  StepToNextScannedLocation(run, true);
  const int index = fields.MsgPointer;
  run.LogRequest(index);
  const Location& location = run.locations()[index];
  fields.Function_code = FunctionOf(location);
  fields.Nreg = location.NumReg;
  if (!run.NameVisible(index)) {
    fields.message_received = true;
    return;
  }
  std::string held;
  if (fields.CommRunning) {
    if (fields.Nreg > 0) ShowPolledLocation(run, index);
    if ((location.ScanFlags & kContinuousWrite) != 0) {
      for (int r = 0; r < fields.Nreg; ++r) held += HeldBytes(location);
    }
  }
  fields.building = true;
  // Also without a run, unlike the other protocols: the port alone decides.
  if (run.Comm().PortOpen()) {
    run.Comm().Output(modbus_frame::ReadRequest(location.LocSlaveAddress, fields.Function_code,
                                                location.Address, fields.Nreg, held));
  }
  SetMessageTimeout(run);  // which does not start: only the watchdog ends a silence
}

void ModbusSlaveResponse(ProtocolRun& run) {
  RunFields& fields = run.fields();
  const std::string raw = TakeInput(run);
  if (!raw.empty()) fields.Function_code = modbus_frame::FunctionOf(raw);
  const bool is_good = !CheckMessage(raw, fields.Function_code, fields.Nreg);
  const int length = modbus_frame::ExpectedLength(fields.Function_code, fields.Nreg);
  if (!is_good || static_cast<int>(raw.size()) != length) run.DoubtTheLine();
  if (is_good) TakeSound(run, raw);
  EndExchange(fields);
}

void BuildModbusWriteMessage(ProtocolRun& run, int index, const std::string& value) {
  RunFields& fields = run.fields();
  const Location& location = run.locations()[index];
  fields.Nreg = static_cast<std::int16_t>(fields.StoredRegisters.size());
  std::string frame;
  if (fields.Function_code == modbus_frame::kWriteRegister) {
    frame = modbus_frame::WriteOneRequest(location.LocSlaveAddress, location.Address, value,
                                          location.SelectByte);
  } else if (fields.Function_code == modbus_frame::kWriteRegisters) {
    frame = modbus_frame::WriteSeveralRequest(location.LocSlaveAddress, location.Address,
                                              fields.StoredRegisters);
  } else {
    frame = modbus_frame::FinishFrame(
        modbus_frame::Begin(location.LocSlaveAddress, fields.Function_code, location.Address));
  }
  fields.building = true;
  SendWriteFrame(run, frame);
  AwaitWriteAnswer(run, index);
  run.Comm().SetRThreshold(modbus_frame::kShortestResponse);
}

}  // namespace tarnlink
