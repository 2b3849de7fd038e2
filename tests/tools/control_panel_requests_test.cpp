// What the control panel asks for, in which order, and what its buttons and tabs do.

#include "tools/control_panel_fixture.h"

#include "support/byte_text.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

struct Row {
  int index;
  int type;
  int id;
  std::string data = "0000";
};

std::vector<Row> Rows() {
  std::vector<Row> rows = {
      {0, 131, 171, "AA55"}, {1, 129, 14, "FFFF"}, {3, 1, 1},     {4, 1, 50},    {5, 2, 84},
      {6, 4, 868},           {7, 4, 6015},         {8, 2, 91},    {9, 2, 103},   {10, 2, 104},
      {11, 2, 151},          {12, 4, 241},         {13, 4, 770},  {14, 4, 817},  {15, 4, 855},
      {16, 4, 856},          {17, 4, 5930},        {18, 4, 5964}, {19, 4, 254},  {20, 4, 781},
      {21, 4, 830},          {22, 4, 5913},        {23, 4, 5925}, {24, 4, 5955}, {25, 4, 6000},
      {26, 1, 61},           {27, 1, 5337},        {28, 2, 152},  {29, 2, 1284}, {30, 2, 164},
      {31, 6, 5349},         {32, 6, 5354},        {49, 6, 923},  {50, 6, 935},  {51, 6, 936},
      {52, 6, 961},          {53, 6, 974},         {54, 6, 1010}, {55, 6, 1021}, {56, 6, 3943},
      {57, 6, 4004}};
  for (int entry = 0; entry < 8; ++entry) {
    const std::string data = "0" + std::to_string(entry) + "00";
    rows.push_back({33 + entry, 6, 875, data});
    rows.push_back({41 + entry, 6, 916, data});
  }
  return rows;
}

class ControlPanelRequests : public ControlPanelTest {
 protected:
  ControlPanelRequests() { panel.Show(); }

  // Nothing is on its way any more.
  void AnswerAll() {
    world.Advance(50ms);
    AnswerLast(kReadDone, "0000");
    EXPECT_EQ(Pending(), std::vector<int>{});
  }
};

// --- The table -----------------------------------------------------------------------------------

TEST_F(ControlPanelRequests, EachPendingFlagHasItsFrame) {
  ASSERT_EQ(Rows().size(), 57U);
  for (const Row& row : Rows()) {
    SetPending({row.index});
    panel.SendNextRequest();
    const std::string& frame = world.port().frames().back().bytes;
    EXPECT_EQ(HexText(frame), HexText(PanelFrame(row.type, row.id, row.data))) << row.index;
    EXPECT_EQ(panel.caption.Caption.get(), "Slave 0, Reading ID " + std::to_string(row.id));
    AnswerAll();
  }
}

TEST_F(ControlPanelRequests, GoOutByteByByte) {
  SetPending({0});
  panel.SendNextRequest();
  EXPECT_EQ(world.port().TakeSentHex(), "0D 83 30 30 30 41 42 41 41 35 35 36 41 44 30 0A\n");
  SetPending({1});
  panel.SendNextRequest();
  EXPECT_EQ(world.port().TakeSentHex(), "0D 81 30 30 30 30 45 46 46 46 46 31 34 46 31 0A\n");
  SetPending({38});
  panel.SendNextRequest();
  EXPECT_EQ(world.port().TakeSentHex(), "0D 06 30 30 33 36 42 30 35 30 30 38 36 39 32 0A\n");
  SetPending({57});
  panel.SendNextRequest();
  EXPECT_EQ(world.port().TakeSentHex(), "0D 06 30 30 46 41 34 30 30 30 30 43 44 37 41 0A\n");
}

TEST_F(ControlPanelRequests, OfTheHistoryPutTheirPositionIntoTheIndex) {
  for (int entry = 7; entry >= 0; --entry) {
    for (const int first : {33, 41}) {
      panel.ErrorHistoryIndex = 99;
      SetPending({first + entry});
      panel.SendNextRequest();
      EXPECT_EQ(panel.ErrorHistoryIndex, entry);
      AnswerAll();
    }
  }
  SetPending({49});
  panel.ErrorHistoryIndex = 5;
  panel.SendNextRequest();
  EXPECT_EQ(panel.ErrorHistoryIndex, 5) << "No other request touches it.";
}

