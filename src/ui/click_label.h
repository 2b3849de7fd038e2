// A label that is pressed with the mouse like a button, or with Space or Enter.
#pragma once

#include <QWidget>
#include <functional>
#include <optional>

#include "common/controls.h"

namespace tarnlink {

class ClickLabel final : public QWidget {
 public:
  // Shows `control`, which outlives it, and gives it a size that its caption fits in.
  ClickLabel(Label& control, QWidget* parent);
  ~ClickLabel() override;

  std::function<void(MouseButton)> Down;
  // Comes after each `Down`, also where the button or the key goes up somewhere else.
  std::function<void(MouseButton)> Up;
  // Down and up on the label, with the left button or the key.
  std::function<void()> Click;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  bool event(QEvent* event) override;

 private:
  void ShowControl();
  void Press(MouseButton button);
  void LetGo(bool is_here);

  Label& control_;
  std::optional<MouseButton> down_;
};

}  // namespace tarnlink
