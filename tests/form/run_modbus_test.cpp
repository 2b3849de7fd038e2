// Modbus in the run: a screen of registers, the simulated boiler at the end of the line, and the
// wait for the rest of a response.

#include <gtest/gtest.h>

#include "common/numbers.h"
#include "common/text.h"
#include "form/boiler_frames.h"
#include "form/boiler_on_line.h"
#include "form/locations.h"
#include "form/monitor_fixture.h"

namespace tarnlink {
namespace {

constexpr int k1200 = 0;  // indices of opt_Baudrate
constexpr int k9600 = 3;

constexpr int kQuietAt1200 = 420;  // ms, as kQuietAt9600

// Registers from 0200 on are free RAM, a word each from here on.
constexpr int kFreeRegisters = 0x200;
constexpr int kFreeRam = 0xF400;

boiler::SimulatedBoiler::Options ModbusBoiler(int baud = 0) {
  return {.protocol = "modbus",
          .slave = {.addresses = "1,10"},
          .line = {.pace = {.baud = baud}, .answer_delay_us = 5'000}};
}

class RunModbus : public MonitorTest {
 protected:
  RunModbus() {
    ChooseProtocol(kModbusProtocol);
    ChooseSpeed(k9600);
  }

  void ChooseSpeed(int index) { monitor.options.opt_Baudrate.Select(index); }

  const std::string waiting = "Waiting, port open, timers Comm_Timer tmr_noresponse";
};

// --- The simulated boiler ----------------------------------------------------------------------

class RunModbusBoiler : public RunModbus {
 protected:
  void FreeRegister(int address, std::uint16_t value) {
    boiler.controller().WriteWord(
        static_cast<std::uint16_t>(kFreeRam + 2 * (address - kFreeRegisters)), value);
  }

  BoilerOnLine boiler{world, ModbusBoiler()};
};

TEST_F(RunModbusBoiler, RegistersAreReadOneAfterTheOther) {
  Screen({RegisterAt("0200"), RegisterAt("0201")});
  FreeRegister(0x200, 0x1234);
  FreeRegister(0x201, 0xABCD);
  Start();
  // The answer is there 5 ms after its request and taken 10 ms later.
  Advance(34);
  EXPECT_EQ(Value(1), "Value 1");
  Advance(1);
  EXPECT_EQ(Value(1), "1234");
  Advance(30);
  EXPECT_EQ(Value(2), "ABCD");
  EXPECT_EQ(Sent(),
            "20 ms: 01 03 02 00 00 01 85 B2\n"
            "40 ms: 01 03 02 01 00 01 D4 72\n"
            "60 ms: 01 03 02 00 00 01 85 B2\n");
  EXPECT_EQ(Panel(5), "1: at 0200");
}

TEST_F(RunModbusBoiler, WhatTheBoilerChangesIsShownInTheNextRound) {
  Screen({RegisterAt("0200")});
  Start();
  Advance(40);
  EXPECT_EQ(Value(1), "0000");
  FreeRegister(0x200, 0x00FF);
  Advance(40);
  EXPECT_EQ(Value(1), "00FF");
}

TEST_F(RunModbusBoiler, ABlockIsOneRequestForAllItsLocations) {
  std::vector<Location> locations = BlockAt(0x200, 3);
  locations.push_back(RegisterAt("0203"));
  Screen(locations);
  for (int i = 0; i < 4; ++i) FreeRegister(0x200 + i, static_cast<std::uint16_t>(0x1000 + i));
  Start();
  Advance(60);
  EXPECT_EQ(Sent(),
            "20 ms: 01 03 02 00 00 03 04 73\n"
            "40 ms: 01 03 02 03 00 01 75 B2\n"
            "60 ms: 01 03 02 00 00 03 04 73\n");
  EXPECT_EQ(Value(1), "1000");
  EXPECT_EQ(Value(2), "1001");
  EXPECT_EQ(Value(3), "1002");
  EXPECT_EQ(Value(4), "1003");
}

TEST_F(RunModbusBoiler, TheLogGetsOneRequestAndEveryValueOfABlock) {
  Record();
  monitor.options.chk_GeneralLogging(0).Value = true;
  Screen(BlockAt(0x200, 2));
  FreeRegister(0x200, 0x000A);
  FreeRegister(0x201, 0x000B);
  Start();
  Advance(39);
  EXPECT_EQ(recorder.TakeNotes(),
            "prepare log\n"
            "request 1\n"
            "value 1: 000A in row 2\n"
            "value 2: 000B in row 2\n"
            "end of row\n");
  EXPECT_EQ(monitor.main.DDERowCounter, 3);
}

TEST_F(RunModbusBoiler, EverySlaveOfTheScreenIsAskedByItsAddress) {
  SetTimeout(1);
  Screen({RegisterAt("0200"), RegisterAt("0201", "0A"), RegisterAt("0202", "3")});
  for (int i = 0; i < 3; ++i) FreeRegister(0x200 + i, static_cast<std::uint16_t>(i + 1));
  Start();
  Advance(60);
  EXPECT_EQ(Sent(),
            "20 ms: 01 03 02 00 00 01 85 B2\n"
            "40 ms: 0A 03 02 01 00 01 D5 09\n"
            "60 ms: " +
                HexText(Framed("03 03 02 02 00 01")) + "\n");
  EXPECT_EQ(Value(1), "0001");
  EXPECT_EQ(Value(2), "0002");
  Advance(1000);
  EXPECT_EQ(Value(3), "Value 3");
}

TEST_F(RunModbusBoiler, ARefusedRegisterIsToldKeepsItsValueAndTheOthersGoOn) {
  Screen({RegisterAt("0400"), RegisterAt("0201")});
  FreeRegister(0x201, 0xABCD);
  Start();
  Advance(59);
  EXPECT_EQ(Panel(6), "Exception code:2");
  EXPECT_EQ(monitor.main.Function_code, 0x83);
  EXPECT_EQ(Value(1), "Value 1");
  Advance(1);
  EXPECT_EQ(monitor.main.Function_code, 3);
  Advance(20);
  EXPECT_EQ(Value(2), "ABCD");
  EXPECT_EQ(Panel(6), "Exception code:2");
  EXPECT_EQ(world.port().opens(), 1);
  EXPECT_TRUE(world.dialogs().shown().empty());
}

TEST_F(RunModbusBoiler, AnAnswerWithAWrongCheckIsNotShownAndTheOthersGoOn) {
  Screen({RegisterAt("0200"), RegisterAt("0201")});
  FreeRegister(0x200, 0x1234);
  FreeRegister(0x201, 0xABCD);
  boiler.line().AddFault("check_wrong#1");
  Start();
  Advance(60);
  EXPECT_EQ(Sent(), "20 ms: 01 03 02 00 00 01 85 B2\n");
  Advance(kQuietAt9600 - 20);
  EXPECT_EQ(Value(1), "Value 1");
  EXPECT_EQ(Value(2), "ABCD");
  Advance(20);
  EXPECT_EQ(Value(1), "1234");
}

TEST_F(RunModbusBoiler, ASilentSlaveIsPassedOverByTheWatchdogWithoutAWord) {
  SetTimeout(1);
  Screen({RegisterAt("0200", "3"), RegisterAt("0201"), RegisterAt("0202")});
  FreeRegister(0x201, 0xABCD);
  boiler.line().AddFault("no_reply#1");
  Start();
  Advance(2060);
  EXPECT_EQ(Sent(), "20 ms: " + HexText(Framed("03 03 02 00 00 01")) +
                        "\n"
                        "1020 ms: 01 03 02 01 00 01 D4 72\n"
                        "2020 ms: " +
                        HexText(Framed("01 03 02 02 00 01")) +
                        "\n"
                        "2040 ms: " +
                        HexText(Framed("03 03 02 00 00 01")) + "\n");
  EXPECT_EQ(Value(1), "Value 1");
  EXPECT_EQ(Value(2), "Value 2");
  EXPECT_EQ(Value(3), "0000");
  EXPECT_EQ(world.port().opens(), 3);
  EXPECT_EQ(Panel(4), "Communication Running");
  EXPECT_TRUE(world.dialogs().shown().empty());
}

TEST_F(RunModbusBoiler, AWrittenRegisterIsReadBackNext) {
  Screen({RegisterAt("0200"), RegisterAt("0201")});
  Start();
  Advance(39);
  Sent();
  Write(1, "1234");
  Advance(16);
  EXPECT_EQ(Value(1), "-");
  Advance(40);
  EXPECT_EQ(Value(1), "1234");
  EXPECT_EQ(Sent(),
            "39 ms: 01 06 02 00 12 34 85 05\n"
            "59 ms: 01 03 02 00 00 01 85 B2\n"
            "79 ms: 01 03 02 01 00 01 D4 72\n");
}

TEST_F(RunModbusBoiler, WrittenRegistersAreAllShownOnceTheyAreReadBack) {
  Screen(BlockAt(0x200, 2));
  Start();
  Advance(39);
  WriteBlock(1, {0x000A, 0x0102});
  Advance(16);
  EXPECT_EQ(Value(1), "-");
  EXPECT_EQ(Value(2), "-");
  Advance(40);
  EXPECT_EQ(Value(1), "000A");
  EXPECT_EQ(Value(2), "0102");
}

// --- The wait for the rest of a response -------------------------------------------------------

TEST_F(RunModbus, AResponseIsTakenAfterThePauseOfTheSpeed) {
  const int pauses[] = {80, 40, 20, 10, 5, 1};
  Screen({RegisterAt("0010")});
  for (int index = 0; index < 6; ++index) {
    ChooseSpeed(index);
    Start();
    Advance(20);
    const std::string value = "120" + std::to_string(index);
    Answer(Framed("01 03 02 " + value));
    Advance(pauses[index] - 1);
    EXPECT_NE(Value(1), value) << index;
    Advance(1);
    EXPECT_EQ(Value(1), value) << index;
    EXPECT_EQ(monitor.options.opt_Baudrate.Selected(), index);
    Stop();
  }
}

TEST_F(RunModbus, WithoutASpeedTheFastestIsChosenByTheFirstResponse) {
  Screen({RegisterAt("0010")});
  monitor.options.opt_Baudrate.Clear();
  Start();
  Advance(20);
  EXPECT_EQ(monitor.options.opt_Baudrate.Selected(), -1);
  Answer(Framed("01 03 02 12 34"));
  EXPECT_EQ(monitor.options.opt_Baudrate.Selected(), 5);
  EXPECT_EQ(Value(1), "Value 1");
  Advance(1);
  EXPECT_EQ(Value(1), "1234");
}

TEST_F(RunModbus, FourBytesAreNoResponseYet) {
  Screen({RegisterAt("0010")});
  Start();
  Advance(20);
  const std::string whole = Framed("01 03 02 12 34");
  Answer(whole.substr(0, 4));
  Advance(500);
  EXPECT_EQ(Value(1), "Value 1");
  Answer(whole.substr(4));
  Advance(10);
  EXPECT_EQ(Value(1), "1234");
}

TEST_F(RunModbus, TheRestOfAResponseMayComeDuringThePause) {
  ChooseSpeed(k1200);
  Screen({RegisterAt("0010")});
  Start();
  Advance(20);
  const std::string whole = Framed("01 03 02 12 34");
  Answer(whole.substr(0, 5));
  AnswerIn(79, whole.substr(5));
  Advance(80);
  EXPECT_EQ(Value(1), "1234");
}

TEST_F(RunModbus, AnExceptionIsTakenOnceTheLineIsQuietSinceMoreWasAskedFor) {
  const int quiet[] = {80, 40, 20, 20, 20, 20};
  Screen(BlockAt(0x10, 3));
  for (int index = 0; index < 6; ++index) {
    ChooseSpeed(index);
    Start();
    Advance(20);
    Answer(Framed("01 83 02"));
    Advance(quiet[index] - 1);
    EXPECT_EQ(Panel(6), "Local Connection Active") << index;
    Advance(1);
    EXPECT_EQ(Panel(6), "Exception code:2") << index;
    Stop();
  }
}

TEST_F(RunModbus, HandfulsOfAnAdapterAreOneResponse) {
  const std::string whole = Framed("01 03 06 00 01 00 02 00 03");
  Screen(BlockAt(0x10, 3));
  for (int index = k9600; index < 6; ++index) {
    ChooseSpeed(index);
    Start();
    Advance(20);
    Answer(whole.substr(0, 6));
    AnswerIn(16, whole.substr(6, 2));
    AnswerIn(32, whole.substr(8));
    Advance(31);
    EXPECT_EQ(Value(1), "Value 1") << index;
    Advance(11);
    EXPECT_EQ(Value(1), "0001") << index;
    EXPECT_EQ(Value(3), "0003") << index;
    Stop();
    for (int i = 1; i <= 3; ++i) monitor.main.RAM_LOC_VAL(i).Text = "Value " + std::to_string(i);
  }
}

// A slave that takes its time, at 9600 baud: the next request would be out before its stray answer
// has been taken, and from then on each value would land in the box behind its own.
class RunModbusStray : public RunModbus {
 protected:
  RunModbusStray() {
    std::vector<Location> locations;
    for (int i = 0; i < 5; ++i) {
      locations.push_back(RegisterAt(Stuff(Hex(kFreeRegisters + i), 4)));
      boiler.controller().WriteWord(static_cast<std::uint16_t>(kFreeRam + 2 * i),
                                    static_cast<std::uint16_t>(0x1100 + i));
    }
    SetTimeout(1);
    Screen(locations);
  }

  void ExpectEachValueInItsBox() {
    Advance(2'000);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(Value(i + 1), Hex(0x1100 + i));
  }

  BoilerOnLine boiler{
      world,
      {.protocol = "modbus",
       .line = {.pace = {.baud = 9600, .bits_per_byte = 11}, .answer_delay_us = 12'000}}};
};

TEST_F(RunModbusStray, AnAnswerThatComesTwiceLeavesTheOthersInTheirBoxes) {
  Start();
  Advance(500);
  const std::string again = Framed("01 03 02 11 00");
  for (const int when : {1, 7, 13, 19, 26, 38}) AnswerIn(when * 37, again);
  Advance(38 * 37);
  ExpectEachValueInItsBox();
}

TEST_F(RunModbusStray, AnAnswerBehindTheWatchdogLeavesTheOthersInTheirBoxes) {
  boiler.line().AddFault("late_reply(1010)#3");
  Start();
  Advance(5'000);
  ExpectEachValueInItsBox();
}

TEST_F(RunModbus, AWriteDuringThePauseGetsItsOwnAcknowledge) {
  ChooseSpeed(k1200);
  Screen({RegisterAt("0010"), RegisterAt("0011")});
  Start();
  Advance(20);
  Answer(Framed("01 03 02 12 34"));
  Advance(40);
  Write(1, "5678");
  AnswerIn(120, Framed("01 06 00 10 56 78"));
  Advance(119);
  EXPECT_EQ(State(), waiting);
  EXPECT_EQ(Value(1), "Value 1");
  Sent();
  Advance(81 + kQuietAt1200);
  EXPECT_EQ(Value(1), "-");
  EXPECT_EQ(Sent(), "660 ms: " + HexText(Framed("01 03 00 10 00 01")) + "\n");
}

TEST_F(RunModbus, AnAnswerThatALineErrorDropsEndsItsExchange) {
  monitor.options.chk_DisableCommErrors.Value = true;
  ChooseSpeed(k1200);
  Screen({RegisterAt("0010"), RegisterAt("0011")});
  Start();
  Advance(20);
  Answer(Framed("01 03 02 12 34"));
  Advance(10);
  world.port().RaiseLineError(kCommFrame);
  Advance(70);
  EXPECT_EQ(Value(1), "Value 1");
  Sent();
  Advance(kQuietAt1200 - 20);
  EXPECT_EQ(Sent(), "500 ms: " + HexText(Framed("01 03 00 11 00 01")) + "\n");
}

TEST_F(RunModbus, ALongBlockOnASlowLineArrivesWhole) {
  constexpr int kRegisters = 60;
  ChooseSpeed(k1200);
  SetTimeout(1);
  Screen(BlockAt(kFreeRegisters, kRegisters));
  BoilerOnLine boiler(world, ModbusBoiler(1200));
  for (int i = 0; i < kRegisters; ++i) {
    boiler.controller().WriteWord(static_cast<std::uint16_t>(kFreeRam + 2 * i),
                                  static_cast<std::uint16_t>(0x4000 + i));
  }
  Start();
  // The 125 bytes take longer than the time-out, but they begin in time.
  Advance(1'100);
  EXPECT_EQ(State(), "Waiting, port open, timers Comm_Timer");
  EXPECT_EQ(Value(1), "Value 1");
  Advance(120);
  for (int i = 0; i < kRegisters; ++i) EXPECT_EQ(Value(i + 1), Hex(0x4000 + i));
  EXPECT_EQ(world.port().opens(), 1);
}

TEST_F(RunModbus, AResponseThatStopsHalfWayIsTakenAfterOneMorePauseAndThePollGoesOn) {
  ChooseSpeed(k1200);
  std::vector<Location> locations = BlockAt(0x10, 3);
  locations.push_back(RegisterAt("0020"));
  Screen(locations);
  Start();
  Advance(21);
  const std::string whole = Framed("01 03 06 00 01 00 02 00 03");
  Answer(whole.substr(0, 5));
  AnswerIn(40, whole.substr(5, 3));
  // At 101 ms it has grown, at 181 ms no longer.
  Advance(159);
  EXPECT_EQ(State(), "Waiting, port open, timers Comm_Timer");
  Advance(1);
  EXPECT_EQ(State(), "Ready, port open, timers Comm_Timer");
  EXPECT_EQ(Value(1), "Value 1");
  Sent();
  Advance(kQuietAt1200 - 1);
  EXPECT_EQ(Sent(), "600 ms: " + HexText(Framed("01 03 00 20 00 01")) + "\n");
  Answer(Framed("01 03 02 12 34"));
  Advance(80);
  EXPECT_EQ(Value(4), "1234");
  EXPECT_EQ(world.port().opens(), 1);
}

TEST_F(RunModbus, AResponseThatStopsAtOnceIsTakenAfterOnePause) {
  ChooseSpeed(k1200);
  Screen(BlockAt(0x10, 3));
  Start();
  Advance(21);
  Answer(Framed("01 03 06 00 01 00 02 00 03").substr(0, 6));
  Advance(79);
  EXPECT_EQ(State(), "Waiting, port open, timers Comm_Timer");
  Advance(1);
  EXPECT_EQ(State(), "Ready, port open, timers Comm_Timer");
  EXPECT_EQ(Value(1), "Value 1");
}

TEST_F(RunModbus, StopDuringThePauseLosesTheResponse) {
  ChooseSpeed(k1200);
  Screen(BlockAt(0x10, 3));
  const std::string whole = Framed("01 03 06 00 01 00 02 00 03");
  // In the first pause, and in the one that follows it.
  for (const int stop_after : {40, 120}) {
    Start();
    Advance(20);
    Answer(whole.substr(0, 5));
    AnswerIn(30, whole.substr(5, 3));
    AnswerIn(130, whole.substr(8));
    Advance(stop_after);
    Stop();
    EXPECT_EQ(State(), "Stopped, port closed, no timers") << stop_after;
    Advance(1'000);
    EXPECT_EQ(State(), "Stopped, port closed, no timers") << stop_after;
    EXPECT_EQ(Value(1), "Value 1") << stop_after;
  }
}

TEST_F(RunModbus, AStoppedPauseDoesNotReachIntoTheNextRun) {
  ChooseSpeed(k1200);
  Screen(BlockAt(0x10, 3));
  const std::string whole = Framed("01 03 06 00 01 00 02 00 03");
  Start();
  Advance(20);
  Answer(whole.substr(0, 5));
  Stop();
  Sent();
  Start();
  Advance(1'000);
  EXPECT_EQ(State(), waiting);
  EXPECT_EQ(Sent(), "40 ms: 01 03 00 10 00 03 04 0E\n");
  Answer(whole);
  Advance(80);
  EXPECT_EQ(Value(3), "0003");
}

}  // namespace
}  // namespace tarnlink
