// The graph's conversation with the slave: who is asked when, what becomes of the answers, what a
// silent or vanished slave does to it.

#include "graph/graph_acquisition.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "protocols/zolt_message.h"
#include "support/fake_world.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr int kTop = MeasureChannel::kUpperBound;
constexpr int kLanesId = 1;
constexpr std::uint8_t kReadAcknowledge = 0x10;
constexpr std::uint8_t kWriteAcknowledge = 0x90;
constexpr std::uint8_t kUnknownId = 0x60;

class GraphAcquisitionTest : public ::testing::Test {
 protected:
  GraphAcquisitionTest() {
    LineColors colors;
    graph.Data.Attributes = LoadDefaultAttributes(colors);
    graph.Data.FirstTime = graph.Data.LastTime = graph.Now();
    graph.ScreenRefreshTimer->SetInterval(5000);
  }

  void Show(int index) {
    Line(index).ShowLine = true;
    graph.Data.AllocateChannel(index);
  }
  GraphAttribute& Line(int index) {
    return graph.Data.Attributes.at(static_cast<std::size_t>(index));
  }
  const MeasureChannel& Channel(int index) {
    return graph.Data.Channels.at(static_cast<std::size_t>(index));
  }
  std::int32_t Newest(int index) { return Channel(index)[kTop].Value; }

  // "type 4 slave 0 id 241 data 0 0" for each request since the last time.
  std::string Sent() {
    std::string text;
    for (const std::string& frame : world.port().TakeSent()) {
      const ZoltMessage one = ParseZoltMessage(frame);
      text += "type " + std::to_string(one.Ack + one.Class) + " slave " + frame.at(2) + " id " +
              std::to_string(one.Id) + " data " + std::to_string(one.DataHi) + " " +
              std::to_string(one.DataLo) + "\n";
    }
    return text;
  }
  std::string Poll(int data_class, int id) {
    return "type " + std::to_string(data_class) + " slave 0 id " + std::to_string(id) +
           " data 0 0\n";
  }
  void Answer(std::uint8_t kind, int id, int high, int low) {
    world.port().Receive(BuildZoltMessage(kind, "0", id, static_cast<std::uint8_t>(high),
                                          static_cast<std::uint8_t>(low)));
    world.Settle();
  }
  void ExpectBusy() {
    world.dialogs().ExpectMessageBox(
        {.text = "Com port busy.", .title = "Communication port", .icon = Icon::kCritical});
  }
  ScriptedDialog& ExpectQuestion(const std::string& verb) {
    return world.dialogs().ExpectMessageBox(
        {.text = "Are you sure you want to " + verb + " communication",
         .title = "ZOLT Communication",
         .icon = Icon::kExclamation,
         .buttons = Buttons::kYesNo});
  }
  // "running" or "stopped", with what the graph says of it.
  std::string State() {
    std::string text = graph.ZOLTCommunication ? "running" : "stopped";
    EXPECT_EQ(menu.mnuZOLTCom.Checked.get(), graph.ZOLTCommunication);
    if (graph.lblCommunicationError.Visible)
      text += ": " + graph.lblCommunicationError.Caption.get();
    return text;
  }

  FakeWorld world;
  frmGraphic graph{world};
  frmContextMenu menu{graph};
  int com_port = 1;
  int baudrate = 1;
  GraphAcquisition acquisition{
      graph, menu, {[this] { return com_port; }, [this] { return baudrate; }}};
};

// --- Starting ------------------------------------------------------------------------------------

TEST_F(GraphAcquisitionTest, BeginsWithThePortOfTheOptions) {
  com_port = 3;
  baudrate = 2;
  menu.SetCommunication(true);
  EXPECT_EQ(world.port().CommPort(), 3);
  EXPECT_EQ(world.port().Settings(), " 4800n,8,1");
  EXPECT_EQ(world.port().RThreshold(), 16);
  EXPECT_TRUE(world.port().PortOpen());
  EXPECT_EQ(graph.CommWatch->Interval(), 2000);
  EXPECT_TRUE(graph.CommWatch->Enabled());
  EXPECT_EQ(State(), "running");
}

