#include "ui/window_gallery.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QTabWidget>
#include <QTimer>

#include "form/boiler_on_line.h"
#include "platform/qt/qt_dialogs.h"
#include "support/samples.h"
#include "ui/edit_fixture.h"
#include "ui/gen_par_file_dialog.h"
#include "ui/graph_fixture.h"
#include "ui/link_tool.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

// The main form and its dialogs, with a screen of the samples.
class MonitorWindows : public EditUiTest {
 public:
  ~MonitorWindows() override { monitor.main.Comm->SetWatcher(nullptr); }
  void TestBody() override {}

  void Start() {
    BeginOnce();
    window->resize(1000, 620);
    FinishPainting();
  }
  void OpenSample() {
    Start();
    OpenScreen(SampleText("boiler.wcr"));
    FinishPainting();
  }
  void Run() {
    Click("Toolbar1(2)");
    world.Advance(20s);
    FinishPainting();
  }
  void Stop() { Click("Toolbar1(3)"); }

  void ShowMain(const Visitor& visit);
  void ShowProjectAndLink(const Visitor& visit);
  void ShowMenus(const Visitor& visit);
  void ShowOptions(const Visitor& visit);
  void ShowSettings(const Visitor& visit);
  void ShowWrites(const Visitor& visit);
  void ShowAbout(const Visitor& visit);
  void ShowGenParFile(const Visitor& visit);
  void ShowBox(const Visitor& visit);

