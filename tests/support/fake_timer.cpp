#include "support/fake_timer.h"

#include <algorithm>

namespace tarnlink {

void FakeTimer::SetInterval(int milliseconds) {
  if (milliseconds == interval_) return;
  interval_ = milliseconds;
  if (!enabled_) return;
  Stop();
  Start(std::chrono::milliseconds(interval_));
}

void FakeTimer::SetEnabled(bool enabled) {
  if (enabled == enabled_) return;
  enabled_ = enabled;
  Stop();
  if (enabled_) Start(std::chrono::milliseconds(interval_));
}

void FakeTimer::Start(Micros delay) {
  if (interval_ <= 0) return;
  due_ = time_.now() + delay;
  ticking_ = true;
  event_ = time_.Post(delay, [this] { Expire(); });
}

void FakeTimer::Stop() {
  if (ticking_) time_.Cancel(event_);
  ticking_ = false;
}

void FakeTimer::Expire() {
  // On the grid of the first expiry; what a long handler missed is left out.
  const Micros step = std::chrono::milliseconds(interval_);
  const Micros next = std::max(due_ + step, time_.now());
  Start(next - time_.now());
  if (*in_handler_ || !handler_) return;
  // Copies, because the handler may set another handler or destroy the timer.
  const auto handler = handler_;
  const auto in_handler = in_handler_;
  *in_handler = true;
  try {
    handler();
  } catch (...) {
    *in_handler = false;
    throw;
  }
  *in_handler = false;
}

}  // namespace tarnlink
