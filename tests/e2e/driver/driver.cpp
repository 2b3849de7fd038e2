#include "driver.h"

#include <unistd.h>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QStyleHints>
#include <QTabBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>
#include <QToolBar>
#include <QTreeWidget>
#include <QWidget>
#include <QWindow>
#include <cstdio>

#include "platform/qt/waiting_dialog.h"

// The ways in for events of the desktop that Qt Test uses.
Q_GUI_EXPORT void qt_handleMouseEvent(QWindow* window, const QPointF& local, const QPointF& global,
                                      Qt::MouseButtons state, Qt::MouseButton button,
                                      QEvent::Type type, Qt::KeyboardModifiers modifiers,
                                      int timestamp);
Q_GUI_EXPORT void qt_handleKeyEvent(QWindow* window, QEvent::Type type, int key,
                                    Qt::KeyboardModifiers modifiers, const QString& text,
                                    bool is_repeat = false, ushort count = 1);
// True if a shortcut has taken the key.
Q_GUI_EXPORT bool qt_sendShortcutOverrideEvent(QObject* window, ulong timestamp, int key,
                                               Qt::KeyboardModifiers modifiers, const QString& text,
                                               bool is_repeat = false, ushort count = 1);

namespace tarnlink_driver {

namespace {

constexpr const char* kNoKeyboard = "no window has the keyboard";

// The object of that name in the window that has the user, or else in any other: a tool names some
// of its entries as the main form does.
QObject* Find(const QString& name) {
  QWidgetList windows = QApplication::topLevelWidgets();
  if (QWidget* modal = QApplication::activeModalWidget()) windows.prepend(modal);
  for (QWidget* window : windows) {
    if (window->objectName() == name) return window;
    if (QObject* found = window->findChild<QObject*>(name)) return found;
  }
  return nullptr;
}

struct Place {
  QWidget* widget = nullptr;
  QPoint point;
};

// The middle of the tab that has this text.
Place PlaceOfTab(const QTabWidget& tabs, const QString& text) {
  for (int i = 0; i < tabs.count(); ++i) {
    if (tabs.tabText(i).remove('&') == text)
      return {tabs.tabBar(), tabs.tabBar()->tabRect(i).center()};
  }
  return {};
}

// The middle of a widget, of an action's button on a tool bar or, as "tree/text", of the line of a
// tree or of the tab that has this text.
Place PlaceOf(const QString& target) {
  QObject* object = Find(target.section('/', 0, 0));
  if (const auto* tabs = qobject_cast<QTabWidget*>(object)) {
    return PlaceOfTab(*tabs, target.section('/', 1));
  }
  if (auto* tree = qobject_cast<QTreeWidget*>(object)) {
    const QList<QTreeWidgetItem*> lines =
        tree->findItems(target.section('/', 1), Qt::MatchExactly | Qt::MatchRecursive);
    if (lines.size() != 1) return {};
    return {tree->viewport(), tree->visualItemRect(lines.first()).center()};
  }
  if (auto* action = qobject_cast<QAction*>(object)) {
    auto* bar = qobject_cast<QToolBar*>(action->parent());
    object = bar == nullptr ? nullptr : bar->widgetForAction(action);
  }
  auto* widget = qobject_cast<QWidget*>(object);
  return widget == nullptr ? Place{} : Place{widget, widget->rect().center()};
}

bool IsBlocked(const QWidget* window) {
  const QWidget* modal = QApplication::activeModalWidget();
  return modal != nullptr && modal != window && !modal->isAncestorOf(window);
}

// The window that is left to the user.
QWidget* WindowInFront() {
  if (QWidget* modal = QApplication::activeModalWidget()) return modal;
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->isVisible() && window->windowType() == Qt::Window) return window;
  }
  return nullptr;
}

// The window that has the keyboard; null for none.
QWindow* KeyboardWindow() {
  QWindow* window = QGuiApplication::focusWindow();
  return window != nullptr && window->isVisible() ? window : nullptr;
}

// What a desktop makes of the menu key.
void AskForMenu() {
  QWidget* part = QApplication::focusWidget();
  if (part == nullptr) return;
  const QPoint place = part->rect().center();
  QContextMenuEvent event(QContextMenuEvent::Keyboard, place, part->mapToGlobal(place));
  QApplication::sendEvent(part, &event);
}

// To the window that has the keyboard by then, or is about to get it.
void SendKey(int key, Qt::KeyboardModifiers modifiers, const QString& text) {
  for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
    QTimer::singleShot(0, qApp, [=] {
      QWindow* window = KeyboardWindow();
      const QWidget* front = window == nullptr ? WindowInFront() : nullptr;
      if (front != nullptr) window = front->windowHandle();
      if (window == nullptr) return;
      const bool is_down = type == QEvent::KeyPress;
      if (is_down && qt_sendShortcutOverrideEvent(window, 0, key, modifiers, text)) return;
      qt_handleKeyEvent(window, type, key, modifiers, text);
      if (is_down && key == Qt::Key_Menu) AskForMenu();
    });
  }
}

}  // namespace

Driver::Driver()
    : notifier_(STDIN_FILENO, QSocketNotifier::Read),
      watchdog_([this](double milliseconds, const std::string& account) {
        TellWaiting(milliseconds, account);
      }) {
  connect(&notifier_, &QSocketNotifier::activated, this, [this] { Read(); });
  qApp->installEventFilter(this);
}

