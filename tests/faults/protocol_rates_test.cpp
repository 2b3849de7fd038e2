// The monitor's run under each protocol at four rates of faults. After every few milliseconds the
// run stands in one of its told states with just the timers that belong to it; a message waits for
// the answer to the one before; no value is shown from a frame whose check fails; and what gets
// through the check of 16 bits is no more than one in 60,000. The TarnLink protocol checks nothing:
// what is wrong there is counted.
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "faults/rate_run.h"
#include "form/fault_run_modbus.h"
#include "form/fault_run_tarnlink.h"
#include "form/fault_run_zolt.h"

namespace tarnlink {
namespace {

constexpr double kOneIn = 60'000;
constexpr std::chrono::seconds kWatchdog(3);

LineGuard::Waits TheWatchdog() {
  return [] { return std::chrono::milliseconds(kWatchdog); };
}

// One part of a run, in a world of its own; it is no test by itself.
template <class Run>
class PolledPart final : public Run {
 public:
  explicit PolledPart(std::uint64_t seed) : Run(seed) {}

  RateCounts Exchanges(const std::string& protocol, double rate, long count) {
    // The run began with its first request.
    LineGuard guard(this->world, this->world.port(), TheWatchdog());
    for (const std::string& plan : PlansOf(protocol, rate)) this->boiler.line().AddFault(plan);
    this->Exchange(static_cast<std::size_t>(count));
    EXPECT_EQ(guard.hurried(), 0) << "one message in flight";
    EXPECT_TRUE(this->monitor.main.CommRunning);
    this->boiler.line().ClearFaults();
    this->world.RunUntil([this] { return this->monitor.main.message_received; }, kWatchdog);
    const FaultCounts& counts = this->judge.counts;
    EXPECT_EQ(counts.altered_shown, counts.foretold_shown) << this->judge.Text();
    EXPECT_EQ(counts.altered_wrong, counts.foretold_wrong) << this->judge.Text();
    EXPECT_EQ(counts.wrong, counts.altered_wrong) << this->judge.Text();
    const RateCounts made = {counts.exchanges, counts.struck, counts.shown,
                             counts.wrong + counts.of_noise};
    this->ExpectRecovery();
    return made;
  }

  // Half of the answers are nothing but chance. What counts as shown and wrong here are those among
  // them whose check holds: `wrong` all of them, `shown` nothing.
  RateCounts RandomFrames(long count) {
    this->boiler.line().AddFault("random_frame@0.5");
    this->Exchange(static_cast<std::size_t>(count));
    const FaultCounts& counts = this->judge.counts;
    return {counts.exchanges, counts.struck, 0, counts.altered_sound};
  }

 private:
  void TestBody() override {}
};

template <class Run>
void RunAt(const std::string& name, double rate) {
  const RateCounts all = RunInParts(name, rate, [&](long exchanges, std::uint64_t seed) {
    return PolledPart<Run>(seed).Exchanges(name, rate, exchanges);
  });
  EXPECT_GT(all.shown, 0);
  EXPECT_LE(all.wrong, MostHits(all.faults, kOneIn));
}

// About one in 65,536 frames of chance has a sound check: no more of them. Where there are many of
// them and the check is two bytes, it is not none either; that of ZOLT is four digits, which chance
// hardly makes.
template <class Run>
void CountSoundOnes(const std::string& name, bool is_of_bytes) {
  constexpr double kHalf = 0.5;
  constexpr double kChance = 65'536;
  const RateCounts all = RunInParts(name, kHalf, [](long exchanges, std::uint64_t seed) {
    return PolledPart<Run>(seed).RandomFrames(exchanges);
  });
  EXPECT_LE(all.wrong, MostHits(all.faults, kChance));
  constexpr long kMany = 400'000;
  if (is_of_bytes && all.faults >= kMany) {
    EXPECT_GT(all.wrong, 0);
  }
}

// Counts the values that the memory does not hold. Nobody writes, so it holds the same all the
// time.
class ValueCounter final : public RunRecorder {
 public:
  using Holds = std::function<bool(int index)>;

  explicit ValueCounter(Holds holds) : holds_(std::move(holds)) {}

  long shown = 0;
  long wrong = 0;

  void PrepareLog() override {}
  void StartSpreadsheet() override {}
  void LogRequest(int /*index*/) override {}
  void RecordValue(int index) override {
    if (index == 0) return;
    ++shown;
    if (!holds_(index)) ++wrong;
  }
  void LogUnreadable(int /*index*/) override {}
  void EndLogRow() override {}
  void CloseLogFile() override {}

