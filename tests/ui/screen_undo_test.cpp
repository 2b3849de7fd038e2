// Adding to the screen, undo and redo, by the tool bar, the Edit menu and the shortcuts.

#include <QLabel>
#include <QMenu>

#include "ui/edit_fixture.h"
#include "ui/text_plate.h"

namespace tarnlink {
namespace {

class ScreenUndoTest : public EditUiTest {
 protected:
  void RedoTheOtherWay() { Key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier); }
};

// --- Adding ---

TEST_F(ScreenUndoTest, AnAddedLocationStandsUnderTheLastOne) {
  ShowChecks();
  OpenScreen(kTwoLocations);
  Click("Toolbar1(1)");
  EXPECT_EQ(Place("RAM_LOC_VAL(3)"), QRect(160, 102, 120, 21)) << "10 units below";
  EXPECT_EQ(Place("RAM_LOC_TEXT(3)"), QRect(16, 102, 140, 21));
  EXPECT_EQ(Get<TextPlate>("RAM_LOC_VAL(3)").text(), "Value 2");
  EXPECT_EQ(Get<TextPlate>("RAM_LOC_TEXT(3)").text(), "Name 2");
  EXPECT_TRUE(Shown("RAM_LOC_CHECK(3)"));
  EXPECT_EQ(Get<TextPlate>("StatusBar1(2)").text(), "Locations : 3");
  EXPECT_EQ(Focus(), "RAM_LOC_TEXT(3)");
  EXPECT_TRUE(Changed());
}

// It moves on once, even onto a box that stands there.
TEST_F(ScreenUndoTest, OnTheGridABoxThatLandsOnAnotherMovesOnOnce) {
  OpenScreen("255\r\n" + LocationAt("There", 5000, 5000, 2444, 1504) +
             LocationAt("Here", 5000, 6000, 2256, 1316) + LocationAt("Last", 188, 940, 2256, 940));
  SetGrid(true);
  Click("Toolbar1(1)");
  EXPECT_EQ(Place("RAM_LOC_VAL(4)").topLeft(), Place("RAM_LOC_VAL(1)").topLeft());
  EXPECT_EQ(Place("RAM_LOC_TEXT(4)").topLeft(), QPoint(25, 100));
  EXPECT_EQ(Place("RAM_LOC_VAL(2)").topLeft(), QPoint(150, 88)) << "the other one stays";
}

TEST_F(ScreenUndoTest, AFullScreenSaysSoAndStillSaves) {
  OpenScreen(ScreenOf(512));
  const std::string before = Everything();
  world.dialogs().ExpectMessageBox(
      {.text = "Internal System Error # 9 occured, please contact distributor. Communication is "
               "stopped",
       .title = "Internal System Error",
       .icon = Icon::kCritical,
       .detail = "The screen is full: it holds at most 512 Locations."});
  Click("Toolbar1(1)");
  EXPECT_EQ(Everything(), before);
  EXPECT_EQ(Get<TextPlate>("StatusBar1(2)").text(), "Locations : 512");
  EXPECT_EQ(Entries(), "[&Undo] | [&Redo]");
  const std::string file = Save();
  EXPECT_EQ(std::count(file.begin(), file.end(), '\n'), 513);
  EXPECT_FALSE(Changed());
}

// --- Undo and redo ---

TEST_F(ScreenUndoTest, TheEditMenuTellsWhatIsUndone) {
  OpenScreen(kTwoLocations);
  EXPECT_EQ(Entries(), "[&Undo] | [&Redo]");
  Drag("RAM_LOC_TEXT(1)", QPoint(102, 202));
  Click("Toolbar1(4)");
  EXPECT_EQ(Entries(), "&Undo adding of text | [&Redo]");
  Undo();
  EXPECT_EQ(Entries(), "&Undo move of Flow | &Redo adding of text");
  Undo();
  EXPECT_EQ(Entries(), "[&Undo] | &Redo move of Flow");
  Redo();
  EXPECT_EQ(Entries(), "&Undo move of Flow | &Redo adding of text");
  RedoTheOtherWay();
  EXPECT_EQ(Entries(), "&Undo adding of text | [&Redo]");
}

TEST_F(ScreenUndoTest, TheEditMenuUndoes) {
  OpenScreen(kTwoLocations);
  Drag("RAM_LOC_TEXT(1)", QPoint(102, 202));
  QMenu* menu = Entry("M_edit").menu();
  Key(Qt::Key_E, Qt::AltModifier);
  ASSERT_TRUE(QTest::qWaitFor([&] { return menu->isVisible(); }, 1000));
  QTest::keyClick(menu, Qt::Key_U);
  EXPECT_EQ(Place("RAM_LOC_TEXT(1)"), QRect(16, 40, 140, 21));
  EXPECT_EQ(Place("RAM_LOC_VAL(1)"), QRect(160, 40, 120, 21));
  EXPECT_FALSE(Changed());
}

TEST_F(ScreenUndoTest, AnAmpersandInANameIsShownInTheMenu) {
  OpenScreen("255\r\n" + LocationAt("P & T", 240, 600, 2400, 600));
  Drag("RAM_LOC_TEXT(1)", QPoint(102, 202));
  EXPECT_EQ(Entries(), "&Undo move of P && T | [&Redo]");
}

TEST_F(ScreenUndoTest, WhatIsSavedIsNoChangeWhenUndoComesBackToIt) {
  OpenScreen(kTwoLocations);
  Drag("RAM_LOC_TEXT(1)", QPoint(102, 202));
  const std::string saved = Save();
  EXPECT_FALSE(Changed());
  Undo();
  EXPECT_TRUE(Changed());
  Redo();
  EXPECT_FALSE(Changed());
  EXPECT_EQ(Save(), saved);
}

TEST_F(ScreenUndoTest, AnUndoneDeletionBringsTheWholeLocationBack) {
  ShowChecks();
  OpenScreen(kTwoLocations);
  const std::string before = Everything();
  ClickAt(On("RAM_LOC_VAL(1)"));
  ExpectDeleteQuestion().Press(Answer::kYes);
  Key(Qt::Key_Delete);
  EXPECT_EQ(Get<TextPlate>("StatusBar1(2)").text(), "Locations : 1");
  Undo();
  EXPECT_EQ(Everything(), before);
  EXPECT_EQ(Get<TextPlate>("StatusBar1(2)").text(), "Locations : 2");
}

TEST_F(ScreenUndoTest, AnUndoneAddLeavesTheKeyboardOnTheScreen) {
  OpenScreen(kTwoLocations);
  Click("Toolbar1(1)");
  ASSERT_EQ(Focus(), "RAM_LOC_TEXT(3)");
  Undo();
  EXPECT_EQ(Find("RAM_LOC_TEXT(3)"), nullptr);
  EXPECT_EQ(Focus(), "screen");
  Redo();
  EXPECT_TRUE(Shown("RAM_LOC_TEXT(3)"));
  EXPECT_EQ(Get<TextPlate>("RAM_LOC_VAL(3)").text(), "Value 2");
}

TEST_F(ScreenUndoTest, AnUndoneDragKeepsTheKeyboardWhereItIs) {
  OpenScreen(kTwoLocations);
  Drag("RAM_LOC_VAL(1)", QPoint(102, 202));
  Undo();
  EXPECT_EQ(Focus(), "RAM_LOC_VAL(1)");
  Redo();
  EXPECT_EQ(Focus(), "RAM_LOC_VAL(1)");
}

TEST_F(ScreenUndoTest, WhatIsUndoneComesIntoSight) {
  OpenScreen(ScreenOf(240));
  const std::string far = "RAM_LOC_TEXT(240)";
  Get(far).setFocus();
  Key(Qt::Key_Right);
  Get("RAM_LOC_TEXT(1)").setFocus();
  Scroller().ensureWidgetVisible(&Get("RAM_LOC_TEXT(1)"));
  ASSERT_FALSE(InSight(far));
  Undo();
  EXPECT_TRUE(InSight(far));
  EXPECT_EQ(Focus(), far);
}

TEST_F(ScreenUndoTest, AnotherScreenHasNothingToUndo) {
  OpenScreen(kTwoLocations);
  Drag("RAM_LOC_TEXT(1)", QPoint(102, 202));
  Save();
  OpenScreen(kTwoLocations);
  EXPECT_EQ(Entries(), "[&Undo] | [&Redo]");
}

// --- Shortcuts ---

TEST_F(ScreenUndoTest, ToolsHaveShortcuts) {
  OpenScreen(kTwoLocations);
  Key(Qt::Key_F5);
  EXPECT_TRUE(monitor.main.CommRunning);
  Key(Qt::Key_F5, Qt::ShiftModifier);
  EXPECT_FALSE(monitor.main.CommRunning);
  Key(Qt::Key_L, Qt::ControlModifier);
  EXPECT_TRUE(Shown("RAM_LOC_TEXT(3)"));
  Key(Qt::Key_T, Qt::ControlModifier);
  EXPECT_TRUE(Shown("lbl_TextInfo(2)"));
  Save();
  EXPECT_FALSE(Changed());
  monitor.main.RAM_LOC_TEXT(1).Text = "not in the file";
  monitor.main.Toolbar1(6).Enabled = true;  // as with a memory map
  Key(Qt::Key_R, Qt::ControlModifier);
  EXPECT_EQ(Get<TextPlate>("RAM_LOC_TEXT(1)").text(), "Flow") << "read again";
  EXPECT_TRUE(Shown("RAM_LOC_TEXT(3)"));
  Key(Qt::Key_N, Qt::ControlModifier);
  EXPECT_EQ(Find("RAM_LOC_TEXT(1)"), nullptr);
  world.dialogs().ExpectOpenFile("Open").Give(kFile);
  Key(Qt::Key_O, Qt::ControlModifier);
  EXPECT_TRUE(Shown("RAM_LOC_TEXT(3)"));
}

TEST_F(ScreenUndoTest, AddingWorksDuringARun) {
  OpenScreen(kTwoLocations);
  SlaveAnswers("2A01");
  Key(Qt::Key_F5);
  Click("Toolbar1(1)");
  Click("Toolbar1(4)");
  world.Advance(std::chrono::seconds(1));
  EXPECT_TRUE(monitor.main.CommRunning);
  EXPECT_EQ(Get<TextPlate>("RAM_LOC_VAL(3)").text(), "2A01");
  Undo();
  Undo();
  EXPECT_EQ(Find("RAM_LOC_VAL(3)"), nullptr);
  world.Advance(std::chrono::seconds(1));
  EXPECT_TRUE(monitor.main.CommRunning);
  Key(Qt::Key_F5, Qt::ShiftModifier);
}

}  // namespace
}  // namespace tarnlink
