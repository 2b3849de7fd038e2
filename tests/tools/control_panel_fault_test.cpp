// The control panel on a line that is bad in every way: what it shows is what came in with a sound
// check, and when the line is sound again, everything is worked off.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "simulator/damage.h"
#include "tools/control_panel_fixture.h"
#include "tools/line_faults.h"
#include "tools/panel_on_line.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr int kTabs = 5;
constexpr int kFrame = 16;

// The commands are written.
const std::vector<std::string>& Faults() {
  static const std::vector<std::string> faults = [] {
    std::vector<std::string> all = LineFaults();
    for (const boiler::FaultInfo& info : boiler::AllFaults()) {
      if (boiler::NeedsWrite(info.kind)) all.emplace_back(info.name);
    }
    return all;
  }();
  return faults;
}

// A user who presses whatever there is.
class FaultyPanel : public PanelOnLine {
 public:
  FaultyPanel(const boiler::LineOptions& line, std::uint64_t seed)
      : PanelOnLine(line, seed), random_(seed) {}

  // So many requests go out, each before the time-out of the one before is long over.
  void Exchange(int count) {
    const int goal = asked + count;
    while (asked < goal && !::testing::Test::HasFailure()) {
      if (random_.Below(20) == 0) Touch();
      const int before = asked;
      EnsureAsked();
      if (AwaitRequest(before)) continue;
      EXPECT_FALSE(world.port(0).PortOpen()) << "No request after " << before;
      world.port(0).PlugIn();
      EXPECT_TRUE(AwaitRequest(before)) << "No request after " << before;
    }
    EXPECT_EQ(Unfounded(), "");
    world.port(0).Forget();
  }

  // Another master reads and writes the panel's own IDs with another slave, just behind so many of
  // a hundred requests.
  void TalkBetween(int share) {
    on_asked = [this, share] {
      if (random_.Below(100) >= share) return;
      const int kinds[] = {kReadDone, kReadDone, kUnknown, kCorrupted, kWriteDone};
      const PanelRequest other = RequestOf(random_.Below(kNothingPending), false);
      const std::string data = random_.Below(2) == 0 ? "FFFF" : boiler::RandomDigits(4, random_);
      const int data_class = other.Class % 8;
      world.port(0).Receive(PanelFrame(kRead + data_class, other.Id, "0000", '3') +
                            PanelFrame(kinds[random_.Below(5)] + data_class, other.Id, data, '3'));
    };
  }
  void FallSilent() { on_asked = nullptr; }

  // The line is sound from now on, but for what is still on its way.
  void ExpectRecovery(const std::string& what, Micros on_its_way = 0s) {
    world.Advance(1s);  // the cable may still be pulled by what was struck last
    world.port(0).PlugIn();
    panel.chkContinuousUpdate.Value = false;
    // A slow boiler gets through with all that it was asked.
    EXPECT_TRUE(Finish(60s + 150 * on_its_way)) << what;
    world.Advance(20s);
    ForgetSaid();
    for (int tab = 0; tab < kTabs; ++tab) {
      Update(tab);
      EXPECT_TRUE(Finish(10s)) << what << ", tab " << tab;
    }
    EXPECT_EQ(Difference(), "") << what;
    const int before = asked;
    world.Advance(1h);
    EXPECT_EQ(asked, before) << what;
  }

 private:
  void Touch() {
    switch (random_.Below(6)) {
      case 0:
        return panel.cmdHeadDemand.Press();
      case 1:
        return panel.cmdResetError.Press();
      case 2:
        panel.chkContinuousUpdate.Value = !panel.chkContinuousUpdate.Value;
        return;
      case 3:
        panel.SSTab1.Tab = random_.Below(kTabs);
        return;
      default:
        return Update(random_.Below(kTabs));
    }
  }
  // After three seconds the time-out comes, and after it a call of the port may fail.
  bool AwaitRequest(int before) {
    return world.RunUntil([&] { return asked > before || IsDone(); }, 7s);
  }
  void EnsureAsked() {
    if (IsDone()) Update(random_.Below(kTabs));
  }

  boiler::Random random_;
};

const std::vector<boiler::LineOptions>& Lines() {
  static const std::vector<boiler::LineOptions> lines = {
      {.pace = {.baud = 9600}, .answer_delay_us = 20'000}, {.answer_delay_us = 5'000}};
  return lines;
}

// What the fault has put on its way may go on for so long.
Micros LengthOf(const std::string& fault) {
  const boiler::Fault kind = boiler::ParseFaultPlan(fault).fault;
  const std::string_view unit = boiler::InfoOf(kind.kind).unit;
  if (unit == "bytes") return kind.number * 2ms;
  if (unit.substr(0, 2) != "ms") return 0ms;
  return kind.number * (kind.kind == boiler::FaultKind::kSlowBytes ? kFrame : 1) * 1ms;
}

class ControlPanelFault : public ::testing::TestWithParam<std::string> {};

TEST_P(ControlPanelFault, ShowsOnlyWhatCameInAndPasses) {
  int struck = 0;
  for (const boiler::LineOptions& line : Lines()) {
    for (const char* rate : {"@0.02", "@0.2", "@0.6"}) {
      if (HasFailure()) return;
      FaultyPanel one(line, 7);
      one.boiler.line().AddFault(GetParam() + rate);
      one.Exchange(200);
      struck += one.struck;
      one.boiler.line().ClearFaults();
      one.ExpectRecovery(rate, LengthOf(GetParam()));
    }
  }
  EXPECT_GT(struck, 0);
}

