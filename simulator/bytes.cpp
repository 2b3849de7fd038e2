#include "simulator/bytes.h"

#include <charconv>

namespace boiler {
namespace {

constexpr std::string_view kDigits = "0123456789ABCDEF";

}  // namespace

std::string HexText(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size() * 3);
  for (const char byte : bytes) {
    if (!text.empty()) text += ' ';
    text += HexDigits(static_cast<unsigned char>(byte), 2);
  }
  return text;
}

std::string HexDigits(unsigned value, int width) {
  std::string text(static_cast<std::size_t>(width), '0');
  for (auto digit = text.rbegin(); digit != text.rend(); ++digit) {
    *digit = kDigits[value & 0xF];
    value >>= 4;
  }
  return text;
}

std::optional<unsigned> ParseHex(std::string_view digits) {
  if (digits.empty() || digits.size() > 8) return std::nullopt;
  unsigned value = 0;
  const char* end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, value, 16);
  if (error != std::errc() || stop != end) return std::nullopt;
  return value;
}

std::optional<std::string> ParseHexBytes(std::string_view text) {
  std::string bytes;
  std::size_t at = 0;
  while (at < text.size()) {
    if (text[at] == ' ') {
      ++at;
      continue;
    }
    const auto value = ParseHex(text.substr(at, 2));
    if (!value || text.size() - at < 2) return std::nullopt;
    bytes += static_cast<char>(*value);
    at += 2;
  }
  if (bytes.empty()) return std::nullopt;
  return bytes;
}

std::optional<std::uint16_t> ParseAddress(std::string_view text) {
  if (text.size() > 4) return std::nullopt;
  const auto value = ParseHex(text);
  if (!value) return std::nullopt;
  return static_cast<std::uint16_t>(*value);
}

}  // namespace boiler
