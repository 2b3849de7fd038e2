#include "ui/wp_conversion_dialog.h"

#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/scrolled_page.h"
#include "ui/sensor_plot.h"

namespace tarnlink {

namespace {

constexpr int kNumberWidth = 70;  // pixels
constexpr int kGap = 10;          // pixels between two parts

QLabel* Shown(Label& control, QWidget* parent) {
  auto* label = new QLabel(parent);
  Bind(label, control);
  return label;
}

}  // namespace

WpConversionDialog::WpConversionDialog(frmWPconversion& form, SettingsStore& settings,
                                       QWidget* parent)
    : ToolDialog(form.form, parent), form_(form) {
  setModal(false);
  setWindowTitle(ToQt(form_.caption.Caption.get()));
  auto* content = new QWidget;
  auto* parts = new QHBoxLayout(content);
  parts->setContentsMargins(0, 0, 0, 0);
  parts->setSpacing(2 * kGap);
  parts->addLayout(BuildNumbers());
  parts->addWidget(new SensorPlot(form_.picSensor, content), 1);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(new ScrolledPage(content), 1);
  layout->addLayout(BuildButtons());
  form_.ToFront = [this] {
    raise();
    activateWindow();
  };
  Begin(settings);
}

WpConversionDialog::~WpConversionDialog() { form_.ToFront = {}; }

void WpConversionDialog::done(int) { form_.Unload(); }

void WpConversionDialog::FormChanged() {
  auto* first = findChild<QLineEdit*>(ToQt(form_.txtU1.name()));
  if (!form_.form.Visible || isVisible() || first == nullptr) return;
  first->setFocus();
  first->selectAll();
}

void WpConversionDialog::Enter() {
  auto* field = qobject_cast<QLineEdit*>(focusWidget());
  if (field != nullptr && !field->isReadOnly()) form_.cmdConvert.Press();
}

QLayout* WpConversionDialog::BuildNumbers() {
  auto* numbers = new QVBoxLayout;
  numbers->addLayout(BuildPoints());
  numbers->addSpacing(kGap);
  numbers->addWidget(BuildFormula());
  numbers->addSpacing(kGap);
  numbers->addLayout(BuildFactors());
  numbers->addSpacing(kGap);
  numbers->addWidget(BuildQuality());
  numbers->addStretch();
  return numbers;
}

QLayout* WpConversionDialog::BuildPoints() {
  auto* rows = new QGridLayout;
  rows->setHorizontalSpacing(kGap);
  rows->addWidget(Shown(form_.lblVoltageHeading, this), 0, 0, 1, 2);
  rows->addWidget(Shown(form_.lblPressureHeading, this), 0, 2, 1, 2);
  const auto add = [&](int row, int column, Label& caption, TextBox& text) {
    AddField(*rows, row, column, Shown(caption, this), text)->setMaximumWidth(kNumberWidth);
  };
  add(1, 0, form_.lblU1, form_.txtU1);
  add(1, 2, form_.lblPres1, form_.txtPres1);
  add(2, 0, form_.lblU2, form_.txtU2);
  add(2, 2, form_.lblPres2, form_.txtPres2);
  rows->setColumnStretch(4, 1);
  return rows;
}

// As on paper: the numerator over a line over the denominator.
QWidget* WpConversionDialog::BuildFormula() {
  auto* formula = new QWidget(this);
  formula->setObjectName(QStringLiteral("formula"));
  auto* row = new QHBoxLayout(formula);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(Shown(form_.lblFormula, formula));
  auto* fraction = new QVBoxLayout;
  fraction->setSpacing(2);
  auto* line = new QFrame(formula);
  line->setObjectName(QStringLiteral("fractionLine"));
  line->setFrameStyle(static_cast<int>(QFrame::HLine) | static_cast<int>(QFrame::Plain));
  QLabel* numerator = Shown(form_.lblNumerator, formula);
  QLabel* denominator = Shown(form_.lblDenominator, formula);
  for (QLabel* label : {numerator, denominator}) label->setAlignment(Qt::AlignCenter);
  fraction->addWidget(numerator);
  fraction->addWidget(line);
  fraction->addWidget(denominator);
  row->addLayout(fraction);
  row->addStretch();
  return formula;
}

QLayout* WpConversionDialog::BuildFactors() {
  auto* rows = new QGridLayout;
  const auto add = [&](int row, Label& caption, TextBox& text) {
    AddField(*rows, row, 0, Shown(caption, this), text)->setMaximumWidth(kNumberWidth);
  };
  add(0, form_.lblFactorA, form_.txtFactorA);
  add(1, form_.lblFactorB, form_.txtFactorB);
  add(2, form_.lblFactorC, form_.txtFactorC);
  rows->setColumnStretch(2, 1);
  return rows;
}

QGroupBox* WpConversionDialog::BuildQuality() {
  auto* frame = new QGroupBox(this);
  // The window stays as large as it is where there is no result.
  QSizePolicy policy = frame->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  frame->setSizePolicy(policy);
  auto* rows = new QGridLayout(frame);
  const auto add = [&](int row, Label& caption, TextBox& text) {
    AddField(*rows, row, 0, Shown(caption, frame), text);
  };
  add(0, form_.lblRange, form_.txtRange);
  add(1, form_.lblFault, form_.txtFault);
  add(2, form_.lblResolution, form_.txtResolution);
  Bind(frame, form_.frmFault);
  return frame;
}

QLayout* WpConversionDialog::BuildButtons() {
  auto* row = new QHBoxLayout;
  row->addStretch();
  row->addWidget(Button(form_.cmdConvert, this));
  row->addWidget(Button(form_.cmdClose, this));
  return row;
}

}  // namespace tarnlink
