// The program as a process: its input, its output and its end, each waited for with a bound.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

#include "simulator/file_descriptor.h"

namespace boiler {

constexpr std::chrono::seconds kPatience{10};

class RunningProgram {
 public:
  explicit RunningProgram(const std::vector<std::string>& words);
  RunningProgram(RunningProgram&& other) noexcept;
  // Kills what still runs.
  ~RunningProgram();

  // The next line of its output, or "(no line)" when none comes.
  std::string Line();
  void Tell(const std::string& command);
  void CloseInput() { input_.Close(); }
  void Signal(int number);
  // Its exit status, or nothing when it does not end.
  std::optional<int> Status();
  // All of its standard error; call it after Status.
  std::string Errors();
  // How often it has gone to sleep or was interrupted so far, and its time on a processor in ticks.
  long Switches() const;
  long ProcessorTicks() const;

 private:
  pid_t process_ = -1;
  FileDescriptor input_, output_, errors_;
  std::string read_ahead_;
};

// A terminal as a master of the protocol has it: opened by its path, raw already.
class OpenTerminal {
 public:
  explicit OpenTerminal(const std::string& path);

  bool open() const { return file_.open(); }
  int number() const { return file_.number(); }
  void Send(const std::string& hex);
  // Waits for so many bytes; returns what came, in hexadecimal.
  std::string Receive(std::size_t count);
  // Whether the other end is gone within the bound.
  bool HangsUp();

 private:
  FileDescriptor file_;
};

// Asks again and again until the condition holds or the patience is over.
bool Eventually(const std::function<bool()>& condition);

}  // namespace boiler
