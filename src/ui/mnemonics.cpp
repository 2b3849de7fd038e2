#include "ui/mnemonics.h"

#include <QCoreApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMainWindow>
#include <QMenuBar>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QStackedWidget>
#include <QTabWidget>
#include <QToolButton>
#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

namespace tarnlink {

namespace {

constexpr const char* kHasLetters = "HasLetters";  // of a window
constexpr const char* kDigit = "Digit";            // of an entry

// Something that wants a letter.
struct Place {
  QString caption;
  std::function<void(const QString&)> show;
  const QWidget* page = nullptr;  // of tabs, null outside of them
  bool can_wait = false;          // it is pressed with Enter or Esc
  QChar letter = {};
};

// Where the marked letter stands, -1 for none.
qsizetype MarkIn(const QString& caption) {
  for (qsizetype i = 0; i + 1 < caption.size(); ++i) {
    if (caption[i] != QLatin1Char('&')) continue;
    if (caption[i + 1] != QLatin1Char('&')) return i + 1;
    ++i;
  }
  return -1;
}

QChar LetterOf(const QString& caption) {
  const qsizetype mark = MarkIn(caption);
  return mark < 0 ? QChar() : caption[mark].toUpper();
}

// The places of all letters, those that words begin with first.
std::vector<qsizetype> LettersOf(const QString& caption) {
  std::vector<qsizetype> places;
  for (const bool wanted : {true, false}) {
    for (qsizetype i = 0; i < caption.size(); ++i) {
      const bool begins = i == 0 || !caption[i - 1].isLetterOrNumber();
      if (caption[i].isLetterOrNumber() && begins == wanted) places.push_back(i);
    }
  }
  return places;
}

bool AreSeenTogether(const Place& one, const Place& other) {
  return one.page == nullptr || other.page == nullptr || one.page == other.page;
}

void GiveLetter(std::vector<Place>& places, Place& to) {
  for (const qsizetype at : LettersOf(to.caption)) {
    const QChar letter = to.caption[at].toUpper();
    const bool is_taken = std::any_of(places.begin(), places.end(), [&](const Place& other) {
      return other.letter == letter && AreSeenTogether(to, other);
    });
    if (is_taken) continue;
    to.letter = letter;
    to.show(QString(to.caption).insert(at, QLatin1Char('&')));
    return;
  }
}

// The rows of a list have the same captions again and again: letters would tell none of them apart,
// and would be gone for the rest.
bool IsOfRows(const std::vector<Place>& places, const Place& place) {
  constexpr int kRows = 3;
  const QString caption = WithoutMark(place.caption);
  return std::count_if(places.begin(), places.end(), [&](const Place& other) {
           return WithoutMark(other.caption) == caption && AreSeenTogether(place, other);
         }) >= kRows;
}

// Letters that are there stay, so that each keeps its own when another caption changes.
void GiveLetters(std::vector<Place>& places) {
  for (Place& place : places) place.letter = LetterOf(place.caption);
  std::erase_if(places, [all = places](const Place& one) { return IsOfRows(all, one); });
  for (const bool can_wait : {false, true}) {
    // What is seen on all pages chooses before what is on one.
    for (const bool on_page : {false, true}) {
      for (Place& place : places) {
        const bool is_turn = place.can_wait == can_wait && (place.page != nullptr) == on_page;
        if (is_turn && place.letter.isNull()) GiveLetter(places, place);
      }
    }
  }
}

// --- Menus ---------------------------------------------------------------------------------------

class MenuLetters final : public QObject {
 public:
  explicit MenuLetters(QMenu* menu) : QObject(menu), menu_(menu) {
    menu->installEventFilter(this);
    Give();
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::ActionAdded || event->type() == QEvent::ActionChanged) Give();
    if (event->type() == QEvent::KeyPress && Choose(*static_cast<QKeyEvent*>(event))) return true;
    return QObject::eventFilter(watched, event);
  }

 private:
  void Give() {
    if (is_giving_) return;
    is_giving_ = true;
    std::vector<Place> places;
    for (QAction* entry : menu_->actions()) {
      if (entry->isSeparator() || entry->property(kDigit).isValid()) continue;
      Place place;
      place.caption = entry->text();
      place.show = [entry](const QString& text) { entry->setText(text); };
      places.push_back(std::move(place));
    }
    GiveLetters(places);
    is_giving_ = false;
  }

  // An entry that has a digit.
  bool Choose(const QKeyEvent& key) {
    const bool is_plain = !key.modifiers() || key.modifiers() == Qt::AltModifier ||
                          key.modifiers() == Qt::KeypadModifier;
    if (!is_plain) return false;
    for (QAction* entry : menu_->actions()) {
      const QVariant digit = entry->property(kDigit);
      if (!digit.isValid() || key.key() != Qt::Key_0 + digit.toInt()) continue;
      if (!entry->isVisible() || !entry->isEnabled()) return true;
      menu_->setActiveAction(entry);
      QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
      QCoreApplication::sendEvent(menu_, &enter);
      return true;
    }
    return false;
  }

