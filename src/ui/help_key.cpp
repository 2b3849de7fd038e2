#include "ui/help_key.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>
#include <utility>

#include "monitor/help_chapters.h"

namespace tarnlink {
namespace {

// Who sees the first steps asks about them, also with the keyboard elsewhere in the window.
bool ShowsFirstSteps(const QWidget& widget) {
  const auto* steps = widget.findChild<QWidget*>(QStringLiteral("frm_FirstSteps"));
  return steps != nullptr && steps->isVisible() && steps->window() == &widget;
}

}  // namespace

std::string_view HelpPageFor(const QWidget* widget) {
  for (; widget != nullptr; widget = widget->parentWidget()) {
    const std::string_view page = HelpPageOf(widget->objectName().toStdString());
    if (!page.empty()) return ShowsFirstSteps(*widget) ? kHelpStart : page;
  }
  return kHelpStart;
}

HelpKey::HelpKey(std::function<void(std::string_view page)> open) : open_(std::move(open)) {
  QCoreApplication::instance()->installEventFilter(this);
}

bool HelpKey::eventFilter(QObject* watched, QEvent* event) {
  // The window's own event comes first and is no widget's: what it would reach counts.
  if (event->type() != QEvent::KeyPress || !watched->isWidgetType()) return false;
  const auto* key = static_cast<const QKeyEvent*>(event);
  if (key->key() != Qt::Key_F1 || key->modifiers() != Qt::NoModifier) return false;
  // The desktop needs a moment to show the page, in which a key that is held comes again.
  if (!key->isAutoRepeat()) open_(HelpPageFor(static_cast<const QWidget*>(watched)));
  return true;
}

}  // namespace tarnlink
