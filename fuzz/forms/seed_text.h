// Inputs for a `FormDriver` as one writes them down.
#pragma once

#include <string>

namespace tarnlink::seed {

// The control that was added as this one, counted from 0, with what the act asks for: a text, a
// row.
inline std::string Act(int control, const std::string& detail = {}) {
  std::string act(1, '\0');
  act += static_cast<char>(control & 0xFF);
  act += static_cast<char>(control >> 8);
  return act + detail;
}
// Of the driver's list of texts.
inline std::string Text(int number) { return std::string(1, static_cast<char>(number)); }
// A box is answered: by the first of its two buttons, or with the first of the files.
inline std::string Yes() { return std::string("\x05\0", 2); }
inline std::string File(int number) {
  std::string file(1, '\x05');
  file += static_cast<char>(number);
  return file += '\0';
}

// The asked slave says what it has. Of Modbus it is one byte and not two.
inline std::string Reply(int value = 0x1234) {
  std::string answer = "\x60";
  answer += '\0';
  answer += static_cast<char>(value & 0xFF);
  return answer += static_cast<char>(value >> 8);
}
// To a write.
inline std::string Acknowledge() { return std::string("\x60\0", 2); }
// 0 to 7: 1, 5, 20, 40, 80, 150, 400 and 1000 ms.
inline std::string Wait(int span) {
  std::string wait = "\xC0";
  return wait += static_cast<char>(span);
}
inline std::string Unplug() { return std::string("\xF0\0", 2); }
inline std::string PlugIn() { return std::string("\xF0\1", 2); }

inline std::string Times(int count, const std::string& what) {
  std::string all;
  for (int i = 0; i < count; ++i) all += what;
  return all;
}

}  // namespace tarnlink::seed
