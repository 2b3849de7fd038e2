// Numbers to text and back, in the forms that screens, frames and files use.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tarnlink {

// Tolerant parse: leading blanks are skipped, "&H" and "&O" (any case) mean hexadecimal and octal,
// parsing stops at the first character that does not fit, and no digits give 0. A hexadecimal text
// of up to 4 digits is a 16-bit two's complement number, of 5 to 8 digits a 32-bit one; further
// digits do not fit. A decimal text may have a sign, a point and an exponent ("1E-3"); beyond the
// range of the result it gives the greatest there is. An octal text follows the same two widths by
// its value. A trailing "&" makes the number one of 32 bits that is not negative. Never throws.
double Val(std::string_view text);

// `Val` as a whole number: cut towards zero and held inside `lowest` to `highest`.
int ValInt(std::string_view text, int lowest, int highest);

// Upper-case digits without leading zeros. A number of -32768 to -1 gives its 16-bit two's
// complement, any other negative number its 32-bit one.
std::string Hex(std::int64_t number);
std::string Oct(std::int64_t number);

// The same, but every negative number gives its 32-bit two's complement.
std::string Hex32(std::int64_t number);
std::string Oct32(std::int64_t number);

// Decimal text with one leading blank when the number is not negative.
std::string Str(std::int64_t number);

// Shortest decimal text that reads back as the same 32-bit number: a leading zero before the point,
// never an exponent, independent of the locale. What is no finite number gives the nearest text
// that reads as one.
std::string FormatSingle(float number);

// Strict conversions of a bare number in a file. Blanks around it are allowed. Anything that is no
// number throws RunTimeError 13, a number outside the type's range RunTimeError 6. A whole-number
// type takes a text with a fraction rounded to the nearest, ties to even. The reason that they
// throw quotes the text.
std::uint8_t ToByte(std::string_view text);
std::int16_t ToInteger(std::string_view text);
std::int32_t ToLong(std::string_view text);
float ToSingle(std::string_view text);

}  // namespace tarnlink
