// The picture of the graph on the screen: lines and lanes, the cursor over them, and what stands
// under the mouse pointer.
#pragma once

#include <QWidget>
#include <optional>

#include "graph/graph.h"
#include "ui/graph_image.h"

namespace tarnlink {

class GraphCanvas final : public QWidget {
 public:
  // Shows `graph`, which outlives it.
  GraphCanvas(Graph& graph, QWidget* parent);
  ~GraphCanvas() override;

  // Without the keyboard's frame and the pointer's reading, for a picture.
  void ShowPlain(bool plain);

 protected:
  void focusInEvent(QFocusEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void ShowControl();
  void Draw();
  void PaintFocus(QPainter& painter) const;
  void PaintCursor(QPainter& painter) const;
  void PaintReading(QPainter& painter) const;
  QRect ReadingPlace(const QSize& text) const;
  void Read();
  bool IsDrag(const QPoint& at) const;
  void DragTo(const QPoint& at);
  bool EndPress();

  Graph& graph_;
  frmGraphic& form_;
  GraphImage image_;
  // What was last told to be drawn: the form may already be on its way to something else.
  GraphView view_;
  Date cursor_ = 0;
  std::optional<QPoint> pointer_;
  std::optional<PointerReading> reading_;
  std::optional<QPoint> pressed_;  // where the left button went down
  Date pressed_base_ = 0;          // what stood at the right edge then
  bool is_dragging_ = false;
  bool is_plain_ = false;
  bool came_by_key_ = false;  // the keyboard's focus
  int wheel_ = 0;             // what has been turned since the last step
};

}  // namespace tarnlink
