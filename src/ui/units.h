// Form units, 1440 to the inch, and logical pixels, 96 to the inch.
#pragma once

#include <QRect>
#include <algorithm>
#include <cmath>

#include "common/controls.h"

namespace tarnlink {

inline constexpr float kUnitsPerPixel = 1440.0F / 96.0F;

// Far beyond any display. A place read from a file is held within it.
inline constexpr float kFurthestPixel = 20000.0F;

inline int ToPixels(float units) {
  const float pixels = std::clamp(units / kUnitsPerPixel, -kFurthestPixel, kFurthestPixel);
  return static_cast<int>(std::lround(pixels));
}

// The place at which an object is shown, whatever a file says.
inline float ShownUnits(float units) {
  constexpr float kFurthest = kFurthestPixel * kUnitsPerPixel;
  return std::clamp(units, -kFurthest, kFurthest);
}

inline float ToUnits(int pixels) { return static_cast<float>(pixels) * kUnitsPerPixel; }

inline QRect PlaceOf(const PlacedControl& control) {
  return {ToPixels(control.Left), ToPixels(control.Top), ToPixels(control.Width),
          ToPixels(control.Height)};
}

}  // namespace tarnlink
