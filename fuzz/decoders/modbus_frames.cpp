#include "common/run_time_error.h"
#include "fuzz/claim.h"
#include "fuzz/decoders/decoders.h"
#include "fuzz/decoders/line_bytes.h"
#include "protocols/frame_bytes.h"
#include "protocols/modbus_frame.h"

namespace tarnlink {
namespace {

constexpr int kMostRegisters = 125;

// Of bytes that come for a response. The last two are the check of as many as the response ought to
// have, or of all of one that is too short.
void ClaimOfResponse(std::string_view raw, std::uint8_t function, int registers) {
  const bool is_good = modbus_frame::IsGood(raw, function, registers);
  const int length = modbus_frame::ExpectedLength(function, registers);
  bool is_sound = length >= 2 && raw.size() >= 2;
  if (is_sound) {
    const std::string counted(raw.substr(0, static_cast<std::size_t>(length) - 2));
    is_sound = SoundModbus(counted).ends_with(raw.substr(raw.size() - 2));
  }
  Claim(is_good == is_sound, "a response is good if its check holds");
  const auto last = static_cast<std::size_t>(registers > 0 ? registers - 1 : 0);
  bool is_there = true;
  try {
    modbus_frame::RegisterAt(raw, last);
  } catch (const RunTimeError&) {
    is_there = false;
  }
  Claim(is_there == (raw.size() >= 5 + 2 * last), "a register is there or it is not");
}

void ClaimOfRequests(FuzzInput& input) {
  const std::string slave(input.ShortText().substr(0, 4));
  const std::string address(input.ShortText().substr(0, 6));
  const std::string value(input.ShortText().substr(0, 6));
  const int registers = static_cast<std::int16_t>(input.Word());
  const std::string read =
      modbus_frame::ReadRequest(slave, modbus_frame::kReadHoldingRegisters, address, registers);
  Claim(read.size() == 8 && modbus_frame::IsGood(read, modbus_frame::kWriteRegister, 1),
        "a read has eight bytes and its check");
  const std::uint8_t select = input.Byte();
  const std::string one = modbus_frame::WriteOneRequest(slave, address, value, select);
  Claim(one.size() == (select <= 2 ? 8U : 6U), "a write of one register has one register");
  std::vector<std::string> values(static_cast<std::size_t>(input.Below(21)), value);
  const std::string several = modbus_frame::WriteSeveralRequest(slave, address, values);
  Claim(several.size() == 9 + 2 * values.size(), "a write of several has all of them");
  for (const std::string& frame : {read, one, several}) {
    Claim(SoundModbus(frame.substr(0, frame.size() - 2)) == frame, "a request has its check");
  }
  Claim(modbus_frame::RegisterBytes(value).size() == 2, "a register is two bytes");
}

void Run(std::string_view bytes) {
  FuzzInput input(bytes);
  const int registers = 1 + input.Byte() % kMostRegisters;
  std::string answer = {1, modbus_frame::kReadHoldingRegisters, static_cast<char>(2 * registers)};
  const std::uint16_t first = input.Word();
  for (int i = 0; i < registers; ++i) {
    answer += modbus_frame::RegisterBytes(HexDigits(first + i, 4));
  }
  const std::string sound = SoundModbus(answer);
  Claim(modbus_frame::FinishFrame(answer) == sound, "a frame has the same check whoever makes it");
  Claim(modbus_frame::IsGood(sound, modbus_frame::kReadHoldingRegisters, registers),
        "a sound response is good");
  const auto index = static_cast<std::size_t>(input.Byte() % registers);
  const auto [high, low] = modbus_frame::RegisterAt(sound, index);
  Claim(high * 256 + low == (first + static_cast<int>(index)) % 0x10000, "its registers come back");
  std::string damaged = sound;
  const std::size_t at = input.Byte() % sound.size();
  damaged[at] = static_cast<char>(damaged[at] ^ (1 << input.Below(8)));
  Claim(!modbus_frame::IsGood(damaged, modbus_frame::kReadHoldingRegisters, registers),
        "one wrong bit is seen");

  ClaimOfRequests(input);
  ClaimOfResponse(OnTheLine(input, sound), modbus_frame::kReadHoldingRegisters, registers);
  const int other = static_cast<std::int16_t>(input.Word());
  ClaimOfResponse(sound, modbus_frame::kReadInputRegisters, other);
  const std::string_view raw = input.Rest();
  ClaimOfResponse(raw, raw.empty() ? 0 : static_cast<std::uint8_t>(raw.front()), other);
}

std::vector<std::string> Seeds() {
  using namespace std::string_literals;
  return {"\2\x2A\0\1\3\4"s + "\1" + "1" + "\4" + "0010" + "\4" + "00FF" + "\3\0\2\2\6\2\0\2",
          std::string(64, '\0'), "\1\1\1\1\1\1\1\1\1\1\1\1\1\1\1\1\1\1\1\1"};
}

}  // namespace

FuzzTarget ModbusFramesTarget() { return {"modbus_frames", Run, Seeds}; }

}  // namespace tarnlink
