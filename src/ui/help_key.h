// The key F1: the help of whatever window the user is in.
#pragma once

#include <QObject>
#include <functional>
#include <string_view>

class QWidget;

namespace tarnlink {

// The page for a widget: that of the form which it belongs to or, where that has none, as a message
// box, of the one that it stands on. The first page of the help where there is none at all.
std::string_view HelpPageFor(const QWidget* widget);

// While it is there, F1 in any window of the application calls `open` with the page.
class HelpKey final : public QObject {
  Q_OBJECT

 public:
  explicit HelpKey(std::function<void(std::string_view page)> open);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  std::function<void(std::string_view)> open_;
};

}  // namespace tarnlink
