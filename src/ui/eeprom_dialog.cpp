#include "ui/eeprom_dialog.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QToolButton>
#include <QVBoxLayout>

#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/coloured_edit.h"
#include "ui/eeprom_map_view.h"
#include "ui/frames.h"
#include "ui/scrolled_page.h"

namespace tarnlink {

namespace {

constexpr int kSlaveWidth = 40;     // pixels: one letter
constexpr int kChecksumWidth = 90;  // pixels: "&H" and six digits
constexpr int kUsualWidth = 420;    // pixels of the left half: a path, a comment
constexpr int kLeftLines = 2;       // of how it ended
constexpr int kResultLines = 6;     // that can be seen at once

// A line of text that may become long.
QLabel* AddLine(QVBoxLayout& lines, Label& control) {
  auto* label = new QLabel;
  Bind(label, control);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  lines.addWidget(label);
  return label;
}

}  // namespace

EepromDialog::EepromDialog(frm_EEPROM& form, SettingsStore& settings, QWidget* parent)
    : ToolDialog(form.form, parent), form_(form) {
  setWindowTitle(ToQt(form_.caption.Caption.get()));
  auto* content = new QWidget;
  auto* halves = new QHBoxLayout(content);
  halves->setContentsMargins(0, 0, 0, 0);
  auto* left = new QVBoxLayout;
  left->addWidget(BuildSource());
  left->addWidget(BuildOutput());
  left->addWidget(BuildSlave());
  left->addWidget(BuildRun());
  left->addWidget(BuildResults(), 1);
  // Less where the screen has no room for it.
  left->addItem(new QSpacerItem(kUsualWidth, 0, QSizePolicy::Preferred, QSizePolicy::Fixed));
  halves->addLayout(left, 1);
  halves->addWidget(BuildMap());
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(new ScrolledPage(content), 1);
  layout->addLayout(BuildFoot());
  form_.CopyText = CopyToClipboard;
  Begin(settings);
}

EepromDialog::~EepromDialog() {
  form_.CopyText = {};
  form_.lstResults.SetView({});
}

void EepromDialog::done(int) { form_.Unload(); }

void EepromDialog::FormChanged() {
  if (form_.form.Visible && !isVisible()) browse_->setFocus();
}

// --- The source and what is made of it -----------------------------------------------------------

QWidget* EepromDialog::BuildSource() {
  auto* frame = Frame(form_.fra_SourceFile, this);
  auto* lines = new QVBoxLayout(frame);
  auto* row = new QHBoxLayout;
  auto* path = new QLineEdit(frame);
  path->setAccessibleName(ToQt(form_.fra_SourceFile.Caption.get()));
  BindColoured(path, form_.txt_eepromsourcefile);
  row->addWidget(path, 1);
  browse_ = Button(form_.cmd_Browse, frame);
  row->addWidget(browse_);
  lines->addLayout(row);
  row = new QHBoxLayout;
  auto* holds = new QLabel(frame);
  Bind(holds, form_.lblSource);
  holds->setTextFormat(Qt::PlainText);
  holds->setWordWrap(true);
  row->addWidget(holds, 1);
  row->addWidget(Button(form_.cmd_CalcFileChecksum, frame));
  auto* sum = new QLineEdit(frame);
  sum->setFixedWidth(kChecksumWidth);
  sum->setAccessibleName(ToQt(form_.cmd_CalcFileChecksum.Caption.get()));
  BindColoured(sum, form_.txt_FileChecksum);
  row->addWidget(sum);
  lines->addLayout(row);
  return frame;
}

QWidget* EepromDialog::BuildOutput() {
  auto* frame = Frame(form_.fra_Eewrite, this);
  auto* row = new QHBoxLayout(frame);
  for (int i = 0; i <= form_.chkOutputFormat.last(); ++i) {
    auto* box = new QCheckBox(frame);
    Bind(box, form_.chkOutputFormat(i));
    row->addWidget(box);
  }
  row->addStretch();
  row->addWidget(Button(form_.cmd_TarnlinkFile, frame));
  return frame;
}

// --- The slave -----------------------------------------------------------------------------------

QWidget* EepromDialog::BuildSlave() {
  auto* frame = new QGroupBox(tr("EEPROM of the slave"), this);
  auto* lines = new QVBoxLayout(frame);
  auto* row = new QHBoxLayout;
  auto* label = new QLabel(frame);
  Bind(label, form_.lblSlaveAddress);
  auto* slave = new QLineEdit(frame);
  slave->setFixedWidth(kSlaveWidth);
  BindColoured(slave, form_.txt_SlaveAddress);
  label->setBuddy(slave);
  auto* arrows = new QVBoxLayout;
  arrows->setSpacing(0);
  auto* up = new QToolButton(frame);
  auto* down = new QToolButton(frame);
  up->setArrowType(Qt::UpArrow);
  down->setArrowType(Qt::DownArrow);
  Bind(up, down, form_.ud_SlaveAddress);
  up->setAccessibleName(tr("Next slave"));
  down->setAccessibleName(tr("Slave before"));
  for (QToolButton* arrow : {up, down}) {
    arrow->setAutoRepeat(true);
    arrow->setFixedHeight(slave->sizeHint().height() / 2);
    arrows->addWidget(arrow);
  }
  row->addWidget(label);
  row->addWidget(slave);
  row->addLayout(arrows);
  row->addStretch();
  lines->addLayout(row);
  row = new QHBoxLayout;
  row->addStretch();
  for (CommandButton* button : {&form_.cmd_WriteEEPROM, &form_.cmd_VerifyEEPROM, &form_.cmd_Stop}) {
    row->addWidget(Button(*button, frame));
  }
  lines->addLayout(row);
  return frame;
}

// --- The run -------------------------------------------------------------------------------------

QWidget* EepromDialog::BuildRun() {
  auto* run = new QWidget(this);
  auto* lines = new QVBoxLayout(run);
  lines->setContentsMargins(0, 0, 0, 0);
  AddLine(*lines, form_.lblProgress);
  auto* bar = new QProgressBar(run);
  bar->setAccessibleName(tr("Progress"));
  Bind(bar, form_.prgRun);
  lines->addWidget(bar);
  QLabel* left = AddLine(*lines, form_.lblLeft);
  left->setMinimumHeight(kLeftLines * left->fontMetrics().lineSpacing());
  left->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  AddLine(*lines, form_.lblTrouble);
  return run;
}

QWidget* EepromDialog::BuildResults() {
  auto* frame = new QGroupBox(tr("Results"), this);
  auto* lines = new QVBoxLayout(frame);
  results_ = new QListWidget(frame);
  results_->setObjectName(ToQt(form_.lstResults.name()));
  results_->setAccessibleName(tr("Results"));
  results_->setWordWrap(true);
  results_->setMinimumHeight(kResultLines * results_->fontMetrics().lineSpacing());
  lines->addWidget(results_, 1);
  form_.lstResults.SetView([this] { ShowResults(); });
  ShowResults();
  return frame;
}

void EepromDialog::ShowResults() {
  const std::vector<std::string>& rows = form_.lstResults.List;
  const auto shown = [&] { return static_cast<std::size_t>(results_->count()); };
  if (shown() > rows.size()) results_->clear();
  const QScrollBar* bar = results_->verticalScrollBar();
  const bool is_at_end = bar->value() == bar->maximum();
  for (std::size_t i = shown(); i < rows.size(); ++i) results_->addItem(ToQt(rows[i]));
  if (is_at_end) results_->scrollToBottom();
}

QWidget* EepromDialog::BuildMap() {
  auto* frame = new QGroupBox(tr("Image, 16 bytes a row"), this);
  auto* lines = new QVBoxLayout(frame);
  auto* view = new EepromMapView(form_.picMap, frame);
  view->setMinimumWidth(view->sizeHint().width());
  lines->addWidget(view, 1);
  lines->addWidget(MakeMapLegend(frame));
  return frame;
}

QLayout* EepromDialog::BuildFoot() {
  auto* row = new QHBoxLayout;
  row->addWidget(Button(form_.cmdCopyResults, this));
  row->addWidget(Button(form_.cmdSaveResults, this));
  row->addStretch();
  row->addWidget(Button(form_.cmd_Cancel, this));
  return row;
}

}  // namespace tarnlink