TEST_F(ControlPanelRequests, CarryTheSlave) {
  panel.Unload();
  host.SlaveAddress = "B";
  panel.Show();
  panel.cmdUpdateError.Press();
  EXPECT_EQ(HexText(world.port().frames().back().bytes), HexText(PanelFrame(1, 50, "0000", 'B')));
  EXPECT_EQ(panel.caption.Caption.get(), "Slave B, Reading ID 50");
}

TEST_F(ControlPanelRequests, TwoAndFiftyEightAreNone) {
  panel.SendNextRequest();
  EXPECT_EQ(Sent(), Requests{});
  SetPending({2, 3});
  panel.SendNextRequest();
  SetPending({58});
  panel.SendNextRequest();
  EXPECT_EQ(Sent(), Requests{});
  EXPECT_EQ(panel.caption.Caption.get(), "Customer Control Panel");
  EXPECT_FALSE(world.port().PortOpen());
  EXPECT_FALSE(panel.tim_CommTimeout->Enabled());
}

TEST_F(ControlPanelRequests, OpenThePortAndStartTheTimeout) {
  panel.cmdUpdateStatus.Press();
  EXPECT_TRUE(world.port().PortOpen());
  EXPECT_EQ(world.port().CommPort(), 3);
  EXPECT_EQ(world.port().Settings(), " 9600n,8,1");
  EXPECT_EQ(world.port().RThreshold(), 16);
  EXPECT_TRUE(panel.tim_CommTimeout->Enabled());
  EXPECT_EQ(panel.tim_CommTimeout->Interval(), 3000);
}

TEST_F(ControlPanelRequests, ThrowAwayWhatWaits) {
  panel.cmdUpdateStatus.Press();
  world.port().Receive("half of it");
  panel.cmdUpdateStatus.Press();
  EXPECT_EQ(world.port().InBufferCount(), 0);
}

// --- Loading -------------------------------------------------------------------------------------

TEST_F(ControlPanelTest, LoadsWithPortAndSpeedOfTheOptionsAndAsksNothing) {
  com_port = 5;
  baudrate = 1;
  EXPECT_FALSE(panel.form.Visible);
  panel.Show();
  EXPECT_TRUE(panel.form.Visible);
  EXPECT_EQ(panel.caption.Caption.get(), "Customer Control Panel");
  EXPECT_EQ(world.port().CommPort(), 5);
  EXPECT_EQ(world.port().Settings(), " 2400n,8,1");
  world.Advance(1h);
  EXPECT_FALSE(world.port().PortOpen());
  EXPECT_EQ(Sent(), Requests{});
}

TEST_F(ControlPanelTest, NamesAnotherSlaveInRed) {
  panel.Show();
  EXPECT_EQ(panel.lblSlave.Caption.get(), "Slave 0");
  EXPECT_EQ(panel.lblSlave.ForeColor.get(), kBlack);
  EXPECT_EQ(panel.SSTab1.Captions.front(), "Status and Controll");
  panel.Unload();
  host.SlaveAddress = "A";
  panel.Show();
  EXPECT_EQ(panel.lblSlave.Caption.get(), "N.B.  Reading slave A");
  EXPECT_EQ(panel.lblSlave.ForeColor.get(), 255);
  EXPECT_EQ(panel.SSTab1.Captions.front(), "Status and Controll");
}

TEST_F(ControlPanelTest, AnImpossiblePortIsToldOnTheForm) {
  com_port = 0;
  baudrate = 3;
  world.faults().Break("Port.Settings", RunTimeError(kTypeMismatch, "No port has this speed."));
  panel.Show();
  EXPECT_TRUE(panel.form.Visible);
  EXPECT_EQ(panel.lblLine.Caption.get(), "No port has this speed.");
}

