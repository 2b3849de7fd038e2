// The main window: tool bar, status bar, title, project window, and closing it.

#include <QCloseEvent>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>

#include "ui/text_plate.h"
#include "ui/ui_fixture.h"

namespace tarnlink {
namespace {

class MainWindowTest : public UiTest {
 protected:
  QToolButton& ToolButton(int index) const {
    QAction& action = Entry("Toolbar1(" + std::to_string(index) + ")");
    return *qobject_cast<QToolButton*>(Get<QToolBar>("Toolbar1").widgetForAction(&action));
  }

  // The panels' texts, between bars.
  std::string Panels() const {
    std::string texts;
    for (int i = 1; i <= 6; ++i) texts += Panel(i).text().toStdString() + "|";
    return texts;
  }
  TextPlate& Panel(int index) const {
    return Get<TextPlate>("StatusBar1(" + std::to_string(index) + ")");
  }

  std::string Title() const { return window->windowTitle().toStdString(); }

  // The tree, indented by depth.
  std::string Tree() const {
    std::string text;
    for (QTreeWidgetItemIterator it(&Get<QTreeWidget>("trvProject")); *it != nullptr; ++it) {
      for (auto* up = (*it)->parent(); up != nullptr; up = up->parent()) text += "  ";
      text += (*it)->text(0).toStdString() + "\n";
    }
    return text;
  }

