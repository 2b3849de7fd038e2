// What a typed value becomes before it goes out: hexadecimal text, as long as its field.
#pragma once

#include <string>
#include <string_view>

#include "monitor/location_table.h"

namespace tarnlink {

struct WriteText {
  std::string value = {};
  // A word of memory goes out a byte at a time where the protocol writes bytes; this is the second.
  std::string SecondByteValue = {};
  bool SendSecondByte = false;

  bool operator==(const WriteText&) const = default;
};

// A value typed for a Location that is no bit. `format` is the index of `opt_WriteValueFormat`.
// Nothing is refused: what is no number counts as 0, hexadecimal text goes out as typed, binary and
// octal text is not converted and gives zeros, and of what is too long the end is taken.
WriteText MakeWriteText(const Location& location, int format, std::string_view text);

// The byte, or word, that holds the bit of a Location, with the bit set or cleared and the others
// as `RawValue` has them. A bit beyond a word is none, and changes nothing.
std::string MakeBitText(const Location& location, bool set);

// One register of a block: a decimal text as four digits.
std::string MakeRegisterText(std::string_view text);

}  // namespace tarnlink
