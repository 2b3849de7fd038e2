// A screen that is larger than the window: dragging over it, and what is brought into sight.

#include <QScrollBar>
#include <QWheelEvent>

#include "ui/edit_fixture.h"

namespace tarnlink {
namespace {

class ScreenScrollTest : public EditUiTest {
 protected:
  // Columns of 24 Locations each in the smallest window.
  void OpenLarge(int count = 100) {
    OpenScreen(ScreenOf(count));
    window->resize(window->minimumSize());
    ASSERT_TRUE(QTest::qWaitFor(
        [this] { return Across().maximum() > 200 && Down().maximum() > 50; }, 1000));
  }
  QScrollBar& Across() const { return *Scroller().horizontalScrollBar(); }
  QScrollBar& Down() const { return *Scroller().verticalScrollBar(); }
  void ScrollTo(int across, int down) {
    Across().setValue(across);
    Down().setValue(down);
    ASSERT_EQ(Across().value(), across);
    ASSERT_EQ(Down().value(), down);
  }
  // A place in the window, counted from a corner of what it shows of the screen.
  QPoint NearUpperLeft(const QPoint& by) const {
    return Scroller().viewport()->mapTo(window.get(), by);
  }
  QPoint NearLowerRight(const QPoint& by) const {
    return Scroller().viewport()->mapTo(window.get(),
                                        Scroller().viewport()->rect().bottomRight() - by);
  }
  // A notch of the wheel over the middle of the screen, towards the user.
  void TurnWheel() {
    const QPoint place = Scroller().viewport()->rect().center();
    QWidget* viewport = Scroller().viewport();
    QWheelEvent event(place, viewport->mapToGlobal(QPointF(place)), {}, QPoint(0, -120),
                      Qt::LeftButton, {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(viewport, &event);
  }
  // From a name box to where nothing stands, between its column and the next.
  static constexpr QPoint kToTheGap{275, 71};

  bool WaitUntil(const std::function<bool()>& done) { return QTest::qWaitFor(done, 3000); }
};

TEST_F(ScreenScrollTest, ADragAfterScrollingLandsWhereItIsLetGo) {
  OpenLarge();
  ScrollTo(300, 40);
  ASSERT_TRUE(InSight("RAM_LOC_TEXT(30)"));
  const QPoint before = Place("RAM_LOC_TEXT(30)").topLeft();
  Grab("RAM_LOC_TEXT(30)", kToTheGap);
  EXPECT_EQ(Ghost().topLeft(), before + kToTheGap - kLift);
  Release();
  EXPECT_EQ(Place("RAM_LOC_TEXT(30)").topLeft(), before + kToTheGap - kLift);
  EXPECT_EQ(Across().value(), 300);
  EXPECT_EQ(Down().value(), 40);
}

TEST_F(ScreenScrollTest, ABoxThatIsHeldNearTheEdgeDrawsTheScreenAlong) {
  OpenLarge(72);
  Grab("RAM_LOC_TEXT(1)", QPoint(0, 0));
  MoveTo(NearLowerRight(QPoint(10, 10)));
  ASSERT_TRUE(WaitUntil([this] {
    return Across().value() == Across().maximum() && Down().value() == Down().maximum();
  }));
  const QPoint held = Get("screen").mapFrom(window.get(), pointer);
  EXPECT_EQ(Ghost().topLeft(), held - kGrip - kLift) << "still at the pointer";
  const QPoint ghost = Ghost().topLeft();
  Release();
  EXPECT_EQ(Place("RAM_LOC_TEXT(1)").topLeft(), ghost);
  EXPECT_GT(ghost.x(), 800);

  Grab("RAM_LOC_TEXT(1)", QPoint(0, 0));
  MoveTo(NearUpperLeft(QPoint(10, 10)));
  ASSERT_TRUE(WaitUntil([this] { return Across().value() == 0 && Down().value() == 0; }));
  Release();
  EXPECT_EQ(Place("RAM_LOC_TEXT(1)").topLeft(), QPoint(10, 10) - kGrip - kLift);
}

TEST_F(ScreenScrollTest, NothingScrollsAfterTheDrop) {
  OpenLarge();
  Grab("RAM_LOC_TEXT(1)", QPoint(0, 0));
  MoveTo(NearLowerRight(QPoint(10, 10)));
  ASSERT_TRUE(WaitUntil([this] { return Across().value() > 0; }));
  Release();
  const int across = Across().value();
  EXPECT_FALSE(QTest::qWaitFor([&] { return Across().value() != across; }, 100));
}

// Who only clicks on a box that stands near the edge does not want to move it.
TEST_F(ScreenScrollTest, AClickNearTheEdgeScrollsNothing) {
  OpenLarge();
  ScrollTo(300, 40);
  const QPoint before = Place("RAM_LOC_TEXT(30)").topLeft();
  ScrollTo(before.x() - 2, 40);
  Grab("RAM_LOC_TEXT(30)", QPoint(1, 1));
  ASSERT_TRUE(Dragging());
  EXPECT_FALSE(QTest::qWaitFor([&] { return Across().value() != before.x() - 2; }, 150));
  Release();
  EXPECT_EQ(Place("RAM_LOC_TEXT(30)").topLeft(), before);
}

TEST_F(ScreenScrollTest, TheWheelScrollsUnderABoxThatIsHeld) {
  OpenLarge();
  Grab("RAM_LOC_TEXT(1)", kToTheGap);
  const QPoint before = Ghost().topLeft();
  TurnWheel();
  ASSERT_TRUE(WaitUntil([this] { return Down().value() > 0; }));
  EXPECT_EQ(Ghost().topLeft(), before + QPoint(0, Down().value()));
  const QPoint ghost = Ghost().topLeft();
  Release();
  EXPECT_EQ(Place("RAM_LOC_TEXT(1)").topLeft(), ghost);
}

TEST_F(ScreenScrollTest, TheScreenGrowsWithABoxAndShrinksAgain) {
  OpenScreen(kTwoLocations);
  window->resize(window->minimumSize());
  ASSERT_EQ(Across().maximum(), 0);
  const int right = Scroller().viewport()->width();
  DragBoxTo("RAM_LOC_VAL(1)", QPoint(right - 30, 100));
  ASSERT_TRUE(WaitUntil([this] { return Across().maximum() > 0; }));
  EXPECT_EQ(Across().maximum(), 120 - 30 + 16) << "as far as the box goes, and a margin";
  Across().setValue(Across().maximum());
  EXPECT_TRUE(InSight("RAM_LOC_VAL(1)"));
  DragBoxTo("RAM_LOC_VAL(1)", QPoint(200, 100));
  EXPECT_TRUE(WaitUntil([this] { return Across().maximum() == 0; }));
  EXPECT_EQ(Place("RAM_LOC_VAL(1)"), QRect(200, 100, 120, 21));
}

TEST_F(ScreenScrollTest, UndoneTheScreenIsAsSmallAsBefore) {
  OpenScreen(kTwoLocations);
  window->resize(window->minimumSize());
  DragBoxTo("RAM_LOC_VAL(1)", QPoint(Scroller().viewport()->width() - 30, 100));
  ASSERT_TRUE(WaitUntil([this] { return Across().maximum() > 0; }));
  Undo();
  EXPECT_TRUE(WaitUntil([this] { return Across().maximum() == 0; }));
}

TEST_F(ScreenScrollTest, TheKeyboardBringsItsBoxIntoSight) {
  OpenLarge();
  ClickAt(On("RAM_LOC_TEXT(1)"));
  ASSERT_FALSE(InSight("RAM_LOC_VAL(100)"));
  Key(Qt::Key_Tab, Qt::ShiftModifier);  // out at the beginning
  Get("screen").setFocus(Qt::BacktabFocusReason);
  const std::string last = Focus();
  EXPECT_NE(last, "screen");
  EXPECT_TRUE(InSight(last)) << last;
  for (int i = 0; i < 150; ++i) {
    Key(Qt::Key_Tab, Qt::ShiftModifier);
    ASSERT_TRUE(InSight(Focus())) << Focus();
  }
}

TEST_F(ScreenScrollTest, ArrowKeysKeepTheBoxInSight) {
  OpenScreen(kTwoLocations);
  window->resize(window->minimumSize());
  SetGrid(true);
  ClickAt(On("RAM_LOC_TEXT(1)"));
  for (int i = 0; i < 60; ++i) {
    Key(Qt::Key_Right);
    Key(Qt::Key_Down);
    ASSERT_TRUE(InSight("RAM_LOC_TEXT(1)")) << i;
  }
  EXPECT_GT(Across().value(), 0);
  for (int i = 0; i < 60; ++i) {
    Key(Qt::Key_Left);
    Key(Qt::Key_Up);
    ASSERT_TRUE(InSight("RAM_LOC_TEXT(1)")) << i;
  }
}

TEST_F(ScreenScrollTest, WhatWasAddedIsInSight) {
  OpenLarge();
  Click("Toolbar1(1)");
  EXPECT_EQ(Focus(), "RAM_LOC_TEXT(101)");
  EXPECT_TRUE(WaitUntil([this] { return InSight("RAM_LOC_TEXT(101)"); }));
  for (int i = 0; i < 30; ++i) Click("Toolbar1(4)");
  EXPECT_EQ(Focus(), "lbl_TextInfo(30)");
  EXPECT_TRUE(WaitUntil([this] { return InSight("lbl_TextInfo(30)"); }));
}

}  // namespace
}  // namespace tarnlink
