// The options dialog: its controls, what a click does, and how it is left.

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTabWidget>

#include "ui/mnemonics.h"
#include "ui/ui_fixture.h"

namespace tarnlink {
namespace {

class OptionsTest : public UiTest {
 protected:
  // The title of the frame that a control stands in.
  std::string Frame(const std::string& name) const {
    for (QWidget* up = &Get(name); up != nullptr; up = up->parentWidget()) {
      if (auto* frame = qobject_cast<QGroupBox*>(up)) return frame->title().toStdString();
    }
    return "no frame";
  }

  void ShowTab(int index) { Get<QTabWidget>("SSTab1").setCurrentIndex(index); }

  // Brings the tab of a control to the front. False if it is on none.
  bool ShowTabOf(const std::string& name) {
    for (int i = 0; i < Get<QTabWidget>("SSTab1").count(); ++i) {
      ShowTab(i);
      if (Shown(name)) return true;
    }
    return false;
  }

  // Which buttons of a group are set, such as "1|".
  std::string Set(const std::string& group, int count) const {
    std::string set;
    for (int i = 0; i < count; ++i) {
      const std::string name = group + "(" + std::to_string(i) + ")";
      if (Get<QRadioButton>(name).isChecked()) set += std::to_string(i) + "|";
    }
    return set;
  }

  // Speed, parity, stop bits and time-out as they are shown.
  std::string PortSettings() const {
    return Set("opt_Baudrate", 6) + " " + Set("opt_parity", 3) + " " + Set("opt_stop", 2) + " " +
           std::to_string(Get<QSlider>("sld_MsgTimeout").value());
  }

  std::string Stored(const char* section, const char* key) {
    return world.settings().GetSetting(section, key, "-");
  }

