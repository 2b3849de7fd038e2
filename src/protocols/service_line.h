// The line that the graph and the service tools share: ZOLT at the options' port and speed.
#pragma once

#include <functional>

#include "platform/serial_port.h"

namespace tarnlink {

// What the options say of it whenever they are asked.
struct ServiceLine {
  std::function<int()> ComPortNumber;
  std::function<int()> Baudrate;  // as it is stored: how often 1200 is doubled
};

// ms that a slave may take before it answers, beside the time on the line.
inline constexpr int kThinkingTime = 100;

// Bits in a second.
int SpeedOf(const ServiceLine& line);

// How long a request and its answer of one frame each take on the line, in ms.
int TimeOfExchange(const ServiceLine& line);

// Number, speed and framing for a port that is closed. Throws RunTimeError for a number or a speed
// that no port has.
void SetServiceLine(SerialPort& port, const ServiceLine& line);

}  // namespace tarnlink
