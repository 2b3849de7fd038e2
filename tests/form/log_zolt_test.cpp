// The log of runs under the ZOLT protocol with the simulated boiler: what is passed over, refused,
// missing or written leaves its field empty, and every row has the heading's columns.

#include <gtest/gtest.h>

#include "form/boiler_on_line.h"
#include "form/locations.h"
#include "form/log_fixture.h"

namespace tarnlink {
namespace {

class LogZolt : public LogTest {
 protected:
  LogZolt() {
    ChooseProtocol(kZoltProtocol);
    for (int i = 0; i < 4; ++i) {
      boiler.controller().WriteByte(static_cast<std::uint16_t>(0xF401 + i),
                                    static_cast<std::uint8_t>(0xA1 + i));
    }
  }

  BoilerOnLine boiler{
      world, {.protocol = "zolt", .slave = {.addresses = "0"}, .line = {.answer_delay_us = 5'000}}};
};

TEST_F(LogZolt, TheTabIsThereBeforeTheRequestIsOut) {
  Screen({Logged(ByteAt("F401"))});
  StartLog();
  world.on_output = [this](FakeSerialPort&, std::string_view) { EXPECT_EQ(Rows(), "14:07:09|"); };
  Advance(20);
  EXPECT_EQ(Rows(), "14:07:09|");
}

TEST_F(LogZolt, ARoundIsARow) {
  Screen({Logged(ByteAt("F401")), ByteAt("F402"), Logged(ByteAt("F403")), Logged(IdAt("003D"))});
  StartLog();
  Advance(90);
  EXPECT_EQ(Rows(), "14:07:09|A1|A3|0502\n14:07:09");
}

TEST_F(LogZolt, AnUnknownIdIsNotAvailable) {
  Screen({Logged(ByteAt("F401")), Logged(IdAt("EEEE")), Logged(ByteAt("F403"))});
  StartLog();
  Advance(70);
  EXPECT_EQ(Value(2), "can not read");
  EXPECT_EQ(Rows(), "14:07:09|A1|NA|A3\n14:07:09");
}

TEST_F(LogZolt, AnUnknownIdAtTheEndOfTheRoundEndsTheRowAtTheNextTick) {
  Screen({Logged(ByteAt("F401")), Logged(IdAt("EEEE"))});
  StartLog();
  Advance(55);
  EXPECT_EQ(Rows(), "14:07:09|A1|NA");
  Advance(5);
  EXPECT_EQ(Rows(), "14:07:09|A1|NA\n14:07:09");
}

TEST_F(LogZolt, AnUnknownIdThatIsNotLoggedLeavesNoTrace) {
  Screen({Logged(ByteAt("F401")), IdAt("EEEE"), Logged(ByteAt("F403"))});
  StartLog();
  Advance(70);
  EXPECT_EQ(Rows(), "14:07:09|A1|A3\n14:07:09");
}

TEST_F(LogZolt, WhatIsNotScannedLeavesItsFieldEmpty) {
  Screen({Logged(Flagged(1, ByteAt("F401"))), Logged(ByteAt("F402")),
          Logged(Flagged(1, ByteAt("F403"))), Logged(ByteAt("F404"))});
  StartLog();
  Advance(90);
  EXPECT_EQ(Rows().substr(0, 27), "14:07:09||A2||A4\n14:07:09||") << Rows();
}

TEST_F(LogZolt, WhatIsNotScannedAtTheEndOfTheRoundLeavesItsFieldEmpty) {
  Screen({Logged(ByteAt("F401")), Logged(Flagged(1, ByteAt("F402")))});
  StartLog();
  Advance(59);
  EXPECT_EQ(Rows().substr(0, 21), "14:07:09|A1|\n14:07:09") << Rows();
}

TEST_F(LogZolt, WithNothingToScanTheLogIsItsHeadingAndAnEmptyRow) {
  Screen({Logged(Flagged(1, ByteAt("F401"))), Logged(Flagged(1, ByteAt("F402")))});
  StartLog();
  Advance(1000);
  EXPECT_FALSE(monitor.main.CommRunning);
  EXPECT_FALSE(monitor.main.filelogging);
  EXPECT_EQ(Text(), "5-Mar-2024|\n||at F401(F401)|at F402(F402)\n14:07:09||\n14:07:09");
}

TEST_F(LogZolt, ALocationThatIsDeletedDuringTheRunLeavesItsFieldEmpty) {
  Screen({Logged(ByteAt("F401")), Logged(ByteAt("F402")), Logged(ByteAt("F403"))});
  StartLog();
  Advance(65);
  Delete(2);
  Advance(60);
  EXPECT_EQ(Rows(), "14:07:09|A1|A2|A3\n14:07:09|A1||A3\n14:07:09");
  Delete(3);
  Advance(80);
  EXPECT_EQ(Rows(), "14:07:09|A1|A2|A3\n14:07:09|A1||A3\n14:07:09|A1||\n14:07:09");
}

TEST_F(LogZolt, ASilentSlaveLeavesItsFieldEmpty) {
  Screen({Logged(ByteAt("F401")), Logged(IdAt("003D", "7")), Logged(ByteAt("F403"))});
  StartLog();
  Advance(3070);
  EXPECT_EQ(Rows(), "14:07:09|A1||A3\n14:07:12|A1");
}

TEST_F(LogZolt, ABadAnswerLeavesItsFieldEmpty) {
  Screen({Logged(ByteAt("F401")), Logged(ByteAt("F402")), Logged(ByteAt("F403"))});
  boiler.line().AddFault("check_wrong#1");
  StartLog();
  Advance(500);
  EXPECT_EQ(Rows().substr(0, 27), "14:07:09||A2|A3\n14:07:09|A1") << Rows();
}

TEST_F(LogZolt, AnAnswerForSomebodyElseLeavesItsFieldEmpty) {
  Screen({Logged(IdAt("003D")), Logged(ByteAt("F402"))});
  boiler.line().AddFault("wrong_id#1");
  StartLog();
  Advance(3300);
  EXPECT_EQ(Rows().substr(0, 23), "14:07:09||A2\n14:07:12|0") << Rows();
}

TEST_F(LogZolt, AContinuousWriteLeavesItsFieldEmpty) {
  Screen({Logged(ByteAt("F401")), Logged(Flagged(2, ByteAt("F402")))});
  monitor.main.Locations[2].StorageType = kUnsignedByte;
  monitor.main.Locations[2].RawValue = 0x33;
  StartLog();
  Advance(85);
  EXPECT_EQ(Rows().substr(0, 24), "14:07:09|A1|\n14:07:09|A1") << Rows();
}

TEST_F(LogZolt, AWrittenLocationIsReadBackIntoItsField) {
  Screen({Logged(ByteAt("F401")), Logged(ByteAt("F402")), Logged(ByteAt("F403"))});
  StartLog();
  Advance(30);
  Write(3, "77");
  Advance(60);
  EXPECT_EQ(Rows().substr(0, 25), "14:07:09|A1||77\n14:07:09|") << Rows();
}

TEST_F(LogZolt, AWriteFurtherBackDoesNotFillAFieldTwice) {
  Screen({Logged(ByteAt("F401")), Logged(ByteAt("F402")), Logged(ByteAt("F403"))});
  StartLog();
  Advance(50);
  Write(1, "77");
  Advance(90);
  EXPECT_EQ(Rows().substr(0, 27), "14:07:09|A1|A2|A3\n14:07:09|") << Rows();
  Advance(100);
  EXPECT_EQ(Rows().substr(0, 36), "14:07:09|A1|A2|A3\n14:07:09|77|A2|A3\n") << Rows();
}

}  // namespace
}  // namespace tarnlink
