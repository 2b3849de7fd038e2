// When the run opens, feeds and closes its records.

#include <gtest/gtest.h>

#include "form/monitor_fixture.h"

namespace tarnlink {
namespace {

class RunRecord : public MonitorTest {
 protected:
  RunRecord() {
    Record();
    monitor.options.chk_GeneralLogging(0).Value = true;
    Screen({ByteAt("0001")});
  }
};

TEST_F(RunRecord, EveryStartPreparesAnewAndEveryStopCloses) {
  for (int i = 0; i < 3; ++i) {
    Start();
    EXPECT_TRUE(monitor.main.filelogging);
    Stop();
    EXPECT_FALSE(monitor.main.filelogging);
    EXPECT_EQ(recorder.TakeNotes(), "prepare log\nclose log\n");
  }
}

TEST_F(RunRecord, ASecondStartWhileRunningPreparesNothing) {
  Start();
  recorder.TakeNotes();
  Start();
  EXPECT_EQ(recorder.TakeNotes(), "");
}

TEST_F(RunRecord, AStopOfAStoppedRunClosesNothing) {
  Stop();
  EXPECT_EQ(recorder.TakeNotes(), "");
}

TEST_F(RunRecord, TheRequestIsRecordedOnceItIsOut) {
  world.on_output = [this](FakeSerialPort&, std::string_view) {
    EXPECT_EQ(recorder.TakeNotes(), "prepare log\n");
  };
  Start();
  Advance(20);
  EXPECT_EQ(recorder.TakeNotes(), "request 1\n");
}

TEST_F(RunRecord, AnUnansweredRequestStandsWithoutAValue) {
  Start();
  ExpectSilentSlaveBox();
  Advance(3020);
  EXPECT_EQ(recorder.TakeNotes(), "prepare log\nrequest 1\nend of row\nclose log\n");
}

TEST_F(RunRecord, ADeviceThatVanishesClosesTheLog) {
  Start();
  Advance(20);
  world.port().Unplug();
  ExpectDeviceGoneBox().While([this] { EXPECT_FALSE(monitor.main.filelogging); });
  Advance(1);
  EXPECT_EQ(recorder.TakeNotes(), "prepare log\nrequest 1\nclose log\n");
}

TEST_F(RunRecord, ABusyPortPreparesNothing) {
  world.port().MakeBusy();
  ExpectOccupiedBox();
  Start();
  EXPECT_EQ(recorder.TakeNotes(), "");
}

TEST_F(RunRecord, AValueThatCannotBeRecordedIsShownAndStopEndsTheRun) {
  recorder.value_refusal = RunTimeError(kDiskFull);
  Start();
  Advance(20);
  Answer(AnswerOf("0001", "A1"));
  EXPECT_EQ(Value(1), "A1");
  Stop();
  EXPECT_EQ(State(), "Stopped, port closed, no timers");
}

TEST_F(RunRecord, AValueThatCannotBeRecordedDoesNotFreezeTheRun) {
  recorder.value_refusal = RunTimeError(kDiskFull);
  Start();
  Advance(20);
  Answer(AnswerOf("0001", "A1"));
  recorder.value_refusal.reset();
  SlaveHolds({{"0001", "B1"}});
  Advance(10'000);
  EXPECT_EQ(Value(1), "B1") << "No timer took the run on: " << State();
  EXPECT_EQ(Panel(4), "Communication Running");
}

TEST_F(RunRecord, ARowThatCannotBeEndedAtATickIsToldAndStopsTheRun) {
  recorder.row_refusal = RunTimeError(kDiskFull);
  Delete(1);
  Screen({ByteAt("0002")});
  Delete(2);
  monitor.main.LocationCount = 1;
  Start();
  ExpectCritical(
      "Internal System Error # 61 occured, please contact distributor. Communication is stopped",
      "Internal System Error");
  Advance(1000);
  EXPECT_EQ(State(), "Stopped, port closed, no timers");
  EXPECT_FALSE(monitor.main.filelogging);
}

TEST_F(RunRecord, ARequestThatCannotBeRecordedIsToldAndStopsTheRun) {
  recorder.request_refusal = RunTimeError(kDiskFull);
  Start();
  ExpectCritical(
      "Internal System Error # 61 occured, please contact distributor. Communication is stopped",
      "Internal System Error");
  Advance(1000);
  EXPECT_EQ(State(), "Stopped, port closed, no timers");
}

}  // namespace
}  // namespace tarnlink
