// What sound slaves say to a request, with data of an input.
#pragma once

#include <string>

#include "fuzz/fuzz_input.h"

namespace tarnlink {

// Nothing to what is no request of the protocol.
std::string ZoltSlave(FuzzInput& input, const std::string& request);
std::string TarnlinkSlave(FuzzInput& input, const std::string& request);
std::string ModbusSlave(FuzzInput& input, const std::string& request);
// Of the protocol that the request is of.
std::string AnySlave(FuzzInput& input, const std::string& request);

}  // namespace tarnlink
