// strace on a running process: it makes calls of the system fail, or kills in the middle of them.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace tarnlink::disk {

class Tracer {
 public:
  // Whether this machine lets one process look at another.
  static bool Works();

  // `calls` as strace's, such as "write,fsync"; `fault` is what becomes of them, such as
  // "error=EIO:when=3". Counts from here on, in each thread for itself. Returns when it is at work.
  // Without a fault it only looks on.
  Tracer(pid_t process, const std::string& log, const std::string& calls,
         const std::string& fault = {});
  ~Tracer();
  Tracer(const Tracer&) = delete;
  Tracer& operator=(const Tracer&) = delete;

  // Lets go of the process. The lines of the calls to which the fault has happened.
  std::string Finish();
  // All that it saw of these calls, as strace tells it; with what it lets go.
  const std::vector<std::string>& lines() const { return lines_; }

 private:
  pid_t pid_ = -1;
  int said_ = -1;  // its messages, which it must find somebody to read
  std::string log_;
  std::vector<std::string> lines_;
};

}  // namespace tarnlink::disk
