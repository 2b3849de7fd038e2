// What the run does around a protocol that is not TarnLink: silent slaves are passed over without a
// word, nothing to poll ends the run, and a response may be waited for.

#include <gtest/gtest.h>

#include "form/locations.h"
#include "form/monitor_fixture.h"
#include "form/test_protocols.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;
using RunProtocols = MonitorTest;

std::string Asked(const FakeSerialPort& port) {
  std::string text;
  for (const auto& frame : port.frames()) {
    if (!text.empty()) text += ", ";
    text += frame.bytes.substr(6, 4) + " at " +
            std::to_string(frame.time / std::chrono::milliseconds(1));
  }
  return text;
}

class FrameSlave {
 public:
  explicit FrameSlave(FakeWorld& world, std::chrono::milliseconds delay = 5ms) {
    world.on_output = [delay](FakeSerialPort& port, std::string_view request) {
      port.ReceiveIn(delay, "answer to " + std::string(request.substr(6, 4)) + "..");
    };
  }
};

TEST_F(RunProtocols, ASilentSlaveIsPassedOverOncePerIntervalWithoutAWord) {
  Screen({IdAt("0001"), IdAt("0002"), IdAt("0003")});
  PollWith(kZoltProtocol, std::make_unique<FrameProtocol>());
  Start();
  Advance(20);
  for (int interval = 1; interval <= 100; ++interval) {
    const int opens = world.port().opens();
    const int closes = world.port().closes();
    const int pointer = monitor.main.MsgPointer;
    EXPECT_EQ(pointer, (interval - 1) % 4 == 3 ? 0 : (interval - 1) % 4 + 1) << interval;
    // The template that stands between two rounds costs a tick, the others the whole time.
    if (pointer == 0) {
      Advance(20);
      EXPECT_EQ(world.port().opens(), opens);
      continue;
    }
    EXPECT_EQ(State(), "Waiting, port open, timers Comm_Timer tmr_noresponse");
    Advance(3000);
    EXPECT_EQ(world.port().opens(), opens + 1);
    EXPECT_EQ(world.port().closes(), closes + 1);
    EXPECT_EQ(Panel(4), "Communication Running");
    EXPECT_EQ(Panel(6), "Local Connection Active");
  }
  EXPECT_TRUE(world.dialogs().shown().empty());
  EXPECT_EQ(Value(1), "Value 1");
}

TEST_F(RunProtocols, ASilentLocationIsNotAskedTwiceInARound) {
  Screen({IdAt("0001"), IdAt("0002")});
  PollWith(kZoltProtocol, std::make_unique<FrameProtocol>());
  Start();
  Advance(9100);
  EXPECT_EQ(Asked(world.port()), "0001 at 20, 0002 at 3020, 0001 at 6040, 0002 at 9040");
}

