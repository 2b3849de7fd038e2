// Mouse and keyboard on the graph's picture: the cursor, moving in time, what stands under the
// pointer.

#include <QMouseEvent>
#include <QPalette>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QWindow>
#include <chrono>
#include <cmath>

#include "ui/graph_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr double kSecondsOfView = 600;

class GraphMouse : public GraphUiTest {
 protected:
  QPoint OnPicture(int x, int y = 300) { return On("GraphPan", QPoint(x, y)); }
  // With the left button held, over the picture.
  void DragBy(int pixels) {
    PressAt(OnPicture(500));
    MoveTo(OnPicture(500 + pixels / 2));
    MoveTo(OnPicture(500 + pixels));
  }
  void LetGo(int pixels) { ReleaseAt(OnPicture(500 + pixels)); }
  // What the view moves by, in seconds, if it goes with the mouse.
  int SecondsOf(int pixels) {
    return static_cast<int>(std::lround(kSecondsOfView * pixels / Part("GraphPan").width()));
  }
  int CursorSeconds() { return Seconds(graph().CursorTime); }
};

// --- The cursor ----------------------------------------------------------------------------------

TEST_F(GraphMouse, AClickDrawsTheCursorWhereItWas) {
  EXPECT_EQ(CursorColumn(), -1);
  for (const int x : {1, 300, 301, 640, Part("GraphPan").width() - 2}) {
    ClickOn("GraphPan", QPoint(x, 250));
    EXPECT_EQ(CursorColumn(), x);
    EXPECT_NEAR(CursorSeconds(), -kSecondsOfView * (1 - (x + 0.5) / Part("GraphPan").width()), 1);
  }
  EXPECT_FALSE(graph().AutoScroll);
  EXPECT_FALSE(all().menu.mnuTimeScroll.Checked);
}

TEST_F(GraphMouse, ADoubleClickIsAClick) {
  QTest::mouseDClick(window().windowHandle(), Qt::LeftButton, {}, OnPicture(444));
  EXPECT_EQ(CursorColumn(), 444);
}

// As "Time Scroll" leaves it; the frame of the keyboard is not to cover it.
TEST_F(GraphMouse, ACursorAtTheRightEdgeIsSeen) {
  Part("GraphPan").clearFocus();
  Part("GraphPan").setFocus(Qt::TabFocusReason);
  all().menu.SetTimeScroll(false);
  all().display.DrawAgain();
  EXPECT_GE(CursorColumn(), Part("GraphPan").width() - 2);
}

TEST_F(GraphMouse, TheMiddleButtonSetsNoCursor) {
  ClickAt(OnPicture(300), Qt::MiddleButton);
  EXPECT_TRUE(graph().AutoScroll);
  EXPECT_FALSE(IsMenuOpen());
}

TEST_F(GraphMouse, ArrowsMoveTheCursorAndShiftMakesLongerSteps) {
  Key(Qt::Key_Left);
  EXPECT_EQ(graph().CursorTime, 0) << "There is none yet.";
  StandAfterTwoHours();
  ClickOn("GraphPan", QPoint(500, 250));
  const int at = CursorSeconds();
  struct Stroke {
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    int seconds;
  };
  int moved = 0;
  for (const Stroke& stroke :
       {Stroke{Qt::Key_Left, Qt::NoModifier, -1}, Stroke{Qt::Key_Left, Qt::ShiftModifier, -10},
        Stroke{Qt::Key_Right, Qt::ShiftModifier, 10}, Stroke{Qt::Key_Right, Qt::NoModifier, 1},
        Stroke{Qt::Key_Right, Qt::ControlModifier, 1},
        Stroke{Qt::Key_Left, Qt::ShiftModifier | Qt::ControlModifier, -1},
        Stroke{Qt::Key_Left, Qt::KeypadModifier, -1},
        Stroke{Qt::Key_Left, Qt::ShiftModifier | Qt::KeypadModifier, -10}}) {
    Key(stroke.key, stroke.modifiers);
    moved += stroke.seconds;
    EXPECT_EQ(CursorSeconds() - at, moved) << "to " << moved;
  }
  for (int i = 0; i < 60; ++i) Key(Qt::Key_Right);
  EXPECT_NEAR(CursorColumn(), 500 + (moved + 60) * Part("GraphPan").width() / kSecondsOfView, 2);
}

