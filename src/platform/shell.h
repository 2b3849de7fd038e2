// The desktop around the program. Real class: `QtShell`; fake: `FakeShell`.
#pragma once

#include <string>

namespace tarnlink {

class Shell {
 public:
  virtual ~Shell() = default;

  // Starts a program on its own, without waiting for it. False if it could not be started.
  virtual bool StartProgram(const std::string& program, const std::string& argument) = 0;

  // Opens a file with what the desktop has for it. False if there is nothing for it.
  virtual bool OpenFile(const std::string& path) = 0;

  virtual void Beep() = 0;
};

}  // namespace tarnlink
