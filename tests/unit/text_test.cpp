#include "common/text.h"

#include <gtest/gtest.h>

#include <string>

namespace tarnlink {
namespace {

TEST(Stuff, PutsZerosInFrontUpToTheLength) {
  EXPECT_EQ(Stuff("A", 2), "0A");
  EXPECT_EQ(Stuff("", 4), "0000");
  EXPECT_EQ(Stuff("12", 2), "12");
}

TEST(Stuff, LeavesALongerTextWhole) {
  EXPECT_EQ(Stuff("ABC", 2), "ABC");
  EXPECT_EQ(Stuff("ABC", 0), "ABC");
  EXPECT_EQ(Stuff("ABC", -1), "ABC");
}

TEST(Stuff, CountsTheBytesOfAFrame) { EXPECT_EQ(Stuff("\x81\x90", 2), "\x81\x90"); }

TEST(RightAlign, PutsBlanksInFrontUpToTheLength) {
  EXPECT_EQ(RightAlign("5", 2), " 5");
  EXPECT_EQ(RightAlign("", 2), "  ");
  EXPECT_EQ(RightAlign("123", 2), "123");
  EXPECT_EQ(RightAlign("1", -1), "1");
}

TEST(Right, GivesTheEndOfTheText) {
  EXPECT_EQ(Right("00001F", 4), "001F");
  EXPECT_EQ(Right("1F", 4), "1F");
  EXPECT_EQ(Right("1F", 0), "");
  EXPECT_EQ(Right("1F", -1), "");
  EXPECT_EQ(Right("", 2), "");
}

TEST(Mid, CountsPositionsFromOne) {
  EXPECT_EQ(Mid("abcdef", 1, 2), "ab");
  EXPECT_EQ(Mid("abcdef", 3, 3), "cde");
  EXPECT_EQ(Mid("abcdef", 6, 1), "f");
}

TEST(Mid, IsShortOrEmptyBeyondTheEnd) {
  EXPECT_EQ(Mid("abc", 3, 5), "c");
  EXPECT_EQ(Mid("abc", 4, 1), "");
  EXPECT_EQ(Mid("abc", 100, 1), "");
  EXPECT_EQ(Mid("", 1, 1), "");
  EXPECT_EQ(Mid("abc", 2, 0), "");
  EXPECT_EQ(Mid("abc", 2, -1), "");
  EXPECT_EQ(Mid("abc", 0, 2), "ab");
  EXPECT_EQ(Mid("abc", -5, 2), "ab");
}

TEST(Trim, CutsBlanksButNoOtherWhiteSpace) {
  EXPECT_EQ(Trim("  a b  "), "a b");
  EXPECT_EQ(Trim("   "), "");
  EXPECT_EQ(Trim(""), "");
  EXPECT_EQ(Trim("\ta\r\n"), "\ta\r\n");
}

TEST(Case, ChangesAsciiLettersOnly) {
  EXPECT_EQ(ToUpper("1fz_\xC3\xA9"), "1FZ_\xC3\xA9");
  EXPECT_EQ(ToUpper("`az{|}~"), "`AZ{|}~");
  EXPECT_EQ(ToLower("1FZ@[\xC3\x89"), "1fz@[\xC3\x89");
}

TEST(WithoutQuotes, ReplacesQuotesByBlanksAndCutsTheEnds) {
  EXPECT_EQ(WithoutQuotes("a\"b"), "a b");
  EXPECT_EQ(WithoutQuotes(" \"Flow\" "), "Flow");
  EXPECT_EQ(WithoutQuotes("\"\"\""), "");
  EXPECT_EQ(WithoutQuotes("it's"), "it's");
}

TEST(IsBlank, SeesBlanksAndTabsOnly) {
  for (const char* line : {"", " ", "\t", " \t "}) EXPECT_TRUE(IsBlank(line));
  for (const char* line : {"a", " a", "\r", "\xC2\xA0"}) EXPECT_FALSE(IsBlank(line));
}

TEST(TimesText, HasAWordForOne) {
  EXPECT_EQ(TimesText(1), "once");
  EXPECT_EQ(TimesText(2), "2 times");
}

TEST(CharacterCount, CountsCharactersNotBytes) {
  EXPECT_EQ(CharacterCount(""), 0);
  EXPECT_EQ(CharacterCount("abc"), 3);
  EXPECT_EQ(CharacterCount("\xC2\xB0"
                           "C"),
            2);
  EXPECT_EQ(CharacterCount("\xE2\x82\xAC\xF0\x9F\x94\xA5"), 2);
}

}  // namespace
}  // namespace tarnlink
