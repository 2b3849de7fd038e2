// The graph's acquisition when the boiler is silent, the cable is pulled, the user starts and
// stops, the clock is set, and with a hundred lines: nothing hangs, and no sample is wrong or lost.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/run_time_error.h"
#include "form/graph_on_line.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

// --- Silence -------------------------------------------------------------------------------------

TEST(GraphSilence, OfAnHourIsToldAfterFourteenSecondsAndEndsAtTheFirstAnswer) {
  for (const Screen& screen : Screens()) {
    OnScreen one(screen);
    one.Start();
    one.Exchange(5);
    one.boiler.line().AddFault("no_reply");
    one.Advance(1s);  // what is on its way
    const std::size_t asked = one.record.asked();
    const int opens = one.world.port().opens();
    EXPECT_TRUE(one.world.RunUntil([&] { return one.record.asked() > asked; }, 2s));
    one.Advance(12s - 1ms);  // the second to seventh wait
    EXPECT_EQ(one.State(), "running") << screen.name;
    EXPECT_EQ(one.record.asked(), asked + 6);
    EXPECT_EQ(one.world.port().opens(), opens);
    one.Advance(1ms);
    EXPECT_EQ(one.State(), "running: Communication error") << screen.name;
    EXPECT_EQ(one.record.asked(), asked + 7);
    EXPECT_EQ(one.world.port().opens(), opens + 2) << "Tried and opened.";
    one.Advance(1h);
    EXPECT_EQ(one.State(), "running: Communication error");
    EXPECT_EQ(one.record.asked(), asked + 7 + 1800);
    EXPECT_EQ(one.world.port().opens(), opens + 2 + 2 * 1800);
    EXPECT_EQ(one.graph.RetryCount, 6);
    EXPECT_EQ(one.record.first_wrong_request(), "");
    one.boiler.line().ClearFaults();
    one.ExpectRecovery(screen.name);
    EXPECT_EQ(one.graph.RetryCount, 0);
    EXPECT_EQ(one.record.Difference(), "");
  }
}

// The boiler answers, but never with a good check, or never what was asked.
TEST(GraphSilence, IsWhatAnHourOfBadAnswersAmountsTo) {
  for (const char* fault : {"check_wrong", "wrong_id", "all_zero", "truncate(3)", "refused(6)"}) {
    OnScreen one(Screens()[1]);
    one.boiler.line().AddFault(fault);
    one.Start();
    one.Advance(1h);
    EXPECT_EQ(one.record.samples(), 0) << fault;
    EXPECT_TRUE(one.graph.ZOLTCommunication);
    EXPECT_GE(one.record.asked(), 1800U) << fault;
    one.boiler.line().ClearFaults();
    one.ExpectRecovery(fault);
  }
}

// --- The cable -----------------------------------------------------------------------------------

TEST(GraphCable, PulledAtAnyMomentAndBackInTimeIsNotNoticed) {
  for (const Screen& screen : Screens()) {
    OnScreen one(screen);
    one.Start();
    for (int moment = 0; moment < 200 && !::testing::Test::HasFailure(); ++moment) {
      one.Exchange(1);
      one.Advance(moment * 1ms);
      one.world.port().Unplug();
      one.Advance(1ms * (1 + moment * 37 % 3000));
      one.world.port().PlugIn();
      one.ExpectRecovery(std::string(screen.name) + ", moment " + std::to_string(moment));
    }
    EXPECT_EQ(one.record.Unfounded(), "");
    EXPECT_TRUE(one.world.dialogs().shown().empty());
  }
}

class GraphCableFor : public ::testing::TestWithParam<int> {};

TEST_P(GraphCableFor, PulledForLongIsToldOnceAndTheUserStartsAnew) {
  for (const Micros box : {Micros(0ms), Micros(1h), Micros(1min)}) {
    OnScreen one(Screens()[2]);
    one.Start();
    one.Exchange(20);
    one.world.port().Unplug();
    std::size_t asked = one.record.asked();
    one.ExpectBusy()
        .While([&] {
          EXPECT_FALSE(one.graph.ZOLTCommunication);
          EXPECT_FALSE(one.graph.CommWatch->Enabled());
        })
        .For(box);
    one.Advance(GetParam() * 1s);
    one.world.port().PlugIn();
    one.Advance(box);
    EXPECT_EQ(one.State(), "stopped: Communication stopped");
    EXPECT_EQ(one.record.asked(), asked) << "Nothing goes out by itself.";
    one.StartByMenu();
    one.ExpectRecovery("behind the box");
    EXPECT_EQ(one.record.Unfounded(), "");
    EXPECT_EQ(one.record.first_wrong_request(), "");
  }
}

INSTANTIATE_TEST_SUITE_P(Seconds, GraphCableFor, ::testing::Values(20, 60, 3600));

