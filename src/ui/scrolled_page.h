// A part of a window that is scrolled where the screen has no room for all of it.
#pragma once

#include <QScrollArea>

namespace tarnlink {

class ScrolledPage final : public QScrollArea {
 public:
  // Takes `content`, and would be large enough to show all of it.
  explicit ScrolledPage(QWidget* content);

  QSize sizeHint() const override;

 protected:
  // Whatever the content's layout asks for from now on.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void ShowWhetherTabComes();
};

}  // namespace tarnlink
