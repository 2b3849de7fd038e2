#include "ui/frames.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "ui/binders.h"

namespace tarnlink {

QGroupBox* Frame(GroupBox& control, QWidget* parent) {
  auto* frame = new QGroupBox(parent);
  Bind(frame, control);
  return frame;
}

QGroupBox* RadioFrame(const QString& title, OptionGroup& group, int columns) {
  auto* frame = new QGroupBox(title);
  auto* layout = new QGridLayout(frame);
  std::vector<QRadioButton*> buttons;
  for (int i = 0; i < group.count(); ++i) {
    buttons.push_back(new QRadioButton(frame));
    layout->addWidget(buttons.back(), i / columns, i % columns);
  }
  Bind(buttons, group);
  return frame;
}

QGroupBox* CheckFrame(const QString& title, const std::vector<CheckBox*>& boxes) {
  auto* frame = new QGroupBox(title);
  auto* layout = new QVBoxLayout(frame);
  for (CheckBox* control : boxes) {
    auto* box = new QCheckBox;
    Bind(box, *control);
    layout->addWidget(box);
  }
  return frame;
}

QWidget* Column(const std::vector<QWidget*>& frames) {
  auto* column = new QWidget;
  auto* layout = new QVBoxLayout(column);
  layout->setContentsMargins(0, 0, 0, 0);
  for (QWidget* frame : frames) layout->addWidget(frame);
  layout->addStretch();
  return column;
}

QWidget* OkCancelRow(QWidget* parent, CommandButton& ok, CommandButton& cancel) {
  auto* row = new QWidget(parent);
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addStretch();
  // Only a button that stands in its dialog already becomes the default of it.
  auto* ok_button = new QPushButton(row);
  Bind(ok_button, ok);
  ok_button->setDefault(true);
  auto* cancel_button = new QPushButton(row);
  Bind(cancel_button, cancel);
  layout->addWidget(ok_button);
  layout->addWidget(cancel_button);
  return row;
}

}  // namespace tarnlink
