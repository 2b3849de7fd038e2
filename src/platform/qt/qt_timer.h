// A timer on Qt's event loop.
#pragma once

#include <QTimer>
#include <functional>
#include <memory>

#include "platform/timer.h"

namespace tarnlink {

class QtTimer final : public Timer {
 public:
  QtTimer();

  int Interval() const override { return interval_; }
  void SetInterval(int milliseconds) override;
  bool Enabled() const override { return enabled_; }
  void SetEnabled(bool enabled) override;
  void SetOnTimer(std::function<void()> handler) override { handler_ = std::move(handler); }

 private:
  void Restart();
  void Expire();

  QTimer timer_;
  int interval_ = 0;
  bool enabled_ = false;
  std::function<void()> handler_;
  // Set while the handler runs; shared, because the handler may destroy the timer.
  std::shared_ptr<bool> in_handler_ = std::make_shared<bool>(false);
};

}  // namespace tarnlink
