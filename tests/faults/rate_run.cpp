#include "faults/rate_run.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "simulator/crc.h"
#include "simulator/fault.h"
#include "simulator/random.h"
#include "simulator/simulated_boiler.h"

namespace tarnlink {
namespace {

constexpr long kShort = 20'000;
constexpr long kRuns = 50;  // of all tests of this suite
constexpr double kFewestFaults = 10;
constexpr long kPart = 10'000;

}  // namespace

long ExchangesOfRun(double rate) {
  const char* const wanted = std::getenv("TARNLINK_EXCHANGES");
  const long count = wanted == nullptr ? 0 : std::atol(wanted);
  if (count > 0) return count;
  const long enough = rate == 0 ? 0 : std::lround(kFewestFaults / rate);
  return std::max(kShort / kRuns, enough);
}

const std::vector<std::string>& DamageOfAllKinds() {
  static const std::vector<std::string> damage = {
      "no_reply",     "bit_flip(1)", "bit_flip(2)",       "bit_flip(3)",     "bit_flip(8)",
      "burst(8)",     "burst(16)",   "burst(32)",         "byte_replace",    "byte_drop",
      "byte_insert",  "byte_swap",   "check_wrong",       "truncate",        "truncate(10)",
      "all_zero",     "all_ff",      "high_bit_stripped", "crlf_translated", "split",
      "noise_before", "noise_after", "random_frame"};
  return damage;
}

std::vector<std::string> PlansOf(const std::string& protocol, double rate) {
  if (rate == 0) return {};
  const auto slave = boiler::MakeSlave(protocol);
  std::vector<std::string> fitting = DamageOfAllKinds();
  std::erase_if(fitting, [&](const std::string& name) {
    return !slave->Misfit(boiler::ParseFaultPlan(name).fault.kind).empty();
  });
  const double each = rate / static_cast<double>(fitting.size());
  for (std::string& plan : fitting) plan += "@" + std::to_string(each);
  return fitting;
}

RateCounts& RateCounts::operator+=(const RateCounts& other) {
  exchanges += other.exchanges;
  faults += other.faults;
  shown += other.shown;
  wrong += other.wrong;
  return *this;
}

RateCounts RunInParts(const std::string& name, double rate,
                      const std::function<RateCounts(long exchanges, std::uint64_t seed)>& part) {
  using StopWatch = std::chrono::steady_clock;
  const StopWatch::time_point begin = StopWatch::now();
  const long wanted = ExchangesOfRun(rate);
  RateCounts counts;
  std::uint64_t seed = boiler::Mix(boiler::CrcXmodem(name), static_cast<std::uint64_t>(rate * 100));
  while (counts.exchanges < wanted && !testing::Test::HasFailure()) {
    counts += part(std::min(kPart, wanted - counts.exchanges), ++seed);
  }
  const double seconds = std::chrono::duration<double>(StopWatch::now() - begin).count();
  std::printf("%-18s %3.0f %%: %8ld exchanges, %7ld faults, %8ld values shown, %ld wrong, %.0f/s\n",
              name.c_str(), rate * 100, counts.exchanges, counts.faults, counts.shown, counts.wrong,
              static_cast<double>(counts.exchanges) / seconds);
  const double expected = static_cast<double>(counts.exchanges) * rate;
  const double allowed = rate == 0 ? 0 : 5 * std::sqrt(expected * (1 - rate)) + 1;
  EXPECT_NEAR(static_cast<double>(counts.faults), expected, allowed);
  EXPECT_EQ(counts.faults > 0, rate > 0) << "no run of a rate is without its faults";
  return counts;
}

long MostHits(long tries, double one_in) {
  const double mean = static_cast<double>(tries) / one_in;
  constexpr double kMany = 100;  // that are spread as a bell
  if (mean > kMany) return std::lround(mean + 5 * std::sqrt(mean));
  double left = 1;
  double term = std::exp(-mean);
  long hits = 0;
  for (; left - term > 1e-6; ++hits) {
    left -= term;
    term *= mean / static_cast<double>(hits + 1);
  }
  return hits;
}

void ExpectAtRest(FakeWorld& world) { ExpectAtRest(world, 0); }

void ExpectAtRest(FakeWorld& world, int open_ports) {
  using namespace std::chrono_literals;
  const auto used = [&] {
    int open = 0;
    std::vector<std::pair<int, std::size_t>> counts;
    for (int i = 0; i < world.port_count(); ++i) {
      open += world.port(i).PortOpen() ? 1 : 0;
      counts.emplace_back(world.port(i).opens(), world.port(i).frames().size());
    }
    EXPECT_EQ(open, open_ports) << "ports that are open";
    return counts;
  };
  const auto before = used();
  world.Advance(10s);
  // The condition is looked at in front of each event and once behind the last.
  long events = -1;
  world.RunUntil([&events] { return ++events > 1; }, 10s);
  EXPECT_LE(events, 1) << "something goes on";
  EXPECT_EQ(used(), before) << "a port was opened, or a message went out";
}

std::string NameOfRate(const testing::TestParamInfo<double>& rate) {
  return std::to_string(static_cast<int>(rate.param * 100)) + "_percent";
}

}  // namespace tarnlink
