// In which order Locations are polled, and where a round ends.

#include <gtest/gtest.h>

#include "form/monitor_fixture.h"

namespace tarnlink {
namespace {

using RunScanOrder = MonitorTest;

Location Unscanned(const std::string& address) {
  Location location = ByteAt(address);
  location.ScanFlags = kScanningDisabled;
  return location;
}

// The addresses that were asked, one after the other, with the time of each.
std::string Asked(const FakeSerialPort& port) {
  std::string text;
  for (const auto& frame : port.frames()) {
    if (!text.empty()) text += ", ";
    text += frame.bytes.substr(2, 4) + " at " +
            std::to_string(frame.time / std::chrono::milliseconds(1));
  }
  return text;
}

const std::map<std::string, std::string> kMemory = {
    {"0001", "A1"}, {"0002", "A2"}, {"0003", "A3"}, {"0004", "A4"}};

TEST_F(RunScanOrder, GoesRoundInIndexOrderWithoutAGapAtTheEnd) {
  Screen({ByteAt("0001"), ByteAt("0003"), ByteAt("0002")});
  SlaveHolds(kMemory);
  Start();
  Advance(80);
  EXPECT_EQ(Asked(world.port()), "0001 at 20, 0003 at 40, 0002 at 60, 0001 at 80");
}

TEST_F(RunScanOrder, ADeletedLocationCostsOneTick) {
  Screen({ByteAt("0001"), ByteAt("0002"), ByteAt("0003"), ByteAt("0004")});
  Delete(2);
  Delete(3);
  SlaveHolds(kMemory);
  Start();
  Advance(100);
  EXPECT_EQ(Asked(world.port()), "0001 at 20, 0004 at 80, 0001 at 100");
}

TEST_F(RunScanOrder, ADeletedLastLocationCostsItsTickAndTheTemplates) {
  Screen({ByteAt("0001"), ByteAt("0002")});
  Delete(2);
  SlaveHolds(kMemory);
  Start();
  Advance(140);
  EXPECT_EQ(Asked(world.port()), "0001 at 20, 0001 at 80, 0001 at 140");
}

TEST_F(RunScanOrder, ADeletedFirstLocationIsPassedToo) {
  Screen({ByteAt("0001"), ByteAt("0002")});
  Delete(1);
  SlaveHolds(kMemory);
  Start();
  Advance(80);
  EXPECT_EQ(Asked(world.port()), "0002 at 40, 0002 at 80");
}

TEST_F(RunScanOrder, AskNothingWhenEverythingIsDeletedDuringTheRun) {
  Screen({ByteAt("0001"), ByteAt("0002")});
  SlaveHolds(kMemory);
  Start();
  Advance(30);
  Delete(1);
  Delete(2);
  Advance(600'000);
  EXPECT_EQ(Asked(world.port()), "0001 at 20");
  EXPECT_TRUE(monitor.main.CommRunning);
  Stop();
}

TEST_F(RunScanOrder, ALocationDeletedBeforeItsAnswerTakesItUnseen) {
  Screen({ByteAt("0001"), ByteAt("0002")});
  Start();
  Advance(20);
  Delete(1);
  Answer(AnswerOf("0001", "A1"));
  Advance(20);
  EXPECT_EQ(Asked(world.port()), "0001 at 20, 0002 at 40");
  EXPECT_FALSE(monitor.main.RAM_LOC_VAL(1).Visible.get());
}

TEST_F(RunScanOrder, ScanFlagsAndCheckBoxMeanNothingToTarnlink) {
  Screen({Unscanned("0001"), ByteAt("0002"), ByteAt("0003")});
  monitor.main.Locations[3].ScanFlags = kScanningDisabled | kContinuousWrite;
  monitor.main.RAM_LOC_CHECK(2).Value = false;
  SlaveHolds(kMemory);
  Start();
  Advance(80);
  EXPECT_EQ(Asked(world.port()), "0001 at 20, 0002 at 40, 0003 at 60, 0001 at 80");
}

TEST_F(RunScanOrder, RegisterBlocksMeanNothingToTarnlink) {
  Screen({ByteAt("0001"), ByteAt("0002")});
  monitor.main.Locations[1].NumReg = 2;
  monitor.main.Locations[2].RegisterFollower = true;
  SlaveHolds(kMemory);
  Start();
  Advance(60);
  EXPECT_EQ(Asked(world.port()), "0001 at 20, 0002 at 40, 0001 at 60");
}

TEST_F(RunScanOrder, TheTemplateIsNeverPolled) {
  // The scan comes by it, because the last Location does not answer for the end of the round.
  Screen({ByteAt("0001"), ByteAt("0002")});
  Delete(2);
  monitor.main.Locations[0].Address = "FFFF";
  SlaveHolds(kMemory);
  Start();
  Advance(2000);
  EXPECT_EQ(Asked(world.port()).find("FFFF"), std::string::npos);
  EXPECT_EQ(Value(0), "Value");
}

TEST_F(RunScanOrder, TheAnswerOfTheLastLocationEndsTheRound) {
  Screen({ByteAt("0001"), ByteAt("0002")});
  Start();
  Advance(20);
  Answer(AnswerOf("0001", "A1"));
  EXPECT_EQ(monitor.main.MsgPointer, 1);
  EXPECT_EQ(monitor.main.DDERowCounter, 2);
  Advance(20);
  Answer(AnswerOf("0002", "A2"));
  EXPECT_EQ(monitor.main.MsgPointer, 0);
  EXPECT_EQ(monitor.main.DDERowCounter, 3);
}

TEST_F(RunScanOrder, StartBeginsAtTheFirstLocationAgain) {
  Screen({ByteAt("0001"), ByteAt("0002")});
  SlaveHolds(kMemory);
  Start();
  Advance(30);
  Stop();
  EXPECT_EQ(monitor.main.MsgPointer, 1);
  Start();
  Advance(20);
  EXPECT_EQ(Asked(world.port()), "0001 at 20, 0001 at 50");
}

// --- What the log and the spreadsheet see of it ------------------------------------------------

TEST_F(RunScanOrder, ARoundMakesALogRowAndASpreadsheetRow) {
  Record();
  monitor.options.chk_GeneralLogging(0).Value = true;
  Screen({ByteAt("0001"), ByteAt("0002")});
  SlaveHolds(kMemory);
  Start();
  Advance(70);
  EXPECT_EQ(recorder.TakeNotes(),
            "prepare log\n"
            "request 1\nvalue 1: A1 in row 2\n"
            "request 2\nvalue 2: A2 in row 2\nend of row\n"
            "request 1\nvalue 1: A1 in row 3\n");
  Stop();
  EXPECT_EQ(recorder.TakeNotes(), "close log\n");
}

TEST_F(RunScanOrder, ADeletedLastLocationMakesALogRowButNoSpreadsheetRow) {
  Record();
  monitor.options.chk_GeneralLogging(0).Value = true;
  Screen({ByteAt("0001"), ByteAt("0002")});
  Delete(2);
  SlaveHolds(kMemory);
  Start();
  Advance(90);
  EXPECT_EQ(recorder.TakeNotes(),
            "prepare log\n"
            "request 1\nvalue 1: A1 in row 2\nend of row\n"
            "request 1\nvalue 1: A1 in row 2\n");
  EXPECT_EQ(monitor.main.DDERowCounter, 2);
}

TEST_F(RunScanOrder, ASilentLastLocationMakesALogRowButNoSpreadsheetRow) {
  Record();
  monitor.options.chk_GeneralLogging(0).Value = true;
  Screen({ByteAt("0001"), ByteAt("0009")});
  SlaveHolds(kMemory);
  Start();
  Advance(40);
  monitor.main.tmr_MsgTimeout->SetEnabled(false);  // only the watchdog is left
  Advance(3030);
  EXPECT_EQ(recorder.TakeNotes(),
            "prepare log\n"
            "request 1\nvalue 1: A1 in row 2\n"
            "request 2\nend of row\n"
            "request 1\nvalue 1: A1 in row 2\n");
}

TEST_F(RunScanOrder, WithoutAnOpenLogNoRowEnds) {
  Record();
  recorder.log_opens = false;
  monitor.options.chk_GeneralLogging(0).Value = true;
  Screen({ByteAt("0001"), ByteAt("0002")});
  Delete(2);
  SlaveHolds(kMemory);
  Start();
  Advance(80);
  EXPECT_EQ(recorder.TakeNotes(),
            "prepare log\n"
            "request 1\nvalue 1: A1 in row 2\n"
            "request 1\n");
  EXPECT_EQ(monitor.main.DDERowCounter, 2);
}

TEST_F(RunScanOrder, TheSpreadsheetBeginsAtRowTwoOnEveryStart) {
  Record();
  Screen({ByteAt("0001")});
  SlaveHolds(kMemory);
  Start();
  Advance(50);
  EXPECT_EQ(recorder.TakeNotes(),
            "request 1\nvalue 1: A1 in row 2\nrequest 1\nvalue 1: A1 in row 3\n");
  Stop();
  Start();
  Advance(30);
  EXPECT_EQ(recorder.TakeNotes(), "request 1\nvalue 1: A1 in row 2\n");
}

}  // namespace
}  // namespace tarnlink
