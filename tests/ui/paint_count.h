// Which widgets are painted.
#pragma once

#include <QApplication>
#include <QWidget>
#include <functional>
#include <map>
#include <string>

namespace tarnlink {

// Counts the paint events of every widget, by its object name, while this lives.
class PaintCount final : public QObject {
 public:
  PaintCount() { qApp->installEventFilter(this); }

  // Whether a paint that begins now is one of those; where not set, each is.
  std::function<bool()> Counts;

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint && watched->isWidgetType() && (!Counts || Counts())) {
      ++painted_[watched->objectName().toStdString()];
    }
    return false;
  }

  int Of(const std::string& name) const {
    const auto found = painted_.find(name);
    return found == painted_.end() ? 0 : found->second;
  }

  // The names, each once, in the order of their letters: "a b ".
  std::string Painted() const {
    std::string names;
    for (const auto& [name, times] : painted_) names += name + " ";
    return names;
  }

 private:
  std::map<std::string, int> painted_;
};

}  // namespace tarnlink
