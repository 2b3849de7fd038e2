// The service tools and the graph in the gallery.

#include <QMenu>
#include <QTabWidget>

#include "ui/burner_start.h"
#include "ui/cfg_check_fixture.h"
#include "ui/eeprom_fixture.h"
#include "ui/sniffer_fixture.h"
#include "ui/window_gallery.h"
#include "ui/write_parameters_fixture.h"

namespace tarnlink {
namespace {

class ToolWindows : public ServiceToolsTest {
 public:
  void TestBody() override {}

  void ShowPanel(const Visitor& visit) {
    QWidget& panel = OpenPanel();
    ShowWhole(panel);
    auto& tabs = In<QTabWidget>(panel, "SSTab1");
    for (int i = 0; i < tabs.count(); ++i) {
      tabs.setCurrentIndex(i);
      Click(panel, "chkContinuousUpdate");
      world.Advance(10s);
      Click(panel, "chkContinuousUpdate");
      world.Advance(2s);
      visit(panel, "frm_ContPanel " + tabs.tabText(i).remove('&').toStdString());
    }
    panel.close();
  }

  void ShowScan(const Visitor& visit) {
    QWidget& scan = OpenScan();
    ShowWhole(scan);
    world.Advance(30s);
    visit(scan, "frm_ScanSlaves");
    scan.close();
  }

  void ShowWrongMessage(const Visitor& visit) {
    QWidget& dialog = OpenWrongMessages();
    ShowWhole(dialog);
    Click(dialog, "cmd_SendErrMsg");
    world.Advance(80ms);
    visit(dialog, "frm_IPMsgErr");
    dialog.close();
  }

  void ShowPressure(const Visitor& visit) {
    file_tools->wp_conversion.Show();
    QWidget& form = Activated("frmWPconversion");
    Key(form, Qt::Key_Return);
    ShowWhole(form);
    visit(form, "frmWPconversion");
    form.close();
  }
};

class CfgWindows : public CfgWindowTest {
 public:
  void TestBody() override {}

  void Show(const Visitor& visit) {
    QWidget& form = OpenCheck();
    ShowWhole(form);
    Load(form);
    Click(form, "cmd_Check");
    RunTo(5);
    world.Advance(1s);
    visit(form, "frm_CfgCheck");
    form.close();
  }
};

class EepromWindows : public EepromWindowsTest {
 public:
  void TestBody() override {}

  void ShowWriter(const Visitor& visit) {
    QWidget& writer = OpenWriter();
    ShowWhole(writer);
    Choose(writer);
    Click(writer, "cmd_CalcFileChecksum");
    visit(writer, "frm_EEPROM");
    PressWrite(writer, "Write 512 bytes, 0X8000 to 0X81FF, into slave 0?");
    world.RunUntil([this] { return file_tools->eeprom.Answered == 300; }, 100s);
    visit(writer, "frm_EEPROM writing");
    world.Advance(100s);
    writer.close();
  }

  void ShowDownloader(const Visitor& visit) {
    QWidget& downloader = OpenDownloader();
    ShowWhole(downloader);
    StartReading(downloader);
    world.Advance(12s);
    QWidget& reading = Activated("frm_EEPROMRead_Progress");
    ShowWhole(reading);
    visit(reading, "frm_EEPROMRead_Progress");
    Key(reading, Qt::Key_Escape);
    downloader.activateWindow();
    visit(downloader, "frm_EEPROM_Down");
    downloader.close();
  }
};

class ParameterWindows : public ParameterWindowTest {
 public:
  void TestBody() override {}

  void Show(const Visitor& visit) {
    QWidget& form = OpenWriter(SampleBytes("boiler.par"));
    ShowWhole(form);
    Click(form, "cmdWriteZOLT");
    ExpectReport("All parameters set. And verified.");
    world.Advance(10s);
    visit(form, "frmWriteParameters");
    form.close();
  }
};

class SnifferWindows : public SnifferUiTest {
 public:
  void TestBody() override {}

