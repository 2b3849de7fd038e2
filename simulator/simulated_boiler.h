// A boiler at the end of a line, all parts put together.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "simulator/controller.h"
#include "simulator/line_simulator.h"
#include "simulator/log.h"
#include "simulator/slave.h"

namespace boiler {

// The slave of the named protocol. Throws Problem for a name that it does not know. Each protocol
// that comes along is named here and nowhere else.
std::unique_ptr<Slave> MakeSlave(std::string_view protocol);

class SimulatedBoiler {
 public:
  struct Options {
    std::string protocol = "tarnlink";
    LineOptions line{};
    std::uint64_t seed = 1;
  };

  // Without a sink the log is thrown away.
  explicit SimulatedBoiler(
      const Options& options, LogSink log = [](const LogEntry&) {});

  SimulatedBoiler(const SimulatedBoiler&) = delete;
  SimulatedBoiler& operator=(const SimulatedBoiler&) = delete;

  Controller& controller() { return controller_; }
  LineSimulator& line() { return line_; }
  const LineSimulator& line() const { return line_; }

 private:
  Controller controller_;
  std::unique_ptr<Slave> slave_;
  LineSimulator line_;
};

}  // namespace boiler
