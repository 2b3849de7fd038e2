// A repeating timer on the GUI thread. Real class: `QtTimer`; fake: `FakeTimer`.
#pragma once

#include <functional>

namespace tarnlink {

class Timer {
 public:
  virtual ~Timer() = default;

  // Milliseconds; 0 means never. Setting another interval while enabled starts it anew.
  virtual int Interval() const = 0;
  virtual void SetInterval(int milliseconds) = 0;

  // Enabling an enabled timer changes nothing; off and on restarts it.
  virtual bool Enabled() const = 0;
  virtual void SetEnabled(bool enabled) = 0;

  // Called each time the interval has passed while enabled, also while a modal box is up, but never
  // while the handler of this same timer still runs: an expiry in between is dropped.
  virtual void SetOnTimer(std::function<void()> handler) = 0;
};

}  // namespace tarnlink
