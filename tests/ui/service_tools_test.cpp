// The windows of the service tools, opened over the simulated boiler, under mouse and keyboard.

#include <QAbstractButton>
#include <QClipboard>
#include <QLabel>
#include <QTabWidget>

#include "common/numbers.h"
#include "common/text.h"
#include "protocols/zolt_crc.h"
#include "ui/service_tools_fixture.h"

namespace tarnlink {
namespace {

TEST_F(ServiceToolsTest, ThePanelFillsItsTabsByClicks) {
  QWidget& panel = OpenPanel();
  {
    Click(panel, "cmdUpdateStatus");
    world.Advance(5s);
    EXPECT_NE(Text(panel, "txt_OSNumber"), "");
    auto& tabs = In<QTabWidget>(panel, "SSTab1");
    for (const auto& [tab, box] :
         std::vector<std::pair<int, std::string>>{{1, "txtSafety(0)"},
                                                  {2, "txt_sensor1_temp"},
                                                  {3, "txt_Error"},
                                                  {4, "txt_HoursBurnerOn"}}) {
      tabs.setCurrentIndex(tab);
      world.Advance(8s);
      EXPECT_NE(Text(panel, box), "") << box;
    }
  }
  panel.close();
  EXPECT_FALSE(world.port().PortOpen());
}

TEST_F(ServiceToolsTest, AnOpenPanelStaysOnItsSlave) {
  std::string closed;
  tools->GoControlPanel(2, [&] { closed += "first "; });
  tools->GoControlPanel(5, [&] { closed += "second "; });
  EXPECT_EQ(host.SlaveAddress, "2");
  EXPECT_EQ(closed, "second ") << "whoever is not shown does not wait";
  Form("frm_ContPanel").close();
  EXPECT_EQ(closed, "second first ");
  tools->GoControlPanel(5);
  EXPECT_EQ(host.SlaveAddress, "5");
  Form("frm_ContPanel").close();
}

TEST_F(ServiceToolsTest, TheScanShowsWhoAnswersAndOpensThePanel) {
  QWidget& scan = OpenScan();
  world.Advance(60s);
  EXPECT_NE(Text(scan, "txtType(0)"), "");
  EXPECT_EQ(Text(scan, "txtType(1)"), "-");
  Click(scan, "cmdControlPanel(3)");
  QWidget& panel = Form("frm_ContPanel");
  EXPECT_EQ(QApplication::activeModalWidget(), &panel);
  // It never goes behind the scan.
  EXPECT_EQ(panel.parentWidget(), &scan);
  EXPECT_NE(In<QLabel>(panel, "lblSlave").text().indexOf("3"), -1);
  panel.close();
  EXPECT_EQ(QApplication::activeModalWidget(), &scan);
  Click(scan, "cmdCopy");
  EXPECT_NE(QGuiApplication::clipboard()->text().indexOf("OS number"), -1);
  scan.close();
  EXPECT_FALSE(world.port().PortOpen());
  OpenPanel();
  EXPECT_EQ(panel.parentWidget(), nullptr);
  panel.close();
}

TEST_F(ServiceToolsTest, AWrongMessageIsSentAndItsAnswerShown) {
  QWidget& dialog = OpenWrongMessages();
  Click(dialog, "cmd_SendErrMsg");
  world.Advance(200ms);
  EXPECT_EQ(Text(dialog, "txtStatus"), "Read Acknowledge");
  Click(dialog, "chk_IPMsgErr(0)");
  Click(dialog, "cmd_SendErrMsg");
  world.Advance(200ms);
  EXPECT_EQ(Text(dialog, "txtStatus"), "Corrupted Message");
  dialog.close();
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(ServiceToolsTest, TheSnifferShowsItems) {
  world.dialogs().ExpectMessageBox("Sniffer text file not found.", "Sniffer");
  tools->ShowSniffer();
  QWidget& window = Form("frmSniffer");
  for (const char* frame : {"\r\x01"
                            "00001"
                            "0000",
                            "\r\x11"
                            "00001"
                            "8B40",
                            "\r\x04"
                            "000F1"
                            "0000",
                            "\r\x14"
                            "000F1"
                            "2D41"}) {
    std::string text = frame;
    text += Stuff(Hex(Calc_Crc(text.substr(1))), 4) + "\n";
    world.port().Receive(text);
    world.Advance(50ms);
  }
  EXPECT_NE(Text(window, "RAM_VALUE(1)"), "");
  EXPECT_EQ(Text(window, "RAM_ID(2)"), "00F1");
  SavePicture(window, "sniffer");
  tools->sniffer.RAM_TEXT.DblClick(1);
  SavePicture(Form("frm_Sniff_Settings"), "sniffer-settings");
  Form("frm_Sniff_Settings").close();
  window.close();
}

}  // namespace
}  // namespace tarnlink