TEST(GraphCable, PulledInALongSilenceIsToldAtTheNextTry) {
  OnScreen one(Screens()[2]);
  one.boiler.line().AddFault("no_reply");
  one.Start();
  one.Advance(1min);
  EXPECT_EQ(one.State(), "running: Communication error");
  one.world.port().Unplug();
  one.ExpectBusy();
  one.Advance(2s);
  EXPECT_EQ(one.State(), "stopped: Communication stopped");
  one.world.dialogs()
      .ExpectMessageBox("Are you sure you want to start communication", "ZOLT Communication")
      .Press(Answer::kYes);
  one.ExpectBusy();  // still away
  one.menu.mnuZOLTCom.Press();
  EXPECT_EQ(one.State(), "stopped: Communication stopped");
  one.world.port().PlugIn();
  one.boiler.line().ClearFaults();
  one.StartByMenu();
  one.ExpectRecovery("plugged in");
}

TEST(GraphCable, TakenByAnotherProgramInASilenceIsTold) {
  OnScreen one(Screens()[2]);
  one.Start();
  one.Exchange(20);
  one.boiler.line().AddFault("no_reply");
  one.world.port().MakeBusy();
  one.ExpectBusy();
  one.Advance(17s);
  EXPECT_EQ(one.State(), "stopped: Communication stopped");
  one.boiler.line().ClearFaults();
  one.world.port().MakeBusy(false);
  one.StartByMenu();
  one.ExpectRecovery("free again");
}

// A device that cannot be written to, or opened at once, counts as silent.
TEST(GraphCable, FailingCallsOfThePortArePassedBy) {
  for (const Screen& screen : Screens()) {
    for (int nth = 0; nth <= 5; ++nth) {
      OnScreen one(screen);
      one.Start();
      one.Exchange(4);
      const RunTimeError error(kDeviceIo, "Input/output error");
      if (nth == 0) {
        one.world.port().Unplug();
        one.world.port().PlugIn();
        one.world.faults().Break("Port.Open", error);
      } else {
        one.world.faults().Break("Port.Output", nth, error);
      }
      EXPECT_TRUE(one.world.RunUntil([&] { return one.world.faults().Spent(); }, 10s));
      one.record.LoseTrack();
      one.ExpectRecovery(std::string(screen.name) + " " + std::to_string(nth));
      EXPECT_EQ(one.record.Unfounded(), "");
    }
  }
}

// --- The user ------------------------------------------------------------------------------------

// Half an answer is under way when the port is opened anew.
TEST(GraphRestart, AtAnyMomentBeginsWithTheFirstLine) {
  for (const Screen& screen : Screens()) {
    OnScreen one(screen);
    one.Start();
    for (int moment = 0; moment < 160 && !::testing::Test::HasFailure(); ++moment) {
      one.Exchange(1);
      one.Advance(moment * 1ms);
      one.StopByMenu();
      one.Advance(1ms * (moment * 7 % 50));
      one.StartByMenu();
      one.ExpectRecovery(std::string(screen.name) + ", moment " + std::to_string(moment));
    }
    EXPECT_EQ(one.record.first_wrong_request(), "");
    EXPECT_EQ(one.record.Unfounded(), "");
  }
}

// As a file does that brings lines along.
TEST(GraphRestart, WhileRunningBeginsWithTheFirstLine) {
  for (const Screen& screen : Screens()) {
    OnScreen one(screen);
    one.Start();
    for (int moment = 0; moment < 160 && !::testing::Test::HasFailure(); ++moment) {
      one.Exchange(1);
      one.Advance(moment * 1ms);
      one.menu.SetCommunication(true);
      one.ExpectRecovery(std::string(screen.name) + ", moment " + std::to_string(moment));
    }
    EXPECT_EQ(one.record.first_wrong_request(), "");
    EXPECT_EQ(one.record.Unfounded(), "");
  }
}

TEST(GraphRestart, TheQuestionDoesNotHoldTheAcquisitionUp) {
  OnScreen one(Screens()[2]);
  one.Start();
  one.Advance(1min);
  one.world.dialogs()
      .ExpectMessageBox("Are you sure you want to stop communication", "ZOLT Communication")
      .Press(Answer::kNo)
      .For(10min);
  one.menu.mnuZOLTCom.Press();
  EXPECT_EQ(one.record.Difference(), "");
  one.ExpectRecovery("answered no");
  // The cable goes while the question stands.
  one.world.dialogs()
      .ExpectMessageBox("Are you sure you want to stop communication", "ZOLT Communication")
      .Press(Answer::kYes)
      .While([&] {
        one.world.port().Unplug();
        one.ExpectBusy();
      })
      .For(1min);
  one.menu.mnuZOLTCom.Press();
  EXPECT_EQ(one.State(), "stopped: Communication stopped");
  one.world.port().PlugIn();
  one.StartByMenu();
  one.ExpectRecovery("started anew");
}

