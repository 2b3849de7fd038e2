// Threads that nobody waits for any more, and that may still wait for the disk.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace tarnlink {

class LeftThreads {
 public:
  // `patience` is how long the end waits for all of them together: a disk that does not answer
  // cannot keep the program from ending.
  explicit LeftThreads(std::chrono::milliseconds patience = std::chrono::seconds(3))
      : patience_(patience) {}
  ~LeftThreads();
  LeftThreads(const LeftThreads&) = delete;
  LeftThreads& operator=(const LeftThreads&) = delete;

  // The thread sets `has_ended` last of all.
  void Add(std::thread thread, std::shared_ptr<const std::atomic<bool>> has_ended);

 private:
  bool EndsBy(std::chrono::steady_clock::time_point end, const std::atomic<bool>& has_ended);

  struct Left {
    std::thread thread;
    std::shared_ptr<const std::atomic<bool>> has_ended;
  };

  std::chrono::milliseconds patience_;
  std::mutex mutex_;
  std::condition_variable nobody_;  // wakes: the threads only leave their mark
  std::vector<Left> left_;
};

}  // namespace tarnlink
