// The graph's conversation with the slave: who is asked when, what a silent or vanished slave does
// to it, how it is stopped and started.

#include "form/graph_acquisition_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

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
  for (int i = 0; i < 10; ++i) {
    EXPECT_EQ(Sent(), Poll(1, kLanesId));
    world.Advance(140ms);
    Answer(kReadAcknowledge, kLanesId, 1, i);
  }
  EXPECT_EQ(graph.LinePointer, 100);
}

// At 2400 baud 32 bytes take 133 ms: the answer of a request that was given up, or another slave's.
TEST_F(GraphAcquisitionTest, AnAnswerSoonerThanTheLineCanBringItMakesTheNextRequestWait) {
  menu.SetCommunication(true);
  for (int i = 0; i < 3; ++i) {
    world.Advance(140ms);
    Answer(kReadAcknowledge, kLanesId, 1, i);
  }
  Sent();
  world.Advance(100ms);
  Answer(kReadAcknowledge, kLanesId, 1, 1);
  EXPECT_EQ(Sent(), "");
  world.Advance(260ms);
  EXPECT_EQ(Sent(), Poll(1, kLanesId));
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

TEST_F(GraphAcquisitionTest, TheTestCommandTakesThePlaceOfAPollAfterAnExpiryToo) {
  Show(0);
  menu.SetCommunication(true);
  Sent();
  acquisition.TestMouseDown(MouseButton::kLeft);
  world.Advance(2s);
  EXPECT_EQ(Sent(), "type 129 slave 0 id 14 data 255 100\n");
  Answer(kWriteAcknowledge, 14, 255, 100);
  EXPECT_EQ(Sent(), Poll(1, kLanesId));
}

TEST_F(GraphAcquisitionTest, ALineWithTheIdOfTheTestCommandTakesItsReadAcknowledge) {
  Show(0);
  Line(0).ID = 14;
  menu.SetCommunication(true);
  acquisition.TestMouseDown(MouseButton::kLeft);
  Answer(kReadAcknowledge, 14, 0, 1);
  world.Advance(1s);
  Answer(kReadAcknowledge, 14, 0, 2);
  EXPECT_EQ(Channel(0).Count(), 2);
}

TEST_F(GraphAcquisitionTest, TheSameSecondHasOneSampleHoweverItIsRounded) {
  menu.SetCommunication(true);
  world.Advance(400ms);
  Answer(kReadAcknowledge, kLanesId, 0, 1);
  world.Advance(200ms);
  Answer(kReadAcknowledge, kLanesId, 0, 2);
  EXPECT_EQ(Channel(100).Count(), 1);
  world.Advance(400ms);
  Answer(kReadAcknowledge, kLanesId, 0, 3);
  EXPECT_EQ(Channel(100).Count(), 2);
}

TEST_F(GraphAcquisitionTest, ABusyPortAtTheBeginningIsToldAndStops) {
  world.port().MakeBusy();
  ExpectBusy();
  acquisition.InitCom();
  EXPECT_EQ(State(), "stopped: Communication stopped");
  EXPECT_EQ(Sent(), "");
}

TEST_F(GraphAcquisitionTest, TheSpeedIsHeldInWhatAPortHas) {
  baudrate = -4;
  menu.SetCommunication(true);
  EXPECT_EQ(world.port().Settings(), " 1200n,8,1");
}

TEST_F(GraphAcquisitionTest, TheTextsAreThoseOfTheForm) {
  EXPECT_EQ(graph.lblTest.Caption.get(), "Test");
  EXPECT_EQ(graph.lblTest.ToolTipText.get(), "Send testmode command to ZOLT");
  EXPECT_EQ(graph.lblExit.Caption.get(), "Exit");
  EXPECT_EQ(graph.lblExit.ToolTipText.get(), "Click to exit ");
  EXPECT_EQ(menu.mnuZOLTCom.Caption.get(), "ZOLT communication");
  EXPECT_EQ(menu.mnuExit.Caption.get(), "Quit Graphics");
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
