#include "common/numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "common/run_time_error.h"
#include "common/shown_text.h"
#include "common/text.h"

namespace tarnlink {
namespace {

constexpr std::size_t kHexDigitsOf16Bits = 4;
constexpr std::size_t kHexDigitsOf32Bits = 8;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool IsSign(char c) { return c == '+' || c == '-'; }

// The length of the decimal number that `text` begins with, 0 if it begins with none: a sign,
// digits with at most one point among them, and an exponent that has digits.
std::size_t DecimalLength(std::string_view text) {
  std::size_t end = 0;
  const auto at = [&](std::size_t i) { return i < text.size() ? text[i] : '\0'; };
  const auto skip_digits = [&](std::size_t from) {
    while (IsDigit(at(from))) ++from;
    return from;
  };
  if (IsSign(at(end))) ++end;
  const std::size_t first = end;
  end = skip_digits(end);
  std::size_t digits = end - first;
  if (at(end) == '.') {
    const std::size_t fraction = skip_digits(end + 1);
    digits += fraction - end - 1;
    end = fraction;
  }
  if (digits == 0) return 0;
  if (at(end) == 'e' || at(end) == 'E') {
    const std::size_t exponent = end + (IsSign(at(end + 1)) ? 2 : 1);
    if (IsDigit(at(exponent))) end = skip_digits(exponent);
  }
  return end;
}

// Whether a number that is out of range is too great, not too near to zero: the place of its first
// digit that counts tells.
bool IsTooGreat(std::string_view decimal) {
  const std::size_t exponent_mark = std::min(decimal.find_first_of("eE"), decimal.size());
  const std::string_view digits = decimal.substr(0, exponent_mark);
  const auto point = static_cast<std::int64_t>(std::min(digits.find('.'), digits.size()));
  const auto first = static_cast<std::int64_t>(digits.find_first_of("123456789"));
  std::int64_t exponent = 0;
  if (exponent_mark < decimal.size()) {
    std::string_view shown = decimal.substr(exponent_mark + 1);
    const bool negative = shown.front() == '-';
    if (IsSign(shown.front())) shown.remove_prefix(1);
    const auto result = std::from_chars(shown.data(), shown.data() + shown.size(), exponent);
    if (result.ec != std::errc()) return !negative;
    if (negative) exponent = -exponent;
  }
  return exponent > first - point;
}

// `decimal` has the form that `DecimalLength` knows. False if the number is too great for the type;
// `value` is then the greatest there is, with its sign.
template <class Float>
bool ParseDecimal(std::string_view decimal, Float& value) {
  std::string_view bare = decimal;
  if (bare.front() == '+') bare.remove_prefix(1);
  const auto result = std::from_chars(bare.data(), bare.data() + bare.size(), value);
  if (result.ec == std::errc() && std::isfinite(value)) return true;
  if (!IsTooGreat(decimal)) {
    value = 0;
    return true;
  }
  value = std::numeric_limits<Float>::max();
  if (bare.front() == '-') value = -value;
  return false;
}

// The digits of `text` in a base of 8 or 16, as far as they are digits and fit into 32 bits.
struct PrefixedDigits {
  std::uint64_t value = 0;
  std::size_t count = 0;
};

PrefixedDigits ReadDigits(std::string_view text, int base) {
  PrefixedDigits read;
  for (const char c : text) {
    std::uint64_t digit = 0;
    const auto result = std::from_chars(&c, &c + 1, digit, base);
    if (result.ec != std::errc()) break;
    const std::uint64_t next = read.value * static_cast<std::uint64_t>(base) + digit;
    if (next > std::numeric_limits<std::uint32_t>::max()) break;
    if (base == 16 && read.count == kHexDigitsOf32Bits) break;
    read.value = next;
    ++read.count;
  }
  return read;
}

// `text` is what stands behind "&H" or "&O".
double PrefixedValue(std::string_view text, int base) {
  const PrefixedDigits read = ReadDigits(text, base);
  if (read.count < text.size() && text[read.count] == '&') return static_cast<double>(read.value);
  const bool is_16_bit = base == 16 ? read.count <= kHexDigitsOf16Bits
                                    : read.value <= std::numeric_limits<std::uint16_t>::max();
  if (is_16_bit) return static_cast<std::int16_t>(read.value);
  return static_cast<std::int32_t>(read.value);
}

std::string InBase(std::uint64_t number, int base) {
  std::array<char, 24> digits;
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number, base);
  return ToUpper(std::string_view(digits.data(), result.ptr));
}

std::uint64_t TwosComplement(std::int64_t number, bool narrow) {
  if (number >= 0) return static_cast<std::uint64_t>(number);
  if (narrow && number >= std::numeric_limits<std::int16_t>::min()) {
    return static_cast<std::uint16_t>(number);
  }
  return static_cast<std::uint32_t>(number);
}

// `text` as a message shows it: a damaged file may offer megabytes as one field.
std::string Shown(std::string_view text) {
  constexpr std::size_t kMost = 32;
  if (text.size() <= kMost) return '"' + ShownText(text) + '"';
  std::size_t end = kMost;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
  return '"' + ShownText(text.substr(0, end)) + "...\"";
}

std::string_view Bare(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  const std::string_view bare = text.substr(first, text.find_last_not_of(' ') - first + 1);
  return bare;
}

std::string_view CheckedDecimal(std::string_view text) {
  const std::string_view decimal = Bare(text);
  if (decimal.empty() || DecimalLength(decimal) != decimal.size()) {
    throw RunTimeError(kTypeMismatch, Shown(text) + " is no number.");
  }
  return decimal;
}

template <class Whole>
Whole ToWhole(std::string_view text) {
  constexpr auto kLowest = std::numeric_limits<Whole>::min();
  constexpr auto kHighest = std::numeric_limits<Whole>::max();
  const std::string_view decimal = CheckedDecimal(text);
  double value = 0;
  const bool fits = ParseDecimal(decimal, value);
  const double whole = std::nearbyint(value);
  if (!fits || whole < kLowest || whole > kHighest) {
    throw RunTimeError(kOverflow, Shown(decimal) + " is not between " + std::to_string(kLowest) +
                                      " and " + std::to_string(kHighest) + ".");
  }
  return static_cast<Whole>(whole);
}

}  // namespace

