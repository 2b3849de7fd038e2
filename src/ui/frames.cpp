#include "ui/frames.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QRadioButton>
#include <QVBoxLayout>

#include "ui/binders.h"

namespace tarnlink {

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

}  // namespace tarnlink
