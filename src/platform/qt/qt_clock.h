// The computer's clock.
#pragma once

#include "platform/clock.h"

namespace tarnlink {

class QtClock final : public Clock {
 public:
  Date Now() const override;
  std::chrono::microseconds Elapsed() const override;
};

}  // namespace tarnlink
