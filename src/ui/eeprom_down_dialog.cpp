#include "ui/eeprom_down_dialog.h"

#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/coloured_edit.h"
#include "ui/frames.h"
#include "ui/scrolled_page.h"

namespace tarnlink {

namespace {

constexpr int kPathWidth = 420;      // pixels
constexpr int kProgressWidth = 320;  // pixels
constexpr int kTroubleLines = 2;

}  // namespace

// --- The reading ---------------------------------------------------------------------------------

EepromReadDialog::EepromReadDialog(frm_EEPROMRead_Progress& form, SettingsStore& settings,
                                   QWidget* parent)
    : ToolDialog(form.form, parent), form_(form) {
  setWindowTitle(ToQt(form_.caption.Caption.get()));
  auto* lines = new QVBoxLayout(this);
  auto* item = new QLabel(this);
  Bind(item, form_.lblItem);
  lines->addWidget(item);
  auto* bar = new QProgressBar(this);
  bar->setMinimumWidth(kProgressWidth);
  bar->setAccessibleName(tr("Progress"));
  Bind(bar, form_.ProgressBar1);
  lines->addWidget(bar);
  auto* trouble = new QLabel(this);
  Bind(trouble, form_.lblTrouble);
  trouble->setWordWrap(true);
  trouble->setMinimumHeight(kTroubleLines * trouble->fontMetrics().lineSpacing());
  trouble->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  lines->addWidget(trouble, 1);
  auto* row = new QHBoxLayout;
  row->addStretch();
  row->addWidget(Button(form_.Cancel, this));
  lines->addLayout(row);
  Begin(settings);
}

void EepromReadDialog::done(int) { form_.Cancel.Press(); }

// --- The form ------------------------------------------------------------------------------------

EepromDownDialog::EepromDownDialog(frm_EEPROM_Down& form, SettingsStore& settings, QWidget* parent)
    : ToolDialog(form.form, parent), form_(form) {
  setWindowTitle(ToQt(form_.caption.Caption.get()));
  auto* content = new QWidget;
  auto* parts = new QVBoxLayout(content);
  parts->setContentsMargins(0, 0, 0, 0);
  auto* row = new QHBoxLayout;
  row->addWidget(BuildSlave());
  row->addWidget(BuildDevice());
  row->addWidget(BuildSize());
  row->addStretch();
  parts->addLayout(row);
  parts->addWidget(BuildFile());
  auto* state = new QLabel(content);
  Bind(state, form_.lblState);
  state->setTextFormat(Qt::PlainText);
  state->setWordWrap(true);
  state->setMinimumHeight(kTroubleLines * state->fontMetrics().lineSpacing());
  state->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  parts->addWidget(state, 1);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(new ScrolledPage(content), 1);
  layout->addLayout(BuildFoot());
  Begin(settings);
  // Its window belongs to this one, and comes with the first reading.
  new EepromReadDialog(form_.progress, settings, this);
}

void EepromDownDialog::done(int) { form_.Unload(); }

bool EepromDownDialog::eventFilter(QObject* watched, QEvent* event) {
  const bool is_click = event->type() == QEvent::MouseButtonRelease &&
                        static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton;
  if (!is_click) return ToolDialog::eventFilter(watched, event);
  form_.txt_eepromsourcefile.Click();
  return true;
}

QWidget* EepromDownDialog::BuildSlave() {
  auto* frame = Frame(form_.fraSlave, this);
  auto* inside = new QVBoxLayout(frame);
  auto* list = new QComboBox(frame);
  list->setAccessibleName(ToQt(form_.fraSlave.Caption.get()));
  Bind(list, form_.Slave_address);
  inside->addWidget(list);
  inside->addStretch();
  return frame;
}

QWidget* EepromDownDialog::BuildDevice() {
  QGroupBox* frame = RadioFrame(ToQt(form_.fraDevice.Caption.get()), form_.Option1, 2);
  frame->setParent(this);
  return frame;
}

QWidget* EepromDownDialog::BuildSize() {
  auto* frame = Frame(form_.fraSize, this);
  auto* inside = new QVBoxLayout(frame);
  auto* size = new QLineEdit(frame);
  size->setAccessibleName(ToQt(form_.fraSize.Caption.get()));
  size->setMaximumWidth(size->fontMetrics().averageCharWidth() * 10);
  BindColoured(size, form_.EESize);
  inside->addWidget(size);
  inside->addStretch();
  return frame;
}

QWidget* EepromDownDialog::BuildFile() {
  auto* frame = Frame(form_.fraDestination, this);
  auto* inside = new QHBoxLayout(frame);
  auto* path = new QLineEdit(frame);
  path->setMinimumWidth(kPathWidth);
  path->setAccessibleName(ToQt(form_.fraDestination.Caption.get()));
  path->setCursor(Qt::PointingHandCursor);
  BindColoured(path, form_.txt_eepromsourcefile);
  path->installEventFilter(this);
  inside->addWidget(path, 1);
  // The same for the keyboard.
  auto* browse = new QPushButton(tr("&Browse..."), frame);
  browse->setObjectName(QStringLiteral("cmdBrowse"));
  browse->setAutoDefault(false);
  connect(browse, &QPushButton::clicked, this, [this] { form_.txt_eepromsourcefile.Click(); });
  inside->addWidget(browse);
  return frame;
}

QLayout* EepromDownDialog::BuildFoot() {
  auto* row = new QHBoxLayout;
  row->addStretch();
  row->addWidget(Button(form_.cmd_read_EEPROM, this));
  row->addWidget(Button(form_.cmd_Cancel, this));
  return row;
}

}  // namespace tarnlink
