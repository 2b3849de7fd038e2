// The time of day. Real class: `QtClock`; fake: `FakeClock`.
#pragma once

#include "common/dates.h"

namespace tarnlink {

class Clock {
 public:
  virtual ~Clock() = default;

  // Local time now.
  virtual Date Now() const = 0;
};

}  // namespace tarnlink
