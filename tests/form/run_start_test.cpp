// The Start button: its order, its refusals and its failures.

#include <gtest/gtest.h>

#include "form/monitor_fixture.h"

namespace tarnlink {
namespace {

using RunStart = MonitorTest;

constexpr const char* kStopped = "Stopped, port closed, no timers";

std::string SystemError(int code) {
  return "Internal System Error # " + std::to_string(code) +
         " occured, please contact distributor. Communication is stopped";
}

TEST_F(RunStart, WithoutALocationOnlySetsTheWatchdogsInterval) {
  SetTimeout(2);
  Start();
  EXPECT_EQ(State(), kStopped);
  EXPECT_EQ(world.port().opens(), 0);
  EXPECT_EQ(DisabledEntries(), "");
  EXPECT_EQ(Panel(4), "");
  EXPECT_EQ(Panel(6), "");
  EXPECT_EQ(monitor.main.tmr_noresponse->Interval(), 2000);
}

TEST_F(RunStart, DoesNothingOnAScreenWhoseLastLocationWasDeleted) {
  Screen({ByteAt("01A0")});
  Delete(1);
  Start();
  EXPECT_EQ(State(), kStopped);
  EXPECT_EQ(world.port().opens(), 0);
}

TEST_F(RunStart, OpensThePortAndIsReadyForTheFirstTick) {
  Screen({ByteAt("01A0")});
  monitor.main.MsgPointer = 7;
  monitor.main.DDERowCounter = 99;
  Start();
  EXPECT_EQ(State(), "Ready, port open, timers Comm_Timer");
  EXPECT_EQ(Panel(4), "Communication Running");
  EXPECT_EQ(Panel(6), "Local Connection Active");
  EXPECT_EQ(DisabledEntries(), kAllRunEntries);
  EXPECT_EQ(monitor.main.MsgPointer, 0);
  EXPECT_EQ(monitor.main.DDERowCounter, 2);
  EXPECT_EQ(Sent(), "");
}

TEST_F(RunStart, WhileRunningOnlySetsTheWatchdogsInterval) {
  Screen({ByteAt("01A0"), ByteAt("01A1")});
  SlaveHolds({{"01A0", "01"}});
  Start();
  Advance(40);
  Answer(AnswerOf("01A1", "A2"));
  Advance(20);
  const std::string before = State();
  monitor.options.chkClearAllValues.Value = true;
  SetTimeout(5);
  Start();
  EXPECT_EQ(monitor.main.tmr_noresponse->Interval(), 5000);
  EXPECT_EQ(monitor.main.tmr_MsgTimeout->Interval(), 3000);
  EXPECT_EQ(State(), before);
  EXPECT_EQ(Value(2), "A2");
  EXPECT_EQ(monitor.main.MsgPointer, 1);
  EXPECT_EQ(world.port().opens(), 1);
}

TEST_F(RunStart, KeepsTheValuesUnlessTheyAreToBeCleared) {
  Screen({ByteAt("01A0"), ByteAt("01A1")});
  Start();
  EXPECT_EQ(Value(1), "Value 1");
  Stop();
  monitor.options.chkClearAllValues.Value = true;
  Start();
  EXPECT_EQ(Value(1), "");
  EXPECT_EQ(Value(2), "");
  EXPECT_EQ(Value(0), "Value");
}

TEST_F(RunStart, ClearsTheValuesOfDeletedLocationsToo) {
  Screen({ByteAt("01A0"), ByteAt("01A1")});
  Delete(2);
  monitor.options.chkClearAllValues.Value = true;
  Start();
  EXPECT_EQ(Value(1), "");
  EXPECT_EQ(Value(2), "");
}

TEST_F(RunStart, SaysThatABusyPortIsOccupied) {
  Screen({ByteAt("01A0")});
  world.port().SetCommPort(3);
  world.port().MakeBusy();
  monitor.main.DDERowCounter = 9;
  ExpectOccupiedBox(3).While([this] { EXPECT_EQ(Panel(4), ""); });
  Start();
  EXPECT_EQ(State(), kStopped);
  EXPECT_EQ(Panel(4), "Communication Stopped");
  EXPECT_EQ(Panel(6), "");
  EXPECT_EQ(DisabledEntries(), "");
  EXPECT_EQ(monitor.main.DDERowCounter, 2);
  EXPECT_EQ(Sent(), "");
}

TEST_F(RunStart, SaysWhyThePortCannotBeHad) {
  Screen({ByteAt("01A0")});
  world.port().MakeBusy();
  world.dialogs().ExpectMessageBox(
      {.text = "Communication port 1 occupied.\r\nStop communication and try again.",
       .title = "Communication Error",
       .icon = Icon::kCritical,
       .detail = "COM1 is in use by another program."});
  Start();
}

TEST_F(RunStart, WorksAsSoonAsThePortIsFree) {
  Screen({ByteAt("01A0")});
  world.port().MakeBusy();
  ExpectOccupiedBox();
  Start();
  world.port().MakeBusy(false);
  Start();
  EXPECT_EQ(State(), "Ready, port open, timers Comm_Timer");
}

TEST_F(RunStart, ClearsTheValuesEvenWhenThePortIsBusy) {
  Screen({ByteAt("01A0")});
  monitor.options.chkClearAllValues.Value = true;
  world.port().MakeBusy();
  ExpectOccupiedBox();
  Start();
  EXPECT_EQ(Value(1), "");
}

TEST_F(RunStart, ACancelledLogDialogStopsWithoutAWord) {
  Record();
  Screen({ByteAt("01A0")});
  monitor.options.chk_GeneralLogging(0).Value = true;
  recorder.log_refusal = RunTimeError(kDialogCancelled);
  Start();
  EXPECT_EQ(State(), kStopped);
  EXPECT_EQ(Panel(4), "Communication Stopped");
  EXPECT_EQ(Panel(6), "No Connection Active");
  EXPECT_EQ(DisabledEntries(), "");
  EXPECT_EQ(recorder.TakeNotes(), "prepare log\n");
  EXPECT_TRUE(world.dialogs().shown().empty());
}

TEST_F(RunStart, SaysTheCodeOfAnyOtherFailureAndStops) {
  Record();
  Screen({ByteAt("01A0")});
  monitor.options.chk_GeneralLogging(0).Value = true;
  for (const int code : {kDeviceIo, kDiskFull, kPermissionDenied, kPathNotFound}) {
    recorder.log_refusal = RunTimeError(code);
    // The port stays open while the box is up: the stop comes after it.
    ExpectCritical(SystemError(code), "Internal System Error").While([this] {
      EXPECT_EQ(State(), "Stopped, port open, no timers");
      EXPECT_EQ(Panel(4), "Communication Running");
    });
    Start();
    EXPECT_EQ(State(), kStopped);
    EXPECT_EQ(Panel(4), "Communication Stopped");
    EXPECT_EQ(Panel(6), "No Connection Active");
    EXPECT_EQ(DisabledEntries(), "");
  }
}

TEST_F(RunStart, TellsErrorSixtyOneWordForWord) {
  Record();
  Screen({ByteAt("01A0")});
  monitor.options.chk_GeneralLogging(0).Value = true;
  recorder.log_refusal = RunTimeError(kDiskFull, "There is no space left.");
  world.dialogs().ExpectMessageBox(
      {.text = "Internal System Error # 61 occured, please contact distributor. Communication is "
               "stopped",
       .title = "Internal System Error",
       .icon = Icon::kCritical,
       .detail = "There is no space left."});
  Start();
}

TEST_F(RunStart, AFailureOfTheSpreadsheetClosesTheLogAgain) {
  Record();
  Location location = ByteAt("01A0");
  location.DDEEnable = 1;
  Screen({location});
  monitor.options.chk_GeneralLogging(0).Value = true;
  monitor.options.chk_GeneralLogging(1).Value = true;
  recorder.spreadsheet_refusal = RunTimeError(kFileNotFound);
  ExpectCritical(SystemError(53), "Internal System Error");
  Start();
  EXPECT_EQ(recorder.TakeNotes(), "prepare log\nstart spreadsheet\nclose log\n");
  EXPECT_FALSE(monitor.main.filelogging);
  EXPECT_EQ(State(), kStopped);
}

TEST_F(RunStart, PreparesNothingThatIsNotAskedFor) {
  Record();
  Screen({ByteAt("01A0")});
  Start();
  Stop();
  EXPECT_EQ(recorder.TakeNotes(), "");
}

TEST_F(RunStart, PreparesTheLogAndThenTheSpreadsheetBeforeTheRunBegins) {
  Record();
  Location location = ByteAt("01A0");
  location.DDEEnable = 1;
  Screen({location});
  monitor.options.chk_GeneralLogging(0).Value = true;
  monitor.options.chk_GeneralLogging(1).Value = true;
  Start();
  EXPECT_EQ(recorder.TakeNotes(), "prepare log\nstart spreadsheet\n");
  EXPECT_EQ(State(), "Ready, port open, timers Comm_Timer");
}

TEST_F(RunStart, ADeviceThatIsNotThereIsAnOccupiedPort) {
  Screen({ByteAt("01A0")});
  world.port().Unplug();
  ExpectOccupiedBox();
  Start();
  EXPECT_EQ(State(), kStopped);
}

}  // namespace
}  // namespace tarnlink
