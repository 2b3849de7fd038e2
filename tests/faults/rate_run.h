// Runs of many exchanges at one rate of faults: how many there are, what is counted of them, and
// how they end.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "support/fake_world.h"

namespace tarnlink {

// Shares of the exchanges that a fault strikes.
inline constexpr double kFaultRates[] = {0, 0.01, 0.1, 0.5};

// Frames of chance that a check of 16 bits lets through: one in so many, with some to spare.
inline constexpr double kOneIn = 60'000;

// Of one run, at this rate. Some twenty thousand for all runs together, and so many that ten faults
// strike at any rate but none; the environment variable TARNLINK_EXCHANGES gives each run that many
// instead.
long ExchangesOfRun(double rate);

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
// to, with the exchanges in a second, and expects that the faults struck at the rate: at least one,
// and at a rate of 0 none.
RateCounts RunInParts(const std::string& name, double rate,
                      const std::function<RateCounts(long exchanges, std::uint64_t seed)>& part);

// More than so many of this many tries do not hit once in a million runs, if each hits by a chance
// of one in `one_in`.
long MostHits(long tries, double one_in);

// Nobody wants anything of the program any more: expects that no port is open or is opened, that
// nothing goes out, and that no timer runs for longer than it takes a lamp to go out.
void ExpectAtRest(FakeWorld& world);
// The same, but that so many ports may be open.
void ExpectAtRest(FakeWorld& world, int open_ports);

// The name of a test at this rate: "10_percent".
std::string NameOfRate(const testing::TestParamInfo<double>& rate);

}  // namespace tarnlink
