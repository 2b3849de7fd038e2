// A child process on three pipes, and bounded waits on what it does.
#pragma once

#include <sys/types.h>

#include <map>
#include <string>
#include <vector>

namespace e2e {

class Process {
 public:
  // Starts `command` with `environment` on top of this process's own.
  Process(const std::vector<std::string>& command,
          const std::map<std::string, std::string>& environment);
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  void Write(const std::string& line);
  // The next line of standard output, without its end; empty if none came in time.
  std::string ReadLine(int milliseconds);
  // Whether its end has been neither waited for nor made.
  bool IsOurs() const { return pid_ >= 0; }
  // What stands in standard output now.
  std::vector<std::string> RestOfLines();
  // The exit status, or -1 if it did not end in time.
  int WaitForEnd(int milliseconds);
  void Kill();
  void Signal(int number) const;
  // User and system time so far, in seconds.
  double ProcessorSeconds() const;

 private:
  pid_t pid_ = -1;
  int to_ = -1;
  int from_ = -1;
  std::string pending_;
  int status_ = -1;
};

}  // namespace e2e
