#include "tools/link_meaning.h"

#include <algorithm>
#include <cstdint>

#include "common/shown_text.h"
#include "common/text.h"
#include "protocols/frame_bytes.h"
#include "protocols/modbus_frame.h"
#include "protocols/tarnlink_frame.h"
#include "protocols/zolt_frame.h"

namespace tarnlink {
namespace {

constexpr const char* kNoSense = "a frame of no known protocol";

std::string Counted(std::size_t count, const char* one) {
  return std::to_string(count) + " " + one + (count == 1 ? "" : "s");
}

std::string WordOf(std::string_view frame, std::size_t offset) {
  return HexDigits(ByteAt(frame, offset) * 0x100 + ByteAt(frame, offset + 1), 4);
}

// --- ZOLT ----------------------------------------------------------------------------------------

// The page that is written under this alias; empty where it is none's.
std::string PageOf(std::string_view alias) {
  for (int page = 0; page <= 0xFF; ++page) {
    std::string digits = HexDigits(page, 2);
    if (zolt_frame::WriteAlias(digits) == alias) return digits;
  }
  return {};
}

struct ZoltParts {
  std::string slave, id, data, high, low;
  int number;
};

// Digits stand as they came, but for what no cell of the trace's table can hold.
ZoltParts PartsOf(std::string_view frame) {
  using namespace zolt_frame;
  const auto text = [&](Field field) { return ShownCell(Text(frame, field)); };
  return {.slave = "slave " + text(kSlave) + ": ",
          .id = text(kId),
          .data = text(kData),
          .high = text(kDataHigh),
          .low = text(kDataLow),
          .number = ClassOf(TypeOf(frame))};
}

// What is asked for, or was.
std::string ZoltItem(const ZoltParts& parts, bool is_write) {
  if (parts.number != zolt_frame::kMemoryClass)
    return "class " + std::to_string(parts.number) + ", ID " + parts.id;
  if (!is_write) return "memory " + parts.data;
  const std::string page = PageOf(parts.id);
  return page.empty() ? "memory, alias " + parts.id + ", " + parts.high
                      : "memory " + page + parts.high;
}

std::string ZoltRequest(std::string_view request) {
  const ZoltParts parts = PartsOf(request);
  const bool is_memory = parts.number == zolt_frame::kMemoryClass;
  switch (zolt_frame::KindOf(zolt_frame::TypeOf(request))) {
    case zolt_frame::kRead:
      return parts.slave + "read " + ZoltItem(parts, false);
    case zolt_frame::kWrite:
      return parts.slave + "write " + ZoltItem(parts, true) + ": " +
             (is_memory ? parts.low : parts.data);
    default:
      return parts.slave + "a message of type " + HexDigits(zolt_frame::TypeOf(request), 2);
  }
}

std::string ZoltAnswer(std::string_view request, std::string_view frame) {
  const ZoltParts parts = PartsOf(frame);
  const bool is_memory = parts.number == zolt_frame::kMemoryClass;
  // An answer to a read of memory does not say of which address.
  const bool answers = RoleOf(LinkProtocol::kZolt, request, frame) == FrameRole::kAnswer;
  switch (zolt_frame::KindOf(zolt_frame::TypeOf(frame))) {
    case zolt_frame::kReadAcknowledge:
      if (is_memory && answers)
        return parts.slave + ZoltItem(PartsOf(request), false) + " is " + parts.data;
      return parts.slave + (is_memory ? "memory" : ZoltItem(parts, false)) + " is " + parts.data;
    case zolt_frame::kWriteAcknowledge:
      return parts.slave + ZoltItem(parts, true) +
             " is written: " + (is_memory ? parts.low : parts.data);
    case zolt_frame::kCorruptedMessage:
      return parts.slave + "Corrupted Message";
    case zolt_frame::kOutsideRange:
      return parts.slave + "Parameter outside range, ID " + parts.id;
    case zolt_frame::kUnknownDataId:
      return parts.slave + "Unknown Data ID " + parts.id;
    default:
      return ZoltRequest(frame);
  }
}

// --- Modbus --------------------------------------------------------------------------------------

std::string ModbusSlave(std::string_view frame) {
  return "slave " + std::to_string(ByteAt(frame, 0)) + ": ";
}

std::string FunctionText(std::string_view frame) {
  return ", function " + std::to_string(ByteAt(frame, 1));
}

std::string ModbusRequest(std::string_view request) {
  constexpr std::size_t kShortest = 8;
  if (request.size() < kShortest) return ModbusSlave(request) + "a message" + FunctionText(request);
  const std::string where = WordOf(request, 2) + FunctionText(request);
  switch (ByteAt(request, 1)) {
    case modbus_frame::kReadHoldingRegisters:
    case modbus_frame::kReadInputRegisters:
      return ModbusSlave(request) + "read " +
             Counted(ByteAt(request, request.size() - 3), "register") + " from " + where;
    case modbus_frame::kWriteRegister:
      return ModbusSlave(request) + "write register " + where + ": " + WordOf(request, 4);
    case modbus_frame::kWriteRegisters:
      return ModbusSlave(request) + "write " + Counted(ByteAt(request, 5), "register") + " from " +
             where;
    default:
      return ModbusSlave(request) + "a message" + FunctionText(request);
  }
}

std::string ModbusAnswer(std::string_view frame) {
  const std::uint8_t function = ByteAt(frame, 1);
  if (modbus_frame::IsException(function))
    return ModbusSlave(frame) + "exception " + std::to_string(ByteAt(frame, 2)) + " to function " +
           std::to_string(function - modbus_frame::kException);
  constexpr std::size_t kHead = 3;  // slave, function, byte count
  constexpr std::size_t kCrc = 2;
  const bool is_values =
      modbus_frame::IsRead(function) && frame.size() == kHead + ByteAt(frame, 2) + kCrc;
  if (!is_values) {
    return modbus_frame::IsRead(function) ? ModbusRequest(frame)
                                          : ModbusSlave(frame) + "register " + WordOf(frame, 2) +
                                                " is written" + FunctionText(frame);
  }
  std::string text = ModbusSlave(frame) + "values";
  for (std::size_t at = kHead; at + 1 < frame.size() - kCrc; at += 2)
    text.append(" ").append(WordOf(frame, at));
  return text;
}

// --- TarnLink ------------------------------------------------------------------------------------

constexpr std::size_t kAddressAt = 2;
constexpr std::size_t kAddressDigits = 4;
constexpr std::size_t kDataAt = kAddressAt + kAddressDigits;
constexpr std::size_t kReadLength = kDataAt + 2 + 1;

std::string TarnLinkAddress(std::string_view frame) {
  return ShownCell(frame.substr(std::min(kAddressAt, frame.size()), kAddressDigits));
}

// Two digits or four, whatever the length of the sum behind them.
std::string TarnLinkData(std::string_view frame) {
  const std::size_t rest = frame.size() - kDataAt - 1;
  return ShownCell(frame.substr(kDataAt, rest <= 4 ? 2 : 4));
}

std::string TarnLinkRequest(std::string_view request) {
  switch (request[1]) {
    case tarnlink_frame::kReadByte:
      return "read byte " + TarnLinkAddress(request);
    case tarnlink_frame::kReadWord:
      return "read word " + TarnLinkAddress(request);
    default:
      return "write " + TarnLinkAddress(request) + ": " + TarnLinkData(request);
  }
}

std::string TarnLinkAnswer(std::string_view frame) {
  if (frame.size() <= kReadLength) return TarnLinkRequest(frame);
  return TarnLinkAddress(frame) + " is " + TarnLinkData(frame);
}

std::string SoundRequest(LinkProtocol protocol, std::string_view request) {
  switch (protocol) {
    case LinkProtocol::kZolt:
      return ZoltRequest(request);
    case LinkProtocol::kModbus:
      return ModbusRequest(request);
    case LinkProtocol::kTarnLink:
      return TarnLinkRequest(request);
    case LinkProtocol::kNone:
      break;
  }
  return kNoSense;
}

}  // namespace

std::string RequestMeaning(LinkProtocol protocol, std::string_view request) {
  if (protocol == LinkProtocol::kNone) return kNoSense;
  if (IsWholeFrame(protocol, request)) return SoundRequest(protocol, request);
  // Only the generator of wrong messages sends such a thing.
  constexpr std::size_t kZoltHead = 11;
  const std::string said =
      request.size() >= kZoltHead ? ZoltRequest(request) : Counted(request.size(), "byte");
  return said + " (wrong on purpose)";
}

std::string AnswerMeaning(LinkProtocol protocol, std::string_view request, std::string_view frame) {
  switch (protocol) {
    case LinkProtocol::kZolt:
      return ZoltAnswer(request, frame);
    case LinkProtocol::kModbus:
      return ModbusAnswer(frame);
    case LinkProtocol::kTarnLink:
      return TarnLinkAnswer(frame);
    case LinkProtocol::kNone:
      break;
  }
  return kNoSense;
}

std::string BadBytesMeaning(LinkProtocol protocol, std::string_view bytes) {
  const bool is_zolt = protocol == LinkProtocol::kZolt &&
                       bytes.size() >= static_cast<std::size_t>(zolt_frame::kLength) &&
                       bytes.front() == zolt_frame::kStart;
  const bool is_tarnlink = protocol == LinkProtocol::kTarnLink &&
                           bytes.starts_with(tarnlink_frame::kStart) &&
                           bytes.ends_with(tarnlink_frame::kEnd);
  const bool is_modbus =
      protocol == LinkProtocol::kModbus && bytes.size() >= modbus_frame::kShortestResponse;
  if (is_zolt || is_tarnlink || is_modbus) return "a frame whose check is broken";
  return Counted(bytes.size(), "byte") + (bytes.size() == 1 ? " that is" : " that are") +
         " no whole frame";
}

std::string BytesInHex(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size() * 3);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i > 0) text += ' ';
    AppendHexDigits(text, ByteAt(bytes, i), 2);
  }
  return text;
}

}  // namespace tarnlink
