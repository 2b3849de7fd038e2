#include "driver.h"

#include <unistd.h>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QMouseEvent>
#include <QTimer>
#include <QWidget>
#include <cstdio>

namespace tarnlink_driver {

namespace {

// The first object of that name in any window; the same name never stands twice.
QObject* Find(const QString& name) {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->objectName() == name) return window;
    if (QObject* found = window->findChild<QObject*>(name)) return found;
  }
  return nullptr;
}

}  // namespace

Driver::Driver() : notifier_(STDIN_FILENO, QSocketNotifier::Read) {
  connect(&notifier_, &QSocketNotifier::activated, this, [this] { Read(); });
}

void Driver::Read() {
  char buffer[4096];
  const ssize_t count = read(STDIN_FILENO, buffer, sizeof buffer);
  if (count <= 0) {
    notifier_.setEnabled(false);
    return;
  }
  pending_.append(buffer, static_cast<qsizetype>(count));
  for (qsizetype end = pending_.indexOf('\n'); end >= 0; end = pending_.indexOf('\n')) {
    const QString line = QString::fromUtf8(pending_.left(end));
    pending_.remove(0, end + 1);
    QString answer = Obey(line);
    answer.replace("\r", "\\r").replace("\n", "\\n");
    std::printf("@%s\n", answer.toUtf8().constData());
    std::fflush(stdout);
  }
}

QString Driver::Obey(const QString& line) {
  const QString verb = line.section(' ', 0, 0);
  const QString rest = line.section(' ', 1);
  if (verb == "press") return Press(rest);
  if (verb == "text") return Property(rest, "text");
  if (verb == "enabled") return Property(rest, "enabled");
  if (verb == "title") return Property(rest, "windowTitle");
  if (verb == "modal") return Modal();
  if (verb == "click") return Click(rest);
  if (verb == "twice") return Twice(rest);
  if (verb == "focus") return Focus(rest);
  if (verb == "type") return Type(rest);
  if (verb == "picture") return Picture(rest);
  return "unknown: " + line;
}

// Through the event loop, since a press may open a modal box and only come back when it closes.
QString Driver::Press(const QString& name) {
  QObject* object = Find(name);
  if (auto* action = qobject_cast<QAction*>(object)) {
    QTimer::singleShot(0, action, [action] { action->trigger(); });
    return "ok";
  }
  if (auto* button = qobject_cast<QAbstractButton*>(object)) {
    QTimer::singleShot(0, button, [button] { button->click(); });
    return "ok";
  }
  return "no such: " + name;
}

QString Driver::Property(const QString& name, const char* property) {
  const QObject* object = Find(name);
  return object == nullptr ? "no such: " + name : object->property(property).toString();
}

QString Driver::Modal() {
  QWidget* modal = QApplication::activeModalWidget();
  if (modal == nullptr) return "none";
  const auto* box = qobject_cast<QMessageBox*>(modal);
  return modal->windowTitle() + "|" + (box == nullptr ? modal->objectName() : box->text());
}

QString Driver::Click(const QString& text) {
  QWidget* modal = QApplication::activeModalWidget();
  if (modal == nullptr) return "none";
  for (auto* button : modal->findChildren<QAbstractButton*>()) {
    if (button->text().remove('&') != text) continue;
    QTimer::singleShot(0, button, [button] { button->click(); });
    return "ok";
  }
  return "no such: " + text;
}

// A double click.
QString Driver::Twice(const QString& name) {
  auto* widget = qobject_cast<QWidget*>(Find(name));
  if (widget == nullptr) return "no such: " + name;
  QTimer::singleShot(0, widget, [widget] {
    const QPointF place = widget->rect().center();
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease,
                                    QEvent::MouseButtonDblClick, QEvent::MouseButtonRelease}) {
      const bool is_down = type != QEvent::MouseButtonRelease;
      QMouseEvent event(type, place, widget->mapToGlobal(place), Qt::LeftButton,
                        is_down ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
      QApplication::sendEvent(widget, &event);
    }
  });
  return "ok";
}

QString Driver::Focus(const QString& name) {
  auto* widget = qobject_cast<QWidget*>(Find(name));
  if (widget == nullptr) return "no such: " + name;
  widget->setFocus();
  return widget->hasFocus() ? "ok" : "no focus: " + name;
}

// In place of what stands in the edit field that has the keyboard.
QString Driver::Type(const QString& text) {
  auto* edit = qobject_cast<QLineEdit*>(QApplication::focusWidget());
  if (edit == nullptr) return "no edit field has the keyboard";
  edit->selectAll();
  for (const QChar letter : text) {
    QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, letter);
    QApplication::sendEvent(edit, &press);
  }
  return "ok";
}

QString Driver::Picture(const QString& file) {
  QWidget* shown = QApplication::activeModalWidget();
  if (shown == nullptr) shown = QApplication::activeWindow();
  if (shown == nullptr) shown = QApplication::topLevelWidgets().constFirst();
  return shown->grab().save(file) ? "ok" : "not saved";
}

}  // namespace tarnlink_driver
