#include "ui/tool_dialog.h"

#include <QClipboard>
#include <QGridLayout>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>

#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/coloured_edit.h"
#include "ui/mnemonics.h"
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
  GiveMnemonics(this);
  control_.SetView([this] { ShowForm(); });
  ShowForm();
}

void ToolDialog::ShowForm() {
  FormChanged();
  if (control_.Visible != isVisible()) setVisible(control_.Visible);
}

QPushButton* ToolDialog::Button(CommandButton& control, QWidget* parent) {
  auto* button = new QPushButton(parent);
  Bind(button, control);
  button->setAutoDefault(false);
  return button;
}

void ToolDialog::CopyToClipboard(const std::string& text) {
  QGuiApplication::clipboard()->setText(ToQt(text).remove('\r'));
}

QLineEdit* ToolDialog::AddField(QGridLayout& rows, int row, int column, QLabel* label,
                                TextBox& text) {
  auto* edit = new QLineEdit(label->parentWidget());
  BindColoured(edit, text);
  label->setBuddy(edit);
  rows.addWidget(label, row, column);
  rows.addWidget(edit, row, column + 1);
  return edit;
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
