#include "ui/scan_slaves_dialog.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <array>

#include "common/numbers.h"
#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/coloured_edit.h"
#include "ui/scrolled_page.h"

namespace tarnlink {

namespace {

constexpr int kRowGap = 1;  // pixels between two slaves
constexpr int kHeadingLines = 2;

constexpr int kTypeColumn = 1;

// The most and the least of a row's fields, in pixels; that of the type takes what is left.
constexpr std::array<int, 5> kWidths = {84, QWIDGETSIZE_MAX, 124, 124, 124};
constexpr std::array<int, 5> kLeastWidths = {30, 130, 60, 60, 60};

}  // namespace

ScanSlavesDialog::ScanSlavesDialog(frm_ScanSlaves& form, SettingsStore& settings, QWidget* parent)
    : ToolDialog(form.form, parent), form_(form) {
  setWindowTitle(ToQt(form_.caption.Caption.get()));
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(new ScrolledPage(BuildTable()), 1);
  layout->addLayout(BuildFoot());
  form_.CopyText = CopyToClipboard;
  Begin(settings);
}

ScanSlavesDialog::~ScanSlavesDialog() { form_.CopyText = {}; }

void ScanSlavesDialog::done(int) { form_.Unload(); }

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
      field->setMinimumWidth(kLeastWidths.at(column));
      field->setMaximumWidth(kWidths.at(column));
      const std::string& heading = form_.lblHeading(static_cast<int>(column)).Caption;
      field->setAccessibleName(tr("Slave %1, %2").arg(ToQt(Hex(row)), ToQt(heading)));
      BindColoured(field, (*columns.at(column))(row));
      rows->addWidget(field, row + 1, static_cast<int>(column));
    }
    auto* details = Button(form_.cmdControlPanel(row), table);
    details->setAccessibleName(ToQt(form_.cmdControlPanel(row).ToolTipText.get()));
    rows->addWidget(details, row + 1, static_cast<int>(columns.size()));
  }
  rows->setColumnStretch(kTypeColumn, 1);
  rows->setRowStretch(frm_ScanSlaves::kAddresses + 1, 1);
  return table;
}

QLayout* ScanSlavesDialog::BuildFoot() {
  auto* row = new QHBoxLayout;
  auto* state = new QLabel(this);
  Bind(state, form_.lblState);
  state->setWordWrap(true);
  row->addWidget(state, 1);
  QPushButton* start = Button(form_.cmdStart, this);
  QPushButton* stop = Button(form_.cmdStop, this);
  for (QPushButton* button : {start, stop, Button(form_.cmdCopy, this)}) row->addWidget(button);
  // The one that was pressed cannot be pressed again, and no other one is pressed by mistake.
  connect(start, &QPushButton::clicked, stop, [stop] { stop->setFocus(); });
  connect(stop, &QPushButton::clicked, start, [start] { start->setFocus(); });
  // The nearest to begin with: the keyboard comes to the rows after these.
  stop->setFocus();
  return row;
}

}  // namespace tarnlink
