// A user's hands on the graph's window. Events come to the window as the desktop reports them, and
// find their own way.
//
//   ClickOn("GraphPan", QPoint(300, 200));
//   EXPECT_EQ(CursorColumn(), 300);
//   Key(Qt::Key_Left, Qt::ShiftModifier);
//   Choose("mnuScale(0)");
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QMenu>
#include <QTest>
#include <QWidget>
#include <string>

#include "support/fake_world.h"
#include "ui/graph_tool.h"

namespace tarnlink {

// A window of the program by its form's name, null if there is none.
inline QWidget* FindTopLevel(const std::string& name) {
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (widget->objectName().toStdString() == name) return widget;
  }
  return nullptr;
}

inline QWidget& Picture(QWidget& window) { return *window.findChild<QWidget*>("GraphPan"); }

// Moves the mouse over the picture.
inline void PointAt(QWidget& window, const QPoint& at) { QTest::mouseMove(&Picture(window), at); }

// How many pixels of an image have this colour.
int CountOf(const QImage& image, const QColor& colour);

// The graph opened at 14:07:09 on 5 March 2024, in a window of 1180 by 760; no slave answers.
class GraphUiTest : public ::testing::Test {
 protected:
  GraphUiTest();

  // --- What there is ---

  // These throw once the graph has been left.
  GraphWindow& window();
  Graph& all();
  frmGraphic& graph() { return all().graph; }
  QWidget& Part(const std::string& name);
  QMenu& Menu() { return *window().findChild<QMenu*>("mnuContextMenu"); }
  // Opens it, again too, and the keyboard comes to it.
  void Open();
  // What a window manager does when a window comes up, or is left by the one above it.
  static void Activate(QWidget& window);
  // The event loop has gone through what was put off, and the window is gone.
  bool IsGone();

  // A line with these values, one for each second up to the start.
  void ShowLine(int index, const std::vector<int>& raw_values);
  // Measured for two hours; the view stands at the end, with the cursor there.
  void StandAfterTwoHours();
  // Seconds since the start.
  int Seconds(Date time) const { return static_cast<int>(ToSeconds(time) - ToSeconds(start)); }

  // --- The user ---

  // A place on a part, as a place in the window.
  QPoint On(const std::string& part, const QPoint& at);
  QPoint Middle(const std::string& part) { return On(part, Part(part).rect().center()); }
  void MoveTo(const QPoint& place);
  void PressAt(const QPoint& place, Qt::MouseButton button = Qt::LeftButton);
  void ReleaseAt(const QPoint& place, Qt::MouseButton button = Qt::LeftButton);
  void ClickAt(const QPoint& place, Qt::MouseButton button = Qt::LeftButton);
  void ClickOn(const std::string& part, const QPoint& at) { ClickAt(On(part, at)); }
  // So many steps of the wheel over the picture, away from the user.
  void TurnWheel(double steps, Qt::KeyboardModifiers modifiers = {});
  void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
  // A click on an entry of the menu, which is opened for it; one of a submenu through that.
  void Choose(const std::string& entry);

  // --- What can be seen ---

  QImage Grab(const std::string& part) { return Part(part).grab().toImage(); }
  // Where the cursor is drawn from top to bottom, -1 for none.
  int CursorColumn();
  bool IsMenuOpen() { return QApplication::activePopupWidget() == &Menu(); }
  void CloseMenu();

  FakeWorld world;
  std::string mss_folder;
  std::string grp_folder;
  GraphTool tool;
  Date start = 0;

 private:
  void ClickEntry(QMenu& menu, QAction& entry);
};

}  // namespace tarnlink
