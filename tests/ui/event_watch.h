// The program's application object, which here also measures how long each event keeps the others
// waiting.
#pragma once

#include <string>

#include "ui/guarded_application.h"
#include "watch/thread_time.h"

namespace tarnlink {

class EventWatch final : public GuardedApplication {
 public:
  using GuardedApplication::GuardedApplication;

  bool notify(QObject* receiver, QEvent* event) override;

  // The longest event since the last `Forget`, in milliseconds, and what it was.
  double longest() const { return longest_; }
  const std::string& what() const { return what_; }
  void Forget();

  static EventWatch& Instance() { return *static_cast<EventWatch*>(qApp); }

 private:
  const ThreadTime time_;
  int depth_ = 0;
  // What was taken by the machine's host until shortly before the event.
  std::chrono::nanoseconds stolen_{};
  std::chrono::nanoseconds looked_{};
  double longest_ = 0;
  std::string what_;
};

}  // namespace tarnlink