 private:
  BoilerOnLine boiler{world, {.line = {.pace = {.baud = 9600}, .answer_delay_us = 5'000}}};
  LinkRecord record{world.clock()};
};

void MonitorWindows::ShowMain(const Visitor& visit) {
  Start();
  visit(*window, "frm_Main empty");
  OpenSample();
  Run();
  monitor.main.RAM_LOC_VAL(2).IsOld = true;
  FinishPainting();
  visit(*window, "frm_Main running");
  Stop();
}

void MonitorWindows::ShowProjectAndLink(const Visitor& visit) {
  Start();
  monitor.main.Comm->SetWatcher(&record);
  {
    LinkTool link(monitor.main, record, *window);
    for (const char* file : {"boiler.prj", "atmega.map"}) {
      world.disk().Put(std::string("/home/user/work/") + file, SampleBytes(file));
    }
    world.dialogs().ExpectOpenFile("Open").Give("/home/user/work/boiler.prj");
    Entry("mnuOpenProject").trigger();
    OpenSample();
    if (!Shown("sstProject")) Entry("mnuViewProjectWindow").trigger();
    Entry("mnuLinkHealth").trigger();
    Entry("mnuLinkTrace").trigger();
    Run();
    WaitForActive(window.get());
    visit(*window, "frm_Main with project and link");
    QWidget* trace = FindTopLevel("frm_LinkTrace");
    WaitForActive(trace);
    visit(*trace, "frm_LinkTrace");
    WaitForActive(window.get());
    Stop();
  }
  monitor.main.Comm->SetWatcher(nullptr);
}

void MonitorWindows::ShowMenus(const Visitor& visit) {
  world.settings().SaveSetting("FileHistory", "Hist0", "/home/user/screens/boiler & room.wcr");
  OpenSample();
  for (QAction* entry : window->menuBar()->actions()) {
    QMenu* menu = entry->menu();
    menu->popup(QPoint(0, 0));
    ASSERT_TRUE(QTest::qWaitForWindowExposed(menu));
    visit(*menu, "menu " + entry->objectName().toStdString());
    menu->close();
  }
}

void MonitorWindows::ShowOptions(const Visitor& visit) {
  world.devices().PlugIn({.path = "/dev/ttyUSB0",
                          .stable_path = "/dev/serial/by-id/usb-Acme_Serial-if00-port0",
                          .description = "USB Serial Converter",
                          .maker = "Acme"});
  OpenOptions();
  auto& tabs = Get<QTabWidget>("SSTab1");
  for (int i = 0; i < tabs.count(); ++i) {
    tabs.setCurrentIndex(i);
    FinishPainting();
    visit(*options, "frm_Options " + tabs.tabText(i).remove('&').toStdString());
  }
  tabs.setCurrentIndex(0);
  Click("opt_CommPort(4)");
  visit(*options, "frm_Options another port");
  Click("cmd_OptionsCancel");
}

void MonitorWindows::ShowSettings(const Visitor& visit) {
  OpenSample();
  const std::pair<const char*, int> protocols[] = {
      {"TarnLink", kTarnlinkProtocol}, {"ZOLT", kZoltProtocol}, {"Modbus", kModbusProtocol}};
  for (const auto& [name, protocol] : protocols) {
    monitor.options.opt_Protocol.Select(protocol);
    monitor.main.Locations[1].Specification = protocol == kTarnlinkProtocol ? 0 : 1;
    monitor.main.RAM_LOC_TEXT.DblClick(1);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(settings.get()));
    visit(*settings, std::string("frm_Settings ") + name);
    Click("cmd_Cancel");
  }
}

void MonitorWindows::ShowWrites(const Visitor& visit) {
  OpenSample();
  monitor.options.opt_Protocol.Select(kModbusProtocol);
  Click("Toolbar1(2)");
  monitor.main.RAM_LOC_VAL(1).Text = "705";
  monitor.main.RAM_LOC_VAL.DblClick(1);
  WaitForActive(write_value.get());
  Type("txt_WriteValue", "720");
  visit(*write_value, "frm_WriteValue");
  Click("Option1(1)");
  Type("Text1", "3");
  Click("Values");
  WaitForActive(write_registers.get());
  Type("value(1)", "10");
  visit(*write_registers, "frmMultipleReg");
  Click("Command1");
  WaitForActive(write_value.get());
  visit(*write_value, "frm_WriteValue block");
  Click("cmd_WriteCancel");
  monitor.main.Locations[1].StorageType = kBit;
  monitor.main.RAM_LOC_VAL.DblClick(1);
  WaitForActive(write_bit.get());
  visit(*write_bit, "frm_WriteBitValue");
  Click("cmd_Cancel");
  Stop();
}

void MonitorWindows::ShowAbout(const Visitor& visit) {
  Begin();
  Entry("M_About").trigger();
  WaitForActive(about.get());
  visit(*about, "frmAbout");
}

void MonitorWindows::ShowGenParFile(const Visitor& visit) {
  OpenScreen(SampleText("zolt.wcr"));
  GenParFileDialog dialog(monitor.gen_par_file, world.settings(), window.get());
  Entry("mnuGenParaFile").trigger();
  WaitForActive(&dialog);
  visit(dialog, "frmGenParFile");
  dialog.close();
}

// The box that the program really shows.
void MonitorWindows::ShowBox(const Visitor& visit) {
  Start();
  QtDialogs dialogs;
  QTimer::singleShot(0, window.get(), [&] {
    QWidget* box = QApplication::activeModalWidget();
    ASSERT_NE(box, nullptr);
    visit(*box, "message box");
    box->close();
  });
  dialogs.MessageBox({.text = "Communication port 1 occupied.\r\nStop communication and try again.",
                      .title = "Communication Error",
                      .icon = Icon::kCritical,
                      .detail = "/dev/ttyUSB0 is in use by another program."});
}

template <void (MonitorWindows::*kShow)(const Visitor&)>
void Show(const Visitor& visit) {
  (MonitorWindows().*kShow)(visit);
}

}  // namespace

std::vector<Exhibit> MonitorGallery() {
  return {{"main", &Show<&MonitorWindows::ShowMain>},
          {"project_and_link", &Show<&MonitorWindows::ShowProjectAndLink>},
          {"menus", &Show<&MonitorWindows::ShowMenus>},
          {"options", &Show<&MonitorWindows::ShowOptions>},
          {"settings", &Show<&MonitorWindows::ShowSettings>},
          {"writes", &Show<&MonitorWindows::ShowWrites>},
          {"about", &Show<&MonitorWindows::ShowAbout>},
          {"gen_par_file", &Show<&MonitorWindows::ShowGenParFile>},
          {"message_box", &Show<&MonitorWindows::ShowBox>}};
}

std::vector<Exhibit> Gallery() {
  std::vector<Exhibit> all = MonitorGallery();
  for (const auto& part : {ToolGallery(), GraphGallery()}) {
    all.insert(all.end(), part.begin(), part.end());
  }
  return all;
}

}  // namespace tarnlink
