// Writes under the TarnLink protocol: the frame, its acknowledgement, and how the scan goes on.

#include <gtest/gtest.h>

#include "form/monitor_fixture.h"

namespace tarnlink {
namespace {

constexpr const char* kWriteOut =
    "Waiting, port open, timers Comm_Timer tmr_noresponse tmr_MsgTimeout";

class RunWrite : public MonitorTest {
 protected:
  std::string FrameOfWrite(int index, const std::string& value) {
    world.port().TakeSent();
    Write(index, value);
    return world.port().TakeSentHex();
  }

  // Of text that no dialog makes.
  std::string FrameOfText(std::string value) {
    world.port().TakeSent();
    monitor.run.SendWrite(2, value);
    return world.port().TakeSentHex();
  }

  // The first Location has been read.
  void Run() {
    Screen({ByteAt("0001"), ByteAt("0010"), WordAt("01A0"), WordAt("FFFF")});
    Start();
    Advance(20);
    Answer(AnswerOf("0001", "A1"));
  }
};

TEST_F(RunWrite, SendsTheValueWithAnUnpaddedSum) {
  Run();
  // 06 + "0010" + "05" add up to 12C.
  EXPECT_EQ(FrameOfWrite(2, "05"), "04 06 30 30 31 30 30 35 32 43 03\n");
  EXPECT_EQ(world.port().RThreshold(), 11);
}

TEST_F(RunWrite, ASumBelowSixteenMakesTheFrameOneByteShorter) {
  Run();
  // 06 + "FFFF" + "00AA" add up to 200, with "00AB" to 201, with "99AA" to 212.
  EXPECT_EQ(FrameOfWrite(4, "00AA"), "04 06 46 46 46 46 30 30 41 41 30 03\n");
  EXPECT_EQ(FrameOfWrite(4, "00AB"), "04 06 46 46 46 46 30 30 41 42 31 03\n");
  EXPECT_EQ(FrameOfWrite(4, "87AA"), "04 06 46 46 46 46 38 37 41 41 46 03\n");
  EXPECT_EQ(FrameOfWrite(4, "88AA"), "04 06 46 46 46 46 38 38 41 41 31 30 03\n");
}

TEST_F(RunWrite, AWordGoesOutWithTheByteCommandAndFourDigits) {
  monitor.main.Locations[3].StorageType = kSignedWord;
  Run();
  monitor.main.Locations[3].StorageType = kSignedWord;
  // 06 + "01A0" + "12AB" add up to 1BE.
  EXPECT_EQ(FrameOfWrite(3, "12AB"), "04 06 30 31 41 30 31 32 41 42 42 45 03\n");
  EXPECT_EQ(world.port().RThreshold(), 11);
}

TEST_F(RunWrite, GoesByTheByteCommandWhateverLocationTheScanStandsOn) {
  Run();
  monitor.main.Locations[2].SelectByte = kLsb;  // a byte also when it is none of memory
  for (const std::int32_t specification : {0, 1}) {
    for (int pointer = 0; pointer <= 4; ++pointer) {
      monitor.main.MsgPointer = pointer;
      monitor.main.Locations[pointer].Specification = specification;
      EXPECT_EQ(FrameOfWrite(2, "05"), "04 06 30 30 31 30 30 35 32 43 03\n") << pointer;
      EXPECT_EQ(world.port().RThreshold(), 11);
    }
  }
}

TEST_F(RunWrite, PutsShortValuesToTheRightAndSendsLongOnesWhole) {
  Run();
  EXPECT_EQ(FrameOfText("5"), "04 06 30 30 31 30 20 35 31 43 03\n");
  EXPECT_EQ(FrameOfText(""), "04 06 30 30 31 30 20 20 37 03\n");
  EXPECT_EQ(FrameOfText("12345"), "04 06 30 30 31 30 31 32 33 34 35 43 36 03\n");
  EXPECT_EQ(FrameOfText("xy"), "04 06 30 30 31 30 78 79 42 38 03\n");
}

TEST_F(RunWrite, ThrowsAwayWhatWaitsAndArmsTheTimeout) {
  Run();
  Advance(20);
  Answer(
      "\x04\x05"
      "0010");
  SetTimeout(2);
  Write(2, "05");
  EXPECT_EQ(world.port().InBufferCount(), 0);
  EXPECT_EQ(monitor.main.tmr_MsgTimeout->Interval(), 2000);
  EXPECT_EQ(State(), kWriteOut);
  EXPECT_TRUE(monitor.main.write_message);
  EXPECT_EQ(monitor.main.MsgPointer, 1);
}

TEST_F(RunWrite, SendsNoPollBeforeTheAcknowledgement) {
  Run();
  Write(2, "05");
  Sent();
  Advance(1000);
  EXPECT_EQ(Sent(), "");
}

TEST_F(RunWrite, TheAcknowledgementIsShownAtTheLocationBefore) {
  Run();
  Write(3, "05");
  AnswerIn(5, Bytes("04 06 30 31 41 30 30 35 33 44 03"));
  Advance(5);
  // The first event only ends the write; the bytes are read by the second.
  EXPECT_FALSE(monitor.main.write_message);
  EXPECT_EQ(world.port().InBufferCount(), 11);
  EXPECT_EQ(Value(2), "Value 2");
  EXPECT_EQ(State(), kWriteOut);
  Advance(1);
  EXPECT_EQ(Value(2), "5");
  EXPECT_EQ(Value(3), "Value 3");
  EXPECT_EQ(State(), "Ready, port open, timers Comm_Timer");
}

TEST_F(RunWrite, TheScanGoesOnWithTheWrittenLocation) {
  Run();
  Write(3, "0005");
  Sent();
  AnswerIn(5, Bytes("04 06 30 31 41 30 30 35 33 44 03"));
  Advance(20);
  EXPECT_EQ(Sent(), "40 ms: 04 01 30 31 41 30 44 33 03\n");
  Answer(AnswerOf("01A0", "0005"));
  EXPECT_EQ(Value(3), "5");
  Advance(20);
  EXPECT_EQ(Panel(5), "at FFFF: 4");
}

TEST_F(RunWrite, TheAcknowledgedValueIsNotCompared) {
  Run();
  Write(3, "05");
  Answer(Bytes("04 06 30 31 41 30 46 46 33 44 03"));
  Advance(1);
  EXPECT_EQ(Value(2), "FF");
  EXPECT_TRUE(world.dialogs().shown().empty());
}

TEST_F(RunWrite, ToTheFirstLocationIsAcknowledgedAtTheHiddenTemplate) {
  Run();
  const std::int32_t row = monitor.main.DDERowCounter;
  Write(1, "05");
  EXPECT_EQ(monitor.main.MsgPointer, 0);
  Sent();
  AnswerIn(1, Bytes("04 06 30 30 30 31 30 35 33 44 03"));
  Advance(20);
  EXPECT_EQ(Value(0), "5");
  EXPECT_FALSE(monitor.main.RAM_LOC_VAL(0).Visible.get());
  EXPECT_EQ(monitor.main.DDERowCounter, row);
  EXPECT_EQ(Sent(), "40 ms: 04 05 30 30 30 31 43 36 03\n");
  EXPECT_EQ(Panel(5), "at 0001: 1");
}

TEST_F(RunWrite, ToTheLastLocationGoesOnThereAndThenEndsTheRound) {
  Run();
  Write(4, "0005");
  Answer(Bytes("04 06 46 46 46 46 30 35 33 44 03"));
  Advance(20);
  EXPECT_EQ(monitor.main.MsgPointer, 4);
  Answer(AnswerOf("FFFF", "0005"));
  EXPECT_EQ(monitor.main.MsgPointer, 0);
  EXPECT_EQ(monitor.main.DDERowCounter, 3);
}

TEST_F(RunWrite, WithoutAnAcknowledgementTheSlaveIsNotResponding) {
  Run();
  Write(2, "05");
  ExpectSilentSlaveBox();
  Advance(3000);
  EXPECT_EQ(Panel(4), "Communication Stopped");
}

TEST_F(RunWrite, AnUnfinishedAcknowledgementTimesOutAndTheNextRunReadsAgain) {
  Run();
  Write(2, "05");
  Answer(Bytes("04 06 30 30 31 30 30 35 33"));
  ExpectSilentSlaveBox();
  Advance(3000);
  EXPECT_TRUE(monitor.main.write_message);
  Advance(3000);
  Stop();
  Start();
  Advance(20);
  // The write that was never acknowledged still takes the first event.
  AnswerIn(5, AnswerOf("0001", "2A"));
  Advance(5);
  EXPECT_EQ(Value(1), "A1");
  Advance(1);
  EXPECT_EQ(Value(1), "2A");
}

TEST_F(RunWrite, TheAnswerOfThePollUnderWayIsTakenForTheAcknowledgement) {
  Run();
  Advance(20);  // Location 2 is asked
  AnswerIn(10, AnswerOf("0010", "2B"));
  Write(4, "0005");
  Advance(11);
  EXPECT_EQ(Value(2), "Value 2");
  EXPECT_EQ(Value(3), "2B");
  EXPECT_EQ(State(), "Ready, port open, timers Comm_Timer");
}

TEST_F(RunWrite, ManyWritesInARowAllGoOut) {
  Run();
  for (int i = 0; i < 1000; ++i) {
    Write(2, "05");
    Answer(Bytes("04 06 30 30 31 30 30 35 32 43 03"));
    Advance(1);
    ASSERT_EQ(State(), "Ready, port open, timers Comm_Timer") << i;
  }
  EXPECT_EQ(world.port().frames().size(), 1001U);
}

}  // namespace
}  // namespace tarnlink
