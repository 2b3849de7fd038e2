// How a message quotes what somebody else wrote.

#include "common/shown_text.h"

#include <gtest/gtest.h>

#include "common/text.h"
#include "common/text_file.h"

namespace tarnlink {
namespace {

TEST(ShownText, OfAShortTextIsTheText) {
  EXPECT_EQ(ShownText(""), "");
  EXPECT_EQ(ShownText("Wärme 5 °C"), "Wärme 5 °C");
  EXPECT_EQ(ShownText("a\tb"), "a\tb");
}

TEST(ShownText, HasABlankForEachControlCharacter) {
  EXPECT_EQ(ShownText(std::string("a\0b\r\nc\x1B\x7F", 8)), "a b  c  ");
  EXPECT_EQ(ShownText("a\xC2\x80\xC2\x9F°"), "a  °");
}

TEST(ShownText, OfACellKeepsToItsColumn) {
  EXPECT_EQ(ShownText("a\tb"), "a\tb");
  EXPECT_EQ(ShownCell("a\tb\n\t"), "a b  ");
  EXPECT_EQ(ShownCell(std::string(1 << 20, 'x')), ShownText(std::string(1 << 20, 'x')));
}

TEST(ShownText, EndsBehindSoManyCharacters) {
  EXPECT_EQ(ShownText("Wärme", 5), "Wärme");
  EXPECT_EQ(ShownText("Wärmer", 5), "Wärme...");
  EXPECT_EQ(ShownText("Wärme", 0), "...");
  std::string fires;
  for (int i = 0; i < 300; ++i) fires += "\xF0\x9F\x94\xA5";
  EXPECT_EQ(ShownText(fires), fires.substr(0, 800) + "...");
  EXPECT_EQ(ShownText(std::string(1 << 20, 'x')), std::string(kMostShown, 'x') + "...");
}

TEST(ShownText, OfBytesIsTextAllTheSame) {
  EXPECT_EQ(ShownText("5 \xB0"), "5 °");
  for (int byte = 0; byte < 256; ++byte) {
    for (const int count : {1, 799, 803, 804, 805, 900}) {
      const std::string shown =
          ShownText(std::string(static_cast<std::size_t>(count), static_cast<char>(byte)));
      EXPECT_EQ(DecodeText(shown), shown) << byte;
      EXPECT_LE(CharacterCount(shown), kMostShown + 3) << byte;
    }
  }
}

}  // namespace
}  // namespace tarnlink
