// The control panel on a line that is silent, busy, gone or bad, byte by byte.

#include "tools/control_panel_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

class ControlPanelLine : public ControlPanelTest {
 protected:
  ControlPanelLine() {
    panel.Show();
    ignores_errors = true;
  }

  // What an answer that is in order brings, once the line is out of doubt.
  void ExpectRepeated(const std::string& request, Micros at_most) {
    EXPECT_TRUE(world.RunUntil(
        [&] { return !world.port().frames().empty() && world.port().frames().size() > sent_; },
        at_most));
    EXPECT_EQ(Sent(), Requests{request});
    sent_ = world.port().frames().size();
  }
  void Begin(CommandButton& button) {
    button.Press();
    Sent();
    sent_ = world.port().frames().size();
  }
  std::string Good() { return PanelFrame(kReadDone + 1, 1, "8100"); }

  // Longer than the quiet that the panel waits for, shorter than a time-out.
  static constexpr Micros kQuiet = 1100ms;
  std::size_t sent_ = 0;
};

// --- Silence -------------------------------------------------------------------------------------

TEST_F(ControlPanelLine, SilenceIsToldAndTheSameRequestGoesOutAgain) {
  ignores_errors = false;
  panel.cmdUpdateError.Press();
  panel.form.MousePointer = 11;
  world.Advance(2999ms);
  EXPECT_EQ(Sent(), Requests{"1 50 0000"});
  ExpectTimeout().While([&] {
    EXPECT_FALSE(panel.tim_CommTimeout->Enabled());
    EXPECT_EQ(panel.form.MousePointer, 0);
    EXPECT_TRUE(world.port().PortOpen()) << "It is closed afterwards.";
  });
  world.Advance(1ms);
  EXPECT_EQ(world.port().closes(), 1);
  EXPECT_EQ(world.port().opens(), 2);
  EXPECT_TRUE(panel.tim_CommTimeout->Enabled());
  EXPECT_EQ(Sent(), Requests{"1 50 0000"});
  for (int time = 0; time < 3; ++time) {
    ExpectTimeout();
    world.Advance(3s);
    EXPECT_EQ(Sent(), Requests{"1 50 0000"});
  }
  AnswerLast(kReadDone, "0400");
  EXPECT_EQ(panel.txt_Error.Text.get(), "4");
}

TEST_F(ControlPanelLine, WithTheOptionSilenceIsNotTold) {
  panel.cmdUpdateError.Press();
  world.Advance(10s);
  EXPECT_EQ(Sent(), Requests(4, "1 50 0000"));
  EXPECT_EQ(world.port().closes(), 3);
}

TEST_F(ControlPanelLine, ACommandIsRepeatedUntilItIsAcknowledged) {
  panel.cmdHeadDemand.Press();
  world.Advance(4s);
  EXPECT_EQ(Sent(), Requests(2, "129 14 FFFF"));
  AnswerLast(kWriteDone, "FFFF");
  world.Advance(10s);
  EXPECT_EQ(Sent(), Requests{});
  EXPECT_TRUE(panel.chk_HeatDemand.Value);
}

// Another master's command to the same slave does not pass for a press that still waits.
TEST_F(ControlPanelLine, AnotherMastersWriteDoesNotAnswerAPressThatHasNotGoneOut) {
  panel.cmdUpdateError.Press();
  Sent();
  Answer(kReadDone | 1, 91, "0001");
  panel.cmdHeadDemand.Press();
  EXPECT_EQ(Sent(), Requests{}) << "The line is in doubt.";
  Answer(kWriteDone | 1, 14, "FF00");
  EXPECT_EQ(Pending().front(), 1);
  world.Advance(2s);
  EXPECT_EQ(Sent(), Requests{"129 14 FFFF"});
}

