#include "fuzz/forms/answers.h"

#include <array>

#include "fuzz/decoders/line_bytes.h"
#include "protocols/frame_bytes.h"

namespace tarnlink {
namespace {

constexpr std::size_t kZoltLength = 16;
constexpr std::size_t kTarnlinkHead = 6;  // with the address
constexpr std::size_t kShortestModbus = 8;

}  // namespace

std::string ZoltSlave(FuzzInput& input, const std::string& request) {
  if (request.size() != kZoltLength) return {};
  constexpr std::array<int, 8> kKinds = {0x10, 0x10, 0x10, 0x10, 0x10, 0x20, 0x40, 0x60};
  const auto type = static_cast<unsigned char>(request[1]);
  std::string body = request.substr(1, 10);
  const std::uint8_t how = input.Byte();
  const int kind = kKinds[how & 7];
  body[0] = static_cast<char>((kind == 0x10 ? (type & 0x80) + kind : kind) + (type & 7));
  // To a write what was written, to a read a value.
  if ((type & 0x80) == 0 || how >= 0xF0) body.replace(6, 4, HexDigits(input.Word(), 4));
  return SoundZolt(body);
}

std::string TarnlinkSlave(FuzzInput& input, const std::string& request) {
  if (request.size() < kTarnlinkHead) return {};
  const bool is_word = request[1] == 1;
  const std::string digits = HexDigits(input.Word(), is_word ? 4 : 2);
  std::string answer = request.substr(0, kTarnlinkHead) + digits;
  unsigned sum = 0;
  for (const char byte : answer.substr(1)) sum += static_cast<unsigned char>(byte);
  AppendHexDigits(answer, static_cast<std::int32_t>(sum & 0xFF), 2);
  return answer + "\x03";
}

std::string ModbusSlave(FuzzInput& input, const std::string& request) {
  if (request.size() < kShortestModbus) return {};
  const std::uint8_t how = input.Byte();
  std::string answer = request.substr(0, 2);
  if (how >= 0xF0) {
    answer[1] = static_cast<char>(answer[1] | '\x80');
    answer += static_cast<char>(how & 7);
    return SoundModbus(answer);
  }
  if (request[1] == 6 || request[1] == 16) return SoundModbus(request.substr(0, 6));
  const auto registers = static_cast<unsigned char>(request[5]) % 126;
  answer += static_cast<char>(2 * registers);
  for (int i = 0; i < registers; ++i) {
    answer += static_cast<char>(how);
    answer += static_cast<char>(how + i);
  }
  return SoundModbus(answer);
}

std::size_t ZoltAnswerLength(const std::string&) { return kZoltLength; }

std::size_t AnyAnswerLength(const std::string& request) {
  constexpr std::size_t kTarnlinkByte = 11;
  constexpr std::size_t kTarnlinkWord = 13;
  constexpr std::size_t kModbusRead = 5;  // without its registers
  if (request.size() < kTarnlinkHead) return 0;
  if (request[0] == '\r' && request.size() == kZoltLength) return kZoltLength;
  if (request[0] == 4) return request[1] <= 2 ? kTarnlinkWord : kTarnlinkByte;
  if (request[1] != 3 && request[1] != 4) return kShortestModbus;
  return kModbusRead + 2 * static_cast<std::size_t>(static_cast<unsigned char>(request[5]));
}

std::string AnySlave(FuzzInput& input, const std::string& request) {
  if (request.empty()) return {};
  if (request[0] == '\r' && request.size() == kZoltLength) return ZoltSlave(input, request);
  if (request[0] == 4) return TarnlinkSlave(input, request);
  return ModbusSlave(input, request);
}

}  // namespace tarnlink
