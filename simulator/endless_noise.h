// A line that never falls silent again: random bytes without end.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "simulator/pace.h"
#include "simulator/random.h"

namespace boiler {

class EndlessNoise {
 public:
  EndlessNoise(Pace pace, std::uint64_t seed) : pace_(pace), random_(seed) {}

  // From `start_us` on, for so long; 0 means until it is stopped.
  void Start(std::int64_t start_us, std::int64_t lasts_us);
  void Stop() { next_us_.reset(); }

  bool Running() const { return next_us_.has_value(); }
  std::optional<std::int64_t> NextDue() const { return next_us_; }
  // What has been babbled up to now, and of a long time only a part. Stops when its time is over.
  std::string TakeDue(std::int64_t now_us);

 private:
  Pace pace_;
  Random random_;
  std::optional<std::int64_t> next_us_;
  std::optional<std::int64_t> end_us_;
};

}  // namespace boiler
