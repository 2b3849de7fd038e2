#include "protocols/frame_bytes.h"

#include <charconv>

#include "common/run_time_error.h"

namespace tarnlink {

std::uint8_t ByteAt(std::string_view frame, std::size_t offset) {
  if (offset >= frame.size()) {
    throw RunTimeError(kSubscript, "The frame ends after " + std::to_string(frame.size()) +
                                       " bytes, before byte " + std::to_string(offset + 1) + ".");
  }
  return static_cast<std::uint8_t>(frame[offset]);
}

std::string HexDigits(std::int32_t number, std::size_t count) {
  std::string digits;
  AppendHexDigits(digits, number, count);
  return digits;
}

void AppendHexDigits(std::string& text, std::int32_t number, std::size_t count) {
  constexpr std::size_t kBitsOfDigit = 4;
  const auto bits = static_cast<std::uint32_t>(number);
  for (std::size_t place = count; place-- > 0;) {
    text += "0123456789ABCDEF"[bits >> (place * kBitsOfDigit) & 0xF];
  }
}

std::uint32_t HexNumber(std::string_view text) {
  constexpr std::size_t kMostDigits = 8;
  const std::string_view digits = text.substr(0, kMostDigits);
  std::uint32_t number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
  return number;
}

}  // namespace tarnlink
