// The monitor's run under each protocol at four rates of faults. After every few milliseconds the
// run stands in one of its told states with just the timers that belong to it; a message waits for
// the answer to the one before; no value is shown from a frame whose check fails; and what gets
// through the check of 16 bits is no more than one in 60,000. The TarnLink protocol checks nothing:
// what is wrong there is counted.
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "faults/line_guard.h"
#include "faults/rate_run.h"
#include "form/fault_run_modbus.h"
#include "form/fault_run_tarnlink.h"
#include "form/fault_run_zolt.h"

namespace tarnlink {
namespace {

constexpr std::chrono::seconds kWatchdog(3);

// The run's own timer, which ends the wait for an answer.
std::chrono::milliseconds TheWatchdog() { return kWatchdog; }

EndOfMessage EndOf(const std::string& protocol) {
  return protocol == "zolt" ? EndOfZolt(TheWatchdog) : EndOfModbus(TheWatchdog);
}

// One part of a run, in a world of its own; it is no test by itself.
template <class Run>
class PolledPart final : public Run {
 public:
  explicit PolledPart(std::uint64_t seed) : Run(seed) {}

  RateCounts Exchanges(const std::string& protocol, double rate, long count) {
    // The run began with its first request.
    LineGuard guard(this->world, this->world.port(), EndOf(protocol));
    for (const std::string& plan : PlansOf(protocol, rate)) this->boiler.line().AddFault(plan);
    this->Exchange(static_cast<std::size_t>(count));
    EXPECT_EQ(guard.hurried(), 0) << guard.first_hurried();
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

class TarnlinkPart : public tarnlink_faults::TarnlinkFaultRun {
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
    LineGuard guard(world, world.port(), EndOfTarnlink(TheWatchdog));
    heard_ = struck_ = 0;
    for (const std::string& plan : PlansOf("tarnlink", rate)) boiler.line().AddFault(plan);
    RestartAfterEachSilence();
    Exchange(static_cast<std::size_t>(count));
    EXPECT_EQ(guard.hurried(), 0) << guard.first_hurried();
    const RateCounts counts = Counted({heard_, struck_, counter_.shown, counter_.wrong});
    ExpectSoundRun();
    EndInSilence();
    return counts;
  }

 protected:
  bool MayWrite() const override { return false; }
  virtual RateCounts Counted(RateCounts counts) { return counts; }

 private:
  void TestBody() override {}

  long heard_ = 0;
  long struck_ = 0;
  ValueCounter counter_{[this](int index) { return Value(index) == Held(index); }};
};

// With a user who writes now and then. What counts are the writes: `wrong` are those that the slave
// does not have although nothing was told of them. Those that it did not hear end in the box of its
// silence, or with the run, which the user begins anew behind such a box.
class TarnlinkWritePart final : public TarnlinkPart {
 public:
  explicit TarnlinkWritePart(std::uint64_t seed) : TarnlinkPart(seed) {}

 private:
  // The user waits for the answer to what is under way.
  bool MayWrite() const override {
    return monitor.main.CommRunning && monitor.main.message_received;
  }
  void WriteSomething(std::size_t turn) override {
    CountLast();
    index_ = 1 + static_cast<int>(turn % static_cast<std::size_t>(monitor.main.MaxId));
    const int number = static_cast<int>(turn * 259 % 0x10000);
    silences_ = silences;
    opens_ = world.port().opens();
    written_ = boiler::HexDigits(number, index_ % 2 == 0 ? 4 : 2);
    Write(index_, written_);
  }
  RateCounts Counted(RateCounts counts) override {
    CountLast();
    return {counts.exchanges, counts.faults, writes_, lost_};
  }
  void CountLast() {
    if (index_ == 0) return;
    ++writes_;
    const auto& memory = boiler.controller().memory();
    const std::uint16_t address = NumberOf(monitor.main.Locations[index_]);
    const bool is_word = written_.size() > 2;
    const int held = is_word ? memory.Word(address) : memory.Byte(address);
    const bool is_there = boiler::HexDigits(held, is_word ? 4 : 2) == written_;
    const bool is_told = silences != silences_ || world.port().opens() != opens_;
    if (!is_there && !is_told) ++lost_;
    index_ = 0;
  }

  int index_ = 0;  // of the Location that was written last
  std::string written_;
  int silences_ = 0;  // when it was
  int opens_ = 0;
  long writes_ = 0;
  long lost_ = 0;
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

TEST_P(ProtocolRates, TarnlinkWritesArriveAndCostNoOtherMessage) {
  const double rate = GetParam();
  const auto part = [rate](long exchanges, std::uint64_t seed) {
    return TarnlinkWritePart(seed).Exchanges(rate, exchanges);
  };
  const RateCounts all = RunInParts("tarnlink writes", rate, part);
  EXPECT_GT(all.shown, 0) << "nothing was written";
  EXPECT_EQ(all.wrong, 0);
}

TEST(RandomFrames, PassTheCheckOfZoltByChanceOnly) {
  CountSoundOnes<zolt_faults::ZoltFaultRun>("zolt, random", false);
}

TEST(RandomFrames, PassTheCheckOfModbusByChanceOnly) {
  CountSoundOnes<modbus_faults::ModbusFaultRun>("modbus, random", true);
}

INSTANTIATE_TEST_SUITE_P(Each, ProtocolRates, testing::ValuesIn(kFaultRates), NameOfRate);

TEST(MostHits, AreThoseOfChance) {
  EXPECT_EQ(MostHits(0, 60'000), 0);
  EXPECT_EQ(MostHits(60'000, 60'000), 9);  // of a mean of one
  EXPECT_EQ(MostHits(500'000, 256) > 1'953, true);
}

}  // namespace
}  // namespace tarnlink
