// Time as one thread has it: the clock's, without what the thread waited for a processor that
// others had. So a machine that is busy with something else does not make a window look blocked.
#pragma once

#include <chrono>
#include <string>

namespace tarnlink {

// What a thread has done until some moment, for who has to find out what kept it.
struct ThreadAccount {
  double ran = 0;     // ms on a processor
  double waited = 0;  // ms for a processor that others had
  double stolen = 0;  // ms that the machine's host took from all processors together
  double pages = 0;   // of the program that had to be read from the disk
};

class ThreadTime {
 public:
  // Of the thread that makes it.
  ThreadTime();
  ~ThreadTime();
  ThreadTime(const ThreadTime&) = delete;
  ThreadTime& operator=(const ThreadTime&) = delete;

  // Any thread may ask. Where the system does not tell the waiting it is the clock's time.
  std::chrono::nanoseconds Now() const;
  ThreadAccount Account() const;  // likewise

  // What the machine's host has taken from it, all processors together: it looks as if the thread
  // had run. Counted in steps of 10 ms.
  std::chrono::nanoseconds Stolen() const;

 private:
  int schedule_;
  int state_;
  int machine_;
};

// How long the window may keep its user waiting. Code that is not optimised, or looked at by
// sanitizers, is not held to it.
#ifdef __OPTIMIZE__
inline constexpr bool kWaitingCounts = true;
#else
inline constexpr bool kWaitingCounts = false;
#endif
inline constexpr std::chrono::milliseconds kLongestWait{100};

// "ran for 3 ms, ...", what lies between two accounts.
std::string Between(const ThreadAccount& begin, const ThreadAccount& end);

}  // namespace tarnlink
