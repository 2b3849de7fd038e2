#include <algorithm>
#include <array>

#include "fuzz/claim.h"
#include "fuzz/decoders/decoders.h"
#include "fuzz/decoders/line_bytes.h"
#include "fuzz/decoders/line_run.h"
#include "protocols/frame_bytes.h"
#include "protocols/modbus_protocol.h"
#include "protocols/tarnlink_protocol.h"
#include "protocols/zolt_frame.h"
#include "protocols/zolt_protocol.h"

namespace tarnlink {
namespace {

constexpr int kMostSteps = 32;

std::string AcknowledgeOf(int protocol, const std::string& sent) {
  if (protocol == kModbusProtocol) return SoundModbus(sent.substr(0, 6));
  if (protocol == kTarnlinkProtocol) return sent;
  if (sent.size() != zolt_frame::kLength) return {};
  std::string body = sent.substr(1, 10);
  body[0] = static_cast<char>((body[0] & zolt_frame::kClassMask) | zolt_frame::kWriteAcknowledge);
  return SoundZolt(body);
}

void Write(LineRun& run, FuzzInput& input, Protocol& protocol, int index) {
  RunFields& fields = run.fields();
  const int target = 1 + input.Below(fields.MaxId);
  fields.StoredRegisters.assign(static_cast<std::size_t>(input.Below(LineRun::kMostRegisters + 1)),
                                HexDigits(input.Word(), 4));
  if (index == kModbusProtocol) {
    constexpr std::array<std::uint8_t, 3> kFunctions = {6, 16, 3};
    fields.Function_code = kFunctions[static_cast<std::size_t>(input.Below(3))];
  }
  if (index == kZoltProtocol && input.Coin()) {
    fields.SendSecondByte = true;
    fields.SecondByteIndex = target;
    fields.SecondByteValue = HexDigits(input.Byte(), 2);
  }
  std::string value = HexDigits(input.Word(), input.Coin() ? 4 : 2);
  run.Do([&] { protocol.SendWrite(run, target, value); });
}

// The bytes come for what was sent last. None of them shows more than one register, or those of a
// block from where the scan stands on.
void Answer(LineRun& run, Protocol& protocol, int index, std::string bytes) {
  run.Forget();
  const int pointer = run.fields().MsgPointer;
  const int most = index == kModbusProtocol ? std::max<int>(run.fields().Nreg, 1) : 1;
  run.Answer(protocol, std::move(bytes));
  Claim(static_cast<int>(run.shown.size()) <= most, "an answer shows its own registers");
  for (std::size_t i = 0; i < run.shown.size(); ++i) {
    const int place = static_cast<int>(i);
    // Behind the last Location a block that is read goes on at the first.
    Claim(run.shown[i] == pointer + place || (index == kModbusProtocol && run.shown[i] == place),
          "and no other ones");
  }
}

// Writes and polls in any order, and whatever comes for their acknowledges: none, one or many.
void Run(std::string_view bytes) {
  FuzzInput input(bytes);
  const int index = input.Below(kProtocolCount);
  TarnlinkProtocol tarnlink;
  ZoltProtocol zolt;
  ModbusProtocol modbus;
  const std::array<Protocol*, kProtocolCount> protocols = {&tarnlink, &zolt, &modbus};
  Protocol& protocol = *protocols[static_cast<std::size_t>(index)];
  LineRun run(input, index);
  for (int step = 0; step < kMostSteps && !input.AtEnd(); ++step) {
    switch (input.Below(8)) {
      case 0:
        run.Forget();
        run.Poll(protocol);
        Claim(run.shown.empty(), "a poll shows nothing");
        break;
      case 1:
      case 2:
        run.Forget();
        Write(run, input, protocol, index);
        Claim(run.shown.empty() && run.recorded == 0, "nor does a write");
        break;
      case 3:
        Answer(run, protocol, index, OnTheLine(input, AcknowledgeOf(index, run.port.sent)));
        break;
      case 4:
        Answer(run, protocol, index, std::string(input.ShortText()));
        break;
      default:
        Answer(run, protocol, index, AcknowledgeOf(index, run.port.sent));
        break;
    }
  }
}

std::vector<std::string> Seeds() {
  using namespace std::string_literals;
  return {"\2\1\x86\xA0\1\0\1\x87\xA1\1\0\1\1\0\1\x34\x12\0\x34\x12\1\5\5\0\5"s,
          "\1\1\x06\x10\xF4\0\1\x87\xA1\1\0\1\1\0\0\0\0\1\x55\x34\x12\1\5\5\0\5"s,
          "\0\1\x06\x10\xF4\0\1\x87\xA1\1\0\1\1\0\0\0\0\x34\x12\1\5\5\0\5"s};
}

}  // namespace

FuzzTarget WriteAcknowledgesTarget() { return {"write_acknowledges", Run, Seeds}; }

}  // namespace tarnlink
