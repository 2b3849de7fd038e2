#include "fuzz/forms/tool_user.h"

namespace tarnlink {

ToolUser::ToolUser(FuzzInput& input, FormDriver::Answerer slave, FormDriver::Limits limits)
    : baudrate(input.Below(6)),
      host{.platform = world,
           .line = {.ComPortNumber = [] { return 1; }, .Baudrate = [this] { return baudrate; }},
           .IgnoresErrors = [] { return false; },
           .LoadErrorTexts = [this]() -> const ErrorTexts& { return texts; },
           .IdFile = [this] { return id_file; },
           .LogPath = [] { return std::string("/home/user/work"); },
           .GoControlPanel = {},
           .GivePort = [] { return true; },
           .SlaveAddress = "0",
           .MsgTimeout = [] { return 1; },
           .ParameterFile = [this] { return parameter_file; },
           .ParFolder = [] { return std::string("/home/user/work"); },
           .KeepParFolder = [](const std::string&) {}},
      driver(input, world, slave, limits) {
  texts.fill("text");
}

}  // namespace tarnlink
