// Whole exchanges under the ZOLT protocol with the simulated boiler, in virtual time.

#include <gtest/gtest.h>

#include <string>

#include "form/boiler_frames.h"
#include "form/boiler_on_line.h"
#include "form/locations.h"
#include "form/monitor_fixture.h"
#include "simulator/memory_layout.h"

namespace tarnlink {
namespace {

constexpr const char* kWaiting = "Waiting, port open, timers Comm_Timer tmr_noresponse";

// The boiler answers to the slave addresses 0 and 3, after 5 ms.
class RunZolt : public MonitorTest {
 protected:
  RunZolt() {
    Record();
    ChooseProtocol(kZoltProtocol);
    boiler.controller().WriteByte(0xF180, 0x5A);
    boiler.controller().WriteWord(0xF190, 0x8001);
  }

  int Held(std::string_view item) { return boiler.controller().Value(boiler::Item(item)); }

  void Log() { monitor.options.chk_GeneralLogging(0).Value = true; }

  BoilerOnLine boiler{
      world,
      {.protocol = "zolt", .slave = {.addresses = "0,3"}, .line = {.answer_delay_us = 5'000}}};
};

// --- Rounds ------------------------------------------------------------------------------------

TEST_F(RunZolt, ReadsDataIdsAndMemoryOfTwoSlavesInTurn) {
  Location word = WordAt("F190", kDecimal);
  word.StorageType = kSignedWord;
  Screen({IdAt("003D"), OfSlave("3", ByteAt("F180")), IdAt("14D9", "3"), OfSlave("0", word)});
  Start();
  Advance(90);
  EXPECT_EQ(Sent(), At(0x01, "0003D0000279E", 20) + At(0x07, "3FFABF180B4CA", 40) +
                        At(0x01, "314D900003DEE", 60) + At(0x07, "0FFABF190AABF", 80));
  EXPECT_EQ(Value(1), "0502");
  EXPECT_EQ(Value(2), "5A");
  EXPECT_EQ(monitor.main.Locations[3].RawValue, Held("software_number") + 3);
  EXPECT_EQ(Value(4), "-32767");
  EXPECT_EQ(Panel(5), "4: at F190");
  EXPECT_EQ(State(), "Ready, port open, timers Comm_Timer");
}

TEST_F(RunZolt, AsksInTheNextRoundWithTheValueOfTheLast) {
  Screen({IdAt("003D")});
  Start();
  Advance(50);
  EXPECT_EQ(Sent(), At(0x01, "0003D0000279E", 20) + At(0x01, "0003D0502EC2C", 40));
}

TEST_F(RunZolt, TakesAnAnswerWhenItsSixteenBytesAreThere) {
  Screen({IdAt("003D")});
  boiler.line().AddFault("split(2)#1");
  Start();
  Advance(30);
  EXPECT_EQ(Value(1), "Value 1");
  EXPECT_EQ(State(), kWaiting);
  Advance(10);
  EXPECT_EQ(Value(1), "0502");
}

TEST_F(RunZolt, EveryRoundIsARowOfTheLog) {
  Log();
  Screen({IdAt("003D"), OfSlave("3", ByteAt("F180"))});
  Start();
  Advance(90);
  EXPECT_EQ(recorder.TakeNotes(),
            "prepare log\n"
            "request 1\nvalue 1: 0502 in row 2\nrequest 2\nvalue 2: 5A in row 2\nend of row\n"
            "request 1\nvalue 1: 0502 in row 3\nrequest 2\nvalue 2: 5A in row 3\nend of row\n");
  EXPECT_EQ(monitor.main.DDERowCounter, 4);
  EXPECT_EQ(monitor.main.MsgPointer, 0);
}

TEST_F(RunZolt, ARoundThatEndsOnAHoleIsARowOfTheLogButNotOfTheSheet) {
  Log();
  Screen({IdAt("003D"), IdAt("0001")});
  Delete(2);
  Start();
  Advance(90);
  // The hole costs a tick and so does the template behind it.
  EXPECT_EQ(Sent(), At(0x01, "0003D0000279E", 20) + At(0x01, "0003D0502EC2C", 80));
  EXPECT_EQ(recorder.TakeNotes(),
            "prepare log\n"
            "request 1\nvalue 1: 0502 in row 2\nrequest 2\nend of row\nrequest 0\n"
            "request 1\nvalue 1: 0502 in row 2\n");
}

// --- Scan flags --------------------------------------------------------------------------------

TEST_F(RunZolt, PassesOverWhatIsNotScannedWithoutLosingTime) {
  Screen({IdAt("003D"), Flagged(1, ByteAt("F180")), Flagged(1, IdAt("14D9")), ByteAt("F180")});
  Start();
  Advance(70);
  EXPECT_EQ(Sent(), At(0x01, "0003D0000279E", 20) + At(0x07, "0FFABF180998E", 40) +
                        At(0x01, "0003D0502EC2C", 60));
  EXPECT_EQ(Value(2), "Value 2");
}

TEST_F(RunZolt, WithNothingToScanTheRunStopsWithoutAWord) {
  Screen({Flagged(1, IdAt("003D")), Flagged(1, ByteAt("F180"))});
  Start();
  Advance(20);
  EXPECT_EQ(Sent(), "");
  EXPECT_EQ(State(), "Stopped, port closed, timers tmr_noresponse");
  EXPECT_EQ(Panel(4), "Communication Stopped");
  EXPECT_EQ(monitor.main.MsgPointer, 0);
  EXPECT_TRUE(world.dialogs().shown().empty());
}

TEST_F(RunZolt, WritesAContinuousValueInEveryRound) {
  Screen({Flagged(2, IdAt("056D", "3", 5)), IdAt("003D")});
  monitor.main.Locations[1].RawValue = 0x3C00;
  Start();
  Advance(30);
  EXPECT_EQ(Sent(), At(0x85, "3056D3C0063F9", 20));
  EXPECT_EQ(Held("flow_setpoint"), 60);
  EXPECT_EQ(Value(1), "3C00");
  boiler.controller().Set(boiler::Item("flow_setpoint"), 40);
  Advance(40);
  EXPECT_EQ(Sent(), At(0x01, "0003D0000279E", 40) + At(0x85, "3056D3C0063F9", 60));
  EXPECT_EQ(Held("flow_setpoint"), 60);
}

// --- What goes wrong ---------------------------------------------------------------------------

TEST_F(RunZolt, ASilentSlaveIsPassedOverOncePerIntervalWithoutAWord) {
  Screen({IdAt("003D"), IdAt("003D", "7"), OfSlave("3", ByteAt("F180"))});
  Start();
  Advance(50);
  EXPECT_EQ(State(), kWaiting);
  Advance(2989);
  EXPECT_EQ(world.port().opens(), 1);
  Advance(61);
  EXPECT_EQ(Sent(), At(0x01, "0003D0000279E", 20) + At(0x01, "7003D00009635", 40) +
                        At(0x07, "3FFABF180B4CA", 3040) + At(0x01, "0003D0502EC2C", 3060) +
                        At(0x01, "7003D00009635", 3080));
  EXPECT_EQ(world.port().opens(), 2);
  EXPECT_EQ(world.port().closes(), 1);

  Advance(60'000);
  EXPECT_GE(world.port().opens(), 20);
  EXPECT_TRUE(world.dialogs().shown().empty());
  EXPECT_EQ(Value(1), "0502");
  EXPECT_EQ(Value(2), "Value 2");
  EXPECT_EQ(Value(3), "5A");
  EXPECT_EQ(Panel(4), "Communication Running");
  EXPECT_EQ(DisabledEntries(), kAllRunEntries);
}

TEST_F(RunZolt, AnUnknownDataIdCanNotBeReadAndTheScanGoesOn) {
  Log();
  Screen({IdAt("0BAD"), IdAt("003D")});
  Start();
  Advance(50);
  EXPECT_EQ(Value(1), "can not read");
  EXPECT_EQ(Value(2), "0502");
  EXPECT_EQ(recorder.TakeNotes(),
            "prepare log\nrequest 1\nunreadable 1\n"
            "request 2\nvalue 2: 0502 in row 2\nend of row\n");
}

TEST_F(RunZolt, AnAnswerThatIsRefusedOrDamagedLeavesTheOldValue) {
  Screen({IdAt("003D"), ByteAt("F180")});
  Start();
  Advance(90);
  for (const std::string fault : {"check_wrong", "refused(2)", "refused(4)"}) {
    boiler.line().AddFault(fault + "#2");
    boiler.controller().WriteByte(0xF180, 0x66);
    Advance(40);
    EXPECT_EQ(Value(1), "0502") << fault;
    EXPECT_EQ(Value(2), "5A") << fault;
    EXPECT_EQ(State(), "Ready, port open, timers Comm_Timer");
    boiler.controller().WriteByte(0xF180, 0x5A);
    Advance(100);
  }
  EXPECT_EQ(world.port().opens(), 1);
}

TEST_F(RunZolt, AnAnswerOfAnotherIdIsWaitedPastUntilTheWatchdog) {
  Screen({IdAt("003D"), IdAt("14D9")});
  boiler.line().AddFault("wrong_id#1");
  Start();
  Advance(30);
  EXPECT_EQ(State(), kWaiting);
  EXPECT_EQ(Value(1), "Value 1");
  Advance(2994);
  EXPECT_EQ(world.port().opens(), 1);
  Advance(1);
  EXPECT_EQ(world.port().opens(), 2);
  Advance(25);
  EXPECT_EQ(Sent(), At(0x01, "0003D0000279E", 20) + At(0x01, "014D9000010AA", 3040));
  EXPECT_TRUE(world.dialogs().shown().empty());
}

TEST_F(RunZolt, TheRightAnswerBehindAForeignOneIsTaken) {
  Screen({IdAt("003D")});
  SlaveIsSilent();
  Start();
  Advance(20);
  Answer(Frame(0x11, "1003DFFFFEBC1"));
  EXPECT_EQ(State(), kWaiting);
  Answer(Frame(0x11, "0003D050278BA"));
  EXPECT_EQ(Value(1), "0502");
  EXPECT_EQ(State(), "Ready, port open, timers Comm_Timer");
}

// --- Writes ------------------------------------------------------------------------------------

TEST_F(RunZolt, AWrittenDataIdShowsADashAndIsReadBack) {
  Location setpoint = Selected(kMsb, IdAt("056D", "0", 5));
  setpoint.Representation = kDecimal;
  Screen({IdAt("003D"), setpoint, ByteAt("F180")});
  Start();
  Advance(30);
  Sent();
  Write(2, "41");
  Advance(10);
  EXPECT_EQ(Value(2), "-");
  EXPECT_EQ(Held("flow_setpoint"), 65);
  Advance(20);
  EXPECT_EQ(Sent(), At(0x85, "0056D4100A9F8", 30) + At(0x05, "0056D00416CE8", 50));
  EXPECT_EQ(Value(2), "65");
  Advance(20);
  EXPECT_EQ(Value(3), "5A");
}

TEST_F(RunZolt, AWordOfMemoryIsWrittenInTwoBytesAlsoAcrossPages) {
  Screen({WordAt("F1FF"), IdAt("003D")});
  Start();
  Advance(30);
  Sent();
  Write(1, "1234");
  Advance(30);
  EXPECT_EQ(Sent(), At(0x87, "0FF32FF346F06", 30) + At(0x87, "0FF0E0012D254", 35) +
                        At(0x07, "0FFABF1FFAC89", 50));
  EXPECT_EQ(boiler.controller().memory().Byte(0xF1FF), 0x34);
  EXPECT_EQ(boiler.controller().memory().Byte(0xF200), 0x12);
  EXPECT_EQ(Value(1), "1234");
}

TEST_F(RunZolt, AWriteToAProtectedPageIsToldAndTheRunGoesOnAfterTheWatchdog) {
  Screen({ByteAt("F000"), IdAt("003D")});
  Start();
  Advance(30);
  Sent();
  ExpectCritical("Write attempt to protected area !", "Write Error");
  Write(1, "12");
  EXPECT_EQ(world.dialogs().shown().size(), 1U);
  Advance(2999);
  EXPECT_EQ(Sent(), "");
  Advance(11);
  EXPECT_EQ(Sent(), At(0x01, "0003D0000279E", 3030));
  EXPECT_EQ(Value(2), "0502");
}

TEST_F(RunZolt, AWordWhoseFirstHalfIsNotAcknowledgedIsNotFinishedByALaterWrite) {
  SetTimeout(1);
  Screen({OfSlave("0", WordAt("F410")), OfSlave("0", ByteAt("F400"))});
  Start();
  Advance(30);
  boiler.line().AddFault("no_reply#1");
  Write(1, "1234");
  Advance(1'500);
  Write(2, "5A");
  Advance(500);
  EXPECT_EQ(boiler.controller().memory().Byte(0xF400), 0x5A);
  EXPECT_EQ(boiler.controller().memory().Byte(0xF401), 0);
  EXPECT_EQ(Value(2), "5A");
}

}  // namespace
}  // namespace tarnlink
