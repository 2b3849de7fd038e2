#include "watch/thread_time.h"

#include <fcntl.h>
#include <unistd.h>

#include <charconv>
#include <cstdint>
#include <string>

namespace tarnlink {

ThreadTime::ThreadTime()
    : file_(open(("/proc/self/task/" + std::to_string(gettid()) + "/schedstat").c_str(),
                 O_RDONLY | O_CLOEXEC)) {}

ThreadTime::~ThreadTime() {
  if (file_ >= 0) close(file_);
}

std::chrono::nanoseconds ThreadTime::Now() const {
  return std::chrono::steady_clock::now().time_since_epoch() - Waited();
}

// The file's second number: nanoseconds for which the thread could have run and did not.
std::chrono::nanoseconds ThreadTime::Waited() const {
  char text[64];
  const ssize_t length = file_ < 0 ? -1 : pread(file_, text, sizeof text, 0);
  if (length <= 0) return {};
  const char* const end = text + length;
  std::int64_t running = 0;
  std::int64_t waiting = 0;
  const auto first = std::from_chars(text, end, running);
  if (first.ptr == end) return {};
  std::from_chars(first.ptr + 1, end, waiting);
  return std::chrono::nanoseconds(waiting);
}

}  // namespace tarnlink
