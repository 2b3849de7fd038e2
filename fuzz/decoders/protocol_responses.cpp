#include "fuzz/claim.h"
#include "fuzz/decoders/decoders.h"
#include "fuzz/decoders/line_bytes.h"
#include "fuzz/decoders/line_run.h"
#include "protocols/frame_bytes.h"
#include "protocols/modbus_frame.h"
#include "protocols/modbus_protocol.h"
#include "protocols/tarnlink_protocol.h"
#include "protocols/zolt_frame.h"
#include "protocols/zolt_protocol.h"

namespace tarnlink {
namespace {

constexpr int kMostExchanges = 24;

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
  if (request.size() < 6) return {};
  std::string answer = request.substr(0, 6) + HexDigits(input.Word(), input.Coin() ? 4 : 2);
  return answer + "00\x03";
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

// --- Whether a value may be shown of these bytes ---

bool MayShowZolt(const LineRun&, std::string_view raw, const Location& location) {
  // That an ID is unknown is shown even of a damaged frame; it is no value.
  const bool is_unknown = raw.size() > zolt_frame::kTypeOffset &&
                          zolt_frame::KindOf(zolt_frame::TypeOf(raw)) == zolt_frame::kUnknownDataId;
  if (is_unknown) return true;
  if (!IsSoundZolt(raw)) return false;
  return location.Specification == 0 || raw.substr(3, 4) == location.Address;
}

bool MayShowModbus(const LineRun&, std::string_view raw, const Location& location) {
  if (raw.size() < 4) return false;
  const int length =
      modbus_frame::ExpectedLength(static_cast<std::uint8_t>(raw[1]), location.NumReg);
  const std::string counted(raw.substr(0, static_cast<std::size_t>(length) - 2));
  return SoundModbus(counted).ends_with(raw.substr(raw.size() - 2));
}

bool MayShowTarnlink(const LineRun&, std::string_view, const Location&) { return true; }

using Answerer = std::string (*)(FuzzInput& input, const std::string& request);
using Judge = bool (*)(const LineRun& run, std::string_view raw, const Location& location);

// A run that only reads: polls, and what comes for their answers.
void RunReads(FuzzInput& input, int index, Protocol& protocol, Answerer answerer, Judge may_show) {
  LineRun run(input, index);
  for (int i = 0; i < kMostExchanges && !input.AtEnd(); ++i) {
    run.port.sent.clear();
    run.Poll(protocol);
    if (!run.fields().CommRunning) return;
    const std::string sent = run.port.sent;
    const std::string raw = OnTheLine(input, answerer(input, sent));
    const Location asked = run.locations()[run.fields().MsgPointer];
    const bool writes = run.fields().write_message;
    run.shown.clear();
    run.recorded = 0;
    run.Answer(protocol, raw);
    if (writes) continue;  // acknowledges of continuous writes carry no value
    Claim(run.recorded == 0 || may_show(run, raw, asked), "no value of a frame whose check fails");
    Claim(run.shown.size() <= LineRun::kMostRegisters, "no more values than registers");
  }
}

void RunTarnlink(std::string_view bytes) {
  FuzzInput input(bytes);
  TarnlinkProtocol protocol;
  RunReads(input, kTarnlinkProtocol, protocol, TarnlinkAnswer, MayShowTarnlink);
}
void RunZolt(std::string_view bytes) {
  FuzzInput input(bytes);
  ZoltProtocol protocol;
  RunReads(input, kZoltProtocol, protocol, ZoltAnswer, MayShowZolt);
}
void RunModbus(std::string_view bytes) {
  FuzzInput input(bytes);
  ModbusProtocol protocol;
  RunReads(input, kModbusProtocol, protocol, ModbusAnswer, MayShowModbus);
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
