#include "fuzz/forms/tool_user.h"

namespace tarnlink {
namespace {

const ErrorTexts& Texts() {
  static const ErrorTexts kTexts = [] {
    ErrorTexts texts;
    texts.fill("text");
    return texts;
  }();
  return kTexts;
}

}  // namespace

ToolUser::ToolUser(FuzzInput& input, FormDriver::Answerer slave, FormDriver::Limits limits)
    : baudrate(input.Below(6)),
      host{.platform = world,
           .line = {.ComPortNumber = [] { return 1; }, .Baudrate = [this] { return baudrate; }},
           .IgnoresErrors = [] { return false; },
           .LoadErrorTexts = Texts,
           .IdFile = [this] { return id_file; },
           .LogPath = [] { return std::string("/home/user/work"); },
           .GoControlPanel = {},
           .GivePort = [] { return true; },
           .SlaveAddress = "0",
           .MsgTimeout = [] { return 1; },
           .ParameterFile = [this] { return parameter_file; },
           .ParFolder = [] { return std::string("/home/user/work"); },
           .KeepParFolder = [](const std::string&) {}},
      driver(input, world, slave, limits) {}

}  // namespace tarnlink