double Val(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  if (text.size() >= 2 && text[0] == '&') {
    if (text[1] == 'H' || text[1] == 'h') return PrefixedValue(text.substr(2), 16);
    if (text[1] == 'O' || text[1] == 'o') return PrefixedValue(text.substr(2), 8);
    return 0;
  }
  const std::size_t length = DecimalLength(text);
  if (length == 0) return 0;
  double value = 0;
  ParseDecimal(text.substr(0, length), value);
  return value;
}

int ValInt(std::string_view text, int lowest, int highest) {
  return static_cast<int>(
      std::clamp(Val(text), static_cast<double>(lowest), static_cast<double>(highest)));
}

std::string Hex(std::int64_t number) { return InBase(TwosComplement(number, true), 16); }

std::string Oct(std::int64_t number) { return InBase(TwosComplement(number, true), 8); }

std::string Hex32(std::int64_t number) { return InBase(TwosComplement(number, false), 16); }

std::string Oct32(std::int64_t number) { return InBase(TwosComplement(number, false), 8); }

std::string Str(std::int64_t number) {
  return number < 0 ? std::to_string(number) : " " + std::to_string(number);
}

std::string FormatSingle(float number) {
  if (std::isnan(number) || number == 0.0F) return "0";
  constexpr float kMost = std::numeric_limits<float>::max();
  // The longest is a sign, "0." and about 50 digits of the smallest number.
  std::array<char, 128> digits;
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(),
                                    std::clamp(number, -kMost, kMost), std::chars_format::fixed);
  return {digits.data(), result.ptr};
}

std::uint8_t ToByte(std::string_view text) { return ToWhole<std::uint8_t>(text); }

std::int16_t ToInteger(std::string_view text) { return ToWhole<std::int16_t>(text); }

std::int32_t ToLong(std::string_view text) { return ToWhole<std::int32_t>(text); }

float ToSingle(std::string_view text) {
  const std::string_view decimal = CheckedDecimal(text);
  float value = 0;
  if (!ParseDecimal(decimal, value)) {
    throw RunTimeError(kOverflow, Shown(decimal) + " is too great for a number of this kind.");
  }
  return value;
}

}  // namespace tarnlink
