#include "ui/multiple_registers_dialog.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>

#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/mnemonics.h"

namespace tarnlink {

namespace {

constexpr int kNameWidth = 160;    // pixels
constexpr int kSheetHeight = 240;  // pixels: more lines are scrolled

}  // namespace

MultipleRegistersDialog::MultipleRegistersDialog(frm_multiple_reg& form, QWidget* parent)
    : QDialog(parent), form_(form) {
  setObjectName(ToQt(form_.form.name()));
  setWindowTitle(ToQt(form_.caption.Caption.get()));
  setModal(true);
  auto* frame = new QGroupBox(tr("Format"), this);
  auto* formats = new QHBoxLayout(frame);
  std::vector<QRadioButton*> buttons;
  for (int i = 0; i < form_.Option_multiplereg.count(); ++i) {
    buttons.push_back(new QRadioButton(frame));
    formats->addWidget(buttons.back());
  }
  formats->addStretch();
  Bind(buttons, form_.Option_multiplereg);
  sheet_ = new QWidget;
  lines_ = new QGridLayout(sheet_);
  lines_->setColumnMinimumWidth(0, kNameWidth);
  lines_->setColumnStretch(1, 1);
  lines_->setRowStretch(kRegisterLines + 1, 1);
  auto* scrolled = new QScrollArea(this);
  scrolled->setWidget(sheet_);
  scrolled->setWidgetResizable(true);
  scrolled->setMinimumHeight(kSheetHeight);
  scrolled->setFocusPolicy(Qt::NoFocus);
  auto* note = new QLabel(tr("The values are read as decimal numbers."), this);
  store_ = new QPushButton(this);
  Bind(store_, form_.Command1);
  store_->setDefault(true);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(frame);
  layout->addWidget(scrolled, 1);
  layout->addWidget(note);
  layout->addWidget(store_, 0, Qt::AlignRight);
  for (int k = 1; k <= kRegisterLines; ++k) {
    if (form_.Space.Has(k)) AddName(k);
    if (form_.value.Has(k)) AddValue(k);
  }
  form_.Space.Loaded = [this](int k) { AddName(k); };
  form_.value.Loaded = [this](int k) { AddValue(k); };
  form_.Space.Unloading = [this](int k) { Remove(form_.Space(k).name()); };
  form_.value.Unloading = [this](int k) { Remove(form_.value(k).name()); };
  form_.form.SetView([this] { ShowForm(); });
  GiveMnemonics(this);
  ShowForm();
}

MultipleRegistersDialog::~MultipleRegistersDialog() {
  form_.form.SetView({});
  form_.Space.Loaded = form_.Space.Unloading = {};
  form_.value.Loaded = form_.value.Unloading = {};
}

// Escape and the frame's close button store nothing.
void MultipleRegistersDialog::reject() { form_.Dismiss(); }

void MultipleRegistersDialog::ShowForm() {
  setVisible(form_.form.Visible);
  if (!form_.form.Visible) return;
  OrderTabs();
  auto* first = findChild<QLineEdit*>(ToQt(MemberName("value", 1)));
  if (first == nullptr) return;
  first->setFocus(Qt::OtherFocusReason);
  first->selectAll();
}

// The lines were made after the button that stands below them.
void MultipleRegistersDialog::OrderTabs() {
  QWidget* before = nullptr;
  for (int k = 1; k <= form_.NumReg_frm; ++k) {
    auto* box = findChild<QLineEdit*>(ToQt(MemberName("value", k)));
    if (before != nullptr) setTabOrder(before, box);
    before = box;
  }
  if (before != nullptr) setTabOrder(before, store_);
}

void MultipleRegistersDialog::AddName(int k) {
  auto* name = new QLabel(sheet_);
  Bind(name, form_.Space(k));
  lines_->addWidget(name, k, 0);
}

void MultipleRegistersDialog::AddValue(int k) {
  auto* box = new QLineEdit(sheet_);
  Bind(box, form_.value(k));
  // The name comes with the texts of the line, after the box.
  box->setAccessibleName(ToQt(form_.Space.Has(k) ? form_.Space(k).Caption.get() : std::string()));
  lines_->addWidget(box, k, 1);
}

// At once, so that a line made anew is the only one of its name.
void MultipleRegistersDialog::Remove(const std::string& name) {
  delete sheet_->findChild<QWidget*>(ToQt(name));
}

}  // namespace tarnlink
