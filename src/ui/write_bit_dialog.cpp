#include "ui/write_bit_dialog.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/mnemonics.h"

namespace tarnlink {

namespace {

constexpr int kDialogWidth = 340;  // pixels: room for the name of a Location in the title

}  // namespace

WriteBitDialog::WriteBitDialog(frm_WriteBitValue& form, QWidget* parent)
    : QDialog(parent), form_(form) {
  setObjectName(ToQt(form_.form.name()));
  setModal(true);
  setMinimumWidth(kDialogWidth);
  auto* frame = new QGroupBox(tr("Set Bit Value to"), this);
  auto* choices = new QVBoxLayout(frame);
  true_ = BuildChoice(form_.opt_writetrue, true, frame);
  false_ = BuildChoice(form_.Option1, false, frame);
  choices->addWidget(true_);
  choices->addWidget(false_);
  auto* ok = new QPushButton(this);
  Bind(ok, form_.cmd_Ok);
  ok->setDefault(true);
  auto* cancel = new QPushButton(this);
  Bind(cancel, form_.cmd_Cancel);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(ok);
  buttons->addWidget(cancel);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(frame);
  layout->addStretch();
  layout->addLayout(buttons);
  form_.caption.SetView([this] { setWindowTitle(ToQt(form_.caption.Caption.get())); });
  form_.form.SetView([this] { ShowForm(); });
  setWindowTitle(ToQt(form_.caption.Caption.get()));
  GiveMnemonics(this);
  ShowForm();
}

WriteBitDialog::~WriteBitDialog() {
  form_.form.SetView({});
  form_.caption.SetView({});
  form_.opt_writetrue.SetView({});
  form_.Option1.SetView({});
}

// Escape and the frame's close button are "Cancel Write".
void WriteBitDialog::reject() { form_.cmd_Cancel.Press(); }

void WriteBitDialog::ShowForm() {
  setVisible(form_.form.Visible);
  if (form_.form.Visible) (form_.opt_writetrue.Value ? true_ : false_)->setFocus();
}

QRadioButton* WriteBitDialog::BuildChoice(OptionButton& control, bool is_true, QWidget* frame) {
  auto* button = new QRadioButton(ToQt(control.Caption.get()), frame);
  button->setObjectName(ToQt(control.name()));
  // The frame makes the two exclusive; the one that is set takes the other's mark away.
  const auto show = [button, &control] {
    if (control.Value) button->setChecked(true);
  };
  show();
  control.SetView(show);
  connect(button, &QRadioButton::clicked, this, [this, is_true] { form_.Choose(is_true); });
  return button;
}

}  // namespace tarnlink
