// Which lines of the graph have gone without a value for a while, counted in cycles of the polling.
#pragma once

#include <unordered_map>

namespace tarnlink {

class LineAges {
 public:
  // The polling is at its first line again.
  void BeginCycle() { ++cycle_; }
  void Asked(int channel) { answered_.try_emplace(channel, cycle_); }
  void Answered(int channel) { answered_[channel] = cycle_; }

  // Three whole cycles have passed since it was answered, or asked for the first time. Never one
  // that was not asked.
  bool IsOld(int channel) const {
    const auto known = answered_.find(channel);
    return known != answered_.end() && cycle_ - known->second > kPatience;
  }

 private:
  static constexpr int kPatience = 3;  // cycles

  int cycle_ = 0;
  std::unordered_map<int, int> answered_;  // the cycle, by channel
};

}  // namespace tarnlink
