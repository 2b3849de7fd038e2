// Frames that dialogs are made of.
#pragma once

#include <QGroupBox>
#include <vector>

#include "common/controls.h"

namespace tarnlink {

// A frame with the group's buttons, `columns` of them in a row. Its layout is a grid.
QGroupBox* RadioFrame(const QString& title, OptionGroup& group, int columns);

// A frame with one check box under the other.
QGroupBox* CheckFrame(const QString& title, const std::vector<CheckBox*>& boxes);

}  // namespace tarnlink
