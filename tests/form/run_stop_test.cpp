// The Stop button, what it leaves, and what else ends a run.

#include <gtest/gtest.h>

#include "form/monitor_fixture.h"

namespace tarnlink {
namespace {

using RunStop = MonitorTest;

constexpr const char* kStopped = "Stopped, port closed, no timers";

TEST_F(RunStop, ClosesThePortAndStopsAllTimers) {
  Screen({ByteAt("01A0")});
  Start();
  Advance(20);
  Stop();
  EXPECT_EQ(State(), kStopped);
  EXPECT_EQ(Panel(4), "Communication Stopped");
  EXPECT_EQ(Panel(6), "No Connection Active");
  EXPECT_EQ(DisabledEntries(), "");
  Sent();
  Advance(600'000);
  EXPECT_EQ(Sent(), "");
  EXPECT_EQ(world.port().opens(), 1);
}

TEST_F(RunStop, BetweenTwoPollsEndsTheSame) {
  Screen({ByteAt("01A0")});
  Start();
  Stop();
  EXPECT_EQ(State(), kStopped);
}

TEST_F(RunStop, KeepsTableValuesAndPointerAndResetsTheRow) {
  Screen({ByteAt("01A0"), ByteAt("01A1")});
  SlaveHolds({{"01A0", "11"}, {"01A1", "22"}});
  Start();
  Advance(60);
  EXPECT_EQ(monitor.main.DDERowCounter, 3);
  Stop();
  EXPECT_EQ(monitor.main.DDERowCounter, 2);
  EXPECT_EQ(monitor.main.MsgPointer, 1);
  EXPECT_EQ(monitor.main.MaxId, 2);
  EXPECT_EQ(monitor.main.Locations[2].Address, "01A1");
  EXPECT_EQ(Value(1), "11");
  EXPECT_EQ(Value(2), "22");
}

TEST_F(RunStop, WhileStoppedSaysSoAndChangesNothingElse) {
  Screen({ByteAt("01A0")});
  Stop();
  EXPECT_EQ(State(), kStopped);
  EXPECT_EQ(Panel(4), "Communication Stopped");
  EXPECT_EQ(Panel(6), "");
  EXPECT_EQ(world.port().closes(), 0);
}

TEST_F(RunStop, LosesAnAnswerThatComesAfterwards) {
  Screen({ByteAt("01A0")});
  Start();
  Advance(20);
  AnswerIn(5, AnswerOf("01A0", "2A"));
  Stop();
  Advance(1000);
  EXPECT_EQ(Value(1), "Value 1");
}

TEST_F(RunStop, ANewRunDoesNotTakeBytesOfTheOldOne) {
  Screen({ByteAt("01A0")});
  Start();
  Advance(20);
  Answer(
      "\x04\x05"
      "01A0");
  Stop();
  Start();
  EXPECT_EQ(world.port().InBufferCount(), 0);
  Advance(20);
  Answer(AnswerOf("01A0", "2A"));
  EXPECT_EQ(Value(1), "2A");
}

TEST_F(RunStop, OnAClosedPortLeavesTheWatchdogAsItIs) {
  Screen({ByteAt("01A0")});
  Start();
  Advance(20);
  monitor.main.Comm->SetPortOpen(false);
  Stop();
  EXPECT_EQ(State(), "Stopped, port closed, timers tmr_noresponse");
  EXPECT_EQ(Panel(6), "Local Connection Active");
}

TEST_F(RunStop, FromElsewhereDoesAllButResetTheRow) {
  Screen({ByteAt("01A0")});
  SlaveHolds({{"01A0", "11"}});
  Start();
  Advance(60);
  const int row = monitor.main.DDERowCounter;
  ASSERT_GT(row, 2);
  monitor.run.StopZOLTCommunication();
  EXPECT_EQ(State(), kStopped);
  EXPECT_EQ(Panel(4), "Communication Stopped");
  EXPECT_EQ(Panel(6), "No Connection Active");
  EXPECT_EQ(DisabledEntries(), "");
  EXPECT_EQ(monitor.main.DDERowCounter, row);
}

TEST_F(RunStop, ARunTimeErrorAtTheTickSaysItsCodeAndStops) {
  Screen({ByteAt("01A0")});
  Start();
  world.faults().Break("Port.Output", RunTimeError(kDeviceIo, "The line is dead."));
  ExpectCritical(
      "Internal System Error # 57 occured, please contact distributor. Communication is stopped",
      "Internal System Error")
      .For(std::chrono::minutes(1));
  Advance(20);
  EXPECT_EQ(State(), kStopped);
  EXPECT_EQ(Panel(4), "Communication Stopped");
  EXPECT_EQ(Panel(6), "No Connection Active");
  EXPECT_EQ(DisabledEntries(), "");
  Advance(60'000);
}

TEST_F(RunStop, OpeningAnotherScreenEndsTheRun) {
  Screen({ByteAt("01A0"), ByteAt("01A1")});
  world.disk().Put("/home/user/other.wcr",
                   "0\r\n\"L\",0,1,\"0007\",0,\"New\",\"x\",0,0,0,0,\"0\",1,0,0,0,0,\"0\"\r\n");
  Start();
  Advance(20);
  Sent();
  monitor.screen.OpenTarnLinkFileBuildScreen("/home/user/other.wcr");
  EXPECT_EQ(State(), kStopped);
  EXPECT_EQ(monitor.main.MsgPointer, 0);
  EXPECT_EQ(monitor.main.MaxId, 1);
  EXPECT_EQ(DisabledEntries(), "");
  Advance(60'000);
  EXPECT_EQ(Sent(), "");
  EXPECT_EQ(world.port().opens(), 1);
  Start();
  Advance(20);
  EXPECT_EQ(monitor.main.Locations[1].Alias, "New");
  EXPECT_EQ(Panel(5), "New: 1");
}

TEST_F(RunStop, OpeningAnotherScreenAfterASilentSlaveClosesThePortForGood) {
  Screen({ByteAt("01A0")});
  world.disk().Put("/home/user/other.wcr",
                   "0\r\n\"L\",0,1,\"0007\",0,\"New\",\"x\",0,0,0,0,\"0\",1,0,0,0,0,\"0\"\r\n");
  Start();
  ExpectSilentSlaveBox();
  Advance(10'000);
  ASSERT_TRUE(monitor.main.Comm->PortOpen());
  monitor.screen.OpenTarnLinkFileBuildScreen("/home/user/other.wcr");
  EXPECT_EQ(State(), kStopped);
  Advance(60'000);
  Start();
  EXPECT_EQ(State(), "Ready, port open, timers Comm_Timer");
}

TEST_F(RunStop, ANewScreenEndsTheRun) {
  Screen({ByteAt("01A0")});
  Start();
  Advance(20);
  monitor.screen.M_NewScreen();
  EXPECT_EQ(State(), kStopped);
  EXPECT_EQ(Panel(4), "Communication Stopped");
  EXPECT_EQ(monitor.main.MsgPointer, 0);
  Start();
  EXPECT_EQ(State(), kStopped);
}

TEST_F(RunStop, LeavingTheProgramDuringARunClosesThePort) {
  Screen({ByteAt("01A0")});
  Start();
  Advance(20);
  monitor.start.M_exit();
  EXPECT_FALSE(monitor.main.Comm->PortOpen());
  EXPECT_FALSE(monitor.main.tmr_noresponse->Enabled());
}

}  // namespace
}  // namespace tarnlink
