// The sniffer's windows under mouse and keyboard, on a link whose frames the test gives. Events
// come to the windows as the desktop reports them, and find their own way.
//
//   Exchange(0xF1, 0x2D, 0);
//   Drag("RAM_TEXT(1)", QPoint(0, 60));
//   EXPECT_EQ(Items(), "2 1");
#pragma once

#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <algorithm>
#include <vector>

#include "protocols/zolt_message.h"
#include "ui/reading_order.h"
#include "ui/service_tools_fixture.h"

namespace tarnlink {

class SnifferUiTest : public ServiceToolsTest {
 protected:
  SnifferUiTest() {
    host.IdFile = [] { return std::string("/jobs/boiler.ids"); };
    world.disk().Put("/jobs/boiler.snf", "*R1.2\r\nFlow,F1,0,H\r\nStatus,1,2,W\r\n");
    tools->ShowSniffer();
    Activated("frmSniffer");
  }

  // --- What there is ---

  static QWidget& Window() { return Form("frmSniffer"); }
  static QWidget& Settings() { return Form("frm_Sniff_Settings"); }
  template <class T = QWidget>
  static T& Part(const std::string& name) {
    return In<T>(Window(), name);
  }
  static QScrollArea& Scroller() { return *Window().findChild<QScrollArea*>(); }

  // --- The link ---

  void Hear(std::uint8_t type, int id, int high, int low) {
    world.port().Receive(BuildZoltMessage(type, "0", id, static_cast<std::uint8_t>(high),
                                          static_cast<std::uint8_t>(low)));
    world.Settle();
    world.port().Forget();
  }
  void Exchange(int id, int high, int low) {
    Hear(0x04, id, 0, 0);
    Hear(0x14, id, high, low);
  }
  // Items 1 to `count`, on the IDs 0x1001 and up.
  void PlaceItems(int count) {
    for (int i = 1; i <= count; ++i) Exchange(0x1000 + i, i / 256, i % 256);
  }

  // --- The user ---

  static QPoint On(QWidget& form, const std::string& name) {
    QWidget& part = In(form, name);
    return part.mapTo(&form, QPoint(8, part.height() / 2));
  }
  using ServiceToolsTest::Click;
  using ServiceToolsTest::Key;
  static void Click(const std::string& name) { Click(Window(), name); }
  static void DoubleClick(const QPoint& place) {
    QTest::mouseDClick(Window().windowHandle(), Qt::LeftButton, {}, place);
  }
  static void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    Key(Window(), key, modifiers);
  }
  // Replaces what stands in a field.
  static void Enter(QWidget& form, const std::string& name, const std::string& text) {
    In(form, name).setFocus();
    Key(form, Qt::Key_A, Qt::ControlModifier);
    Key(form, Qt::Key_Delete);
    Type(form, text);
  }
  // The button stays down.
  static void Grab(const std::string& name, const QPoint& by) {
    const QPoint from = On(Window(), name);
    QTest::mousePress(Window().windowHandle(), Qt::LeftButton, {}, from);
    MoveTo(from + by / 2);
    MoveTo(from + by);
  }
  static void MoveTo(const QPoint& place) {
    pointer = place;
    QTest::mouseMove(Window().windowHandle(), place);
  }
  static void Release() {
    QTest::mouseRelease(Window().windowHandle(), Qt::LeftButton, {}, pointer);
  }
  static void Drag(const std::string& name, const QPoint& by) {
    Grab(name, by);
    Release();
  }

  // --- What can be seen ---

  using ServiceToolsTest::Text;
  static std::string Text(const std::string& name) { return Text(Window(), name); }
  static std::string Caption(QWidget& form, const std::string& name) {
    return In<QLabel>(form, name).text().toStdString();
  }
  // The numbers of the items as they are read, with blanks between them.
  std::string Items() {
    std::vector<QWidget*> names;
    for (int i = 1; i <= kLastItem; ++i) {
      if (!tools->sniffer.HasItem(i)) continue;
      names.push_back(&Part(MemberName("RAM_TEXT", i)));
    }
    std::string text;
    for (const QWidget* one : InReadingOrder(names)) {
      const std::string name = one->objectName().toStdString();
      text += (text.empty() ? "" : " ") + name.substr(9, name.size() - 10);
    }
    return text;
  }
  static bool InSight(const std::string& name) {
    const QWidget& part = Part(name);
    return part.visibleRegion().boundingRect() == part.rect();
  }
  static bool Dragging() { return Window().findChild<QWidget*>("DragGhost") != nullptr; }
  // What the box ought to hold.
  std::string RunningText() {
    std::string text = tools->sniffer.running_text();
    text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
    return text;
  }
  static QPlainTextEdit& TextBoxOf() { return Part<QPlainTextEdit>("txt_Messages"); }
  static std::string Marked() { return TextBoxOf().textCursor().selectedText().toStdString(); }
  static bool IsCaretAtTheEnd() {
    const QTextCursor caret = TextBoxOf().textCursor();
    return caret.atEnd() && !caret.hasSelection();
  }

  inline static QPoint pointer;
};

}  // namespace tarnlink
