// A timer on virtual time.
#pragma once

#include <functional>
#include <memory>

#include "platform/timer.h"
#include "support/virtual_time.h"

namespace tarnlink {

class FakeTimer final : public Timer {
 public:
  explicit FakeTimer(VirtualTime& time) : time_(time) {}
  ~FakeTimer() override { Stop(); }

  int Interval() const override { return interval_; }
  void SetInterval(int milliseconds) override;
  bool Enabled() const override { return enabled_; }
  void SetEnabled(bool enabled) override;
  void SetOnTimer(std::function<void()> handler) override { handler_ = std::move(handler); }

 private:
  void Start(Micros delay);
  void Stop();
  void Expire();

  VirtualTime& time_;
  int interval_ = 0;
  bool enabled_ = false;
  bool ticking_ = false;
  Micros due_{};
  VirtualTime::EventId event_{};
  std::function<void()> handler_;
  // Set while the handler runs; shared, because the handler may destroy the timer.
  std::shared_ptr<bool> in_handler_ = std::make_shared<bool>(false);
};

}  // namespace tarnlink
