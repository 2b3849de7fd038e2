#include "common/local_decimal.h"

#include <gtest/gtest.h>

#include <string>

#include "support/fake_locale.h"

namespace tarnlink {
namespace {

TEST(LocalizeDecimal, WithAPointTurnsEveryCommaIntoOne) {
  EXPECT_EQ(LocalizeDecimal("1,5", "."), "1.5");
  EXPECT_EQ(LocalizeDecimal("1.5", "."), "1.5");
  EXPECT_EQ(LocalizeDecimal("1,234.5", "."), "1.234.5");
  EXPECT_EQ(LocalizeDecimal(",,", "."), "..");
}

TEST(LocalizeDecimal, WithACommaTurnsEveryPointIntoOne) {
  EXPECT_EQ(LocalizeDecimal("1.5", ","), "1,5");
  EXPECT_EQ(LocalizeDecimal("1,5", ","), "1,5");
  EXPECT_EQ(LocalizeDecimal("1.234,5", ","), "1,234,5");
  EXPECT_EQ(LocalizeDecimal("..", ","), ",,");
}

TEST(LocalizeDecimal, WithAnotherSeparatorTurnsPointsIntoItAndLeavesCommas) {
  EXPECT_EQ(LocalizeDecimal("1.5,2", "\xD9\xAB"),
            "1\xD9\xAB"
            "5,2");
}

TEST(LocalizeDecimal, LeavesEverythingElse) {
  EXPECT_EQ(LocalizeDecimal("", "."), "");
  EXPECT_EQ(LocalizeDecimal("-12e3 \xC2\xB0"
                            "C",
                            ","),
            "-12e3 \xC2\xB0"
            "C");
}

TEST(LocalizeDecimal, TakesTheSeparatorOfTheLocale) {
  FakeLocale locale;
  EXPECT_EQ(LocalizeDecimal("1,5", locale.DecimalSeparator()), "1.5");
  locale.SetDecimalSeparator(",");
  EXPECT_EQ(LocalizeDecimal("1.5", locale.DecimalSeparator()), "1,5");
}

}  // namespace
}  // namespace tarnlink
