#include "simulator/fault_injector.h"

#include <algorithm>

#include "simulator/problem.h"

namespace boiler {
namespace {

bool Applies(const Fault& fault, const ExchangeFacts& facts) {
  if (NeedsWrite(fault.kind)) return facts.write;
  if (fault.kind == FaultKind::kStaleDuplicate) return facts.answered_before;
  if (fault.kind == FaultKind::kWrongId) return facts.names_id;
  if (fault.kind == FaultKind::kMergeTwo) return !facts.answer_held;
  return true;
}

}  // namespace

void FaultInjector::Add(const FaultPlan& plan) {
  double sum = plan.rate;
  for (const FaultPlan& one : plans_) sum += one.rate;
  constexpr double kRounding = 1e-9;
  if (sum > 1 + kRounding) {
    throw Problem("Fault \"" + FaultText(plan.fault) +
                  "\": the rates of all faults together would exceed 1.");
  }
  plans_.push_back(plan);
}

void FaultInjector::Clear() {
  plans_.clear();
  busy_left_ = 0;
  next_is_sound_ = false;
}

std::optional<Fault> FaultInjector::Next(const ExchangeFacts& facts) {
  if (busy_left_ > 0) return Busy();
  if (next_is_sound_) {
    next_is_sound_ = false;
    return std::nullopt;
  }
  auto fault = ByCount(facts);
  if (!fault) fault = ByRate(facts);
  if (!fault || fault->kind != FaultKind::kBusyThenOk) return fault;
  busy_ = *fault;
  busy_left_ = fault->number;
  return Busy();
}

std::optional<Fault> FaultInjector::Busy() {
  next_is_sound_ = --busy_left_ == 0;
  return busy_;
}

std::optional<Fault> FaultInjector::ByCount(const ExchangeFacts& facts) {
  const auto plan = std::find_if(plans_.begin(), plans_.end(), [&](const FaultPlan& one) {
    return one.count > 0 && Applies(one.fault, facts);
  });
  if (plan == plans_.end()) return std::nullopt;
  const Fault fault = plan->fault;
  if (--plan->count == 0) plans_.erase(plan);
  return fault;
}

std::optional<Fault> FaultInjector::ByRate(const ExchangeFacts& facts) {
  double left = random_.Unit();
  for (const FaultPlan& plan : plans_) {
    if (plan.count > 0) continue;
    if (left < plan.rate) {
      if (Applies(plan.fault, facts)) return plan.fault;
      return std::nullopt;
    }
    left -= plan.rate;
  }
  return std::nullopt;
}

}  // namespace boiler