TEST_F(GraphAcquisitionTest, EachStoredSpeedDoublesTwelveHundred) {
  for (const auto& [stored, settings] : std::vector<std::pair<int, std::string>>{
           {0, " 1200n,8,1"}, {3, " 9600n,8,1"}, {-4, " 1200n,8,1"}}) {
    baudrate = stored;
    menu.SetCommunication(true);
    EXPECT_EQ(world.port().Settings(), settings);
  }
}

TEST_F(GraphAcquisitionTest, ABusyPortIsToldAndNothingIsSent) {
  world.port().MakeBusy();
  ExpectBusy();
  menu.SetCommunication(true);
  EXPECT_EQ(State(), "stopped: Communication stopped");
  EXPECT_EQ(Sent(), "");
  EXPECT_FALSE(graph.CommWatch->Enabled());
}

TEST_F(GraphAcquisitionTest, APortThatIsThereIsFreeAndClosedAfterwards) {
  EXPECT_TRUE(acquisition.IsPortFree());
  EXPECT_FALSE(world.port().PortOpen());
  world.port().SetPortOpen(true);
  EXPECT_TRUE(acquisition.IsPortFree());
  EXPECT_FALSE(world.port().PortOpen());
  world.port().MakeBusy();
  EXPECT_FALSE(acquisition.IsPortFree());
}

// --- The round -----------------------------------------------------------------------------------

TEST_F(GraphAcquisitionTest, WithoutALineOnlyTheLanesAreAskedFor) {
  menu.SetCommunication(true);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(Sent(), Poll(1, kLanesId));
    Answer(kReadAcknowledge, kLanesId, 1, i);
  }
  EXPECT_EQ(graph.LinePointer, 100);
}

TEST_F(GraphAcquisitionTest, EachAnswerIsStoredAndSendsTheNextRequest) {
  Show(0);
  Show(15);
  menu.SetCommunication(true);
  EXPECT_EQ(Sent(), Poll(4, 241));
  Answer(kReadAcknowledge, 241, 0x12, 0x34);
  EXPECT_EQ(Newest(0), 0x1234);
  EXPECT_EQ(Sent(), Poll(4, 4045));
  Answer(kReadAcknowledge, 4045, 50, 0);
  EXPECT_EQ(Sent(), Poll(1, kLanesId));
  Answer(kReadAcknowledge, kLanesId, 3, 4);
  EXPECT_EQ(Newest(100), 0x304);
  EXPECT_EQ(Sent(), Poll(4, 241));
}

TEST_F(GraphAcquisitionTest, ALineWithACaptionOnlyIsAskedForToo) {
  Line(3).ShowCaption = true;
  menu.SetCommunication(true);
  EXPECT_EQ(Sent(), Poll(4, 855));
}

TEST_F(GraphAcquisitionTest, ALaneIsNotAskedForByItself) {
  Line(101).ShowLine = true;
  Line(101).ID = 77;
  menu.SetCommunication(true);
  Sent();
  Answer(kReadAcknowledge, kLanesId, 0, 0);
  EXPECT_EQ(Sent(), Poll(1, kLanesId));
}

TEST_F(GraphAcquisitionTest, TheRequestCarriesDataAndTheFirstDigitOfTheSlave) {
  Show(0);
  Line(0).Data = 0x1F203;
  Line(0).SlaveAddress = 18;
  menu.SetCommunication(true);
  EXPECT_EQ(Sent(), "type 4 slave 1 id 241 data 242 3\n");
}

TEST_F(GraphAcquisitionTest, TwoLinesOfOneIdAreAskedForInTurn) {
  Show(10);
  Show(11);
  menu.SetCommunication(true);
  Answer(kReadAcknowledge, 4572, 1, 2);
  Answer(kReadAcknowledge, 4572, 3, 4);
  EXPECT_EQ(Sent(), Poll(4, 4572) + Poll(4, 4572) + Poll(1, kLanesId));
  EXPECT_EQ(Newest(10), 0x102);
  EXPECT_EQ(Newest(11), 0x304);
}

TEST_F(GraphAcquisitionTest, ALineThatIsFasterThanASecondKeepsOneSampleOfIt) {
  menu.SetCommunication(true);
  for (int i = 0; i < 5; ++i) Answer(kReadAcknowledge, kLanesId, 0, i);
  EXPECT_EQ(Channel(100).Count(), 1);
  world.Advance(1s);
  Answer(kReadAcknowledge, kLanesId, 0, 9);
  EXPECT_EQ(Channel(100).Count(), 2);
}