TEST_F(GraphMouse, OtherKeysDoNothing) {
  StandAfterTwoHours();
  ClickOn("GraphPan", QPoint(500, 250));
  const QImage before = Grab("GraphPan");
  for (const Qt::Key key :
       {Qt::Key_Up, Qt::Key_Down, Qt::Key_Home, Qt::Key_End, Qt::Key_PageUp, Qt::Key_PageDown,
        Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter, Qt::Key_Delete, Qt::Key_Escape, Qt::Key_A}) {
    Key(key);
    EXPECT_EQ(Grab("GraphPan"), before) << key;
  }
  EXPECT_TRUE(window().isVisible());
}

// The two labels are no buttons: a click leaves the keyboard where it is.
TEST_F(GraphMouse, ArrowsGoOnAfterAClickOnTest) {
  ClickOn("GraphPan", QPoint(500, 250));
  const int at = CursorSeconds();
  ClickAt(Middle("lblTest"));
  Key(Qt::Key_Left);
  EXPECT_EQ(CursorSeconds(), at - 1);
}

// --- The wheel -----------------------------------------------------------------------------------

TEST_F(GraphMouse, TheWheelMovesAStandingViewByATenthOfIt) {
  StandAfterTwoHours();
  TurnWheel(1);
  EXPECT_EQ(Seconds(graph().BaseTime), -60);
  TurnWheel(3);
  EXPECT_EQ(Seconds(graph().BaseTime), -240);
  TurnWheel(-1);
  EXPECT_EQ(Seconds(graph().BaseTime), -180);
  for (int i = 0; i < 3; ++i) TurnWheel(0.25);
  EXPECT_EQ(Seconds(graph().BaseTime), -180);
  TurnWheel(0.25);
  EXPECT_EQ(Seconds(graph().BaseTime), -240) << "A fine wheel comes to a whole step in the end.";
  TurnWheel(-20);
  EXPECT_EQ(Seconds(graph().BaseTime), 0);
}

TEST_F(GraphMouse, TheWheelLeavesAFollowingView) {
  graph().Data.FirstTime = start - 2.0 / 24;
  TurnWheel(5);
  EXPECT_EQ(Seconds(graph().BaseTime), 0);
  EXPECT_TRUE(graph().AutoScroll);
}

TEST_F(GraphMouse, ControlAndTheWheelChangeTheScale) {
  TurnWheel(1, Qt::ControlModifier);
  EXPECT_EQ(graph().TimeScale, 5);
  EXPECT_TRUE(all().menu.mnuScale(1).Checked);
  TurnWheel(-2, Qt::ControlModifier);
  EXPECT_EQ(graph().TimeScale, 20);
  TurnWheel(-9, Qt::ControlModifier);
  EXPECT_EQ(graph().TimeScale, 60);
  EXPECT_TRUE(graph().AutoScroll);
}

// --- Dragging ------------------------------------------------------------------------------------

TEST_F(GraphMouse, ADragMovesAStandingViewWithTheMouseAndSetsNoCursor) {
  StandAfterTwoHours();
  TurnWheel(10);
  const int base = Seconds(graph().BaseTime);
  const Date cursor = graph().CursorTime;
  DragBy(120);
  EXPECT_NEAR(Seconds(graph().BaseTime), base - SecondsOf(120), 1);
  EXPECT_EQ(Part("GraphPan").cursor().shape(), Qt::ClosedHandCursor);
  MoveTo(OnPicture(400));
  EXPECT_NEAR(Seconds(graph().BaseTime), base + SecondsOf(100), 1) << "and back";
  LetGo(-100);
  EXPECT_NEAR(Seconds(graph().BaseTime), base + SecondsOf(100), 1);
  EXPECT_EQ(graph().CursorTime, cursor);
  EXPECT_EQ(Part("GraphPan").cursor().shape(), Qt::ArrowCursor);
}

TEST_F(GraphMouse, ADragEndsWhereNothingWasMeasured) {
  StandAfterTwoHours();
  DragBy(-200);
  EXPECT_EQ(Seconds(graph().BaseTime), 0);
  MoveTo(OnPicture(500));
  EXPECT_EQ(Seconds(graph().BaseTime), 0) << "It is still where it was taken hold of.";
  LetGo(0);
}

TEST_F(GraphMouse, AShakyClickIsNoDrag) {
  StandAfterTwoHours();
  DragBy(4);
  LetGo(4);
  EXPECT_EQ(Seconds(graph().BaseTime), 0);
  EXPECT_EQ(CursorColumn(), 504);
}

