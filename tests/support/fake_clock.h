// A clock that follows virtual time from a moment that the test sets.
#pragma once

#include "platform/clock.h"
#include "support/virtual_time.h"

namespace tarnlink {

class FakeClock final : public Clock {
 public:
  explicit FakeClock(const VirtualTime& time) : time_(time) {}

  // 2024-03-05 14:07:09 when the world begins.
  Date Now() const override {
    const std::chrono::duration<double> passed = time_.now() - set_at_;
    return base_ + passed.count() / kSecondsPerDay;
  }

  std::chrono::microseconds Elapsed() const override { return time_.now(); }

  void Set(const CivilTime& moment) {
    base_ = ToDate(moment);
    set_at_ = time_.now();
  }

 private:
  const VirtualTime& time_;
  Date base_ = ToDate({2024, 3, 5, 14, 7, 9});
  Micros set_at_{};
};

}  // namespace tarnlink