// --- Answers that are none -----------------------------------------------------------------------

TEST_F(GraphAcquisitionTest, ABadOrNegativeAnswerCostsOneSample) {
  Show(0);
  menu.SetCommunication(true);
  Sent();
  world.port().Receive(std::string(16, 'x'));
  world.Settle();
  EXPECT_EQ(Sent(), Poll(1, kLanesId));
  EXPECT_EQ(Channel(0).Count(), 0);
  for (const std::uint8_t kind : std::initializer_list<std::uint8_t>{0x20, 0x40, 0x60, 0x90}) {
    Answer(kind, kLanesId, 1, 1);
    EXPECT_EQ(Sent(), Poll(4, 241)) << int{kind};
    Answer(kReadAcknowledge, 241, 0, 0);
    EXPECT_EQ(Sent(), Poll(1, kLanesId));
  }
  EXPECT_EQ(Channel(100).Count(), 0);
  EXPECT_EQ(graph.RetryCount, 0);
}

// The right answer is still to come: a second request would never be caught up with.
TEST_F(GraphAcquisitionTest, AnAnswerToAnotherRequestIsDroppedAndTheWaitGoesOn) {
  Show(0);
  Show(1);
  menu.SetCommunication(true);
  world.Advance(2s);  // the first line is given up
  EXPECT_EQ(Sent(), Poll(4, 241) + Poll(4, 770));
  Answer(kReadAcknowledge, 241, 1, 1);
  EXPECT_EQ(Sent(), "");
  EXPECT_TRUE(graph.CommWatch->Enabled());
  EXPECT_EQ(Channel(0).Count() + Channel(1).Count(), 0);
  Answer(kReadAcknowledge, 770, 2, 2);
  EXPECT_EQ(Newest(1), 0x202);
  EXPECT_EQ(Sent(), Poll(1, kLanesId));
}

TEST_F(GraphAcquisitionTest, ALateAnswerGivesTheRightOneItsTimeAgain) {
  Show(0);
  menu.SetCommunication(true);
  world.Advance(2s);
  Sent();
  world.Advance(1900ms);
  Answer(kReadAcknowledge, 241, 1, 1);
  world.Advance(1900ms);
  EXPECT_EQ(Sent(), "");
  EXPECT_EQ(graph.RetryCount, 0);
  world.Advance(100ms);
  EXPECT_EQ(Sent(), Poll(4, 241));
}

TEST_F(GraphAcquisitionTest, AnIdThatNoRequestCanCarryIsPassedByWithoutWaiting) {
  Show(0);
  Line(0).ID = 0x10000 + 241;
  menu.SetCommunication(true);
  EXPECT_EQ(Sent(), Poll(4, 241));
  Answer(kReadAcknowledge, 241, 1, 1);
  EXPECT_EQ(Channel(0).Count(), 0);
  EXPECT_EQ(Sent(), Poll(1, kLanesId));
}

TEST_F(GraphAcquisitionTest, BytesOfHalfAFrameWaitForMore) {
  menu.SetCommunication(true);
  Sent();
  const std::string frame = BuildZoltMessage(kReadAcknowledge, "0", kLanesId, 7, 7);
  world.port().Receive(frame.substr(0, 10));
  world.Settle();
  EXPECT_EQ(Sent(), "");
  world.port().Receive(frame.substr(10));
  world.Settle();
  EXPECT_EQ(Newest(100), 0x707);
}

TEST_F(GraphAcquisitionTest, LineErrorsAreNotLookedAt) {
  menu.SetCommunication(true);
  Sent();
  world.port().RaiseLineError(kCommFrame);
  world.Settle();
  EXPECT_EQ(Sent(), "");
  EXPECT_TRUE(graph.CommWatch->Enabled());
}

// --- Silence -------------------------------------------------------------------------------------

