// The program's application object, which here also measures how long each event keeps the others
// waiting, and each call of virtual time, which the program would have as an event of a timer. One
// that opens a loop of its own does so only until that loop comes to its next event or waits for
// one, and again behind it.
#pragma once

#include <QEvent>
#include <chrono>
#include <functional>
#include <string>

#include "ui/guarded_application.h"
#include "watch/thread_time.h"

namespace tarnlink {

class EventWatch final : public GuardedApplication {
 public:
  EventWatch(int& count, char** words);

  // Events of other threads keep nobody waiting.
  bool notify(QObject* receiver, QEvent* event) override;
  void RunDue(const std::function<void()>& call);

  struct Wait {
    double milliseconds = 0;
    std::string what = {};
  };
  // The longest event since the last `Forget`, and of the whole test.
  const Wait& longest() const { return longest_; }
  const Wait& longest_of_test() const { return longest_of_test_; }
  // Prints the longest event, and what was done meanwhile.
  void Print(const char* doing) const;
  void Forget() { longest_ = {}; }
  void BeginTest() { longest_ = longest_of_test_ = {}; }

  static EventWatch& Instance() { return *static_cast<EventWatch*>(qApp); }

 private:
  struct Measured {
    int loop = -1;  // that it comes from
    std::string what = {};
  };

  // Measures until it returns, in place of what was measured up to here.
  void Measure(Measured measured, const std::function<void()>& call);
  void BeginIdle();
  void EndIdle();
  void Begin();
  void End();

  const ThreadTime time_;
  Measured measured_;
  bool is_idle_ = false;  // a loop waits, or has just ended its waiting
  std::chrono::nanoseconds begin_{};
  // What was taken by the machine's host until shortly before the event.
  std::chrono::nanoseconds stolen_{};
  std::chrono::nanoseconds looked_{};
  Wait longest_;
  Wait longest_of_test_;
};

}  // namespace tarnlink
