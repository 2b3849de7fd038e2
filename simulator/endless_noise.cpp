#include "simulator/endless_noise.h"

#include <algorithm>

#include "simulator/damage.h"

namespace boiler {
namespace {

// A line without a pace babbles at this one, so that a moment holds an end of bytes.
constexpr Pace kFastPace{115200, 10};
// Bytes come in handfuls, so that whoever carries them need not wake for each.
constexpr std::int64_t kHandfulUs = 2000;
constexpr std::size_t kMostAtOnce = 4096;

}  // namespace

void EndlessNoise::Start(std::int64_t start_us, std::int64_t lasts_us) {
  next_us_ = start_us;
  end_us_.reset();
  if (lasts_us > 0) end_us_ = start_us + lasts_us;
}

std::string EndlessNoise::TakeDue(std::int64_t now_us) {
  std::string bytes;
  const std::int64_t byte_us = (pace_.baud == 0 ? kFastPace : pace_).TimeOf(1);
  const std::int64_t handful_us = std::max(byte_us, kHandfulUs);
  while (next_us_ && *next_us_ <= now_us) {
    if (end_us_ && *next_us_ >= *end_us_) {
      Stop();
    } else if (bytes.size() >= kMostAtOnce) {
      next_us_ = now_us + handful_us;
    } else {
      bytes += NoiseBytes(static_cast<int>(handful_us / byte_us), random_);
      *next_us_ += handful_us;
    }
  }
  return bytes;
}

}  // namespace boiler