TEST_F(GraphAcquisitionTest, SilenceIsAskedPastAndToldAtTheSeventhExpiry) {
  Show(0);
  menu.SetCommunication(true);
  std::string expected = Poll(4, 241);
  for (int expiry = 1; expiry <= 6; ++expiry) {
    world.Advance(2s);
    expected += expiry % 2 == 1 ? Poll(1, kLanesId) : Poll(4, 241);
    EXPECT_EQ(graph.RetryCount, expiry);
    EXPECT_EQ(State(), "running");
  }
  EXPECT_EQ(Sent(), expected);
  const int opens = world.port().opens();
  world.Advance(2s);
  EXPECT_EQ(State(), "running: Communication error");
  EXPECT_GT(world.port().opens(), opens) << "The port is tried anew.";
  EXPECT_EQ(graph.RetryCount, 6);
  EXPECT_EQ(Sent(), Poll(4, 241));
  world.Advance(2s);
  EXPECT_EQ(Sent(), Poll(4, 241)) << "From then on every expiry begins anew.";
  Answer(kReadAcknowledge, 241, 0, 1);
  EXPECT_EQ(State(), "running");
  EXPECT_EQ(graph.RetryCount, 0);
}

TEST_F(GraphAcquisitionTest, AnHourWithoutAnAnswerEndsWithTheFirstOne) {
  menu.SetCommunication(true);
  world.Advance(1h);
  EXPECT_EQ(State(), "running: Communication error");
  Answer(kReadAcknowledge, kLanesId, 0, 1);
  EXPECT_EQ(State(), "running");
  EXPECT_EQ(Channel(100).Count(), 1);
}

TEST_F(GraphAcquisitionTest, AnUnpluggedDeviceThatComesBackInTimeGoesOn) {
  menu.SetCommunication(true);
  world.port().Unplug();
  world.Advance(5s);
  EXPECT_EQ(State(), "running");
  world.port().PlugIn();
  world.Advance(2s);
  EXPECT_TRUE(world.port().PortOpen());
  Answer(kReadAcknowledge, kLanesId, 0, 1);
  EXPECT_EQ(Channel(100).Count(), 1);
}

TEST_F(GraphAcquisitionTest, AnUnpluggedDeviceThatStaysAwayIsTold) {
  menu.SetCommunication(true);
  world.port().Unplug();
  ExpectBusy();
  world.Advance(20s);
  EXPECT_EQ(State(), "stopped: Communication stopped");
  world.port().PlugIn();
  menu.SetCommunication(true);
  EXPECT_EQ(State(), "running");
}

// --- Stopping ------------------------------------------------------------------------------------

TEST_F(GraphAcquisitionTest, WhatComesInAfterTheStopIsDropped) {
  menu.SetCommunication(true);
  Sent();
  menu.SetCommunication(false);
  Answer(kReadAcknowledge, kLanesId, 1, 1);
  EXPECT_EQ(Channel(100).Count(), 0);
  EXPECT_EQ(world.port().InBufferCount(), 0);
  EXPECT_TRUE(world.port().PortOpen()) << "It stays open until the form goes.";
  world.Advance(1min);
  EXPECT_EQ(Sent(), "");
}

TEST_F(GraphAcquisitionTest, TheMenuAsksBeforeItStopsOrStarts) {
  menu.SetTimeScroll(true);
  menu.SetCommunication(true);
  ExpectQuestion("stop").Press(Answer::kNo);
  menu.mnuZOLTCom.Press();
  EXPECT_EQ(State(), "running");
  ExpectQuestion("stop").Press(Answer::kYes);
  menu.mnuZOLTCom.Press();
  EXPECT_EQ(State(), "stopped: Communication stopped");
  EXPECT_FALSE(graph.AutoScroll);
  EXPECT_FALSE(menu.mnuTimeScroll.Checked);
  ExpectQuestion("start").Press(Answer::kYes);
  menu.mnuZOLTCom.Press();
  EXPECT_EQ(State(), "running");
  EXPECT_TRUE(graph.AutoScroll);
  EXPECT_TRUE(menu.mnuTimeScroll.Checked);
  EXPECT_TRUE(graph.ScreenRefreshTimer->Enabled());
}

TEST_F(GraphAcquisitionTest, AFileOfTwoDaysAgoIsNotCarriedOn) {
  graph.Data.LastTime = graph.Now() - 1;
  ExpectQuestion("start").Press(Answer::kNo);
  menu.mnuZOLTCom.Press();
  for (const Date days : {-2.0, 1.0}) {
    graph.Data.LastTime = graph.Now() + days;
    world.dialogs().ExpectMessageBox(
        {.text = "Last measurement more than 24 hours ago. Can not start.",
         .title = "ZOLT Communication",
         .icon = Icon::kExclamation});
    menu.mnuZOLTCom.Press();
    EXPECT_EQ(State(), "stopped: Communication stopped");
    EXPECT_FALSE(graph.AutoScroll);
  }
}

