#include "simulator/zolt_frames.h"

#include <algorithm>
#include <cassert>

#include "simulator/bytes.h"
#include "simulator/crc.h"

namespace boiler {
namespace {

constexpr std::size_t kTypeAt = 1;
constexpr std::size_t kSlaveAt = 2;
constexpr std::size_t kIdAt = 3;
constexpr std::size_t kDataAt = 7;
constexpr std::size_t kCheckAt = 11;
constexpr std::size_t kCheckDigits = 4;
constexpr int kClassBits = 0x07;
constexpr int kWriteBit = 0x80;

struct Alias {
  std::uint8_t page;
  std::uint16_t id;
};

// Masters know page F3 by two names.
constexpr Alias kAliases[] = {
    {0xFB, 0xFFA4}, {0xFC, 0xFFC2}, {0xFD, 0xFFCD}, {0xFE, 0xFF98}, {0xE0, 0xFFF1}, {0xF1, 0xFF32},
    {0xF2, 0xFF0E}, {0xF3, 0xFF01}, {0xF3, 0x0F01}, {0xF4, 0xFCFD}, {0xF5, 0xFCF2}, {0xF6, 0xFCCE},
    {0xF7, 0xFCC1}, {0xF8, 0xFCA8}, {0x80, 0xFFFE}, {0x81, 0xFF3D}, {0x82, 0xFCA7}, {0x83, 0xFC9B},
    {0xD0, 0xFF97}, {0xD1, 0xFF68}, {0xD2, 0xFF67}, {0xD3, 0xFF5B}, {0xD4, 0xFF54}, {0xD5, 0xFC94},
    {0xD6, 0xFC6B}, {0xD7, 0xFC64}, {0xD8, 0xFC58}, {0x90, 0xFC57}, {0x91, 0xFC3E}, {0x92, 0xFC31},
    {0x93, 0xFC0D},
};

std::optional<unsigned> Digits(std::string_view text) {
  const bool upper = std::all_of(text.begin(), text.end(), [](char one) {
    return (one >= '0' && one <= '9') || (one >= 'A' && one <= 'F');
  });
  return upper ? ParseHex(text) : std::nullopt;
}

std::optional<unsigned> DataByte(std::string_view text) {
  return Digits(text.front() == ' ' ? text.substr(1) : text);
}

std::optional<ZoltData> ParseData(std::string_view frame) {
  const auto id = Digits(frame.substr(kIdAt, 4));
  const auto high = DataByte(frame.substr(kDataAt, 2));
  const auto low = DataByte(frame.substr(kDataAt + 2, 2));
  if (!id || !high || !low) return std::nullopt;
  return ZoltData{static_cast<std::uint16_t>(*id), static_cast<std::uint8_t>(*high),
                  static_cast<std::uint8_t>(*low)};
}

std::string CheckOf(std::string_view covered) { return HexDigits(CrcXmodem(covered), 4); }

}  // namespace

ZoltParsed ParseZoltRequest(std::string_view frame) {
  assert(frame.size() == kZoltLength);
  if (frame.back() != kZoltEnd) return {std::nullopt, "no line feed at the end", false};
  const int type = static_cast<unsigned char>(frame[kTypeAt]);
  ZoltRequest request;
  request.data_class = type & kClassBits;
  request.write = (type & kWriteBit) != 0;
  request.slave = frame[kSlaveAt];
  if ((type & ~(kClassBits | kWriteBit)) != 0 || request.data_class == 0) {
    return {std::nullopt, "not the type of a request", false};
  }
  const std::string right = CheckOf(frame.substr(kTypeAt, kCheckAt - kTypeAt));
  if (frame.substr(kCheckAt, kCheckDigits) != right) {
    return {std::nullopt, "the check should be " + right, true};
  }
  request.data = ParseData(frame);
  return {request, "", false};
}

std::string BuildZoltFrame(char type, char slave, std::string_view id_digits,
                           std::string_view data) {
  std::string frame{kZoltStart, type, slave};
  frame += id_digits;
  frame += data;
  frame += CheckOf(std::string_view(frame).substr(kTypeAt));
  frame += kZoltEnd;
  return frame;
}

std::string ZoltFrameAs(int kind, std::string_view frame) {
  const char type = static_cast<char>(kind << 4 | (frame[kTypeAt] & kClassBits));
  return BuildZoltFrame(type, frame[kSlaveAt], frame.substr(kIdAt, kDataAt - kIdAt),
                        frame.substr(kDataAt, kCheckAt - kDataAt));
}

bool ZoltCheckHolds(std::string_view frame) {
  const auto holds_at = [&](std::size_t at) {
    return frame.substr(at, kCheckDigits) == CheckOf(frame.substr(kTypeAt, at - kTypeAt));
  };
  constexpr std::size_t kCheckAndEnd = kCheckDigits + 1;
  if (frame.size() >= kCheckAt + kCheckDigits && holds_at(kCheckAt)) return true;
  return frame.size() > kCheckAndEnd && holds_at(frame.size() - kCheckAndEnd);
}

std::optional<std::uint8_t> ZoltPage(std::uint16_t alias) {
  const auto found = std::find_if(std::begin(kAliases), std::end(kAliases),
                                  [&](const Alias& one) { return one.id == alias; });
  if (found == std::end(kAliases)) return std::nullopt;
  return found->page;
}

}  // namespace boiler
