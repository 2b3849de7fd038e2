#include "platform/qt/left_threads.h"

#include <utility>

namespace tarnlink {

LeftThreads::~LeftThreads() {
  for (Left& left : left_) left.thread.join();
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