  QMenu* menu_;
  bool is_giving_ = false;
};

// A digit as a letter would be marked.
QIcon DigitIcon(const QWidget& menu, int digit) {
  constexpr int kSide = 16;  // pixels
  QPixmap picture(QSize(kSide, kSide) * menu.devicePixelRatioF());
  picture.setDevicePixelRatio(menu.devicePixelRatioF());
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  QFont font = menu.font();
  font.setUnderline(true);
  painter.setFont(font);
  painter.setPen(menu.palette().color(QPalette::WindowText));
  painter.drawText(QRect(0, 0, kSide, kSide), Qt::AlignCenter, QString::number(digit));
  return QIcon(picture);
}

// --- Windows -------------------------------------------------------------------------------------

const QWidget* PageOf(const QWidget* widget) {
  for (; widget != nullptr && !widget->isWindow(); widget = widget->parentWidget()) {
    const QWidget* stack = widget->parentWidget();
    const bool is_stack = qobject_cast<const QStackedWidget*>(stack) != nullptr;
    if (is_stack && qobject_cast<const QTabWidget*>(stack->parentWidget()) != nullptr)
      return widget;
  }
  return nullptr;
}

bool IsPressedOtherwise(const QAbstractButton* button) {
  const auto* push = qobject_cast<const QPushButton*>(button);
  const QString caption = WithoutMark(button->text());
  return push != nullptr && (push->isDefault() || caption == QLatin1String("Cancel"));
}

void AddButton(std::vector<Place>& places, QAbstractButton* button) {
  if (button->text().isEmpty() || qobject_cast<QToolButton*>(button) != nullptr) return;
  places.push_back({button->text(), [button](const QString& text) { button->setText(text); },
                    PageOf(button), IsPressedOtherwise(button), QChar()});
}

void AddTabs(std::vector<Place>& places, QTabWidget* tabs) {
  for (int i = 0; i < tabs->count(); ++i) {
    places.push_back({tabs->tabText(i),
                      [tabs, i](const QString& text) { tabs->setTabText(i, text); }, PageOf(tabs),
                      false, QChar()});
  }
}

// The label of a field, and so its letter.
void AddLabel(std::vector<Place>& places, QLabel* label) {
  if (label->text().isEmpty() || label->buddy() == nullptr) return;
  places.push_back({label->text(), [label](const QString& text) { label->setText(text); },
                    PageOf(label), false, QChar()});
}

// The menus of a window are opened with letters, too.
void AddMenus(std::vector<Place>& places, const QWidget* window) {
  const auto* main = qobject_cast<const QMainWindow*>(window);
  if (main == nullptr) return;
  for (QAction* menu : main->menuBar()->actions()) {
    places.push_back({menu->text(), [menu](const QString& text) { menu->setText(text); }, nullptr,
                      false, QChar()});
  }
}

template <class Widget>
void ShowOn(Widget* widget, const QString& caption) {
  if (WithoutMark(widget->text()) == WithoutMark(caption)) return;
  widget->setText(caption);
  if (widget->window()->property(kHasLetters).toBool()) GiveMnemonics(widget->window());
}

}  // namespace

void KeepMnemonics(QMenu* menu) { new MenuLetters(menu); }

void GiveDigit(QMenu* menu, QAction* entry, int digit) {
  entry->setProperty(kDigit, digit);
  entry->setIcon(DigitIcon(*menu, digit));
  entry->setIconVisibleInMenu(true);
}

void GiveMnemonics(QWidget* window) {
  window->setProperty(kHasLetters, true);
  std::vector<Place> places;
  AddMenus(places, window);
  for (QWidget* widget : window->findChildren<QWidget*>()) {
    if (widget->window() != window) continue;
    if (auto* tabs = qobject_cast<QTabWidget*>(widget)) AddTabs(places, tabs);
    if (auto* button = qobject_cast<QAbstractButton*>(widget)) AddButton(places, button);
    if (auto* label = qobject_cast<QLabel*>(widget)) AddLabel(places, label);
  }
  GiveLetters(places);
}

void ShowCaption(QAbstractButton* button, const QString& caption) { ShowOn(button, caption); }
void ShowCaption(QLabel* label, const QString& caption) {
  if (label->buddy() == nullptr) {
    label->setText(caption);
  } else {
    ShowOn(label, caption);
  }
}
void ShowCaption(QAction* entry, const QString& caption) {
  if (WithoutMark(entry->text()) != WithoutMark(caption)) entry->setText(caption);
}

QString WithoutMark(const QString& caption) {
  QString read;
  for (qsizetype i = 0; i < caption.size(); ++i) {
    if (caption[i] == QLatin1Char('&') && i + 1 < caption.size()) ++i;
    read += caption[i];
  }
  return read;
}

}  // namespace tarnlink
