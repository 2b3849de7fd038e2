#include "ui/scrolled_page.h"

#include <QEvent>
#include <QScrollBar>

namespace tarnlink {

ScrolledPage::ScrolledPage(QWidget* content) {
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setWidget(content);
  // The ground is that of what it stands on, such as a tab.
  viewport()->setAutoFillBackground(false);
  content->setAutoFillBackground(false);
  for (QScrollBar* bar : {horizontalScrollBar(), verticalScrollBar()}) {
    connect(bar, &QScrollBar::rangeChanged, this, [this] { ShowWhetherTabComes(); });
  }
  ShowWhetherTabComes();
}

QSize ScrolledPage::sizeHint() const {
  return widget()->sizeHint().expandedTo(widget()->minimumSizeHint());
}

bool ScrolledPage::eventFilter(QObject* watched, QEvent* event) {
  if (watched == widget() && event->type() == QEvent::LayoutRequest) updateGeometry();
  return QScrollArea::eventFilter(watched, event);
}

// The keyboard needs it only to scroll.
void ScrolledPage::ShowWhetherTabComes() {
  const bool scrolls = horizontalScrollBar()->maximum() > 0 || verticalScrollBar()->maximum() > 0;
  setFocusPolicy(scrolls ? Qt::StrongFocus : Qt::NoFocus);
}

}  // namespace tarnlink
