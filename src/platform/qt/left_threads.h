// Threads that nobody waits for any more, and that may still wait for the disk.
#pragma once

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace tarnlink {

class LeftThreads {
 public:
  LeftThreads() = default;
  // Waits for all of them.
  ~LeftThreads();
  LeftThreads(const LeftThreads&) = delete;
  LeftThreads& operator=(const LeftThreads&) = delete;

  // The thread sets `has_ended` last of all.
  void Add(std::thread thread, std::shared_ptr<const std::atomic<bool>> has_ended);

 private:
  struct Left {
    std::thread thread;
    std::shared_ptr<const std::atomic<bool>> has_ended;
  };

  std::vector<Left> left_;
};

}  // namespace tarnlink
