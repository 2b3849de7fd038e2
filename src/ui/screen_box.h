// A name box or a value box of the screen: a framed text on a colour of its own.
#pragma once

#include "common/controls.h"
#include "ui/text_plate.h"

namespace tarnlink {

class ScreenBox final : public TextPlate {
 public:
  // Shows `control` now; `ShowControl` after each change.
  ScreenBox(const TextBox& control, QWidget* parent);

  void ShowControl();

 protected:
  // With a frame around it while it has the keyboard.
  void paintEvent(QPaintEvent* event) override;

 private:
  const TextBox& control_;
  Colour shown_colour_ = -1;
  Font shown_font_;  // at first the surface's own, which the box inherits
};

}  // namespace tarnlink
