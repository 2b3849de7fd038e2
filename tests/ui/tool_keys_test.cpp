// The service tools under keyboard and mouse.

#include <QAbstractButton>
#include <QCheckBox>
#include <QLabel>
#include <QTabWidget>

#include "ui/service_tools_fixture.h"

namespace tarnlink {
namespace {

class ToolKeysTest : public ServiceToolsTest {
 protected:
  static void FocusOn(QWidget& form, const std::string& name) {
    In(form, name).setFocus(Qt::TabFocusReason);
  }
  static bool IsTicked(QWidget& form, const std::string& name) {
    return In<QCheckBox>(form, name).isChecked();
  }
  static int Tab(QWidget& panel) { return In<QTabWidget>(panel, "SSTab1").currentIndex(); }
};

// --- The control panel ---------------------------------------------------------------------------

TEST_F(ToolKeysTest, ThePanelsTabulatorPassesWhatIsOnlyLookedAt) {
  QWidget& panel = OpenPanel();
  EXPECT_EQ(Focus(panel), "qt_tabwidget_tabbar");
  EXPECT_EQ(Walk(panel, 6),
            "cmdHeadDemand cmdResetError cmdUpdateStatus chkContinuousUpdate cmdClose "
            "qt_tabwidget_tabbar");
  In<QTabWidget>(panel, "SSTab1").setCurrentIndex(2);
  EXPECT_EQ(Walk(panel, 3), "cmdUpdateSensors chkContinuousUpdate cmdClose");
  panel.close();
}

TEST_F(ToolKeysTest, EnterInThePanelPressesOnlyTheButtonThatHasTheFocus) {
  QWidget& panel = OpenPanel();
  Key(panel, Qt::Key_Return);
  for (const char* quiet : {"chkContinuousUpdate", "txt_OSNumber", "txt_FlameAD10bit"}) {
    FocusOn(panel, quiet);
    Key(panel, Qt::Key_Return);
    Key(panel, Qt::Key_Enter);
  }
  world.Advance(1s);
  EXPECT_EQ(FramesSent(), 0U);
  FocusOn(panel, "cmdResetError");
  Key(panel, Qt::Key_Return);
  world.Advance(1s);
  EXPECT_EQ(FramesSent(), 1U);
  FocusOn(panel, "cmdClose");
  Key(panel, Qt::Key_Enter);
  EXPECT_FALSE(panel.isVisible());
}

TEST_F(ToolKeysTest, HeatDemandAndResetAreSentByClicks) {
  QWidget& panel = OpenPanel();
  Click(panel, "cmdHeadDemand");
  world.Advance(1s);
  EXPECT_TRUE(tools->panel.chk_HeatDemand.Value);
  EXPECT_EQ(In(panel, "chk_HeatDemand").accessibleDescription(), "on");
  Click(panel, "cmdHeadDemand");
  world.Advance(1s);
  EXPECT_EQ(In(panel, "chk_HeatDemand").accessibleDescription(), "off");
  Click(panel, "cmdResetError");
  world.Advance(1s);
  EXPECT_EQ(In(panel, "chk_Reset").accessibleDescription(), "on");
  EXPECT_EQ(FramesSent(), 3U);
  panel.close();
}

TEST_F(ToolKeysTest, ContinuousUpdateAsksUntilItIsUnticked) {
  QWidget& panel = OpenPanel();
  Click(panel, "chkContinuousUpdate");
  world.Advance(20s);
  const std::size_t first = FramesSent();
  EXPECT_GT(first, 20U);
  world.Advance(5s);
  EXPECT_GT(FramesSent(), first);
  Click(panel, "chkContinuousUpdate");
  world.Advance(5s);
  const std::size_t last = FramesSent();
  world.Advance(20s);
  EXPECT_EQ(FramesSent(), last);
  panel.close();
}

TEST_F(ToolKeysTest, ATabIsChosenByKeyAndAsksForItsValues) {
  QWidget& panel = OpenPanel();
  Key(panel, Qt::Key_Right);
  EXPECT_EQ(Tab(panel), 1);
  world.Advance(5s);
  EXPECT_NE(Text(panel, "txtSafety(0)"), "");
  Key(panel, Qt::Key_Tab, Qt::ControlModifier);
  EXPECT_EQ(Tab(panel), 2);
  world.Advance(8s);
  EXPECT_NE(Text(panel, "txt_sensor7_temp"), "");
  panel.close();
}

TEST_F(ToolKeysTest, ThePanelTellsWhyNothingCanBeSent) {
  QWidget& panel = OpenPanel();
  world.port().MakeBusy();
  Click(panel, "cmdUpdateStatus");
  const auto& line = In<QLabel>(panel, "lblLine");
  EXPECT_NE(line.text(), "");
  world.port().MakeBusy(false);
  world.Advance(10s);
  EXPECT_EQ(line.text(), "");
  EXPECT_NE(Text(panel, "txt_OSNumber"), "");
  panel.close();
}

// --- The scan ------------------------------------------------------------------------------------

TEST_F(ToolKeysTest, TheScansTabulatorPassesItsFields) {
  QWidget& scan = OpenScan();
  EXPECT_EQ(Focus(scan), "cmdStop");
  EXPECT_EQ(Walk(scan, 18),
            "cmdCopy cmdControlPanel(0) cmdControlPanel(1) cmdControlPanel(2) cmdControlPanel(3) "
            "cmdControlPanel(4) cmdControlPanel(5) cmdControlPanel(6) cmdControlPanel(7) "
            "cmdControlPanel(8) cmdControlPanel(9) cmdControlPanel(10) cmdControlPanel(11) "
            "cmdControlPanel(12) cmdControlPanel(13) cmdControlPanel(14) cmdControlPanel(15) "
            "cmdStop");
  scan.close();
}

TEST_F(ToolKeysTest, StopAndStartHandTheFocusToEachOther) {
  QWidget& scan = OpenScan();
  FocusOn(scan, "cmdStop");
  Key(scan, Qt::Key_Space);
  EXPECT_FALSE(In(scan, "cmdStop").isEnabled());
  EXPECT_EQ(Focus(scan), "cmdStart");
  Key(scan, Qt::Key_Return);
  EXPECT_FALSE(In(scan, "cmdStart").isEnabled());
  EXPECT_EQ(Focus(scan), "cmdStop");
  Key(scan, Qt::Key_Enter);
  EXPECT_EQ(In<QLabel>(scan, "lblState").text(), "Stopped at address 0");
  scan.close();
}

TEST_F(ToolKeysTest, EnterOnDetailsOpensThePanelAndEscapeLeavesItAgain) {
  QWidget& scan = OpenScan();
  FocusOn(scan, "cmdControlPanel(11)");
  Key(scan, Qt::Key_Return);
  QWidget& panel = Activated("frm_ContPanel");
  EXPECT_EQ(In<QLabel>(panel, "lblSlave").text(), "N.B.  Reading slave B");
  Key(panel, Qt::Key_Escape);
  EXPECT_FALSE(panel.isVisible());
  EXPECT_TRUE(scan.isVisible());
  Activated("frm_ScanSlaves");
  Key(scan, Qt::Key_Escape);
  EXPECT_FALSE(scan.isVisible());
  EXPECT_FALSE(world.port().PortOpen());
}

// --- Wrong messages ------------------------------------------------------------------------------

TEST_F(ToolKeysTest, TheTabulatorGoesThroughTheFrameToSend) {
  QWidget& dialog = OpenWrongMessages();
  EXPECT_EQ(Focus(dialog), "txt_ErrMsg(0)");
  EXPECT_EQ(Walk(dialog, 17),
            "txt_ErrMsg(1) txt_ErrMsg(2) txt_ErrMsg(3) txt_ErrMsg(4) txt_ErrMsg(5) txt_ErrMsg(6) "
            "txt_ErrMsg(7) txt_ErrMsg(8) txt_ErrMsg(9) txt_ErrMsg(10) txt_ErrMsg(15) "
            "chk_IPMsgErr(0) chk_IPMsgErr(1) cmd_SendErrMsg cmd_ResetDefault cmd_CloseErrGen "
            "txt_ErrMsg(0)");
  // Check digits that can be typed are in their place.
  Click(dialog, "chk_IPMsgErr(0)");
  FocusOn(dialog, "txt_ErrMsg(10)");
  EXPECT_EQ(Walk(dialog, 5),
            "txt_ErrMsg(11) txt_ErrMsg(12) txt_ErrMsg(13) txt_ErrMsg(14) txt_ErrMsg(15)");
  dialog.close();
}

TEST_F(ToolKeysTest, EnterSendsOnlyFromABoxOrFromSend) {
  QWidget& dialog = OpenWrongMessages();
  Key(dialog, Qt::Key_Return);
  EXPECT_EQ(FramesSent(), 1U);
  world.Advance(200ms);
  for (const char* quiet : {"chk_IPMsgErr(0)", "txtStatus", "txt_RecErrMsg(3)"}) {
    FocusOn(dialog, quiet);
    Key(dialog, Qt::Key_Return);
  }
  FocusOn(dialog, "txt_ErrMsg(6)");
  Type(dialog, "2");
  FocusOn(dialog, "cmd_ResetDefault");
  Key(dialog, Qt::Key_Return);
  EXPECT_EQ(Text(dialog, "txt_ErrMsg(6)"), "1");
  EXPECT_EQ(FramesSent(), 1U);
  FocusOn(dialog, "cmd_SendErrMsg");
  Key(dialog, Qt::Key_Enter);
  EXPECT_EQ(FramesSent(), 2U);
  FocusOn(dialog, "cmd_CloseErrGen");
  Key(dialog, Qt::Key_Return);
  EXPECT_EQ(FramesSent(), 2U);
  EXPECT_FALSE(dialog.isVisible());
}

TEST_F(ToolKeysTest, EnterThatIsHeldSendsOnce) {
  QWidget& dialog = OpenWrongMessages();
  Key(dialog, Qt::Key_Return);
  QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, {}, "\r", true);
  QApplication::sendEvent(dialog.focusWidget(), &held);
  EXPECT_EQ(FramesSent(), 1U);
  dialog.close();
}

TEST_F(ToolKeysTest, WhatIsTypedIntoABoxReplacesWhatStandsThere) {
  QWidget& dialog = OpenWrongMessages();
  Click(dialog, "txt_ErrMsg(6)");
  Type(dialog, "2");
  EXPECT_EQ(Text(dialog, "txt_ErrMsg(6)"), "2");
  Click(dialog, "txt_ErrMsg(1)");
  Type(dialog, "4");
  EXPECT_EQ(Text(dialog, "txt_ErrMsg(1)"), "4");
  Click(dialog, "txt_ErrMsg(15)");
  Type(dialog, "03");
  EXPECT_EQ(Text(dialog, "txt_ErrMsg(15)"), "03");
  EXPECT_EQ(tools->errors.txt_ErrMsg(6).Text.get(), "2");
  // A locked one keeps its digit.
  Click(dialog, "txt_ErrMsg(11)");
  Type(dialog, "3");
  EXPECT_EQ(Text(dialog, "txt_ErrMsg(11)"), "D");
  Click(dialog, "chk_IPMsgErr(0)");
  Click(dialog, "txt_ErrMsg(11)");
  Type(dialog, "3");
  EXPECT_EQ(Text(dialog, "txt_ErrMsg(11)"), "3");
  dialog.close();
}

TEST_F(ToolKeysTest, EscapeLeavesPanelAndWrongMessages) {
  QWidget& panel = OpenPanel();
  Click(panel, "cmdUpdateStatus");
  Key(panel, Qt::Key_Escape);
  EXPECT_FALSE(panel.isVisible());
  EXPECT_FALSE(world.port().PortOpen());
  QWidget& dialog = OpenWrongMessages();
  Key(dialog, Qt::Key_Escape);
  EXPECT_FALSE(dialog.isVisible());
}

}  // namespace
}  // namespace tarnlink
