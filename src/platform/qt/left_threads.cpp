#include "platform/qt/left_threads.h"

#include <utility>

namespace tarnlink {

namespace {

constexpr std::chrono::milliseconds kLook{5};

}  // namespace

LeftThreads::~LeftThreads() {
  const auto end = std::chrono::steady_clock::now() + patience_;
  for (Left& left : left_) {
    if (EndsBy(end, *left.has_ended)) {
      left.thread.join();
    } else {
      left.thread.detach();
    }
  }
}

bool LeftThreads::EndsBy(std::chrono::steady_clock::time_point end,
                         const std::atomic<bool>& has_ended) {
  std::unique_lock lock(mutex_);
  while (!has_ended && std::chrono::steady_clock::now() < end) nobody_.wait_for(lock, kLook);
  return has_ended;
}

void LeftThreads::Add(std::thread thread, std::shared_ptr<const std::atomic<bool>> has_ended) {
  left_.push_back({std::move(thread), std::move(has_ended)});
  std::erase_if(left_, [](Left& left) {
    if (!*left.has_ended) return false;
    left.thread.join();
    return true;
  });
}

}  // namespace tarnlink
