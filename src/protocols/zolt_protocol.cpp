#include "protocols/zolt_protocol.h"

#include <cstdint>
#include <utility>

#include "common/numbers.h"
#include "common/run_time_error.h"
#include "common/text.h"
#include "protocols/exchange.h"
#include "protocols/frame_bytes.h"
#include "protocols/scan_order.h"
#include "protocols/zolt_frame.h"

namespace tarnlink {

namespace {

// A Location that is a memory address and not a data ID.
bool IsMemory(const Location& location) { return location.Specification == 0; }

// The character that goes out for the slave, and must come back.
std::string SlaveOf(const Location& location) {
  return location.LocSlaveAddress.empty() ? "0" : location.LocSlaveAddress.substr(0, 1);
}

std::uint8_t TypeByte(int kind, int data_class) {
  const int type = kind + data_class;
  if (type > UINT8_MAX) {
    throw RunTimeError(kOverflow,
                       "The class " + std::to_string(data_class) + " cannot be written.");
  }
  return static_cast<std::uint8_t>(type);
}

// The address of the byte behind this one, as a number of 16 bits with a sign.
std::string NextAddress(const std::string& address) {
  const int next = static_cast<std::int16_t>(HexNumber(address)) + 1;
  // Sent as 8000 it would reach the EEPROM.
  if (next > INT16_MAX) throw RunTimeError(kOverflow, "There is no byte behind " + address + ".");
  return Hex(static_cast<std::int16_t>(next));
}

// The type byte of the next request, with what has to be remembered until its answer.
std::uint8_t TypeOfPoll(RunFields& fields, const Location& location) {
  const bool writes = (location.ScanFlags & kContinuousWrite) != 0;
  fields.write_message = writes;
  if (!IsMemory(location))
    return TypeByte(writes ? zolt_frame::kWrite : zolt_frame::kRead, location.Class);
  if (!writes) return zolt_frame::kReadMemory;
  if (location.StorageType >= kUnsignedWord) fields.SendSecondByte = true;
  return zolt_frame::kWriteMemory;
}

// A read of a data ID carries the value that the Location has, not zero.
std::string PollFrame(std::uint8_t type, const Location& location) {
  if (IsMemory(location)) {
    return zolt_frame::Request(type, SlaveOf(location), zolt_frame::kReadMemoryId,
                               location.Address);
  }
  return zolt_frame::Request(type, SlaveOf(location), location.Address,
                             HexDigits(location.RawValue, 4));
}

// While it lives a write is one of the second byte, and afterwards no longer, however it ended.
class SecondByteWrite {
 public:
  explicit SecondByteWrite(RunFields& fields) : fields_(fields) {
    fields_.ChangeVariableToSecondByteValues = true;
  }
  ~SecondByteWrite() {
    fields_.SendSecondByte = false;
    fields_.ChangeVariableToSecondByteValues = false;
  }
  SecondByteWrite(const SecondByteWrite&) = delete;
  SecondByteWrite& operator=(const SecondByteWrite&) = delete;