// Midnights count, not hours.
TEST_F(GraphAcquisitionTest, TwoMidnightsAgoIsTooLongAgo) {
  graph.Data.LastTime = ToDate({2024, 3, 4, 0, 0, 0});  // the clock begins on 5 March, 14:07
  ExpectQuestion("start").Press(Answer::kNo);
  menu.mnuZOLTCom.Press();
  graph.Data.LastTime = ToDate({2024, 3, 3, 23, 59, 59});
  world.dialogs().ExpectMessageBox(
      {.text = "Last measurement more than 24 hours ago. Can not start.",
       .title = "ZOLT Communication",
       .icon = Icon::kExclamation});
  menu.mnuZOLTCom.Press();
}

TEST_F(GraphAcquisitionTest, ARunningOneThatIsTooOldIsStoppedWithoutAWord) {
  menu.SetCommunication(true);
  graph.Data.LastTime = graph.Now() - 3;
  menu.mnuZOLTCom.Press();
  EXPECT_EQ(State(), "stopped: Communication stopped");
}

// --- Test mode -----------------------------------------------------------------------------------

TEST_F(GraphAcquisitionTest, TheTestCommandTakesThePlaceOfAPoll) {
  Show(0);
  Line(0).SlaveAddress = 5;
  menu.SetCommunication(true);
  Sent();
  acquisition.TestMouseDown(MouseButton::kLeft);
  EXPECT_EQ(graph.lblTest.ForeColor.get(), kWhite);
  acquisition.TestMouseUp();
  EXPECT_EQ(graph.lblTest.ForeColor.get(), graph.Data.Colors.CaptionColor);
  EXPECT_EQ(Sent(), "") << "After the next answer.";
  Answer(kReadAcknowledge, 241, 1, 1);
  EXPECT_EQ(Sent(), "type 129 slave 0 id 14 data 255 100\n");
  EXPECT_EQ(graph.LinePointer, 0);
  Answer(kWriteAcknowledge, 14, 255, 100);
  EXPECT_EQ(Sent(), Poll(1, kLanesId)) << "The line after the previous one.";
}

TEST_F(GraphAcquisitionTest, TheTestCommandSaysOffWithoutPower) {
  graph.TestModeOn = false;
  menu.SetCommunication(true);
  Sent();
  acquisition.TestMouseDown(MouseButton::kLeft);
  Answer(kUnknownId, kLanesId, 0, 0);
  EXPECT_EQ(Sent(), "type 129 slave 0 id 14 data 0 0\n");
}

TEST_F(GraphAcquisitionTest, AReadAcknowledgeOfTheTestCommandIsNoSample) {
  menu.SetCommunication(true);
  acquisition.TestMouseDown(MouseButton::kLeft);
  Answer(kReadAcknowledge, kLanesId, 0, 1);
  world.Advance(1s);
  Answer(kReadAcknowledge, 14, 0, 2);
  EXPECT_EQ(Channel(100).Count(), 1);
  EXPECT_EQ(Newest(100), 1);
}

TEST_F(GraphAcquisitionTest, WhileStoppedTheTestCommandWaits) {
  acquisition.TestMouseDown(MouseButton::kLeft);
  world.Advance(1min);
  EXPECT_EQ(Sent(), "");
  menu.SetCommunication(true);
  EXPECT_EQ(Sent(), "type 129 slave 0 id 14 data 255 100\n");
  // No line has been asked for yet.
  Answer(kReadAcknowledge, 14, 0, 0);
  EXPECT_EQ(Sent(), Poll(1, kLanesId));
}

TEST_F(GraphAcquisitionTest, AnyOtherButtonAsksForTheSettings) {
  int asked = 0;
  acquisition.ShowTestMode = [&] { ++asked; };
  acquisition.TestMouseDown(MouseButton::kRight);
  acquisition.TestMouseDown(MouseButton::kMiddle);
  EXPECT_EQ(asked, 2);
  EXPECT_FALSE(graph.SendTestMode);
}

}  // namespace
}  // namespace tarnlink