// Nothing else would say that the values are old.
TEST_F(ControlPanelLine, WithoutTheBoxTheFormSaysThatTheSlaveIsSilent) {
  panel.cmdUpdateError.Press();
  world.Advance(2999ms);
  EXPECT_EQ(panel.lblLine.Caption.get(), "");
  world.Advance(1ms);
  EXPECT_EQ(panel.lblLine.Caption.get(), "The slave does not answer. It is asked again.");
  world.Advance(10s);
  EXPECT_NE(panel.lblLine.Caption.get(), "");
  AnswerLast(kReadDone, "0001");
  EXPECT_EQ(panel.lblLine.Caption.get(), "");
  ignores_errors = false;
  panel.cmdUpdateError.Press();
  ExpectTimeout();
  world.Advance(4s);
  EXPECT_EQ(panel.lblLine.Caption.get(), "");
}

// The exchange goes on behind the box; what is pending then is asked for again.
TEST_F(ControlPanelLine, AnAnswerWhileTheBoxIsUpGoesOnWithTheNextRequest) {
  ignores_errors = false;
  panel.cmdUpdateConfig.Press();
  ExpectTimeout().While([&] {
    Sent();
    AnswerLast(kReadDone, "0001");
    EXPECT_EQ(Sent(), Requests{"2 91 0000"});
  });
  world.Advance(3s);
  EXPECT_EQ(Sent(), Requests{"2 91 0000"});
  EXPECT_TRUE(panel.chk_configL(0).Value);
}

TEST_F(ControlPanelLine, ALateAnswerThatLeavesNothingPendingEndsTheTimeouts) {
  ignores_errors = false;
  panel.cmdResetError.Press();
  ExpectTimeout().While([&] { AnswerLast(kWriteDone, "AA55"); });
  world.Advance(1h);
  EXPECT_EQ(Sent(), Requests{"131 171 AA55"});
  EXPECT_FALSE(panel.tim_CommTimeout->Enabled());
}

TEST_F(ControlPanelLine, LeftWhileTheBoxIsUpThePortStaysClosed) {
  ignores_errors = false;
  panel.cmdUpdateStatus.Press();
  ExpectTimeout().While([&] {
    panel.Unload();
    panel.chkContinuousUpdate.Value = true;
  });
  world.Advance(1h);
  EXPECT_EQ(Sent(), Requests{"1 1 0000"});
  EXPECT_FALSE(world.port().PortOpen());
}

TEST_F(ControlPanelLine, OnlyOneBoxIsUpAtATime) {
  ignores_errors = false;
  panel.cmdUpdateConfig.Press();
  ExpectTimeout().While([&] { AnswerLast(kReadDone, "0001"); }).For(1min);
  world.Advance(3s);
  EXPECT_EQ(world.dialogs().shown().size(), 1U);
}

// --- The time of a request ---

TEST_F(ControlPanelLine, APressBeginsTheTimeAnew) {
  ignores_errors = false;
  for (CommandButton* press :
       {&panel.cmdUpdateConfig, &panel.cmdResetError, &panel.cmdHeadDemand}) {
    panel.Unload();
    panel.Show();
    panel.cmdUpdateStatus.Press();
    world.Advance(2900ms);
    press->Press();
    Sent();
    world.Advance(2999ms);
    EXPECT_EQ(Sent(), Requests{});
    ExpectTimeout();
    world.Advance(1ms);
    EXPECT_EQ(Sent().size(), 1U);
  }
}

TEST_F(ControlPanelLine, TheRequestBehindTheBoxHasItsWholeTime) {
  ignores_errors = false;
  panel.cmdUpdateConfig.Press();
  ExpectTimeout().While([&] { AnswerLast(kReadDone, "0001"); }).For(2500ms);
  world.Advance(5500ms);
  EXPECT_EQ(Sent(), (Requests{"2 84 0000", "2 91 0000", "2 91 0000"}));
  world.Advance(2999ms);
  EXPECT_EQ(Sent(), Requests{});
  ExpectTimeout();
  world.Advance(1ms);
  EXPECT_EQ(Sent(), Requests{"2 91 0000"});
}

// --- A port that cannot be had -------------------------------------------------------------------

