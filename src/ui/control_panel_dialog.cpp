#include "ui/control_panel_dialog.h"

#include <QCheckBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

#include "platform/qt/qt_colour.h"
#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/coloured_edit.h"
#include "ui/mnemonics.h"
#include "ui/palette.h"
#include "ui/scrolled_page.h"

namespace tarnlink {

namespace {

constexpr int kNumberWidth = 80;  // pixels
constexpr int kTextWidth = 220;   // pixels
constexpr int kColumnGap = 24;    // pixels
constexpr int kTabLight = 130;    // % of the window's light

QHBoxLayout* Beside(const std::vector<QWidget*>& parts) {
  auto* row = new QHBoxLayout;
  for (QWidget* part : parts) row->addWidget(part, 0, Qt::AlignTop);
  row->addStretch();
  return row;
}

}  // namespace

ControlPanelDialog::ControlPanelDialog(frm_ContPanel& form, SettingsStore& settings,
                                       QWidget* parent)
    : ToolDialog(form.form, parent), form_(form), tabs_(new QTabWidget(this)) {
  BuildTabs();
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(tabs_, 1);
  layout->addLayout(BuildFoot());
  form_.lblSlave.SetView([this] { ShowSlave(); });
  ShowSlave();
  form_.caption.SetView([this] { setWindowTitle(ToQt(form_.caption.Caption.get())); });
  setWindowTitle(ToQt(form_.caption.Caption.get()));
  Begin(settings);
}

ControlPanelDialog::~ControlPanelDialog() {
  form_.caption.SetView({});
  form_.SSTab1.SetView({});
  form_.lblSlave.SetView({});
}

void ControlPanelDialog::done(int) { form_.Unload(); }

void ControlPanelDialog::FormChanged() {
  if (form_.form.MousePointer == PointerForm::kDefaultPointer) {
    unsetCursor();
  } else {
    setCursor(Qt::WaitCursor);
  }
}

void ControlPanelDialog::changeEvent(QEvent* event) {
  ToolDialog::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) ShowSlave();
}

QLayout* ControlPanelDialog::BuildFoot() {
  auto* foot = new QHBoxLayout;
  auto* continuous = new QCheckBox(this);
  Bind(continuous, form_.chkContinuousUpdate);
  foot->addWidget(continuous);
  auto* line = new QLabel(this);
  Bind(line, form_.lblLine);
  line->setWordWrap(true);
  foot->addWidget(line, 1);
  auto* close = new QPushButton(tr("&Close"), this);
  close->setObjectName(QStringLiteral("cmdClose"));
  close->setAutoDefault(false);
  connect(close, &QPushButton::clicked, this, [this] { done(Accepted); });
  foot->addWidget(close);
  return foot;
}

// --- Tabs ----------------------------------------------------------------------------------------

void ControlPanelDialog::BuildTabs() {
  tabs_->setObjectName(ToQt(form_.SSTab1.name()));
  for (const PanelTab& tab : PanelTabs()) tabs_->addTab(Parts(tab.name), ToQt(tab.caption));
  connect(tabs_, &QTabWidget::currentChanged, this, [this](int tab) { form_.SSTab1.Tab = tab; });
  form_.SSTab1.SetView([this] { tabs_->setCurrentIndex(form_.SSTab1.Tab); });
}

QWidget* ControlPanelDialog::Parts(PanelTabName tab) {
  switch (tab) {
    case PanelTabName::kStatus:
      return StatusTab();
    case PanelTabName::kConfig:
      return ConfigTab();
    case PanelTabName::kSensors:
      return SensorTab();
    case PanelTabName::kErrors:
      return ErrorTab();
    default:
      return StatisticsTab();
  }
}

QWidget* ControlPanelDialog::StatusTab() {
  auto* parts = new QVBoxLayout;
  auto* right = new QWidget;
  auto* column = new QVBoxLayout(right);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(Flame());
  column->addWidget(Acknowledge());
  parts->addLayout(Beside({Bits(form_.chk_StatusH), Bits(form_.chk_StatusL), right}));
  parts->addWidget(Versions());
  return Page(parts, form_.cmdUpdateStatus);
}

