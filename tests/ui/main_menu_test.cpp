// The menu bar, entry by entry, and the run's hold on it.

#include <QHelpEvent>
#include <QMenu>
#include <QMenuBar>
#include <QToolTip>

#include "ui/mnemonics.h"
#include "ui/ui_fixture.h"

namespace tarnlink {
namespace {

// The whole menu, one line each: "M_file|File" and below it "  M_fileopen|Open Tarnlink File".
// Separators are "  -"; what cannot be chosen ends with " (off)", what is checked with " (x)".
std::string Describe(const QAction& action) {
  std::string line =
      action.objectName().toStdString() + "|" + WithoutMark(action.text()).toStdString();
  if (!action.isEnabled()) line += " (off)";
  if (action.isChecked()) line += " (x)";
  return line;
}

std::string Describe(const QMenuBar& bar) {
  std::string text;
  for (const QAction* menu : bar.actions()) {
    text += Describe(*menu) + "\n";
    for (const QAction* entry : menu->menu()->actions()) {
      text += entry->isSeparator() ? "  -\n" : "  " + Describe(*entry) + "\n";
    }
  }
  return text;
}

// Name and caption of every entry, in order.
constexpr const char* kWholeMenu =
    "M_file|File\n"
    "  M_fileopen|Open Tarnlink File\n"
    "  M_filesave(0)|Save Tarnlink File\n"
    "  M_filesave(1)|Save Tarnlink File as\n"
    "  M_NewScreen|New Screen\n"
    "  -\n"
    "  mnuPrint|Print Screen\n"
    "  mnuPrintToFile|Export to DOC\n"
    "  -\n"
    "  M_options|Options\n"
    "  -\n"
    "  M_fileHist(0)|<Free> (off)\n"
    "  M_fileHist(1)|<Free> (off)\n"
    "  M_fileHist(2)|<Free> (off)\n"
    "  M_fileHist(3)|<Free> (off)\n"
    "  -\n"
    "  M_fileHistPrj(0)|<Free> (off)\n"
    "  M_fileHistPrj(1)|<Free> (off)\n"
    "  M_fileHistPrj(2)|<Free> (off)\n"
    "  M_fileHistPrj(3)|<Free> (off)\n"
    "  -\n"
    "  M_exit|Exit\n"
    "M_edit|Edit\n"
    "  mnuUndo|Undo (off)\n"
    "  mnuRedo|Redo (off)\n"
    "  -\n"
    "  Toolbar1(1)|Add Location\n"
    "  Toolbar1(4)|Add Text\n"
    "  Toolbar1(6)|Refresh Screen (off)\n"
    "M_view|View\n"
    "  mnuLinkHealth|Link Health\n"
    "  mnuLinkTrace|Link Trace\n"
    "M_Tools|Tools\n"
    "  M_Graphics|Graphics\n"
    "  M_ControlPanel|Control Panel\n"
    "  mnuScanSlaves|Scan Slaves\n"
    "  mnuWPConversion|WP conversion\n"
    "  mnuSniffer|Sniffer\n"
    "  mnuCfgCheck|Configuration Check\n"
    "  mnuLoadParameters|Load Parameters\n"
    "  mnuGenParaFile|Gen Parameter File\n"
    "  M_EE_DOWN|EEPROM Download\n"
    "  M_EEPROM|PROM Programmer\n"
    "  M_errgen|Error Generator\n"
    "mnuProject|Project\n"
    "  mnuNewProject|New Project\n"
    "  mnuOpenProject|Open Project\n"
    "  mnuSaveProject|Save Project\n"
    "  -\n"
    "  mnuAddTarnLinkFile|Add Tarnlink File\n"
    "  mnuAddParameterFile|Add Parameter File\n"
    "  mnuAddGraphFile|Add Graphic File\n"
    "  mnuAddErrorDiscr|Add Error Description\n"
    "  mnuAddIDFile|Add ID Description\n"
    "  mnuAddNecMap|Add Memory Map\n"
    "  -\n"
    "  mnuRefresh|Refresh Memory Map\n"
    "  mnuViewProjectWindow|Project Window (x)\n"
    "M_Help|Help\n"
    "  M_HelpTopics|Help Topics\n"
    "  M_About|About\n";

class MainMenu : public UiTest {
 protected:
  std::string Menu() const { return Describe(*window->menuBar()); }

