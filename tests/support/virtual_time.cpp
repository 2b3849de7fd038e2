#include "support/virtual_time.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tarnlink {
namespace {

// Far more than any test needs between two moments; events that post each other for ever would
// otherwise hang the run.
constexpr int kMostEventsAtOneMoment = 1'000'000;

}  // namespace

VirtualTime::EventId VirtualTime::Post(Micros delay, std::function<void()> event) {
  const EventId id{now_ + std::max(delay, Micros::zero()), next_number_++};
  queue_.emplace(id, std::move(event));
  return id;
}

bool VirtualTime::RunNext(Micros latest) {
  if (queue_.empty() || queue_.begin()->first.first > latest) return false;
  now_ = std::max(now_, queue_.begin()->first.first);
  auto event = queue_.extract(queue_.begin());
  Around ? Around(event.mapped()) : event.mapped()();
  return true;
}

void VirtualTime::Advance(Micros span) {
  const Micros target = now_ + span;
  Micros moment = now_;
  int events = 0;
  while (RunNext(target)) {
    events = now_ == moment ? events + 1 : 0;
    moment = now_;
    if (events > kMostEventsAtOneMoment) {
      ADD_FAILURE() << "Events post each other without end at " << now_.count() << " us.";
      return;
    }
  }
  now_ = std::max(now_, target);
}

bool VirtualTime::RunUntil(const std::function<bool()>& condition, Micros bound) {
  const Micros target = now_ + bound;
  while (!condition()) {
    if (!RunNext(target)) {
      now_ = std::max(now_, target);
      return condition();
    }
  }
  return true;
}

}  // namespace tarnlink