 private:
  RunFields& fields_;
};

// Any answer to a write will do: neither its kind nor its CRC is looked at. True if the second half
// of a word has gone out after it.
bool TakeWriteAnswer(ProtocolRun& run) {
  RunFields& fields = run.fields();
  const int index = fields.MsgPointer;
  const Location& location = run.locations()[index];
  if (location.ScanFlags != 0) {
    run.ShowValue(index, HexDigits(location.RawValue, 4));
  } else {
    run.ShowValue(index, "-");
    // The next poll reads it back. What answers a write of the run before goes back no further than
    // to where the scan begins.
    if (index > 0) --fields.MsgPointer;
  }
  // Without a dialog so far there is no second byte, only that of the hidden template.
  if (!fields.SendSecondByte || fields.SecondByteIndex == 0) return false;
  fields.message_received = false;
  {
    const SecondByteWrite second_byte(fields);
    BuildKEM3WriteMessage(run, fields.SecondByteIndex, fields.SecondByteValue);
  }
  if (!fields.CommRunning) return true;
  run.Comm_Timer().SetEnabled(true);
  run.tmr_noresponse().SetEnabled(true);
  return true;
}

bool IsAccepted(std::uint8_t type, const Location& location) {
  if (IsMemory(location)) {
    return type == zolt_frame::kReadAcknowledge + zolt_frame::kMemoryClass ||
           type == zolt_frame::kWriteAcknowledge + zolt_frame::kMemoryClass;
  }
  const std::uint8_t kind = zolt_frame::KindOf(type);
  return kind == zolt_frame::kReadAcknowledge || kind == zolt_frame::kWriteAcknowledge;
}

// A frame of exactly the length of one, sound, and of a kind that only slaves send.
bool IsAnswer(std::string_view raw) {
  if (raw.size() != zolt_frame::kLength || CheckMessage(raw)) return false;
  switch (zolt_frame::KindOf(zolt_frame::TypeOf(raw))) {
    case zolt_frame::kReadAcknowledge:
    case zolt_frame::kWriteAcknowledge:
    case zolt_frame::kCorruptedMessage:
    case zolt_frame::kOutsideRange:
    case zolt_frame::kUnknownDataId:
      return true;
    default:
      return false;
  }
}

// Answers of memory do not say whose they are.
bool IsForSomebodyElse(std::string_view raw, const Location& location) {
  return !IsMemory(location) && (zolt_frame::Text(raw, zolt_frame::kId) != location.Address ||
                                 zolt_frame::Text(raw, zolt_frame::kSlave) != SlaveOf(location));
}

void ShowDecoded(ProtocolRun& run, int index, std::string_view raw) {
  Location& location = run.locations()[index];
  const auto high = static_cast<std::uint8_t>(zolt_frame::Number(raw, zolt_frame::kDataHigh));
  const auto low = static_cast<std::uint8_t>(zolt_frame::Number(raw, zolt_frame::kDataLow));
  const DecodedValue value = SelectValue(location, high, low, IsMemory(location));
  location.RawValue = value.RawValue;
  // Of a whole word no bit is taken: one that is to be shown is the last that was.
  const bool takes_bit = IsMemory(location) ? location.StorageType == kBit : !value.is_word;
  if (takes_bit) run.fields().BitState = IsBitSet(value.RawValue, location.BitAddress);
  run.ShowValue(index, location.StorageType == kBit ? BitText(run.fields().BitState)
                                                    : DecodedValueText(location, value));
}

// True once the exchange has ended.
bool TakeReadAnswer(ProtocolRun& run, std::string_view raw) {
  const int index = run.fields().MsgPointer;
  const Location& location = run.locations()[index];
  if (raw.empty()) return true;
  const std::uint8_t type = zolt_frame::TypeOf(raw);
  // Ahead of the look at the CRC: users want to know of an ID that is not there, and a frame that
  // is damaged besides is asked for again.
  if (zolt_frame::KindOf(type) == zolt_frame::kUnknownDataId) {
    run.ShowValue(index, "can not read");
    run.LogUnreadable(index);
  }
  if (!IsAccepted(type, location) || CheckMessage(raw)) return true;
  if (IsForSomebodyElse(raw, location)) {
    run.tmr_noresponse().SetEnabled(true);
    return false;
  }
  ShowDecoded(run, index, raw);
  run.RecordValue(index);
  FinishLocation(run, index);
  return true;
}

std::string DataIdWrite(const Location& location, const std::string& value) {
  std::string data = value;
  if (location.SelectByte == kMsb) data = value + "00";
  if (location.SelectByte == kLsb) data = "00" + value;
  return zolt_frame::Request(TypeByte(zolt_frame::kWrite, location.Class), SlaveOf(location),
                             location.Address, data);
}

// One byte. Empty for a page that may not be written.
std::string MemoryWrite(const RunFields& fields, const Location& location, std::string& value) {
  std::string address = location.Address;
  if (fields.ChangeVariableToSecondByteValues) {
    address = NextAddress(address);
    value = fields.SecondByteValue;
  }
  const std::string_view alias = zolt_frame::WriteAlias(Mid(address, 1, 2));
  value = Right(value, 2);
  if (alias.empty()) return {};
  return zolt_frame::Request(zolt_frame::kWriteMemory, SlaveOf(location), alias,
                             Mid(address, 3, 2) + RightAlign(value, 2));
}

}  // namespace

bool CheckMessage(std::string_view raw) { return !zolt_frame::IsGood(raw); }

void KEM3_Protocol(ProtocolRun& run) {
  RunFields& fields = run.fields();
  run.Comm().SetRThreshold(zolt_frame::kLength);
  StepToNextScannedLocation(run, false);
  const int index = fields.MsgPointer;
  run.LogRequest(index);
  const Location& location = run.locations()[index];
  const std::uint8_t type = TypeOfPoll(fields, location);
  if (!run.NameVisible(index)) {
    fields.message_received = true;
    return;
  }
  if (!fields.CommRunning) return;
  ShowPolledLocation(run, index);
  if (run.Comm().PortOpen()) run.Comm().Output(PollFrame(type, location));
  SetMessageTimeout(run);  // which does not start: only the watchdog ends a silence
}

void KEM3SlaveResponse(ProtocolRun& run) {
  const std::string raw = TakeInput(run);
  if (!IsAnswer(raw)) run.DoubtTheLine();
  if (run.fields().write_message) {
    if (TakeWriteAnswer(run)) return;
  } else if (!TakeReadAnswer(run, raw)) {
    return;
  }
  EndExchange(run.fields());
}

void BuildKEM3WriteMessage(ProtocolRun& run, int index, std::string& value) {
  const Location& location = run.locations()[index];
  const std::string frame = IsMemory(location) ? MemoryWrite(run.fields(), location, value)
                                               : DataIdWrite(location, value);
  if (frame.empty()) {
    const bool was_running = run.fields().CommRunning;
    run.fields().SendSecondByte = false;  // nor does the second half of a word go out
    run.TellProtectedArea();
    // The run may have ended behind the box, and nothing is to begin it again.
    if (was_running && !run.fields().CommRunning) return;
  } else {
    SendWriteFrame(run, frame);
  }
  // Also after a refusal: the run waits for an answer that does not come, until the watchdog.
  AwaitWriteAnswer(run, index);
}

}  // namespace tarnlink