TEST_F(RunProtocols, ASilentLocationKeepsItsValueAndTheOthersGoOn) {
  Screen({IdAt("0001"), IdAt("0002")});
  PollWith(kZoltProtocol, std::make_unique<FrameProtocol>());
  FrameSlave slave(world);
  Start();
  Advance(60);
  world.on_output = [](FakeSerialPort& port, std::string_view request) {
    if (request.substr(6, 4) == "0002") port.ReceiveIn(1ms, "second answer...");
  };
  Advance(10'000);
  EXPECT_EQ(Value(1), "answer to 0001..");
  EXPECT_EQ(Value(2), "second answer...");
}

TEST_F(RunProtocols, AResponseIsTakenAtItsThresholdAndTheNextPollFollows) {
  Screen({IdAt("0001"), IdAt("0002")});
  PollWith(kZoltProtocol, std::make_unique<FrameProtocol>());
  Start();
  Advance(20);
  EXPECT_EQ(world.port().RThreshold(), 16);
  Answer("fifteen bytes..");
  EXPECT_EQ(State(), "Waiting, port open, timers Comm_Timer tmr_noresponse");
  Answer("!");
  EXPECT_EQ(Value(1), "fifteen bytes..!");
  EXPECT_EQ(State(), "Ready, port open, timers Comm_Timer");
  Advance(20);
  EXPECT_EQ(Asked(world.port()), "0001 at 20, 0002 at 40");
}

TEST_F(RunProtocols, WithTheSliderAtZeroASilentSlaveIsWaitedForForEver) {
  Screen({IdAt("0001"), IdAt("0002")});
  PollWith(kZoltProtocol, std::make_unique<FrameProtocol>());
  SetTimeout(0);
  Start();
  Advance(3'600'000);
  EXPECT_EQ(Asked(world.port()), "0001 at 20");
  EXPECT_EQ(world.port().opens(), 1);
}

TEST_F(RunProtocols, APortThatCannotBeOpenedAgainEndsTheRunAndIsToldOnce) {
  Screen({IdAt("0001")});
  PollWith(kZoltProtocol, std::make_unique<FrameProtocol>());
  Start();
  Advance(100);
  world.port().MakeBusy();
  ExpectOccupiedBox()
      .While([this] { EXPECT_EQ(State(), "Stopped, port closed, no timers"); })
      .For(10min);
  Advance(600'000);
  EXPECT_EQ(State(), "Stopped, port closed, no timers");
  EXPECT_EQ(Panel(4), "Communication Stopped");
  EXPECT_EQ(Panel(6), "No Connection Active");
}

TEST_F(RunProtocols, AFailingResponseRoutineLeavesTheExchangeToTheWatchdog) {
  Screen({IdAt("0001"), IdAt("0002")});
  PollWith(kZoltProtocol,
           std::make_unique<FrameProtocol>(FrameProtocol::Traits{.response_fails = true}));
  Start();
  Advance(20);
  Answer("sixteen bytes...");
  EXPECT_EQ(State(), "Waiting, port open, timers Comm_Timer tmr_noresponse");
  Advance(3000);
  EXPECT_EQ(Asked(world.port()), "0001 at 20, 0002 at 3020");
  EXPECT_EQ(world.port().InBufferCount(), 0);
  Stop();
}

// --- What is passed over -----------------------------------------------------------------------

TEST_F(RunProtocols, NothingToPollEndsTheRunAtTheFirstTickWithoutAWord) {
  Screen({Flagged(kScanningDisabled, IdAt("0001")), Flagged(kScanningDisabled, IdAt("0002"))});
  PollWith(kZoltProtocol, std::make_unique<FrameProtocol>());
  Start();
  Advance(19);
  EXPECT_EQ(Panel(4), "Communication Running");
  Advance(1);
  EXPECT_FALSE(monitor.main.CommRunning);
  EXPECT_FALSE(monitor.main.Comm->PortOpen());
  EXPECT_FALSE(monitor.main.Comm_Timer->Enabled());
  EXPECT_EQ(Panel(4), "Communication Stopped");
  EXPECT_EQ(Panel(6), "No Connection Active");
  EXPECT_EQ(DisabledEntries(), "");
  EXPECT_EQ(monitor.main.MsgPointer, 0);
  EXPECT_EQ(Asked(world.port()), "");
  EXPECT_TRUE(world.dialogs().shown().empty());
}

TEST_F(RunProtocols, TheTickThatEndsTheRunStillStartsTheWatchdog) {
  Screen({Flagged(kScanningDisabled, IdAt("0001"))});
  PollWith(kZoltProtocol, std::make_unique<FrameProtocol>());
  Start();
  Advance(20);
  EXPECT_EQ(State(), "Stopped, port closed, timers tmr_noresponse");
  Advance(3000);
  EXPECT_EQ(State(), "Stopped, port open, timers tmr_noresponse");
  ExpectOccupiedBox();
  Start();
  EXPECT_EQ(State(), "Stopped, port closed, no timers");
}

TEST_F(RunProtocols, LocationsThatAreNotScannedCostNoTime) {
  Screen({IdAt("0001"), Flagged(kScanningDisabled, IdAt("0002")),
          Flagged(kScanningDisabled, IdAt("0003")), IdAt("0004")});
  PollWith(kZoltProtocol, std::make_unique<FrameProtocol>());
  FrameSlave slave(world);
  Start();
  Advance(60);
  EXPECT_EQ(Asked(world.port()), "0001 at 20, 0004 at 40, 0001 at 60");
}

TEST_F(RunProtocols, OnlyTheExactFlagOneIsPassedOver) {
  Screen({Flagged(1, IdAt("0001")), Flagged(2, IdAt("0002")), Flagged(3, IdAt("0003")),
          Flagged(5, IdAt("0004"))});
  PollWith(kZoltProtocol, std::make_unique<FrameProtocol>());
  FrameSlave slave(world);
  Start();
  Advance(60);
  EXPECT_EQ(Asked(world.port()), "0002 at 20, 0003 at 40, 0004 at 60");
}

TEST_F(RunProtocols, UnscannedLocationsAtTheEndCostTheTemplatesTick) {
  Record();
  Screen({IdAt("0001"), Flagged(kScanningDisabled, IdAt("0002"))});
  PollWith(kZoltProtocol, std::make_unique<FrameProtocol>());
  monitor.options.chk_GeneralLogging(0).Value = true;
  FrameSlave slave(world);
  Start();
  Advance(90);
  EXPECT_EQ(Asked(world.port()), "0001 at 20, 0001 at 60");
  EXPECT_EQ(recorder.TakeNotes(),
            "prepare log\n"
            "request 1\nvalue 1: answer to 0001.. in row 2\nend of row\n"
            "request 1\nvalue 1: answer to 0001.. in row 2\nend of row\n");
}

TEST_F(RunProtocols, ADeletedLocationCostsOneTick) {
  Screen({IdAt("0001"), IdAt("0002"), IdAt("0003")});
  Delete(2);
  PollWith(kZoltProtocol, std::make_unique<FrameProtocol>());
  FrameSlave slave(world);
  Start();
  Advance(60);
  EXPECT_EQ(Asked(world.port()), "0001 at 20, 0003 at 60");
}

TEST_F(RunProtocols, TheRunEndsWhenTheLastScannedLocationIsUnscannedInItsMidst) {
  Screen({IdAt("0001"), IdAt("0002")});
  PollWith(kZoltProtocol, std::make_unique<FrameProtocol>());
  FrameSlave slave(world);
  Start();
  Advance(30);
  monitor.main.Locations[1].ScanFlags = kScanningDisabled;
  monitor.main.Locations[2].ScanFlags = kScanningDisabled;
  Advance(100);
  EXPECT_FALSE(monitor.main.CommRunning);
  EXPECT_EQ(monitor.main.MsgPointer, 0);
  EXPECT_TRUE(world.dialogs().shown().empty());
}

TEST_F(RunProtocols, BackWhereTheStepBeganThereIsNothingToPoll) {
  Screen({IdAt("0001"), IdAt("0002")});
  PollWith(kZoltProtocol, std::make_unique<FrameProtocol>());
  Start();
  Advance(20);
  for (int i = 0; i <= 2; ++i) monitor.main.Locations[i].ScanFlags = kScanningDisabled;
  Answer("sixteen bytes...");
  ASSERT_EQ(monitor.main.MsgPointer, 1);
  Advance(20);
  EXPECT_FALSE(monitor.main.CommRunning);
  EXPECT_EQ(monitor.main.MsgPointer, 0);
}

TEST_F(RunProtocols, FollowersOfABlockArePassedOverWhereTheProtocolSaysSo) {
  Screen({IdAt("0001"), IdAt("0002"), IdAt("0003")});
  monitor.main.Locations[2].RegisterFollower = true;
  FrameSlave slave(world);
  PollWith(kZoltProtocol, std::make_unique<FrameProtocol>());
  Start();
  Advance(70);
  EXPECT_EQ(Asked(world.port()), "0001 at 20, 0002 at 40, 0003 at 60");
  Stop();
  PollWith(kModbusProtocol,
           std::make_unique<FrameProtocol>(FrameProtocol::Traits{.skip_followers = true}));
  Start();
  Advance(60);
  EXPECT_EQ(Asked(world.port()),
            "0001 at 20, 0002 at 40, 0003 at 60, 0001 at 90, 0003 at 110, 0001 at 130");
}

TEST_F(RunProtocols, WithoutAChosenProtocolModbusIsPolled) {
  Screen({IdAt("0001")});
  PollWith(kModbusProtocol, std::make_unique<FrameProtocol>());
  monitor.options.opt_Protocol.Clear();
  FrameSlave slave(world);
  Start();
  Advance(30);
  EXPECT_EQ(Value(1), "answer to 0001..");
}

// --- The pause behind a receive event ----------------------------------------------------------

class RunReceivePause : public MonitorTest {
 protected:
  RunReceivePause() {
    Screen({IdAt("0001"), IdAt("0002")});
    auto pausing = std::make_unique<FrameProtocol>(
        FrameProtocol::Traits{.threshold = 5, .pauses = {80, 40, 20, 10, 5, 1}});
    protocol = pausing.get();
    PollWith(kModbusProtocol, std::move(pausing));
  }

  void ChooseSpeed(int index) { monitor.options.opt_Baudrate.Select(index); }

  FrameProtocol* protocol = nullptr;
};

TEST_F(RunReceivePause, GoesByTheChosenSpeed) {
  const int pauses[] = {80, 40, 20, 10, 5, 1};
  for (int index = 0; index < 6; ++index) {
    ChooseSpeed(index);
    Start();
    Advance(20);
    Answer("begun");
    Advance(pauses[index] - 1);
    EXPECT_TRUE(monitor.main.Comm->InBufferCount() == 5) << index;
    Advance(1);
    EXPECT_EQ(Value(1), "begun") << index;
    Stop();
    monitor.main.RAM_LOC_VAL(1).Text = "";
  }
}

TEST_F(RunReceivePause, TakesWhateverHasArrivedByItsEndInOnePiece) {
  ChooseSpeed(0);
  Start();
  Advance(20);
  AnswerIn(0, "the f");
  AnswerIn(30, "irst answ");
  AnswerIn(79, "er");
  AnswerIn(81, "too late");
  Advance(79);
  EXPECT_EQ(Value(1), "Value 1");
  Advance(1);
  EXPECT_EQ(Value(1), "the first answer");
  EXPECT_EQ(State(), "Waiting, port open, timers Comm_Timer tmr_noresponse");
}

TEST_F(RunReceivePause, TakesOneResponseAndThenWaitsForTheNext) {
  ChooseSpeed(0);
  Start();
  Advance(20);
  Answer("first");
  Advance(80);
  ASSERT_EQ(Value(1), "first");
  Advance(1000);
  EXPECT_EQ(Value(2), "Value 2");
  EXPECT_EQ(State(), "Waiting, port open, timers Comm_Timer tmr_noresponse");
  Answer("second");
  Advance(80);
  EXPECT_EQ(Value(2), "second");
}

TEST_F(RunReceivePause, NoEventComesDuringIt) {
  ChooseSpeed(0);
  Start();
  Advance(20);
  Answer("begun");
  AnswerIn(10, "and much, much more of it");
  Advance(80);
  EXPECT_EQ(protocol->pauses_asked(), 1);
  EXPECT_EQ(Value(1), "begunand much, much more of it");
}

TEST_F(RunReceivePause, StopDuringItLosesTheAnswer) {
  ChooseSpeed(0);
  Start();
  Advance(20);
  Answer("begun");
  Stop();
  Advance(1000);
  EXPECT_EQ(Value(1), "Value 1");
  EXPECT_EQ(State(), "Stopped, port closed, no timers");
}

TEST_F(RunReceivePause, DoesNotReachIntoTheNextRun) {
  ChooseSpeed(0);
  Start();
  Advance(20);
  Answer("begun");
  Stop();
  Start();
  Advance(200);
  EXPECT_EQ(Value(1), "Value 1");
  EXPECT_EQ(State(), "Waiting, port open, timers Comm_Timer tmr_noresponse");
}

TEST_F(RunReceivePause, AnAnswerThatBeganInTimeIsTakenAlthoughThePauseOutlastsTheWatchdog) {
  // The pause stands for a sleep in which nothing else runs.
  ChooseSpeed(0);
  SetTimeout(1);
  Start();
  Advance(20);
  AnswerIn(980, "in time");
  Advance(1060);
  EXPECT_EQ(Value(1), "in time");
  EXPECT_EQ(world.port().opens(), 1);
}

}  // namespace
}  // namespace tarnlink
