#include "monitor/screen_grid.h"

#include <cmath>

namespace tarnlink {

namespace {

// Halves go to the even multiple, as the default rounding does.
float NearestMultiple(float place) { return std::nearbyint(place / kGridSize) * kGridSize; }

}  // namespace

void ScreenGrid::SnapToGrid(float& x, float& y) const {
  if (!options_.chkGridOn.Value) return;
  x = NearestMultiple(x);
  y = NearestMultiple(y);
}

template <class T>
void ScreenGrid::AvoidOverlap(const ControlArray<T>& boxes, float& top, float& left) const {
  for (int i = 1; i < main_.MaxId; ++i) {
    const T& box = boxes(i);
    if (top != box.Top || left != box.Left) continue;
    top += kGridSize;
    left += kGridSize;
  }
}

void ScreenGrid::AvoidValueOverlap(float& top, float& left) const {
  AvoidOverlap(main_.RAM_LOC_VAL, top, left);
}

void ScreenGrid::AvoidNameOverlap(float& top, float& left) const {
  AvoidOverlap(main_.RAM_LOC_TEXT, top, left);
}

void ScreenGrid::AvoidCheckOverlap(float& top, float& left) const {
  AvoidOverlap(main_.RAM_LOC_CHECK, top, left);
}

}  // namespace tarnlink
