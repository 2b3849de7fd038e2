// The control panel beside other slaves on its line: it hears the one that it is opened on.

#include "tools/control_panel_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

class ControlPanelSlaves : public ControlPanelTest {
 protected:
  ControlPanelSlaves() { panel.Show(); }

  void Press(CommandButton& button) {
    button.Press();
    Sent();
  }
  // All that answers can change.
  std::string Shown() {
    std::string all = panel.txt_OSNumber.Text.get() + "/" + panel.txt_Error.Text.get();
    for (const BitBoxes* boxes :
         {&panel.chk_StatusH, &panel.chk_StatusL, &panel.chk_configH, &panel.chk_configL}) {
      for (int bit = 0; bit < 8; ++bit) all += (*boxes)(bit).Value ? '1' : '0';
    }
    for (const CheckBox* box : {&panel.chk_HeatDemand, &panel.chk_Reset}) {
      all += box->Value ? '1' : '0';
    }
    for (const PanelText* text :
         {&panel.txt_FlameAD10bit, &panel.txt_FlameCurrentADC, &panel.txt_softwareversionROMHUP,
          &panel.txt_softwareversionROMLUP, &panel.txt_softwareversion_EEPROM, &panel.txt_HUPCRC,
          &panel.txt_LUPCRC}) {
      all += "/" + text->Text.get();
    }
    for (const PanelTexts* column :
         {&panel.txtSafety, &panel.txt_ErrBufCode, &panel.txt_ErrBuffTime}) {
      for (int i = 0; i < 8; ++i) all += "/" + (*column)(i).Text.get();
    }
    for (const SensorBoxes& one : panel.sensors) {
      all += "/" + one.txt_8bit.Text.get() + one.txt_temp.Text.get() + one.txt_16bit.Text.get();
    }
    for (const PanelText* text : panel.Statistics()) all += "/" + text->Text.get();
    return all;
  }
  std::string Good() { return PanelFrame(kReadDone + 1, 1, "8100"); }
};

TEST_F(ControlPanelSlaves, AnAnswerOfAnotherSlaveIsPassedBy) {
  Press(panel.cmdUpdateStatus);
  const std::string before = Shown();
  for (int index = 0; index < kNothingPending; ++index) {
    const int id = RequestOf(index, false).Id;
    for (const int kind : {kReadDone, kUnknown, kCorrupted, kOutOfRange, kWriteDone}) {
      Receive(PanelFrame(kind + 1, id, "FF55", '3'));
      Receive(PanelFrame(kind + 3, id, "AA55", 'A'));
    }
  }
  EXPECT_EQ(Shown(), before);
  EXPECT_EQ(Pending(), PanelTabs()[0].indices);
  EXPECT_EQ(Sent(), Requests{}) << "The right one is waited for.";
  Receive(Good());
  EXPECT_TRUE(panel.chk_StatusH(7).Value);
  EXPECT_EQ(Sent(), Requests{"4 868 0000"});
}

TEST_F(ControlPanelSlaves, AnotherSlavesHeatDemandTicksNothing) {
  Press(panel.cmdHeadDemand);
  Receive(PanelFrame(kWriteDone + 1, 14, "FFFF", '5'));
  EXPECT_FALSE(panel.chk_HeatDemand.Value);
  EXPECT_EQ(Pending(), std::vector<int>{1});
  AnswerLast(kWriteDone, "FFFF");
  EXPECT_TRUE(panel.chk_HeatDemand.Value);
  Receive(PanelFrame(kWriteDone + 1, 14, "0000", '5'));
  EXPECT_TRUE(panel.chk_HeatDemand.Value);
}

TEST_F(ControlPanelSlaves, OnlyTheSlaveThatThePanelIsOpenedOnIsHeard) {
  panel.Unload();
  host.SlaveAddress = "A";
  panel.Show();
  Press(panel.cmdUpdateStatus);
  Receive(Good());
  EXPECT_FALSE(panel.chk_StatusH(7).Value);
  Receive(PanelFrame(kReadDone + 1, 1, "8100", 'A'));
  EXPECT_TRUE(panel.chk_StatusH(7).Value);
}

TEST_F(ControlPanelSlaves, TheAnswerBehindAnotherSlavesIsTaken) {
  Press(panel.cmdUpdateStatus);
  Receive(PanelFrame(kRead + 1, 1, "0000", '3') + PanelFrame(kReadDone + 1, 1, "0000", '3') +
          Good().substr(0, 5));
  Receive(Good().substr(5));
  EXPECT_TRUE(panel.chk_StatusH(7).Value);
  EXPECT_EQ(Sent(), Requests{"4 868 0000"});
}

TEST_F(ControlPanelSlaves, OtherSlavesAnswersDoNotPutTheTimeOutOff) {
  ignores_errors = false;
  Press(panel.cmdUpdateStatus);
  for (int i = 0; i < 29; ++i) {
    world.Advance(100ms);
    Receive(PanelFrame(kReadDone + 1, 1, "FFFF", '3'));
  }
  ExpectTimeout();
  world.Advance(100ms);
  EXPECT_EQ(Sent(), Requests{"1 1 0000"});
}

