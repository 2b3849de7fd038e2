// The log of runs under Modbus with the simulated boiler: register blocks, refusals, holes.

#include <gtest/gtest.h>

#include "common/numbers.h"
#include "common/text.h"
#include "form/boiler_on_line.h"
#include "form/locations.h"
#include "form/log_fixture.h"
#include "protocols/modbus_frame.h"

namespace tarnlink {
namespace {

constexpr int kFreeRegisters = 0x200;
constexpr int kFreeRam = 0xF400;

Location Register(int number) { return Logged(RegisterAt(Stuff(Hex(number), 4))); }

Location Unlogged(Location location) {
  location.LogEnable = 0;
  return location;
}

class LogModbus : public LogTest {
 protected:
  LogModbus() {
    ChooseProtocol(kModbusProtocol);
    monitor.options.opt_Baudrate.Select(3);
    for (int i = 0; i < 8; ++i) {
      boiler.controller().WriteWord(static_cast<std::uint16_t>(kFreeRam + 2 * i),
                                    static_cast<std::uint16_t>(0x1000 + i));
    }
  }

  BoilerOnLine boiler{
      world,
      {.protocol = "modbus", .slave = {.addresses = "1"}, .line = {.answer_delay_us = 5'000}}};
};

TEST_F(LogModbus, EveryRegisterOfABlockHasItsOwnField) {
  Screen({Register(kFreeRegisters), HeadOf(3, Register(0x201)), Follower(Register(0x202)),
          Follower(Register(0x203)), Register(0x204)});
  StartLog();
  Advance(79);
  EXPECT_EQ(Text(),
            "5-Mar-2024|\n||at 0200(0200)|at 0201(0201)|at 0202(0202)|at 0203(0203)|at 0204(0204)\n"
            "14:07:09|1000|1001|1002|1003|1004\n14:07:09");
}

TEST_F(LogModbus, ABlockAtTheEndEndsTheRow) {
  Screen({Register(0x200), HeadOf(2, Register(0x201)), Follower(Register(0x202))});
  StartLog();
  Advance(79);
  EXPECT_EQ(Rows(), "14:07:09|1000|1001|1002\n14:07:09|1000");
  Advance(20);
  EXPECT_EQ(Rows(), "14:07:09|1000|1001|1002\n14:07:09|1000|1001|1002\n14:07:09");
}

TEST_F(LogModbus, OfABlockOnlyTheLoggedRegistersHaveAField) {
  Screen({Unlogged(HeadOf(3, Register(0x200))), Unlogged(Follower(Register(0x201))),
          Follower(Register(0x202)), Register(0x203)});
  StartLog();
  Advance(59);
  EXPECT_EQ(Rows(), "14:07:09|1002|1003\n14:07:09");
}

TEST_F(LogModbus, ABlockThatIsRefusedLeavesAllItsFieldsEmpty) {
  Screen({HeadOf(2, Register(0x400)), Follower(Register(0x401)), Register(0x200)});
  StartLog();
  Advance(99);
  EXPECT_EQ(Panel(6), "Exception code:2");
  EXPECT_EQ(Rows(), "14:07:09|||1000\n14:07:09|") << Rows();
}

TEST_F(LogModbus, ASilentSlaveLeavesTheFieldsOfItsBlockEmpty) {
  Screen({Register(0x200), HeadOf(2, Register(0x201)), Follower(Register(0x202)), Register(0x203)});
  monitor.main.Locations[2].LocSlaveAddress = "9";
  StartLog();
  Advance(3079);
  EXPECT_EQ(Rows(), "14:07:09|1000|||1003\n14:07:12|1000");
}

TEST_F(LogModbus, ABadAnswerLeavesItsFieldEmpty) {
  Screen({Register(0x200), Register(0x201)});
  boiler.line().AddFault("check_wrong#1");
  StartLog();
  Advance(230);
  EXPECT_EQ(Rows().substr(0, 28), "14:07:09||1001\n14:07:09|1000") << Rows();
}

TEST_F(LogModbus, WhatIsNotScannedLeavesItsFieldEmpty) {
  Location off = Register(0x200);
  off.ScanFlags = kScanningDisabled;
  Screen({off, Register(0x201), off});
  StartLog();
  Advance(39);
  EXPECT_EQ(Rows(), "14:07:09||1001");
  Advance(20);
  EXPECT_EQ(Rows(), "14:07:09||1001|\n14:07:09");
}

// What is written continuously goes out with a read, whose answer is a value.
TEST_F(LogModbus, AContinuousWriteIsAnsweredWithAValue) {
  Location written = Register(0x201);
  written.ScanFlags = kContinuousWrite;
  Screen({Register(0x200), written});
  StartLog();
  Advance(59);
  // The simulated boiler does not know such a request.
  world.port().Receive(modbus_frame::FinishFrame("\x01\x03\x02\x10\x01"));
  Advance(10);
  EXPECT_EQ(Rows(), "14:07:09|1000|1001\n14:07:09");
}

// As a screen of older times may have them.
TEST_F(LogModbus, TheRegistersOfABlockThatAreNoFollowersHaveTheirFieldsToo) {
  Location second = Register(0x201);
  second.ScanFlags = kScanningDisabled;
  Screen({HeadOf(2, Register(0x200)), second, Register(0x204)});
  StartLog();
  Advance(59);
  EXPECT_EQ(Rows().substr(0, 31), "14:07:09|1000|1001|1004\n14:07:0");
}

TEST_F(LogModbus, ADeletedFollowerLeavesItsFieldEmpty) {
  Screen({HeadOf(3, Register(0x200)), Follower(Register(0x201)), Follower(Register(0x202)),
          Register(0x203)});
  StartLog();
  Advance(59);
  Delete(2);
  Advance(40);
  EXPECT_EQ(Rows(), "14:07:09|1000|1001|1002|1003\n14:07:09|1000||1002|1003\n14:07:09");
}

TEST_F(LogModbus, ADeletedHeadLeavesTheFieldsOfItsBlockEmpty) {
  Screen({HeadOf(2, Register(0x200)), Follower(Register(0x201)), Register(0x203)});
  StartLog();
  Advance(59);
  Delete(1);
  Advance(60);
  EXPECT_EQ(Rows().substr(0, 42), "14:07:09|1000|1001|1003\n14:07:09|||1003\n14") << Rows();
}

// The scan's pointer goes back to the beginning in the middle of such a block, whose last values
// then stand in the first boxes until these are read themselves.
TEST_F(LogModbus, ABlockBeyondTheLastLocationFillsNobodyElsesField) {
  Screen({Register(0x207), Register(0x206), HeadOf(3, Register(0x200))});
  StartLog();
  Advance(159);
  EXPECT_EQ(Rows().substr(0, 56), "14:07:09|1007|1006|1000\n14:07:09|1007|1006|1000\n14:07:09")
      << Rows();
}

TEST_F(LogModbus, TheRowsOfABlockOfOneHundredAndTwentyRegistersAreWhole) {
  std::vector<Location> locations{HeadOf(120, Register(0x200))};
  std::string expected = "14:07:09";
  for (int i = 0; i < 120; ++i) {
    if (i > 0) locations.push_back(Follower(Register(0x200 + i)));
    boiler.controller().WriteWord(static_cast<std::uint16_t>(kFreeRam + 2 * i),
                                  static_cast<std::uint16_t>(0x3000 + i));
    expected += "|" + Stuff(Hex(static_cast<std::int16_t>(0x3000 + i)), 4);
  }
  Screen(locations);
  StartLog();
  world.RunUntil([this] { return monitor.main.DDERowCounter == 3; }, std::chrono::seconds(2));
  EXPECT_EQ(Rows(), expected + "\n14:07:09");
}

}  // namespace
}  // namespace tarnlink
