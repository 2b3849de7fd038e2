// Pictures of every form for a person to look at, in a light and a dark palette.

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QTabWidget>
#include <QTimer>

#include "platform/qt/qt_dialogs.h"
#include "ui/edit_fixture.h"
#include "ui/look.h"

namespace tarnlink {
namespace {

// One Location of a screen file, its value box right of its name box.
std::string Line(const std::string& name, int storage, int representation, int scan_flags, int top,
                 int left) {
  const std::string place = std::to_string(top) + ",";
  return "\"L\",0," + std::to_string(storage) + ",\"01A0\",0,\"" + name + "\",\"var_" + name +
         "\",0,0," + std::to_string(scan_flags) + ",0,\"0\"," + std::to_string(representation) +
         "," + place + std::to_string(left + 2160) + "," + place + std::to_string(left) +
         ",\"0\"\r\n";
}

std::string Heading(const std::string& text, int top, int left, const std::string& size) {
  return "\"T\",\"" + text + "\"," + std::to_string(top) + "," + std::to_string(left) +
         ",\"DejaVu Sans\"," + size + ",#TRUE#,#FALSE#,8388608\r\n";
}

// What a service engineer could have laid out.
std::string BoilerScreen() {
  std::string text = "14737632\r\n";
  int top = 900;
  for (const char* name : {"Flow temperature", "Return temperature", "Flue gas", "Set point"}) {
    text += Line(name, 3, 0, 0, top, 600);
    top += 375;
  }
  top = 900;
  for (const char* name : {"Fan speed", "Gas valve", "Flame signal", "Ignition"}) {
    text += Line(name, 1, 2, top == 1650 ? 1 : 0, top, 5400);
    top += 375;
  }
  text += Line("A name that is much too long for its box", 3, 1, 0, 3000, 600);
  text += Heading("Boiler 1", 150, 240, "14") + Heading("Temperatures", 570, 600, "9.75") +
          Heading("Burner", 570, 5400, "9.75");
  return text;
}

class Pictures : public EditUiTest, public ::testing::WithParamInterface<Look> {
 protected:
  Pictures() : usual_(QApplication::palette()) {
    if (GetParam().dark) QApplication::setPalette(DarkPalette());
  }
  ~Pictures() override { QApplication::setPalette(usual_); }

  void BeginLarge() {
    Begin();
    window->resize(1000, 620);
  }

  void Save(QWidget& widget, const std::string& name, QWidget* above = nullptr) {
    SavePicture(widget, name + "-" + GetParam().name, above);
  }

  // The box is the one that the program really shows.
  void SaveWithBox(const MessageBoxRequest& request, const std::string& name) {
    QtDialogs dialogs;
    QTimer::singleShot(0, window.get(), [&] {
      QWidget* box = QApplication::activeModalWidget();
      ASSERT_NE(box, nullptr);
      Save(*window, name, box);
      box->close();
    });
    dialogs.MessageBox(request);
  }

