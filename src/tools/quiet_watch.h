// Holds the next request of a service tool back until the line can be trusted again.
#pragma once

#include <functional>
#include <memory>

#include "platform/platform.h"
#include "protocols/service_line.h"

namespace tarnlink {

class QuietWatch {
 public:
  // `line` outlives it. `end`: the next request may go out; the line is quiet, or it has been busy
  // for so long that it is not waited for.
  QuietWatch(Platform& platform, const ServiceLine& line, std::function<void(bool is_quiet)> end);

  bool IsOn() const { return ticks_->Enabled(); }
  // Something came that puts what follows in doubt, the first time or once more.
  void Raise();
  // The same, and an answer may be so many ms late: it is waited for as long.
  void Settle(int late);
  void End();

 private:
  void Tick();

  const ServiceLine& line_;
  std::function<void(bool is_quiet)> end_;
  std::unique_ptr<Timer> ticks_;
  // ms
  int late_ = 0;    // that an answer may be, beside what a slave takes to think
  int quiet_ = 0;   // since it was raised last
  int waited_ = 0;  // since it was raised first
};

}  // namespace tarnlink
