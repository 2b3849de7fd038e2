#include <algorithm>
#include <cstdio>

#include "fuzz/claim.h"
#include "fuzz/decoders/decoders.h"
#include "fuzz/decoders/line_bytes.h"
#include "fuzz/decoders/line_run.h"
#include "protocols/frame_bytes.h"
#include "protocols/modbus_frame.h"
#include "protocols/modbus_protocol.h"
#include "protocols/tarnlink_frame.h"
#include "protocols/tarnlink_protocol.h"
#include "protocols/zolt_frame.h"
#include "protocols/zolt_protocol.h"

namespace tarnlink {
namespace {

constexpr int kMostExchanges = 24;
constexpr std::size_t kTarnlinkData = 6;  // behind start, command and address

// --- What the asked slave says, as it should ---

std::string ZoltAnswer(FuzzInput& input, const std::string& request) {
  if (request.size() != zolt_frame::kLength) return {};
  std::string body = request.substr(1, 10);
  const int kind =
      (static_cast<unsigned char>(body[0]) & zolt_frame::kWrite) + zolt_frame::kReadAcknowledge;
  body[0] = static_cast<char>(kind + zolt_frame::ClassOf(static_cast<std::uint8_t>(body[0])));
  body.replace(6, 4, HexDigits(input.Word(), 4));
  return SoundZolt(body);
}

std::string TarnlinkAnswer(FuzzInput& input, const std::string& request) {
  if (request.size() < kTarnlinkData) return {};
  std::string answer =
      request.substr(0, kTarnlinkData) + HexDigits(input.Word(), input.Coin() ? 4 : 2);
  int sum = 0;
  for (const char byte : answer.substr(1)) sum += static_cast<unsigned char>(byte);
  AppendHexDigits(answer, sum & 0xFF, 2);
  return answer + "\x03";
}

std::string ModbusAnswer(FuzzInput& input, const std::string& request) {
  if (request.size() < 8) return {};
  const auto function = static_cast<std::uint8_t>(request[1]);
  std::string answer = request.substr(0, 2);
  if (!modbus_frame::IsRead(function)) return SoundModbus(request.substr(0, 6));
  const int registers = static_cast<unsigned char>(request[5]);
  answer += static_cast<char>(2 * registers);
  const char byte = static_cast<char>(input.Byte());
  answer.append(2 * static_cast<std::size_t>(registers), byte);
  return SoundModbus(answer);
}

// --- What may be made of the bytes that came ---

// What a run has made of them, for the Location that was asked.
struct Exchange {
  LineRun& run;
  const Location& asked;
  const std::string& answer;  // that the slave gave
  const std::string& raw;     // what came of it
};

void ClaimOfZolt(const Exchange& one) {
  const std::string& raw = one.raw;
  const bool is_sound = IsSoundZolt(raw);
  // That an ID is unknown is shown even of a damaged frame; it is no value.
  const bool is_unknown = raw.size() > zolt_frame::kTypeOffset &&
                          zolt_frame::KindOf(zolt_frame::TypeOf(raw)) == zolt_frame::kUnknownDataId;
  const bool is_of_asked =
      one.asked.Specification == 0 || (is_sound && raw.substr(3, 4) == one.asked.Address);
  Claim(one.run.recorded == 0 || (is_sound && !is_unknown && is_of_asked),
        "no value of a frame whose check fails, of another ID or of one that is not there");
  if (!is_sound || raw.size() != zolt_frame::kLength) {
    Claim(one.run.doubts == 1, "what is no frame puts the line in doubt");
  } else if (raw == one.answer) {
    Claim(one.run.doubts == 0, "a sound answer does not");
  }
}

void ClaimOfModbus(const Exchange& one) {
  const std::string& raw = one.raw;
  if (raw.size() < 4) {
    Claim(one.run.recorded == 0, "no value of a part of an answer");
    return;
  }
  const int length =
      modbus_frame::ExpectedLength(static_cast<std::uint8_t>(raw[1]), one.asked.NumReg);
  const std::string counted = raw.substr(0, static_cast<std::size_t>(length) - 2);
  const std::string check = raw.substr(raw.size() - 2);
  Claim(one.run.recorded == 0 || SoundModbus(counted).ends_with(check),
        "no value of an answer whose check fails");
  if (SoundModbus(raw.substr(0, raw.size() - 2)) != raw) {
    Claim(one.run.doubts == 1, "an answer whose check fails puts the line in doubt");
  } else if (raw == one.answer && (one.asked.ScanFlags & kContinuousWrite) == 0) {
    Claim(one.run.doubts == 0, "a sound one does not");
  }
}

// "5A" of a byte, "FFFF8FED" of a word, as the slave means it.
std::string TextOfTarnlink(const std::string& digits) {
  const auto number = static_cast<std::int32_t>(std::stoul(digits, nullptr, 16));
  char text[12];
  std::snprintf(
      text, sizeof text, "%X",
      static_cast<unsigned>(digits.size() > 2 ? static_cast<std::int16_t>(number) : number));
  return text;
}

// Nothing is checked but the length.
void ClaimOfTarnlink(const Exchange& one) {
  const int length = one.run.port.RThreshold();
  Claim(one.run.doubts == (static_cast<int>(one.raw.size()) == length ? 0 : 1),
        "a line is in doubt where the length is wrong");
  Claim(one.run.recorded <= 1, "an answer is one value");
  if (one.raw != one.answer || one.raw.empty() || one.run.texts.empty()) return;
  if (one.asked.Representation != kHexadecimal) return;
  const std::size_t digits = length == tarnlink_frame::kByteResponseLength ? 2 : 4;
  Claim(one.run.texts.front() == TextOfTarnlink(one.raw.substr(kTarnlinkData, digits)),
        "what the slave said is shown");
}

using Answerer = std::string (*)(FuzzInput& input, const std::string& request);
using Judge = void (*)(const Exchange& one);

// A value is one of the Location that was asked, or of the block that begins there. Behind the last
// Location a block goes on at the first.
void ClaimOfPlaces(const LineRun& run, int pointer, const Location& asked, bool is_block) {
  const int most = is_block ? std::max<int>(asked.NumReg, 1) : 1;
  Claim(static_cast<int>(run.shown.size()) <= most, "no more values than registers");
  for (std::size_t i = 0; i < run.shown.size(); ++i) {
    const int place = static_cast<int>(i);
    Claim(run.shown[i] == pointer + place || (is_block && run.shown[i] == place),
          "a value is of what was asked");
  }
}

// A run that only reads: polls, and what comes for their answers.
void RunReads(FuzzInput& input, int index, Protocol& protocol, Answerer answerer, Judge judge) {
  LineRun run(input, index);
  for (int i = 0; i < kMostExchanges && !input.AtEnd(); ++i) {
    run.port.sent.clear();
    run.Poll(protocol);
    if (!run.fields().CommRunning) return;
    const std::string answer = answerer(input, run.port.sent);
    const std::string raw = OnTheLine(input, answer);
    const int pointer = run.fields().MsgPointer;
    const Location asked = run.locations()[pointer];
    const bool writes = run.fields().write_message;
    run.Forget();
    run.Answer(protocol, raw);
    if (writes) continue;  // acknowledges of continuous writes carry no value
    judge({run, asked, answer, raw});
    ClaimOfPlaces(run, pointer, asked, index == kModbusProtocol);
  }
}

void RunTarnlink(std::string_view bytes) {
  FuzzInput input(bytes);
  TarnlinkProtocol protocol;
  RunReads(input, kTarnlinkProtocol, protocol, TarnlinkAnswer, ClaimOfTarnlink);
}
void RunZolt(std::string_view bytes) {
  FuzzInput input(bytes);
  ZoltProtocol protocol;
  RunReads(input, kZoltProtocol, protocol, ZoltAnswer, ClaimOfZolt);
}
void RunModbus(std::string_view bytes) {
  FuzzInput input(bytes);
  ModbusProtocol protocol;
  RunReads(input, kModbusProtocol, protocol, ModbusAnswer, ClaimOfModbus);
}

std::vector<std::string> Seeds() {
  using namespace std::string_literals;
  return {"\0\x86\xA0\1\0\1\x34\x12\7\x34\x12\7"s,
          "\2\x87\xA0\1\0\2\x07\x12\x80\0\3\x81\x6D\5\2\1\1\2\7\1\2\7\1\2\7"s,
          "\1\x40\xA0\1\4\3\x80\x12\x80\0\1\1\7\1\7\1\0\3\2\1\7"s,
          "\0\x87\xA0\1\2\1\x34\x12\7\x34\x12\2\1\1\7"s};
}

}  // namespace

FuzzTarget TarnlinkResponsesTarget() { return {"tarnlink_responses", RunTarnlink, Seeds}; }
FuzzTarget ZoltResponsesTarget() { return {"zolt_responses", RunZolt, Seeds}; }
FuzzTarget ModbusResponsesTarget() { return {"modbus_responses", RunModbus, Seeds}; }

}  // namespace tarnlink
