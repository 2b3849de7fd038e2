#include "ui/write_value_dialog.h"

#include <QFocusEvent>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/frames.h"
#include "ui/mnemonics.h"

namespace tarnlink {

namespace {

constexpr int kCountWidth = 60;    // pixels: room for a number of registers
constexpr int kDialogWidth = 420;  // pixels: room for the name of a Location in the title

}  // namespace

WriteValueDialog::WriteValueDialog(frm_WriteValue& form, QWidget* parent)
    : QDialog(parent), form_(form) {
  setObjectName(ToQt(form_.form.name()));
  setModal(true);
  setMinimumWidth(kDialogWidth);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(BuildValue());
  layout->addWidget(BuildFormats());
  layout->addWidget(BuildBlock());
  layout->addStretch();
  layout->addWidget(BuildButtons());
  form_.caption.SetView([this] { setWindowTitle(ToQt(form_.caption.Caption.get())); });
  form_.SetFocus = [this] {
    value_->setFocus(Qt::OtherFocusReason);
    value_->selectAll();
  };
  form_.form.SetView([this] { ShowForm(); });
  setWindowTitle(ToQt(form_.caption.Caption.get()));
  GiveMnemonics(this);
  ShowForm();
}

WriteValueDialog::~WriteValueDialog() {
  form_.form.SetView({});
  form_.caption.SetView({});
  form_.SetFocus = {};
}

// Escape and the frame's close button are "Write Cancel".
void WriteValueDialog::reject() { form_.cmd_WriteCancel.Press(); }

// Focus by a click selects the whole text as any other focus does. The press itself would undo
// that, so it is done at the release, unless the mouse has selected a part.
bool WriteValueDialog::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn) {
    clicked_into_value_ =
        static_cast<QFocusEvent*>(event)->reason() == Qt::FocusReason::MouseFocusReason;
  } else if (event->type() == QEvent::MouseButtonRelease && clicked_into_value_) {
    clicked_into_value_ = false;
    if (!value_->hasSelectedText()) value_->selectAll();
  }
  return QDialog::eventFilter(watched, event);
}

void WriteValueDialog::ShowForm() {
  setVisible(form_.form.Visible);
  if (form_.form.Visible) form_.SetFocus();
}

QWidget* WriteValueDialog::BuildValue() {
  auto* rows = new QWidget(this);
  auto* layout = new QVBoxLayout(rows);
  layout->setContentsMargins(0, 0, 0, 0);
  value_ = new QLineEdit(rows);
  Bind(value_, form_.txt_WriteValue);
  value_->installEventFilter(this);
  value_->setAccessibleName(tr("Value"));
  auto* label = new QLabel(tr("&Value"), rows);
  label->setBuddy(value_);
  auto* goes_out = new QLabel(rows);
  goes_out->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  goes_out->setWordWrap(true);
  Bind(goes_out, form_.lbl_GoesOut);
  layout->addWidget(label);
  layout->addWidget(value_);
  layout->addWidget(goes_out);
  return rows;
}

QGroupBox* WriteValueDialog::BuildFormats() {
  auto* frame = new QGroupBox(tr("Format"), this);
  auto* layout = new QHBoxLayout(frame);
  QSizePolicy kept_frame = frame->sizePolicy();
  kept_frame.setRetainSizeWhenHidden(true);
  frame->setSizePolicy(kept_frame);
  formats_ = frame;
  std::vector<QRadioButton*> buttons;
  for (int i = 0; i < form_.opt_WriteValueFormat.count(); ++i) {
    buttons.push_back(new QRadioButton(frame));
    QSizePolicy kept = buttons.back()->sizePolicy();
    kept.setRetainSizeWhenHidden(true);
    buttons.back()->setSizePolicy(kept);
    layout->addWidget(buttons.back());
  }
  layout->addStretch();
  Bind(buttons, form_.opt_WriteValueFormat);
  return frame;
}

QGroupBox* WriteValueDialog::BuildBlock() {
  auto* frame = new QGroupBox(tr("ModBus"), this);
  auto* layout = new QVBoxLayout(frame);
  auto* choice = new QHBoxLayout;
  std::vector<QRadioButton*> buttons;
  for (int i = 0; i < form_.Option1.count(); ++i) {
    buttons.push_back(new QRadioButton(frame));
    choice->addWidget(buttons.back());
  }
  choice->addStretch();
  Bind(buttons, form_.Option1);
  // Without its buttons the frame of the formats would stand empty.
  connect(buttons.at(kMultipleWrite), &QRadioButton::toggled, formats_,
          [this](bool multiple) { formats_->setVisible(!multiple); });
  auto* row = new QHBoxLayout;
  count_label_ = new QLabel(frame);
  Bind(count_label_, form_.Label3);
  auto* count = new QLineEdit(frame);
  Bind(count, form_.Text1);
  count->setAccessibleName(count_label_->text());
  count->setMaximumWidth(kCountWidth);
  auto* values = new QPushButton(frame);
  Bind(values, form_.Values);
  values->setAutoDefault(false);
  row->addWidget(count_label_);
  row->addWidget(count);
  row->addWidget(values);
  row->addStretch();
  layout->addLayout(choice);
  layout->addLayout(row);
  return frame;
}

QWidget* WriteValueDialog::BuildButtons() {
  return OkCancelRow(this, form_.cmd_WriteOk, form_.cmd_WriteCancel);
}

}  // namespace tarnlink