 private:
  QPalette usual_;
};

TEST_P(Pictures, ShowTheMainWindow) {
  BeginLarge();
  Save(*window, "main-empty");
  OpenScreen(BoilerScreen());
  FinishPainting();
  Save(*window, "main-stopped");
  SlaveAnswers("02C1");
  Click("Toolbar1(2)");
  world.Advance(std::chrono::seconds(1));
  Save(*window, "main-running");
  Click("Toolbar1(3)");
  Save(*window, "main-stopped-again");
}

TEST_P(Pictures, ShowASilentSlave) {
  BeginLarge();
  OpenScreen(BoilerScreen());
  Click("Toolbar1(2)");
  world.dialogs().ExpectMessageBox("Slave is not responding", "Message Timeout").While([this] {
    SaveWithBox(
        {.text = "Slave is not responding", .title = "Message Timeout", .icon = Icon::kCritical},
        "main-silent-slave-box");
  });
  world.Advance(std::chrono::seconds(4));
  FinishPainting();
  Save(*window, "main-silent-slave");
  Click("Toolbar1(3)");
}

TEST_P(Pictures, ShowAnOccupiedPort) {
  BeginLarge();
  OpenScreen(BoilerScreen());
  world.port().MakeBusy();
  world.dialogs()
      .ExpectMessageBox("Communication port 1 occupied.\r\nStop communication and try again.",
                        "Communication Error")
      .While([this] {
        SaveWithBox({.text = "Communication port 1 occupied.\r\nStop communication and try again.",
                     .title = "Communication Error",
                     .icon = Icon::kCritical,
                     .detail = "/dev/ttyUSB0 is in use by another program."},
                    "main-occupied-port");
      });
  Click("Toolbar1(2)");
}

TEST_P(Pictures, ShowScanningBoxesAndAScreenLargerThanTheWindow) {
  world.settings().SaveSetting("Communication", "Scanning", "1");
  Begin();
  OpenScreen(ScreenOf(512));
  FinishPainting();
  Save(*window, "main-512-locations");
}

TEST_P(Pictures, ShowTheSamples) {
  const QDir samples(UI_SAMPLES);
  const QStringList files = samples.entryList({"*.wcr"});
  ASSERT_FALSE(files.isEmpty());
  Begin();
  window->resize(1180, 760);
  for (const QString& name : files) {
    QFile file(samples.filePath(name));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    OpenScreen(file.readAll().toStdString());
    FinishPainting();
    Save(*window, "sample-" + QFileInfo(name).baseName().toStdString());
  }
}

// Check boxes, the frame of the keyboard, a value that is read from afar, and a drag on its way.
TEST_P(Pictures, ShowAScreenBeingEdited) {
  ShowChecks();
  window->resize(1000, 620);
  OpenScreen(BoilerScreen());
  Get("RAM_LOC_TEXT(2)").setFocus(Qt::TabFocusReason);
  FinishPainting();
  Save(*window, "edit-name-focused");
  Get("RAM_LOC_CHECK(3)").setFocus(Qt::TabFocusReason);
  Save(*window, "edit-check-focused");
  Get("lbl_TextInfo(1)").setFocus(Qt::TabFocusReason);
  Save(*window, "edit-label-focused");
  Grab("RAM_LOC_TEXT(1)", QPoint(150, 230));
  Save(*window, "edit-drag");
  MoveTo(On("RAM_LOC_VAL(6)"));
  Save(*window, "edit-drag-refused");
  Key(Qt::Key_Escape);
  Release();
  SetGrid(true);
  Drag("RAM_LOC_TEXT(1)", QPoint(0, 240));
  for (int i = 0; i < 3; ++i) Click("Toolbar1(1)");
  Click("Toolbar1(4)");
  FinishPainting();
  Save(*window, "edit-added-on-the-grid");
}

TEST_P(Pictures, ShowValuesThatAreReadFromAfar) {
  BeginLarge();
  OpenScreen(BoilerScreen());
  const std::pair<const char*, const char*> values[] = {
      {"RAM_LOC_VAL(1)", "65535"}, {"RAM_LOC_VAL(5)", "-12345"}, {"RAM_LOC_VAL(8)", "10110111"}};
  for (const auto& [name, text] : values) {
    ClickAt(On(name), Qt::LeftButton, Qt::ShiftModifier);
    const int index = name[12] - '0';
    monitor.main.RAM_LOC_VAL(index).Text = text;
  }
  FinishPainting();
  Save(*window, "edit-large-values");
}

TEST_P(Pictures, ShowTheMenus) {
  world.settings().SaveSetting("FileHistory", "Hist0", "/home/user/screens/boiler room.wcr");
  world.settings().SaveSetting("FileHistory", "Hist1", "/home/user/" + std::string(200, 'x'));
  BeginLarge();
  OpenScreen(BoilerScreen());
  Drag("RAM_LOC_TEXT(1)", QPoint(0, 240));
  Click("Toolbar1(4)");
  Undo();
  Click("Toolbar1(2)");
  for (const char* name : {"M_file", "M_edit", "M_Tools", "mnuProject", "M_Help"}) {
    QMenu* menu = Entry(name).menu();
    menu->popup(QPoint(0, 0));
    ASSERT_TRUE(QTest::qWaitForWindowExposed(menu));
    Save(*menu, std::string("menu-") + name);
    menu->close();
  }
  Click("Toolbar1(3)");
}

TEST_P(Pictures, ShowTheOptions) {
  world.devices().PlugIn({.path = "/dev/ttyUSB0",
                          .stable_path = "/dev/serial/by-id/usb-Acme_Serial-if00-port0",
                          .description = "USB Serial Converter",
                          .maker = "Acme"});
  OpenOptions();
  auto& tabs = Get<QTabWidget>("SSTab1");
  for (int i = 0; i < tabs.count(); ++i) {
    tabs.setCurrentIndex(i);
    FinishPainting();
    Save(*options, "options-" + std::to_string(i + 1));
  }
  tabs.setCurrentIndex(0);
  Click("opt_CommPort(4)");
  Get("ComPortNumber").setFocus();
  Save(*options, "options-other-port");
}

TEST_P(Pictures, ShowTheAboutBox) {
  Begin();
  Entry("M_About").trigger();
  WaitForActive(about.get());
  Save(*about, "about");
}

TEST_P(Pictures, ShowTheDialogsOfAWrite) {
  BeginLarge();
  OpenScreen(BoilerScreen());
  monitor.options.opt_Protocol.Select(kModbusProtocol);
  Click("Toolbar1(2)");
  monitor.main.RAM_LOC_VAL(1).Text = "705";
  monitor.main.RAM_LOC_VAL.DblClick(1);
  WaitForActive(write_value.get());
  Save(*write_value, "write-value");
  Click("Option1(1)");
  Type("Text1", "8");
  Click("Values");
  WaitForActive(write_registers.get());
  Save(*write_registers, "write-registers");
  Type("value(1)", "10");
  Click("Command1");
  WaitForActive(write_value.get());
  Save(*write_value, "write-block");
  Click("cmd_WriteCancel");
  monitor.main.Locations[1].StorageType = kBit;
  monitor.main.RAM_LOC_VAL.DblClick(1);
  WaitForActive(write_bit.get());
  Save(*write_bit, "write-bit");
  Click("cmd_Cancel");
}

TEST_P(Pictures, ShowTheSettingsOfALocation) {
  BeginLarge();
  OpenScreen(BoilerScreen());
  const std::pair<const char*, int> protocols[] = {
      {"tarnlink", kTarnlinkProtocol}, {"zolt", kZoltProtocol}, {"modbus", kModbusProtocol}};
  for (const auto& [name, protocol] : protocols) {
    monitor.options.opt_Protocol.Select(protocol);
    monitor.main.Locations[1].Specification = protocol == kTarnlinkProtocol ? 0 : 1;
    monitor.main.RAM_LOC_TEXT.DblClick(1);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(settings.get()));
    Save(*settings, std::string("settings-") + name);
    Click("cmd_Cancel");
  }
}

INSTANTIATE_TEST_SUITE_P(Looks, Pictures, testing::Values(Look{"light", false}, Look{"dark", true}),
                         [](const testing::TestParamInfo<Look>& look) { return look.param.name; });

}  // namespace
}  // namespace tarnlink
