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

// What can be chosen of a slave beside its protocol.
struct SlaveOptions {
  // Under which addresses it answers, with commas between them: 0 to F for ZOLT, 1 to 247 for
  // Modbus; empty for the protocol's first. A slave of any protocol takes those of ZOLT.
  std::string addresses;
  bool answers_corrupted = false;  // ZOLT: says so when the check of a request is wrong
  bool has_wrong_limits = false;   // ZOLT: of three parameters
  // ZOLT: addresses of the memory that one write is taken to, four digits each with commas between
  // them. Those behind it are refused; or they are acknowledged, and nothing is stored.
  std::string write_once{};
  std::string write_once_silent{};
};

// The slave of the named protocol. Throws Problem for a name that it does not know, and for options
// that the protocol does not have. Each protocol that comes along is made here.
std::unique_ptr<Slave> MakeSlave(std::string_view protocol, const SlaveOptions& options = {});

// Another master on the line, which asks ZOLT slaves for all their data IDs in turn.
struct SecondMasterOptions {
  std::string addresses;         // which ones, as those of the slave; empty for no such master
  std::int64_t gap_us = 20'000;  // of silence ahead of each of its requests
};

class SimulatedBoiler {
 public:
  struct Options {
    std::string protocol = "tarnlink";
    SlaveOptions slave{};
    LineOptions line{};
    SecondMasterOptions second_master{};
    std::uint64_t seed = 1;
  };

  // Without a sink the log is thrown away. Throws Problem as MakeSlave does, and for a second
  // master where ZOLT is not spoken.
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