TEST_F(ControlPanelSlaves, AWordOfDamageWithoutAnAddressIsNoSilence) {
  for (const char slave : {' ', '?', 'a'}) {
    Press(panel.cmdUpdateStatus);
    Receive(PanelFrame(kCorrupted + 1, 1, "0000", slave));
    EXPECT_FALSE(panel.Pending[kStatusIndex]) << slave;
    EXPECT_EQ(Sent(), Requests{"4 868 0000"}) << "As one with its address.";
  }
}

TEST_F(ControlPanelSlaves, AWordOfDamageWithoutAnyAddressRepeatsTheRequestAtOnce) {
  Press(panel.cmdHeadDemand);
  Receive(PanelFrame(kCorrupted + 3, 171, "AA55", ' '));
  EXPECT_FALSE(panel.chk_Reset.Value);
  EXPECT_EQ(Sent(), Requests{"129 14 FFFF"});
}

TEST_F(ControlPanelSlaves, AWordOfDamageOfAnotherSlaveIsPassedBy) {
  Press(panel.cmdUpdateStatus);
  Receive(PanelFrame(kCorrupted + 1, 1, "0000", '3'));
  EXPECT_EQ(Sent(), Requests{});
  EXPECT_TRUE(panel.Pending[kStatusIndex]);
}

TEST_F(ControlPanelSlaves, NothingOfTheSlaveBeforeCountsForTheNextOne) {
  panel.Pending[kErrorCodesIndex + 1] = true;
  panel.SendNextRequest();
  Sent();
  panel.Unload();
  host.SlaveAddress = "3";
  panel.Show();
  panel.Pending[kErrorCodesIndex] = true;
  panel.SendNextRequest();
  EXPECT_EQ(Sent(), Requests{"6 875 0000"}) << "No answer is on its way from this one.";
}

// --- Another master that asks the same slave ---

TEST_F(ControlPanelSlaves, TheAnswerBehindOneThatNobodyAskedForIsTaken) {
  Press(panel.cmdHeadDemand);
  Receive(PanelFrame(kReadDone + 4, 868, "0102"));
  EXPECT_EQ(panel.txt_FlameCurrentuA.Text.get(), "1");
  world.Advance(30ms);
  const std::string ours = PanelFrame(kWriteDone + 1, 14, "FFFF");
  for (const char byte : ours) {
    Receive(std::string(1, byte));
    world.Advance(7ms);
  }
  EXPECT_TRUE(panel.chk_HeatDemand.Value);
  EXPECT_EQ(Pending(), std::vector<int>{});
  world.Advance(1h);
  EXPECT_EQ(Sent(), Requests{}) << "It is not sent again.";
}

TEST_F(ControlPanelSlaves, TheRequestBehindItGoesOutAtOnce) {
  Press(panel.cmdUpdateStatus);
  Receive(PanelFrame(kReadDone + 6, 923, "0102"));
  Receive(Good());
  EXPECT_TRUE(panel.chk_StatusH(7).Value);
  EXPECT_EQ(Sent(), Requests{"4 868 0000"});
}

TEST_F(ControlPanelSlaves, BehindALateAnswerOfItsOwnNothingIsTaken) {
  Press(panel.cmdUpdateConfig);
  Press(panel.cmdUpdateStatus);
  Receive(PanelFrame(kReadDone + 2, 84, "0001"));
  Receive(Good());
  EXPECT_FALSE(panel.chk_StatusH(7).Value);
}

TEST_F(ControlPanelSlaves, WhatAnotherMasterReadsOfACommandDoesNotAcknowledgeIt) {
  Press(panel.cmdHeadDemand);
  Receive(PanelFrame(kRead + 1, 14, "0000"));
  Receive(PanelFrame(kReadDone + 1, 14, "0000"));
  EXPECT_TRUE(panel.Pending[kHeatDemandIndex]);
  Receive(PanelFrame(kWriteDone + 1, 14, "FFFF"));
  EXPECT_TRUE(panel.chk_HeatDemand.Value);
  EXPECT_FALSE(panel.Pending[kHeatDemandIndex]);
}

TEST_F(ControlPanelSlaves, ACommandThatWaitsForQuietIsNotAcknowledgedByARead) {
  Press(panel.cmdUpdateStatus);
  Receive(PanelFrame(kReadDone + 4, 868, "0102"));
  panel.cmdHeadDemand.Press();
  Receive(PanelFrame(kReadDone + 1, 14, "0000"));
  world.Advance(1100ms);
  EXPECT_EQ(Sent(), Requests{"129 14 FFFF"});
}

TEST_F(ControlPanelSlaves, AnEntryOfTheHistoryThatAnotherMasterAsksForIsNotTaken) {
  Press(panel.cmdUpdateError);
  AnswerLast(kReadDone, "0000");
  Receive(PanelFrame(kRead + 6, 875, "0300"));
  Receive(PanelFrame(kReadDone + 6, 875, "0013"));
  EXPECT_EQ(panel.txt_ErrBufCode(0).Text.get(), "") << "It may be that of entry 3.";
  Sent();
  world.Advance(1100ms);
  EXPECT_EQ(Sent(), Requests{"1 50 0000"});
  AnswerLast(kReadDone, "0000");
  EXPECT_EQ(Sent(), Requests{"6 875 0000"});
  AnswerLast(kReadDone, "0010");
  EXPECT_EQ(panel.txt_ErrBufCode(0).Text.get(), " 16");
}

}  // namespace
}  // namespace tarnlink
