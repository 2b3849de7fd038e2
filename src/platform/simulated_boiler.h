// The simulated boiler that is shipped with the program, on a line of its own. Real class:
// `QtSimulatedBoiler`; fake: `FakeSimulatedBoiler`.
#pragma once

#include <string>

namespace tarnlink {

class SimulatedBoiler {
 public:
  // Ends it.
  virtual ~SimulatedBoiler() = default;

  // The serial device that it answers on; empty until that is there.
  virtual std::string Device() const = 0;
  // False once it has ended, or if it could not be started at all.
  virtual bool IsRunning() const = 0;
};

}  // namespace tarnlink
