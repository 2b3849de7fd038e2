// A log that cannot be written any more, under each protocol: told once by name and reason, whole
// up to its last value, and the run goes on.

#include <gtest/gtest.h>

#include "form/log_boiler_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

class LogFailure : public TwoLogged {
 protected:
  // One row is whole and the next has begun.
  void RunTwo() {
    BoilerHolds(0xA1, 0xA2);
    StartLog();
    FinishRow();
  }

  void FillDisk(std::size_t left) { world.disk().SetFreeSpace(left); }

  void ExpectRunGoesOn() {
    EXPECT_EQ(Panel(4), "Communication Running");
    BoilerHolds(0xB1, 0xB2);
    Advance(100);
    EXPECT_EQ(Value(1), "B1");
    EXPECT_EQ(Value(2), "B2");
  }
};

INSTANTIATE_TEST_SUITE_P(Protocols, LogFailure,
                         ::testing::Values(kTarnlinkBoiler, kZoltBoiler, kModbusBoiler),
                         NameOfProtocol);

TEST_P(LogFailure, AFullDiskIsToldOnceAndTheRunGoesOn) {
  RunTwo();
  FillDisk(5);
  ExpectLogFailure(kDiskFull);
  Advance(1000);
  EXPECT_FALSE(monitor.main.filelogging);
  EXPECT_EQ(Rows(), "14:07:09|A1|A2\n14:07:09|A1|") << "What had room is there.";
  ExpectRunGoesOn();
}

TEST_P(LogFailure, NamesTheReason) {
  RunTwo();
  FillDisk(0);
  world.dialogs().ExpectMessageBox(
      {.text = "Internal System Error # 61 occured, please contact distributor.\r\n"
               "During writing log file /home/user/Documents/run.log",
       .title = "Internal System Error",
       .icon = Icon::kCritical,
       .detail = "\"/home/user/Documents/run.log\" could not be written: the disk is full. The "
                 "log ends there; the run goes on."});
  Advance(1000);
}

TEST_P(LogFailure, ARemovedStickIsToldByNameAndReason) {
  RunTwo();
  world.faults().Break("Rows.Append", 1, RunTimeError(kDeviceIo, "The stick is gone."));
  world.dialogs().ExpectMessageBox(
      {.text = "Internal System Error # 57 occured, please contact distributor.\r\n"
               "During writing log file /home/user/Documents/run.log",
       .title = "Internal System Error",
       .icon = Icon::kCritical,
       .detail = "The stick is gone. The log ends there; the run goes on."});
  Advance(1000);
  EXPECT_FALSE(monitor.main.filelogging);
  ExpectRunGoesOn();
}

TEST_P(LogFailure, AtWhicheverPieceItHappens) {
  constexpr int kPiecesOfARow = 6;
  for (int piece = 1; piece <= kPiecesOfARow; ++piece) {
    SCOPED_TRACE(piece);
    RunTwo();
    world.faults().Break("Rows.Append", piece, RunTimeError(kDeviceIo, "The stick is gone."));
    ExpectLogFailure(kDeviceIo);
    Advance(1000);
    EXPECT_FALSE(monitor.main.filelogging);
    ExpectRunGoesOn();
    Stop();
  }
}

TEST_P(LogFailure, TheRunDoesNotWaitForTheUser) {
  RunTwo();
  FillDisk(0);
  ExpectLogFailure(kDiskFull).While([this] {
    BoilerHolds(0xC1, 0xC2);
    Advance(60'000);
    EXPECT_EQ(Value(1), "C1");
    EXPECT_EQ(Value(2), "C2");
    EXPECT_EQ(Panel(4), "Communication Running");
  });
  Advance(1000);
  ExpectRunGoesOn();
}

TEST_P(LogFailure, IsToldAlsoWhenTheRunEndsWithIt) {
  RunTwo();
  FillDisk(0);
  EXPECT_TRUE(world.RunUntil([this] { return !monitor.main.filelogging; }, 1s));
  Stop();
  ExpectLogFailure(kDiskFull);
  Advance(10);
  EXPECT_EQ(State(), "Stopped, port closed, no timers");
}

TEST_P(LogFailure, TheNextStartLogsAgain) {
  RunTwo();
  FillDisk(0);
  ExpectLogFailure(kDiskFull);
  Advance(1000);
  Stop();
  FillDisk(10'000);
  StartLog();
  FinishRow();
  EXPECT_EQ(Rows(), "14:07:10|A1|A2\n14:07:10");
  EXPECT_TRUE(monitor.main.filelogging);
}

TEST_P(LogFailure, ASecondLogThatFailsWhileTheFirstIsBeingToldIsToldToo) {
  RunTwo();
  FillDisk(0);
  ExpectLogFailure(kDiskFull).While([this] {
    Stop();
    FillDisk(10'000);
    StartLog("/home/user/Documents/second.log");
    ExpectLogFailure(kDiskFull, "/home/user/Documents/second.log");
    FillDisk(0);
    Advance(500);
    EXPECT_FALSE(monitor.main.filelogging);
  });
  Advance(1000);
}

}  // namespace
}  // namespace tarnlink
