// Boxes and labels moved over the screen with the mouse.

#include <QApplication>
#include <QTabWidget>
#include <QTimer>

#include "platform/qt/qt_dialogs.h"
#include "ui/edit_fixture.h"
#include "ui/text_plate.h"

namespace tarnlink {
namespace {

class ScreenDragTest : public EditUiTest {
 protected:
  // What a drag that was broken off leaves: all as it was, and nothing to undo.
  void ExpectNothingHappened() {
    EXPECT_FALSE(Dragging());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(Everything(), before);
    EXPECT_EQ(Entries(), "[&Undo] | [&Redo]");
    EXPECT_FALSE(Changed());
  }

  // A drag of the first name that is still under way, on a screen with all kinds of objects.
  void Begin(const QPoint& by) {
    ShowChecks();
    OpenScreen(kTwoLocations);
    before = Everything();
    Grab("RAM_LOC_TEXT(1)", by);
    ASSERT_TRUE(Dragging());
  }

  // The pointer's shape, -1 while nothing has changed it.
  static int Pointer() {
    const QCursor* cursor = QApplication::overrideCursor();
    return cursor == nullptr ? -1 : cursor->shape();
  }

  std::string before;
};

// --- Names ---

TEST_F(ScreenDragTest, ANameTakesItsValueWithIt) {
  OpenScreen(kTwoLocations);
  Drag("RAM_LOC_TEXT(1)", QPoint(102, 202));
  EXPECT_EQ(Place("RAM_LOC_TEXT(1)"), QRect(116, 240, 140, 21));
  EXPECT_EQ(Place("RAM_LOC_VAL(1)"), QRect(256, 240, 120, 21));
  EXPECT_TRUE(Shown("RAM_LOC_TEXT(1)"));
  EXPECT_TRUE(Shown("RAM_LOC_VAL(1)"));
  EXPECT_FALSE(Dragging());
  EXPECT_TRUE(Changed());
  EXPECT_EQ(Entries(), "&Undo move of Flow | [&Redo]");
}

TEST_F(ScreenDragTest, ANameTakesItsCheckBoxWithIt) {
  ShowChecks();
  OpenScreen(kTwoLocations);
  Drag("RAM_LOC_TEXT(1)", QPoint(102, 202));
  EXPECT_TRUE(Shown("RAM_LOC_CHECK(1)"));
  EXPECT_EQ(Place("RAM_LOC_CHECK(1)"), QRect(96, 243, 17, 17)) << "50 units down, 50 to the left";
}

TEST_F(ScreenDragTest, TheBoxGoesWithThePointer) {
  OpenScreen(kTwoLocations);
  Grab("RAM_LOC_TEXT(1)", QPoint(52, 102));
  EXPECT_FALSE(Shown("RAM_LOC_TEXT(1)"));
  EXPECT_FALSE(Shown("RAM_LOC_VAL(1)"));
  EXPECT_EQ(Ghost(), QRect(66, 140, 260, 21));
  Move(QPoint(10, 10));
  EXPECT_EQ(Ghost(), QRect(76, 150, 260, 21));
  Release();
  EXPECT_EQ(Place("RAM_LOC_TEXT(1)"), QRect(76, 150, 140, 21));
}

TEST_F(ScreenDragTest, TheHeldBoxIsNotHiddenUnderOthers) {
  OpenScreen(kTwoLocations);
  Grab("RAM_LOC_TEXT(1)", QPoint(0, 42));
  ASSERT_TRUE(Ghost().intersects(Place("RAM_LOC_TEXT(2)")));
  EXPECT_EQ(Get("screen").children().last(), Find("DragGhost")) << "the uppermost of all";
  Release();
}

TEST_F(ScreenDragTest, LessThanFiftyUnitsMoveNothing) {
  OpenScreen(kTwoLocations);
  before = Everything();
  for (const QPoint& by : {QPoint(0, 0), QPoint(5, 5), QPoint(-1, -1), QPoint(5, -1)}) {
    Grab("RAM_LOC_TEXT(2)", by);
    EXPECT_EQ(Ghost().topLeft(), QPoint(16, 80));
    Release();
    EXPECT_EQ(Place("RAM_LOC_TEXT(2)"), QRect(16, 80, 140, 21)) << by.x() << ", " << by.y();
    Drag("RAM_LOC_VAL(2)", by);
    EXPECT_EQ(Place("RAM_LOC_VAL(2)").top(), 80) << by.x() << ", " << by.y();
  }
  EXPECT_EQ(Title(), "TarnLink - boiler.wcr");
}

TEST_F(ScreenDragTest, AClickOnANameBringsItsValueBackToItsSide) {
  OpenScreen(kTwoLocations);
  Drag("RAM_LOC_VAL(1)", QPoint(102, 102));
  Save();
  ClickAt(On("RAM_LOC_TEXT(1)"));
  EXPECT_EQ(Place("RAM_LOC_TEXT(1)"), QRect(16, 40, 140, 21));
  EXPECT_EQ(Place("RAM_LOC_VAL(1)"), QRect(156, 40, 120, 21));
  EXPECT_FALSE(Changed());
}

TEST_F(ScreenDragTest, MoreThanFiftyUnitsInOneDirectionAreAMove) {
  OpenScreen(kTwoLocations);
  Drag("RAM_LOC_TEXT(1)", QPoint(6, 0));
  EXPECT_EQ(Place("RAM_LOC_TEXT(1)").topLeft(), QPoint(20, 38));
  EXPECT_TRUE(Changed());
}

TEST_F(ScreenDragTest, TwoNamesWithOneTextKeepTheirOwnValues) {
  OpenScreen("255\r\n" + LocationAt("Flow", 240, 600, 2400, 600) +
             LocationAt("Flow", 240, 1200, 2400, 1200));
  Drag("RAM_LOC_TEXT(2)", QPoint(102, 202));
  EXPECT_EQ(Place("RAM_LOC_VAL(2)").topLeft(), QPoint(256, 280));
  EXPECT_EQ(Place("RAM_LOC_TEXT(1)").topLeft(), QPoint(16, 40));
  EXPECT_EQ(Place("RAM_LOC_VAL(1)").topLeft(), QPoint(160, 40));
  EXPECT_TRUE(Shown("RAM_LOC_VAL(1)"));
}

// --- Values and labels ---

TEST_F(ScreenDragTest, AValueMovesByItself) {
  OpenScreen(kTwoLocations);
  Grab("RAM_LOC_VAL(1)", QPoint(102, 202));
  EXPECT_EQ(Ghost(), QRect(260, 240, 120, 21));
  EXPECT_TRUE(Shown("RAM_LOC_TEXT(1)"));
  Release();
  EXPECT_EQ(Place("RAM_LOC_VAL(1)"), QRect(260, 240, 120, 21));
  EXPECT_EQ(Place("RAM_LOC_TEXT(1)"), QRect(16, 40, 140, 21));
  EXPECT_EQ(Entries(), "&Undo move of the value of Flow | [&Redo]");
}

// The hidden template's name box says "Name", too.
TEST_F(ScreenDragTest, AValueThatSaysNameMovesByItself) {
  OpenScreen(kTwoLocations);
  monitor.main.RAM_LOC_VAL(1).Text = "Name";
  Drag("RAM_LOC_VAL(1)", QPoint(102, 202));
  EXPECT_EQ(Place("RAM_LOC_VAL(1)"), QRect(260, 240, 120, 21));
  EXPECT_EQ(Place("RAM_LOC_TEXT(1)"), QRect(16, 40, 140, 21));
  EXPECT_FALSE(monitor.main.RAM_LOC_VAL(0).Visible);
}

TEST_F(ScreenDragTest, ALabelLandsJustWhereItIsHeld) {
  OpenScreen(kTwoLocations);
  const QSize size = Place("lbl_TextInfo(1)").size();
  Grab("lbl_TextInfo(1)", QPoint(100, 200));
  EXPECT_FALSE(Shown("lbl_TextInfo(1)"));
  EXPECT_EQ(Ghost(), QRect(QPoint(116, 208), size));
  Release();
  EXPECT_EQ(Place("lbl_TextInfo(1)"), QRect(QPoint(116, 208), size));
  EXPECT_EQ(Entries(), "&Undo move of Boiler 1 | [&Redo]");
}

TEST_F(ScreenDragTest, APressOnALabelIsAChange) {
  OpenScreen(kTwoLocations);
  PressAt(On("lbl_TextInfo(1)"));
  EXPECT_TRUE(Changed());
  Release();
  EXPECT_EQ(Place("lbl_TextInfo(1)").topLeft(), QPoint(16, 8));
  EXPECT_TRUE(Shown("lbl_TextInfo(1)"));
}

// --- The ghost tells the truth ---

TEST_F(ScreenDragTest, TheGhostShowsWhereTheBoxWillStand) {
  ShowChecks();
  window->resize(1000, 700);
  for (const bool grid : {false, true}) {
    OpenScreen(kTwoLocations);
    SetGrid(grid);
    for (const char* name : {"RAM_LOC_TEXT(1)", "RAM_LOC_VAL(2)", "lbl_TextInfo(1)"}) {
      for (const QPoint& by : {QPoint(7, 150), QPoint(91, 3), QPoint(-30, 11), QPoint(4, 4)}) {
        Grab(name, by);
        const QPoint ghost = Ghost().topLeft();
        Release();
        EXPECT_EQ(Place(name).topLeft(), ghost) << name << " by " << by.x() << ", " << by.y();
      }
    }
    Save();
  }
}

TEST_F(ScreenDragTest, TheGhostJumpsFromGridPlaceToGridPlace) {
  OpenScreen(kTwoLocations);
  OpenOptions();
  Get<QTabWidget>("SSTab1").setCurrentIndex(2);
  Click("chkGridOn");
  Click("cmd_OptionsOk");
  WaitForActive(window.get());
  Grab("RAM_LOC_TEXT(1)", QPoint(102, 102));
  EXPECT_EQ(Ghost().topLeft(), QPoint(113, 138)) << "the 9th and the 11th multiple of 188";
  Move(QPoint(3, -3));
  EXPECT_EQ(Ghost().topLeft(), QPoint(113, 138));
  Move(QPoint(6, 0));
  EXPECT_EQ(Ghost().topLeft(), QPoint(125, 138));
  Release();
  EXPECT_EQ(Place("RAM_LOC_TEXT(1)").topLeft(), QPoint(125, 138));
  EXPECT_EQ(Place("RAM_LOC_VAL(1)").topLeft(), QPoint(265, 138));
  EXPECT_EQ(monitor.main.RAM_LOC_TEXT(1).Left, 10 * 188);
  EXPECT_EQ(monitor.main.RAM_LOC_TEXT(1).Top, 11 * 188);
}

TEST_F(ScreenDragTest, TheGhostLooksLikeTheBoxes) {
  OpenScreen(kTwoLocations);
  const QImage name = Get("RAM_LOC_TEXT(1)").grab().toImage();
  Grab("RAM_LOC_TEXT(1)", QPoint(52, 102));
  // Inside its own frame, and but for the border of the box, which the keyboard's frame hid.
  const QImage ghost = Get("DragGhost").grab().toImage();
  const QRect inside = QRect(QPoint(0, 0), name.size()).adjusted(3, 3, -1, -3);
  for (int y = inside.top(); y <= inside.bottom(); ++y) {
    for (int x = inside.left(); x <= inside.right(); ++x) {
      // A little of what lies below shines through.
      const int shines =
          std::abs(ghost.pixelColor(x, y).lightness() - name.pixelColor(x, y).lightness());
      ASSERT_LT(shines, 60) << x << ", " << y;
    }
  }
  Release();
}

// Places in a file need not be whole pixels.
TEST_F(ScreenDragTest, ABoxBetweenTwoPixelsIsDraggedAsAnyOther) {
  OpenScreen("255\r\n" + LocationAt("Flow", 247, 607, 2407, 607) + LabelAt("Boiler", 247, 97));
  for (const char* name : {"RAM_LOC_VAL(1)", "lbl_TextInfo(1)"}) {
    const QPoint place = Place(name).topLeft();
    before = Everything();
    Drag(name, QPoint(3, 3));
    EXPECT_EQ(Everything(), before) << name;
    Grab(name, QPoint(20, 60));
    const QPoint ghost = Ghost().topLeft();
    Release();
    EXPECT_EQ(Place(name).topLeft(), ghost) << name;
    const QPoint lift = name[0] == 'l' ? QPoint(0, 0) : kLift;
    EXPECT_EQ(ghost, place + QPoint(20, 60) - lift) << name;
  }
}

TEST_F(ScreenDragTest, WhatWasMovedLastLiesAbove) {
  OpenScreen(kTwoLocations);
  const QPoint both(165, 85);
  DragBoxTo("RAM_LOC_VAL(1)", QPoint(150, 70));
  ASSERT_TRUE(Place("RAM_LOC_VAL(1)").contains(both) && Place("RAM_LOC_VAL(2)").contains(both));
  EXPECT_EQ(Get("screen").childAt(both), &Get("RAM_LOC_VAL(1)"));
}

// --- Where it is let go ---

TEST_F(ScreenDragTest, ADropOnANameBoxPutsTheBoxBack) {
  Begin(QPoint(0, 0));
  MoveTo(On("RAM_LOC_TEXT(2)"));
  EXPECT_EQ(Pointer(), Qt::ForbiddenCursor);
  Release();
  EXPECT_EQ(Place("RAM_LOC_TEXT(1)"), QRect(16, 40, 140, 21));
  EXPECT_TRUE(Shown("RAM_LOC_TEXT(1)"));
  EXPECT_FALSE(Shown("RAM_LOC_VAL(1)"));
  EXPECT_FALSE(Shown("RAM_LOC_CHECK(1)"));
  EXPECT_TRUE(Shown("RAM_LOC_CHECK(2)"));
  EXPECT_EQ(Place("RAM_LOC_CHECK(2)"), QRect(-1, 43, 17, 17)) << "beside the box that was dragged";
  EXPECT_FALSE(Changed());
  Undo();
  EXPECT_EQ(Everything(), before);
}

TEST_F(ScreenDragTest, ADropOnAValueBoxPutsTheBoxBack) {
  Begin(QPoint(0, 0));
  MoveTo(On("RAM_LOC_VAL(2)"));
  EXPECT_EQ(Pointer(), Qt::ForbiddenCursor);
  Release();
  EXPECT_TRUE(Shown("RAM_LOC_TEXT(1)"));
  EXPECT_EQ(Place("RAM_LOC_TEXT(1)"), QRect(16, 40, 140, 21));
  EXPECT_FALSE(Shown("RAM_LOC_VAL(1)"));
  EXPECT_FALSE(Shown("RAM_LOC_CHECK(1)"));
  EXPECT_EQ(Place("RAM_LOC_CHECK(2)").top(), 83);
  EXPECT_FALSE(Changed());
}

TEST_F(ScreenDragTest, TheNextDragBringsTheHiddenBoxesBack) {
  Begin(QPoint(0, 0));
  MoveTo(On("RAM_LOC_VAL(2)"));
  Release();
  Drag("RAM_LOC_TEXT(1)", QPoint(102, 202));
  EXPECT_EQ(Place("RAM_LOC_VAL(1)").topLeft(), QPoint(256, 240));
  EXPECT_TRUE(Shown("RAM_LOC_VAL(1)"));
  EXPECT_TRUE(Shown("RAM_LOC_CHECK(1)"));
}

TEST_F(ScreenDragTest, LabelsAndCheckBoxesLetADropThrough) {
  Begin(QPoint(0, 0));
  for (const char* name : {"lbl_TextInfo(1)", "RAM_LOC_CHECK(2)"}) {
    MoveTo(On(name));
    EXPECT_EQ(Pointer(), Qt::ClosedHandCursor) << name;
    const QPoint ghost = Ghost().topLeft();
    Release();
    EXPECT_EQ(Place("RAM_LOC_TEXT(1)").topLeft(), ghost) << name;
    PressAt(On("RAM_LOC_TEXT(1)", QPoint(100, 10)));
  }
  Release();
  EXPECT_TRUE(Changed());
}

TEST_F(ScreenDragTest, ALabelThatFillsTheWindowLetsADropThrough) {
  OpenScreen("255\r\n" + LabelAt("MMMMM", 0, -600, "300") +
             LocationAt("Flow", 240, 600, 2400, 600));
  window->resize(window->minimumSize());
  ASSERT_TRUE(Place("lbl_TextInfo(1)").contains(Scroller().viewport()->rect()));
  Drag("RAM_LOC_TEXT(1)", QPoint(102, 102));
  EXPECT_EQ(Place("RAM_LOC_TEXT(1)").topLeft(), QPoint(116, 140));
}

TEST_F(ScreenDragTest, ADropBesideTheScreenCancels) {
  for (const char* name : {"Toolbar1", "sstProject", "trvProject", "StatusBar1"}) {
    Begin(QPoint(50, 50));
    MoveTo(On(name));
    EXPECT_EQ(Pointer(), Qt::ForbiddenCursor) << name;
    Release();
    SCOPED_TRACE(name);
    ExpectNothingHappened();
  }
}

TEST_F(ScreenDragTest, ADropOutOfTheWindowCancels) {
  Begin(QPoint(50, 50));
  MoveTo(QPoint(window->width() + 50, 100));
  Release();
  ExpectNothingHappened();
}

TEST_F(ScreenDragTest, ThePointerTellsThatSomethingIsHeld) {
  Begin(QPoint(50, 100));
  EXPECT_EQ(Pointer(), Qt::ClosedHandCursor);
  Release();
  EXPECT_EQ(Pointer(), -1);
}

TEST_F(ScreenDragTest, AClickDoesNotChangeThePointer) {
  OpenScreen(kTwoLocations);
  PressAt(On("RAM_LOC_TEXT(1)"));
  EXPECT_EQ(Pointer(), -1);
  Release();
  EXPECT_EQ(Pointer(), -1);
}

// --- What breaks it off ---

TEST_F(ScreenDragTest, EscapeCancels) {
  Begin(QPoint(50, 100));
  Key(Qt::Key_Escape);
  ExpectNothingHappened();
  Move(QPoint(20, 20));
  Release();
  ExpectNothingHappened();
  Drag("RAM_LOC_TEXT(1)", QPoint(102, 202));
  EXPECT_EQ(Place("RAM_LOC_TEXT(1)").topLeft(), QPoint(116, 240)) << "the next one works";
}

TEST_F(ScreenDragTest, AMessageBoxCancels) {
  ShowChecks();
  OpenScreen(kTwoLocations);
  Click("Toolbar1(2)");
  before = Everything();
  Grab("RAM_LOC_TEXT(1)", QPoint(50, 100));
  world.dialogs().ExpectMessageBox("Slave is not responding", "Message Timeout").While([this] {
    QTimer::singleShot(0, window.get(), [this] {
      EXPECT_FALSE(Dragging());
      EXPECT_TRUE(Shown("RAM_LOC_TEXT(1)"));
      QApplication::activeModalWidget()->close();
    });
    QtDialogs().MessageBox({.text = "Slave is not responding", .title = "Message Timeout"});
  });
  world.Advance(std::chrono::seconds(4));
  Release();
  ExpectNothingHappened();
  Click("Toolbar1(3)");
}

TEST_F(ScreenDragTest, AnotherWindowCancels) {
  Begin(QPoint(50, 100));
  QWidget other;
  other.show();
  WaitForActive(&other);
  ExpectNothingHappened();
  Release();
  other.close();
  WaitForActive(window.get());
}

TEST_F(ScreenDragTest, ClosingTheWindowCancels) {
  Begin(QPoint(50, 100));
  window->close();
  EXPECT_TRUE(QTest::qWaitFor([this] { return !Dragging(); }, 1000));
  EXPECT_EQ(Pointer(), -1);
  EXPECT_FALSE(window->isVisible());
}

TEST_F(ScreenDragTest, AScreenThatGoesTakesItsDragAlong) {
  Begin(QPoint(50, 100));
  monitor.screen.UnloadObjects();
  Move(QPoint(1, 1));
  Release();
  EXPECT_FALSE(Dragging());
  EXPECT_EQ(Pointer(), -1);
}

// --- What waits meanwhile ---

TEST_F(ScreenDragTest, KeysAndCommandsAreHeldOff) {
  ShowChecks();
  OpenScreen(kTwoLocations);
  Drag("RAM_LOC_TEXT(1)", QPoint(102, 202));
  const std::string moved = Entries();
  before = Everything();
  Grab("RAM_LOC_TEXT(2)", QPoint(50, 100));
  for (const Qt::Key key : {Qt::Key_Z, Qt::Key_L, Qt::Key_T, Qt::Key_N, Qt::Key_O, Qt::Key_S}) {
    Key(key, Qt::ControlModifier);
  }
  for (const Qt::Key key : {Qt::Key_F5, Qt::Key_Delete, Qt::Key_Tab, Qt::Key_Left, Qt::Key_Menu,
                            Qt::Key_Return, Qt::Key_F2}) {
    Key(key);
  }
  Key(Qt::Key_F, Qt::AltModifier);
  EXPECT_TRUE(Dragging());
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
  EXPECT_FALSE(monitor.main.CommRunning);
  EXPECT_EQ(Entries(), moved);
  EXPECT_EQ(monitor.main.MaxId, 2);
  Key(Qt::Key_Escape);
  EXPECT_EQ(Everything(), before);
  Release();
}

TEST_F(ScreenDragTest, TheOtherButtonDoesNothingMeanwhile) {
  Begin(QPoint(50, 100));
  const QPoint place = pointer;
  PressAt(OnScreen(QPoint(400, 300)), Qt::RightButton);
  Release(Qt::RightButton);
  EXPECT_TRUE(Dragging()) << "and no dialog for the screen's colour";
  MoveTo(place);
  Release();
  EXPECT_EQ(Place("RAM_LOC_TEXT(1)").topLeft(), QPoint(64, 138));
}

TEST_F(ScreenDragTest, ARunGoesOnMeanwhile) {
  OpenScreen(kTwoLocations);
  SlaveAnswers("2A01");
  Click("Toolbar1(2)");
  Grab("RAM_LOC_TEXT(1)", QPoint(50, 100));
  world.Advance(std::chrono::seconds(1));
  EXPECT_TRUE(Dragging());
  EXPECT_EQ(Get<TextPlate>("RAM_LOC_VAL(2)").text(), "2A01");
  EXPECT_EQ(Get<TextPlate>("RAM_LOC_VAL(1)").text(), "Value 1") << "hidden, so it is passed over";
  Release();
  world.Advance(std::chrono::seconds(1));
  EXPECT_EQ(Get<TextPlate>("RAM_LOC_VAL(1)").text(), "42");
  EXPECT_TRUE(Shown("RAM_LOC_VAL(1)"));
  Click("Toolbar1(3)");
}

// --- The keyboard afterwards ---

TEST_F(ScreenDragTest, TheKeyboardStaysWithWhatWasDragged) {
  OpenScreen(kTwoLocations);
  for (const char* name : {"RAM_LOC_TEXT(2)", "RAM_LOC_VAL(1)", "lbl_TextInfo(1)"}) {
    Drag(name, QPoint(60, 200));
    EXPECT_EQ(Focus(), name);
    Drag(name, QPoint(1, 1));
    EXPECT_EQ(Focus(), name) << "also after a click";
    Grab(name, QPoint(30, 30));
    Key(Qt::Key_Escape);
    Release();
    EXPECT_EQ(Focus(), name) << "and when it was cancelled";
  }
}

}  // namespace
}  // namespace tarnlink
