// The options dialog without a mouse, and for people who cannot see it.

#include <QAccessible>
#include <QTabBar>
#include <QTabWidget>

#include "ui/ui_fixture.h"

namespace tarnlink {
namespace {

class OptionsKeyboard : public UiTest {
 protected:
  // Where the tabulator leads from the tabs on, until it is back there.
  std::string Round(Qt::Key key = Qt::Key_Tab, Qt::KeyboardModifiers modifiers = {}) {
    constexpr int kEnough = 60;
    QTabBar* tabs = Get<QTabWidget>("SSTab1").tabBar();
    tabs->setFocus();
    std::string names;
    for (int i = 0; i < kEnough; ++i) {
      PressFocused(key, modifiers);
      if (tabs->hasFocus()) return names;
      names += Focus() + "\n";
    }
    return names + "and no way back\n";
  }

  int Tab() const { return Get<QTabWidget>("SSTab1").currentIndex(); }
};

TEST_F(OptionsKeyboard, TabGoesThroughThePortFromTopToBottom) {
  OpenOptions();
  Click("opt_CommPort(4)");
  EXPECT_EQ(Round(),
            "opt_Protocol(1)\n"
            "opt_CommPort(4)\n"
            "ComPortNumber\n"
            "cmbPortDevice\n"
            "sld_MsgTimeout\n"
            "opt_Baudrate(1)\n"
            "opt_parity(1)\n"
            "opt_stop(1)\n"
            "chk_DisableCommErrors\n"
            "cmd_OptionsOk\n"
            "cmd_OptionsCancel\n");
}

TEST_F(OptionsKeyboard, TabGoesThroughTheFiles) {
  OpenOptions();
  Get<QTabWidget>("SSTab1").setCurrentIndex(1);
  EXPECT_EQ(Round(),
            "txt_MapFile\ncmdBrowseMapFile\n"
            "txt_ZOLTIDDef\ncmdBrowseZOLTIDFile\n"
            "txt_databasefiles\ncmdBrowseDatabasefiles\n"
            "txt_LogPath\ncmdBrowseLogPath\n"
            "txt_PathToExcel\ncmdBrowseExcel\n"
            "cmd_OptionsOk\ncmd_OptionsCancel\n");
}

TEST_F(OptionsKeyboard, TabGoesThroughTheMonitorAndBack) {
  OpenOptions();
  Get<QTabWidget>("SSTab1").setCurrentIndex(2);
  EXPECT_EQ(Round(),
            "chk_GeneralLogging(0)\nchk_GeneralLogging(1)\nchkClearAllValues\n"
            "ScanningBox\nchkGridOn\nMicroSelect(0)\n"
            "cmd_OptionsOk\ncmd_OptionsCancel\n");
  EXPECT_EQ(Round(Qt::Key_Backtab, Qt::ShiftModifier),
            "cmd_OptionsCancel\ncmd_OptionsOk\n"
            "MicroSelect(0)\nchkGridOn\nScanningBox\n"
            "chkClearAllValues\nchk_GeneralLogging(1)\nchk_GeneralLogging(0)\n");
}

TEST_F(OptionsKeyboard, BeginsAtTheTabsEachTime) {
  OpenOptions();
  EXPECT_TRUE(Get<QTabWidget>("SSTab1").tabBar()->hasFocus());
  Click("cmd_OptionsCancel");
  OpenOptions();
  EXPECT_TRUE(Get<QTabWidget>("SSTab1").tabBar()->hasFocus()) << "not at Cancel";
}

TEST_F(OptionsKeyboard, LettersBringUpTheTabs) {
  OpenOptions();
  QTest::keyClick(options.get(), Qt::Key_F, Qt::AltModifier);
  EXPECT_EQ(Tab(), 1);
  QTest::keyClick(options.get(), Qt::Key_M, Qt::AltModifier);
  EXPECT_EQ(Tab(), 2);
  QTest::keyClick(options.get(), Qt::Key_C, Qt::AltModifier);
  EXPECT_EQ(Tab(), 0);
  QTest::keyClick(options.get(), Qt::Key_D, Qt::AltModifier);
  EXPECT_EQ(Focus(), "cmbPortDevice");
}

TEST_F(OptionsKeyboard, ArrowsChooseAProtocolWithItsPreset) {
  OpenOptions();
  Get("opt_Protocol(1)").setFocus();
  PressFocused(Qt::Key_Down);
  EXPECT_EQ(Focus(), "opt_Protocol(2)");
  EXPECT_EQ(monitor.options.opt_Protocol.Selected(), 2);
  EXPECT_EQ(monitor.options.opt_Baudrate.Selected(), 4);
}

TEST_F(OptionsKeyboard, EveryControlHasANameForAScreenReader) {
  OpenOptions();
  int named = 0;
  for (QWidget* widget : options->findChildren<QWidget*>()) {
    const std::string name = widget->objectName().toStdString();
    const bool takes_focus =
        widget->focusPolicy() != Qt::NoFocus && widget->focusProxy() == nullptr;
    if (!takes_focus || name.empty() || name.starts_with("qt_")) continue;
    QAccessibleInterface* reader = QAccessible::queryAccessibleInterface(widget);
    ASSERT_NE(reader, nullptr) << name;
    const std::string heard = reader->text(QAccessible::Name).toStdString();
    EXPECT_NE(heard, "") << name;
    EXPECT_NE(heard, name);
    ++named;
  }
  EXPECT_GE(named, 40);
}

}  // namespace
}  // namespace tarnlink