  ScriptedDialog& ExpectSaveQuestion() {
    return world.dialogs().ExpectMessageBox(
        {.text = "The screen was changed. Do you want to save the changes?",
         .title = "TarnLink2",
         .icon = Icon::kExclamation,
         .buttons = Buttons::kYesNo});
  }
};

// --- Tool bar ---

TEST_F(MainWindowTest, TheToolBarHasItsSixButtons) {
  Begin();
  const std::pair<const char*, const char*> expected[] = {
      {"Add Location", "Adds a memory location to the current sheet."},
      {"Start Communication", "Starts the communication with the microcontroller"},
      {"Stop Communication", "Stops the communication with the microcontroller"},
      {"Add Text", "Adds text info on the screen."},
      {"Project Window", "Hide/Show project window"},
      {"Refresh Screen", "Reloads the Map file and also the screen"}};
  EXPECT_EQ(Get<QToolBar>("Toolbar1").actions().size(), 6);
  for (int i = 1; i <= 6; ++i) {
    const QToolButton& button = ToolButton(i);
    EXPECT_EQ(button.text().toStdString(), expected[i - 1].first);
    EXPECT_EQ(button.toolTip().toStdString(), expected[i - 1].second);
    EXPECT_TRUE(button.isVisible()) << i;
    EXPECT_EQ(button.isEnabled(), i != 6) << i << ": there is no memory map to refresh";
    EXPECT_TRUE(Get("Toolbar1").rect().contains(button.geometry())) << i;
  }
}

TEST_F(MainWindowTest, TheSmallestWindowHasRoomForTheToolBar) {
  Begin();
  window->resize(window->minimumSize());
  for (int i = 1; i <= 6; ++i) EXPECT_TRUE(ToolButton(i).isVisible()) << i;
}

// --- Status bar ---

TEST_F(MainWindowTest, ThePanelsHaveTheirToolTips) {
  Begin();
  const char* const expected[] = {"Communication Parameters", "Number of locations on screen.",
                                  "Activated Protocol",       "Communication Status",
                                  "Location which is read",   "Remote Connection"};
  for (int i = 1; i <= 6; ++i) EXPECT_EQ(Panel(i).toolTip().toStdString(), expected[i - 1]);
}

TEST_F(MainWindowTest, ThePanelsFollowARun) {
  Begin();
  EXPECT_EQ(Panels(), "COM1, 2400,E,8, 2|Locations : 0|ZOLT Protocol||||");
  OpenScreen(kTwoLocations);
  EXPECT_EQ(Panels(), "COM1, 9600,N,8, 1|Locations : 2|TarnLink Protocol||||");
  SlaveAnswers("2A01");
  Click("Toolbar1(2)");
  world.Advance(std::chrono::milliseconds(30));
  EXPECT_EQ(Panels(),
            "COM1, 9600,N,8, 1|Locations : 2|TarnLink Protocol|Communication Running|Flow: 1|"
            "Local Connection Active|");
  world.Advance(std::chrono::milliseconds(20));
  EXPECT_EQ(Panel(5).text(), "Status: 2");
  Click("Toolbar1(3)");
  EXPECT_EQ(Panels(),
            "COM1, 9600,N,8, 1|Locations : 2|TarnLink Protocol|Communication Stopped|Status: 2|"
            "No Connection Active|");
}

TEST_F(MainWindowTest, ThePanelsStandSideBySideWithRoomForTheirTexts) {
  OpenScreen(kTwoLocations);
  SlaveAnswers("2A01");
  Click("Toolbar1(2)");
  world.Advance(std::chrono::milliseconds(30));
  window->resize(window->minimumSize());
  ASSERT_TRUE(QTest::qWaitFor([&] { return Panel(6).geometry().right() < window->width(); }, 1000));
  for (int i = 1; i <= 6; ++i) {
    EXPECT_GE(Panel(i).width(), i == 5 ? 60 : Panel(i).sizeHint().width()) << i;
    if (i > 1) {
      EXPECT_GT(Panel(i).geometry().left(), Panel(i - 1).geometry().right()) << i;
    }
  }
  Click("Toolbar1(3)");
}

TEST_F(MainWindowTest, ANameWithoutEndStretchesNothing) {
  const std::string name(20000, 'W');
  OpenScreen("0\r\n\"L\",0,1,\"01A0\",0,\"" + name + "\",\"" + name +
             "\",0,0,0,0,\"0\",0,600,2400,600,240,\"0\"\r\n");
  const QSize before = window->size();
  SlaveAnswers("2A");
  Click("Toolbar1(2)");
  world.Advance(std::chrono::seconds(1));
  EXPECT_TRUE(Panel(5).text().startsWith("WWWW"));
  FinishPainting();
  EXPECT_EQ(window->size(), before);
  EXPECT_LE(window->minimumSizeHint().width(), window->minimumWidth());
  EXPECT_EQ(Get("RAM_LOC_TEXT(1)").width(), 140);
  Click("Toolbar1(3)");
}

// --- Title ---

TEST_F(MainWindowTest, TheTitleNamesTheScreen) {
  Begin();
  EXPECT_EQ(Title(), "TarnLink - New Screen");
  OpenScreen(kTwoLocations);
  EXPECT_EQ(Title(), "TarnLink - boiler.wcr");
  monitor.main.WCRChanged = true;
  monitor.main.ShowTitle();
  EXPECT_EQ(Title(), "TarnLink - boiler.wcr *");
}

// --- Project window ---

TEST_F(MainWindowTest, TheProjectWindowComesAndGoes) {
  OpenScreen(kTwoLocations);
  EXPECT_TRUE(Shown("sstProject"));
  const int screen_width = Get("screen").width();
  Click("Toolbar1(5)");
  EXPECT_FALSE(Shown("sstProject"));
  EXPECT_FALSE(Entry("mnuViewProjectWindow").isChecked());
  EXPECT_TRUE(QTest::qWaitFor([&] { return Get("screen").width() > screen_width; }, 1000));
  Entry("mnuViewProjectWindow").trigger();
  EXPECT_TRUE(Shown("sstProject"));
  EXPECT_TRUE(Entry("mnuViewProjectWindow").isChecked());
}

TEST_F(MainWindowTest, TheProjectWindowComesBackAsItWasLeft) {
  world.settings().SaveSetting("Project", "ProjectWindow", "False");
  Begin();
  EXPECT_FALSE(Shown("sstProject"));
  EXPECT_FALSE(Entry("mnuViewProjectWindow").isChecked());
  Click("Toolbar1(5)");
  EXPECT_TRUE(Shown("sstProject"));
  EXPECT_TRUE(QTest::qWaitFor([&] { return Get("sstProject").width() > 100; }, 1000));
}

TEST_F(MainWindowTest, TheProjectWindowShowsTheTree) {
  Begin();
  EXPECT_EQ(Tree(),
            "Unnamed Project\n"
            "  Tarnlink Files\n"
            "  Parameter Files\n"
            "  Graphic Files\n"
            "  Error Description\n"
            "  ID Description\n"
            "  Memory Map\n");
  ASSERT_TRUE(monitor.main.trvProject.AddFileToProject("wcr", "/home/user/<b>x.wcr"));
  EXPECT_EQ(Tree(),
            "Unnamed Project\n"
            "  Tarnlink Files\n"
            "    <b>x.wcr\n"
            "  Parameter Files\n"
            "  Graphic Files\n"
            "  Error Description\n"
            "  ID Description\n"
            "  Memory Map\n");
  const auto* file = Get<QTreeWidget>("trvProject").topLevelItem(0)->child(0)->child(0);
  EXPECT_EQ(file->toolTip(0), "<qt>/home/user/&lt;b&gt;x.wcr</qt>");
}

// --- Closing ---

TEST_F(MainWindowTest, ClosingTheWindowLeavesTheProgram) {
  OpenScreen(kTwoLocations);
  Click("Toolbar1(2)");
  ASSERT_TRUE(world.port().PortOpen());
  EXPECT_TRUE(window->close());
  EXPECT_FALSE(window->isVisible());
  EXPECT_FALSE(world.port().PortOpen());
  EXPECT_EQ(world.settings().GetSetting("FileHistory", "Hist0", ""), "/home/user/work/boiler.wcr");
}

TEST_F(MainWindowTest, TheExitEntryClosesTheWindow) {
  Begin();
  Entry("M_exit").trigger();
  EXPECT_FALSE(window->isVisible());
}

TEST_F(MainWindowTest, ClosingAsksAboutAChangedScreen) {
  OpenScreen(kTwoLocations);
  monitor.main.WCRChanged = true;
  ExpectSaveQuestion().Press(Answer::kNo);
  EXPECT_TRUE(window->close());
}

TEST_F(MainWindowTest, ASaveThatFailedKeepsTheWindowOpen) {
  OpenScreen(kTwoLocations);
  monitor.main.WCRChanged = true;
  world.faults().Break("Files.WriteWhole", RunTimeError(kDiskFull, "The disk is full."));
  ExpectSaveQuestion().Press(Answer::kYes);
  world.dialogs().ExpectMessageBox(
      "Internal System Error # 61 occured, please contact distributor.\r\n"
      "During saving wcr file /home/user/work/boiler.wcr",
      "Internal System Error");
  EXPECT_FALSE(window->close());
  EXPECT_TRUE(window->isVisible());
  ExpectSaveQuestion().Press(Answer::kYes);
  EXPECT_TRUE(window->close()) << "now that it can be saved";
}

TEST_F(MainWindowTest, ACancelledSaveKeepsTheWindowOpen) {
  Begin();
  monitor.main.WCRChanged = true;
  ExpectSaveQuestion().Press(Answer::kYes);
  world.dialogs().ExpectSaveFile("Save As").Cancel();
  EXPECT_FALSE(window->close());
  EXPECT_TRUE(window->isVisible());
  monitor.main.WCRChanged = false;
}

TEST_F(MainWindowTest, ClosingAgainWhileTheQuestionIsUpAsksNoSecondTime) {
  Begin();
  monitor.main.WCRChanged = true;
  ExpectSaveQuestion().While([&] { window->close(); }).Press(Answer::kNo);
  EXPECT_TRUE(window->close());
}

}  // namespace
}  // namespace tarnlink
