// A device that vanishes: told once, the run ended, and as good as new when it is back.

#include <gtest/gtest.h>

#include "form/monitor_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr const char* kStopped = "Stopped, port closed, no timers";

class RunDevice : public MonitorTest {
 protected:
  RunDevice() { Screen({ByteAt("0001"), ByteAt("0002")}); }

  void ExpectAllQuiet() {
    EXPECT_EQ(State(), kStopped);
    EXPECT_EQ(Panel(4), "Communication Stopped");
    EXPECT_EQ(Panel(6), "No Connection Active");
    EXPECT_EQ(DisabledEntries(), "");
    const std::size_t shown = world.dialogs().shown().size();
    Sent();
    Advance(600'000);
    EXPECT_EQ(world.dialogs().shown().size(), shown);
    EXPECT_EQ(Sent(), "");
    EXPECT_EQ(State(), kStopped);
  }

  void ExpectStartWorksOnceItIsBack() {
    ExpectOccupiedBox();
    Start();
    EXPECT_EQ(State(), kStopped);
    world.port().PlugIn();
    SlaveHolds({{"0001", "A1"}, {"0002", "A2"}});
    Start();
    Advance(100);
    EXPECT_EQ(Value(2), "A2");
    EXPECT_EQ(Panel(4), "Communication Running");
    EXPECT_EQ(Panel(6), "Local Connection Active");
  }
};

TEST_F(RunDevice, VanishingWhileAnAnswerIsOutEndsTheRunBeforeItIsTold) {
  Start();
  Advance(30);
  world.port().Unplug();
  world.dialogs()
      .ExpectMessageBox({.text = "Communication port 1 is gone. Communication is stopped.",
                         .title = "Communication Error",
                         .icon = Icon::kCritical,
                         .detail = "COM1 was unplugged."})
      .While([this] {
        EXPECT_EQ(State(), kStopped);
        EXPECT_EQ(Panel(4), "Communication Stopped");
        EXPECT_EQ(Panel(6), "No Connection Active");
        EXPECT_EQ(DisabledEntries(), "");
      })
      .For(10min);
  Advance(1);
  ExpectAllQuiet();
  ExpectStartWorksOnceItIsBack();
}

TEST_F(RunDevice, VanishingBetweenTwoPollsEndsTheRun) {
  Start();
  Advance(20);
  Answer(AnswerOf("0001", "A1"));
  world.port().Unplug();
  ExpectDeviceGoneBox();
  Advance(1);
  ExpectAllQuiet();
  ExpectStartWorksOnceItIsBack();
}

TEST_F(RunDevice, VanishingInTheMidstOfAnAnswerEndsTheRun) {
  Start();
  Advance(20);
  Answer(
      "\x04\x05"
      "00");
  world.port().Unplug();
  ExpectDeviceGoneBox();
  Advance(1);
  EXPECT_EQ(Value(1), "Value 1");
  ExpectAllQuiet();
}

TEST_F(RunDevice, VanishingDuringTheRequestIsToldOnce) {
  world.on_output = [](FakeSerialPort& port, std::string_view) { port.Unplug(); };
  Start();
  ExpectDeviceGoneBox().For(10min);
  Advance(20);
  ExpectAllQuiet();
}

TEST_F(RunDevice, VanishingJustAheadOfAPollIsToldOnce) {
  // Ahead of the tick of the same moment, so that the poll meets a port that has closed itself
  // before the loss has been told.
  world.time().Post(20ms, [this] { world.port().Unplug(); });
  Start();
  ExpectDeviceGoneBox().For(10min);
  Advance(20);
  ExpectAllQuiet();
}

TEST_F(RunDevice, VanishingJustAheadOfTheWatchdogIsToldOnce) {
  Start();
  world.time().Post(3020ms, [this] { world.port().Unplug(); });
  Advance(20);
  monitor.main.tmr_MsgTimeout->SetEnabled(false);
  ExpectDeviceGoneBox().For(10min);
  Advance(3000);
  ExpectAllQuiet();
}

TEST_F(RunDevice, VanishingBeforeTheFirstPollEndsTheRun) {
  Start();
  world.port().Unplug();
  ExpectDeviceGoneBox();
  Advance(1);
  ExpectAllQuiet();
}

TEST_F(RunDevice, VanishingWhileStoppedIsNotToldButByTheNextStart) {
  Start();
  Stop();
  world.port().Unplug();
  Advance(60'000);
  EXPECT_TRUE(world.dialogs().shown().empty());
  ExpectStartWorksOnceItIsBack();
}

TEST_F(RunDevice, VanishingWhileThePortIsOpenAfterASilentSlaveIsToldOnce) {
  Start();
  ExpectSilentSlaveBox();
  Advance(6040);
  ASSERT_EQ(State(), "Stopped, port open, timers tmr_noresponse");
  world.port().Unplug();
  ExpectDeviceGoneBox();
  Advance(1);
  ExpectAllQuiet();
  ExpectStartWorksOnceItIsBack();
}

TEST_F(RunDevice, VanishingAfterASilentSlaveWhileThePortIsClosedIsToldByTheWatchdogOnce) {
  Start();
  ExpectSilentSlaveBox();
  Advance(3020);
  ASSERT_FALSE(monitor.main.Comm->PortOpen());
  world.port().Unplug();
  ExpectOccupiedBox();
  Advance(600'000);
  ExpectAllQuiet();
}

TEST_F(RunDevice, VanishingBehindTheSilentSlaveBoxIsToldOnce) {
  Start();
  ExpectSilentSlaveBox()
      .While([this] { world.time().Post(1s, [this] { world.port().Unplug(); }); })
      .For(10min);
  ExpectDeviceGoneBox().For(10min);
  Advance(3020);
  EXPECT_EQ(State(), kStopped);
  EXPECT_EQ(DisabledEntries(), "");
  Advance(600'000);
  EXPECT_EQ(world.dialogs().shown().size(), 2U);
  ExpectStartWorksOnceItIsBack();
}

TEST_F(RunDevice, VanishingBehindALineErrorBoxIsToldOnce) {
  Start();
  Advance(20);
  world.dialogs()
      .ExpectMessageBox("Framing Error", "Communication Error")
      .While([this] { world.port().Unplug(); })
      .For(10min);
  ExpectDeviceGoneBox();
  world.port().RaiseLineError(kCommFrame);
  world.Settle();
  ExpectAllQuiet();
  ExpectStartWorksOnceItIsBack();
}

TEST_F(RunDevice, VanishingBehindAnOccupiedBoxLeavesTheNextStartWorking) {
  Start();
  ExpectSilentSlaveBox();
  Advance(6040);
  ASSERT_TRUE(monitor.main.Comm->PortOpen());
  ExpectOccupiedBox().While([this] { world.port().Unplug(); }).For(10min);
  ExpectDeviceGoneBox();
  Start();
  EXPECT_EQ(State(), kStopped);
  ExpectStartWorksOnceItIsBack();
}

TEST_F(RunDevice, BackBehindTheBoxIsReadyForTheNextStart) {
  Start();
  Advance(20);
  world.port().Unplug();
  ExpectDeviceGoneBox().While([this] { world.port().PlugIn(); });
  Advance(1);
  EXPECT_EQ(State(), kStopped);
  Start();
  EXPECT_EQ(State(), "Ready, port open, timers Comm_Timer");
}

TEST_F(RunDevice, ALooseCableIsToldOnceForEachLoss) {
  for (int i = 0; i < 100; ++i) {
    Start();
    Advance(25);
    world.port().Unplug();
    ExpectDeviceGoneBox().For(5s);
    Advance(1);
    EXPECT_EQ(State(), kStopped);
    world.port().PlugIn();
  }
  EXPECT_EQ(world.dialogs().shown().size(), 100U);
}

TEST_F(RunDevice, OnceItIsBackASilentSlaveIsAsEver) {
  Start();
  Advance(20);
  world.port().Unplug();
  ExpectDeviceGoneBox();
  Advance(1);
  world.port().PlugIn();
  Start();
  ExpectSilentSlaveBox();
  Advance(3040);
  EXPECT_EQ(State(), "Stopped, port closed, timers tmr_noresponse");
  Advance(3000);
  EXPECT_EQ(State(), "Stopped, port open, timers tmr_noresponse");
}

TEST_F(RunDevice, OnceItIsBackTheWatchdogTellsOfABusyPortAsEver) {
  Start();
  Advance(20);
  world.port().Unplug();
  ExpectDeviceGoneBox();
  Advance(1);
  world.port().PlugIn();
  Start();
  ExpectSilentSlaveBox();
  Advance(3040);
  world.port().MakeBusy();
  ExpectOccupiedBox();
  Advance(600'000);
  EXPECT_EQ(State(), kStopped);
}

TEST_F(RunDevice, NamesThePortThatIsGone) {
  world.port().SetCommPort(4);
  Start();
  Advance(20);
  world.port().Unplug();
  ExpectDeviceGoneBox(4);
  Advance(1);
}

TEST_F(RunDevice, ResetsTheSpreadsheetRow) {
  SlaveHolds({{"0001", "A1"}, {"0002", "A2"}});
  Start();
  Advance(200);
  EXPECT_GT(monitor.main.DDERowCounter, 2);
  world.port().Unplug();
  ExpectDeviceGoneBox();
  Advance(1);
  EXPECT_EQ(monitor.main.DDERowCounter, 2);
}

}  // namespace
}  // namespace tarnlink
