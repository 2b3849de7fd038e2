// The windows of the service tools, opened over the simulated boiler, under mouse and keyboard.

#include "ui/service_tools.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <QTest>
#include <QWindow>
#include <stdexcept>
#include <string>

#include "common/numbers.h"
#include "common/text.h"
#include "form/boiler_on_line.h"
#include "protocols/zolt_crc.h"
#include "support/fake_world.h"
#include "ui/graph_fixture.h"
#include "ui/ui_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

class ServiceToolsTest : public ::testing::Test {
 protected:
  static QWidget& Form(const std::string& name) {
    QWidget* form = FindTopLevel(name);
    if (form == nullptr) throw std::runtime_error("There is no " + name + ".");
    return *form;
  }
  template <class T = QWidget>
  static T& In(QWidget& form, const std::string& name) {
    T* found = form.findChild<T*>(QString::fromStdString(name));
    if (found == nullptr) throw std::runtime_error("There is no " + name + ".");
    return *found;
  }
  static void Click(QWidget& form, const std::string& name) {
    QWidget& part = In(form, name);
    QTest::mouseClick(form.windowHandle(), Qt::LeftButton, {},
                      part.mapTo(&form, QPoint(8, part.height() / 2)));
  }
  static std::string Text(QWidget& form, const std::string& name) {
    return In<QLineEdit>(form, name).text().toStdString();
  }
  static boiler::SimulatedBoiler::Options Zolt() {
    boiler::SimulatedBoiler::Options options;
    options.protocol = "zolt";
    options.slave.answers_corrupted = true;
    return options;
  }

  FakeWorld world;
  BoilerOnLine boiler{world, Zolt()};
  ErrorTexts texts;
  ToolHost host{.platform = world,
                .line = {[] { return 1; }, [] { return 3; }},
                .IgnoresErrors = [] { return true; },
                .LoadErrorTexts = [this]() -> const ErrorTexts& { return texts; },
                .IdFile = [] { return std::string("/home/user/default.ids"); },
                .LogPath = [] { return std::string("/home/user"); },
                .GoControlPanel = {}};
  ServiceTools tools{host, nullptr};
};

TEST_F(ServiceToolsTest, ThePanelFillsItsTabsByClicks) {
  tools.GoControlPanel(0);
  QWidget& panel = Form("frm_ContPanel");
  {
    Click(panel, "cmdUpdateStatus");
    world.Advance(5s);
    EXPECT_NE(Text(panel, "txt_OSNumber"), "");
    SavePicture(panel, "control-panel-status");
    auto& tabs = In<QTabWidget>(panel, "SSTab1");
    for (const auto& [tab, box] :
         std::vector<std::pair<int, std::string>>{{1, "txtSafety(0)"},
                                                  {2, "txt_sensor1_temp"},
                                                  {3, "txt_Error"},
                                                  {4, "txt_HoursBurnerOn"}}) {
      tabs.setCurrentIndex(tab);
      world.Advance(8s);
      EXPECT_NE(Text(panel, box), "") << box;
      SavePicture(panel, "control-panel-" + std::to_string(tab));
    }
  }
  panel.close();
  EXPECT_FALSE(world.port().PortOpen());
}

TEST_F(ServiceToolsTest, TheScanShowsWhoAnswersAndOpensThePanel) {
  tools.ShowScanSlaves();
  QWidget& scan = Form("frm_ScanSlaves");
  world.Advance(60s);
  EXPECT_NE(Text(scan, "txtType(0)"), "");
  EXPECT_EQ(Text(scan, "txtType(1)"), "-");
  SavePicture(scan, "scan-slaves");
  Click(scan, "cmdControlPanel(3)");
  QWidget& panel = Form("frm_ContPanel");
  EXPECT_EQ(QApplication::activeModalWidget(), &panel);
  EXPECT_NE(In<QLabel>(panel, "lblSlave").text().indexOf("3"), -1);
  panel.close();
  EXPECT_EQ(QApplication::activeModalWidget(), &scan);
  Click(scan, "cmdCopy");
  EXPECT_NE(QGuiApplication::clipboard()->text().indexOf("OS number"), -1);
  scan.close();
  EXPECT_FALSE(world.port().PortOpen());
}

TEST_F(ServiceToolsTest, AWrongMessageIsSentAndItsAnswerShown) {
  tools.ShowErrorGenerator();
  QWidget& dialog = Form("frm_IPMsgErr");
  Click(dialog, "cmd_SendErrMsg");
  world.Advance(200ms);
  EXPECT_EQ(Text(dialog, "txtStatus"), "Read Acknowledge");
  SavePicture(dialog, "wrong-message");
  Click(dialog, "chk_IPMsgErr(0)");
  Click(dialog, "cmd_SendErrMsg");
  world.Advance(200ms);
  EXPECT_EQ(Text(dialog, "txtStatus"), "Corrupted Message");
  SavePicture(dialog, "wrong-message-corrupted");
  dialog.close();
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(ServiceToolsTest, TheSnifferShowsItems) {
  world.dialogs().ExpectMessageBox("Sniffer text file not found.", "Sniffer");
  tools.ShowSniffer();
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
  tools.sniffer.RAM_TEXT.DblClick(1);
  SavePicture(Form("frm_Sniff_Settings"), "sniffer-settings");
  Form("frm_Sniff_Settings").close();
  window.close();
}

}  // namespace
}  // namespace tarnlink
