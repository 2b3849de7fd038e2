// Time that only moves when a test moves it, with a queue of events in microseconds.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <utility>

namespace tarnlink {

using Micros = std::chrono::microseconds;

class VirtualTime {
 public:
  using EventId = std::pair<Micros, std::uint64_t>;

  // Where set, each event of any virtual time is run by it, and not before it returns: a watch that
  // measures what is called.
  static inline std::function<void(const std::function<void()>&)> Around = {};

  Micros now() const { return now_; }

  // Runs `event` once, `delay` from now. Events of one moment run in the order of posting.
  EventId Post(Micros delay, std::function<void()> event);
  // Does nothing for an event that has run.
  void Cancel(EventId id) { queue_.erase(id); }

  // Runs what falls due within `span`, one event after the other, and moves the time on by it. May
  // be called from inside an event, as a modal box does.
  void Advance(Micros span);

  // Runs what is due now, and what that posts for now.
  void Settle() { Advance(Micros::zero()); }

  // Runs events until `condition` holds or `bound` has passed. Returns whether it holds; the time
  // stands where it came true.
  bool RunUntil(const std::function<bool()>& condition, Micros bound);

 private:
  bool RunNext(Micros latest);

  Micros now_ = Micros::zero();
  std::uint64_t next_number_ = 0;
  std::map<EventId, std::function<void()>> queue_;
};

}  // namespace tarnlink
