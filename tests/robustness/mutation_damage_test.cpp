// The generators of damaged files: what they damage, how often, and that all else stays.
#include "robustness/mutation_damage.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace tarnlink {
namespace {

using namespace std::string_literals;

constexpr Places kAll;

class Kept {
 public:
  TakeDamage Take() {
    return [this](const Damage& damage) {
      files.push_back(damage.bytes);
      told.push_back(damage.Describe());
      return true;
    };
  }

  std::vector<std::string> files;
  std::vector<std::string> told;
};

TEST(Damage, CutsInFrontOfEveryByteAndNotAtAll) {
  Kept kept;
  Prefixes("abc", kAll, kept.Take());
  EXPECT_EQ(kept.files, (std::vector<std::string>{"", "a", "ab", "abc"}));
  EXPECT_EQ(kept.told.back(), "prefix at 3");
}

TEST(Damage, TurnsTheBitsOfEachMaskAround) {
  Kept kept;
  const std::vector<unsigned char> masks = {0x01, 0xFF};
  Flips("aB", kAll, masks, {}, kept.Take());
  EXPECT_EQ(kept.files, (std::vector<std::string>{"`B",
                                                  "\x9E"
                                                  "B",
                                                  "aC", "a\xBD"}));
  EXPECT_EQ(kept.told.back(), "flip at 1: mask 255");
}

TEST(Damage, GivesEveryPlaceItsTurnOfTheValues) {
  Kept kept;
  const std::vector<std::string> values = {"a", "b", "c"};
  Numbers("1 2 3 4", kAll, values, {3}, kept.Take());
  EXPECT_EQ(kept.files, (std::vector<std::string>{"a 2 3 4", "1 c 3 4", "1 2 b 4", "1 2 3 a"}));
  kept.files.clear();
  const std::vector<unsigned char> masks = {0x01, 0x02};
  Flips("@@@", kAll, masks, {2}, kept.Take());
  EXPECT_EQ(kept.files, (std::vector<std::string>{"A@@", "@B@", "@@A"}));
}

TEST(Damage, DoublesRemovesAndSwapsEveryLineWithItsEnd) {
  Kept kept;
  LineFaults("a\r\nb\nc", kAll, kept.Take());
  EXPECT_EQ(kept.files,
            (std::vector<std::string>{"a\r\na\r\nb\nc", "b\nc", "b\na\r\nc", "a\r\nb\nb\nc",
                                      "a\r\nc", "a\r\ncb\n", "a\r\nb\ncc", "a\r\nb\n"}));
}

TEST(Damage, PutsNulsInAndInPlaceAndOverTheEnd) {
  Kept kept;
  NulBytes("ab", kAll, kept.Take());
  EXPECT_EQ(kept.files,
            (std::vector<std::string>{"\0ab"s, "\0b"s, "a\0b"s, "a\0"s, "\0\0"s, "a\0"s, "ab"s}));
}

TEST(Damage, PutsValuesInPlaceOfNumbersOnly) {
  Kept kept;
  const std::vector<std::string> values = {"x"};
  Numbers("L0,-12 a-3;\"01A0\"\t8.25h\n&H5 v7", kAll, values, {}, kept.Take());
  EXPECT_EQ(kept.files,
            (std::vector<std::string>{
                "L0,x a-3;\"01A0\"\t8.25h\n&H5 v7", "L0,-12 a-x;\"01A0\"\t8.25h\n&H5 v7",
                "L0,-12 a-3;\"x\"\t8.25h\n&H5 v7", "L0,-12 a-3;\"01A0\"\tx\n&H5 v7"}));
}

TEST(Damage, MakesLinesLongWithoutTouchingTheOthers) {
  Kept kept;
  LongLines("one\r\ntwo\r\n", 4, kept.Take());
  EXPECT_EQ(kept.files,
            (std::vector<std::string>{"oneAAAA\r\ntwo\r\n", "one\r\ntwo7777\r\n",
                                      "one\r\n\xE4\xE4\xE4\xE4two\r\n", "one\r\ntwo\r\n    "}));
}

TEST(Damage, TakesAllOfTheHeadAndEveryFewBehindItAndTheLast) {
  EXPECT_EQ((Places{}.Of(4)), (std::vector<std::size_t>{0, 1, 2, 3}));
  EXPECT_EQ((Places{3, 4}.Of(12)), (std::vector<std::size_t>{0, 1, 2, 6, 10, 11}));
  EXPECT_EQ((Places{0, 5}.Of(11)), (std::vector<std::size_t>{0, 5, 10}));
  EXPECT_EQ((Places{3, 4}.Of(1)), (std::vector<std::size_t>{0}));
  EXPECT_TRUE((Places{3, 4}.Of(0)).empty());
}

TEST(Damage, EndsWhenNoMoreIsWanted) {
  int taken = 0;
  const TakeDamage two = [&](const Damage& /*damage*/) { return ++taken < 2; };
  EXPECT_FALSE(Prefixes("abcdef", kAll, two));
  EXPECT_EQ(taken, 2);
  EXPECT_FALSE(LineFaults("a\nb\n", kAll, [](const Damage& /*damage*/) { return false; }));
}

TEST(Damage, KnowsTheEdgesOfEveryTypeOnce) {
  const std::vector<std::string>& numbers = EdgeNumbers();
  const std::set<std::string> all(numbers.begin(), numbers.end());
  EXPECT_EQ(all.size(), numbers.size());
  for (const char* edge : {"32767", "32768", "-32768", "-32769", "65535", "65536", "2147483647",
                           "2147483648", "1e308", "1e309", "-0", "NaN", "inf"}) {
    EXPECT_TRUE(all.contains(edge)) << edge;
  }
}

}  // namespace
}  // namespace tarnlink
