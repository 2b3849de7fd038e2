#include "ui/sensor_plot.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "platform/qt/qt_text.h"

namespace tarnlink {

namespace {

constexpr int kGap = 6;         // pixels
constexpr int kSteps = 6;       // about so many lines to an axis
constexpr double kVolts = 5;    // that the AD converter reaches over
constexpr double kPoint = 4.0;  // pixels: radius
constexpr double kPen = 2.0;    // pixels

// 1, 2 or 5 of a power of ten, for about `kSteps` lines.
double StepOf(double range) {
  const double power = std::pow(10.0, std::floor(std::log10(range / kSteps)));
  const double ratio = range / kSteps / power;
  return power * (ratio <= 1 ? 1 : ratio <= 2 ? 2 : ratio <= 5 ? 5 : 10);
}

}  // namespace

SensorPlot::SensorPlot(SensorCurves& curves, QWidget* parent) : QWidget(parent), curves_(curves) {
  setObjectName(ToQt(curves_.name()));
  setAccessibleName(tr("Pressure over voltage: the sensor, and the controller's formula"));
  curves_.SetView([this] { update(); });
}

SensorPlot::~SensorPlot() { curves_.SetView({}); }

QColor SensorPlot::SensorColour() const {
  return IsDark() ? QColor(110, 165, 255) : QColor(0, 90, 220);
}

QColor SensorPlot::ControllerColour() const {
  return IsDark() ? QColor(255, 150, 70) : QColor(200, 80, 0);
}

bool SensorPlot::IsDark() const { return palette().color(QPalette::Base).lightness() < 128; }

QRectF SensorPlot::Range() const {
  double left = 0;
  double right = kVolts;
  double low = 0;
  double high = 1;
  for (const auto* curve : {&curves_.Sensor.get(), &curves_.Controller.get()}) {
    for (const SensorPoint& point : *curve) {
      left = std::min(left, point.volt);
      right = std::max(right, point.volt);
      low = std::min(low, point.bar);
      high = std::max(high, point.bar);
    }
  }
  return {left, low, right - left, high - low};
}

QPointF SensorPlot::Place(double volt, double bar) const {
  return {place_.left() + (volt - range_.left()) / range_.width() * place_.width(),
          place_.bottom() - (bar - range_.top()) / range_.height() * place_.height()};
}

void SensorPlot::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Base));
  painter.setPen(palette().color(QPalette::Text));
  if (curves_.Sensor->empty()) {
    painter.drawText(rect().adjusted(kGap, kGap, -kGap, -kGap), Qt::AlignCenter | Qt::TextWordWrap,
                     tr("The sensor is drawn here once its points are converted."));
    return;
  }
  range_ = Range();
  const int line = fontMetrics().lineSpacing();
  const int number = fontMetrics().horizontalAdvance(QStringLiteral("-00.00"));
  place_ = rect().adjusted(number + kGap, 7 * line / 2 + kGap, -2 * kGap, -2 * line - kGap);
  painter.setRenderHint(QPainter::Antialiasing);
  DrawAxes(painter);
  DrawCurves(painter);
  DrawLegend(painter);
}

void SensorPlot::DrawAxes(QPainter& painter) const {
  const QPen text(palette().color(QPalette::Text));
  QColor faint = text.color();
  faint.setAlpha(90);
  const QPen grid(faint, 1, Qt::DotLine);
  const int line = fontMetrics().lineSpacing();
  const double right = range_.right();
  const double high = range_.bottom();
  const double volts = StepOf(range_.width());
  for (double at = std::ceil(range_.left() / volts) * volts; at <= right + volts / 1e6;
       at += volts) {
    const QPointF foot = Place(at, range_.top());
    painter.setPen(grid);
    painter.drawLine(foot, Place(at, high));
    painter.setPen(text);
    painter.drawText(QRectF(foot.x() - 40, foot.y() + 2, 80, line), Qt::AlignHCenter,
                     QString::number(at, 'g', 4));
  }
  const double bars = StepOf(range_.height());
  for (double at = std::ceil(range_.top() / bars) * bars; at <= high + bars / 1e6; at += bars) {
    const QPointF foot = Place(range_.left(), at);
    painter.setPen(grid);
    painter.drawLine(foot, Place(right, at));
    painter.setPen(text);
    const double shown = std::abs(at) < bars / 1e6 ? 0 : at;
    painter.drawText(QRectF(0, foot.y() - line / 2.0, foot.x() - 4, line), Qt::AlignRight,
                     QString::number(shown, 'g', 4));
  }
  painter.drawText(QRect(0, height() - line, width() - kGap, line), Qt::AlignRight, tr("V"));
  painter.drawText(QPoint(kGap, place_.top() - line / 2), tr("Bar"));
}

void SensorPlot::DrawCurves(QPainter& painter) const {
  QPolygonF steps;
  for (const SensorPoint& point : curves_.Controller.get()) {
    const QPointF place = Place(point.volt, point.bar);
    if (!steps.isEmpty()) steps << QPointF(place.x(), steps.last().y());
    steps << place;
  }
  painter.setPen(QPen(ControllerColour(), kPen));
  painter.drawPolyline(steps);
  const SensorPoint& one = curves_.Sensor->front();
  const SensorPoint& other = curves_.Sensor->back();
  painter.setPen(QPen(SensorColour(), kPen));
  painter.drawLine(Place(one.volt, one.bar), Place(other.volt, other.bar));
  painter.setBrush(SensorColour());
  for (const SensorPoint& point : {one, other}) {
    painter.drawEllipse(Place(point.volt, point.bar), kPoint, kPoint);
  }
}

void SensorPlot::DrawLegend(QPainter& painter) const {
  const QRect first(kGap, kGap, width(), fontMetrics().lineSpacing());
  painter.setPen(SensorColour());
  painter.drawText(first, Qt::AlignLeft, tr("Line: the sensor through its two points"));
  painter.setPen(ControllerColour());
  painter.drawText(first.translated(0, first.height()), Qt::AlignLeft,
                   tr("Steps: the controller, in tenths of a bar"));
}

}  // namespace tarnlink
