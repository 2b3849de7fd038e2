#include "ui/link_trace_window.h"

#include <QCheckBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QVBoxLayout>
#include <array>

#include "platform/qt/qt_text.h"
#include "tools/link_meaning.h"
#include "ui/binders.h"

namespace tarnlink {

namespace {

constexpr QSize kUsual(860, 480);  // pixels
constexpr int kLeastTable = 120;   // pixels
constexpr int kRowAir = 4;         // pixels above and below a row together
constexpr int kCellAir = 16;       // pixels beside a text

enum Column : int { kTime, kAfter, kKind, kMeaning, kBytes, kColumns };

// What a column has to have room for.
constexpr std::array<const char*, kColumns> kLongest = {
    "00:00:00.000", "+ 15000.0", "time-out", "slave 15: write class 7, ID FFFF: 0000",
    "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"};

}  // namespace

// --- The rows ------------------------------------------------------------------------------------

TraceModel::TraceModel(TraceRows& rows, QObject* parent)
    : QAbstractTableModel(parent), rows_(rows) {
  rows_.Appending = [this](std::size_t count) {
    const int first = static_cast<int>(rows_.rows().size());
    beginInsertRows({}, first, first + static_cast<int>(count) - 1);
  };
  rows_.Appended = [this] { endInsertRows(); };
  rows_.Dropping = [this](std::size_t count) {
    beginRemoveRows({}, 0, static_cast<int>(count) - 1);
  };
  rows_.Dropped = [this] { endRemoveRows(); };
}

TraceModel::~TraceModel() {
  rows_.Appending = rows_.Dropping = {};
  rows_.Appended = rows_.Dropped = {};
}

int TraceModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.rows().size());
}

int TraceModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumns;
}

QVariant TraceModel::data(const QModelIndex& index, int role) const {
  const bool is_number = index.column() == kAfter;
  if (role == Qt::TextAlignmentRole)
    return static_cast<int>(Qt::AlignVCenter | (is_number ? Qt::AlignRight : Qt::AlignLeft));
  if (role == Qt::FontRole && index.column() == kBytes)
    return QFontDatabase::systemFont(QFontDatabase::FixedFont);
  if (role != Qt::DisplayRole && role != Qt::ToolTipRole) return {};
  const TraceEntry& entry = rows_.rows().at(static_cast<std::size_t>(index.row()));
  switch (index.column()) {
    case kTime:
      return ToQt(TraceTimeText(entry.date));
    case kAfter:
      return ToQt(TraceSinceText(entry));
    case kKind:
      return ToQt(TraceKindText(entry.kind));
    case kBytes:
      return ToQt(BytesInHex(entry.bytes));
    default:
      return ToQt(entry.meaning);
  }
}

QVariant TraceModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  const QStringList names = {tr("Time"), tr("After ms"), tr("Kind"), tr("Meaning"), tr("Bytes")};
  return names.value(section);
}

// --- The window ----------------------------------------------------------------------------------

LinkTraceWindow::LinkTraceWindow(frm_LinkTrace& form, SettingsStore& settings, QWidget* parent)
    : ToolDialog(form.form, parent), form_(form) {
  setWindowTitle(ToQt(form_.caption.Caption.get()));
  setModal(false);
  auto* layout = new QVBoxLayout(this);
  BuildTable();
  layout->addWidget(table_, 1);
  layout->addLayout(BuildFoot());
  form_.CopyText = CopyToClipboard;
  Begin(settings);
}

LinkTraceWindow::~LinkTraceWindow() { form_.CopyText = {}; }

void LinkTraceWindow::done(int) { form_.Unload(); }

QSize LinkTraceWindow::sizeHint() const { return ToolDialog::sizeHint().expandedTo(kUsual); }

void LinkTraceWindow::BuildTable() {
  table_ = new QTableView(this);
  table_->setObjectName(ToQt(form_.Rows.name()));
  table_->setAccessibleName(tr("Frames"));
  table_->setModel(new TraceModel(form_.Rows, table_));
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setTabKeyNavigation(false);
  table_->setWordWrap(false);
  table_->setMinimumHeight(kLeastTable);
  QHeaderView* lines = table_->verticalHeader();
  lines->hide();
  lines->setSectionResizeMode(QHeaderView::Fixed);  // thousands of rows are not measured one by one
  const int height = table_->fontMetrics().height() + kRowAir;
  lines->setMinimumSectionSize(height);
  lines->setDefaultSectionSize(height);
  QHeaderView* columns = table_->horizontalHeader();
  columns->setHighlightSections(false);
  columns->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  columns->setStretchLastSection(true);
  const QFontMetrics letters = table_->fontMetrics();
  const QFontMetrics digits(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  for (int column = 0; column < kColumns; ++column) {
    const QString text = QLatin1String(kLongest.at(static_cast<std::size_t>(column)));
    const QFontMetrics& metrics = column == kBytes ? digits : letters;
    table_->setColumnWidth(column, metrics.horizontalAdvance(text) + kCellAir);
  }
  FollowEnd();
}

void LinkTraceWindow::FollowEnd() {
  QScrollBar* bar = table_->verticalScrollBar();
  // It begins there, with what was recorded before; only whoever scrolls leaves the end.
  connect(bar, &QScrollBar::valueChanged, this,
          [this, bar](int value) { is_at_end_ = value == bar->maximum(); });
  connect(bar, &QScrollBar::rangeChanged, this, [this, bar](int, int last) {
    if (is_at_end_) bar->setValue(last);
  });
}

QLayout* LinkTraceWindow::BuildFoot() {
  auto* row = new QHBoxLayout;
  auto* count = new QLabel(this);
  Bind(count, form_.lblCount);
  row->addWidget(count, 1);
  for (CheckBox* control : {&form_.chkOnlyWrong, &form_.chkHold}) {
    auto* box = new QCheckBox(this);
    Bind(box, *control);
    row->addWidget(box);
  }
  for (CommandButton* control : {&form_.cmdClear, &form_.cmdCopy, &form_.cmdSave})
    row->addWidget(Button(*control, this));
  table_->setFocus();
  return row;
}

}  // namespace tarnlink