TEST_F(ControlPanelTest, LoadsEmptyAgain) {
  panel.Show();
  panel.cmdUpdateStatus.Press();
  AnswerLast(kReadDone, "FFFF");
  panel.SSTab1.Tab = 2;
  panel.chkContinuousUpdate.Value = true;
  AnswerLast(kReadDone, "1234");
  panel.txt_OSNumber.Text = "x";
  panel.txt_ErrBufCode(7).ToolTipText = "x";
  panel.chk_HeatDemand.Value = true;
  texts[4] = "another text";
  int unloaded = 0;
  panel.Unloaded = [&] { ++unloaded; };
  panel.Unload();
  panel.Unload();
  EXPECT_EQ(unloaded, 1);
  EXPECT_FALSE(world.port().PortOpen());
  EXPECT_FALSE(panel.form.Visible);
  EXPECT_EQ(Pending(), std::vector<int>{});
  Sent();
  world.Advance(1h);
  panel.Show();
  EXPECT_EQ(Pending(), std::vector<int>{});
  EXPECT_FALSE(panel.chkContinuousUpdate.Value);
  EXPECT_FALSE(panel.chk_StatusH(0).Value);
  EXPECT_FALSE(panel.chk_HeatDemand.Value);
  EXPECT_EQ(panel.SSTab1.Tab, 0);
  EXPECT_EQ(panel.sensors[0].txt_8bit.Text.get(), "");
  EXPECT_EQ(panel.txt_OSNumber.Text.get(), "");
  EXPECT_EQ(panel.txt_ErrBufCode(7).ToolTipText.get(), "");
  EXPECT_EQ(panel.error_texts[4], "another text");
  world.Advance(1h);
  EXPECT_EQ(Sent(), Requests{});
}

TEST_F(ControlPanelTest, ShownTwiceStaysAsItIs) {
  panel.Show();
  panel.cmdUpdateStatus.Press();
  AnswerLast(kReadDone, "8000");
  panel.Show();
  EXPECT_TRUE(panel.chk_StatusH(7).Value);
  EXPECT_TRUE(world.port().PortOpen());
}

TEST_F(ControlPanelTest, ControlsDoNothingWhileItIsClosed) {
  panel.cmdUpdateStatus.Press();
  panel.cmdHeadDemand.Press();
  panel.SSTab1.Tab = 3;
  panel.chkContinuousUpdate.Value = true;
  EXPECT_EQ(Pending(), std::vector<int>{});
  EXPECT_EQ(Sent(), Requests{});
}

// --- Tabs ----------------------------------------------------------------------------------------

TEST(ControlPanelTabs, HaveTheirCaptionsAndRequests) {
  EXPECT_EQ(PanelTabCaptions(),
            (std::vector<std::string>{"Status and Controll", "Configuration", "Sensors",
                                      "Error and History", "Statistics"}));
  const std::vector<std::vector<int>> indices = {
      {3, 6, 7, 26, 27, 28, 29, 30, 31, 32},
      {5, 8, 9, 10, 11},
      {12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25},
      {4, 33, 34, 35, 36, 37, 38, 39, 40, 41, 42, 43, 44, 45, 46, 47, 48},
      {49, 50, 51, 52, 53, 54, 55, 56, 57}};
  for (std::size_t tab = 0; tab < indices.size(); ++tab) {
    EXPECT_EQ(PanelTabs()[tab].indices, indices[tab]) << tab;
  }
}

TEST_F(ControlPanelRequests, EachUpdateButtonAsksForItsTab) {
  const std::vector<CommandButton*> buttons = {&panel.cmdUpdateStatus, &panel.cmdUpdateConfig,
                                               &panel.cmdUpdateSensors, &panel.cmdUpdateError,
                                               &panel.cmdUpdateStatistics};
  for (std::size_t tab = 0; tab < buttons.size(); ++tab) {
    SetPending({57, 30, 12});
    EXPECT_EQ(buttons[tab]->Caption.get(), "Update");
    buttons[tab]->Press();
    EXPECT_EQ(Pending(), PanelTabs()[tab].indices);
  }
  EXPECT_EQ(Sent(), (Requests{"1 1 0000", "2 84 0000", "4 241 0000", "1 50 0000", "6 923 0000"}));
  EXPECT_EQ(panel.SSTab1.Tab, 0) << "The buttons turn no tab.";
}

TEST_F(ControlPanelRequests, EachTabAsksForItself) {
  for (const int tab : {4, 1, 2, 3, 0}) {
    panel.SSTab1.Tab = tab;
    EXPECT_EQ(Pending(), PanelTabs()[static_cast<std::size_t>(tab)].indices);
  }
  EXPECT_EQ(Sent(), (Requests{"6 923 0000", "2 84 0000", "4 241 0000", "1 50 0000", "1 1 0000"}));
}

