// The graph's acquisition on a line that is bad in every way: what it stores is what the line said
// in answer, and when the line is sound again, so is the graph.

#include <gtest/gtest.h>

#include <cctype>
#include <string>
#include <vector>

#include "form/graph_on_line.h"
#include "simulator/damage.h"
#include "simulator/zolt_frames.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr int kFrame = 16;
constexpr int kSeeds = 2;

std::string TestName(std::string_view text) {
  std::string name(text);
  for (char& one : name) {
    if (std::isalnum(static_cast<unsigned char>(one)) == 0) one = '_';
  }
  return name;
}

// Whatever this protocol can have that is no fault of the cable, some with more numbers than one.
std::vector<std::string> Faults() {
  std::vector<std::string> faults;
  const auto slave = boiler::MakeSlave("zolt");
  for (const boiler::FaultInfo& info : boiler::AllFaults()) {
    if (!slave->Misfit(info.kind).empty() || boiler::BlocksOpening(info.kind) ||
        info.group == boiler::FaultGroup::kPort || info.kind == boiler::FaultKind::kEndlessStream) {
      continue;
    }
    faults.push_back(std::string(info.name));
  }
  for (const char* more :
       {"late_reply(1900)", "late_reply(1990)", "late_reply(2100)", "late_reply(3900)",
        "refused(4)", "refused(6)", "bit_flip(8)", "burst(32)", "truncate(10)", "split(11)",
        "noise_before(300)", "noise_after(300)", "noise_idle(300)", "oversize(300)",
        "slow_bytes(200)", "pause_midframe(2500)", "endless_stream(500)", "busy_then_ok(9)"}) {
    faults.emplace_back(more);
  }
  return faults;
}

// How long the answer that the fault strikes may be on its way.
Micros LengthOf(const std::string& fault) {
  const boiler::Fault kind = boiler::ParseFaultPlan(fault).fault;
  const std::string_view unit = boiler::InfoOf(kind.kind).unit;
  if (unit == "exchanges") return kind.number * 2s;
  if (unit == "bytes") return kind.number * 10ms;  // at the slowest speed, and those ahead of them
  if (unit.substr(0, 2) != "ms") return 0ms;
  const bool each_byte = kind.kind == boiler::FaultKind::kSlowBytes;
  return kind.number * (each_byte ? kFrame : 1) * 1ms;
}

// A slow boiler gets through with what it was asked.
void AwaitAnswers(OnScreen& one, const std::string& fault) {
  one.Advance(LengthOf(fault));
  const boiler::Fault kind = boiler::ParseFaultPlan(fault).fault;
  if (kind.group() != boiler::FaultGroup::kTime || kind.kind == boiler::FaultKind::kBusyThenOk) {
    return;
  }
  one.world.RunUntil([&] { return one.record.out() <= 1; }, 150 * LengthOf(fault));
}

// The foreign answers carry the ID of the lanes: see GraphForeign.
bool MayStrike(const std::string& fault, const Screen& screen) {
  return fault != "foreign_traffic" || !screen.lines.empty();
}

class GraphFault : public ::testing::TestWithParam<std::string> {};
class GraphFaultOnce : public GraphFault {};

TEST_P(GraphFault, StoresOnlyWhatWasSaidAndPasses) {
  for (const Screen& screen : Screens()) {
    if (!MayStrike(GetParam(), screen)) continue;
    for (const char* rate : {"@0.01", "@0.1", "@0.5"}) {
      for (std::uint64_t seed = 1; seed <= kSeeds && !HasFailure(); ++seed) {
        const std::string what =
            std::string(screen.name) + ", " + rate + ", seed " + std::to_string(seed);
        OnScreen one(screen, seed);
        one.Start();
        one.boiler.line().AddFault(GetParam() + rate);
        one.Exchange(300);
        one.boiler.line().ClearFaults();
        EXPECT_EQ(one.record.first_wrong_request(), "") << what;
        AwaitAnswers(one, GetParam());
        one.ExpectRecovery(what);
        EXPECT_EQ(one.record.Unfounded(), "") << what;
      }
    }
  }
}

// Nothing but the graph itself puts the line in order.
TEST_P(GraphFaultOnce, PassesInEveryPlaceOfARound) {
  for (const Screen& screen : Screens()) {
    if (!MayStrike(GetParam(), screen)) continue;
    OnScreen one(screen);
    one.Start();
    for (std::size_t before = 1; before <= 2 * screen.lines.size() + 2 && !HasFailure(); ++before) {
      const std::string what = std::string(screen.name) + ", behind " + std::to_string(before);
      one.Exchange(before);
      const int struck = one.record.struck();
      one.boiler.line().AddFault(GetParam() + "#1");
      one.SendTestMode();
      EXPECT_TRUE(one.world.RunUntil([&] { return one.record.struck() > struck; }, 20s)) << what;
      one.Advance(LengthOf(GetParam()));
      one.ExpectRecovery(what);
    }
    EXPECT_EQ(one.record.Unfounded(), "") << screen.name;
  }
}

std::string NameOfFault(const ::testing::TestParamInfo<std::string>& info) {
  return TestName(info.param);
}

INSTANTIATE_TEST_SUITE_P(Each, GraphFault, ::testing::ValuesIn(Faults()), NameOfFault);
INSTANTIATE_TEST_SUITE_P(Each, GraphFaultOnce, ::testing::ValuesIn(Faults()), NameOfFault);
// Later than three requests: on a line where many are, there is no telling them apart.
INSTANTIATE_TEST_SUITE_P(VeryLate, GraphFaultOnce, ::testing::Values("late_reply(6500)"),
                         NameOfFault);

// --- Bytes too many and too few ------------------------------------------------------------------

