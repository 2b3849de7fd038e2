#include "ui/test_mode_dialog.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QVBoxLayout>

#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/frames.h"
#include "ui/mnemonics.h"

namespace tarnlink {

namespace {

constexpr int kNumberWidth = 60;   // pixels: room for a percentage
constexpr int kSliderWidth = 180;  // pixels
constexpr int kTicks = 10;         // percent from tick to tick

}  // namespace

TestModeDialog::TestModeDialog(frmTestMode& form, QWidget* parent) : QDialog(parent), form_(form) {
  setObjectName(ToQt(form_.form.name()));
  setWindowTitle(ToQt(form_.caption.Caption.get()));
  setModal(true);
  QGroupBox* frame = RadioFrame(QString(), form_.optTestMode, 2);
  Bind(frame, form_.Frame1);
  auto* power = new QLabel(this);
  Bind(power, form_.Label1);
  auto* slider = new QSlider(Qt::Horizontal, this);
  slider->setTickPosition(QSlider::TicksBelow);
  slider->setTickInterval(kTicks);
  slider->setMinimumWidth(kSliderWidth);
  Bind(slider, form_.sldTestPower);
  slider->setAccessibleName(ToQt(form_.Label1.Caption.get()));
  auto* number = new QLineEdit(this);
  number->setMaximumWidth(kNumberWidth);
  number->setAccessibleName(ToQt(form_.Label1.Caption.get()));
  Bind(number, form_.txtTestPower);
  auto* note = new QLabel(this);
  Bind(note, form_.Label2);
  auto* close = new QPushButton(tr("Close"), this);
  close->setDefault(true);
  connect(close, &QPushButton::clicked, this, [this] { done(Accepted); });
  auto* settings = new QGridLayout;
  settings->addWidget(power, 0, 0, 1, 2);
  settings->addWidget(slider, 1, 0);
  settings->addWidget(number, 1, 1);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(frame);
  layout->addLayout(settings);
  layout->addWidget(note);
  layout->addWidget(close, 0, Qt::AlignRight);
  form_.form.SetView([this] { ShowForm(); });
  GiveMnemonics(this);
  ShowForm();
}

TestModeDialog::~TestModeDialog() { form_.form.SetView({}); }

void TestModeDialog::done(int) { form_.Close(); }

void TestModeDialog::ShowForm() {
  if (form_.form.Visible != isVisible()) setVisible(form_.form.Visible);
}

}  // namespace tarnlink
