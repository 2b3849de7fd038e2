// What sound slaves say to a request, with data of an input, and when a request is answered.
#pragma once

#include <cstddef>
#include <string>

#include "fuzz/fuzz_input.h"

namespace tarnlink {

// Nothing to what is no request of the protocol.
std::string ZoltSlave(FuzzInput& input, const std::string& request);
std::string TarnlinkSlave(FuzzInput& input, const std::string& request);
std::string ModbusSlave(FuzzInput& input, const std::string& request);
// Of the protocol that the request is of.
std::string AnySlave(FuzzInput& input, const std::string& request);

// The bytes of an answer to this request.
std::size_t ZoltAnswerLength(const std::string& request);
// Of the protocol that the request is of.
std::size_t AnyAnswerLength(const std::string& request);

}  // namespace tarnlink