bool Driver::eventFilter(QObject* watched, QEvent* event) {
  // What a desktop does when a window goes: the one in front now gets the keyboard.
  if (event->type() == QEvent::Hide && watched->isWindowType()) {
    QTimer::singleShot(0, this, [] {
      if (QWidget* front = WindowInFront()) front->activateWindow();
    });
  }
  return false;
}

void Driver::Read() {
  // A user's input would have to wait too.
  if (qApp->property(tarnlink::kInputKeptBack).toBool()) {
    notifier_.setEnabled(false);
    QTimer::singleShot(1, this, [this] { notifier_.setEnabled(true); });
    return;
  }
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
    last_command_ = line;
    QString answer = Obey(line);
    answer.replace("\r", "\\r").replace("\n", "\\n");
    std::printf("@%s\n", answer.toUtf8().constData());
    std::fflush(stdout);
  }
}

void Driver::TellWaiting(double milliseconds, const std::string& account) const {
  std::printf("!the window did not answer for %.0f ms (%s), some time after: %s\n", milliseconds,
              account.c_str(), last_command_.toUtf8().constData());
  std::fflush(stdout);
}

QString Driver::Obey(const QString& line) {
  const QString verb = line.section(' ', 0, 0);
  const QString rest = line.section(' ', 1);
  if (verb == "press") return Press(rest);
  if (verb == "text") return Property(rest, "text");
  if (verb == "enabled") return Property(rest, "enabled");
  if (verb == "title") return Property(rest, "windowTitle");
  if (verb == "get") return Property(rest.section(' ', 0, 0), rest.section(' ', 1).toUtf8());
  if (verb == "modal") return Modal();
  if (verb == "click") return Click(rest);
  if (verb == "close") return Close();
  if (verb == "mouse") return Mouse(rest, 1);
  if (verb == "twice") return Mouse(rest, 2);
  if (verb == "key") return Key(rest);
  if (verb == "keys") return Keys(rest);
  if (verb == "items") return Items(rest);
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

QString Driver::Property(const QString& name, const QByteArray& property) {
  const QObject* object = Find(name);
  if (object == nullptr) return "no such: " + name;
  const bool is_box_text = property == "text" && qobject_cast<const QComboBox*>(object) != nullptr;
  return object->property(is_box_text ? "currentText" : property.constData()).toString();
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
    if (!button->isEnabled()) return "disabled: " + text;
    QTimer::singleShot(0, button, [button] { button->click(); });
    return "ok";
  }
  return "no such: " + text;
}

// What the desktop does at the cross of the window that is left to the user.
QString Driver::Close() {
  QWidget* front = WindowInFront();
  if (front == nullptr) return "none";
  QTimer::singleShot(0, front, [front] { front->close(); });
  return "ok";
}

// Mouse and keys come as from the desktop: Qt itself finds out who gets them, and a window that is
// blocked by a dialog gets none. Each comes through the event loop, in the order of the commands.
QString Driver::Mouse(const QString& target, int clicks) {
  const auto [widget, place] = PlaceOf(target);
  if (widget == nullptr) return "no such: " + target;
  if (!widget->isVisible() || !widget->visibleRegion().contains(place)) {
    return "not shown: " + target;
  }
  QWidget* top = widget->window();
  QWindow* window = top->windowHandle();
  if (IsBlocked(top)) return "blocked: " + target;
  const QPointF local = widget->mapTo(top, QPointF(place));
  mouse_time_ += 2 * QGuiApplication::styleHints()->mouseDoubleClickInterval();
  for (int i = 0; i < clicks; ++i) {
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
      const auto buttons = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
      QTimer::singleShot(0, window, [window, local, buttons, type, time = ++mouse_time_] {
        qt_handleMouseEvent(window, local, window->mapToGlobal(local), buttons, Qt::LeftButton,
                            type, Qt::NoModifier, time);
      });
    }
  }
  return "ok";
}

QString Driver::Key(const QString& name) {
  const QKeySequence keys = QKeySequence::fromString(name);
  if (keys.count() != 1 || keys[0].key() == Qt::Key_unknown) return "no such key: " + name;
  if (KeyboardWindow() == nullptr) return kNoKeyboard;
  SendKey(keys[0].key(), keys[0].keyboardModifiers(), {});
  return "ok";
}

QString Driver::Keys(const QString& text) {
  if (KeyboardWindow() == nullptr) return kNoKeyboard;
  for (const QChar letter : text) SendKey(letter.toUpper().unicode(), Qt::NoModifier, letter);
  return "ok";
}

// The lines of a tree, depth first, or of a list; of a table with tabs between the cells.
QString Driver::Items(const QString& name) {
  QObject* object = Find(name);
  QStringList lines;
  if (auto* tree = qobject_cast<QTreeWidget*>(object)) {
    for (QTreeWidgetItemIterator item(tree); *item != nullptr; ++item) lines << (*item)->text(0);
  } else if (auto* box = qobject_cast<QComboBox*>(object)) {
    for (int i = 0; i < box->count(); ++i) lines << box->itemText(i);
  } else if (auto* list = qobject_cast<QListWidget*>(object)) {
    for (int i = 0; i < list->count(); ++i) lines << list->item(i)->text();
  } else if (auto* table = qobject_cast<QTableWidget*>(object)) {
    for (int row = 0; row < table->rowCount(); ++row) {
      QStringList cells;
      for (int i = 0; i < table->columnCount(); ++i) cells << table->item(row, i)->text();
      lines << cells.join(QLatin1Char('\t'));
    }
  } else {
    return "no such: " + name;
  }
  return lines.join('|');
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
