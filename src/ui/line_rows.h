// The parts of a row in the settings of the graph: a name that is clicked, a sample of a line.
#pragma once

#include <QWidget>
#include <functional>

#include "graph/frm_graph_conf.h"

namespace tarnlink {

// A name in the colours of its label; a click, Space or Enter picks it.
class RowName final : public QWidget {
 public:
  // Shows `label`, which outlives it.
  RowName(Label& label, QWidget* parent);
  ~RowName() override;

  std::function<void()> Picked;

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  Label& label_;
};

// A stroke as the graph draws it, on the graph's background; a click asks for another colour.
class LineSampleView final : public QWidget {
 public:
  LineSampleView(LineSample& sample, QWidget* parent);
  ~LineSampleView() override;

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  LineSample& sample_;
};

}  // namespace tarnlink
