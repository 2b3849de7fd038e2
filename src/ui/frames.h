// Frames that dialogs are made of.
#pragma once

#include <QGroupBox>
#include <vector>

#include "common/controls.h"
#include "common/dialog_controls.h"

namespace tarnlink {

// An empty frame with the caption of the control.
QGroupBox* Frame(GroupBox& control, QWidget* parent);

// A frame with the group's buttons, `columns` of them in a row. Its layout is a grid.
QGroupBox* RadioFrame(const QString& title, OptionGroup& group, int columns);

// One frame under the other, at the top of the room that they get.
QWidget* Column(const std::vector<QWidget*>& frames);

// The buttons at the foot of a dialog, `ok` its default.
QWidget* OkCancelRow(QWidget* parent, CommandButton& ok, CommandButton& cancel);

// A frame with one check box under the other.
QGroupBox* CheckFrame(const QString& title, const std::vector<CheckBox*>& boxes);

}  // namespace tarnlink
