#include "tools/line_faults.h"

#include <algorithm>
#include <cctype>

#include "simulator/fault.h"
#include "simulator/simulated_boiler.h"

namespace tarnlink {

const std::vector<std::string>& LineFaults() {
  static const std::vector<std::string> faults = [] {
    std::vector<std::string> all = {"late_reply(2400)", "late_reply(2600)",   "late_reply(5100)",
                                    "refused(4)",       "refused(6)",         "noise_before(40)",
                                    "oversize(100)",    "truncate(9)",        "split(11)",
                                    "slow_bytes(200)",  "endless_stream(700)"};
    const auto slave = boiler::MakeSlave("zolt");
    for (const boiler::FaultInfo& info : boiler::AllFaults()) {
      const bool fits = slave->Misfit(info.kind).empty() && !boiler::BlocksOpening(info.kind) &&
                        !boiler::NeedsWrite(info.kind) &&
                        info.kind != boiler::FaultKind::kEndlessStream;
      if (fits) all.emplace_back(info.name);
    }
    return all;
  }();
  return faults;
}

std::string LineFaultName(const ::testing::TestParamInfo<std::string>& info) {
  std::string name = info.param;
  std::replace_if(
      name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
  return name;
}

void BreakACall(FaultPlan& faults, const std::vector<std::string>& calls, int turn) {
  const std::string& call = calls[static_cast<std::size_t>(turn) % calls.size()];
  faults.Break(call, 1 + turn % 4, RunTimeError(kDeviceIo, "Input/output error"));
}

}  // namespace tarnlink
