// How a screen falls on sheets of paper.

#include "monitor/sheet_layout.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>
#include <vector>

namespace tarnlink {
namespace {

constexpr float kRoomWidth = 10'000.0F;
constexpr float kRoomHeight = 10'000.0F;
constexpr float kNowhere = 5e-2F;  // units that rounding may cost

using Objects = std::vector<SheetObject>;

SheetObject At(float left, float top, float width = 2000, float height = 300, int group = 0) {
  return {{left, top, width, height}, group};
}

SheetLayout Lay(const Objects& objects) { return LayOut(objects, kRoomWidth, kRoomHeight); }

// "0 1 | 2" for two pages.
std::string PagesOf(const SheetLayout& layout) {
  std::string text;
  for (const SheetPage& page : layout.pages) {
    if (&page != &layout.pages.front()) text += "| ";
    for (const std::size_t object : page.objects) text += std::to_string(object) + " ";
  }
  if (!text.empty()) text.pop_back();
  return text;
}

bool Holds(const SheetFrame& area, const SheetFrame& frame) {
  return frame.left >= area.left - kNowhere && frame.top >= area.top - kNowhere &&
         frame.right() <= area.right() + kNowhere && frame.bottom() <= area.bottom() + kNowhere;
}

// Each object whole on exactly one page, and every page's area within the room.
void ExpectAllWhole(const Objects& objects, const SheetLayout& layout, float width, float height) {
  std::vector<int> times(objects.size(), 0);
  for (const SheetPage& page : layout.pages) {
    EXPECT_LE(page.area.width * layout.scale, width + 0.1F);
    EXPECT_LE(page.area.height * layout.scale, height + 0.1F);
    for (const std::size_t i : page.objects) {
      ++times[i];
      EXPECT_TRUE(Holds(page.area, objects[i].frame)) << i;
    }
  }
  for (std::size_t i = 0; i < times.size(); ++i) EXPECT_EQ(times[i], 1) << i;
}

TEST(SheetLayout, OfAFormWithoutObjectsIsOneEmptyPage) {
  const SheetLayout layout = Lay({});
  ASSERT_EQ(layout.pages.size(), 1U);
  EXPECT_TRUE(layout.pages[0].objects.empty());
}

TEST(SheetLayout, ShowsThePartThatHoldsObjectsWithAMargin) {
  const SheetLayout layout = Lay({At(1000, 2000), At(4000, 5000)});
  ASSERT_EQ(layout.pages.size(), 1U);
  EXPECT_EQ(layout.pages[0].area, (SheetFrame{850, 1850, 5300, 3600}));
}

TEST(SheetLayout, NeverEnlarges) {
  EXPECT_EQ(Lay({At(0, 0)}).scale, 1.0F);
  EXPECT_EQ(Lay({At(0, 0, 9700)}).scale, 1.0F);
}

TEST(SheetLayout, ReducesUntilTheWidthFits) {
  const Objects objects = {At(0, 0), At(17'700, 0)};
  const SheetLayout layout = Lay(objects);
  EXPECT_NEAR(layout.scale, 0.5, 1e-6);
  EXPECT_EQ(PagesOf(layout), "0 1");
  EXPECT_NEAR(layout.pages[0].area.width * layout.scale, kRoomWidth, 0.1);
}

TEST(SheetLayout, HoldsObjectsAtNegativePlaces) {
  const SheetLayout layout = Lay({At(-3000, -2000), At(0, 0)});
  ASSERT_EQ(PagesOf(layout), "0 1");
  EXPECT_EQ(layout.pages[0].area, (SheetFrame{-3150, -2150, 5300, 2600}));
}

TEST(SheetLayout, GoesOnOnAFurtherPageAboveTheFirstObjectThatDoesNotFit) {
  const Objects objects = {At(0, 0), At(0, 9400), At(0, 9800), At(0, 19'000), At(0, 19'600)};
  const SheetLayout layout = Lay(objects);
  EXPECT_EQ(layout.scale, 1.0F);
  EXPECT_EQ(PagesOf(layout), "0 1 | 2 3 | 4");
  EXPECT_EQ(layout.pages[1].area.top, 9650.0F);
}

TEST(SheetLayout, AnObjectThatJustFitsIsNotMovedToTheNextPage) {
  EXPECT_EQ(PagesOf(Lay({At(0, 0), At(0, 9400)})), "0 1");
  EXPECT_EQ(PagesOf(Lay({At(0, 0), At(0, 9401)})), "0 | 1");
}

TEST(SheetLayout, ABreakMovesUpUntilItCutsNothing) {
  // Object 2 does not fit, 1 lies across its top, and 3 across the top of 1.
  const Objects objects = {At(0, 0), At(3000, 9200, 500, 500), At(0, 9600),
                           At(6000, 9000, 500, 400)};
  EXPECT_EQ(PagesOf(Lay(objects)), "0 | 1 2 3");
}

TEST(SheetLayout, WhereEveryBreakWouldCutEachObjectGoesWholeToOnePage) {
  Objects stairs;
  for (int i = 0; i < 120; ++i) stairs.push_back(At(0, static_cast<float>(i) * 200));
  const SheetLayout layout = Lay(stairs);
  EXPECT_EQ(layout.pages.size(), 3U);
  ExpectAllWhole(stairs, layout, kRoomWidth, kRoomHeight);
}

TEST(SheetLayout, AGroupStaysTogetherWhereverItsObjectsStandInTheList) {
  const Objects objects = {At(0, 0), At(0, 9000, 2000, 300, 7), At(4000, 0),
                           At(2000, 9000, 2000, 600, 7)};
  EXPECT_EQ(PagesOf(Lay(objects)), "0 1 2 3");
  const Objects low = {At(0, 0), At(0, 9300, 2000, 300, 7), At(4000, 0),
                       At(2000, 9300, 2000, 600, 7)};
  EXPECT_EQ(PagesOf(Lay(low)), "0 2 | 1 3");
}

TEST(SheetLayout, AnObjectTallerThanAPageIsCutAtThePagesEnd) {
  const SheetLayout layout = Lay({At(0, 0), At(0, 1000, 2000, 30'000), At(0, 40'000)});
  EXPECT_EQ(PagesOf(layout), "0 | 1 | 2");
  EXPECT_EQ(layout.pages[1].area.top, 850.0F);
  EXPECT_EQ(layout.pages[1].area.height, kRoomHeight);
}

TEST(SheetLayout, AFreePartOfTheFormTakesNoPage) {
  EXPECT_EQ(PagesOf(Lay({At(0, 0), At(0, 500'000)})), "0 | 1");
}

TEST(SheetLayout, AVeryWideFormGoesOnPagesSideBySideAndStaysReadable) {
  const Objects objects = {At(0, 0), At(40'000, 0), At(0, 40'000), At(40'000, 40'000)};
  const SheetLayout layout = Lay(objects);
  EXPECT_EQ(layout.scale, kLeastScale);
  EXPECT_EQ(PagesOf(layout), "0 | 2 | 1 | 3");
  ExpectAllWhole(objects, layout, kRoomWidth, kRoomHeight);
}

TEST(SheetLayout, AFormAtTheLeastScaleStaysOnOnePage) {
  const float widest = kRoomWidth / kLeastScale - 300;
  EXPECT_EQ(PagesOf(Lay({At(0, 0), At(widest - 2010, 0)})), "0 1");
  EXPECT_EQ(PagesOf(Lay({At(0, 0), At(widest - 1990, 0)})), "0 | 1");
}

TEST(SheetLayout, AnObjectAsWideAsCanBeStandsWholeOnItsPage) {
  const Objects objects = {At(0, 0, WidestOnPage(kRoomWidth)), At(30'000, 0)};
  ExpectAllWhole(objects, Lay(objects), kRoomWidth, kRoomHeight);
}

TEST(SheetLayout, WhatBelongsTogetherAndStandsCloseByStaysOnOnePage) {
  const float edge = kRoomWidth / kLeastScale - 300;
  const Objects apart = {At(0, 0), At(edge - 2100, 0, 2100, 300), At(edge, 0, 1800, 300)};
  EXPECT_EQ(PagesOf(Lay(apart)), "0 1 | 2");
  const Objects together = {At(0, 0), At(edge - 2100, 0, 2100, 300, 7), At(edge, 0, 1800, 300, 7)};
  EXPECT_EQ(PagesOf(Lay(together)), "0 | 1 2");
  const Objects down = {At(0, 0), At(0, 9000, 2000, 300, 7), At(0, 9500, 2000, 300, 7)};
  EXPECT_EQ(PagesOf(Lay(down)), "0 | 1 2");
}

TEST(SheetLayout, WhatBelongsTogetherButStandsFarApartGoesWhereItStands) {
  EXPECT_EQ(PagesOf(Lay({At(0, 0, 2000, 300, 7), At(0, 20'000, 2000, 300, 7)})), "0 | 1");
}

TEST(SheetLayout, OnPaperWithoutRoomStillComesToAnEnd) {
  const Objects objects = {At(-300'000, -300'000), At(300'000, 300'000), At(0, 0)};
  for (const float room : {0.0F, -100.0F}) {
    const SheetLayout layout = LayOut(objects, room, room);
    EXPECT_EQ(PagesOf(layout), "0 | 2 | 1");
  }
}

TEST(SheetLayout, LosesAndCutsNothingWhereverObjectsStand) {
  for (unsigned seed = 1; seed <= 200; ++seed) {
    std::mt19937 random(seed);
    const auto any = [&random](float from, float to) {
      return std::uniform_real_distribution<float>(from, to)(random);
    };
    const float width = any(5000, 17'000);
    const float height = any(5000, 17'000);
    const float reach = any(1000, 80'000);
    Objects objects;
    const int count = 1 + static_cast<int>(any(0, 300));
    for (int i = 0; i < count; ++i) {
      objects.push_back(
          At(any(-reach, reach), any(-reach, reach), any(100, 2100), any(100, 900), 1 + i / 3));
    }
    SCOPED_TRACE("seed " + std::to_string(seed));
    ExpectAllWhole(objects, LayOut(objects, width, height), width, height);
    if (::testing::Test::HasFailure()) return;
  }
}

}  // namespace
}  // namespace tarnlink
