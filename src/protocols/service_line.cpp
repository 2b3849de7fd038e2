#include "protocols/service_line.h"

#include <algorithm>

#include "common/numbers.h"
#include "protocols/zolt_frame.h"

namespace tarnlink {

int SpeedOf(const ServiceLine& line) {
  constexpr int kLowestSpeed = 1200;
  constexpr int kLastSpeed = 10;  // doublings, far beyond every port
  return kLowestSpeed << std::clamp(line.Baudrate(), 0, kLastSpeed);
}

int TimeOfExchange(const ServiceLine& line) {
  constexpr int kBits = 2 * zolt_frame::kLength * 10;
  return kBits * 1000 / SpeedOf(line);
}

void SetServiceLine(SerialPort& port, const ServiceLine& line) {
  port.SetCommPort(line.ComPortNumber());
  port.SetSettings(Str(SpeedOf(line)) + "n,8,1");
}

}  // namespace tarnlink
