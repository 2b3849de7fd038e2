// The faults that the runs of the service tools go through.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/fault_plan.h"

namespace tarnlink {

// Whatever the line of a ZOLT slave that is read can have, some with more numbers than one.
const std::vector<std::string>& LineFaults();

std::string LineFaultName(const ::testing::TestParamInfo<std::string>& info);

// How often each of so many runs exchanges for all together to come to ten thousand.
constexpr int ExchangesEach(std::size_t runs) { return static_cast<int>(10'000 / runs) + 1; }

// One of the next calls fails; which one follows from `turn`.
void BreakACall(FaultPlan& faults, const std::vector<std::string>& calls, int turn);

}  // namespace tarnlink
