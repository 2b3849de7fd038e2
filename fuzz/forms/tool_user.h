// What the targets of service tools have in common: a program around the tool, and a user of it.
#pragma once

#include <string>

#include "fuzz/claim.h"
#include "fuzz/forms/answers.h"
#include "fuzz/forms/form_driver.h"
#include "support/fake_world.h"
#include "tools/tool_host.h"

namespace tarnlink {

class ToolUser {
 public:
  static constexpr FormDriver::Limits kLimits = {
      .steps = 48, .milliseconds = 6'000, .length = ZoltAnswerLength, .silence = 300};

  explicit ToolUser(FuzzInput& input, FormDriver::Answerer slave = ZoltSlave,
                    FormDriver::Limits limits = kLimits);

  FakeWorld world;
  int baudrate;
  std::string parameter_file;
  std::string id_file;
  ToolHost host;
  FormDriver driver;
};

}  // namespace tarnlink
