// Where a box of the screen may be put: on the optional grid, and beside a box that stands there
// already.
#pragma once

#include "monitor/frm_main.h"
#include "monitor/frm_options.h"

namespace tarnlink {

inline constexpr float kGridSize = 188.0F;  // units

class ScreenGrid {
 public:
  ScreenGrid(const frm_Main& main, const frm_Options& options) : main_(main), options_(options) {}

  // While the grid is on, each coordinate becomes the nearest multiple of the grid's size.
  void SnapToGrid(float& x, float& y) const;

  // For the newest Location: `top` and `left` move on by the grid's size when a box of the same
  // kind stands exactly there. One look at each of the older Locations, in order, and none again.
  void AvoidValueOverlap(float& top, float& left) const;
  void AvoidNameOverlap(float& top, float& left) const;
  void AvoidCheckOverlap(float& top, float& left) const;

 private:
  template <class T>
  void AvoidOverlap(const ControlArray<T>& boxes, float& top, float& left) const;

  const frm_Main& main_;
  const frm_Options& options_;
};

}  // namespace tarnlink