  // The entries of the menu that cannot be chosen, but for free histories, nothing to undo, and no
  // memory map to refresh.
  std::string Off() const {
    std::string names;
    for (const QAction* menu : window->menuBar()->actions()) {
      if (!menu->isEnabled()) names += menu->objectName().toStdString() + " ";
      for (const QAction* entry : menu->menu()->actions()) {
        const std::string name = entry->objectName().toStdString();
        const bool counts = name.find("Hist") == std::string::npos && name != "mnuUndo" &&
                            name != "mnuRedo" && name != "Toolbar1(6)";
        if (!entry->isEnabled() && counts) names += name + " ";
      }
    }
    return names;
  }
};

TEST_F(MainMenu, HoldsEveryEntryInItsPlace) {
  Begin();
  EXPECT_EQ(Menu(), kWholeMenu);
}

TEST_F(MainMenu, ARunTakesTheEntriesThatNeedThePort) {
  OpenScreen(kTwoLocations);
  ASSERT_EQ(Off(), "");
  Click("Toolbar1(2)");
  EXPECT_EQ(Off(),
            "M_options M_Graphics M_ControlPanel mnuScanSlaves mnuSniffer mnuCfgCheck "
            "mnuLoadParameters M_errgen ");
  Click("Toolbar1(3)");
  EXPECT_EQ(Off(), "");
}

TEST_F(MainMenu, AnEntryThatIsGreySaysWhyUnderTheMouse) {
  OpenScreen(kTwoLocations);
  Click("Toolbar1(2)");
  auto* menu = window->findChild<QAction*>("M_Tools")->menu();
  menu->popup(window->mapToGlobal(QPoint(0, 0)));
  const QPoint at = menu->actionGeometry(window->findChild<QAction*>("M_Graphics")).center();
  QHelpEvent rest(QEvent::ToolTip, at, menu->mapToGlobal(at));
  QApplication::sendEvent(menu, &rest);
  EXPECT_EQ(QToolTip::text(), "The port is in use: press \"Stop Communication\" first");
  QToolTip::hideText();
  menu->close();
}

TEST_F(MainMenu, ASilentSlaveKeepsTwoEntries) {
  OpenScreen(kTwoLocations);
  Click("Toolbar1(2)");
  world.dialogs().ExpectMessageBox("Slave is not responding", "Message Timeout");
  world.Advance(std::chrono::seconds(4));
  EXPECT_EQ(Off(), "mnuSniffer mnuCfgCheck ");
  Click("Toolbar1(3)");
  EXPECT_EQ(Off(), "");
}

TEST_F(MainMenu, ModbusOnAnEmptyScreenTakesTheTools) {
  world.settings().SaveSetting("Communication", "Protocol", "2");
  Begin();
  EXPECT_EQ(Off(), "M_Tools ");
}

TEST_F(MainMenu, HistoriesShowTheirFilesAsTheyAre) {
  world.settings().SaveSetting("FileHistory", "Hist0", "/home/user/a&b <b>x.wcr");
  world.settings().SaveSetting("FileHistoryPrj", "Hist3", "/home/user/project.prj");
  Begin();
  EXPECT_EQ(Entry("M_fileHist(0)").text(), "/home/user/a&&b <b>x.wcr");
  EXPECT_TRUE(Entry("M_fileHist(0)").isEnabled());
  EXPECT_FALSE(Entry("M_fileHist(1)").isEnabled());
  EXPECT_EQ(Entry("M_fileHistPrj(3)").text(), "/home/user/project.prj");
}

TEST_F(MainMenu, AFileThatWasOpenedIsAtTheTopOfTheHistory) {
  OpenScreen(kTwoLocations);
  EXPECT_EQ(Entry("M_fileHist(0)").text(), "/home/user/work/boiler.wcr");
  Entry("M_NewScreen").trigger();
  ASSERT_EQ(monitor.main.MaxId, 0);
  Entry("M_fileHist(0)").trigger();
  EXPECT_EQ(monitor.main.MaxId, 2);
}

// With real keys, from the menu bar down.
TEST_F(MainMenu, OpensAndChoosesByTheKeyboard) {
  Begin();
  QTest::keyClick(window.get(), Qt::Key_H, Qt::AltModifier);
  auto* menu = Entry("M_Help").menu();
  ASSERT_TRUE(QTest::qWaitFor([&] { return menu->isVisible(); }, 1000));
  QTest::keyClick(menu, Qt::Key_Down);
  ASSERT_NE(menu->activeAction(), nullptr);
  EXPECT_EQ(menu->activeAction()->objectName(), "M_About");
  QTest::keyClick(menu, Qt::Key_Return);
  ASSERT_NE(about, nullptr);
  EXPECT_TRUE(about->isVisible());
}

// With a real mouse.
TEST_F(MainMenu, OpensAndChoosesByTheMouse) {
  Begin();
  QMenuBar* bar = window->menuBar();
  QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(&Entry("M_file")).center());
  auto* menu = Entry("M_file").menu();
  ASSERT_TRUE(QTest::qWaitFor([&] { return menu->isVisible(); }, 1000));
  QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(&Entry("M_options")).center());
  ASSERT_NE(options, nullptr);
  EXPECT_TRUE(options->isVisible());
}

