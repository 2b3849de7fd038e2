#include "ui/options_dialog.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/frames.h"
#include "ui/mnemonics.h"
#include "ui/palette.h"

namespace tarnlink {

namespace {

constexpr int kNumberWidth = 60;  // pixels: room for a port number

QWidget* Columns(const std::vector<QWidget*>& columns) {
  auto* tab = new QWidget;
  auto* layout = new QHBoxLayout(tab);
  for (QWidget* column : columns) layout->addWidget(column, 1, Qt::AlignTop);
  return tab;
}

}  // namespace

OptionsDialog::OptionsDialog(frm_Options& options, PortDevices& devices, QWidget* parent)
    : QDialog(parent), options_(options), devices_(devices), tabs_(new QTabWidget(this)) {
  setObjectName(ToQt(options_.form.name()));
  setWindowTitle(tr("Options"));
  setModal(true);
  tabs_->setObjectName("SSTab1");
  tabs_->addTab(BuildPortTab(), tr("&Communication"));
  tabs_->addTab(BuildFilesTab(), tr("&Files"));
  tabs_->addTab(BuildMonitorTab(), tr("&Monitor"));
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(tabs_);
  layout->addWidget(BuildButtons());
  options_.form.SetView([this] { ShowForm(); });
  GiveMnemonics(this);
  ShowForm();
}

OptionsDialog::~OptionsDialog() {
  options_.form.SetView({});
  devices_.Watch({});
}

// Escape and the frame's close button are the Cancel button.
void OptionsDialog::reject() { options_.cmd_OptionsCancel.Press(); }

void OptionsDialog::ShowForm() {
  if (options_.form.Visible == isVisible()) return;
  setVisible(options_.form.Visible);
  if (options_.form.Visible) {
    tabs_->setFocus();
    devices_.Watch([this] { options_.RefreshPortDevices(); });
  } else {
    devices_.Watch({});
  }
}

QWidget* OptionsDialog::BuildPortTab() {
  return Columns(
      {Column({RadioFrame(tr("Protocol"), options_.opt_Protocol, 1), PortFrame(), TimeoutFrame()}),
       Column({RadioFrame(tr("Baudrate"), options_.opt_Baudrate, 2),
               RadioFrame(tr("Parity"), options_.opt_parity, 3),
               RadioFrame(tr("Stop Bits"), options_.opt_stop, 2),
               CheckFrame(tr("Communication Errors"), {&options_.chk_DisableCommErrors})})});
}

QWidget* OptionsDialog::BuildFilesTab() {
  return Columns({Column(
      {PathFrame(tr("Memory Map Location"), options_.txt_MapFile, options_.cmdBrowseMapFile),
       PathFrame(tr("ZOLT ID Definition"), options_.txt_ZOLTIDDef, options_.cmdBrowseZOLTIDFile),
       PathFrame(tr("Path to database files"), options_.txt_databasefiles,
                 options_.cmdBrowseDatabasefiles),
       PathFrame(tr("Log Path"), options_.txt_LogPath, options_.cmdBrowseLogPath),
       PathFrame(tr("Path to Excel"), options_.txt_PathToExcel, options_.cmdBrowseExcel)})});
}

QWidget* OptionsDialog::BuildMonitorTab() {
  QGroupBox* micro = RadioFrame(tr("Microprocessor"), options_.MicroSelect, 2);
  Bind(micro, options_.frmMicro);
  return Columns(
      {Column({CheckFrame(tr("Logging"),
                          {&options_.chk_GeneralLogging(0), &options_.chk_GeneralLogging(1)}),
               CheckFrame(tr("Initial Value Setting"), {&options_.chkClearAllValues})}),
       Column({CheckFrame(tr("Grid"), {&options_.ScanningBox, &options_.chkGridOn}), micro})});
}

QWidget* OptionsDialog::BuildButtons() {
  return OkCancelRow(this, options_.cmd_OptionsOk, options_.cmd_OptionsCancel);
}

QGroupBox* OptionsDialog::PortFrame() {
  QGroupBox* frame = RadioFrame(tr("Communication Port"), options_.opt_CommPort, 2);
  auto* layout = static_cast<QGridLayout*>(frame->layout());
  layout->setColumnStretch(1, 1);
  auto* number = new QLineEdit;
  Bind(number, options_.ComPortNumber);
  number->setAccessibleName(tr("Port number"));
  number->setMaximumWidth(kNumberWidth);
  layout->addWidget(number, 2, 1);
  auto* device = new QComboBox;
  device->setEditable(true);
  device->setInsertPolicy(QComboBox::NoInsert);
  device->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  device->setMinimumContentsLength(28);
  SetPlaceholder(device->lineEdit(), tr("no serial device found"));
  // A completed line would be another device than the one that was typed.
  device->setCompleter(nullptr);
  options_.cmbPortDevice.ToolTipText =
      "The device behind this port number: pick one or type its path";
  Bind(device, options_.cmbPortDevice);
  auto* label = new QLabel(tr("&Device"));
  label->setBuddy(device);
  layout->addWidget(label, 3, 0, 1, 2);
  layout->addWidget(device, 4, 0, 1, 2);
  return frame;
}

QGroupBox* OptionsDialog::TimeoutFrame() {
  auto* frame = new QGroupBox(tr("Message Timeout"));
  auto* layout = new QHBoxLayout(frame);
  auto* slider = new QSlider(Qt::Horizontal);
  slider->setTickPosition(QSlider::TicksBelow);
  slider->setTickInterval(1);
  slider->setPageStep(1);
  auto* seconds = new QLabel;
  const auto show = [seconds](int value) { seconds->setText(QString::number(value) + " s"); };
  connect(slider, &QSlider::valueChanged, seconds, show);
  Bind(slider, options_.sld_MsgTimeout);
  slider->setAccessibleName(tr("Message timeout in seconds"));
  show(slider->value());
  layout->addWidget(slider);
  layout->addWidget(seconds);
  return frame;
}

QGroupBox* OptionsDialog::PathFrame(const QString& title, TextBox& box, CommandButton& browse) {
  auto* frame = new QGroupBox(title);
  auto* layout = new QHBoxLayout(frame);
  auto* edit = new QLineEdit;
  edit->setMinimumWidth(360);
  edit->setAccessibleName(title);
  Bind(edit, box);
  auto* button = new QPushButton;
  Bind(button, browse);
  button->setAccessibleName(tr("Browse: %1").arg(title));
  layout->addWidget(edit);
  layout->addWidget(button);
  return frame;
}

}  // namespace tarnlink
