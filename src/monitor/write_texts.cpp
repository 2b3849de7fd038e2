#include "monitor/write_texts.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "common/numbers.h"
#include "common/text.h"
#include "common/text_file.h"

namespace tarnlink {

namespace {

constexpr int kByteDigits = 2;
constexpr int kWordDigits = 4;

// Of a longer text the end, so that a value which is too great goes out without its first digits.
std::string Fitted(std::string_view digits, int length) {
  return Right(Stuff(digits, length), length);
}

std::string HexOfNumber(std::string_view text) {
  constexpr double kGreatest = 9e18;  // within 64 bits
  return Hex(std::llrint(std::clamp(Val(text), -kGreatest, kGreatest)));
}

std::string Digits(int format, std::string_view text) {
  if (format == kDecimal) return HexOfNumber(text);
  if (format == kHexadecimal) return EncodeText(ToUpper(text));  // a byte for each character
  return {};
}

}  // namespace

WriteText MakeWriteText(const Location& location, int format, std::string_view text) {
  const std::string digits = Digits(format, text);
  if (location.SelectByte == kBoth && location.Specification == 1) {
    return {.value = Fitted(digits, kWordDigits)};
  }
  const bool is_word = location.StorageType == kUnsignedWord || location.StorageType == kSignedWord;
  if (location.Specification == 0 && is_word) {
    const std::string word = Fitted(digits, kWordDigits);
    return {.value = word, .SecondByteValue = word.substr(0, kByteDigits), .SendSecondByte = true};
  }
  return {.value = Fitted(digits, kByteDigits)};
}

std::string MakeBitText(const Location& location, bool set) {
  constexpr unsigned kWordBits = 16;
  const std::int32_t mask = location.BitAddress < kWordBits ? 1 << location.BitAddress : 0;
  const std::int32_t number = set ? location.RawValue | mask : location.RawValue & ~mask;
  return Stuff(Hex(number), kByteDigits);
}

std::string MakeRegisterText(std::string_view text) {
  return Fitted(HexOfNumber(text), kWordDigits);
}

}  // namespace tarnlink