TEST_F(ControlPanelLine, ABusyPortIsToldAndTriedAgainUntilItIsFree) {
  ignores_errors = false;
  world.port().MakeBusy();
  panel.cmdUpdateConfig.Press();
  EXPECT_NE(panel.lblLine.Caption.get(), "");
  EXPECT_EQ(Sent(), Requests{});
  for (int time = 0; time < 3; ++time) {
    ExpectTimeout();
    world.Advance(3s);
  }
  EXPECT_EQ(Sent(), Requests{});
  EXPECT_EQ(Pending(), PanelTabs()[1].indices);
  world.port().MakeBusy(false);
  ExpectTimeout();
  world.Advance(3s);
  EXPECT_EQ(Sent(), Requests{"2 84 0000"});
  EXPECT_EQ(panel.lblLine.Caption.get(), "");
}

TEST_F(ControlPanelLine, WhatIsToldOfThePortIsGoneWhenThePanelIsOpenedAgain) {
  world.port().MakeBusy();
  panel.cmdUpdateConfig.Press();
  panel.Unload();
  panel.Show();
  EXPECT_EQ(panel.lblLine.Caption.get(), "");
}

TEST_F(ControlPanelLine, ThePortOfTheOptionsIsTakenWhenItIsOpened) {
  com_port = 7;
  baudrate = 4;
  panel.cmdUpdateConfig.Press();
  EXPECT_EQ(world.port().CommPort(), 7);
  EXPECT_EQ(world.port().opened_with().speed, 19'200);
}

TEST_F(ControlPanelLine, APortThatBecameFreeServesTheNextPress) {
  world.port().MakeBusy();
  panel.cmdUpdateConfig.Press();
  world.port().MakeBusy(false);
  panel.cmdUpdateError.Press();
  EXPECT_EQ(Sent(), Requests{"1 50 0000"});
}

TEST_F(ControlPanelLine, AnUnpluggedDeviceIsToldAndServesAgainWhenItIsBack) {
  ignores_errors = false;
  Begin(panel.cmdUpdateConfig);
  world.port().Unplug();
  world.Settle();
  EXPECT_NE(panel.lblLine.Caption.get(), "");
  ExpectTimeout();
  world.Advance(3s);
  EXPECT_EQ(Sent(), Requests{});
  world.port().PlugIn();
  ExpectTimeout();
  world.Advance(3s);
  EXPECT_EQ(Sent(), Requests{"2 84 0000"});
  EXPECT_EQ(panel.lblLine.Caption.get(), "");
}

TEST_F(ControlPanelLine, AnUnpluggedDeviceIsToldWhileNothingIsAskedFor) {
  Begin(panel.cmdResetError);
  AnswerLast(kWriteDone, "AA55");
  world.port().Unplug();
  world.Settle();
  EXPECT_NE(panel.lblLine.Caption.get(), "");
  world.Advance(1h);
  EXPECT_EQ(Sent(), Requests{});
}

TEST_F(ControlPanelLine, EveryFailingCallOfThePortIsSilentAndPasses) {
  for (const char* call :
       {"Port.Open", "Port.Output", "Port.Input", "Port.Close", "Port.Settings"}) {
    panel.Unload();
    panel.Show();
    if (std::string(call) == "Port.Close") panel.cmdUpdateStatus.Press();
    world.faults().Break(call, RunTimeError(kDeviceIo, "It broke."));
    panel.cmdResetError.Press();
    if (std::string(call) == "Port.Input") AnswerLast(kWriteDone, "AA55");
    if (std::string(call) == "Port.Close") world.Advance(3s);
    EXPECT_TRUE(world.faults().Spent()) << call;
    Sent();
    world.Advance(3s);
    if (Pending().empty()) continue;  // the answer was read the second time
    EXPECT_EQ(Sent().size(), 1U) << call;
  }
}

// --- Bad answers ---------------------------------------------------------------------------------

TEST_F(ControlPanelLine, AnAnswerWithABadCheckIsDroppedAndTheRequestRepeatedAtOnce) {
  Begin(panel.cmdUpdateStatus);
  for (std::size_t at = 1; at < 15; ++at) {
    std::string frame = Good();
    frame[at] = static_cast<char>(frame[at] ^ 0x01);
    Receive(frame);
    EXPECT_EQ(Sent(), Requests{"1 1 0000"}) << at;
    EXPECT_FALSE(panel.chk_StatusH(7).Value) << at;
    EXPECT_EQ(Pending(), PanelTabs()[0].indices);
  }
}

TEST_F(ControlPanelLine, TheAnswerBehindACorruptOneGoesOnAtOnce) {
  Begin(panel.cmdUpdateStatus);
  std::string frame = Good();
  frame[12] = '!';
  Receive(frame);
  Receive(Good());
  EXPECT_EQ(Sent(), (Requests{"1 1 0000", "4 868 0000"}));
}

TEST_F(ControlPanelLine, CheckDigitsThatAreNoneCountAsUnequal) {
  Begin(panel.cmdUpdateStatus);
  for (const std::string digits : {"    ", "&H00", "0x00", "00-1", "GGGG", " 123"}) {
    std::string frame = Good();
    frame.replace(11, 4, digits);
    Receive(frame);
    EXPECT_EQ(Sent(), Requests{"1 1 0000"}) << digits;
    EXPECT_FALSE(panel.chk_StatusH(7).Value);
  }
}

// A body whose check is 0000, so that digits that are read as nothing would hold.
TEST_F(ControlPanelLine, NoDigitsAreNotACheckOfZero) {
  for (int word = 0; word < 0x10000; ++word) {
    std::string frame =
        PanelFrame(kReadDone + 1, 1, boiler::HexDigits(static_cast<unsigned>(word), 4));
    if (frame.substr(11, 4) != "0000") continue;
    EXPECT_TRUE(HasGoodCheck(frame));
    frame.replace(11, 4, "zzzz");
    EXPECT_FALSE(HasGoodCheck(frame));
    return;
  }
  FAIL() << "No such body.";
}

TEST_F(ControlPanelLine, CheckDigitsMayBeOfEitherCase) {
  Begin(panel.cmdUpdateStatus);
  std::string frame = Good();
  bool has_letter = false;
  for (std::size_t at = 11; at < 15; ++at) {
    if (frame[at] < 'A') continue;
    frame[at] = static_cast<char>(frame[at] + ('a' - 'A'));
    has_letter = true;
  }
  ASSERT_TRUE(has_letter);
  Receive(frame);
  EXPECT_TRUE(panel.chk_StatusH(7).Value);
}

TEST_F(ControlPanelLine, CorruptAnswersForThreeSecondsAreATimeout) {
  ignores_errors = false;
  Begin(panel.cmdUpdateStatus);
  ExpectTimeout();
  for (int i = 0; i < 31; ++i) {
    std::string frame = Good();
    frame[12] = '!';
    Receive(frame);
    world.Advance(100ms);
  }
  EXPECT_EQ(world.port().closes(), 1);
}

TEST_F(ControlPanelLine, AnIdOutsideTheTableIsFollowedByTheSameRequest) {
  Begin(panel.cmdUpdateStatus);
  Answer(kReadDone + 1, 0x7777, "FFFF");
  ExpectRepeated("1 1 0000", kQuiet);
  EXPECT_EQ(Pending(), PanelTabs()[0].indices);
  EXPECT_TRUE(panel.tim_CommTimeout->Enabled());
}

TEST_F(ControlPanelLine, AnUnknownIdGoesOnWithTheNextRequest) {
  Begin(panel.cmdUpdateSensors);
  panel.sensors[0].txt_8bit.Text = "12";
  panel.sensors[0].txt_temp.Text = "34";
  AnswerLast(kUnknown, "0000");
  EXPECT_EQ(panel.sensors[0].txt_8bit.Text.get(), "");
  EXPECT_EQ(panel.sensors[0].txt_temp.Text.get(), "");
  EXPECT_EQ(Sent(), Requests{"4 770 0000"});
}

TEST_F(ControlPanelLine, ACorruptedMessageAnswerClearsTheFlagAndGoesOn) {
  Begin(panel.cmdUpdateSensors);
  AnswerLast(kCorrupted, "0000");
  EXPECT_EQ(Sent(), Requests{"4 770 0000"});
}

TEST_F(ControlPanelLine, ATornAnswerIsFollowedByTheRequestWhenTheLineIsQuiet) {
  Begin(panel.cmdUpdateStatus);
  Receive("noise" + Good());
  EXPECT_EQ(Sent(), Requests{}) << "The rest of it would tear the next answer too.";
  ExpectRepeated("1 1 0000", kQuiet);
  AnswerLast(kReadDone, "8100");
  EXPECT_TRUE(panel.chk_StatusH(7).Value);
  EXPECT_EQ(Sent(), Requests{"4 868 0000"});
}

TEST_F(ControlPanelLine, AnAnswerInPiecesIsOne) {
  Begin(panel.cmdUpdateStatus);
  for (const char byte : Good()) {
    world.Advance(50ms);
    Receive(std::string(1, byte));
  }
  EXPECT_TRUE(panel.chk_StatusH(7).Value);
  EXPECT_EQ(Sent(), Requests{"4 868 0000"});
}

TEST_F(ControlPanelLine, HalfAnAnswerIsATimeout) {
  ignores_errors = false;
  Begin(panel.cmdUpdateStatus);
  Receive(Good().substr(0, 15));
  ExpectTimeout();
  world.Advance(3s);
  EXPECT_EQ(Sent(), Requests{"1 1 0000"});
  AnswerLast(kReadDone, "8100");
  EXPECT_TRUE(panel.chk_StatusH(7).Value);
}

TEST_F(ControlPanelLine, ADamagedEndByteDoesNotKeepTheAnswerOut) {
  Begin(panel.cmdUpdateStatus);
  std::string frame = Good();
  frame[15] = 'x';
  Receive(frame);
  EXPECT_TRUE(panel.chk_StatusH(7).Value);
  ExpectRepeated("4 868 0000", kQuiet);
}

TEST_F(ControlPanelLine, ADamagedStartByteKeepsTheAnswerOut) {
  Begin(panel.cmdUpdateStatus);
  std::string frame = Good();
  frame[0] = 'x';
  Receive(frame);
  EXPECT_FALSE(panel.chk_StatusH(7).Value);
  ExpectRepeated("1 1 0000", kQuiet);
}

// Some adapters send back what they are given.
TEST_F(ControlPanelLine, TheRequestComingBackIsNoAnswer) {
  Begin(panel.cmdHeadDemand);
  const std::string echo = world.port().frames().back().bytes;
  Receive(echo);
  EXPECT_FALSE(panel.chk_HeatDemand.Value);
  EXPECT_EQ(Pending(), std::vector<int>{1});
  EXPECT_TRUE(panel.tim_CommTimeout->Enabled());
  AnswerLast(kWriteDone, "FFFF");
  EXPECT_TRUE(panel.chk_HeatDemand.Value);
  EXPECT_EQ(Pending(), std::vector<int>{});
  Begin(panel.cmdUpdateStatus);
  Receive(world.port().frames().back().bytes + Good());
  EXPECT_TRUE(panel.chk_StatusH(7).Value);
  EXPECT_EQ(Sent(), Requests{"4 868 0000"});
}

TEST_F(ControlPanelLine, TheRestOfAnAnswerBehindTheRequestIsWaitedFor) {
  Begin(panel.cmdUpdateStatus);
  Receive(world.port().frames().back().bytes + Good().substr(0, 6));
  EXPECT_EQ(Sent(), Requests{});
  Receive(Good().substr(6));
  EXPECT_TRUE(panel.chk_StatusH(7).Value);
  EXPECT_EQ(Sent(), Requests{"4 868 0000"});
}

TEST_F(ControlPanelLine, AnAnswerToAnotherRequestIsTakenAndTheRequestRepeated) {
  Begin(panel.cmdUpdateStatus);
  Answer(kReadDone + 4, 868, "0102");
  EXPECT_EQ(panel.txt_FlameCurrentuA.Text.get(), "1");
  EXPECT_FALSE(panel.Pending[6]);
  ExpectRepeated("1 1 0000", kQuiet);
  AnswerLast(kReadDone, "8100");
  EXPECT_EQ(Sent(), Requests{"4 6015 0000"});
}

// Two requests are out; without a pause each answer would be taken for that of the next request.
TEST_F(ControlPanelLine, APressBeforeTheAnswerDoesNotShiftTheAnswers) {
  Begin(panel.cmdUpdateConfig);
  Begin(panel.cmdUpdateStatistics);
  Answer(kReadDone + 2, 84, "0001");
  EXPECT_TRUE(panel.chk_configL(0).Value);
  Answer(kReadDone + 6, 923, "0007");
  ExpectRepeated("6 923 0000", kQuiet);
  AnswerLast(kReadDone, "0007");
  EXPECT_EQ(Sent(), Requests{"6 935 0000"});
}

// A line that is never quiet is waited for a second from the first bad answer on.
TEST_F(ControlPanelLine, ADoubtThatIsCutOffDoesNotShortenTheNextOne) {
  const auto make_noise = [&](int times) {
    for (int i = 0; i < times; ++i) {
      world.port().Receive("0123456789ABCDEF");
      world.Advance(10ms);
    }
  };
  Begin(panel.cmdUpdateStatus);
  make_noise(90);
  panel.Unload();
  panel.Show();
  Begin(panel.cmdUpdateStatus);
  make_noise(90);
  EXPECT_EQ(Sent(), Requests{}) << "Behind an end.";
  panel.Unload();
  panel.Show();
  Begin(panel.cmdUpdateStatus);
  world.Advance(2100ms);
  make_noise(90);
  Sent();
  make_noise(90);
  EXPECT_EQ(Sent(), Requests{}) << "Behind a time-out.";
}

TEST_F(ControlPanelLine, AFrameOfTheKindOfARequestIsNoAnswer) {
  Begin(panel.cmdUpdateStatus);
  Receive(PanelFrame(kRead + 1, 1, "8100"));
  Receive(PanelFrame(kRead + 4, 868, "0102"));
  Receive(PanelFrame(kWrite + 1, 14, "FFFF"));
  Receive(PanelFrame(kWrite + 3, 171, "AA55"));
  EXPECT_FALSE(panel.chk_StatusH(7).Value);
  EXPECT_EQ(panel.txt_FlameCurrentuA.Text.get(), "");
  EXPECT_FALSE(panel.chk_HeatDemand.Value);
  EXPECT_FALSE(panel.chk_Reset.Value);
  EXPECT_EQ(Pending(), PanelTabs()[0].indices);
  EXPECT_EQ(Sent(), Requests{});
  EXPECT_TRUE(panel.tim_CommTimeout->Enabled());
  Receive(Good());
  EXPECT_TRUE(panel.chk_StatusH(7).Value);
  EXPECT_EQ(Sent(), Requests{"4 868 0000"});
}

TEST_F(ControlPanelLine, APressWhileTheLineIsInDoubtGoesOutWhenItIsQuiet) {
  Begin(panel.cmdUpdateStatus);
  Receive("0123456789ABCDEF");
  panel.cmdResetError.Press();
  EXPECT_EQ(Sent(), Requests{});
  ExpectRepeated("131 171 AA55", kQuiet);
}

TEST_F(ControlPanelLine, ALineThatIsNeverQuietIsAskedAllTheSameAndTimesOut) {
  ignores_errors = false;
  Begin(panel.cmdUpdateStatus);
  ExpectTimeout();
  for (int i = 0; i < 310; ++i) {
    world.port().Receive("0123456789");
    world.Advance(10ms);
  }
  EXPECT_GE(Sent().size(), 3U);
  EXPECT_EQ(Pending(), PanelTabs()[0].indices);
}

}  // namespace
}  // namespace tarnlink
