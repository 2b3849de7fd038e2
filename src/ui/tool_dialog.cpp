#include "ui/tool_dialog.h"

#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>

#include "platform/qt/qt_text.h"
#include "ui/remembered_place.h"

namespace tarnlink {

namespace {

constexpr double kLargestShare = 0.9;  // of the screen that a new dialog takes

}  // namespace

ToolDialog::ToolDialog(Control& form, QWidget* parent) : QDialog(parent), control_(form) {
  setObjectName(ToQt(control_.name()));
  setModal(true);
}

ToolDialog::~ToolDialog() { control_.SetView({}); }

void ToolDialog::Begin(SettingsStore& settings) {
  resize(sizeHint().boundedTo(screen()->availableSize() * kLargestShare));
  RememberPlace(this, settings);
  control_.SetView([this] { ShowForm(); });
  ShowForm();
}

void ToolDialog::ShowForm() {
  FormChanged();
  if (control_.Visible != isVisible()) setVisible(control_.Visible);
}

void ToolDialog::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
    QDialog::keyPressEvent(event);
    return;
  }
  if (event->isAutoRepeat()) return;
  if (auto* button = qobject_cast<QPushButton*>(focusWidget())) {
    button->click();
  } else {
    Enter();
  }
}

}  // namespace tarnlink
