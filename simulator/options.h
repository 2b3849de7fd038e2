// The command line of the simulated boiler.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/simulated_boiler.h"

namespace boiler {

struct ProgramOptions {
  SimulatedBoiler::Options boiler;
  std::string device;  // empty: a pseudo terminal
  int device_baud = 9600;
  std::string link;
  std::vector<std::string> faults;
  std::string log;
  bool until_eof = false;
  bool help = false;
};

// The words behind the program's name. Throws Problem for what is no option or no value of it.
ProgramOptions ParseOptions(const std::vector<std::string>& words);

// What --help prints.
std::string_view HelpText();

}  // namespace boiler
