#include "support/fault_plan.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tarnlink {

FaultPlan::~FaultPlan() {
  for (const Fault& fault : planned_) {
    ADD_FAILURE() << "The planned fault of " << fault.call << " never struck; " << fault.left
                  << " more call(s) were needed.";
  }
}

void FaultPlan::Break(std::string_view call, int nth, RunTimeError error) {
  planned_.push_back({std::string(call), nth, std::move(error)});
}

int FaultPlan::CountOf(std::string_view call) const {
  return static_cast<int>(std::count(calls_.begin(), calls_.end(), call));
}

void FaultPlan::Pass(std::string_view call) {
  calls_.emplace_back(call);
  const auto concerns = [&](const Fault& fault) { return fault.call == call || fault.call == "*"; };
  for (Fault& fault : planned_) {
    if (concerns(fault)) --fault.left;
  }
  // One that came due together with another strikes at the next call of its own name.
  const auto due = std::find_if(planned_.begin(), planned_.end(), [&](const Fault& fault) {
    return concerns(fault) && fault.left <= 0;
  });
  if (due == planned_.end()) return;
  const RunTimeError error = due->error;
  planned_.erase(due);
  throw error;
}

}  // namespace tarnlink