INSTANTIATE_TEST_SUITE_P(Each, ControlPanelFault, ::testing::ValuesIn(Faults()), LineFaultName);

// One fault gives way to another, without a pause.
TEST(ControlPanelFaults, TenThousandExchangesEndWithNothingPending) {
  FaultyPanel one(Lines()[0], 3);
  one.TalkBetween(10);
  while (one.asked < 10'000 && !::testing::Test::HasFailure()) {
    for (const std::string& fault : Faults()) {
      one.boiler.line().ClearFaults();
      one.boiler.line().AddFault(fault + "@0.3");
      one.Exchange(40);
    }
  }
  EXPECT_GT(one.struck, 1'000);
  one.boiler.line().ClearFaults();
  one.FallSilent();
  one.world.Advance(1min);
  one.ExpectRecovery("all of them");
}

// At 1200 baud an answer takes longer than the quiet that follows a time-out.
TEST(ControlPanelFaults, NoEntryOfTheHistoryIsShownInAnothersPlace) {
  for (const auto& [baud, stored] : std::vector<std::pair<int, int>>{{1200, 0}, {9600, 3}}) {
    for (const char* fault : {"late_reply(5100)@0.5", "late_reply(3200)@0.3", "no_reply@0.3",
                              "self_echo@0.5", "merge_two@0.3", "late_reply_after_next@0.3"}) {
      FaultyPanel one({.pace = {.baud = baud}, .answer_delay_us = 20'000}, 9);
      one.baudrate = stored;
      one.boiler.line().AddFault(fault);
      one.boiler.line().AddFault("check_wrong@0.1");
      one.boiler.line().AddFault("byte_replace@0.1");
      for (int i = 0; i < 120 && !::testing::Test::HasFailure(); ++i) {
        if (one.IsDone()) one.Update(3);
        one.world.Advance(1s);
        EXPECT_EQ(one.Unfounded(), "") << baud << " " << fault;
      }
      one.boiler.line().ClearFaults();
      one.ExpectRecovery(fault, 6s);
    }
  }
}

TEST(ControlPanelFaults, WhatAnotherSlaveSaysIsNeverTaken) {
  for (const int share : {30, 100}) {
    FaultyPanel one(Lines()[0], 11);
    one.TalkBetween(share);
    one.Exchange(1'000);
    one.boiler.line().AddFault("byte_drop@0.05");
    one.boiler.line().AddFault("no_reply@0.05");
    one.Exchange(1'000);
    one.boiler.line().ClearFaults();
    one.FallSilent();
    one.ExpectRecovery("foreign traffic");
  }
}

TEST(ControlPanelFaults, AnotherSlavesHeatDemandIsNotThisOnes) {
  FaultyPanel one(Lines()[0], 1);
  one.on_asked = [&] {
    one.world.port(0).Receive(PanelFrame(kWriteDone + 1, 14, "FFFF", '3') +
                              PanelFrame(kWriteDone + 3, 171, "AA55", '3'));
  };
  int ticks = 0;
  one.panel.chk_HeatDemand.Click = [&] { ++ticks; };
  one.panel.chk_Reset.Click = [&] { ++ticks; };
  for (int tab = 0; tab < kTabs; ++tab) {
    one.Update(tab);
    EXPECT_TRUE(one.Finish(10s)) << tab;
  }
  EXPECT_EQ(ticks, 0);
  EXPECT_EQ(one.Difference(), "");
}

// One call of the port after the other fails, beside what the line does.
TEST(ControlPanelFaults, TenThousandExchangesWithCallsThatFailEndWithNothingPending) {
  const std::vector<std::string> calls = {"Port.Open", "Port.Output", "Port.Input", "Port.Close",
                                          "Port.Settings"};
  FaultyPanel one(Lines()[0], 5);
  one.boiler.line().AddFault("no_reply@0.02");
  one.boiler.line().AddFault("byte_drop@0.02");
  int turn = 0;
  while (one.asked < 10'000 && !::testing::Test::HasFailure()) {
    if (one.world.faults().Spent()) BreakACall(one.world.faults(), calls, turn++);
    one.Exchange(10);
  }
  EXPECT_GT(turn, 100);
  one.world.faults().Clear();
  one.boiler.line().ClearFaults();
  one.ExpectRecovery("calls that fail");
}

// Noise of any length at any time.
TEST(ControlPanelFaults, NoiseMakesNoValues) {
  for (std::uint64_t seed = 1; seed <= 10; ++seed) {
    FaultyPanel one(Lines()[0], seed);
    boiler::Random random(seed);
    one.panel.chkContinuousUpdate.Value = true;
    for (int i = 0; i < 300; ++i) {
      one.world.Advance(1ms * random.Below(700));
      one.world.port(0).Receive(boiler::NoiseBytes(1 + random.Below(40), random));
    }
    EXPECT_EQ(one.Unfounded(), "");
    one.ExpectRecovery("seed " + std::to_string(seed));
  }
}

// The box is told each time, and nothing else comes of it.
TEST(ControlPanelFaults, SilenceIsToldEachTime) {
  FaultyPanel one(Lines()[0], 1);
  one.ignores_errors = false;
  one.boiler.line().AddFault("no_reply#5");
  for (int i = 0; i < 5; ++i) {
    one.world.dialogs().ExpectMessageBox("No communication with slave", "Communication Timeout");
  }
  one.Update(4);
  EXPECT_TRUE(one.Finish(20s));
  EXPECT_EQ(one.asked, 9 + 5);
}

}  // namespace
}  // namespace tarnlink
