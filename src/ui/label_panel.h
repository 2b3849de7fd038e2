// A panel with labels at places of their own, painted as one: hundreds of labels would be a widget
// each.
#pragma once

#include <QFont>
#include <QWidget>
#include <functional>
#include <vector>

#include "common/controls.h"

namespace tarnlink {

class LabelPanel final : public QWidget {
 public:
  // Shows `panel` and `labels`, which outlive it. `alignment` is that of a label in its width; one
  // without a width begins at its place. `overhang` pixels on both sides are the labels' too.
  LabelPanel(PlacedControl& panel, std::vector<Label*> labels, Qt::Alignment alignment,
             QWidget* parent, int overhang = 0);
  ~LabelPanel() override;

  struct Shown {
    QString text;
    QRect place;  // in the panel
  };
  // The labels that can be read.
  std::vector<Shown> ShownLabels() const;
  // Their texts, one behind the other.
  QString ShownText() const;

  std::function<void(MouseButton)> Down;
  // How far label `index` is seen below its place; none does without it.
  std::function<float(std::size_t index)> Drop;

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;

 private:
  void ShowControl();
  QRect PlaceOfLabel(std::size_t index) const;

  PlacedControl& panel_;
  std::vector<Label*> labels_;
  Qt::Alignment alignment_;
  int overhang_;
};

// The font of the graph's labels: narrow, so that a caption row holds its texts.
QFont GraphFont();

}  // namespace tarnlink