TEST_F(MainMenu, EveryShortcutIsItsOwn) {
  Begin();
  QMap<QString, QString> owners;
  for (const QAction* action : window->findChildren<QAction*>()) {
    const QString keys = action->shortcut().toString();
    if (keys.isEmpty()) continue;
    EXPECT_FALSE(owners.contains(keys)) << keys.toStdString();
    owners[keys] = action->objectName();
  }
  EXPECT_EQ(owners["Ctrl+O"], "M_fileopen");
  EXPECT_EQ(owners["Ctrl+S"], "M_filesave(0)");
  EXPECT_EQ(owners["Ctrl+Shift+S"], "M_filesave(1)");
  EXPECT_EQ(owners["Ctrl+Q"], "M_exit");
  EXPECT_EQ(owners["Ctrl+N"], "M_NewScreen");
  EXPECT_EQ(owners["F5"], "Toolbar1(2)");
  EXPECT_EQ(owners["Shift+F5"], "Toolbar1(3)");
}

TEST_F(MainMenu, AShortcutChoosesItsEntry) {
  OpenScreen(kTwoLocations);
  QTest::keyClick(window.get(), Qt::Key_F5);
  EXPECT_TRUE(monitor.main.CommRunning);
  QTest::keyClick(window.get(), Qt::Key_F5, Qt::ShiftModifier);
  EXPECT_FALSE(monitor.main.CommRunning);
  QTest::keyClick(window.get(), Qt::Key_N, Qt::ControlModifier);
  EXPECT_EQ(monitor.main.MaxId, 0);
}

TEST_F(MainMenu, EveryEntryOfAMenuHasItsOwnMnemonicOrNone) {
  Begin();
  QString letters;
  for (const QAction* menu : window->menuBar()->actions()) {
    const qsizetype mark = menu->text().indexOf('&');
    ASSERT_GE(mark, 0) << menu->text().toStdString();
    const QChar letter = menu->text()[mark + 1].toLower();
    EXPECT_FALSE(letters.contains(letter)) << menu->text().toStdString();
    letters += letter;
  }
}

}  // namespace
}  // namespace tarnlink
