// The time of day. Real class: `QtClock`; fake: `FakeClock`.
#pragma once

#include <chrono>

#include "common/dates.h"

namespace tarnlink {

class Clock {
 public:
  virtual ~Clock() = default;

  // Local time now.
  virtual Date Now() const = 0;

  // The time since some fixed moment. It never goes back, whatever is done to the clock.
  virtual std::chrono::microseconds Elapsed() const = 0;
};

}  // namespace tarnlink
