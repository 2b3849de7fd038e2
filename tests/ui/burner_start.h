// The graph's window over a recorded burner start: temperatures, fan, flame and all lanes, half an
// hour of the simulated boiler at 9600 baud in virtual time.
#pragma once

#include <memory>

#include "form/boiler_on_line.h"
#include "support/fake_world.h"
#include "ui/graph_tool.h"

namespace tarnlink {

class BurnerStart {
 public:
  BurnerStart();

  Graph& graph() { return *tool.graph(); }
  GraphWindow& window() { return *tool.window(); }
  void ShowLine(int index);

  FakeWorld world;
  BoilerOnLine boiler;
  std::string mss_folder;
  std::string grp_folder;
  GraphTool tool;
};

}  // namespace tarnlink
