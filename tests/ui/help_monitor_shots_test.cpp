// The pictures of the help of the main window, its dialogs and the line, and F1 in each of them.

#include <QApplication>
#include <QCheckBox>
#include <QMenu>
#include <QTabWidget>
#include <QTimer>

#include "form/boiler_on_line.h"
#include "platform/qt/qt_dialogs.h"
#include "support/samples.h"
#include "ui/edit_fixture.h"
#include "ui/gen_par_file_dialog.h"
#include "ui/graph_fixture.h"
#include "ui/help_shots.h"
#include "ui/link_tool.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

class HelpShots : public EditUiTest {
 protected:
  // The program with its sample project, as the first start of it shows them.
  void OpenSample() {
    BeginOnce();
    window->resize(1180, 620);
    for (const char* name : {"boiler.prj", "default.ids", "default.erc", "atmega.map"}) {
      for (const char* folder : {"/home/user/work/", "/usr/share/tarnlink/"}) {
        world.disk().Put(folder + std::string(name), SampleBytes(name));
      }
    }
    world.dialogs().ExpectOpenFile("Open").Give(kProject);
    Entry("mnuOpenProject").trigger();
    OpenScreen(SampleText("boiler.wcr"));
    FinishPainting();
  }
  void Run() {
    Click("Toolbar1(2)");
    world.Advance(20s);
    FinishPainting();
  }

