#include "ui/first_steps_panel.h"

#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QPushButton>

#include "platform/qt/qt_text.h"
#include "ui/binders.h"

namespace tarnlink {
namespace {

constexpr int kWidest = 560;  // pixels: lines of a readable length
constexpr int kAir = 20;      // pixels to the edges of the screen
constexpr int kColumnAir = 12;

}  // namespace

FirstStepsPanel::FirstStepsPanel(frm_FirstSteps& form, QWidget* area) : QWidget(area), form_(form) {
  setObjectName(ToQt(form_.form.name()));
  setAccessibleName(tr("First steps"));
  setAutoFillBackground(true);
  setBackgroundRole(QPalette::Base);
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(kAir, kAir, kAir, kAir);
  grid->setHorizontalSpacing(kColumnAir);
  grid->setColumnStretch(1, 1);

  auto* why = new QLabel(this);
  why->setTextFormat(Qt::PlainText);
  why->setWordWrap(true);
  why->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  Bind(why, form_.lblPort);
  grid->addWidget(why, 0, 0, 1, 2);
  AddStep(grid, 1, tr("Plug the cable in, and choose its device:"), DeviceRow());
  auto* boiler = new QPushButton(this);
  Bind(boiler, form_.cmdBoiler);
  AddStep(grid, 2, tr("Or try it without a boiler:"), boiler);
  auto* sample = new QPushButton(this);
  Bind(sample, form_.cmdSample);
  AddStep(grid, 3, tr("Then open a screen, or begin with a sample:"), sample);

  area->installEventFilter(this);
  form_.form.SetView([this] { ShowForm(); });
  ShowForm();
}

FirstStepsPanel::~FirstStepsPanel() { form_.form.SetView({}); }

void FirstStepsPanel::AddStep(QGridLayout* grid, int number, const QString& heading,
                              QWidget* below) {
  const int row = grid->rowCount();
  grid->setRowMinimumHeight(row, kColumnAir);
  auto* words = new QLabel(heading, this);
  words->setWordWrap(true);
  grid->addWidget(new QLabel(QString::number(number) + QLatin1Char('.'), this), row + 1, 0);
  grid->addWidget(words, row + 1, 1);
  const bool is_button = qobject_cast<QPushButton*>(below) != nullptr;
  grid->addWidget(below, row + 2, 1, is_button ? Qt::AlignLeft : Qt::Alignment());
}

QWidget* FirstStepsPanel::DeviceRow() {
  auto* row = new QWidget(this);
  auto* line = new QHBoxLayout(row);
  line->setContentsMargins(0, 0, 0, 0);
  auto* devices = new QComboBox(row);
  devices->setAccessibleName(tr("Serial device"));
  devices->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  Bind(devices, form_.cmbDevices);
  line->addWidget(devices, 1);
  auto* use = new QPushButton(row);
  Bind(use, form_.cmdUse);
  line->addWidget(use);
  return row;
}

void FirstStepsPanel::ShowForm() {
  setVisible(form_.form.Visible);
  TakePlace();
}

// A text that has become longer needs more height.
bool FirstStepsPanel::event(QEvent* event) {
  if (event->type() == QEvent::LayoutRequest) TakePlace();
  return QWidget::event(event);
}

bool FirstStepsPanel::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize || event->type() == QEvent::Show) TakePlace();
  return QWidget::eventFilter(watched, event);
}

// In the middle, as high as its text needs at that width.
void FirstStepsPanel::TakePlace() {
  const QSize area = parentWidget()->size();
  const int width = std::min(kWidest, area.width() - kAir);
  const int height = std::min(heightForWidth(width), area.height());
  setGeometry((area.width() - width) / 2, (area.height() - height) / 2, width, height);
  raise();
}

}  // namespace tarnlink
