#include "ui/scan_slaves_dialog.h"

#include <QClipboard>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <array>

#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/coloured_edit.h"

namespace tarnlink {

namespace {

constexpr int kRowGap = 1;  // pixels between two slaves
constexpr int kHeadingLines = 2;

// Of the fields of a row, in pixels.
constexpr std::array<int, 5> kWidths = {60, 190, 130, 130, 130};

}  // namespace

ScanSlavesDialog::ScanSlavesDialog(frm_ScanSlaves& form, QWidget* parent)
    : QDialog(parent), form_(form) {
  setObjectName(ToQt(form_.form.name()));
  setWindowTitle(ToQt(form_.caption.Caption.get()));
  setModal(true);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(BuildTable());
  layout->addWidget(BuildFoot());
  form_.CopyText = [](const std::string& text) {
    QGuiApplication::clipboard()->setText(ToQt(text));
  };
  form_.form.SetView([this] { ShowForm(); });
  ShowForm();
}

ScanSlavesDialog::~ScanSlavesDialog() {
  form_.form.SetView({});
  form_.CopyText = {};
}

void ScanSlavesDialog::done(int) { form_.Unload(); }

void ScanSlavesDialog::ShowForm() {
  if (form_.form.Visible != isVisible()) setVisible(form_.form.Visible);
}

QWidget* ScanSlavesDialog::BuildTable() {
  auto* table = new QWidget(this);
  auto* rows = new QGridLayout(table);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setVerticalSpacing(kRowGap);
  const std::array<FixedArray<ArrayText>*, 5> columns = {
      &form_.txtAddress, &form_.txtType, &form_.txtLuP, &form_.txtHuP, &form_.txtEEPROM};
  for (std::size_t column = 0; column < columns.size(); ++column) {
    auto* heading = new QLabel(table);
    Bind(heading, form_.lblHeading(static_cast<int>(column)));
    heading->setWordWrap(true);
    heading->setMinimumHeight(kHeadingLines * heading->fontMetrics().lineSpacing());
    heading->setAlignment(Qt::AlignLeft | Qt::AlignBottom);
    rows->addWidget(heading, 0, static_cast<int>(column));
  }
  for (int row = 0; row < frm_ScanSlaves::kAddresses; ++row) {
    for (std::size_t column = 0; column < columns.size(); ++column) {
      auto* field = new QLineEdit(table);
      field->setReadOnly(true);
      field->setMinimumWidth(kWidths.at(column));
      field->setAccessibleName(ToQt(form_.lblHeading(static_cast<int>(column)).Caption.get()));
      BindColoured(field, (*columns.at(column))(row));
      rows->addWidget(field, row + 1, static_cast<int>(column));
    }
    auto* details = new QPushButton(table);
    Bind(details, form_.cmdControlPanel(row));
    details->setAutoDefault(false);
    rows->addWidget(details, row + 1, static_cast<int>(columns.size()));
  }
  rows->setColumnStretch(1, 1);
  return table;
}

QWidget* ScanSlavesDialog::BuildFoot() {
  auto* foot = new QWidget(this);
  auto* row = new QHBoxLayout(foot);
  row->setContentsMargins(0, 0, 0, 0);
  auto* state = new QLabel(foot);
  Bind(state, form_.lblState);
  row->addWidget(state, 1);
  for (CommandButton* control : {&form_.cmdStart, &form_.cmdStop, &form_.cmdCopy}) {
    auto* button = new QPushButton(foot);
    Bind(button, *control);
    button->setAutoDefault(false);
    row->addWidget(button);
  }
  return foot;
}

}  // namespace tarnlink
