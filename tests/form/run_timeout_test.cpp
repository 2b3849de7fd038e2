// The two watch timers: a silent slave, the port that is opened again, and what goes on while a box
// is up.

#include <gtest/gtest.h>

#include "form/monitor_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;
using RunTimeout = MonitorTest;

constexpr const char* kFirstRead = "04 05 30 31 41 30 44 37 03";
constexpr const char* kStopped = "Stopped, port closed, no timers";

TEST_F(RunTimeout, AFirstSilentLocationEndsTheRunWithOneBox) {
  Screen({ByteAt("01A0"), ByteAt("01A1")});
  Start();
  // The box is up when the time is over; nothing has ended yet.
  ExpectSilentSlaveBox().While([this] {
    EXPECT_EQ(Now(), 3020);
    EXPECT_EQ(State(), "Waiting, port open, timers Comm_Timer tmr_noresponse tmr_MsgTimeout");
    EXPECT_EQ(Panel(4), "Communication Running");
    EXPECT_EQ(DisabledEntries(), kAllRunEntries);
  });
  Advance(3020);
  EXPECT_EQ(State(), "Stopped, port closed, timers tmr_noresponse");
  EXPECT_EQ(Panel(4), "Communication Stopped");
  EXPECT_EQ(Panel(6), "Local Connection Active");
  EXPECT_EQ(DisabledEntries(), "mnuCfgCheck mnuSniffer");
  EXPECT_EQ(Value(1), "Value 1");
}

TEST_F(RunTimeout, TheTimeIsThatOfTheSlider) {
  Screen({ByteAt("01A0")});
  for (const int seconds : {1, 2, 4, 5}) {
    SetTimeout(seconds);
    Start();
    const long started = Now();
    ExpectSilentSlaveBox().While(
        [&] { EXPECT_EQ(Now(), started + 20 + seconds * 1000) << seconds; });
    Advance(20 + seconds * 1000);
    Advance(seconds * 1000);  // the port is opened again
    Stop();
    EXPECT_EQ(State(), kStopped);
  }
}

TEST_F(RunTimeout, TheSliderAtZeroIsNoTimeoutAtAll) {
  SetTimeout(0);
  Screen({ByteAt("01A0")});
  Start();
  Advance(3'600'000);
  EXPECT_EQ(Sent(), std::string("20 ms: ") + kFirstRead + "\n");
  EXPECT_EQ(State(), "Waiting, port open, timers Comm_Timer tmr_noresponse tmr_MsgTimeout");
  EXPECT_EQ(world.port().opens(), 1);
  Answer(AnswerOf("01A0", "2A"));
  EXPECT_EQ(Value(1), "2A");
  Stop();
  EXPECT_EQ(State(), kStopped);
}

TEST_F(RunTimeout, TheSliderCountsFromTheNextPollOn) {
  Screen({ByteAt("01A0")});
  Start();
  Advance(20);
  SetTimeout(1);
  Answer(AnswerOf("01A0", "01"));
  Advance(20);
  EXPECT_EQ(monitor.main.tmr_MsgTimeout->Interval(), 1000);
  EXPECT_EQ(monitor.main.tmr_noresponse->Interval(), 3000);
}

TEST_F(RunTimeout, AnAnswerJustInTimeKeepsTheRunGoing) {
  Screen({ByteAt("01A0"), ByteAt("01A1")});
  Start();
  Advance(20);
  AnswerIn(2999, AnswerOf("01A0", "2A"));
  Advance(3000);
  EXPECT_EQ(Value(1), "2A");
  EXPECT_EQ(State(), "Waiting, port open, timers Comm_Timer tmr_noresponse tmr_MsgTimeout");
  EXPECT_EQ(monitor.main.MsgPointer, 2);
}

