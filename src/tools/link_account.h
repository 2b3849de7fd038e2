// How the exchanges with each slave went: counts, the time that answers take, the last bad frame.
#pragma once

#include <chrono>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "tools/link_frame.h"

namespace tarnlink {

// Times of answers, counted in tenths of a millisecond; those above a minute count as a minute.
class AnswerTimes {
 public:
  void Add(std::chrono::microseconds time);
  void Add(const AnswerTimes& others);

  // In milliseconds; 0 while there are none. Of an even number the median is the lower one.
  double Shortest() const;
  double Median() const;
  double Longest() const;

 private:
  std::map<int, std::int64_t> counts_;
  std::int64_t count_ = 0;
};

// Each exchange is one request, and ends as an answer, as a bad check or as a time-out; the one
// under way as none of them yet.
struct SlaveAccount {
  LinkProtocol protocol = LinkProtocol::kNone;
  std::string slave;  // empty under a protocol without addresses
  std::int64_t exchanges = 0;
  std::int64_t answers = 0;
  std::int64_t refusals = 0;  // of the answers, those that say no
  std::int64_t timeouts = 0;  // nothing came, or nothing that belongs to the request
  std::int64_t bad_checks = 0;
  std::string last_bad;  // bytes
  AnswerTimes times;
};

class LinkAccount {
 public:
  // The account of a slave, made where there is none yet: slaves of two protocols are two slaves,
  // whatever their address. It stays where it is until `Clear`.
  SlaveAccount& Of(LinkProtocol protocol, const std::string& slave);

  // By protocol, in the order of their addresses.
  std::vector<const SlaveAccount*> Slaves() const;
  // All slaves together; the last bad frame is that of `Bad`.
  SlaveAccount Total() const;

  void Bad(SlaveAccount& account, std::string_view bytes);
  void Clear();

 private:
  // Shorter numbers come first: an order of numbers, not of their digits.
  struct Key {
    LinkProtocol protocol;
    std::size_t length;
    std::string slave;
    auto operator<=>(const Key&) const = default;
  };

  std::map<Key, SlaveAccount> slaves_;
  std::string last_bad_;
};

}  // namespace tarnlink
