// Colours that stand out on a background.
#pragma once

#include "common/controls.h"

namespace tarnlink {

// How far letters must stand apart from their background, and lines so that they are seen at all,
// as contrasts of 1 to 21.
inline constexpr double kReadable = 4.5;
inline constexpr double kVisible = 1.25;

// How far two colours stand apart, 1 to 21.
double Contrast(Colour a, Colour b);

// Letters on `background` that has a meaning, such as a state: white on a dark one, else black.
Colour ReadableOn(Colour background);

// `colour` on `background`: the same hue, darker or lighter as far as it would not stand out.
// Neither is a colour of the system.
Colour ReadableShade(Colour colour, Colour background, double contrast = kReadable);

}  // namespace tarnlink