  void Show(const Visitor& visit) {
    PlaceItems(8);
    Hear(0x14, 0x1001, 0x3C, 0x00);
    Hear(0x14, 0x1002, 0x32, 0x00);
    Window().resize(1000, 620);
    WaitForBars(Window());
    visit(Window(), "frmSniffer");
    tools->sniffer.RAM_TEXT.DblClick(2);
    QWidget& settings = Activated("frm_Sniff_Settings");
    visit(settings, "frm_Sniff_Settings");
    settings.close();
    Window().close();
  }
};

QWidget& Front(const char* name) {
  QWidget* form = FindTopLevel(name);
  if (form == nullptr) throw std::runtime_error(std::string("There is no ") + name + ".");
  form->activateWindow();
  EXPECT_TRUE(QTest::qWaitFor([&] { return form->isActiveWindow(); }, 2000)) << name;
  return *form;
}

void ShowGraphSettings(BurnerStart& start, const Visitor& visit) {
  auto& settings = start.graph().settings;
  settings.Show();
  settings.lblCapClick(10);
  QWidget& dialog = Front("frmGraphConf");
  visit(dialog, "frmGraphConf");
  start.world.dialogs()
      .ExpectMessageBox("Altering this data could harm your measurement.", "Edit")
      .Press(Answer::kOk);
  settings.cmdAdvanced.Press();
  visit(dialog, "frmGraphConf advanced");
}

// One measurement for all of them: it takes longer than the rest of the gallery.
void ShowGraph(const Visitor& visit) {
  BurnerStart start;
  start.window().resize(1000, 640);
  start.graph().commands.mnuScale(1);
  start.graph().display.GraphPanMouseUp(MouseButton::kLeft, 6000);
  visit(Front("frmGraphic"), "frmGraphic");
  QMenu* menu = start.window().findChild<QMenu*>("mnuContextMenu");
  menu->popup(QPoint(0, 0));
  visit(*menu, "menu of the graph");
  for (const QAction* entry : menu->actions()) {
    if (entry->menu() == nullptr) continue;
    entry->menu()->popup(QPoint(0, 0));
    visit(*entry->menu(), "menu " + entry->objectName().toStdString());
    entry->menu()->close();
  }
  menu->close();
  auto& progress = start.graph().files.progress;
  progress.caption.Caption = "Reading file";
  progress.lblFile.Caption = "/home/user/measurements/burner start.mss";
  progress.prgShare.Value = 42;
  progress.form.Visible = true;
  visit(Front("frmFileProgress"), "frmFileProgress");
  progress.form.Visible = false;
  start.graph().test_mode.Show();
  QWidget& test_mode = Front("frmTestMode");
  visit(test_mode, "frmTestMode");
  test_mode.close();
  ShowGraphSettings(start, visit);
}

template <class Windows, void (Windows::*kShow)(const Visitor&)>
void Show(const Visitor& visit) {
  (Windows().*kShow)(visit);
}

}  // namespace

std::vector<Exhibit> ToolGallery() {
  return {{"control_panel", &Show<ToolWindows, &ToolWindows::ShowPanel>},
          {"scan", &Show<ToolWindows, &ToolWindows::ShowScan>},
          {"wrong_message", &Show<ToolWindows, &ToolWindows::ShowWrongMessage>},
          {"pressure", &Show<ToolWindows, &ToolWindows::ShowPressure>},
          {"cfg_check", &Show<CfgWindows, &CfgWindows::Show>},
          {"eeprom_writer", &Show<EepromWindows, &EepromWindows::ShowWriter>},
          {"eeprom_downloader", &Show<EepromWindows, &EepromWindows::ShowDownloader>},
          {"parameters", &Show<ParameterWindows, &ParameterWindows::Show>},
          {"sniffer", &Show<SnifferWindows, &SnifferWindows::Show>}};
}

std::vector<Exhibit> GraphGallery() { return {{"graph", &ShowGraph}}; }

}  // namespace tarnlink
