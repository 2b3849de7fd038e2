#include "simulator/simulated_boiler.h"

#include <utility>

#include "simulator/problem.h"
#include "simulator/slave_tarnlink.h"

namespace boiler {

std::unique_ptr<Slave> MakeSlave(std::string_view protocol) {
  if (protocol == "tarnlink") return std::make_unique<TarnlinkSlave>();
  throw Problem("The boiler does not speak the protocol \"" + std::string(protocol) +
                "\"; it speaks tarnlink.");
}

SimulatedBoiler::SimulatedBoiler(const Options& options, LogSink log)
    : controller_(options.seed),
      slave_(MakeSlave(options.protocol)),
      line_(controller_, *slave_, options.line, options.seed, std::move(log)) {}

}  // namespace boiler