TEST(GraphRestart, WhileStoppedNothingGoesOutOrIn) {
  for (int moment = 0; moment < 160; ++moment) {
    OnScreen one(Screens()[0]);
    one.Start();
    one.Exchange(3);
    one.Advance(moment * 1ms);
    one.StopByMenu();
    const std::size_t asked = one.record.asked();
    const long samples = one.record.samples();
    one.SendTestMode();
    one.Advance(1h);
    EXPECT_EQ(one.record.asked(), asked);
    EXPECT_EQ(one.record.samples(), samples);
    EXPECT_EQ(one.record.test_commands(), 0);
    EXPECT_FALSE(one.graph.CommWatch->Enabled());
    one.StartByMenu();
    EXPECT_EQ(one.record.test_commands(), 1) << "It has waited.";
    one.ExpectRecovery(std::to_string(moment));
  }
}

// --- The clock -----------------------------------------------------------------------------------

TEST(GraphClock, SetBackOrForwardLosesNoSample) {
  for (const std::vector<int>& hours : std::vector<std::vector<int>>{
           {-1}, {1}, {-1, 1}, {1, -1}, {-1, -1, 1, 1}, {24, -24}, {-15, 15}}) {
    OnScreen one(Screens()[1]);
    one.Start();
    for (const int each : hours) {
      one.Advance(10min);
      one.SetClock(each);
      one.Advance(100ms);
      EXPECT_EQ(ToSeconds(one.graph.Data.LastTime), one.record.Second());
    }
    // Up to the times that there are samples of already, and past them.
    one.Advance(65min);
    EXPECT_EQ(one.record.first_wrong_request(), "");
    EXPECT_EQ(one.record.Difference(), "") << hours.front();
    EXPECT_EQ(one.record.Unfounded(), "");
    one.StopByMenu();
    one.StartByMenu();
    one.ExpectRecovery("by the menu");
  }
}

// A sample of a second stands in the way of another of it, also where the clock came back to it.
TEST(GraphClock, OneThatStandsStillKeepsOneSample) {
  OnScreen one(Screens()[2]);
  one.Start();
  one.Advance(1min);
  const std::int64_t second = one.record.Second();
  const long samples = one.record.samples();
  for (int i = 0; i < 100; ++i) {
    one.record.SetClock(second);
    one.Advance(900ms);
  }
  const long lines = static_cast<long>(Screens()[2].lines.size()) + 1;
  EXPECT_LE(one.record.samples(), samples + lines);
  EXPECT_EQ(one.record.Difference(), "");
}

// --- A hundred lines -----------------------------------------------------------------------------

class GraphCrowd : public ::testing::TestWithParam<int> {};

TEST_P(GraphCrowd, OfAHundredLinesOnASlowLineGetsEachItsSampleInTurn) {
  constexpr int kRounds = 40;
  GraphOnLine one({.pace = {.baud = 1200}, .answer_delay_us = 20'000},
                  static_cast<std::uint64_t>(GetParam()));
  one.ShowAllLines();
  one.Start();
  EXPECT_TRUE(one.world.RunUntil([&] { return one.record.asked() > 101 * kRounds; }, 1h));
  EXPECT_EQ(one.record.first_wrong_request(), "");
  EXPECT_EQ(one.record.hurried(), 0);
  EXPECT_EQ(one.record.most_out(), 1U);
  EXPECT_EQ(one.record.Difference(), "");
  for (int i = 0; i <= kStatusChannel; ++i) EXPECT_EQ(one.Channel(i).Count(), kRounds) << i;
}

TEST_P(GraphCrowd, UnderFaultsHasNoSampleInAWrongChannel) {
  GraphOnLine one({.pace = {.baud = 1200}, .answer_delay_us = 20'000},
                  static_cast<std::uint64_t>(GetParam()));
  one.ShowAllLines();
  for (const char* fault :
       {"no_reply@0.02", "late_reply(2500)@0.02", "late_reply(4500)@0.02", "wrong_id@0.02",
        "stale_duplicate@0.02", "answer_of_other_request@0.02", "check_wrong@0.02",
        "truncate(5)@0.02", "noise_before(3)@0.02", "noise_idle(20)@0.02", "merge_two@0.02",
        "late_reply_after_next@0.02", "self_echo@0.02", "foreign_traffic@0.02"}) {
    one.boiler.line().AddFault(fault);
  }
  one.Start();
  one.Advance(4h);
  EXPECT_EQ(one.record.first_wrong_request(), "");
  EXPECT_EQ(one.record.Unfounded(), "");
  EXPECT_GT(one.record.struck(), 5'000);
  EXPECT_GT(one.record.samples(), 15'000);
}

INSTANTIATE_TEST_SUITE_P(Seed, GraphCrowd, ::testing::Range(1, 6));

}  // namespace
}  // namespace tarnlink
