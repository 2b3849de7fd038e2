// Colours that stand out on a background.

#include "common/readable_shade.h"

#include <gtest/gtest.h>

namespace tarnlink {
namespace {

constexpr Colour kYellow = 0x00FFFF;

TEST(ReadableShade, LeavesWhatCanBeRead) {
  EXPECT_EQ(ReadableShade(kBlack, kWhite), kBlack);
  EXPECT_EQ(ReadableShade(0xFF0000, kWhite), 0xFF0000) << "blue";
  EXPECT_EQ(ReadableShade(kYellow, kBlack), kYellow);
}

TEST(ReadableShade, IsDarkerOnALightGroundAndLighterOnADarkOne) {
  const Colour dark = ReadableShade(kYellow, kWhite);
  EXPECT_LT(dark & 0xFF, 0xFF);
  EXPECT_EQ(dark & 0xFF, dark >> 8 & 0xFF) << "it stays a yellow";
  EXPECT_EQ(dark >> 16, 0);
  const Colour light = ReadableShade(0x500000, kBlack);
  EXPECT_GT(light >> 16, 0x50);
}

TEST(ReadableShade, TakesAsMuchContrastAsIsAskedFor) {
  EXPECT_EQ(ReadableShade(kYellow, kWhite, 1.0), kYellow);
  const Colour visible = ReadableShade(kWhite, kWhite, kVisible);
  const Colour readable = ReadableShade(kWhite, kWhite, kReadable);
  EXPECT_LT(visible, kWhite);
  EXPECT_LT(readable, visible);
  EXPECT_EQ(ReadableShade(0x777777, 0x777777, 21.0), kBlack) << "as far as it goes";
}

TEST(ReadableShade, IsReadableOnEveryGround) {
  for (int red = 0; red <= 0xFF; red += 15) {
    for (int green = 0; green <= 0xFF; green += 15) {
      for (int blue = 0; blue <= 0xFF; blue += 15) {
        const Colour ground = red | green << 8 | blue << 16;
        EXPECT_GE(Contrast(ReadableShade(ground, ground), ground), kReadable) << ground;
      }
    }
  }
}

TEST(ReadableShade, BlackOrWhiteIsReadOnAnything) {
  EXPECT_EQ(ReadableOn(kWhite), kBlack);
  EXPECT_EQ(ReadableOn(kYellow), kBlack);
  EXPECT_EQ(ReadableOn(0xFF0000), kWhite);
  EXPECT_EQ(ReadableOn(kBlack), kWhite);
}

}  // namespace
}  // namespace tarnlink