TEST_F(RunTimeout, EachAnswerStartsTheTimeAnew) {
  Screen({ByteAt("01A0")});
  SlaveHolds({{"01A0", "2A"}}, 2900);
  Start();
  Advance(60'000);
  EXPECT_EQ(Value(1), "2A");
  EXPECT_EQ(Panel(4), "Communication Running");
}

TEST_F(RunTimeout, TooFewBytesAreNoAnswer) {
  Screen({ByteAt("01A0")});
  Start();
  Advance(20);
  Answer(Bytes("04 05 30 31 41 30 32 41 34 41"));  // all but the end byte
  EXPECT_EQ(Value(1), "Value 1");
  ExpectSilentSlaveBox();
  Advance(3000);
  EXPECT_EQ(Panel(4), "Communication Stopped");
  EXPECT_EQ(Value(1), "Value 1");
}

TEST_F(RunTimeout, OpensThePortOnceMoreAfterTheRunHasEnded) {
  Screen({ByteAt("01A0")});
  Start();
  ExpectSilentSlaveBox();
  Advance(3020);
  EXPECT_FALSE(monitor.main.Comm->PortOpen());
  Advance(3000);
  EXPECT_EQ(State(), "Stopped, port open, timers tmr_noresponse");
  EXPECT_EQ(Panel(4), "Communication Stopped");
  Sent();
  Advance(60'000);
  EXPECT_EQ(Sent(), "");
}

TEST_F(RunTimeout, ALaterStartMeetsTheOpenPortAndEndsInOccupied) {
  Screen({ByteAt("01A0")});
  Start();
  ExpectSilentSlaveBox();
  Advance(6020);
  ASSERT_TRUE(monitor.main.Comm->PortOpen());
  ExpectOccupiedBox();
  Start();
  EXPECT_EQ(State(), kStopped);
  EXPECT_EQ(Panel(4), "Communication Stopped");
  EXPECT_EQ(Panel(6), "No Connection Active");
  EXPECT_EQ(DisabledEntries(), "");

  Start();
  EXPECT_EQ(State(), "Ready, port open, timers Comm_Timer");
}

TEST_F(RunTimeout, StopIsTheWayOut) {
  Screen({ByteAt("01A0")});
  Start();
  ExpectSilentSlaveBox();
  Advance(6020);
  Stop();
  EXPECT_EQ(State(), kStopped);
  EXPECT_EQ(Panel(6), "No Connection Active");
  EXPECT_EQ(DisabledEntries(), "");
  Start();
  EXPECT_EQ(State(), "Ready, port open, timers Comm_Timer");
}

TEST_F(RunTimeout, AStopBeforeThePortIsOpenAgainComesTooEarly) {
  Screen({ByteAt("01A0")});
  Start();
  ExpectSilentSlaveBox();
  Advance(3020);
  Stop();
  EXPECT_EQ(State(), "Stopped, port closed, timers tmr_noresponse");
  EXPECT_EQ(DisabledEntries(), "");
  EXPECT_EQ(Panel(6), "Local Connection Active");
  Advance(3000);
  EXPECT_EQ(State(), "Stopped, port open, timers tmr_noresponse");
  Stop();
  EXPECT_EQ(State(), kStopped);
}

TEST_F(RunTimeout, AStartBeforeThePortIsOpenAgainRuns) {
  Screen({ByteAt("01A0")});
  Start();
  ExpectSilentSlaveBox();
  Advance(3020);
  SlaveHolds({{"01A0", "2A"}});
  Start();
  EXPECT_EQ(Panel(4), "Communication Running");
  EXPECT_EQ(DisabledEntries(), kAllRunEntries);
  Advance(60'000);
  EXPECT_EQ(Value(1), "2A");
  EXPECT_EQ(Panel(4), "Communication Running");
}

TEST_F(RunTimeout, ALateAnswerAfterTheRunHasEndedIsStillShownAndStopsTheWatchdog) {
  Screen({ByteAt("01A0"), ByteAt("01A1")});
  Start();
  ExpectSilentSlaveBox();
  Advance(6020);
  ASSERT_TRUE(monitor.main.Comm->PortOpen());
  const int pointer = monitor.main.MsgPointer;
  Answer(AnswerOf("01A0", "2A"));
  EXPECT_EQ(Value(pointer), "2A");
  EXPECT_EQ(State(), "Stopped, port open, no timers");
  Stop();
  EXPECT_EQ(State(), kStopped);
}

TEST_F(RunTimeout, BytesForAProtocolThatIsNotPolledAreThrownAway) {
  Screen({ByteAt("01A0")});
  Start();
  ExpectSilentSlaveBox();
  Advance(6040);
  ASSERT_TRUE(monitor.main.Comm->PortOpen());
  ChooseProtocol(kZoltProtocol);
  Answer("sixteen bytes and more");
  EXPECT_EQ(world.port().InBufferCount(), 0);
  EXPECT_EQ(Value(1), "Value 1");
}

// --- While the box is up -----------------------------------------------------------------------

TEST_F(RunTimeout, ThePollsGoOnBehindTheBoxUntilItIsClosed) {
  Screen({ByteAt("01A0"), ByteAt("01A1")});
  Start();
  // The watchdog has the same time and fires behind the box: the port is opened anew, the next
  // Location asked, and so on every three seconds.
  ExpectSilentSlaveBox().For(10s);
  Advance(3020);
  EXPECT_EQ(Now(), 13'020);
  EXPECT_EQ(State(), "Stopped, port closed, timers tmr_noresponse");
  EXPECT_EQ(Panel(4), "Communication Stopped");
  EXPECT_EQ(DisabledEntries(), "mnuCfgCheck mnuSniffer");
  EXPECT_EQ(Sent(),
            "20 ms: 04 05 30 31 41 30 44 37 03\n"
            "3020 ms: 04 05 30 31 41 31 44 38 03\n"
            "6040 ms: 04 05 30 31 41 30 44 37 03\n"
            "9040 ms: 04 05 30 31 41 31 44 38 03\n"
            "12060 ms: 04 05 30 31 41 30 44 37 03\n");
}

TEST_F(RunTimeout, OneBoxIsUpHoweverLongTheUserIsAway) {
  Screen({ByteAt("01A0"), ByteAt("01A1")});
  Start();
  ExpectSilentSlaveBox().While([this] { EXPECT_EQ(world.dialogs().up(), 1); }).For(2h);
  Advance(3020);
  EXPECT_EQ(world.dialogs().shown().size(), 1U);
  EXPECT_EQ(Panel(4), "Communication Stopped");
}

TEST_F(RunTimeout, ASlaveThatComesBackBehindTheBoxIsPolledUntilItIsClosed) {
  Screen({ByteAt("01A0")});
  Start();
  ExpectSilentSlaveBox().While([this] { SlaveHolds({{"01A0", "2A"}}); }).For(10s);
  Advance(3020);
  EXPECT_EQ(Value(1), "2A");
  EXPECT_EQ(Panel(4), "Communication Stopped");
  EXPECT_FALSE(monitor.main.CommRunning);
  EXPECT_FALSE(monitor.main.Comm_Timer->Enabled());
  EXPECT_FALSE(monitor.main.tmr_MsgTimeout->Enabled());
}

TEST_F(RunTimeout, AnAnswerBehindTheBoxIsShownAndTheRunEndsAllTheSame) {
  SetTimeout(5);
  Screen({ByteAt("01A0")});
  Start();
  ExpectSilentSlaveBox()
      .While([this] {
        // Before the watchdog's turn.
        world.port().Receive(AnswerOf("01A0", "2A"));
      })
      .For(1s);
  Advance(5020);
  EXPECT_FALSE(monitor.main.CommRunning);
  EXPECT_EQ(Panel(4), "Communication Stopped");
}

TEST_F(RunTimeout, AfterTheBoxTheLogIsClosed) {
  Record();
  monitor.options.chk_GeneralLogging(0).Value = true;
  Screen({ByteAt("01A0")});
  Start();
  ExpectSilentSlaveBox().While([this] { EXPECT_TRUE(monitor.main.filelogging); });
  Advance(3020);
  EXPECT_FALSE(monitor.main.filelogging);
  EXPECT_TRUE(recorder.TakeNotes().ends_with("close log\n"));
}

// --- The watchdog ------------------------------------------------------------------------------

TEST_F(RunTimeout, TheWatchdogOpensThePortAnewAndDropsWhatWaited) {
  Screen({ByteAt("01A0"), ByteAt("01A1")});
  Start();
  Advance(20);
  Answer(
      "\x04\x05"
      "01");
  monitor.main.tmr_MsgTimeout->SetEnabled(false);
  Advance(2999);
  EXPECT_EQ(world.port().InBufferCount(), 4);
  EXPECT_EQ(world.port().opens(), 1);
  Sent();
  Advance(1);
  EXPECT_EQ(world.port().InBufferCount(), 0);
  EXPECT_EQ(world.port().opens(), 2);
  EXPECT_EQ(world.port().closes(), 1);
  EXPECT_EQ(Sent(), "3020 ms: 04 05 30 31 41 31 44 38 03\n");
  EXPECT_EQ(Value(1), "Value 1");
}

TEST_F(RunTimeout, TheWatchdogIsStartedAnewByEachPollAndStoppedByEachAnswer) {
  Screen({ByteAt("01A0"), ByteAt("01A1")});
  SlaveHolds({{"01A0", "01"}, {"01A1", "02"}}, 2000);
  Start();
  Advance(30'000);
  EXPECT_EQ(world.port().opens(), 1);
}

TEST_F(RunTimeout, APortThatCannotBeOpenedAgainIsToldOnce) {
  Screen({ByteAt("01A0")});
  Start();
  ExpectSilentSlaveBox();
  Advance(3020);
  world.port().MakeBusy();
  ExpectOccupiedBox();
  Advance(600'000);
  EXPECT_EQ(State(), kStopped);
  EXPECT_EQ(Panel(4), "Communication Stopped");
  EXPECT_EQ(Panel(6), "No Connection Active");
  EXPECT_EQ(DisabledEntries(), "");
  EXPECT_EQ(world.dialogs().shown().size(), 2U);
}

TEST_F(RunTimeout, APortThatCannotBeOpenedAgainBehindTheBoxIsToldOnce) {
  Screen({ByteAt("01A0")});
  Start();
  ExpectSilentSlaveBox().While([this] { world.port().MakeBusy(); }).For(10min);
  ExpectOccupiedBox().While([this] { EXPECT_EQ(world.dialogs().up(), 2); }).For(10min);
  Advance(3020);
  EXPECT_EQ(State(), kStopped);
  Advance(600'000);
  EXPECT_EQ(world.dialogs().shown().size(), 2U);

  world.port().MakeBusy(false);
  Start();
  EXPECT_EQ(State(), "Ready, port open, timers Comm_Timer");
}

TEST_F(RunTimeout, AWatchdogThatCannotOpenThePortEndsTheRunBeforeTheBoxIsUp) {
  Screen({ByteAt("01A0")});
  Start();
  Advance(20);
  monitor.main.tmr_MsgTimeout->SetEnabled(false);
  world.port().MakeBusy();
  ExpectOccupiedBox()
      .While([this] {
        EXPECT_EQ(State(), kStopped);
        EXPECT_EQ(Panel(4), "Communication Stopped");
      })
      .For(10min);
  Advance(3000);
  EXPECT_EQ(State(), kStopped);
  EXPECT_EQ(DisabledEntries(), "");
}

}  // namespace
}  // namespace tarnlink
