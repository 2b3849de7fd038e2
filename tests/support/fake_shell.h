// A desktop that starts nothing and remembers what it was asked for.
#pragma once

#include <string>
#include <vector>

#include "platform/shell.h"

namespace tarnlink {

class FakeShell final : public Shell {
 public:
  bool StartProgram(const std::string& program, const std::string& argument) override {
    started.push_back(argument.empty() ? program : program + " " + argument);
    return programs_start;
  }
  bool OpenFile(const std::string& path) override {
    opened.push_back(path);
    return files_open;
  }
  void Beep() override { ++beeps; }

  bool programs_start = true;
  bool files_open = true;
  std::vector<std::string> started;
  std::vector<std::string> opened;
  int beeps = 0;
};

}  // namespace tarnlink
