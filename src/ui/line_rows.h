// The parts of the settings of the graph: names that are clicked, samples of lines, the list of
// both, buttons that show a colour.
#pragma once

#include <QPushButton>
#include <QScrollBar>
#include <QWidget>
#include <functional>
#include <vector>

#include "graph/frm_graph_conf.h"

namespace tarnlink {

// A name in the colours of its label; a click, Space or Enter picks it.
class RowName final : public QWidget {
 public:
  // Shows `label`, which outlives it.
  RowName(Label& label, QWidget* parent);
  ~RowName() override;

  // What stands beside it: a screen reader tells whose it is.
  void AddBeside(QAbstractButton* button);

  std::function<void()> Picked;
  std::function<void(int)> Stepped;  // by an arrow or page key: so many rows on, or back

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void ShowLabel();

  Label& label_;
  std::vector<QAbstractButton*> beside_;  // they live as long as this
};

// A stroke as the graph draws it, on the graph's background; a click asks for another colour.
class LineSampleView final : public QWidget {
 public:
  LineSampleView(LineSample& sample, QWidget* parent);
  ~LineSampleView() override;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  LineSample& sample_;
};

// A list over which the mouse wheel turns its scroll bar.
class ScrolledList final : public QWidget {
 public:
  using QWidget::QWidget;

  // The bar lives as long as this.
  void Follow(QScrollBar* bar) { bar_ = bar; }

 protected:
  void wheelEvent(QWheelEvent* event) override;

 private:
  QScrollBar* bar_ = nullptr;
};

// A button with a patch of its colour.
class ColourButtonView final : public QPushButton {
 public:
  // Shows `button`, which outlives it.
  ColourButtonView(ColorButton& button, QWidget* parent);
  ~ColourButtonView() override;

 private:
  void ShowButton();

  ColorButton& button_;
};

}  // namespace tarnlink
