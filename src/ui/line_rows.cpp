#include "ui/line_rows.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include "platform/qt/qt_colour.h"
#include "platform/qt/qt_surface.h"
#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/mnemonics.h"
#include "ui/palette.h"
#include "ui/report.h"

namespace tarnlink {

namespace {

constexpr int kNameWidth = 150;   // pixels
constexpr int kSampleWidth = 56;  // pixels
constexpr int kIndent = 4;        // pixels
constexpr int kAir = 4;           // pixels above and below the letters together
constexpr int kPatch = 14;        // pixels: a patch of colour on a button

}  // namespace

RowName::RowName(Label& label, QWidget* parent) : QWidget(parent), label_(label) {
  setObjectName(ToQt(label_.name()));
  setFocusPolicy(Qt::StrongFocus);
  label_.SetView([this] { ShowLabel(); });
  ShowLabel();
}

RowName::~RowName() { label_.SetView({}); }

void RowName::ShowLabel() {
  ShowCommon(this, label_);
  const QString name = ToQt(label_.Caption.get());
  setAccessibleName(name);
  for (QAbstractButton* button : beside_) {
    button->setAccessibleName(tr("%1, %2").arg(name, WithoutMark(button->text())));
  }
  update();
}

void RowName::AddBeside(QAbstractButton* button) {
  beside_.push_back(button);
  ShowLabel();
}

QSize RowName::sizeHint() const { return {kNameWidth, fontMetrics().height() + kAir}; }

void RowName::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QColor background = ToQColor(label_.BackColor);
  painter.fillRect(rect(), background);
  painter.setPen(ReadableShade(ToQColor(label_.ForeColor), background));
  const QRect text = rect().adjusted(kIndent, 0, -kIndent, 0);
  painter.drawText(
      text, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
      fontMetrics().elidedText(ToQt(label_.Caption.get()), Qt::ElideRight, text.width()));
  if (hasFocus()) DrawFocusFrame(painter, rect(), FocusFrame::kThin);
}

void RowName::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) Report(Picked);
}

void RowName::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Up:
      Report(Stepped, -1);
      return;
    case Qt::Key_Down:
      Report(Stepped, 1);
      return;
    case Qt::Key_PageUp:
      Report(Stepped, -frmGraphConf::kRows);
      return;
    case Qt::Key_PageDown:
      Report(Stepped, frmGraphConf::kRows);
      return;
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
      Report(Picked);
      return;
    default:
      QWidget::keyPressEvent(event);
  }
}

LineSampleView::LineSampleView(LineSample& sample, QWidget* parent)
    : QWidget(parent), sample_(sample) {
  setObjectName(ToQt(sample_.name()));
  setCursor(Qt::PointingHandCursor);
  sample_.SetView([this] {
    ShowCommon(this, sample_);
    update();
  });
  ShowCommon(this, sample_);
}

LineSampleView::~LineSampleView() { sample_.SetView({}); }

QSize LineSampleView::sizeHint() const { return {kSampleWidth, fontMetrics().height() + kAir}; }

void LineSampleView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), ToQColor(sample_.BackColor));
  QPen pen(ToQColor(sample_.ForeColor), sample_.DrawWidth, ToPenStyle(sample_.Style));
  pen.setCapStyle(Qt::FlatCap);
  painter.setPen(pen);
  painter.drawLine(0, height() / 2, width(), height() / 2);
}

void LineSampleView::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) Report(sample_.Click);
}

void ScrolledList::wheelEvent(QWheelEvent* event) {
  if (bar_ != nullptr) QCoreApplication::sendEvent(bar_, event);
}

ColourButtonView::ColourButtonView(ColorButton& button, QWidget* parent)
    : QPushButton(parent), button_(button) {
  setObjectName(ToQt(button_.name()));
  setAutoDefault(false);
  connect(this, &QPushButton::clicked, this, [this] { button_.Press(); });
  button_.SetView([this] { ShowButton(); });
  ShowButton();
}

ColourButtonView::~ColourButtonView() { button_.SetView({}); }

void ColourButtonView::ShowButton() {
  ShowCommon(this, button_);
  ShowCaption(this, ToQt(button_.Caption.get()));
  if (!button_.Color.get()) return;
  QPixmap patch(QSize(kPatch, kPatch) * devicePixelRatioF());
  patch.fill(ToQColor(*button_.Color.get()));
  patch.setDevicePixelRatio(devicePixelRatioF());
  QPainter painter(&patch);
  painter.setPen(palette().color(QPalette::Dark));
  painter.drawRect(0, 0, kPatch - 1, kPatch - 1);
  painter.end();
  setIcon(patch);
}

}  // namespace tarnlink
