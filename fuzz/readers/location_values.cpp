#include "common/numbers.h"
#include "common/text.h"
#include "common/text_file.h"
#include "fuzz/claim.h"
#include "fuzz/readers/location_bytes.h"
#include "fuzz/readers/number_bytes.h"
#include "fuzz/readers/reader_claims.h"
#include "fuzz/readers/readers.h"

namespace tarnlink {
namespace {

void ClaimDecoded(const Location& location, FuzzInput& bytes) {
  const std::uint8_t high = bytes.Byte();
  const std::uint8_t low = bytes.Byte();
  const DecodedValue value = SelectValue(location, high, low, bytes.Coin());
  Claim(value.RawValue >= 0 && value.RawValue <= (value.is_word ? 0xFFFF : 0xFF), "unsigned");
  const std::string text = DecodedValueText(location, value);
  Claim(!text.empty() && text.size() <= 17, "a value has a text that a box can show");
  const int modulus = value.is_word ? 0x10000 : 0x100;
  const int signed_value = ValInt(SignedText(value), -40'000, 70'000);
  Claim((signed_value - value.RawValue) % modulus == 0, "a signed text is of the same bits");
  Claim(location.Representation != kHexadecimal || Val("&H" + text + "&") == value.RawValue,
        "hexadecimal digits are the number");
  Claim(IsBitSet(value.RawValue, location.BitAddress) ==
            (location.BitAddress < 16 && ((value.RawValue >> location.BitAddress) & 1) != 0),
        "a bit is that of the number");
}

void ClaimBinary(std::int32_t number, std::uint8_t bits) {
  const std::string digits = dec2bin(number, bits);
  Claim(digits.find_first_not_of("01") == std::string::npos, "only ones and zeros");
  Claim(digits.size() <= 31 && digits.size() >= bits, "as many as there have to be");
  std::int64_t value = 0;
  for (const char digit : digits) value = 2 * value + (digit - '0');
  Claim(value == (number > 0 ? number : 0), "they are the number");
}

void ClaimTyped(const std::string& text) {
  const auto is_hexadecimal = [](const std::string& digits) {
    return digits.find_first_not_of("0123456789ABCDEF") == std::string::npos;
  };
  const std::string word = FormatHex(text, 4);
  const std::string byte = FormatHex(text, 2);
  Claim(word.size() == 4 && is_hexadecimal(word), "an address is four digits");
  Claim(byte.size() == 2 && is_hexadecimal(byte), "or two");
  Claim(FormatHex(word, 4) == word, "which stay");
  const std::string address = FixedAddress(text);
  Claim(address.size() == 4 && IsText(address) && FixedAddress(address) == address,
        "an address has four characters");
  for (const int step : {-1, 1}) {
    const int column = ValInt(SteppedColumn(text, step), -1, 99'999);
    Claim(column >= 0 && column <= 16'384, "a column is one of a sheet");
  }
}

void Run(std::string_view input) {
  FuzzInput bytes(input);
  const Location location = LocationOf(bytes);
  ClaimDecoded(location, bytes);
  const std::int32_t number = Whole32(bytes);
  ClaimBinary(number, static_cast<std::uint8_t>(bytes.Below(17)));
  const std::string text = DecodeText(bytes.Rest());
  ClaimTyped(text);
  const std::string shown = TarnlinkValueText(text, location.Representation);
  Claim(!shown.empty() && shown.size() <= 32, "an answer has a text that a box can show");
}

std::vector<std::string> Seeds() {
  const std::string memory("\0\3\2\2\3\5\1\x80\xFF\1\1\2\3\4\x10", 15);
  return {memory + "2A",
          memory + "12345",
          memory + "FFFFFFFF",
          memory + "g\xE9",
          memory,
          std::string("\1\5\3\0\x1F\xFF\xFF\xFF\0\0\xFF\xFF\xFF\x7F\5", 15) + "&H1"};
}

}  // namespace

FuzzTarget LocationValuesTarget() { return {"location_values", Run, Seeds}; }

}  // namespace tarnlink
