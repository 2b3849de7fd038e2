#include "support/byte_text.h"

#include <gtest/gtest.h>

namespace tarnlink {
namespace {

constexpr std::string_view kDigits = "0123456789ABCDEF";

std::string Pair(char byte) {
  const auto value = static_cast<unsigned char>(byte);
  return {kDigits[value >> 4], kDigits[value & 15]};
}

int DigitValue(char digit) {
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  const auto place = kDigits.find(digit);
  return place == std::string_view::npos ? -1 : static_cast<int>(place);
}

}  // namespace

std::string Bytes(std::string_view hexadecimal) {
  std::string bytes;
  int high = -1;
  for (const char character : hexadecimal) {
    if (character == ' ') continue;
    const int value = DigitValue(character);
    if (value < 0) {
      ADD_FAILURE() << "\"" << hexadecimal << "\" is no hexadecimal text.";
      return {};
    }
    if (high < 0) {
      high = value;
    } else {
      bytes += static_cast<char>(high * 16 + value);
      high = -1;
    }
  }
  EXPECT_LT(high, 0) << "\"" << hexadecimal << "\" has a digit left over.";
  return bytes;
}

std::string HexText(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) {
    if (!text.empty()) text += ' ';
    text += Pair(byte);
  }
  return text;
}

std::string Readable(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) {
    if (byte >= 0x20 && byte < 0x7F) {
      text += byte;
    } else {
      text += "<" + Pair(byte) + ">";
    }
  }
  return text;
}

}  // namespace tarnlink
