// A bar that shows how many of so many are done.
#pragma once

#include "common/control.h"

namespace tarnlink {

class CountBar : public Control {
 public:
  using Control::Control;

  Property<int> Max{this, 1};
  Property<int> Value{this, 0};  // 0 to Max
};

}  // namespace tarnlink
