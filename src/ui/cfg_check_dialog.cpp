#include "ui/cfg_check_dialog.h"

#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/cfg_result_delegate.h"

namespace tarnlink {

namespace {

constexpr QSize kUsual(720, 480);       // pixels
constexpr int kLeastTable = 120;        // pixels
constexpr int kSlaveWidth = 70;         // pixels
constexpr int kSignRoom = 40;           // pixels beside a result
constexpr int kLeastDescription = 110;  // pixels
constexpr int kHeadingAir = 8;          // pixels beside a heading
constexpr int kRowAir = 8;              // pixels above and below a row together

constexpr int kDescriptionColumn = 4;
constexpr int kReadColumn = 6;
constexpr int kResultColumn = 7;

QStringList CellsOf(const std::string& row) { return ToQt(row).split(QLatin1Char('\t')); }

bool IsNumber(int column) {
  return column != 0 && column != kDescriptionColumn && column != kResultColumn;
}

}  // namespace

CfgCheckDialog::CfgCheckDialog(frm_CfgCheck& form, SettingsStore& settings, QWidget* parent)
    : ToolDialog(form.form, parent), form_(form) {
  setWindowTitle(ToQt(form_.caption.Caption.get()));
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(BuildHead());
  BuildTable();
  layout->addWidget(table_, 1);
  layout->addLayout(BuildProgress());
  layout->addLayout(BuildFoot());
  form_.CopyText = CopyToClipboard;
  Begin(settings);
}

CfgCheckDialog::~CfgCheckDialog() {
  form_.CopyText = {};
  form_.ParametersList.SetView({});
}

void CfgCheckDialog::done(int) { form_.Unload(); }

QSize CfgCheckDialog::sizeHint() const { return ToolDialog::sizeHint().expandedTo(kUsual); }

// --- Around the list -----------------------------------------------------------------------------

QLayout* CfgCheckDialog::BuildHead() {
  auto* rows = new QGridLayout;
  auto* file = new QLabel(this);
  Bind(file, form_.lblFile);
  AddField(*rows, 0, 0, file, form_.txt_ConfigurationFile);
  QPushButton* open = Button(form_.cmd_Open, this);
  rows->addWidget(open, 0, 2);
  auto* slave = new QLabel(this);
  Bind(slave, form_.lblSlave);
  auto* slaves = new QComboBox(this);
  slaves->setMaximumWidth(kSlaveWidth);
  Bind(slaves, form_.cmb_Slave);
  slave->setBuddy(slaves);
  rows->addWidget(slave, 1, 0);
  rows->addWidget(slaves, 1, 1);
  open->setFocus();
  return rows;
}

QLayout* CfgCheckDialog::BuildProgress() {
  auto* rows = new QGridLayout;
  auto* bar = new QProgressBar(this);
  bar->setTextVisible(false);
  bar->setAccessibleName(tr("Progress"));
  Bind(bar, form_.ProgressBar1);
  auto* count = new QLabel(this);
  Bind(count, form_.Label6);
  auto* state = new QLabel(this);
  Bind(state, form_.lblState);
  state->setWordWrap(true);
  // So that nothing moves while texts of one line and of two come by turns.
  state->setMinimumHeight(2 * state->fontMetrics().lineSpacing());
  state->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  rows->addWidget(bar, 0, 0);
  rows->addWidget(count, 0, 1);
  rows->addWidget(state, 1, 0, 1, 2);
  return rows;
}

QLayout* CfgCheckDialog::BuildFoot() {
  auto* row = new QHBoxLayout;
  row->addStretch();
  QPushButton* check = Button(form_.cmd_Check, this);
  QPushButton* stop = Button(form_.cmd_Stop, this);
  for (QPushButton* button :
       {check, stop, Button(form_.cmd_Copy, this), Button(form_.cmd_Save, this)}) {
    row->addWidget(button);
  }
  // The one that was pressed cannot be pressed again, and no other one is pressed by mistake.
  connect(check, &QPushButton::clicked, stop, [stop] { stop->setFocus(); });
  connect(stop, &QPushButton::clicked, check, [check] { check->setFocus(); });
  return row;
}

// --- The list ------------------------------------------------------------------------------------

void CfgCheckDialog::BuildTable() {
  table_ = new QTableWidget(this);
  table_->setObjectName(ToQt(form_.ParametersList.name()));
  table_->setAccessibleName(tr("Parameters"));
  const QStringList headings = CellsOf(form_.lblHeading.Caption);
  table_->setColumnCount(static_cast<int>(headings.size()));
  table_->setHorizontalHeaderLabels(headings);
  table_->setItemDelegate(new CfgResultDelegate(table_));
  table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setSelectionMode(QAbstractItemView::SingleSelection);
  table_->setTabKeyNavigation(false);
  table_->setWordWrap(false);
  table_->setMinimumHeight(kLeastTable);
  table_->verticalHeader()->hide();
  QHeaderView* columns = table_->horizontalHeader();
  columns->setHighlightSections(false);
  columns->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  // Not by Qt, which would measure every row again with each answer: the window would not answer.
  columns->setSectionResizeMode(QHeaderView::Fixed);
  columns->setSectionResizeMode(kDescriptionColumn, QHeaderView::Interactive);
  columns->setSectionResizeMode(kResultColumn, QHeaderView::Interactive);
  // What was read stands beside what the file expects, and the result where it is seen on a small
  // screen too.
  columns->moveSection(kReadColumn, kDescriptionColumn);
  columns->moveSection(kResultColumn, kDescriptionColumn + 1);
  for (int column = 0; column < table_->columnCount(); ++column) {
    columns->resizeSection(column, columns->sectionSizeHint(column) + kHeadingAir);
    if (IsNumber(column)) {
      table_->horizontalHeaderItem(column)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    }
  }
  columns->resizeSection(kResultColumn,
                         table_->fontMetrics().horizontalAdvance(kCfgNotChecked) + kSignRoom);
  table_->verticalHeader()->setDefaultSectionSize(table_->fontMetrics().lineSpacing() + kRowAir);
  // Once the header has ended sizing them all: it would go on with widths of before.
  connect(
      columns, &QHeaderView::sectionResized, this,
      [this](int column) {
        if (column != kDescriptionColumn) FitDescription();
      },
      Qt::QueuedConnection);
  table_->viewport()->installEventFilter(this);
  form_.ParametersList.SetView([this] { ShowList(); });
  ShowList();
}

bool CfgCheckDialog::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize) FitDescription();
  return ToolDialog::eventFilter(watched, event);
}

