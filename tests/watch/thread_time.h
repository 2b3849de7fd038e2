// Time as one thread has it: the clock's, without what the thread waited for a processor that
// others had. So a machine that is busy with something else does not make a window look blocked.
#pragma once

#include <chrono>

namespace tarnlink {

class ThreadTime {
 public:
  // Of the thread that makes it.
  ThreadTime();
  ~ThreadTime();
  ThreadTime(const ThreadTime&) = delete;
  ThreadTime& operator=(const ThreadTime&) = delete;

  // Any thread may ask. Where the system does not tell the waiting it is the clock's time.
  std::chrono::nanoseconds Now() const;

 private:
  std::chrono::nanoseconds Waited() const;

  int file_;
};

// How long the window may keep its user waiting. Code that is not optimised, or looked at by
// sanitizers, is not held to it.
#ifdef __OPTIMIZE__
inline constexpr bool kWaitingCounts = true;
#else
inline constexpr bool kWaitingCounts = false;
#endif
inline constexpr std::chrono::milliseconds kLongestWait{100};

}  // namespace tarnlink