  bool Up() const { return options->isVisible(); }
};

// --- The controls ---

struct Expected {
  const char* name;
  const char* frame;
  const char* caption;
};

constexpr Expected kButtons[] = {
    {"opt_Protocol(0)", "Protocol", "Tarnlink Protocol"},
    {"opt_Protocol(1)", "Protocol", "ZOLT External Protocol"},
    {"opt_Protocol(2)", "Protocol", "ModBus"},
    {"opt_Baudrate(0)", "Baudrate", "1200"},
    {"opt_Baudrate(1)", "Baudrate", "2400"},
    {"opt_Baudrate(2)", "Baudrate", "4800"},
    {"opt_Baudrate(3)", "Baudrate", "9600"},
    {"opt_Baudrate(4)", "Baudrate", "19200"},
    {"opt_Baudrate(5)", "Baudrate", "38400"},
    {"opt_CommPort(0)", "Communication Port", "COM1"},
    {"opt_CommPort(1)", "Communication Port", "COM2"},
    {"opt_CommPort(2)", "Communication Port", "COM3"},
    {"opt_CommPort(3)", "Communication Port", "COM4"},
    {"opt_CommPort(4)", "Communication Port", "COM"},
    {"opt_stop(0)", "Stop Bits", "One"},
    {"opt_stop(1)", "Stop Bits", "Two"},
    {"opt_parity(0)", "Parity", "None"},
    {"opt_parity(1)", "Parity", "Even"},
    {"opt_parity(2)", "Parity", "Odd"},
    {"MicroSelect(0)", "Microprocessor", "ATMega"},
    {"MicroSelect(1)", "Microprocessor", "XMega"},
    {"MicroSelect(2)", "Microprocessor", "NEC"},
    {"MicroSelect(3)", "Microprocessor", "Renesas"},
    {"chk_GeneralLogging(0)", "Logging", "File Logging"},
    {"chk_GeneralLogging(1)", "Logging", "DDE Support"},
    {"chk_DisableCommErrors", "Communication Errors", "Ignore Communication Errors"},
    {"ScanningBox", "Grid", "Scanning box"},
    {"chkGridOn", "Grid", "Grid  on"},
    {"chkClearAllValues", "Initial Value Setting", "Clear all values at start of communication"},
    {"cmdBrowseMapFile", "Memory Map Location", "Browse..."},
    {"cmdBrowseZOLTIDFile", "ZOLT ID Definition", "Browse..."},
    {"cmdBrowseDatabasefiles", "Path to database files", "Browse..."},
    {"cmdBrowseLogPath", "Log Path", "Browse..."},
    {"cmdBrowseExcel", "Path to Excel", "Browse..."}};

constexpr Expected kFields[] = {{"ComPortNumber", "Communication Port", "1"},
                                {"txt_MapFile", "Memory Map Location", ".\\default.map"},
                                {"txt_ZOLTIDDef", "ZOLT ID Definition", ".\\default.ids"},
                                {"txt_databasefiles", "Path to database files", "."},
                                {"txt_LogPath", "Log Path", "C:"},
                                {"txt_PathToExcel", "Path to Excel", "D:\\EXCEL.EXE"}};

TEST_F(OptionsTest, EveryButtonHasItsFrameAndCaption) {
  OpenOptions();
  for (const Expected& expected : kButtons) {
    SCOPED_TRACE(expected.name);
    EXPECT_EQ(WithoutMark(Get<QAbstractButton>(expected.name).text()).toStdString(),
              expected.caption);
    EXPECT_EQ(Frame(expected.name), expected.frame);
    EXPECT_TRUE(ShowTabOf(expected.name));
  }
}

TEST_F(OptionsTest, EveryFieldHasItsFrameAndWhatIsStored) {
  OpenOptions();
  for (const Expected& expected : kFields) {
    SCOPED_TRACE(expected.name);
    EXPECT_EQ(Get<QLineEdit>(expected.name).text().toStdString(), expected.caption);
    EXPECT_EQ(Frame(expected.name), expected.frame);
    EXPECT_TRUE(ShowTabOf(expected.name));
  }
  EXPECT_EQ(Frame("sld_MsgTimeout"), "Message Timeout");
  EXPECT_TRUE(ShowTabOf("sld_MsgTimeout"));
  EXPECT_EQ(Get("frmMicro").findChildren<QRadioButton*>().size(), 4);
  EXPECT_TRUE(ShowTabOf("cmd_OptionsOk") && ShowTabOf("cmd_OptionsCancel"));
}

TEST_F(OptionsTest, ShowsWhatAnEmptyStoreMeans) {
  OpenOptions();
  EXPECT_EQ(options->windowTitle(), "Options");
  EXPECT_TRUE(options->isModal());
  EXPECT_EQ(Set("opt_Protocol", 3), "1|");
  EXPECT_EQ(PortSettings(), "1| 1| 1| 3");
  EXPECT_EQ(Set("opt_CommPort", 5), "0|");
  EXPECT_EQ(Set("MicroSelect", 4), "0|");
  EXPECT_TRUE(Get<QCheckBox>("chk_DisableCommErrors").isChecked());
  EXPECT_FALSE(Get<QCheckBox>("chk_GeneralLogging(0)").isChecked());
}

TEST_F(OptionsTest, TheSliderGoesFromNoneToFiveSeconds) {
  OpenOptions();
  auto& slider = Get<QSlider>("sld_MsgTimeout");
  EXPECT_EQ(slider.minimum(), 0);
  EXPECT_EQ(slider.maximum(), 5);
  EXPECT_EQ(slider.toolTip(), "3 second(s)");
  slider.setFocus();
  PressFocused(Qt::Key_Home);
  EXPECT_EQ(slider.toolTip(), "0 second(s)");
  EXPECT_EQ(slider.parentWidget()->findChild<QLabel*>()->text(), "0 s");
  PressFocused(Qt::Key_Right);
  EXPECT_EQ(slider.value(), 1) << "steps of one";
  PressFocused(Qt::Key_PageUp);
  EXPECT_EQ(slider.value(), 2);
}

TEST_F(OptionsTest, ToolTips) {
  OpenOptions();
  EXPECT_EQ(Get("ComPortNumber").toolTip(), "Set 1  to 16");
  EXPECT_NE(Get("cmbPortDevice").toolTip(), "");
}

TEST_F(OptionsTest, APathWithoutEndStretchesNothing) {
  world.settings().SaveSetting("Paths", "LogPath", "<b>" + std::string(5000, 'W'));
  OpenOptions();
  ShowTab(1);
  EXPECT_TRUE(Get<QLineEdit>("txt_LogPath").text().startsWith("<b>WW"));
  EXPECT_LT(options->sizeHint().width(), 900);
}

TEST_F(OptionsTest, NothingIsCutOffOnAnyTab) {
  OpenOptions();
  for (int tab = 0; tab < 3; ++tab) {
    ShowTab(tab);
    FinishPainting();
    for (QWidget* widget : options->findChildren<QWidget*>()) {
      const bool text = qobject_cast<QAbstractButton*>(widget) != nullptr ||
                        qobject_cast<QLabel*>(widget) != nullptr;
      if (!text || !widget->isVisible()) continue;
      const std::string name = widget->objectName().toStdString();
      EXPECT_GE(widget->width(), widget->minimumSizeHint().width()) << name;
      EXPECT_GE(widget->height(), widget->minimumSizeHint().height()) << name;
      EXPECT_TRUE(widget->parentWidget()->rect().contains(widget->geometry())) << name;
    }
  }
}

// --- Clicks ---

TEST_F(OptionsTest, AProtocolPresetsThePort) {
  OpenOptions();
  Click("opt_Protocol(0)");
  EXPECT_EQ(PortSettings(), "3| 0| 0| 3");
  Click("opt_Protocol(2)");
  EXPECT_EQ(PortSettings(), "4| 1| 0| 3");
  Click("opt_Protocol(1)");
  EXPECT_EQ(PortSettings(), "1| 0| 0| 3");
}

TEST_F(OptionsTest, AProtocolOverwritesWhatTheUserChoseWithoutAsking) {
  OpenOptions();
  Click("opt_Baudrate(5)");
  Click("opt_parity(2)");
  Get<QSlider>("sld_MsgTimeout").setValue(5);
  EXPECT_EQ(PortSettings(), "5| 2| 1| 5");
  Click("opt_Protocol(1)");
  EXPECT_EQ(PortSettings(), "1| 0| 0| 3") << "also the protocol that is set already";
}

TEST_F(OptionsTest, ThePortNumberIsTypedBesideComOnly) {
  OpenOptions();
  EXPECT_FALSE(Get("ComPortNumber").isEnabled());
  Click("opt_CommPort(4)");
  EXPECT_TRUE(Get("ComPortNumber").isEnabled());
  Click("opt_CommPort(2)");
  EXPECT_FALSE(Get("ComPortNumber").isEnabled());
}

TEST_F(OptionsTest, AMicroprocessorCountsAtOnce) {
  OpenOptions();
  ShowTab(2);
  Click("MicroSelect(3)");
  EXPECT_EQ(monitor.main.MicroType, 3);
  EXPECT_EQ(Set("MicroSelect", 4), "3|");
}

TEST_F(OptionsTest, BrowseButtonsFillTheirFields) {
  world.disk().Put("/home/user/work/my.ids", "");
  world.disk().MakeFolder("/home/user/logs");
  OpenOptions();
  ShowTab(1);
  world.dialogs().ExpectOpenFile("ZOLT ID definition file").Give("/home/user/work/my.ids");
  Click("cmdBrowseZOLTIDFile");
  EXPECT_EQ(Get<QLineEdit>("txt_ZOLTIDDef").text(), "/home/user/work/my.ids");
  world.dialogs().ExpectFolder("Log Path").Give("/home/user/logs");
  Click("cmdBrowseLogPath");
  EXPECT_EQ(Get<QLineEdit>("txt_LogPath").text(), "/home/user/logs");
  world.dialogs().ExpectFolder("Path to database files").Cancel();
  Click("cmdBrowseDatabasefiles");
  EXPECT_EQ(Get<QLineEdit>("txt_databasefiles").text(), ".");
  world.dialogs().ExpectOpenFile("Excel").Give("/usr/bin/sheet");
  Click("cmdBrowseExcel");
  EXPECT_EQ(Get<QLineEdit>("txt_PathToExcel").text(), "/usr/bin/sheet");
  EXPECT_TRUE(Up());
}

TEST_F(OptionsTest, AnUnknownMapFileIsToldAndTheDialogStays) {
  world.disk().Put("/home/user/work/no.map", "nothing that is known");
  OpenOptions();
  ShowTab(1);
  world.dialogs().ExpectOpenFile("Memory map file").Give("/home/user/work/no.map");
  world.dialogs().ExpectMessageBox("Unkonwn map file.", "TarnLink");
  Click("cmdBrowseMapFile");
  EXPECT_EQ(Get<QLineEdit>("txt_MapFile").text(), ".\\default.map");
  EXPECT_TRUE(Up());
}

// --- Leaving ---

TEST_F(OptionsTest, OkStoresAndCloses) {
  OpenOptions();
  Click("opt_Protocol(0)");
  Click("opt_CommPort(1)");
  ShowTab(1);
  Type("txt_LogPath", "/var/log");
  Click("cmd_OptionsOk");
  EXPECT_FALSE(Up());
  EXPECT_EQ(Stored("Communication", "Protocol"), "0");
  EXPECT_EQ(Stored("Communication", "Baudrate"), "3");
  EXPECT_EQ(Stored("Communication", "Commport"), "2");
  EXPECT_EQ(Stored("Paths", "LogPath"), "/var/log");
  EXPECT_EQ(monitor.main.StatusBar1(1).Text.get(), "COM2, 9600,N,8, 1");
}

TEST_F(OptionsTest, EnterInAFieldIsOk) {
  OpenOptions();
  ShowTab(1);
  Type("txt_LogPath", "/var/log");
  Press("txt_LogPath", Qt::Key_Return);
  EXPECT_FALSE(Up());
  EXPECT_EQ(Stored("Paths", "LogPath"), "/var/log");
}

TEST_F(OptionsTest, EnterOnAButtonPressesThatButton) {
  OpenOptions();
  Click("opt_Protocol(2)");
  Get("cmd_OptionsCancel").setFocus();
  PressFocused(Qt::Key_Return);
  EXPECT_FALSE(Up());
  EXPECT_EQ(Stored("Communication", "Protocol"), "1") << "Cancel, not Ok";

  OpenOptions();
  ShowTab(1);
  Get("cmdBrowseLogPath").setFocus();
  world.dialogs().ExpectFolder("Log Path").Cancel();
  PressFocused(Qt::Key_Return);
  EXPECT_TRUE(Up());
}

TEST_F(OptionsTest, CancelEscapeAndTheFramesCrossStoreNothing) {
  OpenOptions();
  Click("opt_Protocol(2)");
  Click("cmd_OptionsCancel");
  EXPECT_FALSE(Up());
  OpenOptions();
  PressFocused(Qt::Key_Escape);
  EXPECT_FALSE(Up());
  EXPECT_FALSE(monitor.options.form.Visible);
  OpenOptions();
  options->close();
  EXPECT_FALSE(Up());
  EXPECT_FALSE(monitor.options.form.Visible);
  EXPECT_EQ(Stored("Communication", "Protocol"), "1");
}

TEST_F(OptionsTest, WhatWasCancelledIsStillThereAndGoesWithTheNextOk) {
  OpenOptions();
  Click("opt_Protocol(2)");
  Click("cmd_OptionsCancel");
  OpenOptions();
  EXPECT_EQ(Set("opt_Protocol", 3), "2|");
  Click("cmd_OptionsOk");
  EXPECT_EQ(Stored("Communication", "Protocol"), "2");
}

TEST_F(OptionsTest, APortThatCannotBeKeepsTheDialogUp) {
  for (const char* number : {"17", "0", "abc", "", "-3"}) {
    SCOPED_TRACE(number);
    OpenOptions();
    Click("opt_CommPort(4)");
    Type("ComPortNumber", number);
    world.dialogs().ExpectMessageBox({.text = "Choose a port between 1 and 16",
                                      .title = "COM port Error",
                                      .icon = Icon::kCritical});
    Click("cmd_OptionsOk");
    EXPECT_TRUE(Up());
    EXPECT_EQ(Get<QLineEdit>("ComPortNumber").text(), "16");
    Click("cmd_OptionsOk");
    EXPECT_FALSE(Up());
    EXPECT_EQ(Stored("Communication", "Commport"), "16");
  }
}

TEST_F(OptionsTest, TheDialogIsMadeOnceAndStays) {
  Begin();
  EXPECT_EQ(options, nullptr);
  OpenOptions();
  const QDialog* first = options.get();
  Click("cmd_OptionsCancel");
  OpenOptions();
  EXPECT_EQ(options.get(), first);
  EXPECT_TRUE(Up());
}

TEST_F(OptionsTest, TheDialogIsClosedDuringARun) {
  OpenScreen(kTwoLocations);
  Click("Toolbar1(2)");
  Entry("M_options").trigger();
  EXPECT_EQ(options, nullptr);
  Click("Toolbar1(3)");
  OpenOptions();
  EXPECT_TRUE(Up());
}

TEST_F(OptionsTest, TheDialogMayGoBeforeItsForm) {
  OpenOptions();
  options.reset();
  monitor.options.opt_Protocol.Select(2);
  monitor.options.txt_LogPath.Text = "after";
  monitor.options.frmMicro.Enabled = false;
  monitor.options.form.Visible = false;
  EXPECT_FALSE(world.devices().watched());
}

}  // namespace
}  // namespace tarnlink
