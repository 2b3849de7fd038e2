// What the frames of all protocols are made of: bytes, and hexadecimal digits as characters.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tarnlink {

// The byte at `offset`, which counts from 0. A frame that ends before it throws RunTimeError 9, so
// that a response cut short ends its handling.
std::uint8_t ByteAt(std::string_view frame, std::size_t offset);

// The last `count` upper-case digits, 8 at most, of `number`, with zeros in front. A negative
// number gives those of its two's complement.
std::string HexDigits(std::int32_t number, std::size_t count);
void AppendHexDigits(std::string& text, std::int32_t number, std::size_t count);

// The unsigned number of the hexadecimal digits, of either case, that `text` begins with, 8 at
// most. Digits end where `Val` ends them; a text that begins with none gives 0.
std::uint32_t HexNumber(std::string_view text);

}  // namespace tarnlink
