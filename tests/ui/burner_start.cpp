#include "ui/burner_start.h"

#include <chrono>

namespace tarnlink {

using namespace std::chrono_literals;

namespace {

constexpr int kSpeed = 9600;
constexpr int kDoublings = 3;  // of 1200

boiler::SimulatedBoiler::Options BoilerOptions() {
  boiler::SimulatedBoiler::Options options;
  options.protocol = "zolt";
  options.line.pace.baud = kSpeed;
  return options;
}

ServiceLine Port() {
  return {.ComPortNumber = [] { return 1; }, .Baudrate = [] { return kDoublings; }};
}

}  // namespace

BurnerStart::BurnerStart()
    : boiler(world, BoilerOptions()),
      tool(world, Port(), {mss_folder, grp_folder, {}, {}}, nullptr) {
  tool.Show();
  // Flow, return, hot water, setpoints, both fan speeds, flame, load, pressure.
  for (const int index : {0, 1, 2, 5, 7, 10, 11, 12, 16, 17}) ShowLine(index);
  for (int index = kStatusChannel; index <= kLastAttribute; ++index) ShowLine(index);
  world.Advance(70min);
}

void BurnerStart::ShowLine(int index) {
  GraphAttribute& line = graph().graph.Data.Attributes.at(static_cast<std::size_t>(index));
  line.ShowLine = true;
  line.ShowCaption = true;
  graph().graph.Data.AllocateChannel(index);
}

}  // namespace tarnlink