QWidget* ControlPanelDialog::ConfigTab() {
  auto* parts = new QVBoxLayout;
  parts->addLayout(Beside({Bits(form_.chk_configL), Bits(form_.chk_configH)}));
  QGroupBox* safety = Frame(form_.fraSafety);
  auto* rows = new QGridLayout(safety);
  constexpr int kRows = 4;
  for (int i = 0; i <= form_.txtSafety.last(); ++i) {
    AddText(*rows, i % kRows, form_.txtSafety(i), i / kRows * 2);
  }
  parts->addWidget(safety, 0, Qt::AlignLeft);
  return Page(parts, form_.cmdUpdateConfig);
}

QWidget* ControlPanelDialog::SensorTab() {
  auto* rows = new QGridLayout;
  for (int i = 0; i <= form_.lblSensorColumn.last(); ++i) {
    auto* heading = new QLabel;
    Bind(heading, form_.lblSensorColumn(i));
    rows->addWidget(heading, 0, i + 1);
  }
  int row = 1;
  for (SensorBoxes& sensor : form_.sensors) {
    auto* label = new QLabel;
    Bind(label, sensor.label);
    rows->addWidget(label, row, 0);
    int column = 1;
    for (PanelText* text : {&sensor.txt_8bit, &sensor.txt_16bit, &sensor.txt_temp}) {
      QLineEdit* edit = Field(*text);
      edit->setMaximumWidth(kNumberWidth);
      edit->setAccessibleName(ToQt(sensor.label.Caption.get() + ", " + text->Caption));
      rows->addWidget(edit, row, column++);
    }
    ++row;
  }
  rows->setColumnStretch(4, 1);
  return Page(rows, form_.cmdUpdateSensors);
}

QWidget* ControlPanelDialog::ErrorTab() {
  auto* parts = new QVBoxLayout;
  QGroupBox* codes = Frame(form_.fraErrorCodes);
  auto* rows = new QGridLayout(codes);
  AddText(*rows, 0, form_.txt_Error);
  AddText(*rows, 1, form_.txt_ErrorDescription);
  rows->setColumnStretch(1, 1);
  parts->addWidget(codes);
  parts->addWidget(History());
  return Page(parts, form_.cmdUpdateError);
}

QWidget* ControlPanelDialog::StatisticsTab() {
  auto* parts = new QVBoxLayout;
  QGroupBox* history = Frame(form_.fraBurnerHistory);
  auto* rows = new QGridLayout(history);
  int row = 0;
  for (PanelText* text : form_.Statistics()) AddText(*rows, row++, *text);
  parts->addWidget(history, 0, Qt::AlignLeft);
  return Page(parts, form_.cmdUpdateStatistics);
}

// The slave, the parts of a tab, one under or beside the other, and its button, which is in sight
// also where the parts are scrolled.
QWidget* ControlPanelDialog::Page(QLayout* parts, CommandButton& update) {
  auto* slave = new QLabel;
  slave->setTextFormat(Qt::PlainText);
  if (slaves_.empty()) slave->setObjectName(ToQt(form_.lblSlave.name()));
  slaves_.push_back(slave);
  auto* content = new QWidget;
  auto* column = new QVBoxLayout(content);
  column->setContentsMargins(0, 0, 0, 0);
  column->addLayout(parts);
  column->addStretch();
  auto* page = new QWidget;
  auto* layout = new QVBoxLayout(page);
  layout->addWidget(slave);
  layout->addWidget(new ScrolledPage(content), 1);
  layout->addWidget(Button(update), 0, Qt::AlignRight);
  return page;
}

// --- Parts ---------------------------------------------------------------------------------------

QWidget* ControlPanelDialog::Flame() {
  QGroupBox* flame = Frame(form_.fraFlameCurrent);
  auto* rows = new QGridLayout(flame);
  auto* heading = new QLabel;
  Bind(heading, form_.lblFlameCurrentADCs);
  rows->addWidget(heading, 0, 0, 1, 2);
  AddText(*rows, 1, form_.txt_FlameAD10bit);
  AddText(*rows, 2, form_.txt_FlameCurrentADC);
  AddText(*rows, 3, form_.txt_FlameCurrentuA);
  return flame;
}

