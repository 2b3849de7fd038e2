#include "ui/remembered_place.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QStringList>
#include <array>
#include <optional>

#include "platform/qt/qt_text.h"

namespace tarnlink {

namespace {

constexpr const char* kSection = "Places";
constexpr int kHold = 48;      // pixels of a window that one must see to take hold of it
constexpr int kTitleBar = 40;  // pixels: as high as one may be, above the window

struct WindowPlace {
  QRect rect;
  bool maximized = false;
};

// "60,40,500,300" and, for a window that fills the screen, ",maximized".
QString TextOf(const WindowPlace& place) {
  const QRect& rect = place.rect;
  return QStringLiteral("%1,%2,%3,%4%5")
      .arg(rect.x())
      .arg(rect.y())
      .arg(rect.width())
      .arg(rect.height())
      .arg(place.maximized ? QStringLiteral(",maximized") : QString());
}

std::optional<WindowPlace> PlaceOfText(const QString& text) {
  constexpr qsizetype kNumbers = 4;
  constexpr int kFurthest = 100000;
  const QStringList parts = text.split(QLatin1Char(','));
  if (parts.size() < kNumbers) return std::nullopt;
  std::array<int, kNumbers> numbers{};
  for (qsizetype i = 0; i < kNumbers; ++i) {
    bool is_number = false;
    int& number = numbers.at(static_cast<std::size_t>(i));
    number = parts[i].toInt(&is_number);
    if (!is_number || number < -kFurthest || number > kFurthest) return std::nullopt;
  }
  const QRect rect(numbers[0], numbers[1], numbers[2], numbers[3]);
  if (rect.isEmpty()) return std::nullopt;
  return WindowPlace{rect, parts.value(kNumbers) == QLatin1String("maximized")};
}

// As large as `screen` has room for, at the middle of it.
QRect InMiddleOf(const QScreen& screen, const QSize& size) {
  const QRect room = screen.availableGeometry().adjusted(0, kTitleBar, 0, 0);
  QRect place({}, size.boundedTo(room.size()));
  place.moveCenter(room.center());
  return place;
}

// A stored place may belong to a screen that is gone, or was larger.
QRect OnScreen(const QRect& window) {
  for (const QScreen* screen : QGuiApplication::screens()) {
    const QRect room = screen->availableGeometry();
    const QRect seen = room.intersected(window);
    if (seen.width() < kHold || seen.height() < kHold || window.top() < room.top()) continue;
    const bool fits = window.size().boundedTo(room.size()) == window.size();
    return fits ? window : InMiddleOf(*screen, window.size());
  }
  return InMiddleOf(*QGuiApplication::primaryScreen(), window.size());
}

class PlaceKeeper final : public QObject {
 public:
  PlaceKeeper(QWidget* window, SettingsStore& settings)
      : QObject(window), window_(window), settings_(settings), key_(FromQt(window->objectName())) {
    window_->installEventFilter(this);
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    // Those of the desktop come when it is made an icon and back.
    if (!event->spontaneous()) {
      if (event->type() == QEvent::Show) Restore();
      if (event->type() == QEvent::Hide) Store();
    }
    return QObject::eventFilter(watched, event);
  }

 private:
  // A text that is no place changes nothing.
  void Restore() {
    const auto place = PlaceOfText(ToQt(settings_.GetSetting(kSection, key_, "")));
    if (!place || window_->isMaximized()) return;
    window_->setGeometry(OnScreen(place->rect));
    if (place->maximized) window_->setWindowState(Qt::WindowMaximized);
  }
  void Store() {
    const WindowPlace place{window_->normalGeometry(), window_->isMaximized()};
    settings_.SaveSetting(kSection, key_, FromQt(TextOf(place)));
  }

  QWidget* window_;
  SettingsStore& settings_;
  std::string key_;
};

}  // namespace

void RememberPlace(QWidget* window, SettingsStore& settings) { new PlaceKeeper(window, settings); }

}  // namespace tarnlink
