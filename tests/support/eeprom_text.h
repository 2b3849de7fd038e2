// EEPROM definition files as tests write them.
#pragma once

#include <functional>
#include <string>

#include "common/numbers.h"
#include "common/text.h"

namespace tarnlink {

// One record, with the line end.
inline std::string DefRecord(int address, int value, const std::string& comment = "") {
  return Stuff(Hex(value), 2) + "," + std::to_string(value) + ",0X" + Stuff(Hex(address), 4) +
         ", " + comment + "\r\n";
}

// Sixteen records from `first` on.
inline std::string DefBlock(int first, const std::function<int(int offset)>& value) {
  std::string text;
  for (int i = 0; i < 16; ++i) text += DefRecord(first + i, value(i), "cell " + std::to_string(i));
  return text;
}

}  // namespace tarnlink