TEST_F(ControlPanelRequests, ATabIsWorkedOffFromItsLowestIndex) {
  panel.cmdUpdateConfig.Press();
  for (const char* next : {"2 84 0000", "2 91 0000", "2 103 0000", "2 104 0000", "2 151 0000"}) {
    EXPECT_EQ(Sent(), Requests{next});
    AnswerLast(kReadDone, "0000");
  }
  EXPECT_EQ(Sent(), Requests{});
  EXPECT_EQ(Pending(), std::vector<int>{});
  EXPECT_FALSE(panel.tim_CommTimeout->Enabled());
  EXPECT_TRUE(world.port().PortOpen());
  world.Advance(1h);
  EXPECT_EQ(Sent(), Requests{});
}

TEST_F(ControlPanelRequests, ACommandOutlivesTheTabAndGoesFirst) {
  panel.SSTab1.Tab = 1;
  panel.cmdHeadDemand.Press();
  panel.SSTab1.Tab = 2;
  EXPECT_EQ(Sent(), (Requests{"2 84 0000", "129 14 FFFF", "129 14 FFFF"}));
  std::vector<int> pending = PanelTabs()[2].indices;
  pending.insert(pending.begin(), 1);
  EXPECT_EQ(Pending(), pending);
  panel.cmdResetError.Press();
  EXPECT_EQ(Sent(), Requests{"131 171 AA55"});
}

// --- Commands ------------------------------------------------------------------------------------

TEST_F(ControlPanelRequests, EachPressOfHeatDemandTurnsItRound) {
  for (const std::string data : {"FFFF", "0000", "FFFF"}) {
    panel.cmdHeadDemand.Press();
    EXPECT_EQ(Sent(), Requests{"129 14 " + data});
    AnswerLast(kWriteDone, data);
    EXPECT_EQ(panel.chk_HeatDemand.Value, data == "FFFF");
    EXPECT_EQ(Pending(), std::vector<int>{});
  }
}

TEST_F(ControlPanelRequests, ResetIsSentOnceAndAcknowledged) {
  panel.cmdResetError.Press();
  EXPECT_EQ(Sent(), Requests{"131 171 AA55"});
  AnswerLast(kWriteDone, "AA55");
  EXPECT_TRUE(panel.chk_Reset.Value);
  EXPECT_EQ(Sent(), Requests{});
}

// --- Continuous update ---------------------------------------------------------------------------

TEST_F(ControlPanelRequests, ContinuousUpdateGoesRoundTheTabInView) {
  panel.SSTab1.Tab = 1;
  for (int request = 0; request < 5; ++request) AnswerLast(kReadDone, "0102");
  panel.chkContinuousUpdate.Value = true;
  Sent();
  for (int request = 1; request < 11; ++request) AnswerLast(kReadDone, "0102");
  EXPECT_EQ(Sent(), (Requests{"2 91 0000", "2 103 0000", "2 104 0000", "2 151 0000", "2 84 0000",
                              "2 91 0000", "2 103 0000", "2 104 0000", "2 151 0000", "2 84 0000"}));
  panel.SSTab1.Tab = 4;
  for (int request = 0; request < 9; ++request) AnswerLast(kReadDone, "0102");
  EXPECT_EQ(Sent(),
            (Requests{"6 923 0000", "6 935 0000", "6 936 0000", "6 961 0000", "6 974 0000",
                      "6 1010 0000", "6 1021 0000", "6 3943 0000", "6 4004 0000", "6 923 0000"}));
}

TEST_F(ControlPanelRequests, EndOfContinuousUpdateAsksForTheTabOnceMore) {
  panel.SSTab1.Tab = 1;
  for (int request = 0; request < 5; ++request) AnswerLast(kReadDone, "0102");
  panel.chkContinuousUpdate.Value = true;
  for (int request = 0; request < 3; ++request) AnswerLast(kReadDone, "0102");
  Sent();
  panel.chkContinuousUpdate.Value = false;
  EXPECT_EQ(Pending(), PanelTabs()[1].indices);
  for (int request = 0; request < 5; ++request) AnswerLast(kReadDone, "0102");
  EXPECT_EQ(Sent(), (Requests{"2 84 0000", "2 91 0000", "2 103 0000", "2 104 0000", "2 151 0000"}));
  EXPECT_EQ(Pending(), std::vector<int>{});
}

}  // namespace
}  // namespace tarnlink
