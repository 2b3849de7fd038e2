// A line of standard input that tells the running simulator to do something.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace boiler {

enum class CommandKind {
  kNothing,  // a blank line
  kFault,
  kClear,
  kSet,
  kGet,
  kUnplug,
  kReplug,
  kReplugOther,
  kReboot,
  kQuit,
};

struct Command {
  CommandKind kind = CommandKind::kNothing;
  std::string text;           // of the fault
  std::uint16_t address = 0;  // of set and get
  std::string bytes;          // of set
  int count = 1;              // of get
};

// Throws Problem with a sentence for a line that is no command.
Command ParseCommand(std::string_view line);

}  // namespace boiler
