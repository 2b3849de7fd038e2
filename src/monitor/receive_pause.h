// The wait for the rest of a response that has begun to come in, for a protocol whose receive event
// fires before all of it is there. Meanwhile no further event comes.
#pragma once

#include <functional>
#include <memory>

#include "platform/serial_port.h"
#include "platform/timer.h"

namespace tarnlink {

class ReceivePause {
 public:
  // `comm` outlives it. `on_expiry` is called each time that the pause has passed, until `End`.
  ReceivePause(SerialPort& comm, std::unique_ptr<Timer> timer, std::function<void()> on_expiry);

  void Begin(int milliseconds);
  bool IsUnderWay() const { return timer_->Enabled(); }
  // Asked at each expiry: whether `length` bytes are there, or too few and none has come for the
  // time of the pause, and for 20 ms at least.
  bool IsOver(int length);
  // Receive events come again.
  void End();

 private:
  SerialPort& comm_;
  std::unique_ptr<Timer> timer_;
  int threshold_ = 0;  // of the port outside the pause
  int arrived_ = 0;    // bytes at the last expiry
  int quiet_ = 0;      // ms without a byte, in whole pauses
};

}  // namespace tarnlink