TEST_F(GraphMouse, WhileTheViewFollowsADragIsAClick) {
  graph().Data.FirstTime = start - 2.0 / 24;
  DragBy(120);
  EXPECT_EQ(Seconds(graph().BaseTime), 0);
  LetGo(120);
  EXPECT_EQ(CursorColumn(), 620);
}

// As when a message box takes the mouse in the middle of a drag.
TEST_F(GraphMouse, ADragWhoseEndWasNotSeenIsOver) {
  StandAfterTwoHours();
  TurnWheel(10);
  DragBy(120);
  const Date base = graph().BaseTime;
  const QPointF place = OnPicture(200);
  QMouseEvent move(QEvent::MouseMove, place, window().mapToGlobal(place), Qt::NoButton,
                   Qt::NoButton, Qt::NoModifier);
  QApplication::sendEvent(window().windowHandle(), &move);
  EXPECT_EQ(graph().BaseTime, base);
  EXPECT_EQ(Part("GraphPan").cursor().shape(), Qt::ArrowCursor);
  ReleaseAt(OnPicture(200));
}

// --- The scroll bar ------------------------------------------------------------------------------

TEST_F(GraphMouse, TheScrollBarMovesTheTime) {
  StandAfterTwoHours();
  auto& bar = static_cast<QScrollBar&>(Part("HScroll1"));
  EXPECT_EQ(bar.maximum(), 110);
  EXPECT_EQ(bar.value(), 110);
  QStyleOptionSlider option;
  option.initFrom(&bar);
  option.orientation = Qt::Horizontal;
  option.maximum = bar.maximum();
  option.sliderPosition = bar.value();
  option.pageStep = bar.pageStep();
  const auto place = [&](QStyle::SubControl part) {
    return bar.style()->subControlRect(QStyle::CC_ScrollBar, &option, part, &bar).center();
  };
  ClickOn("HScroll1", place(QStyle::SC_ScrollBarSubPage));
  EXPECT_EQ(bar.value(), 100) << "by a view";
  EXPECT_NEAR(Seconds(graph().BaseTime), -600, 60);
  ClickOn("HScroll1", place(QStyle::SC_ScrollBarSubLine));
  EXPECT_EQ(bar.value(), 99) << "by a minute";
  EXPECT_NEAR(Seconds(graph().BaseTime), -660, 60);
}

// --- What stands under the pointer ---------------------------------------------------------------

class GraphReading : public GraphMouse {
 protected:
  GraphReading() {
    ShowLine(0, std::vector<int>(120, 60 << 8));
    all().display.DrawAgain();
  }
  // On the line, half a minute before its end.
  QPoint OnLine() {
    const GraphView view = all().display.View();
    const float x = view.TimeToX(start - 30 / kSecondsPerDay) / 15;
    return On("GraphPan",
              QPoint(static_cast<int>(x), static_cast<int>(view.TemperatureToY(60) / 15)));
  }
  int Paper() { return CountOf(Grab("GraphPan"), QApplication::palette().toolTipBase().color()); }
};

TEST_F(GraphReading, AppearsOverALineAndGoes) {
  const QImage before = Grab("GraphPan");
  const int paper = Paper();
  MoveTo(OnLine());
  EXPECT_GT(Paper(), paper + 500);
  MoveTo(OnLine() + QPoint(0, 60));
  EXPECT_EQ(Grab("GraphPan"), before) << "beside the line";
  MoveTo(OnLine());
  EXPECT_NE(Grab("GraphPan"), before);
  MoveTo(Middle("frm(0)"));
  EXPECT_EQ(Grab("GraphPan"), before) << "outside the picture";
}

TEST_F(GraphReading, IsNotInTheWayOfADrag) {
  StandAfterTwoHours();
  MoveTo(OnLine());
  const int paper = Paper();
  PressAt(OnLine());
  MoveTo(OnLine() - QPoint(40, 0));
  EXPECT_LT(Paper(), paper - 500);
  ReleaseAt(OnLine() - QPoint(40, 0));
}

TEST_F(GraphReading, FollowsTheLineThatMovesOn) {
  MoveTo(OnLine());
  ASSERT_NE(Paper(), 0);
  const QImage before = Grab("GraphPan");
  // The end of the line passes the pointer to the left.
  world.Advance(60s);
  const QImage after = Grab("GraphPan");
  EXPECT_NE(after, before);
  EXPECT_EQ(CountOf(after, QApplication::palette().toolTipBase().color()), 0);
}

}  // namespace
}  // namespace tarnlink
