#include "ui/link_panel.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/mnemonics.h"

namespace tarnlink {

namespace {

constexpr int kMargin = 4;    // pixels
constexpr int kRowAir = 4;    // pixels above and below a row together
constexpr int kCellAir = 10;  // pixels beside a text, both sides together
constexpr int kRowsInSight = 4;
constexpr int kSlavesShare = 2;  // of the width, as the ages have 1

QStringList CellsOf(const std::string& row) { return ToQt(row).split(QLatin1Char('\t')); }

// Cells that stay are changed in place, so that nothing flickers and a selection stays. Those of
// the `longest` column may be cut, and have a tip that shows them whole; the first column, which
// says what a row is of, gets the room that it needs.
void Fill(QTableWidget* table, int longest, const std::vector<std::string>& rows) {
  table->setRowCount(static_cast<int>(rows.size()));
  for (int row = 0; row < table->rowCount(); ++row) {
    const QStringList cells = CellsOf(rows[static_cast<std::size_t>(row)]);
    for (int column = 0; column < table->columnCount(); ++column) {
      const QString text = cells.value(column);
      QTableWidgetItem* item = table->item(row, column);
      if (item == nullptr) table->setItem(row, column, item = new QTableWidgetItem);
      if (item->text() == text) continue;
      item->setText(text);
      if (column == 0) {
        const int width = table->fontMetrics().horizontalAdvance(text) + kCellAir;
        table->setColumnWidth(0, std::max(table->columnWidth(0), width));
      }
      if (column == longest) item->setToolTip(PlainToolTip(FromQt(text)));
    }
  }
}

}  // namespace

LinkPanel::LinkPanel(frm_LinkHealth& form, QWidget* parent) : QWidget(parent), form_(form) {
  setObjectName(ToQt(form_.form.name()));
  setAccessibleName(ToQt(form_.caption.Caption.get()));
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, kMargin, 0, kMargin);
  row->addWidget(Table(form_.lblSlaves, form_.lstSlaves, tr("Slaves")), kSlavesShare, Qt::AlignTop);
  row->addWidget(Table(form_.lblAges, form_.lstAges, tr("Ages of the values")), 1, Qt::AlignTop);
  auto* buttons = new QVBoxLayout;
  for (CommandButton* control : {&form_.cmdTrace, &form_.cmdClear}) {
    auto* button = new QPushButton(this);
    Bind(button, *control);
    buttons->addWidget(button);
  }
  buttons->addStretch();
  row->addLayout(buttons);
  form_.form.SetView([this] { ShowForm(); });
  ShowForm();
}

LinkPanel::~LinkPanel() {
  form_.form.SetView({});
  form_.lstSlaves.SetView({});
  form_.lstAges.SetView({});
}

void LinkPanel::ShowForm() {
  setVisible(form_.form.Visible);
  // By itself it knows nothing of the letters of the menus.
  if (window() != this) GiveMnemonics(window());
}

QTableWidget* LinkPanel::Table(Label& headings, ListBox& rows, const QString& name) {
  auto* table = new QTableWidget(this);
  table->setObjectName(ToQt(rows.name()));
  table->setAccessibleName(name);
  // On two lines: a small window has room for all columns.
  QStringList names = CellsOf(headings.Caption);
  for (QString& caption : names) {
    if (const qsizetype blank = caption.indexOf(QLatin1Char(' ')); blank >= 0)
      caption[blank] = QLatin1Char('\n');
  }
  table->setColumnCount(static_cast<int>(names.size()));
  table->setHorizontalHeaderLabels(names);
  table->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table->setSelectionBehavior(QAbstractItemView::SelectRows);
  table->setTabKeyNavigation(false);
  table->setWordWrap(false);
  QHeaderView* lines = table->verticalHeader();
  lines->hide();
  const int height = table->fontMetrics().height() + kRowAir;
  lines->setMinimumSectionSize(height);
  lines->setDefaultSectionSize(height);
  QHeaderView* columns = table->horizontalHeader();
  columns->setHighlightSections(false);
  columns->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  columns->setStretchLastSection(true);
  // Names are as long as they are; numbers are short.
  const auto widest = names.indexOf(tr("Name"));
  for (int column = 0; column < table->columnCount(); ++column) {
    const int width = columns->sectionSizeHint(column);
    table->setColumnWidth(column, width);
  }
  if (widest >= 0) {
    columns->setStretchLastSection(false);
    columns->setSectionResizeMode(static_cast<int>(widest), QHeaderView::Stretch);
    const QString longest = tr("never answered");
    table->setColumnWidth(table->columnCount() - 1,
                          table->fontMetrics().horizontalAdvance(longest) + kCellAir);
  }
  table->setFixedHeight(columns->sizeHint().height() + kRowsInSight * height +
                        2 * table->frameWidth());
  const int longest = widest >= 0 ? static_cast<int>(widest) : table->columnCount() - 1;
  rows.SetView([table, longest, &rows] { Fill(table, longest, rows.List); });
  Fill(table, longest, rows.List);
  return table;
}

}  // namespace tarnlink
