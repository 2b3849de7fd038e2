// A log that cannot be written any more: told once by name and reason, whole up to its last row,
// and the run goes on.

#include <gtest/gtest.h>

#include "form/log_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

class LogFailure : public LogTest {
 protected:
  void RunTwo() {
    Screen({Logged(ByteAt("0001")), Logged(ByteAt("0002"))});
    SlaveHolds({{"0001", "A1"}, {"0002", "A2"}});
    StartLog();
    Advance(45);
  }

  void FillDisk(std::size_t left) { world.disk().SetFreeSpace(left); }

  void ExpectRunGoesOn() {
    EXPECT_EQ(Panel(4), "Communication Running");
    SlaveHolds({{"0001", "B1"}, {"0002", "B2"}});
    Advance(100);
    EXPECT_EQ(Value(1), "B1");
    EXPECT_EQ(Value(2), "B2");
  }
};

TEST_F(LogFailure, AFullDiskIsToldOnceAndTheRunGoesOn) {
  RunTwo();
  FillDisk(5);
  ExpectLogFailure(kDiskFull);
  Advance(1000);
  EXPECT_FALSE(monitor.main.filelogging);
  EXPECT_EQ(Rows(), "14:07:09|A1|A2\n");
  ExpectRunGoesOn();
}

TEST_F(LogFailure, NamesTheReason) {
  RunTwo();
  FillDisk(0);
  world.dialogs().ExpectMessageBox(
      {.text = "Internal System Error # 61 occured, please contact distributor.\r\n"
               "During writing log file /home/user/Documents/run.log",
       .title = "Internal System Error",
       .icon = Icon::kCritical,
       .detail = "\"/home/user/Documents/run.log\" could not be written: the disk is full."});
  Advance(1000);
}

// At every piece of a row, and under every protocol the same.
TEST_F(LogFailure, AtWhicheverPieceItHappens) {
  constexpr int kPiecesOfARow = 6;
  Screen({Logged(ByteAt("0001")), Logged(ByteAt("0002"))});
  for (int piece = 1; piece <= kPiecesOfARow; ++piece) {
    SCOPED_TRACE(piece);
    SlaveHolds({{"0001", "A1"}, {"0002", "A2"}});
    StartLog();
    Advance(45);
    world.faults().Break("Rows.Append", piece, RunTimeError(kDeviceIo, "The stick is gone."));
    ExpectLogFailure(kDeviceIo);
    Advance(1000);
    EXPECT_FALSE(monitor.main.filelogging);
    ExpectRunGoesOn();
    Stop();
  }
}

TEST_F(LogFailure, TheRunDoesNotWaitForTheUser) {
  RunTwo();
  FillDisk(0);
  ExpectLogFailure(kDiskFull).While([this] {
    SlaveHolds({{"0001", "C1"}, {"0002", "C2"}});
    Advance(60'000);
    EXPECT_EQ(Value(1), "C1");
    EXPECT_EQ(Value(2), "C2");
    EXPECT_EQ(Panel(4), "Communication Running");
  });
  Advance(1000);
  ExpectRunGoesOn();
}

TEST_F(LogFailure, IsToldAlsoWhenTheRunEndsWithIt) {
  RunTwo();
  FillDisk(0);
  Advance(15);
  EXPECT_FALSE(monitor.main.filelogging);
  Stop();
  ExpectLogFailure(kDiskFull);
  Advance(10);
  EXPECT_EQ(State(), "Stopped, port closed, no timers");
}

TEST_F(LogFailure, TheNextStartLogsAgain) {
  RunTwo();
  FillDisk(0);
  ExpectLogFailure(kDiskFull);
  Advance(1000);
  Stop();
  FillDisk(10'000);
  StartLog();
  Advance(25);
  EXPECT_EQ(Rows(), "14:07:10|A1");
  EXPECT_TRUE(monitor.main.filelogging);
}

TEST_F(LogFailure, ASecondLogThatFailsWhileTheFirstIsBeingToldIsToldToo) {
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
