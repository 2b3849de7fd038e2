#include "monitor/receive_pause.h"

#include <algorithm>
#include <utility>

namespace tarnlink {

namespace {

// Adapters on USB hand bytes on every 16 ms, whatever the speed of the line: on a fast one the
// pause may fall between two handfuls.
constexpr int kAdapterGap = 20;  // ms

}  // namespace

ReceivePause::ReceivePause(SerialPort& comm, std::unique_ptr<Timer> timer,
                           std::function<void()> on_expiry)
    : comm_(comm), timer_(std::move(timer)) {
  timer_->SetOnTimer(std::move(on_expiry));
}

void ReceivePause::Begin(int milliseconds) {
  threshold_ = comm_.RThreshold();
  comm_.SetRThreshold(0);
  arrived_ = comm_.InBufferCount();
  quiet_ = 0;
  timer_->SetInterval(milliseconds);
  timer_->SetEnabled(true);
}

bool ReceivePause::IsOver(int length) {
  const int arrived = comm_.InBufferCount();
  quiet_ = arrived > arrived_ ? 0 : quiet_ + timer_->Interval();
  arrived_ = arrived;
  return arrived >= length || quiet_ >= std::max(timer_->Interval(), kAdapterGap);
}

void ReceivePause::End() {
  if (!IsUnderWay()) return;
  timer_->SetEnabled(false);
  comm_.SetRThreshold(threshold_);
}

}  // namespace tarnlink
