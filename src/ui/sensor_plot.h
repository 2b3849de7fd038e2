// A small picture of a pressure sensor: its line through two points, and the steps that a
// controller makes of it.
#pragma once

#include <QWidget>

#include "tools/frm_wp_conversion.h"

namespace tarnlink {

class SensorPlot final : public QWidget {
 public:
  // `curves` outlives it.
  SensorPlot(SensorCurves& curves, QWidget* parent);
  ~SensorPlot() override;

  QSize sizeHint() const override { return {330, 300}; }
  QSize minimumSizeHint() const override { return {260, 200}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  // What the axes reach over.
  QRectF Range() const;
  QPointF Place(double volt, double bar) const;
  void DrawAxes(QPainter& painter) const;
  void DrawCurves(QPainter& painter) const;
  void DrawLegend(QPainter& painter) const;
  QColor SensorColour() const;
  QColor ControllerColour() const;
  bool IsDark() const;

  SensorCurves& curves_;
  QRectF range_;  // while it is painted, as its place
  QRect place_;
};

}  // namespace tarnlink
