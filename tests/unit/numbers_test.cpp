#include "common/numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "common/run_time_error.h"
#include "common/shown_text.h"

namespace tarnlink {
namespace {

// "ok", or the code and the reason of the error.
template <class Read>
std::string Outcome(Read read) {
  try {
    read();
    return "ok";
  } catch (const RunTimeError& error) {
    return std::to_string(error.code()) + " " + error.what();
  }
}

struct ValCase {
  std::string text;
  double value;
};

TEST(Val, ReadsDecimalNumbers) {
  const std::vector<ValCase> cases = {
      {"0", 0},        {"12", 12},       {"-5", -5},
      {"+7", 7},       {"007", 7},       {"   42", 42},
      {"1.5", 1.5},    {".25", 0.25},    {"-.5", -0.5},
      {"3.", 3},       {"1E3", 1000},    {"1e-3", 0.001},
      {"2.5E+2", 250}, {"32768", 32768}, {"99999999999", 99999999999.0},
  };
  for (const ValCase& c : cases) EXPECT_EQ(Val(c.text), c.value) << '"' << c.text << '"';
}

TEST(Val, StopsAtTheFirstCharacterThatDoesNotFit) {
  const std::vector<ValCase> cases = {
      {"12abc", 12},
      {"1,5", 1},
      {"1.2.3", 1.2},
      {"1 2", 1},
      {"5-3", 5},
      {"12E", 12},
      {"12E+", 12},
      {"12Ex", 12},
      {"3\xC2\xB0"
       "C",
       3},
      {"7\t", 7},
      {"&H1G", 1},
      {"&H12.5", 18},
      {"&O78", 7},
      {"&HFF FF", 255},
      {"0x10", 0},
  };
  for (const ValCase& c : cases) EXPECT_EQ(Val(c.text), c.value) << '"' << c.text << '"';
}

TEST(Val, GivesZeroWithoutDigits) {
  for (const std::string text :
       {"",    " ",   "abc", "-",     "+",   ".",   "-.",     "E5",  ".E5",
        "--5", "+-5", "- 5", "\t5",   "&",   "&H",  "&O",     "&X1", "& H1",
        "&HG", "&O8", "&H&", "-&H10", "nan", "inf", "#TRUE#", "\xFF"}) {
    EXPECT_EQ(Val(text), 0) << '"' << text << '"';
  }
  EXPECT_EQ(Val(std::string_view("\0"
                                 "5",
                                 2)),
            0);
}

TEST(Val, TakesHexadecimalOfUpToFourDigitsAsSixteenBitsAndOfUpToEightAsThirtyTwo) {
  const std::vector<ValCase> cases = {
      {"&H0", 0},
      {"&HA", 10},
      {"&hff", 255},
      {"  &H7FFF", 32767},
      {"&H8000", -32768},
      {"&HFFFF", -1},
      {"&H08000", 32768},
      {"&H0FFFF", 65535},
      {"&H10000", 65536},
      {"&H7FFFFFFF", 2147483647},
      {"&H80000000", -2147483648.0},
      {"&HFFFFFFFF", -1},
      {"&HFFFF8001", -32767},
      {"&H00008000", 32768},
      {"&H123456789", 0x12345678},
      {"&H000000012", 1},
  };
  for (const ValCase& c : cases) EXPECT_EQ(Val(c.text), c.value) << c.text;
}

TEST(Val, TakesATrailingAmpersandAsThirtyTwoBitsThatAreNotNegative) {
  const std::vector<ValCase> cases = {{"&HFFFF&", 65535},
                                      {"&H8000&", 32768},
                                      {"&HFFFFFFFF&", 4294967295.0},
                                      {"&O177777&", 65535},
                                      {"&HFFFF &", -1}};
  for (const ValCase& c : cases) EXPECT_EQ(Val(c.text), c.value) << c.text;
}

TEST(Val, TakesOctalByItsValueAsSixteenOrThirtyTwoBits) {
  const std::vector<ValCase> cases = {
      {"&O17", 15},     {"&o377", 255},      {"&O77777", 32767},    {"&O100000", -32768},
      {"&O177777", -1}, {"&O200000", 65536}, {"&O37777777777", -1}, {"&O40000000000", 536870912}};
  for (const ValCase& c : cases) EXPECT_EQ(Val(c.text), c.value) << c.text;
}

TEST(Val, HoldsWhatIsTooGreatAtTheGreatestNumber) {
  constexpr double kMost = std::numeric_limits<double>::max();
  EXPECT_EQ(Val("1E999"), kMost);
  EXPECT_EQ(Val("-1E999"), -kMost);
  EXPECT_EQ(Val("1E99999999999999999999"), kMost);
  EXPECT_EQ(Val("10E9223372036854775807"), kMost) << "The greatest exponent that has 64 bits.";
  EXPECT_EQ(Val("0.1E-9223372036854775807"), 0);
  EXPECT_EQ(Val(std::string(400, '9')), kMost);
  EXPECT_EQ(Val("1E-999"), 0);
  EXPECT_EQ(Val("1E-99999999999999999999"), 0);
  EXPECT_EQ(Val("0." + std::string(400, '0') + "1"), 0);
  EXPECT_EQ(Val("0E999"), 0);
}

TEST(ValInt, CutsTowardsZeroAndHoldsTheNumberInItsRange) {
  EXPECT_EQ(ValInt("2.9", 0, 10), 2);
  EXPECT_EQ(ValInt("-2.9", -10, 10), -2);
  EXPECT_EQ(ValInt("-1", 0, 10), 0);
  EXPECT_EQ(ValInt("11", 0, 10), 10);
  EXPECT_EQ(ValInt("1E999", 0, 10), 10);
  EXPECT_EQ(ValInt("", 3, 10), 3);
  constexpr int kMost = std::numeric_limits<int>::max();
  constexpr int kLeast = std::numeric_limits<int>::min();
  EXPECT_EQ(ValInt("1E999", kLeast, kMost), kMost);
  EXPECT_EQ(ValInt("-1E999", kLeast, kMost), kLeast);
}

TEST(Hex, GivesUpperCaseDigitsWithoutLeadingZeros) {
  EXPECT_EQ(Hex(0), "0");
  EXPECT_EQ(Hex(10), "A");
  EXPECT_EQ(Hex(255), "FF");
  EXPECT_EQ(Hex(32768), "8000");
  EXPECT_EQ(Hex(65536), "10000");
}

TEST(Hex, GivesTheTwosComplementOfTheNarrowestWidthThatHoldsANegativeNumber) {
  EXPECT_EQ(Hex(-1), "FFFF");
  EXPECT_EQ(Hex(-32768), "8000");
  EXPECT_EQ(Hex(-32769), "FFFF7FFF");
  EXPECT_EQ(Hex(-2147483648LL), "80000000");
}

TEST(Oct, FollowsTheRulesOfHex) {
  EXPECT_EQ(Oct(0), "0");
  EXPECT_EQ(Oct(8), "10");
  EXPECT_EQ(Oct(255), "377");
  EXPECT_EQ(Oct(-1), "177777");
  EXPECT_EQ(Oct(-32769), "37777677777");
}

TEST(Hex32, GivesEveryNegativeNumberEightDigits) {
  EXPECT_EQ(Hex32(-1), "FFFFFFFF");
  EXPECT_EQ(Hex32(-32767), "FFFF8001");
  EXPECT_EQ(Hex32(32767), "7FFF");
}

TEST(Oct32, GivesEveryNegativeNumberElevenDigits) {
  EXPECT_EQ(Oct32(-1), "37777777777");
  EXPECT_EQ(Oct32(-32768), "37777700000");
  EXPECT_EQ(Oct32(255), "377");
}

TEST(Str, PutsABlankInFrontOfANumberThatIsNotNegative) {
  EXPECT_EQ(Str(0), " 0");
  EXPECT_EQ(Str(62), " 62");
  EXPECT_EQ(Str(-5), "-5");
}

TEST(FormatSingle, GivesTheShortestTextWithAPointAndNeverAnExponent) {
  EXPECT_EQ(FormatSingle(0.0F), "0");
  EXPECT_EQ(FormatSingle(-0.0F), "0");
  EXPECT_EQ(FormatSingle(600.0F), "600");
  EXPECT_EQ(FormatSingle(8.25F), "8.25");
  EXPECT_EQ(FormatSingle(0.1F), "0.1");
  EXPECT_EQ(FormatSingle(-0.5F), "-0.5");
  EXPECT_EQ(FormatSingle(1e-7F), "0.0000001");
  EXPECT_EQ(FormatSingle(1e10F), "10000000000");
}

TEST(FormatSingle, GivesANumberForWhatIsNone) {
  EXPECT_EQ(FormatSingle(std::nanf("")), "0");
  EXPECT_EQ(ToSingle(FormatSingle(INFINITY)), std::numeric_limits<float>::max());
  EXPECT_EQ(ToSingle(FormatSingle(-INFINITY)), -std::numeric_limits<float>::max());
}

TEST(FormatSingle, ReadsBackAsTheSameNumber) {
  std::mt19937 random(20240229);
  for (int i = 0; i < 20000; ++i) {
    const auto bits = static_cast<std::uint32_t>(random());
    float number = 0;
    std::memcpy(&number, &bits, sizeof number);
    if (!std::isfinite(number)) continue;
    const std::string text = FormatSingle(number);
    ASSERT_EQ(ToSingle(text), number) << text;
    ASSERT_EQ(text.find_first_not_of("-.0123456789"), std::string::npos) << text;
  }
}

TEST(StrictNumbers, TakeABareNumberWithBlanksAroundIt) {
  EXPECT_EQ(ToByte("0"), 0);
  EXPECT_EQ(ToByte(" 255 "), 255);
  EXPECT_EQ(ToInteger("-32768"), -32768);
  EXPECT_EQ(ToInteger("+32767"), 32767);
  EXPECT_EQ(ToLong("-2147483648"), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(ToLong("2147483647"), std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(ToLong("1E3"), 1000);
  EXPECT_EQ(ToSingle("8.25"), 8.25F);
  EXPECT_EQ(ToSingle(".5"), 0.5F);
  EXPECT_EQ(ToSingle("1E-05"), 1e-5F);
  EXPECT_EQ(ToSingle("1E-99"), 0.0F);
}

TEST(StrictNumbers, RoundAFractionToTheNearestAndTiesToEven) {
  EXPECT_EQ(ToByte("2.5"), 2);
  EXPECT_EQ(ToByte("3.5"), 4);
  EXPECT_EQ(ToByte("255.4"), 255);
  EXPECT_EQ(ToByte("-0.5"), 0);
  EXPECT_EQ(ToInteger("-1.5"), -2);
  EXPECT_EQ(ToLong("0.51"), 1);
}

TEST(StrictNumbers, RefuseWhatIsNoNumberWithCode13) {
  for (const std::string text :
       {"",   " ",   "-",  "+",    ".",    "-.",     "abc", "12abc", "1 2", "1,5", "1.2.3", "--1",
        "1E", "1E+", "E5", "&H10", "0x10", "#TRUE#", "nan", "inf",   "\t1", "1\r", "\xFF"}) {
    const std::string shown = "13 \"" + ShownText(text) + "\" is no number.";
    EXPECT_EQ(Outcome([&] { ToByte(text); }), shown);
    EXPECT_EQ(Outcome([&] { ToInteger(text); }), shown);
    EXPECT_EQ(Outcome([&] { ToLong(text); }), shown);
    EXPECT_EQ(Outcome([&] { ToSingle(text); }), shown);
  }
}

TEST(StrictNumbers, RefuseWhatIsOutOfTheirRangeWithCode6) {
  EXPECT_EQ(Outcome([] { ToByte("256"); }), "6 \"256\" is not between 0 and 255.");
  EXPECT_EQ(Outcome([] { ToByte("-1"); }), "6 \"-1\" is not between 0 and 255.");
  EXPECT_EQ(Outcome([] { ToByte("255.5"); }), "6 \"255.5\" is not between 0 and 255.");
  EXPECT_EQ(Outcome([] { ToInteger("32768"); }), "6 \"32768\" is not between -32768 and 32767.");
  EXPECT_EQ(Outcome([] { ToInteger("-32769"); }), "6 \"-32769\" is not between -32768 and 32767.");
  EXPECT_EQ(Outcome([] { ToLong("2147483648"); }),
            "6 \"2147483648\" is not between -2147483648 and 2147483647.");
  EXPECT_EQ(Outcome([] { ToLong("1E999"); }),
            "6 \"1E999\" is not between -2147483648 and 2147483647.");
  EXPECT_EQ(Outcome([] { ToSingle("3.5E38"); }),
            "6 \"3.5E38\" is too great for a number of this kind.");
}

TEST(StrictNumbers, ShowNoMoreThanTheBeginningOfALongText) {
  const std::string long_text(1 << 20, 'x');
  EXPECT_EQ(Outcome([&] { ToLong(long_text); }),
            "13 \"" + std::string(32, 'x') + "...\" is no number.");
  // The cut falls between characters: the 16 two-byte ones end at 32, the odd byte moves that.
  std::string accents = "x";
  for (int i = 0; i < 20; ++i) accents += "\xC3\xA9";
  EXPECT_EQ(Outcome([&] { ToLong(accents); }),
            "13 \"" + accents.substr(0, 31) + "...\" is no number.");
}

TEST(StrictNumbers, ShowNoControlCharacters) {
  const std::string text("1\0\n2", 4);
  EXPECT_EQ(Outcome([&] { ToLong(text); }), "13 \"1  2\" is no number.");
}

}  // namespace
}  // namespace tarnlink
