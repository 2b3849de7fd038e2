// The sentence of the Problem that a call throws; empty when it throws none.
#pragma once

#include <string>

#include "simulator/problem.h"

namespace boiler {

template <typename Call>
std::string ProblemText(const Call& call) {
  try {
    call();
  } catch (const Problem& problem) {
    return problem.what();
  }
  return "";
}

}  // namespace boiler