// It takes the room that the other columns leave.
void CfgCheckDialog::FitDescription() {
  QHeaderView* columns = table_->horizontalHeader();
  const int others = columns->length() - columns->sectionSize(kDescriptionColumn);
  const int left = table_->viewport()->width() - others;
  columns->resizeSection(kDescriptionColumn, std::max(left, kLeastDescription));
  // Where all is in sight, a bar would stay that the width before had asked for.
  table_->setHorizontalScrollBarPolicy(left >= kLeastDescription ? Qt::ScrollBarAlwaysOff
                                                                 : Qt::ScrollBarAsNeeded);
}

void CfgCheckDialog::ShowList() {
  const auto& rows = form_.ParametersList.List.get();
  const int count = static_cast<int>(rows.size());
  if (count != table_->rowCount()) {
    table_->setRowCount(0);
    in_work_ = -1;
    table_->setRowCount(count);
  }
  for (int row = 0; row < count; ++row) {
    ShowRow(row, CellsOf(rows[static_cast<std::size_t>(row)]));
  }
  FollowWork();
}

// A column of short texts is as wide as the widest that it has had.
void CfgCheckDialog::MakeRoom(const QTableWidgetItem& item) {
  const int column = item.column();
  if (column == kDescriptionColumn || column == kResultColumn) return;
  constexpr int kGrid = 1;  // pixel
  const int wanted = table_->sizeHintForIndex(table_->indexFromItem(&item)).width() + kGrid;
  QHeaderView* columns = table_->horizontalHeader();
  if (wanted > columns->sectionSize(column)) columns->resizeSection(column, wanted);
}

void CfgCheckDialog::ShowRow(int row, const QStringList& cells) {
  for (int column = 0; column < cells.size(); ++column) {
    QTableWidgetItem* item = table_->item(row, column);
    if (item == nullptr) {
      item = new QTableWidgetItem;
      if (IsNumber(column)) item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
      table_->setItem(row, column, item);
    } else if (item->text() == cells[column]) {
      continue;
    }
    item->setText(cells[column]);
    MakeRoom(*item);
    if (column == kDescriptionColumn) item->setToolTip(PlainToolTip(FromQt(cells[column])));
    if (column == kResultColumn) {
      const CfgVerdict verdict = form_.VerdictAt(static_cast<std::size_t>(row));
      item->setData(CfgResultDelegate::kVerdict, static_cast<int>(verdict));
    }
  }
}

// The row in work stays in view unless the user has scrolled away from it.
void CfgCheckDialog::FollowWork() {
  const int row = form_.ParametersList.InWork;
  if (row == in_work_) return;
  const auto is_seen = [this](int at) {
    return table_->viewport()->rect().intersects(table_->visualItemRect(table_->item(at, 0)));
  };
  const bool follows = in_work_ < 0 || is_seen(in_work_);
  const auto mark = [this](int at, bool is_marked) {
    for (int column = 0; at >= 0 && column < table_->columnCount(); ++column) {
      table_->item(at, column)->setData(CfgResultDelegate::kInWork, is_marked);
      if (is_marked) MakeRoom(*table_->item(at, column));
    }
  };
  mark(in_work_, false);
  mark(row, true);
  in_work_ = row;
  if (row >= 0 && follows) table_->scrollToItem(table_->item(row, 0));
}

}  // namespace tarnlink
