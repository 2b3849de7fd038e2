#include "form/fault_run_polled.h"

#include <algorithm>
#include <cmath>

#include "simulator/crc.h"
#include "simulator/random.h"

namespace tarnlink {
namespace {

constexpr int kWatchdog = 3'000;  // ms
constexpr int kTick = 20;
// After bytes that nobody asked for, the next request waits.
constexpr int kQuiet = kQuietAt9600 + kTick;

boiler::Fault FaultOf(const std::string& name) { return boiler::ParseFaultPlan(name).fault; }

std::string Percent(double rate) { return std::to_string(std::lround(rate * 100)) + "_percent"; }

// Beyond this there are no more hits than once in a million runs, when each of so many tries hits
// with a chance of one in 65,536.
int MostByChance(int tries) {
  const double mean = tries / 65'536.0;
  double left = 1;
  double term = std::exp(-mean);
  int hits = 0;
  for (; left - term > 1e-6; ++hits) {
    left -= term;
    term *= mean / (hits + 1);
  }
  return hits;
}

// Within five standard deviations of the share. None of a share of 0 may be there.
::testing::AssertionResult IsNear(int hits, int tries, double share) {
  const double expected = tries * share;
  const double allowed = share == 0 ? 0 : 5 * std::sqrt(expected * (1 - share)) + 1;
  if (std::abs(hits - expected) <= allowed) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure()
         << hits << " of " << tries << ", expected " << expected << " +- " << allowed;
}

// How long the fault keeps an answer on its way, in milliseconds.
int DelayOf(const boiler::Fault& fault) {
  constexpr int kMostBytes = 20;  // of a frame on these screens
  constexpr int kSplitGap = 10;
  if (fault.kind == boiler::FaultKind::kSlowBytes) return fault.number * kMostBytes;
  if (fault.kind == boiler::FaultKind::kSplit) return fault.number * kSplitGap;
  return boiler::InfoOf(fault.kind).unit.starts_with("ms") ? fault.number : 0;
}

}  // namespace

const std::vector<FaultOfRun> kCableFaults = {
    {"unplug", Harm::kNone},
    {"unplug_midframe", Harm::kNone},
    {"unplug_while_writing", Harm::kNone},
    {"replug_same_name", Harm::kNone},
    {"replug_other_name", Harm::kNone},
};

std::vector<std::string> NamesOf(const std::vector<FaultOfRun>& faults) {
  std::vector<std::string> names;
  for (const FaultOfRun& fault : faults) names.push_back(fault.name);
  return names;
}

std::vector<FaultOfRun> WithUncovered(std::vector<FaultOfRun> faults,
                                      const std::map<std::string, double>& uncovered) {
  for (FaultOfRun& fault : faults) {
    const auto found = uncovered.find(fault.name);
    if (found != uncovered.end()) fault.uncovered = found->second;
  }
  return faults;
}

std::size_t ExchangesPerRun(const std::vector<FaultOfRun>& faults) {
  return ExchangesPerRun(faults.size() * std::size(kRates) +
                         kCableFaults.size() * std::size(kCableRates) + 1);
}

std::uint64_t SeedOf(const FaultAndRate& run) {
  const auto& [fault, rate] = run;
  return boiler::Mix(boiler::CrcXmodem(fault.name), static_cast<std::uint64_t>(rate * 100));
}

std::string NameOfRun(const ::testing::TestParamInfo<FaultAndRate>& info) {
  const auto& [fault, rate] = info.param;
  return TestNameOf(fault.name) + "_at_" + Percent(rate);
}

std::string NameOfFault(const ::testing::TestParamInfo<FaultOfRun>& info) {
  return TestNameOf(info.param.name);
}

std::vector<FaultOfRun> CommonFaults() {
  using enum Harm;
  return {
      {"no_reply", kNone},
      {"late_reply(1000)", kNone},
      {"late_reply(4000)", kAstray},
      {"late_reply_after_next", kAstray},
      {"slow_bytes", kNone},
      {"pause_midframe", kNone},
      {"busy_then_ok(3)", kNone},
      {"wrong_id", kForetold},
      {"wrong_kind", kForetold},
      {"wrong_address", kForetold},
      {"refused", kNone},
      {"refused(4)", kNone},
      {"short_count", kNone},
      {"stale_duplicate", kForetold},
      {"answer_of_other_request", kForetold},
      {"bit_flip(1)", kNone},
      {"bit_flip(2)", kNone},
      {"bit_flip(3)", kNone},
      {"bit_flip(8)", kByChance},
      {"burst(8)", kNone},
      {"burst(16)", kNone},
      {"burst(32)", kByChance},
      {"byte_replace", kNone},
      {"byte_drop", kByChance},
      {"byte_insert", kByChance},
      {"byte_swap", kNone},
      {"check_wrong", kNone},
      {"truncate", kByChance},
      {"truncate(10)", kByChance},
      {"all_zero", kNone},
      {"all_ff", kNone},
      {"random_frame", kByChance},
      {"high_bit_stripped", kByChance},
      {"crlf_translated", kByChance},
      {"split", kNone},
      {"split(11)", kNone},
      {"merge_two", kAstray},
      {"noise_before", kByChance},
      {"noise_before(300)", kByChance},
      {"noise_after", kByChance},
      {"noise_after(300)", kByChance},
      {"noise_idle", kByChance},
      {"oversize", kByChance},
      {"oversize(300)", kByChance},
      {"endless_stream(500)", kByChance},
      {"reboot_midsession", kNone},
      {"write_ok_not_stored", kNone},
      {"write_stored_answer_lost", kNone},
      {"write_slow", kNone},
      {"range_rejected", kNone},
  };
}

PolledFaultRun::PolledFaultRun(const FrameReader& frame_reader,
                               const boiler::SimulatedBoiler::Options& options)
    : FaultRunTest(options, [this](const boiler::LogEntry& entry) { judge.Hear(entry); }),
      reader(frame_reader),
      judge(monitor.main, frame_reader, boiler.controller()),
      answers_name_ids_(boiler::MakeSlave(options.protocol)->NamesId({})) {
  world.port().on_input = [this](std::string_view bytes) {
    judge.Take(bytes, world.port().frames().back().bytes);
  };
}

void PolledFaultRun::Begin(int protocol, const std::vector<Location>& locations,
                           std::size_t polls_per_round, int poll_time) {
  polls_per_round_ = polls_per_round;
  poll_time_ = poll_time;
  longest_gap = kWatchdog + kQuiet + poll_time;
  RecordIn(judge);
  ChooseProtocol(protocol);
  Screen(locations);
  judge.WatchBoxes();
  Start();
}

bool PolledFaultRun::MayWrite() const {
  const frm_Main& main = monitor.main;
  return main.CommRunning && main.Comm->PortOpen() && (writes_any_time_ || main.message_received);
}

const std::vector<std::string>& PolledFaultRun::StoppedStates() const {
  static const std::vector<std::string> states = {"Stopped, port closed, no timers"};
  return states;
}

bool PolledFaultRun::IsShown(const std::string& text) const {
  return text == "-" || text == "can not read" || FaultRunTest::IsShown(text);
}

bool PolledFaultRun::StrikesWritesOnly(const FaultOfRun& fault) const {
  const boiler::FaultKind kind = FaultOf(fault.name).kind;
  return boiler::NeedsWrite(kind) || (kind == boiler::FaultKind::kWrongId && !answers_name_ids_);
}

void PolledFaultRun::AllowDelayOf(const FaultOfRun& fault) {
  longest_gap = kWatchdog + kQuiet + poll_time_ + DelayOf(FaultOf(fault.name));
}

void PolledFaultRun::RunUnder(const FaultAndRate& run, std::size_t exchanges) {
  const auto& [fault, rate] = run;
  AllowDelayOf(fault);
  // Enough writes for one in a hundred.
  if (StrikesWritesOnly(fault)) write_period = 2;
  boiler.line().AddFault(fault.name + "@" + std::to_string(rate));
  Exchange(exchanges);
  EXPECT_TRUE(monitor.main.CommRunning);
  // What is on its way comes in.
  boiler.line().ClearFaults();
  world.RunUntil([this] { return monitor.main.message_received; },
                 std::chrono::milliseconds(longest_gap));
  ExpectShare(fault, rate);
  ExpectHarm(fault);
  ExpectRecovery();
}

void PolledFaultRun::RunUnderLosses(const FaultAndRate& run, std::size_t exchanges) {
  const auto& [fault, rate] = run;
  boiler.line().AddFault(fault.name + "@" + std::to_string(rate));
  RestartAfterEachLoss();
  longest_gap += 2 * 1700 + 600;  // the longest box, and the cable
  Exchange(exchanges);
  EXPECT_GT(losses, 0);
  boiler.Calm();
  Advance(5000);
  const int during_the_run = losses;
  ExpectRecovery();
  EXPECT_EQ(losses, during_the_run);
  EndInLoss();
}

void PolledFaultRun::RunUnderAnEndlessStream() {
  boiler.line().AddFault("endless_stream(0)#1");
  Exchange(500);
  EXPECT_TRUE(monitor.main.CommRunning);
  ExpectRecovery();
}

void PolledFaultRun::RunUnderBusyPort() {
  FakeSerialPort& port = world.port();
  boiler.line().AddFault("no_reply");
  port.MakeBusy();
  ExpectOccupiedBox();
  Advance(2 * kWatchdog);
  EXPECT_EQ(State(), "Stopped, port closed, no timers");
  ExpectOccupiedBox();
  Start();
  Advance(2 * kWatchdog);
  EXPECT_EQ(State(), "Stopped, port closed, no timers");
  EXPECT_EQ(world.dialogs().shown().size(), 2U);
  port.MakeBusy(false);
  Start();
  ExpectRecovery();
}

void PolledFaultRun::RunUnderNone(std::size_t exchanges) {
  Exchange(exchanges);
  EXPECT_EQ(world.port().opens(), 1);
  EXPECT_EQ(judge.counts.wrong + judge.counts.astray + judge.counts.of_noise, 0) << judge.Text();
  ExpectRecovery();
}

void PolledFaultRun::RunUnderRandomFrames() {
  RunUnder({{"random_frame", Harm::kByChance}, 0.9}, 60'000);
  EXPECT_LE(judge.counts.altered_sound, MostByChance(judge.counts.struck)) << judge.Text();
}

void PolledFaultRun::RunUnderAll(const std::vector<FaultOfRun>& faults, std::size_t exchanges) {
  int longest_delay = 0;
  for (const FaultOfRun& fault : faults) {
    boiler.line().AddFault(fault.name + "@0.01");
    longest_delay = std::max(longest_delay, DelayOf(FaultOf(fault.name)));
  }
  longest_gap = kWatchdog + kQuiet + poll_time_ + longest_delay;
  writes_any_time_ = true;
  Exchange(exchanges);
  EXPECT_EQ(world.dialogs().shown().size(), 0U);
  ExpectRecovery();
}

void PolledFaultRun::RunUnderOne(const FaultOfRun& fault) {
  AllowDelayOf(fault);
  for (std::size_t before = 1; before <= polls_per_round_ && !HasFailure(); ++before) {
    Stop();
    Advance(longest_gap);  // whatever is on its way
    Start();
    Exchange(before);
    const int struck = judge.counts.struck;
    boiler.line().AddFault(fault.name + "#1");
    if (StrikesWritesOnly(fault)) {
      world.RunUntil([this] { return MayWrite(); }, std::chrono::milliseconds(longest_gap));
      WriteSomething(before);
    }
    Exchange(3);
    EXPECT_GT(judge.counts.struck, struck) << before << ": " << judge.Text();
    // Nothing is cut short here: what the fault leaves behind is for the run to get rid of.
    ExpectGoodValues();
  }
}

void PolledFaultRun::ExpectShare(const FaultOfRun& fault, double rate) const {
  using enum boiler::FaultKind;
  const boiler::Fault& kind = FaultOf(fault.name);
  const FaultCounts& counts = judge.counts;
  EXPECT_GT(counts.writes, 0) << judge.Text();
  int hits = counts.struck;
  int tries = counts.exchanges;
  if (StrikesWritesOnly(fault)) tries = counts.writes;
  // One strike is several exchanges, and the one behind them is sound.
  if (kind.kind == kBusyThenOk) {
    tries -= hits;
    hits /= kind.number;
  }
  // Two answers are not held back at once.
  if (kind.kind == kMergeTwo) tries -= hits;
  EXPECT_TRUE(IsNear(hits, tries, rate)) << judge.Text();
}

void PolledFaultRun::ExpectHarm(const FaultOfRun& fault) const {
  const Harm harm = fault.harm;
  const FaultCounts& counts = judge.counts;
  if (harm == Harm::kNone && FaultOf(fault.name).group() == boiler::FaultGroup::kDamage) {
    EXPECT_TRUE(IsNear(counts.altered_sound, counts.struck, fault.uncovered)) << judge.Text();
  }
  EXPECT_GT(judge.sound, 0);
  EXPECT_EQ(counts.altered_shown, counts.foretold_shown) << judge.Text();
  EXPECT_EQ(counts.altered_wrong, counts.foretold_wrong) << judge.Text();
  EXPECT_EQ(counts.wrong, counts.altered_wrong + counts.astray) << judge.Text();
  const bool chance = harm == Harm::kByChance || harm == Harm::kAstray;
  const int by_chance = chance ? MostByChance(counts.struck) : 0;
  EXPECT_LE(counts.of_noise, by_chance) << judge.Text();
  if (harm != Harm::kForetold) {
    EXPECT_LE(counts.altered_wrong, by_chance) << judge.Text();
  }
  // What comes late is taken for the next, and the next for the one behind it.
  EXPECT_LE(counts.astray, harm == Harm::kAstray ? 2 * counts.struck : 0) << judge.Text();
}

void PolledFaultRun::ExpectRecovery() {
  boiler.Calm();
  longest_gap = kWatchdog + poll_time_;
  ExpectGoodValues();
}

void PolledFaultRun::ExpectGoodValues() {
  judge.sound = 0;
  const auto bound = std::chrono::milliseconds(longest_gap);
  const auto is_good = [this] { return judge.sound > 0; };
  if (!world.RunUntil(is_good, bound)) {
    const long late = Now();
    const bool ever = world.RunUntil(is_good, std::chrono::minutes(10));
    FAIL() << "No good value within " << longest_gap << " ms; "
           << (ever ? "one came " + std::to_string(Now() - late) + " ms later."
                    : "none came in ten minutes more. ")
           << judge.Text();
  }
  Advance(static_cast<int>(polls_per_round_) * poll_time_ + kTick);
  for (int i = 1; i <= monitor.main.MaxId; ++i) {
    if (monitor.main.Locations[i].ScanFlags == kScanningDisabled) continue;
    EXPECT_EQ(Value(i), reader.Held(boiler.controller(), i)) << i;
  }
  EXPECT_EQ(Panel(4), "Communication Running");
}

}  // namespace tarnlink
