// The check box beside a name box: whether its Location is scanned.
#pragma once

#include <QCheckBox>

#include "common/controls.h"

namespace tarnlink {

class ScreenCheck final : public QCheckBox {
 public:
  // Shows `control` now; `ShowControl` after each change. A click goes to the control.
  ScreenCheck(CheckBox& control, QWidget* parent);

  void ShowControl();

 protected:
  // With a frame around it while it has the keyboard.
  void paintEvent(QPaintEvent* event) override;

 private:
  const CheckBox& control_;
};

}  // namespace tarnlink
