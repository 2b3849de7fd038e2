// Runs of many exchanges at one rate of faults: how many there are, what is counted of them, and
// the one rule of every line, that the answer to a message is waited for before the next one goes
// out.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/fake_world.h"

namespace tarnlink {

// Shares of the exchanges that a fault strikes.
inline constexpr double kFaultRates[] = {0, 0.01, 0.1, 0.5};

// Of one run, at one rate. Twenty thousand for all runs together; the environment variable
// TARNLINK_EXCHANGES gives each run that many instead.
long ExchangesOfRun();

// What goes wrong with bytes and what is lost, as an exchange would name it in a plan. What keeps
// an answer or puts another one in its place is left to the runs of one fault each: no check can
// see it.
const std::vector<std::string>& DamageOfAllKinds();
// Those that the protocol can have, with this share of all exchanges struck by any of them, each as
// often as the others.
std::vector<std::string> PlansOf(const std::string& protocol, double rate);

// What a run has come to.
struct RateCounts {
  long exchanges = 0;
  long faults = 0;
  long shown = 0;  // values
  long wrong = 0;  // of these

  RateCounts& operator+=(const RateCounts& other);
};

// A run in parts, each in a world of its own, so that what a world keeps of its past does not fill
// the memory. `part` makes so many exchanges, with chance of its own. Prints a line of what it came
// to, with the exchanges in a second, and expects that the faults struck at the rate.
RateCounts RunInParts(const std::string& name, double rate,
                      const std::function<RateCounts(long exchanges, std::uint64_t seed)>& part);

// More than so many of this many tries do not hit once in a million runs, if each hits by a chance
// of one in `one_in`.
long MostHits(long tries, double one_in);

// Listens to the line of a world and counts what goes out too early.
class LineGuard {
 public:
  using Waits = std::function<std::chrono::milliseconds()>;

  // `waits` says how long an answer is waited for. The guard stands in front of the far end that
  // there is, and goes before it does.
  LineGuard(FakeWorld& world, FakeSerialPort& port, Waits waits);
  ~LineGuard();
  LineGuard(const LineGuard&) = delete;
  LineGuard& operator=(const LineGuard&) = delete;

  long asked() const { return asked_; }
  // Messages that went out before anything had come in, or the time had passed, for the one before.
  long hurried() const { return hurried_; }
  // What is to be called with every message and with all that is taken in.
  std::function<void(std::string_view bytes)> on_asked;
  std::function<void(std::string_view bytes)> on_input;

 private:
  void Asked(std::string_view bytes);

  FakeWorld& world_;
  FakeSerialPort& port_;
  Waits waits_;
  std::function<void(FakeSerialPort& port, std::string_view bytes)> far_end_;
  std::function<void(std::string_view bytes)> before_;
  long asked_ = 0;
  long hurried_ = 0;
  int opens_ = 0;
  bool is_waiting_ = false;
  Micros asked_at_{};
};

}  // namespace tarnlink
