// Decides which fault strikes an exchange. At most one does, so that the log leaves no doubt about
// what the other end was given.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "simulator/fault.h"
#include "simulator/random.h"

namespace boiler {

// What a fault needs to know of an exchange to say whether it applies.
struct ExchangeFacts {
  bool write = false;
  bool answered_before = false;  // there is an earlier answer that can come again
  bool answer_held = false;      // an earlier answer is still being held back
  bool names_id = true;          // the answer names what was asked for
};

class FaultInjector {
 public:
  explicit FaultInjector(std::uint64_t seed) : random_(seed) {}

  // Plans by count come before plans by rate, and among each other in the order in which they came.
  // A rate is the share of all exchanges, whatever other plans there are; so the rates of all plans
  // together must not exceed 1, or Problem is thrown.
  void Add(const FaultPlan& plan);
  void Clear();

  // The fault of the next exchange. A plan by rate that does not apply to the exchange lets it
  // pass.
  std::optional<Fault> Next(const ExchangeFacts& facts);

 private:
  std::optional<Fault> Busy();
  std::optional<Fault> ByCount(const ExchangeFacts& facts);
  std::optional<Fault> ByRate(const ExchangeFacts& facts);

  Random random_;
  std::vector<FaultPlan> plans_;
  Fault busy_{FaultKind::kBusyThenOk, 0};
  int busy_left_ = 0;
  bool next_is_sound_ = false;  // the "then ok" of busy_then_ok
};

}  // namespace boiler
