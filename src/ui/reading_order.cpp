#include "ui/reading_order.h"

#include <algorithm>
#include <utility>

namespace tarnlink {

namespace {

bool IsAbove(const QWidget* a, const QWidget* b) {
  return std::pair(a->y(), a->x()) < std::pair(b->y(), b->x());
}

bool IsLeftOf(const QWidget* a, const QWidget* b) {
  return std::pair(a->x(), a->y()) < std::pair(b->x(), b->y());
}

}  // namespace

std::vector<QWidget*> InReadingOrder(std::vector<QWidget*> widgets) {
  std::sort(widgets.begin(), widgets.end(), IsAbove);
  auto line = widgets.begin();
  while (line != widgets.end()) {
    const int lower_edge = (*line)->geometry().bottom();
    const auto next = std::find_if(line, widgets.end(), [lower_edge](const QWidget* widget) {
      return widget->geometry().center().y() > lower_edge;
    });
    std::sort(line, next, IsLeftOf);
    line = next;
  }
  return widgets;
}

}  // namespace tarnlink
