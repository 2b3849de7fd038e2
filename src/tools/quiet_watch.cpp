#include "tools/quiet_watch.h"

#include <algorithm>
#include <utility>

namespace tarnlink {

namespace {

constexpr int kTick = 20;  // ms
// A line that is never quiet is asked all the same.
constexpr int kLongestWait = 1'000;  // ms
// So many late answers may come, one behind the other.
constexpr int kMostLate = 4;

}  // namespace

QuietWatch::QuietWatch(Platform& platform, const ServiceLine& line,
                       std::function<void(bool is_quiet)> end)
    : line_(line), end_(std::move(end)), ticks_(platform.CreateTimer()) {
  ticks_->SetInterval(kTick);
  ticks_->SetOnTimer([this] { Tick(); });
}

void QuietWatch::Raise() {
  if (!IsOn()) late_ = waited_ = 0;
  quiet_ = 0;
  ticks_->SetEnabled(true);
}

void QuietWatch::Settle(int late) {
  Raise();
  late_ = std::max(late_, late);
}

void QuietWatch::End() { ticks_->SetEnabled(false); }

void QuietWatch::Tick() {
  quiet_ += kTick;
  waited_ += kTick;
  const bool is_quiet = quiet_ >= TimeOfExchange(line_) + kThinkingTime + late_;
  if (!is_quiet && waited_ < kLongestWait + kMostLate * late_) return;
  End();
  end_(is_quiet);
}

}  // namespace tarnlink
