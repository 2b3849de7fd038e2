#include "tools/link_frame.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "protocols/frame_bytes.h"
#include "protocols/modbus_frame.h"
#include "protocols/tarnlink_frame.h"
#include "protocols/zolt_frame.h"

namespace tarnlink {
namespace {

constexpr std::size_t kZoltLength = zolt_frame::kLength;

// Start, command, address, data or none, sum, end.
constexpr std::size_t kTarnLinkHead = 1 + 1 + 4;
constexpr std::size_t kTarnLinkShortest = kTarnLinkHead + 1 + 1;
constexpr std::size_t kTarnLinkLongest = kTarnLinkHead + 4 + 2 + 1;

constexpr std::size_t kModbusCrc = 2;
constexpr std::size_t kModbusException = 5;
constexpr std::size_t kModbusEight = 8;  // a request to read, an acknowledgement of a write

bool IsZolt(std::string_view bytes) {
  return bytes.size() == kZoltLength && bytes.front() == zolt_frame::kStart &&
         bytes.back() == zolt_frame::kEnd && zolt_frame::IsGood(bytes);
}

// A write's sum below 0x10 has one digit, everything else has two.
bool IsTarnLink(std::string_view bytes) {
  if (bytes.size() < kTarnLinkShortest || bytes.front() != tarnlink_frame::kStart ||
      bytes.back() != tarnlink_frame::kEnd)
    return false;
  const std::string_view body = bytes.substr(0, bytes.size() - 1);
  const auto holds = [&](std::size_t digits) {
    const std::string_view summed = body.substr(0, body.size() - digits);
    return body.substr(summed.size()) == HexDigits(calc_checksum(summed), digits) &&
           (digits == 2 || calc_checksum(summed) < 0x10);
  };
  return holds(2) || holds(1);
}

bool IsModbus(std::string_view bytes) {
  if (bytes.size() < kModbusException) return false;
  const std::size_t summed = bytes.size() - kModbusCrc;
  return bytes.substr(summed) == Calc_Crc_Modbus2(bytes.substr(0, summed));
}

// The lengths that a frame with this head can have, 0 for none.
std::array<std::size_t, 2> ModbusLengths(std::string_view bytes) {
  const std::uint8_t function = ByteAt(bytes, 1);
  if (modbus_frame::IsException(function)) return {kModbusException, 0};
  if (modbus_frame::IsRead(function)) return {3U + ByteAt(bytes, 2) + kModbusCrc, kModbusEight};
  return {kModbusEight, 0};
}

std::size_t ZoltAt(std::string_view bytes) {
  return IsZolt(bytes.substr(0, kZoltLength)) ? kZoltLength : 0;
}

std::size_t TarnLinkAt(std::string_view bytes) {
  if (bytes.front() != tarnlink_frame::kStart) return 0;
  const std::size_t most = std::min(bytes.size(), kTarnLinkLongest);
  for (std::size_t length = kTarnLinkShortest; length <= most; ++length) {
    if (IsTarnLink(bytes.substr(0, length))) return length;
  }
  return 0;
}

std::size_t ModbusAt(std::string_view bytes) {
  if (bytes.size() < kModbusException) return 0;
  for (const std::size_t length : ModbusLengths(bytes)) {
    if (length > 0 && length <= bytes.size() && IsModbus(bytes.substr(0, length))) return length;
  }
  return 0;
}

// The length of the whole frame that `bytes` begins with; 0 if it begins with none.
std::size_t FrameAt(LinkProtocol protocol, std::string_view bytes) {
  switch (protocol) {
    case LinkProtocol::kZolt:
      return ZoltAt(bytes);
    case LinkProtocol::kTarnLink:
      return TarnLinkAt(bytes);
    case LinkProtocol::kModbus:
      return ModbusAt(bytes);
    case LinkProtocol::kNone:
      break;
  }
  return 0;
}

FrameRole ZoltRole(std::string_view request, std::string_view frame) {
  using namespace zolt_frame;
  const std::uint8_t asked = TypeOf(request);
  const std::uint8_t type = TypeOf(frame);
  if (frame == request) return FrameRole::kEcho;
  if (Text(request, kSlave) != Text(frame, kSlave) || ClassOf(asked) != ClassOf(type))
    return FrameRole::kOther;
  switch (KindOf(type)) {
    case kCorruptedMessage:  // does not say of which ID
      return FrameRole::kRefusal;
    case kOutsideRange:
    case kUnknownDataId:
      return Text(request, kId) == Text(frame, kId) ? FrameRole::kRefusal : FrameRole::kOther;
    default:
      // An acknowledgement is its request's kind and one.
      return KindOf(type) == KindOf(asked) + kReadAcknowledge &&
                     Text(request, kId) == Text(frame, kId)
                 ? FrameRole::kAnswer
                 : FrameRole::kOther;
  }
}

// A slave acknowledges a write with the request itself, here and under Modbus: only a read can be
// told from its echo.
FrameRole TarnLinkRole(std::string_view request, std::string_view frame) {
  const bool is_read =
      request[1] == tarnlink_frame::kReadByte || request[1] == tarnlink_frame::kReadWord;
  if (is_read && frame == request) return FrameRole::kEcho;
  const std::size_t head = kTarnLinkHead - 1;  // command and address
  return frame.substr(1, head) == request.substr(1, head) ? FrameRole::kAnswer : FrameRole::kOther;
}

FrameRole ModbusRole(std::string_view request, std::string_view frame) {
  const std::uint8_t asked = modbus_frame::FunctionOf(request);
  const std::uint8_t function = modbus_frame::FunctionOf(frame);
  if (request.front() != frame.front()) return FrameRole::kOther;
  if (function == asked + modbus_frame::kException) return FrameRole::kRefusal;
  if (function != asked) return FrameRole::kOther;
  if (modbus_frame::IsRead(asked)) {
    if (frame == request) return FrameRole::kEcho;
    const std::size_t count_at = request.size() - kModbusCrc - 1;
    const bool is_as_long = ByteAt(frame, 2) == 2 * ByteAt(request, count_at);
    return is_as_long ? FrameRole::kAnswer : FrameRole::kOther;
  }
  constexpr std::size_t kRegister = 4;  // slave, function, register
  return frame.substr(0, kRegister) == request.substr(0, kRegister) ? FrameRole::kAnswer
                                                                    : FrameRole::kOther;
}

}  // namespace

LinkProtocol ProtocolOfRequest(std::string_view request) {
  if (IsZolt(request)) return LinkProtocol::kZolt;
  if (IsTarnLink(request)) return LinkProtocol::kTarnLink;
  if (IsModbus(request)) return LinkProtocol::kModbus;
  return request.starts_with(zolt_frame::kStart) ? LinkProtocol::kZolt : LinkProtocol::kNone;
}

bool IsWholeFrame(LinkProtocol protocol, std::string_view bytes) {
  switch (protocol) {
    case LinkProtocol::kZolt:
      return IsZolt(bytes);
    case LinkProtocol::kTarnLink:
      return IsTarnLink(bytes);
    case LinkProtocol::kModbus:
      return IsModbus(bytes);
    case LinkProtocol::kNone:
      break;
  }
  return false;
}

std::string SlaveOfFrame(LinkProtocol protocol, std::string_view frame) {
  if (protocol == LinkProtocol::kZolt) return std::string(Text(frame, zolt_frame::kSlave));
  if (protocol == LinkProtocol::kModbus && !frame.empty()) return std::to_string(ByteAt(frame, 0));
  return {};
}

std::optional<FramePlace> FindFrame(LinkProtocol protocol, std::string_view bytes) {
  for (std::size_t begin = 0; begin < bytes.size(); ++begin) {
    const std::size_t length = FrameAt(protocol, bytes.substr(begin));
    if (length > 0) return FramePlace{begin, length};
  }
  return std::nullopt;
}

// Only ZOLT says where a frame begins and how long it is.
std::size_t LostBytes(LinkProtocol protocol, std::string_view bytes) {
  if (protocol != LinkProtocol::kZolt || bytes.empty()) return 0;
  const std::size_t next = std::min(bytes.find(zolt_frame::kStart, 1), bytes.size());
  if (bytes.front() != zolt_frame::kStart) return next;
  if (next < std::min(bytes.size(), kZoltLength)) return next;
  return bytes.size() < kZoltLength ? 0 : kZoltLength;
}

FrameRole RoleOf(LinkProtocol protocol, std::string_view request, std::string_view frame) {
  // A request whose check is broken on purpose may be of any length.
  constexpr std::size_t kShortest = 6;
  if (request.size() < kShortest) return FrameRole::kOther;
  switch (protocol) {
    case LinkProtocol::kZolt:
      return ZoltRole(request, frame);
    case LinkProtocol::kTarnLink:
      return TarnLinkRole(request, frame);
    case LinkProtocol::kModbus:
      return ModbusRole(request, frame);
    case LinkProtocol::kNone:
      break;
  }
  return FrameRole::kOther;
}

}  // namespace tarnlink
