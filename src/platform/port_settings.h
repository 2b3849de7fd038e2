// The text form of a port's settings, taken apart.
#pragma once

#include <string>
#include <string_view>

namespace tarnlink {

struct PortSettings {
  int speed = 9600;
  char parity = 'N';  // N, E or O
  int data_bits = 8;
  int stop_bits = 1;

  bool operator==(const PortSettings&) const = default;
};

// Takes " 9600,N,8, 1" apart; blanks and the case of the letter do not count, and the comma behind
// the speed may be missing (" 2400n,8,1"). Throws RunTimeError 13 for anything else.
PortSettings ParsePortSettings(std::string_view text);

}  // namespace tarnlink
