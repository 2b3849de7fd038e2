// The program that saves documents, as a process of its own.
#pragma once

#include <sys/types.h>

#include <map>
#include <string>
#include <vector>

namespace tarnlink::disk {

class WriterProcess {
 public:
  // Returns when it is ready for its first command.
  WriterProcess(const std::vector<std::string>& arguments,
                const std::map<std::string, std::string>& environment);
  ~WriterProcess();
  WriterProcess(const WriterProcess&) = delete;
  WriterProcess& operator=(const WriterProcess&) = delete;

  pid_t pid() const { return pid_; }
  void Send(const std::string& command) const;
  // The next answer; empty if the process has ended or says nothing for long.
  std::string Answer();
  std::string Ask(const std::string& command);
  // Not by its own end, but at once.
  void Kill();
  // True if it was killed, by us or by somebody else: it neither ended by itself nor crashed. Waits
  // for its end; one that does not end in long is killed then, and was not before.
  bool WasKilled();

 private:
  pid_t pid_ = -1;
  bool has_closed_ = false;
  int status_ = 0;  // as of waitpid, behind its end
  int to_ = -1;
  int from_ = -1;
  std::string pending_;
};

}  // namespace tarnlink::disk
