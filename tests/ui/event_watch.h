// The program's application object, which here also measures how long each event keeps the others
// waiting. One that opens a loop of its own does so only until that loop comes to its next event or
// waits for one, and again behind it.
#pragma once

#include <QEvent>
#include <chrono>
#include <string>

#include "ui/guarded_application.h"
#include "watch/thread_time.h"

namespace tarnlink {

class EventWatch final : public GuardedApplication {
 public:
  EventWatch(int& count, char** words);

  bool notify(QObject* receiver, QEvent* event) override;

  // The longest event since the last `Forget`, in milliseconds, and what it was.
  double longest() const { return longest_; }
  const std::string& what() const { return what_; }
  void Forget();

  static EventWatch& Instance() { return *static_cast<EventWatch*>(qApp); }

 private:
  struct Measured {
    int loop = -1;  // that it comes from
    QEvent::Type type = QEvent::None;
    std::string receiver = {};
  };

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
  double longest_ = 0;
  std::string what_;
};

}  // namespace tarnlink
