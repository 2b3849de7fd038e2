// The simulated boiler as a program: a port, the line behind it, and commands on standard input.
#pragma once

#include <cstdint>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "simulator/command.h"
#include "simulator/file_descriptor.h"
#include "simulator/options.h"
#include "simulator/port.h"
#include "simulator/simulated_boiler.h"

namespace boiler {

class Program {
 public:
  // Opens the port and the log. Throws Problem when one of them cannot be had.
  explicit Program(const ProgramOptions& options);

  // Runs until a command, a signal or the end of standard input ends it. Blocks SIGTERM and SIGINT
  // for this process, which it takes as wishes to end.
  void Run();

 private:
  struct Replug {
    std::int64_t at_us;
    bool under_other_name;
  };

  std::int64_t Now() const;
  void Wait();
  std::optional<std::int64_t> NextDue() const;
  void HearPort();
  void HearCommands();
  void CarryOutDue();
  void Deliver(std::string_view bytes);

  std::string CarryOut(const Command& command);
  std::string Get(const Command& command);
  void Set(const Command& command);
  void AddFault(const std::string& text);
  void Clear();
  void Plug(bool under_other_name);
  void TellPlugged();
  void Unplug(std::string_view why);

  void Log(LogKind kind, std::string meaning);
  void Print(std::string_view line);

  ProgramOptions options_;
  std::int64_t started_us_;
  std::ofstream log_;
  std::unique_ptr<Port> port_;
  SimulatedBoiler boiler_;
  FileDescriptor signals_;
  std::string input_;  // of an unfinished command line
  bool input_open_ = true;
  bool running_ = true;
  bool losing_bytes_ = false;
  std::optional<Replug> replug_;
};

}  // namespace boiler
