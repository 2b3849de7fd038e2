// Bytes as text that people and logs read, and back.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace boiler {

// Upper-case hexadecimal pairs with a blank between them: "04 05 30". Empty for no bytes.
std::string HexText(std::string_view bytes);

// The low `width` hexadecimal digits of `value`, upper case, with leading zeros.
std::string HexDigits(unsigned value, int width);

// The value of one to eight hexadecimal digits of either case, or nothing for any other text.
std::optional<unsigned> ParseHex(std::string_view digits);

// Pairs of hexadecimal digits; blanks may stand between pairs, not inside one. Nothing for other
// text, and for no pair at all.
std::optional<std::string> ParseHexBytes(std::string_view text);

// One to four hexadecimal digits.
std::optional<std::uint16_t> ParseAddress(std::string_view text);

}  // namespace boiler
