// A text label of the screen.
#pragma once

#include <QLabel>

#include "common/controls.h"

namespace tarnlink {

class ScreenLabel final : public QLabel {
 public:
  // Shows `control` now; `ShowControl` after each change.
  ScreenLabel(const Label& control, QWidget* parent);

  void ShowControl();

 protected:
  // With a frame around it while it has the keyboard.
  void paintEvent(QPaintEvent* event) override;

 private:
  const Label& control_;
};

}  // namespace tarnlink
