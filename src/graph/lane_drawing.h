// A lane of the graph, on screen and paper.
#pragma once

#include <algorithm>

#include "platform/drawing_surface.h"

namespace tarnlink {

// Of a lane's height: what is left free above its bar, and the bar.
inline constexpr float kLaneGap = 0.1F;
inline constexpr float kLaneBar = 0.6F;

// Back from a sample that stands for itself, in both directions.
inline constexpr float kSampleStroke = 2;

// A lane as it grows to the left: a bar or a line as long as its state stays.
class LaneDrawing {
 public:
  LaneDrawing(DrawingSurface& surface, float top, float bottom)
      : surface_(surface), top_(top), bottom_(bottom) {}

  // From `x` to `right`, in this state.
  void Add(float x, float right, bool is_on) {
    const float low = std::min(x, right);
    const float high = std::max(x, right);
    const bool joins = is_open_ && is_on == is_on_ && high >= left_ && low <= right_;
    if (!joins) {
      Finish();
      left_ = low;
      right_ = high;
    }
    left_ = std::min(left_, low);
    right_ = std::max(right_, high);
    is_on_ = is_on;
    is_open_ = true;
  }
  void Finish() {
    if (!is_open_) return;
    if (is_on_) {
      surface_.FilledBox({left_, bottom_}, {right_, top_});
    } else {
      surface_.Line({left_, bottom_}, {right_, bottom_});
    }
    is_open_ = false;
  }

 private:
  DrawingSurface& surface_;
  float top_;
  float bottom_;
  float left_ = 0;
  float right_ = 0;
  bool is_on_ = false;
  bool is_open_ = false;
};

}  // namespace tarnlink
