// What a tool that only needs the line has of the program.
#pragma once

#include "tools/tool_host.h"

namespace tarnlink {

struct PlainHost {
  explicit PlainHost(Platform& platform)
      : host{platform,
             {[this] { return com_port; }, [this] { return baudrate; }},
             [] { return false; },
             [this]() -> const ErrorTexts& { return texts; },
             [] { return std::string(); },
             [] { return std::string(); },
             {},
             {},
             "0"} {}

  int com_port = 1;
  int baudrate = 3;  // 9600
  ErrorTexts texts{};
  ToolHost host;
};

}  // namespace tarnlink
