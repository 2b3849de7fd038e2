// Tells when the program's event loop has kept its user waiting: a thread of its own asks it every
// few milliseconds whether it is there.
#pragma once

#include <QObject>
#include <QString>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

#include "watch/thread_time.h"

namespace tarnlink_driver {

class Watchdog final : public QObject {
 public:
  // `tell` is called in the thread that makes this, with the milliseconds of each wait that was too
  // long and what the thread did in them. What comes before the loop runs is no waiting.
  explicit Watchdog(std::function<void(double, const std::string&)> tell);
  ~Watchdog() override;

  bool event(QEvent* event) override;

 private:
  class Question;

  void Ask();
  void Judge(const Question& question) const;

  const std::function<void(double, const std::string&)> tell_;
  const tarnlink::ThreadTime time_;  // of the event loop's thread
  std::mutex mutex_;
  std::condition_variable wake_;
  bool answered_ = true;
  bool over_ = false;
  bool loop_runs_ = false;
  std::thread asker_;
};

}  // namespace tarnlink_driver