class GraphBytes : public ::testing::TestWithParam<int> {
 protected:
  void ExpectToPass(const std::string& fault) {
    for (const Screen& screen : Screens()) {
      OnScreen one(screen);
      one.Start();
      one.Exchange(3);
      one.boiler.line().AddFault(fault + "(" + std::to_string(GetParam()) + ")#1");
      one.ExpectRecovery(fault + ", " + screen.name);
      EXPECT_EQ(one.record.struck(), 1);
      EXPECT_EQ(one.record.Unfounded(), "") << screen.name;
    }
  }
};

TEST_P(GraphBytes, MissingFromAnAnswerDoNotShiftTheNext) {
  if (GetParam() < kFrame) ExpectToPass("truncate");
}
TEST_P(GraphBytes, AheadOfAnAnswerDoNotShiftTheNext) { ExpectToPass("noise_before"); }
TEST_P(GraphBytes, BehindAnAnswerDoNotShiftTheNext) { ExpectToPass("noise_after"); }
TEST_P(GraphBytes, BetweenAnswersDoNotShiftTheNext) { ExpectToPass("noise_idle"); }

INSTANTIATE_TEST_SUITE_P(UpToTwoFrames, GraphBytes, ::testing::Range(1, 2 * kFrame + 2));

// Noise of any length at any time, also while nothing else is on the line.
TEST(GraphNoise, CostsSamplesAndMakesNone) {
  for (const Screen& screen : Screens()) {
    for (std::uint64_t seed = 1; seed <= 10 && !::testing::Test::HasFailure(); ++seed) {
      OnScreen one(screen, seed);
      boiler::Random random(seed);
      one.Start();
      for (int i = 0; i < 300; ++i) {
        one.Advance(1ms * random.Below(700));
        one.world.port().Receive(boiler::NoiseBytes(1 + random.Below(40), random));
      }
      one.ExpectRecovery(std::string(screen.name) + ", seed " + std::to_string(seed));
      EXPECT_EQ(one.record.Unfounded(), "");
    }
  }
}

// Each answer comes twice, the second time at once or after a while.
void ExpectTakenOnce(const Screen& screen, Micros later) {
  OnScreen one(screen);
  bool doubles = true;
  one.on_log = [&](const boiler::LogEntry& entry) {
    if (!doubles || entry.kind != boiler::LogKind::kSaid) return;
    one.world.port().ReceiveIn(later, entry.bytes);
  };
  const std::string what =
      std::string(screen.name) + ", " + std::to_string(later.count()) + " us later";
  one.Start();
  one.Advance(1min);
  EXPECT_EQ(one.record.first_wrong_request(), "") << what;
  EXPECT_EQ(one.record.Unfounded(), "") << what;
  EXPECT_GT(one.record.samples(), 0) << what;
  doubles = false;
  one.Advance(1s);
  one.ExpectRecovery(what);
}

TEST(GraphDoubled, AnswersAreTakenOnce) {
  for (const Screen& screen : Screens()) {
    for (const Micros later : {0ms, 3ms, 30ms, 300ms}) {
      if (!screen.lines.empty() || later != 3ms) ExpectTakenOnce(screen, later);
    }
  }
}

// While the boiler thinks, nothing tells the second time from the answer that is still to come.
TEST(GraphDoubled, AnswersOfTheOnlyIdDoNotPileUp) { ExpectTakenOnce(Screens()[0], 3ms); }

// Another master talks to another slave, while ours is silent.
TEST(GraphForeign, AnswersDoNotKeepThePollingUp) {
  OnScreen one(Screens()[2]);
  one.boiler.line().AddFault("no_reply");
  one.Start();
  const std::string foreign = boiler::BuildZoltFrame('\x14', '5', "1234", "5678");
  for (int i = 0; i < 120; ++i) {
    one.Advance(500ms);
    one.world.port().Receive(foreign);
  }
  EXPECT_GE(one.record.asked(), 29U) << "One in two seconds.";
  EXPECT_EQ(one.record.samples(), 0);
  one.boiler.line().ClearFaults();
  one.ExpectRecovery("ours speaks again");
}

TEST(GraphForeign, AnswersWithTheOnlyIdDoNotStayOneAhead) {
  for (int moment = 0; moment < 200 && !::testing::Test::HasFailure(); ++moment) {
    OnScreen one(Screens()[0]);
    one.Start();
    one.Exchange(3);
    one.Advance(moment * 1ms);
    one.world.port().Receive(boiler::BuildZoltFrame('\x11', '5', "0001", "5678"));
    one.ExpectRecovery(std::to_string(moment));
  }
}

// --- Frames that are whole -----------------------------------------------------------------------

// Whether the check is bad or the answer says no, there is no more to wait for.
TEST(GraphFrame, ThatGivesNothingIsFollowedByTheNextRequestAtOnce) {
  for (const char* fault : {"check_wrong", "refused(2)", "refused(4)", "refused(6)"}) {
    OnScreen one(Screens()[1]);
    Micros said{};
    one.on_log = [&](const boiler::LogEntry& entry) {
      if (entry.kind == boiler::LogKind::kSaid) said = one.world.now();
    };
    one.Start();
    one.boiler.line().AddFault(std::string(fault) + "#1");
    EXPECT_TRUE(one.world.RunUntil([&] { return one.record.struck() == 1; }, 1s)) << fault;
    const std::size_t asked = one.record.asked();
    EXPECT_TRUE(one.world.RunUntil([&] { return one.record.asked() > asked; }, 1s)) << fault;
    EXPECT_EQ(one.world.now(), said) << fault;
    one.ExpectRecovery(fault);
  }
}

}  // namespace
}  // namespace tarnlink
