// A bar that shows how much of a run is done.
#pragma once

#include "common/control.h"

namespace tarnlink {

class RunBar : public Control {
 public:
  using Control::Control;

  Property<int> Maximum{this, 1};
  Property<int> Value{this, 0};  // 0 to Maximum
};

}  // namespace tarnlink
