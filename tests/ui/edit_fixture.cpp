#include "ui/edit_fixture.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWindow>
#include <algorithm>
#include <vector>

namespace tarnlink {

std::string LocationAt(const std::string& name, int name_left, int name_top, int value_left,
                       int value_top, int scan_flags) {
  const auto pair = [](int top, int left) {
    return std::to_string(top) + "," + std::to_string(left);
  };
  return "\"L\",0,1,\"01A0\",0,\"" + name + "\",\"v_" + name + "\",0,0," +
         std::to_string(scan_flags) + ",0,\"0\",0," + pair(value_top, value_left) + "," +
         pair(name_top, name_left) + ",\"0\"\r\n";
}

std::string LabelAt(const std::string& caption, int left, int top, const std::string& size) {
  return "\"T\",\"" + caption + "\"," + std::to_string(top) + "," + std::to_string(left) +
         ",\"DejaVu Sans\"," + size + ",#FALSE#,#FALSE#,0\r\n";
}

// --- The mouse ---

QPoint EditUiTest::On(const std::string& name, const QPoint& grip) const {
  return Get(name).mapTo(window.get(), grip);
}

QPoint EditUiTest::OnScreen(const QPoint& place) const { return On("screen", place); }

void EditUiTest::PressAt(const QPoint& place, Qt::MouseButton button,
                         Qt::KeyboardModifiers modifiers) {
  pointer = place;
  QTest::mousePress(window->windowHandle(), button, modifiers, place);
}

void EditUiTest::MoveTo(const QPoint& place) {
  pointer = place;
  if (!window->rect().contains(place)) return SendOutside(QEvent::MouseMove, Qt::NoButton);
  QTest::mouseMove(window->windowHandle(), place);
}

void EditUiTest::Release(Qt::MouseButton button, Qt::KeyboardModifiers modifiers) {
  if (!window->rect().contains(pointer)) return SendOutside(QEvent::MouseButtonRelease, button);
  QTest::mouseRelease(window->windowHandle(), button, modifiers, pointer);
}

// While a button is down the desktop reports to the window what happens outside of it, too.
void EditUiTest::SendOutside(QEvent::Type type, Qt::MouseButton button) {
  QMouseEvent event(type, pointer, window->mapToGlobal(QPointF(pointer)), button, Qt::LeftButton,
                    Qt::NoModifier);
  QApplication::sendEvent(window->windowHandle(), &event);
}

void EditUiTest::ClickAt(const QPoint& place, Qt::MouseButton button,
                         Qt::KeyboardModifiers modifiers) {
  PressAt(place, button, modifiers);
  Release(button, modifiers);
}

void EditUiTest::DoubleClickAt(const QPoint& place, Qt::MouseButton button,
                               Qt::KeyboardModifiers modifiers) {
  pointer = place;
  QTest::mouseDClick(window->windowHandle(), button, modifiers, place);
}

void EditUiTest::Grab(const std::string& name, const QPoint& by) {
  PressAt(On(name));
  Move(by);
}

void EditUiTest::Drag(const std::string& name, const QPoint& by) {
  Grab(name, by);
  Release();
}

void EditUiTest::DragBoxTo(const std::string& name, const QPoint& place) {
  Drag(name, place + kLift - Place(name).topLeft());
}

// --- Keys and options ---

void EditUiTest::Key(Qt::Key key, Qt::KeyboardModifiers modifiers) {
  QTest::keyClick(window->windowHandle(), key, modifiers);
}

void EditUiTest::ShowChecks() {
  world.settings().SaveSetting("Communication", "Scanning", "1");
  BeginOnce();
  monitor.options.ScanningBox.Value = true;
}

ScriptedDialog& EditUiTest::ExpectDeleteQuestion() {
  return world.dialogs().ExpectMessageBox(
      {.text = "Are you sure you want to delete the selected location ?",
       .title = "Delete Location",
       .icon = Icon::kExclamation,
       .buttons = Buttons::kYesNo});
}

ScriptedDialog& EditUiTest::ExpectLabelText() {
  return world.dialogs().ExpectInputBox("Enter text to be displayed", "Text Information");
}

// --- What can be seen ---

QScrollArea& EditUiTest::Scroller() const { return *window->findChild<QScrollArea*>(); }

bool EditUiTest::InSight(const std::string& name) const {
  const QWidget& widget = Get(name);
  const QWidget* viewport = Scroller().viewport();
  return widget.isVisible() &&
         viewport->rect().contains(QRect(widget.mapTo(viewport, QPoint(0, 0)), widget.size()));
}

std::string EditUiTest::Entries() const {
  const auto shown = [this](const char* name) {
    const std::string text = Entry(name).text().toStdString();
    return Entry(name).isEnabled() ? text : "[" + text + "]";
  };
  return shown("mnuUndo") + " | " + shown("mnuRedo");
}

std::string EditUiTest::Everything() const {
  std::vector<std::string> lines;
  for (const QWidget* widget : Get("screen").findChildren<QWidget*>()) {
    const QRect place = widget->geometry();
    lines.push_back(widget->objectName().toStdString() + " " + std::to_string(place.x()) + "," +
                    std::to_string(place.y()) + " " + std::to_string(place.width()) + "x" +
                    std::to_string(place.height()) + (widget->isHidden() ? " hidden " : " ") +
                    widget->property("text").toString().toStdString() + " " +
                    widget->font().toString().toStdString() +
                    (widget->property("checked").toBool() ? " checked\n" : "\n"));
  }
  std::sort(lines.begin(), lines.end());
  std::string text;
  for (const std::string& line : lines) text += line;
  return text;
}

std::string EditUiTest::Save() {
  Key(Qt::Key_S, Qt::ControlModifier);
  return world.disk().Get(kFile);
}

}  // namespace tarnlink
