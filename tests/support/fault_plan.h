// Breaks the n-th call of anything that the wrapped fakes offer, and keeps the list of all calls.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/run_time_error.h"

namespace tarnlink {

// Calls bear the names of interface and function: "Files.WriteWhole", "Rows.Append", "Port.Output".
class FaultPlan {
 public:
  FaultPlan() = default;
  FaultPlan(const FaultPlan&) = delete;
  FaultPlan& operator=(const FaultPlan&) = delete;
  // A planned fault that never struck fails the test.
  ~FaultPlan();

  // The `nth` call from now on, counted from 1, throws `error` instead of being carried out. The
  // name "*" counts the calls of every name.
  void Break(std::string_view call, int nth, RunTimeError error);
  void Break(std::string_view call, RunTimeError error) { Break(call, 1, std::move(error)); }

  // Whether every planned fault has struck.
  bool Spent() const { return planned_.empty(); }
  void Clear() { planned_.clear(); }

  const std::vector<std::string>& calls() const { return calls_; }
  int CountOf(std::string_view call) const;

  // For the wrappers: notes the call, and throws if it is to break.
  void Pass(std::string_view call);

 private:
  struct Fault {
    std::string call;
    int left;
    RunTimeError error;
  };

  std::vector<Fault> planned_;
  std::vector<std::string> calls_;
};

}  // namespace tarnlink
