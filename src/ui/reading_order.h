// The order in which people read objects that were laid out freely: line by line, each line from
// the left.
#pragma once

#include <QWidget>
#include <vector>

namespace tarnlink {

// An object whose middle lies above the lower edge of a line's first object belongs to that line.
std::vector<QWidget*> InReadingOrder(std::vector<QWidget*> widgets);

}  // namespace tarnlink
