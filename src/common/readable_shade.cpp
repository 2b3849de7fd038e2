#include "common/readable_shade.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tarnlink {

namespace {

constexpr int kFull = 255;

// Red, green and blue, 0 to 255.
std::array<int, 3> PartsOf(Colour colour) {
  return {colour & kFull, colour >> 8 & kFull, colour >> 16 & kFull};
}

// How bright the eye sees a colour, 0 to 1.
double Luminance(Colour colour) {
  const auto linear = [](int value) {
    const double part = static_cast<double>(value) / kFull;
    return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  const auto [red, green, blue] = PartsOf(colour);
  return 0.2126 * linear(red) + 0.7152 * linear(green) + 0.0722 * linear(blue);
}

}  // namespace

double Contrast(Colour a, Colour b) {
  const auto [low, high] = std::minmax({Luminance(a), Luminance(b)});
  constexpr double kGlare = 0.05;
  return (high + kGlare) / (low + kGlare);
}

Colour ReadableOn(Colour background) {
  // Weights of the eye's response to red, green and blue, in thousandths.
  const auto [red, green, blue] = PartsOf(background);
  constexpr int kMiddle = 128;
  return (299 * red + 587 * green + 114 * blue) / 1000 < kMiddle ? kWhite : kBlack;
}

Colour ReadableShade(Colour colour, Colour background, double contrast) {
  constexpr int kSteps = 20;
  const bool to_white = Contrast(kWhite, background) >= Contrast(kBlack, background);
  const Colour end = to_white ? kWhite : kBlack;
  const std::array<int, 3> from = PartsOf(colour);
  const std::array<int, 3> to = PartsOf(end);
  for (int step = 0; step < kSteps; ++step) {
    const double share = static_cast<double>(step) / kSteps;
    Colour shade = 0;
    for (std::size_t i = 0; i < from.size(); ++i) {
      const auto part = std::lround(from.at(i) + share * (to.at(i) - from.at(i)));
      shade |= static_cast<Colour>(part) << (8 * i);
    }
    if (Contrast(shade, background) >= contrast) return shade;
  }
  return end;
}

}  // namespace tarnlink
