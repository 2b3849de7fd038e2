// ZOLT frames as tests write them: the type byte as a number, the rest as its characters.
#pragma once

#include <string>

namespace tarnlink {

// From the type byte on.
inline std::string Body(int type, const std::string& digits) {
  return static_cast<char>(type) + digits;
}

// With start and end; the CRC is the last of the digits.
inline std::string Frame(int type, const std::string& digits) {
  return "\r" + Body(type, digits) + "\n";
}

}  // namespace tarnlink