QWidget* ControlPanelDialog::Acknowledge() {
  QGroupBox* frame = Frame(form_.fraAcknowledge);
  auto* rows = new QGridLayout(frame);
  rows->addWidget(new BitLamp(form_.chk_HeatDemand, frame), 0, 0);
  rows->addWidget(Button(form_.cmdHeadDemand), 0, 1);
  rows->addWidget(new BitLamp(form_.chk_Reset, frame), 1, 0);
  rows->addWidget(Button(form_.cmdResetError), 1, 1);
  return frame;
}

QWidget* ControlPanelDialog::Versions() {
  QGroupBox* versions = Frame(form_.fraSoftwareVersion);
  auto* rows = new QGridLayout(versions);
  AddText(*rows, 0, form_.txt_softwareversionROMHUP);
  AddText(*rows, 0, form_.txt_HUPCRC, 2);
  AddText(*rows, 1, form_.txt_softwareversionROMLUP);
  AddText(*rows, 1, form_.txt_LUPCRC, 2);
  AddText(*rows, 2, form_.txt_softwareversion_EEPROM);
  AddText(*rows, 2, form_.txt_OSNumber, 2);
  return versions;
}

QWidget* ControlPanelDialog::History() {
  QGroupBox* history = Frame(form_.fraErrorHistory);
  auto* rows = new QGridLayout(history);
  constexpr int kRows = 4;
  for (int i = 0; i < kHistoryEntries; ++i) {
    const int column = i / kRows * 3;
    const int row = i % kRows + 1;
    rows->addWidget(new QLabel(QString::number(i + 1)), row, column, Qt::AlignRight);
    int offset = 1;
    for (PanelText* text : {&form_.txt_ErrBufCode(i), &form_.txt_ErrBuffTime(i)}) {
      if (row == 1) rows->addWidget(new QLabel(ToQt(text->Caption)), 0, column + offset);
      QLineEdit* edit = Field(*text);
      edit->setMaximumWidth(kNumberWidth);
      edit->setAccessibleName(tr("%1, entry %2").arg(ToQt(text->Caption)).arg(i + 1));
      rows->addWidget(edit, row, column + offset++);
    }
  }
  rows->setColumnMinimumWidth(3, kColumnGap);
  rows->setColumnStretch(6, 1);
  return history;
}

QGroupBox* ControlPanelDialog::Frame(GroupBox& frame) {
  auto* box = new QGroupBox;
  Bind(box, frame);
  return box;
}

QWidget* ControlPanelDialog::Bits(BitBoxes& boxes) {
  auto* frame = new QGroupBox;
  auto* rows = new QVBoxLayout(frame);
  for (int bit = boxes.first(); bit <= boxes.last(); ++bit) {
    rows->addWidget(new BitLamp(boxes(bit), frame));
  }
  return frame;
}

void ControlPanelDialog::AddText(QGridLayout& rows, int row, PanelText& text, int column) {
  QLineEdit* edit = AddField(rows, row, column, new QLabel(ToQt(text.Caption)), text);
  const bool is_text = &text == &form_.txt_ErrorDescription || &text == &form_.txt_OSNumber;
  edit->setMinimumWidth(is_text ? kTextWidth : kNumberWidth);
  if (!is_text) edit->setMaximumWidth(kNumberWidth);
  // Behind another text of its row a caption says what belongs to that one.
  if (column == 0) return;
  const auto* first = qobject_cast<QLabel*>(rows.itemAtPosition(row, 0)->widget());
  edit->setAccessibleName(tr("%1, %2").arg(ToQt(text.Caption), WithoutMark(first->text())));
}

QLineEdit* ControlPanelDialog::Field(PanelText& text) {
  auto* edit = new QLineEdit;
  BindColoured(edit, text);
  return edit;
}

// Each tab says it.
void ControlPanelDialog::ShowSlave() {
  // A tab may stand out a little from the window.
  const QColor ground = palette().color(QPalette::Window).lighter(kTabLight);
  QPalette colours;
  if (form_.lblSlave.ForeColor != kBlack) {
    colours.setColor(QPalette::WindowText,
                     ReadableShade(ToQColor(form_.lblSlave.ForeColor), ground));
  }
  for (QLabel* slave : slaves_) {
    slave->setText(ToQt(form_.lblSlave.Caption.get()));
    slave->setPalette(colours);
  }
}

}  // namespace tarnlink
