// The link's panel and its trace.
#include <gtest/gtest.h>

#include "platform/watched_platform.h"
#include "protocols/zolt_message.h"
#include "support/fake_world.h"
#include "tools/frm_link_health.h"
#include "tools/frm_link_trace.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

std::string Joined(const std::vector<std::string>& rows) {
  std::string text;
  for (const std::string& row : rows) text += row + "\n";
  return text;
}

class LinkFormsTest : public testing::Test {
 protected:
  LinkFormsTest() { port->SetPortOpen(true); }

  void Ask(std::string_view slave = "3") { port->Output(BuildZoltMessage(0x01, slave, 1, 0, 0)); }
  void Answers(Micros later, std::string_view slave = "3") {
    world.Advance(later);
    world.port().Receive(BuildZoltMessage(0x11, slave, 1, 0x2A, 0));
  }
  void Exchange(std::string_view slave = "3") {
    Ask(slave);
    Answers(20ms, slave);
  }
  std::string Shown() const {
    std::string text;
    for (const TraceEntry& entry : trace.Rows.rows()) text += TraceLine(entry) + "\n";
    return text;
  }

  FakeWorld world;
  LinkRecord record{world.clock()};
  WatchedPlatform watched{world, record};
  std::unique_ptr<SerialPort> port = watched.CreatePort();
  frm_LinkHealth health{world, record};
  frm_LinkTrace trace{world, record};
};

TEST_F(LinkFormsTest, ThePanelHasARowForEachSlaveAndOneForAll) {
  health.Show();
  EXPECT_EQ(Joined(health.lstSlaves.List), "");
  Exchange();
  world.Advance(500ms);
  EXPECT_EQ(Joined(health.lstSlaves.List), "3\t1\t1\t0\t0\t0\t20.0\t20.0\t20.0\t\n");
  Ask("A");
  world.Advance(2s);
  Ask("A");
  world.Advance(500ms);
  EXPECT_EQ(Joined(health.lstSlaves.List),
            "All\t3\t1\t0\t1\t0\t20.0\t20.0\t20.0\t\n"
            "3\t1\t1\t0\t0\t0\t20.0\t20.0\t20.0\t\n"
            "A\t2\t0\t0\t1\t0\t-\t-\t-\t\n");
}

TEST_F(LinkFormsTest, TheLastBadFrameStandsThereCutToALine) {
  health.Show();
  Ask();
  world.port().Receive("\r" + std::string(40, '0'));
  world.port().Receive(std::string(33, 'x'));
  Ask();
  world.Advance(500ms);
  const std::string row = health.lstSlaves.List.get().front();
  EXPECT_EQ(row.substr(0, row.rfind('\t')), "3\t2\t0\t0\t0\t1\t-\t-\t-");
  EXPECT_EQ(row.substr(row.rfind('\t') + 1).size(), 32U * 3 - 1 + 4);
  EXPECT_TRUE(row.ends_with("78 78 ..."));
}

TEST_F(LinkFormsTest, AProtocolWithoutAddressesHasADash) {
  health.Show();
  port->Output("\4\00501A0D7\3");
  world.Advance(500ms);
  EXPECT_EQ(Joined(health.lstSlaves.List), "-\t1\t0\t0\t0\t0\t-\t-\t-\t\n");
}

