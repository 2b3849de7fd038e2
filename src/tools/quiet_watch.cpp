#include "tools/quiet_watch.h"

#include <utility>

namespace tarnlink {

namespace {

constexpr int kTick = 20;  // ms
// What a slave may take before it answers a request that was not heard.
constexpr int kThinkingTime = 100;  // ms

}  // namespace

QuietWatch::QuietWatch(Platform& platform, const ServiceLine& line,
                       std::function<void(bool is_quiet)> end)
    : line_(line), end_(std::move(end)), ticks_(platform.CreateTimer()) {
  ticks_->SetInterval(kTick);
  ticks_->SetOnTimer([this] { Tick(); });
}

void QuietWatch::Raise() {
  doubt_.Raise();
  passed_ = 0;
  ticks_->SetEnabled(true);
}

void QuietWatch::End() {
  ticks_->SetEnabled(false);
  doubt_.Clear();
}

void QuietWatch::Tick() {
  passed_ += kTick;
  const int exchange = TimeOfExchange(line_);
  if (!doubt_.AllowsRequest(kTick, exchange)) return;
  End();
  end_(passed_ >= exchange + kThinkingTime);
}

}  // namespace tarnlink
