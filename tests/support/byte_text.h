// Frames as text that a person can read and type.
#pragma once

#include <string>
#include <string_view>

namespace tarnlink {

// "01 03 00 2A" as four bytes. Blanks do not count; anything but hexadecimal pairs fails the test.
std::string Bytes(std::string_view hexadecimal);

// The bytes as "01 03 00 2A".
std::string HexText(std::string_view bytes);

// Printable characters as they are, everything else as "<0D>".
std::string Readable(std::string_view bytes);

}  // namespace tarnlink
