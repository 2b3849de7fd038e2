#include "tools/link_account.h"

#include <algorithm>

namespace tarnlink {
namespace {

constexpr std::chrono::microseconds kStep(100);
constexpr int kLongest = 60 * 10'000;  // steps: a minute

double Milliseconds(int steps) { return steps / 10.0; }

}  // namespace

void AnswerTimes::Add(std::chrono::microseconds time) {
  // Rounded to the nearest, as somebody reads a clock.
  const auto steps = (time + kStep / 2) / kStep;
  ++counts_[static_cast<int>(std::clamp<std::int64_t>(steps, 0, kLongest))];
  ++count_;
}

void AnswerTimes::Add(const AnswerTimes& others) {
  for (const auto& [steps, count] : others.counts_) counts_[steps] += count;
  count_ += others.count_;
}

double AnswerTimes::Shortest() const {
  return counts_.empty() ? 0.0 : Milliseconds(counts_.begin()->first);
}

double AnswerTimes::Median() const {
  std::int64_t left = (count_ + 1) / 2;
  for (const auto& [steps, count] : counts_) {
    left -= count;
    if (left <= 0) return Milliseconds(steps);
  }
  return 0.0;
}

double AnswerTimes::Longest() const {
  return counts_.empty() ? 0.0 : Milliseconds(counts_.rbegin()->first);
}

SlaveAccount& LinkAccount::Of(LinkProtocol protocol, const std::string& slave) {
  SlaveAccount& account = slaves_[{protocol, slave.size(), slave}];
  account.protocol = protocol;
  account.slave = slave;
  return account;
}

std::vector<const SlaveAccount*> LinkAccount::Slaves() const {
  std::vector<const SlaveAccount*> all;
  for (const auto& [key, account] : slaves_) all.push_back(&account);
  return all;
}

SlaveAccount LinkAccount::Total() const {
  SlaveAccount total;
  for (const auto& [key, account] : slaves_) {
    total.exchanges += account.exchanges;
    total.answers += account.answers;
    total.refusals += account.refusals;
    total.timeouts += account.timeouts;
    total.bad_checks += account.bad_checks;
    total.times.Add(account.times);
  }
  total.last_bad = last_bad_;
  return total;
}

void LinkAccount::Bad(SlaveAccount& account, std::string_view bytes) {
  account.last_bad = bytes;
  last_bad_ = bytes;
}

void LinkAccount::Clear() {
  slaves_.clear();
  last_bad_.clear();
}

}  // namespace tarnlink
