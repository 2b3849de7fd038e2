#include "ui/sniff_settings_dialog.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/frames.h"

namespace tarnlink {

namespace {

constexpr int kNumberWidth = 70;  // pixels

}  // namespace

SniffSettingsDialog::SniffSettingsDialog(frm_Sniff_Settings& form, SettingsStore& settings,
                                         QWidget* parent)
    : ToolDialog(form.form, parent), form_(form) {
  setWindowTitle(ToQt(form_.caption.Caption.get()));
  QGroupBox* types = RadioFrame(QString(), form_.opt_sniff_storage_type, 2);
  Bind(types, form_.frm_storage_type);
  QGroupBox* looks = RadioFrame(QString(), form_.opt_Representation, 2);
  Bind(looks, form_.frm_Representation);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(BuildFields());
  layout->addWidget(types);
  layout->addWidget(looks);
  layout->addWidget(BuildLog());
  auto* wrong = new QLabel(this);
  Bind(wrong, form_.lbl_Wrong);
  layout->addWidget(wrong);
  auto* foot = new QHBoxLayout;
  foot->addWidget(Button(form_.cmdDeleteLocation, this));
  foot->addWidget(OkCancelRow(this, form_.cmd_Ok, form_.cmd_Cancel), 1);
  layout->addLayout(foot);
  Begin(settings);
}

void SniffSettingsDialog::done(int) { form_.Close(); }

void SniffSettingsDialog::FormChanged() {
  auto* name = findChild<QLineEdit*>(ToQt(form_.txt_SniffAlias.name()));
  if (form_.form.Visible && !isVisible() && name != nullptr) name->setFocus();
}

QWidget* SniffSettingsDialog::BuildFields() {
  auto* fields = new QWidget(this);
  auto* rows = new QGridLayout(fields);
  rows->setContentsMargins(0, 0, 0, 0);
  const auto add = [&](int row, Label& caption, TextBox& text, bool is_number) {
    auto* label = new QLabel(fields);
    Bind(label, caption);
    QLineEdit* edit = AddField(*rows, row, 0, label, text);
    if (is_number) edit->setMaximumWidth(kNumberWidth);
  };
  add(0, form_.lbl_SniffAlias, form_.txt_SniffAlias, false);
  add(1, form_.lbl_SniffAddress, form_.txt_SniffAddress, true);
  add(2, form_.lbl_SniffBitAddress, form_.txt_SniffBitAddress, true);
  return fields;
}

QWidget* SniffSettingsDialog::BuildLog() {
  auto* parts = new QWidget(this);
  auto* row = new QHBoxLayout(parts);
  row->setContentsMargins(0, 0, 0, 0);
  for (CheckBox* control : {&form_.chk_Log, &form_.chk_UseDDE}) {
    auto* box = new QCheckBox(parts);
    Bind(box, *control);
    row->addWidget(box);
  }
  auto* column = new QLineEdit(parts);
  column->setMaximumWidth(kNumberWidth);
  column->setAccessibleName(tr("Column"));
  Bind(column, form_.txt_ExcelColumn);
  row->addWidget(column);
  auto* arrows = new QVBoxLayout;
  arrows->setSpacing(0);
  auto* up = new QToolButton(parts);
  up->setArrowType(Qt::UpArrow);
  auto* down = new QToolButton(parts);
  down->setArrowType(Qt::DownArrow);
  Bind(up, down, form_.ud_Col);
  up->setAccessibleName(tr("Column up"));
  down->setAccessibleName(tr("Column down"));
  arrows->addWidget(up);
  arrows->addWidget(down);
  row->addLayout(arrows);
  row->addStretch();
  return parts;
}

}  // namespace tarnlink
