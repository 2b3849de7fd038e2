#include "ui/graph_fixture.h"

#include <QWheelEvent>
#include <QWindow>
#include <stdexcept>

#include "platform/qt/qt_colour.h"

namespace tarnlink {

namespace {

constexpr int kPatience = 3000;  // ms

}  // namespace

int CountOf(const QImage& image, const QColor& colour) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) count += image.pixelColor(x, y) == colour ? 1 : 0;
  }
  return count;
}

GraphUiTest::GraphUiTest()
    : tool(world, {.ComPortNumber = [] { return 1; }, .Baudrate = [] { return 3; }},
           {mss_folder, grp_folder, {}, {}}, nullptr) {
  Open();
}

// --- What there is -------------------------------------------------------------------------------

GraphWindow& GraphUiTest::window() {
  if (tool.window() == nullptr) throw std::runtime_error("The window is gone.");
  return *tool.window();
}

Graph& GraphUiTest::all() {
  if (tool.graph() == nullptr) throw std::runtime_error("The graph is gone.");
  return *tool.graph();
}

void GraphUiTest::Open() {
  tool.Show();
  window().resize(1180, 760);
  start = graph().Now();
  Activate(window());
  // Where the mouse is already, it does not move to.
  MoveTo(QPoint(1, 1));
}

void GraphUiTest::Activate(QWidget& window) {
  window.activateWindow();
  ASSERT_TRUE(QTest::qWaitFor([&] { return window.isActiveWindow(); }, kPatience));
}

bool GraphUiTest::IsGone() {
  return QTest::qWaitFor([this] { return tool.window() == nullptr; }, kPatience);
}

QWidget& GraphUiTest::Part(const std::string& name) {
  auto* part = window().findChild<QWidget*>(QString::fromStdString(name));
  if (part == nullptr) throw std::runtime_error("There is no " + name + ".");
  return *part;
}

void GraphUiTest::ShowLine(int index, const std::vector<int>& raw_values) {
  auto& data = graph().Data;
  data.Attributes.at(static_cast<std::size_t>(index)).ShowLine = true;
  data.AllocateChannel(index);
  const auto count = static_cast<int>(raw_values.size());
  for (int i = 0; i < count; ++i) {
    const Date time = start - (count - 1 - i) / kSecondsPerDay;
    data.AddMeasurement(raw_values[static_cast<std::size_t>(i)], time, index);
  }
}

void GraphUiTest::StandAfterTwoHours() {
  constexpr double kTwoHours = 2.0 / 24;
  graph().Data.FirstTime = start - kTwoHours;
  all().menu.SetTimeScroll(false);
  all().display.DrawAgain();
}

// --- The user ------------------------------------------------------------------------------------

QPoint GraphUiTest::On(const std::string& part, const QPoint& at) {
  return Part(part).mapTo(&window(), at);
}

void GraphUiTest::MoveTo(const QPoint& place) {
  QCursor::setPos(window().mapToGlobal(place));
  QTest::mouseMove(window().windowHandle(), place);
}

void GraphUiTest::PressAt(const QPoint& place, Qt::MouseButton button) {
  MoveTo(place);
  QTest::mousePress(window().windowHandle(), button, {}, place);
}

void GraphUiTest::ReleaseAt(const QPoint& place, Qt::MouseButton button) {
  QTest::mouseRelease(window().windowHandle(), button, {}, place);
}

void GraphUiTest::ClickAt(const QPoint& place, Qt::MouseButton button) {
  PressAt(place, button);
  ReleaseAt(place, button);
}

void GraphUiTest::TurnWheel(double steps, Qt::KeyboardModifiers modifiers) {
  const QPointF place = Middle("GraphPan");
  const QPoint turn(0, static_cast<int>(steps * 120));
  QWheelEvent event(place, window().mapToGlobal(place), {}, turn, Qt::NoButton, modifiers,
                    Qt::NoScrollPhase, false);
  QApplication::sendEvent(window().windowHandle(), &event);
}

void GraphUiTest::Key(Qt::Key key, Qt::KeyboardModifiers modifiers) {
  QTest::keyClick(window().windowHandle(), key, modifiers);
}

void GraphUiTest::Choose(const std::string& entry) {
  ClickAt(Middle("GraphPan"), Qt::RightButton);
  ASSERT_TRUE(IsMenuOpen());
  for (QAction* action : Menu().actions()) {
    if (action->objectName().toStdString() == entry) return ClickEntry(Menu(), *action);
    if (action->menu() == nullptr) continue;
    for (QAction* inner : action->menu()->actions()) {
      if (inner->objectName().toStdString() != entry) continue;
      ClickEntry(Menu(), *action);
      ASSERT_TRUE(QTest::qWaitFor([&] { return action->menu()->isVisible(); }, kPatience));
      return ClickEntry(*action->menu(), *inner);
    }
  }
  FAIL() << "There is no " << entry << ".";
}

void GraphUiTest::ClickEntry(QMenu& menu, QAction& entry) {
  QTest::mouseClick(menu.windowHandle(), Qt::LeftButton, {}, menu.actionGeometry(&entry).center());
}

// --- What can be seen ----------------------------------------------------------------------------

int GraphUiTest::CursorColumn() {
  const QImage picture = Grab("GraphPan");
  const QColor colour = ToQColor(graph().Data.Colors.CursorColor);
  for (int x = 0; x < picture.width(); ++x) {
    if (CountOf(picture.copy(x, 0, 1, picture.height()), colour) >= picture.height() - 2) return x;
  }
  return -1;
}

void GraphUiTest::CloseMenu() {
  QTest::keyClick(Menu().windowHandle(), Qt::Key_Escape);
  EXPECT_FALSE(IsMenuOpen());
}

}  // namespace tarnlink
