#include "ui/write_parameters_dialog.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/coloured_edit.h"
#include "ui/text_monitor.h"
#include "ui/text_plate.h"

namespace tarnlink {

namespace {

constexpr QSize kMonitor(88, 20);  // letters and lines of the list: a made file's own comments
constexpr int kSlaveWidth = 40;    // pixels: the field's own frame and two digits
constexpr int kBarWidth = 160;     // pixels
constexpr int kStateWidth = 140;   // pixels: "Verifing parameters"

}  // namespace

WriteParametersDialog::WriteParametersDialog(frmWriteParameters& form, SettingsStore& settings,
                                             QWidget* parent)
    : ToolDialog(form.form, parent), form_(form) {
  setWindowTitle(ToQt(form_.caption.Caption.get()));
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(BuildFile());
  layout->addLayout(BuildSlave());
  layout->addWidget(BuildMonitor(), 1);
  layout->addLayout(BuildFoot());
  form_.CopyText = CopyToClipboard;
  Begin(settings);
}

WriteParametersDialog::~WriteParametersDialog() { form_.CopyText = {}; }

void WriteParametersDialog::done(int) { form_.Unload(); }

// Whose values are to be written is the first that is asked; before that, which values.
void WriteParametersDialog::FormChanged() {
  if (isVisible() || !form_.form.Visible) return;
  if (form_.items().empty()) {
    browse_->setFocus();
  } else {
    slave_->setFocus();
  }
}

QLayout* WriteParametersDialog::BuildFile() {
  auto* row = new QHBoxLayout;
  auto* field = new QGridLayout;
  auto* label = new QLabel(tr("&File"), this);
  AddField(*field, 0, 0, label, form_.txtFilename);
  row->addLayout(field, 1);
  browse_ = Button(form_.cmdBrowse, this);
  row->addWidget(browse_);
  return row;
}

QLayout* WriteParametersDialog::BuildSlave() {
  auto* row = new QHBoxLayout;
  auto* frame = new QGroupBox(this);
  Bind(frame, form_.fraSlave);
  frame->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred);
  auto* inside = new QHBoxLayout(frame);
  slave_ = new QLineEdit(frame);
  slave_->setAccessibleName(ToQt(form_.fraSlave.Caption.get()).trimmed());
  slave_->setFixedWidth(kSlaveWidth);
  BindColoured(slave_, form_.txtSlave);
  inside->addWidget(slave_);
  inside->addStretch();
  auto* verify = new QCheckBox(this);
  Bind(verify, form_.chkVerify);
  // On the line of the field, below the frame's title.
  auto* beside = new QVBoxLayout;
  beside->addStretch();
  beside->addWidget(verify);
  const int lower = (slave_->sizeHint().height() - verify->sizeHint().height()) / 2;
  beside->addSpacing(inside->contentsMargins().bottom() + lower);
  row->addWidget(frame);
  row->addLayout(beside);
  row->addStretch(1);
  return row;
}

QWidget* WriteParametersDialog::BuildMonitor() {
  auto* frame = new QGroupBox(this);
  Bind(frame, form_.fraMonitor);
  auto* inside = new QVBoxLayout(frame);
  monitor_ = new TextMonitor(form_.txtScrollStatus, kMonitor, frame);
  monitor_->setAccessibleName(ToQt(form_.fraMonitor.Caption.get()));
  inside->addWidget(monitor_, 1);
  auto* row = new QHBoxLayout;
  auto* bar = new QProgressBar(frame);
  bar->setFixedWidth(kBarWidth);
  bar->setAccessibleName(tr("Progress"));
  Bind(bar, form_.ProgressBar1);
  auto* progress = new QLabel(frame);
  Bind(progress, form_.lblProgress);
  // The list stays as large as it is when the bar comes and goes.
  progress->setMinimumHeight(bar->sizeHint().height());
  row->addWidget(bar);
  row->addWidget(progress, 1);
  inside->addLayout(row);
  return frame;
}

QLayout* WriteParametersDialog::BuildFoot() {
  auto* row = new QHBoxLayout;
  auto* state = new TextPlate(this);
  state->setMinimumWidth(kStateWidth);
  Bind(state, form_.StatusBar1);
  row->addWidget(state);
  row->addStretch();
  QPushButton* copy = Button(form_.cmdCopy, this);
  QPushButton* save = Button(form_.cmdSaveList, this);
  QPushButton* write = Button(form_.cmdWriteZOLT, this);
  for (QPushButton* button : {copy, save, write, Button(form_.cmdCancel, this)}) {
    row->addWidget(button);
  }
  // No other button is pressed by mistake once this one can not be.
  connect(write, &QPushButton::clicked, monitor_, [this] { monitor_->setFocus(); });
  return row;
}

}  // namespace tarnlink