  static constexpr const char* kProject = "/home/user/work/boiler.prj";
  BoilerOnLine boiler{world, {.line = {.pace = {.baud = 9600}, .answer_delay_us = 5'000}}};
  HelpReader reader;
};

TEST_F(HelpShots, TheMainWindowWhileValuesComeIn) {
  OpenSample();
  Run();
  HelpShot(*window, "run");
  reader.ExpectPage(*window, "run.html");
  Click("Toolbar1(3)");
}

TEST_F(HelpShots, ASilentSlave) {
  OpenSample();
  boiler.line().AddFault("no_reply");
  world.dialogs().ExpectMessageBox("Slave is not responding", "Message Timeout").While([this] {
    QtDialogs dialogs;
    QTimer::singleShot(0, window.get(), [this] {
      QWidget* box = QApplication::activeModalWidget();
      ASSERT_NE(box, nullptr);
      HelpShot(*window, "silent", box);
      reader.ExpectPage(*box, "run.html");
      box->close();
    });
    dialogs.MessageBox(
        {.text = "Slave is not responding", .title = "Message Timeout", .icon = Icon::kCritical});
  });
  Click("Toolbar1(2)");
  world.Advance(5s);
  Click("Toolbar1(3)");
}

TEST_F(HelpShots, TheProjectBesideTheScreen) {
  OpenSample();
  monitor.main.mnuViewProjectWindow.Press();
  FinishPainting();
  if (!Shown("sstProject")) {
    monitor.main.mnuViewProjectWindow.Press();
    FinishPainting();
  }
  HelpShot(*window, "projects");
}

TEST_F(HelpShots, AScreenThatIsLaidOut) {
  OpenSample();
  Grab("RAM_LOC_TEXT(2)", QPoint(60, 130));
  HelpShot(*window, "screen");
  Key(Qt::Key_Escape);
  Release();
}

TEST_F(HelpShots, TheFileMenu) {
  OpenSample();
  QMenu* menu = Entry("M_file").menu();
  menu->popup(QPoint(0, 0));
  ASSERT_TRUE(QTest::qWaitForWindowExposed(menu));
  HelpShot(*menu, "paper");
  menu->close();
}

TEST_F(HelpShots, TheOptions) {
  world.devices().PlugIn({.path = "/dev/ttyUSB0",
                          .stable_path = "/dev/serial/by-id/usb-Acme_Serial-if00-port0",
                          .description = "USB Serial Converter",
                          .maker = "Acme"});
  OpenOptions();
  // As a user would leave them: presets of the protocol, folders of this machine.
  Click("opt_Protocol(0)");
  Click("opt_Protocol(1)");
  monitor.options.txt_MapFile.Text = "/home/user/work/boiler.map";
  monitor.options.txt_databasefiles.Text = "/home/user/work";
  monitor.options.txt_LogPath.Text = "/home/user/logs";
  monitor.options.txt_PathToExcel.Text = "/usr/bin/localc";
  auto& tabs = Get<QTabWidget>("SSTab1");
  const char* const names[] = {"options-port", "options-files", "options-monitor"};
  ASSERT_EQ(tabs.count(), 3);
  for (int i = 0; i < tabs.count(); ++i) {
    tabs.setCurrentIndex(i);
    FinishPainting();
    HelpShot(*options, names[i]);
  }
  reader.ExpectPage(*options, "options.html");
}

TEST_F(HelpShots, TheSettingsOfALocation) {
  OpenSample();
  monitor.main.RAM_LOC_TEXT.DblClick(1);
  ASSERT_TRUE(QTest::qWaitForWindowExposed(settings.get()));
  HelpShot(*settings, "settings");
  reader.ExpectPage(*settings, "settings.html");
  Click("cmd_Cancel");
}

TEST_F(HelpShots, TheDialogsOfAWrite) {
  OpenSample();
  monitor.options.opt_Protocol.Select(kModbusProtocol);
  Click("Toolbar1(2)");
  monitor.main.RAM_LOC_VAL(1).Text = "705";
  monitor.main.RAM_LOC_VAL.DblClick(1);
  WaitForActive(write_value.get());
  Type("txt_WriteValue", "720");
  HelpShot(*write_value, "write-value");
  reader.ExpectPage(*write_value, "write.html");
  Click("Option1(1)");
  Type("Text1", "3");
  Click("Values");
  WaitForActive(write_registers.get());
  Type("value(1)", "10");
  HelpShot(*write_registers, "write-registers");
  reader.ExpectPage(*write_registers, "write.html");
  Click("Command1");
  WaitForActive(write_value.get());
  Click("cmd_WriteCancel");
  monitor.main.Locations[1].StorageType = kBit;
  monitor.main.RAM_LOC_VAL.DblClick(1);
  WaitForActive(write_bit.get());
  HelpShot(*write_bit, "write-bit");
  reader.ExpectPage(*write_bit, "write.html");
  Click("cmd_Cancel");
}

TEST_F(HelpShots, TheAboutBox) {
  Begin();
  Entry("M_About").trigger();
  WaitForActive(about.get());
  HelpShot(*about, "about");
  reader.ExpectPage(*about, "about.html");
}

TEST_F(HelpShots, TheParameterFileOfAScreen) {
  OpenScreen(SampleText("zolt.wcr"));
  for (const int index : {16, 17, 24}) {
    monitor.main.RAM_LOC_VAL(index).Text = "60";
    monitor.main.Reads.Note(index, monitor.main.Locations[index], "60");
  }
  GenParFileDialog dialog(monitor.gen_par_file, world.settings(), window.get());
  Entry("mnuGenParaFile").trigger();
  WaitForActive(&dialog);
  for (const char* name : {"chkClass5", "chkClass7EE", "chkClass7RAM"}) {
    dialog.findChild<QCheckBox*>(name)->click();
  }
  HelpShot(dialog, "gen-par-file");
  reader.ExpectPage(dialog, "parameters.html");
  dialog.close();
}

TEST_F(HelpShots, TheLink) {
  BeginOnce();
  LinkRecord record{world.clock()};
  monitor.main.Comm->SetWatcher(&record);
  {
    LinkTool link(monitor.main, record, *window);
    OpenSample();
    Entry("mnuLinkHealth").trigger();
    Entry("mnuLinkTrace").trigger();
    Click("Toolbar1(2)");
    world.Advance(20s);
    monitor.main.RAM_LOC_VAL(2).IsOld = true;
    FinishPainting();
    HelpShot(*window, "link");
    QWidget* trace = FindTopLevel("frm_LinkTrace");
    ASSERT_NE(trace, nullptr);
    HelpShot(*trace, "link-trace");
    reader.ExpectPage(*trace, "link.html");
    window->activateWindow();
    Get("cmdClear").setFocus();
    reader.ExpectPage(*window, "link.html");
    Click("Toolbar1(3)");
  }
  monitor.main.Comm->SetWatcher(nullptr);
}

}  // namespace
}  // namespace tarnlink
