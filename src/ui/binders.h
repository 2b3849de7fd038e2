// Binders keep a Qt widget and its control in step: what the model sets is shown, what the user
// does is reported. The widget gets the control's name as object name. The control outlives the
// widget, and is let go when the widget is destroyed.
#pragma once

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSlider>
#include <QToolButton>
#include <vector>

#include "common/control_array.h"
#include "common/controls.h"
#include "common/dialog_controls.h"
#include "common/scroll_bar.h"
#include "ui/text_plate.h"

namespace tarnlink {

void Bind(QAction* action, MenuEntry& entry);
// For an entry whose caption is a path: its "&" is no mnemonic, and a long one is cut in the
// middle.
void BindPath(QAction* action, MenuEntry& entry);
void Bind(QPushButton* button, CommandButton& control);
void Bind(QCheckBox* box, CheckBox& control);
void Bind(QLineEdit* edit, TextBox& control);
// Its colour is taken as far as it says that the label is grey.
void Bind(QLabel* label, Label& control);
void Bind(QSlider* slider, Slider& control);
void Bind(QScrollBar* bar, ScrollBar& control);
void Bind(QProgressBar* bar, CountBar& control);
void Bind(QComboBox* combo, ComboBox& control);
// Rows that are picked, and a text that is accepted when the user leaves it or presses Enter. Only
// an editable combo takes a text; the text of another one stands in its place while no row is
// picked.
void Bind(QComboBox* combo, PickBox& control);
// The two arrows of a spin button: the upper one, the lower one.
void Bind(QToolButton* up, QToolButton* down, SpinButton& control);
void Bind(TextPlate* plate, StatusPanel& panel);
// A frame around other controls; its title is the widget's own.
void Bind(QGroupBox* frame, Control& control);
// With a title that changes.
void Bind(QGroupBox* frame, GroupBox& control);
// The buttons must have one common parent, in which nothing else is a radio button.
void Bind(const std::vector<QRadioButton*>& buttons, OptionGroup& group);

// What all widgets show of any control: visible, enabled, tool tip.
void ShowCommon(QWidget* widget, const Control& control);

// A tool tip that shows `text` as it is, whatever marks it holds, in lines of a readable length.
QString PlainToolTip(const std::string& text);

}  // namespace tarnlink