TEST_F(LinkFormsTest, ThePanelTellsTheAgeOfEachValue) {
  health.Ages = [] {
    return std::vector<ValueAge>{{.index = 1, .name = "Flow", .seconds = 0.44},
                                 {.index = 2, .name = "Return", .seconds = 59.99},
                                 {.index = 3, .name = "Fan", .seconds = 125.9, .is_old = true},
                                 {.index = 4, .name = "Flame", .seconds = 11'520},
                                 {.index = 5, .name = "Error", .is_old = true}};
  };
  health.Show();
  EXPECT_EQ(Joined(health.lstAges.List),
            "1\tFlow\t0.4 s\n2\tReturn\t60.0 s\n3\tFan\t2 min 5 s, old\n4\tFlame\t3 h 12 min\n"
            "5\tError\tnever answered\n");
}

// A wrong message on purpose may bear any byte as its address, and a name any text.
TEST_F(LinkFormsTest, ATabInATextDoesNotShiftTheColumns) {
  health.Ages = [] {
    return std::vector<ValueAge>{{.index = 1, .name = "a\tb", .seconds = 1, .is_old = false}};
  };
  Ask("\t");
  health.Show();
  EXPECT_EQ(record.trace().front().meaning, "slave  : read class 1, ID 0001");
  EXPECT_EQ(Joined(health.lstSlaves.List), " \t1\t0\t0\t0\t0\t-\t-\t-\t\n");
  EXPECT_EQ(Joined(health.lstAges.List), "1\ta b\t1.0 s\n");
}

TEST_F(LinkFormsTest, ClearCountsFromZero) {
  health.Show();
  Exchange();
  health.cmdClear.Press();
  EXPECT_EQ(Joined(health.lstSlaves.List), "");
  Exchange();
  world.Advance(500ms);
  EXPECT_EQ(Joined(health.lstSlaves.List), "3\t1\t1\t0\t0\t0\t20.0\t20.0\t20.0\t\n");
}

TEST_F(LinkFormsTest, APanelThatIsHiddenRestsAndCountsOn) {
  health.Show();
  health.Hide();
  Exchange();
  world.Advance(2s);
  EXPECT_EQ(Joined(health.lstSlaves.List), "");
  health.Show();
  EXPECT_EQ(health.lstSlaves.List.get().size(), 1U) << "At once, without waiting for the timer.";
}

TEST_F(LinkFormsTest, ThePanelComesBackAsItWasLeft) {
  health.Load();
  EXPECT_FALSE(health.form.Visible);
  health.Show();
  frm_LinkHealth second(world, record);
  second.Load();
  EXPECT_TRUE(second.form.Visible);
  second.Hide();
  frm_LinkHealth third(world, record);
  third.Load();
  EXPECT_FALSE(third.form.Visible);
}

// --- The trace -----------------------------------------------------------------------------------

TEST_F(LinkFormsTest, TheTraceShowsEachFrameWithTimeAndMeaning) {
  Exchange();
  trace.Show();
  EXPECT_EQ(Shown(),
            "14:07:09.000\t\trequest\tslave 3: read class 1, ID 0001\t"
            "0D 01 33 30 30 30 31 30 30 30 30 46 41 45 42 0A\n"
            "14:07:09.020\t+ 20.0\tanswer\tslave 3: class 1, ID 0001 is 2A00\t"
            "0D 11 33 30 30 30 31 32 41 30 30 36 43 32 44 0A\n");
  EXPECT_EQ(trace.lblCount.Caption.get(), "2 of the last 20000 are shown");
}

TEST_F(LinkFormsTest, TheTraceFollowsTheLine) {
  trace.Show();
  Exchange();
  EXPECT_EQ(trace.Rows.rows().size(), 0U);
  world.Advance(200ms);
  EXPECT_EQ(trace.Rows.rows().size(), 2U);
  Exchange();
  world.Advance(200ms);
  EXPECT_EQ(trace.Rows.rows().size(), 4U);
  EXPECT_EQ(trace.Rows.rows().back().number, 4);
}

TEST_F(LinkFormsTest, WhatIsHeldStaysAndCatchesUp) {
  trace.Show();
  Exchange();
  world.Advance(200ms);
  trace.chkHold.Value = true;
  Exchange();
  world.Advance(1s);
  EXPECT_EQ(trace.Rows.rows().size(), 2U);
  EXPECT_EQ(trace.lblCount.Caption.get(), "2 of the last 20000 are shown, 2 came since");
  trace.chkHold.Value = false;
  EXPECT_EQ(trace.Rows.rows().size(), 4U);
}

TEST_F(LinkFormsTest, OnlyWhatWentWrong) {
  Exchange();
  Ask();
  world.Advance(1s);
  Ask();
  world.port().Receive("\r12");
  Ask();
  world.port().Receive(BuildZoltMessage(0x61, "3", 1, 0, 0));
  world.port().Receive(BuildZoltMessage(0x11, "4", 1, 0, 0));
  port->SetPortOpen(false);
  trace.Show();
  const auto kinds = [&] {
    std::string text;
    for (const TraceEntry& entry : trace.Rows.rows())
      text.append(TraceKindText(entry.kind)).append(" ");
    return text;
  };
  EXPECT_EQ(kinds(), "request answer request time-out request bad request refusal other closed ");
  trace.chkHold.Value = true;
  trace.chkOnlyWrong.Value = true;
  EXPECT_EQ(kinds(), "time-out bad refusal other ");
  trace.chkOnlyWrong.Value = false;
  EXPECT_EQ(trace.Rows.rows().size(), 10U);
}

TEST_F(LinkFormsTest, ClearEmptiesTheTraceAlsoWhileItIsHeld) {
  Exchange();
  trace.Show();
  trace.chkHold.Value = true;
  trace.cmdClear.Press();
  EXPECT_EQ(Shown(), "");
  EXPECT_EQ(trace.lblCount.Caption.get(), "0 of the last 20000 are shown");
  trace.chkHold.Value = false;
  Exchange();
  world.Advance(200ms);
  EXPECT_EQ(trace.Rows.rows().size(), 2U);
}

// The panel's Clear forgets the trace, whoever shows it; what is held stays to be looked at.
TEST_F(LinkFormsTest, TheTraceFollowsTheClearOfThePanel) {
  health.Show();
  trace.Show();
  Exchange();
  world.Advance(500ms);
  trace.chkHold.Value = true;
  health.cmdClear.Press();
  world.Advance(500ms);
  EXPECT_EQ(trace.Rows.rows().size(), 2U);
  trace.chkHold.Value = false;
  EXPECT_EQ(Shown(), "");
  Exchange();
  world.Advance(500ms);
  EXPECT_EQ(trace.Rows.rows().size(), 2U);
  health.cmdClear.Press();
  Exchange();
  world.Advance(500ms);
  EXPECT_EQ(trace.Rows.rows().size(), 2U);
}

TEST_F(LinkFormsTest, TheTraceKeepsToItsRows) {
  trace.Show();
  for (int i = 0; i < 11'000; ++i) {
    Exchange();
    if (i % 1'000 == 0) world.Advance(200ms);
  }
  world.Advance(200ms);
  EXPECT_EQ(trace.Rows.rows().size(), LinkRecord::kMostEntries);
  EXPECT_EQ(trace.Rows.rows().back().number, 22'000);
  EXPECT_EQ(trace.Rows.rows().front().number, 2'001);
}

// A model of rows is told of each change before and after it, and knows how many rows there are.
TEST_F(LinkFormsTest, TheViewIsToldOfEachChange) {
  std::size_t rows = 0;
  std::size_t coming = 0;
  std::size_t going = 0;
  trace.Rows.Appending = [&](std::size_t count) { coming = count; };
  trace.Rows.Appended = [&] { rows += coming; };
  trace.Rows.Dropping = [&](std::size_t count) { going = count; };
  trace.Rows.Dropped = [&] { rows -= going; };
  trace.Show();
  for (int i = 0; i < 12'000; ++i) Exchange();
  world.Advance(200ms);
  EXPECT_EQ(rows, trace.Rows.rows().size());
  Exchange();
  world.Advance(200ms);
  EXPECT_EQ(rows, trace.Rows.rows().size());
  trace.Unload();
  EXPECT_EQ(rows, 0U);
}

TEST_F(LinkFormsTest, TheTraceIsSavedAsAText) {
  world.disk().MakeFolder("/work");
  Exchange();
  trace.Show();
  world.dialogs().ExpectSaveFile("Save list").Give("/work/line.txt");
  trace.cmdSave.Press();
  EXPECT_EQ(world.disk().Get("/work/line.txt"),
            "Time\tAfter ms\tKind\tMeaning\tBytes\r\n"
            "14:07:09.000\t\trequest\tslave 3: read class 1, ID 0001\t"
            "0D 01 33 30 30 30 31 30 30 30 30 46 41 45 42 0A\r\n"
            "14:07:09.020\t+ 20.0\tanswer\tslave 3: class 1, ID 0001 is 2A00\t"
            "0D 11 33 30 30 30 31 32 41 30 30 36 43 32 44 0A\r\n");
}

TEST_F(LinkFormsTest, ATraceThatCanNotBeSavedIsTold) {
  world.faults().Break("Files.WriteWhole", RunTimeError(kDiskFull, "The disk is full."));
  world.dialogs().ExpectSaveFile("Save list").Give("/work/line.txt");
  world.dialogs().ExpectMessageBox({.text = "The list can not be saved.",
                                    .title = "Link trace",
                                    .icon = Icon::kCritical,
                                    .detail = "The disk is full."});
  trace.Show();
  trace.cmdSave.Press();
}

TEST_F(LinkFormsTest, TheTraceIsCopied) {
  Exchange();
  std::string copied;
  trace.CopyText = [&](const std::string& text) { copied = text; };
  trace.Show();
  trace.cmdCopy.Press();
  EXPECT_TRUE(copied.starts_with("Time\t")) << copied;
  EXPECT_EQ(std::count(copied.begin(), copied.end(), '\n'), 3);
}

TEST_F(LinkFormsTest, AClosedTraceRestsAndBeginsWithAllThatIsKept) {
  trace.Show();
  trace.chkHold.Value = true;
  trace.Unload();
  Exchange();
  world.Advance(1s);
  EXPECT_EQ(Shown(), "");
  EXPECT_FALSE(trace.chkHold.Value);
  trace.Show();
  EXPECT_EQ(trace.Rows.rows().size(), 2U);
}

TEST(TraceTexts, TimesOfDayHaveThousandths) {
  EXPECT_EQ(TraceTimeText(0), "00:00:00.000");
  EXPECT_EQ(TraceTimeText(45'000 + 86'399.9994 / kSecondsPerDay), "23:59:59.999");
  EXPECT_EQ(TraceTimeText(45'000 + 86'399.9999 / kSecondsPerDay), "00:00:00.000");
  EXPECT_EQ(TraceTimeText(45'000 + 3'661.5 / kSecondsPerDay), "01:01:01.500");
}

}  // namespace
}  // namespace tarnlink
