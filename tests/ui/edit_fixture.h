// The language of the tests on editing the screen with mouse and keys. Their events come to the
// window, as the desktop reports them, and find their own way to boxes and commands.
//
//   OpenScreen(kTwoLocations);
//   Grab("RAM_LOC_TEXT(1)", QPoint(100, 0));
//   EXPECT_EQ(Ghost().topLeft(), QPoint(114, 38));
//   Release();
//   Key(Qt::Key_Z, Qt::ControlModifier);
#pragma once

#include <QScrollArea>
#include <string>

#include "ui/ui_fixture.h"

namespace tarnlink {

// A box comes to stand this much left of and above where it is held: 30 units.
inline constexpr QPoint kLift{2, 2};

// One memory Location of a screen file, by the places of its two boxes in units.
std::string LocationAt(const std::string& name, int name_left, int name_top, int value_left,
                       int value_top, int scan_flags = 0);
std::string LabelAt(const std::string& caption, int left, int top, const std::string& size = "8");

class EditUiTest : public UiTest {
 protected:
  // --- The mouse ---

  // A place on a widget, by default near its upper left corner, and a place on the screen's
  // surface, as places in the window.
  QPoint On(const std::string& name, const QPoint& grip = kGrip) const;
  QPoint OnScreen(const QPoint& place) const;

  void PressAt(const QPoint& place, Qt::MouseButton button = Qt::LeftButton,
               Qt::KeyboardModifiers modifiers = {});
  // To a place in the window, and so far from where the pointer is.
  void MoveTo(const QPoint& place);
  void Move(const QPoint& by) { MoveTo(pointer + by); }
  // Lets go where the pointer is.
  void Release(Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers modifiers = {});
  void ClickAt(const QPoint& place, Qt::MouseButton button = Qt::LeftButton,
               Qt::KeyboardModifiers modifiers = {});
  void DoubleClickAt(const QPoint& place, Qt::MouseButton button = Qt::LeftButton,
                     Qt::KeyboardModifiers modifiers = {});

  // Takes hold of a widget and moves so far. The button stays down.
  void Grab(const std::string& name, const QPoint& by);
  // The same and lets go.
  void Drag(const std::string& name, const QPoint& by);
  // Drags so that a box comes to stand at this place of the screen.
  void DragBoxTo(const std::string& name, const QPoint& place);

  // --- Keys and options ---

  void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
  void Undo() { Key(Qt::Key_Z, Qt::ControlModifier); }
  void Redo() { Key(Qt::Key_Y, Qt::ControlModifier); }
  void SetGrid(bool on) { monitor.options.chkGridOn.Value = on; }
  // With check boxes beside the names of the next screen.
  void ShowChecks();

  ScriptedDialog& ExpectDeleteQuestion();
  ScriptedDialog& ExpectLabelText();

  // --- What can be seen ---

  QRect Place(const std::string& name) const { return Get(name).geometry(); }
  bool Dragging() const { return Find("DragGhost") != nullptr; }
  QRect Ghost() const { return Place("DragGhost"); }
  QScrollArea& Scroller() const;
  // Whether the whole widget is within what the window shows of the screen.
  bool InSight(const std::string& name) const;
  std::string Title() const { return window->windowTitle().toStdString(); }
  bool Changed() const { return window->windowTitle().endsWith(" *"); }
  // "&Undo move of Flow | &Redo"; an entry that is off stands in brackets.
  std::string Entries() const;
  // All objects of the screen with place, text and font, the hidden ones too.
  std::string Everything() const;
  // Saves with the keyboard, and what the file holds then.
  std::string Save();

  static constexpr QPoint kGrip{6, 6};
  static constexpr const char* kFile = "/home/user/work/boiler.wcr";
  QPoint pointer;  // in the window

 private:
  void SendOutside(QEvent::Type type, Qt::MouseButton button);
};

}  // namespace tarnlink
