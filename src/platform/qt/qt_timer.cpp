#include "platform/qt/qt_timer.h"

namespace tarnlink {

QtTimer::QtTimer() {
  // Two timers of one interval fire in the order in which they were started, which only precise
  // timers keep.
  timer_.setTimerType(Qt::PreciseTimer);
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { Expire(); });
}

void QtTimer::SetInterval(int milliseconds) {
  if (milliseconds == interval_) return;
  interval_ = milliseconds;
  if (enabled_) Restart();
}

void QtTimer::SetEnabled(bool enabled) {
  if (enabled == enabled_) return;
  enabled_ = enabled;
  Restart();
}

void QtTimer::Restart() {
  if (enabled_ && interval_ > 0) {
    timer_.start(interval_);
  } else {
    timer_.stop();
  }
}

void QtTimer::Expire() {
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
