// The user's desktop.
#pragma once

#include <string>

#include "platform/shell.h"

namespace tarnlink {

class QtShell final : public Shell {
 public:
  bool StartProgram(const std::string& program, const std::string& argument) override;
  bool OpenFile(const std::string& path) override;
  void Beep() override;
};

}  // namespace tarnlink
