// Runs under faults with a protocol whose frames carry a check of 16 bits, and whose silences are
// ended by the watchdog without a word: a hundred thousand exchanges, each fault at three rates.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "form/fault_run_fixture.h"
#include "form/fault_run_judge.h"

namespace tarnlink {

// What a fault can do to the values shown.
enum class Harm {
  kNone,      // no wrong value: the check sees it, or the frame is as it should be
  kForetold,  // answers with a sound check and other content are shown as the log foretells
  kByChance,  // the check misses one in 65,536
  kAstray,    // sound answers that come at the wrong time may be shown for something else
};

struct FaultOfRun {
  std::string name;
  Harm harm;
  // Of damage that does no harm: the share that the check does not cover.
  double uncovered = 0;
};

// The faults, with that share set for those that are named.
std::vector<FaultOfRun> WithUncovered(std::vector<FaultOfRun> faults,
                                      const std::map<std::string, double>& uncovered);

std::vector<std::string> NamesOf(const std::vector<FaultOfRun>& faults);

// A fault and the share of the exchanges that it strikes.
using FaultAndRate = std::tuple<FaultOfRun, double>;
std::string NameOfRun(const ::testing::TestParamInfo<FaultAndRate>& info);
std::string NameOfFault(const ::testing::TestParamInfo<FaultOfRun>& info);

inline constexpr double kRates[] = {0.01, 0.1, 0.5};

// The faults of both protocols. ZOLT and Modbus differ in what some of them do, so that these are
// named with each.
std::vector<FaultOfRun> CommonFaults();
// Of the cable. At 50 percent a run would hardly live from one start to the next.
extern const std::vector<FaultOfRun> kCableFaults;
inline constexpr double kCableRates[] = {0.01, 0.1};

// So many exchanges under each fault at each rate come to all that there are to be.
std::size_t ExchangesPerRun(const std::vector<FaultOfRun>& faults);

// Every run has chance of its own.
std::uint64_t SeedOf(const FaultAndRate& run);

// The line, and how many milliseconds a poll and its answer take at most, with the wait for the
// tick.
struct LineSpeed {
  boiler::LineOptions line;
  int poll_time;
};
inline constexpr LineSpeed kAtOnce = {{.answer_delay_us = 5'000}, 40};
inline constexpr LineSpeed kSlowLine = {
    {.pace = {.baud = 9600}, .answer_delay_us = 40'000, .idle_gap_us = 50'000}, 130};

class PolledFaultRun : public FaultRunTest {
 protected:
  PolledFaultRun(const FrameReader& reader, const boiler::SimulatedBoiler::Options& options);
  ~PolledFaultRun() override { world.port().on_input = nullptr; }

  // The run begins, with this screen and protocol.
  void Begin(int protocol, const std::vector<Location>& locations, std::size_t polls_per_round,
             int poll_time);

  // The user waits for an answer before writing.
  bool MayWrite() const override;
  const std::vector<std::string>& StoppedStates() const override;
  bool IsShown(const std::string& text) const override;

  // One fault at one rate, from its first exchange to the values of a sound line.
  void RunUnder(const FaultAndRate& fault, std::size_t exchanges);
  // One loss of the port after the other.
  void RunUnderLosses(const FaultAndRate& fault, std::size_t exchanges);
  void RunUnderAnEndlessStream();
  // The slave is silent, and meanwhile somebody else has the port: neither the watchdog nor the
  // user can open it.
  void RunUnderBusyPort();
  void RunUnderNone(std::size_t exchanges);
  // So many frames that the check misses one or none of them.
  void RunUnderRandomFrames();
  // All at once, each in one of a hundred exchanges; the user writes at any time.
  void RunUnderAll(const std::vector<FaultOfRun>& faults, std::size_t exchanges);
  // The fault strikes once, in every place of a round.
  void RunUnderOne(const FaultOfRun& fault);

  // The line is sound and silent: within one time-out and one poll a good value comes, and a round
  // later all are those of the memory.
  void ExpectRecovery();
  void ExpectGoodValues();

  const FrameReader& reader;
  FaultJudge judge;

 private:
  bool StrikesWritesOnly(const FaultOfRun& fault) const;
  void AllowDelayOf(const FaultOfRun& fault);
  void ExpectShare(const FaultOfRun& fault, double rate) const;
  void ExpectHarm(const FaultOfRun& fault) const;

  const bool answers_name_ids_;  // those to reads
  std::size_t polls_per_round_ = 0;
  int poll_time_ = 0;
  bool writes_any_time_ = false;
};

}  // namespace tarnlink
