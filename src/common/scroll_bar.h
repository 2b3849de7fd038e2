// A scroll bar as state.
#pragma once

#include <functional>
#include <string>

#include "common/controls.h"

namespace tarnlink {

class ScrollBar : public PlacedControl {
 public:
  using PlacedControl::PlacedControl;

  static constexpr int kMin = 0;
  Property<int> Max{this, 0};
  Property<int> Value{this, 0};
  Property<int> LargeChange{this, 1};
  Property<int> SmallChange{this, 1};
  // After each change of the value, by the user or by the program.
  std::function<void()> Change;

 protected:
  void Changed(const PropertyBase& which) override {
    PlacedControl::Changed(which);
    if (&which == &Value && Change) Change();
  }
};

}  // namespace tarnlink
