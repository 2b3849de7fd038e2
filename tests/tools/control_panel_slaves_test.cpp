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

}  // namespace
}  // namespace tarnlink
