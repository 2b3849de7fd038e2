// What the system says when the program is to end, as at the end of a session.
#pragma once

#include <QSocketNotifier>
#include <array>
#include <functional>
#include <memory>

namespace tarnlink {

// Takes SIGTERM, SIGINT and SIGHUP for as long as it lives, and calls `leave` for the first of them
// through the event loop. One that comes before `leave` is back ends the program at once. A signal
// that the program was started to ignore stays ignored. One object at a time.
class EndSignals {
 public:
  explicit EndSignals(std::function<void()> leave);
  ~EndSignals();
  EndSignals(const EndSignals&) = delete;
  EndSignals& operator=(const EndSignals&) = delete;

 private:
  void Take();
  void Leave();

  std::function<void()> leave_;
  std::array<int, 2> pipe_{-1, -1};
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace tarnlink
