#include "common/numbers.h"

#include <cmath>
#include <limits>

#include "common/local_decimal.h"
#include "common/text_file.h"
#include "fuzz/claim.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/readers/number_bytes.h"
#include "fuzz/readers/reader_claims.h"
#include "fuzz/readers/readers.h"

namespace tarnlink {
namespace {

void ClaimText(std::string_view text) {
  const double value = Val(text);
  Claim(std::isfinite(value), "whatever stands there is a number");
  const int held = ValInt(text, -5, 70'000);
  Claim(held >= -5 && held <= 70'000, "it is held inside");
  Claim(value < -5 || value > 70'000 || held == std::trunc(value), "and cut towards zero");
  const auto byte = Tried([&] { return ToByte(text); });
  const auto integer = Tried([&] { return ToInteger(text); });
  const auto whole = Tried([&] { return ToLong(text); });
  const auto single = Tried([&] { return ToSingle(text); });
  Claim(!byte || (integer && *integer == *byte), "a byte is an integer");
  Claim(!integer || (whole && *whole == *integer), "an integer is a long");
  Claim(!whole || single, "a long is a single");
  Claim(!whole || ToLong(std::to_string(*whole)) == *whole, "it is read as it is written");
  if (single) Claim(ToSingle(FormatSingle(*single)) == *single, "a single too");
  Claim(!whole || value == *single || std::fabs(value - *whole) <= 0.5, "both ways to read agree");
}

void ClaimNumber(std::int64_t number, float single) {
  const auto low = static_cast<std::int16_t>(number);
  const auto middle = static_cast<std::int32_t>(number);
  Claim(Val("&H" + Hex32(middle)) == middle || middle == low || middle == (number & 0xFFFF),
        "hexadecimal digits are read as they are written");
  Claim(Val("&H" + Hex(low)) == low && Val("&O" + Oct(low)) == low, "so are those of 16 bits");
  Claim(static_cast<std::int16_t>(static_cast<std::int32_t>(Val("&O" + Oct32(middle)))) == low,
        "and those of 32");
  Claim(Val(Str(middle)) == middle, "and decimal ones");
  const std::string text = FormatSingle(single);
  Claim(text.find_first_not_of("-.0123456789") == std::string::npos, "a single has no exponent");
  const float again = ToSingle(text);
  Claim(!std::isfinite(single) || again == single, "a single is read as it is written");
}

void ClaimDecimal(std::string_view text) {
  const std::string point = LocalizeDecimal(text, ".");
  const std::string comma = LocalizeDecimal(text, ",");
  Claim(point.size() == text.size() && point.find(',') == std::string::npos, "no comma is left");
  Claim(comma.size() == text.size() && comma.find('.') == std::string::npos, "no point is left");
  Claim(LocalizeDecimal(comma, ".") == point, "it does not matter which stood there");
}

void Run(std::string_view input) {
  FuzzInput bytes(input);
  const std::int64_t number = Whole64(bytes);
  ClaimNumber(number, AnySingle(bytes));
  const std::string text = DecodeText(bytes.Rest());
  ClaimText(text);
  ClaimDecimal(text);
}

std::vector<std::string> Seeds() {
  std::vector<std::string> seeds;
  for (const char* text : {"&HFFFF", "&o777&", " -12.5E-3x", "32768", "3.4E38", "1E999", "255.5",
                           "&H123456789", ".5", "-0", "1,5"}) {
    seeds.push_back(std::string("\xFF\x7F\0\0\0\0\0\x80\0\0\x80\x3F", 12) + text);
  }
  return seeds;
}

}  // namespace

FuzzTarget NumbersTarget() { return {"numbers", Run, Seeds}; }

}  // namespace tarnlink