 private:
  Holds holds_;
};

class TarnlinkPart final : public tarnlink_faults::TarnlinkFaultRun {
 public:
  explicit TarnlinkPart(std::uint64_t seed)
      : TarnlinkFaultRun({}, seed, [this](const boiler::LogEntry& entry) {
          if (entry.kind == boiler::LogKind::kHeard) ++heard_;
          if (entry.kind == boiler::LogKind::kFault) ++struck_;
        }) {
    Stop();
    RecordIn(counter_);
    Start();
  }

  RateCounts Exchanges(double rate, long count) {
    LineGuard guard(world, world.port(), TheWatchdog());
    heard_ = struck_ = 0;
    for (const std::string& plan : PlansOf("tarnlink", rate)) boiler.line().AddFault(plan);
    RestartAfterEachSilence();
    Exchange(static_cast<std::size_t>(count));
    EXPECT_EQ(guard.hurried(), 0) << "one message in flight";
    const RateCounts counts = {heard_, struck_, counter_.shown, counter_.wrong};
    ExpectSoundRun();
    EndInSilence();
    return counts;
  }

 private:
  void TestBody() override {}
  bool MayWrite() const override { return false; }

  long heard_ = 0;
  long struck_ = 0;
  ValueCounter counter_{[this](int index) { return Value(index) == Held(index); }};
};

class ProtocolRates : public testing::TestWithParam<double> {};

TEST_P(ProtocolRates, ZoltShowsOnlyWhatItsCheckLetsThrough) {
  RunAt<zolt_faults::ZoltFaultRun>("zolt", GetParam());
}

TEST_P(ProtocolRates, ModbusShowsOnlyWhatItsCheckLetsThrough) {
  RunAt<modbus_faults::ModbusFaultRun>("modbus", GetParam());
}

TEST_P(ProtocolRates, TarnlinkGoesOnThroughAll) {
  const double rate = GetParam();
  const RateCounts all = RunInParts("tarnlink", rate, [rate](long exchanges, std::uint64_t seed) {
    return TarnlinkPart(seed).Exchanges(rate, exchanges);
  });
  EXPECT_GT(all.shown, 0);
  // A damaged answer costs no other one's value.
  EXPECT_LE(all.wrong, all.faults);
}

TEST(RandomFrames, PassTheCheckOfZoltByChanceOnly) {
  CountSoundOnes<zolt_faults::ZoltFaultRun>("zolt, random", false);
}

TEST(RandomFrames, PassTheCheckOfModbusByChanceOnly) {
  CountSoundOnes<modbus_faults::ModbusFaultRun>("modbus, random", true);
}

std::string NameOfRate(const testing::TestParamInfo<double>& rate) {
  return std::to_string(static_cast<int>(rate.param * 100)) + "_percent";
}

INSTANTIATE_TEST_SUITE_P(Each, ProtocolRates, testing::ValuesIn(kFaultRates), NameOfRate);

TEST(MostHits, AreThoseOfChance) {
  EXPECT_EQ(MostHits(0, 60'000), 0);
  EXPECT_EQ(MostHits(60'000, 60'000), 9);  // of a mean of one
  EXPECT_EQ(MostHits(500'000, 256) > 1'953, true);
}

// It stands in front of the far end, and asks for nothing.
TEST(LineGuard, CountsWhatGoesOutBeforeAnAnswerOrItsTime) {
  FakeWorld world;
  const auto port = world.CreatePort();
  int heard = 0;
  world.on_output = [&](FakeSerialPort&, std::string_view) { ++heard; };
  LineGuard guard(world, world.port(), [] { return std::chrono::milliseconds(100); });
  port->SetPortOpen(true);
  port->Output("one");
  EXPECT_EQ(guard.hurried(), 0);
  port->Output("two");
  EXPECT_EQ(guard.hurried(), 1);
  world.Advance(std::chrono::milliseconds(99));
  port->Output("three");
  EXPECT_EQ(guard.hurried(), 2);
  world.Advance(std::chrono::milliseconds(100));
  port->Output("four");
  world.port().Receive("answer");
  port->Input();
  port->Output("five");
  EXPECT_EQ(guard.hurried(), 2);
  EXPECT_EQ(guard.asked(), 5);
  EXPECT_EQ(heard, 5);
}

}  // namespace
}  // namespace tarnlink
