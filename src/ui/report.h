// Reporting an event of the user to a form that may not have filled it in.
#pragma once

namespace tarnlink {

// Always true, so that a handler can say in the same breath that the user's action was taken.
template <class Event, class... Args>
bool Report(const Event& event, const Args&... args) {
  if (event) event(args...);
  return true;
}

}  // namespace tarnlink
