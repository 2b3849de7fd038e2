#include "common/text_file.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "support/pieces.h"
#include "support/prefixes.h"

namespace tarnlink {
namespace {

const std::string kEuro = "\xE2\x82\xAC";
const std::string kDegree = "\xC2\xB0";

std::vector<std::string> Lines(std::string_view text) {
  std::vector<std::string> lines;
  LineReader reader(text);
  std::string_view line;
  while (reader.Next(line)) lines.emplace_back(line);
  return lines;
}

TEST(DecodeText, TakesValidUtf8AsItIs) {
  for (const std::string& text :
       {std::string(), std::string("plain"), kDegree + "C", kEuro, std::string("\xF0\x9F\x94\xA5"),
        std::string("\xEF\xBF\xBD"), std::string("\xED\x9F\xBF"), std::string("\xF4\x8F\xBF\xBF"),
        std::string("a\0b", 3)}) {
    EXPECT_EQ(DecodeText(text), text);
  }
}

TEST(DecodeText, DropsAByteOrderMark) {
  EXPECT_EQ(DecodeText("\xEF\xBB\xBF"
                       "abc"),
            "abc");
  EXPECT_EQ(DecodeText("\xEF\xBB\xBF"), "");
}

TEST(DecodeText, TakesEverythingElseAsWindows1252) {
  EXPECT_EQ(DecodeText("\xB0"
                       "C"),
            kDegree + "C");
  EXPECT_EQ(DecodeText("\x80"), kEuro);
  EXPECT_EQ(DecodeText("\x9F\xA0\xFF"), "\xC5\xB8\xC2\xA0\xC3\xBF");
  EXPECT_EQ(DecodeText("\x81"), "\xC2\x81");
  // One bad byte decides for the whole text.
  EXPECT_EQ(DecodeText("\xC3\xA9\xE9"), "\xC3\x83\xC2\xA9\xC3\xA9");
}

TEST(DecodeText, TakesNearlyValidUtf8AsWindows1252) {
  for (const std::string bytes :
       {"\x80", "\xBF", "\xC2", "\xC2 ", "\xC0\x80", "\xC1\xBF", "\xE2\x82", "\xE0\x9F\xBF",
        "\xED\xA0\x80", "\xED\xBF\xBF", "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80",
        "\xF8\x88\x80\x80\x80", "\xFF", "\xFE"}) {
    const std::string text = DecodeText(bytes);
    EXPECT_NE(text, bytes);
    EXPECT_EQ(EncodeText(text), bytes);
  }
}

TEST(EncodeText, WritesWindows1252WhenEveryCharacterFits) {
  EXPECT_EQ(EncodeText("plain"), "plain");
  EXPECT_EQ(EncodeText(kDegree + "C"),
            "\xB0"
            "C");
  EXPECT_EQ(EncodeText(kEuro), "\x80");
}

TEST(EncodeText, WritesUtf8WhenACharacterDoesNotFit) {
  const std::string text = kDegree + "C \xCE\xA9";
  EXPECT_EQ(EncodeText(text), text);
}

TEST(EncodeWindows1252, PutsAQuestionMarkForWhatDoesNotFit) {
  EXPECT_EQ(EncodeWindows1252("caf\xC3\xA9 \xE2\x82\xAC"), "caf\xE9 \x80");
  EXPECT_EQ(EncodeWindows1252("\xCE\xA9 \xF0\x9F\x98\x80!"), "? ?!");
  // No characters at all: one for each byte, and what stands behind them is kept.
  EXPECT_EQ(EncodeWindows1252("a\x80z\xC3"), "a?z?");
  EXPECT_EQ(EncodeWindows1252("\xE2\x82z"), "??z");
}

TEST(EncodeText, WritesUtf8WhenWindows1252WouldReadAsSomethingElse) {
  const std::string text = "\xC3\x83\xC2\xA9";  // two letters whose Windows-1252 bytes spell one
  EXPECT_EQ(EncodeText(text), text);
}

TEST(EncodeText, LosesNothingOfATextThatIsNoUtf8) {
  EXPECT_EQ(EncodeText("a\xFF"), "a\xFF");
  EXPECT_EQ(EncodeText("a\xE2\x82"), "a\xE2\x82");
}

TEST(EncodeText, ReadsBackAsTheSameText) {
  const std::vector<std::string> pieces = {"a",
                                           "\r\n",
                                           ",",
                                           "\"",
                                           kDegree,
                                           kEuro,
                                           "\xC3\x83",
                                           "\xC2\xA9",
                                           "\xC2\x81",
                                           "\xCE\xA9",
                                           "\xC5\xB8",
                                           "\xC3\xAF",
                                           "\xC2\xBB",
                                           "\xC2\xBF",
                                           "\xC3\xA2",
                                           "\xC6\x92",
                                           "\xE2\x80\x9A",
                                           std::string(1, '\0'),
                                           "\xC2\xA0",
                                           "\xF0\x9F\x94\xA5"};
  std::mt19937 random(7);
  for (int i = 0; i < 20000; ++i) {
    std::string text;
    for (auto n = random() % 6; n > 0; --n) text += pieces[random() % pieces.size()];
    ASSERT_EQ(DecodeText(EncodeText(text)), text);
  }
}

TEST(EncodeText, GivesBackEveryByteThatWasDecoded) {
  for (int byte = 0x80; byte <= 0xFF; ++byte) {
    const std::string bytes(1, static_cast<char>(byte));
    EXPECT_EQ(EncodeText(DecodeText(bytes)), bytes) << byte;
  }
}

TEST(LineReader, EndsALineAtCrLfAndAtLf) {
  EXPECT_EQ(Lines("a\r\nb\nc"), (std::vector<std::string>{"a", "b", "c"}));
  EXPECT_EQ(Lines("\n\r\nx"), (std::vector<std::string>{"", "", "x"}));
}

TEST(LineReader, OpensNoLineBehindAnEndAtTheVeryEnd) {
  EXPECT_EQ(Lines("a\r\n"), (std::vector<std::string>{"a"}));
  EXPECT_EQ(Lines("a\n\n"), (std::vector<std::string>{"a", ""}));
  EXPECT_EQ(Lines(""), (std::vector<std::string>{}));
}

TEST(LineReader, KeepsALoneCarriageReturnInsideALine) {
  EXPECT_EQ(Lines("a\rb\r\nc\r"), (std::vector<std::string>{"a\rb", "c"}));
}

TEST(LineReader, StaysAtTheEndOnceItIsThere) {
  LineReader reader("a");
  std::string_view line;
  EXPECT_TRUE(reader.Next(line));
  EXPECT_FALSE(reader.Next(line));
  EXPECT_FALSE(reader.Next(line));
}

// The lines of a text that comes in pieces of one size.
std::vector<std::string> LinesOfPieces(std::string_view text, std::size_t size) {
  std::vector<std::string> lines;
  PieceLines reader;
  std::string_view line;
  FeedPieces(text, size, [&](std::string_view piece) {
    reader.Feed(piece);
    while (reader.Next(line)) lines.emplace_back(line);
  });
  if (reader.Last(line)) lines.emplace_back(line);
  return lines;
}

TEST(PieceLines, GivesTheLinesOfTheWholeTextWhateverPiecesItComesIn) {
  for (const std::string text :
       {"", "a", "\n", "\r", "\r\n", "a\r\nb\nc", "a\r\nb\n", "\n\r\nx", "a\n\n", "\n\n\n",
        "a\rb\r\nc\r", "a\r\r\nb", "first line\r\nsecond line\r\n\r\nfourth"}) {
    for (const std::size_t size : PieceSizes(text)) {
      EXPECT_EQ(LinesOfPieces(text, size), Lines(text)) << text << " in pieces of " << size;
    }
  }
}

TEST(PieceLines, GivesALineOnceItsEndHasCome) {
  PieceLines reader;
  std::string_view line;
  reader.Feed("be");
  EXPECT_FALSE(reader.Next(line));
  reader.Feed("gun\r");
  EXPECT_FALSE(reader.Next(line));
  reader.Feed("\nnext\nth");
  ASSERT_TRUE(reader.Next(line));
  EXPECT_EQ(line, "begun");
  ASSERT_TRUE(reader.Next(line));
  EXPECT_EQ(line, "next");
  EXPECT_FALSE(reader.Next(line));
  reader.Feed("ird");
  EXPECT_FALSE(reader.Next(line));
  ASSERT_TRUE(reader.Last(line));
  EXPECT_EQ(line, "third");
}

TEST(PieceLines, HasNoLastLineBehindAnEnd) {
  for (const std::string text : {"", "a\n", "a\r\n", "a\n\n"}) {
    for (const std::size_t size : PieceSizes(text)) {
      PieceLines reader;
      std::string_view line;
      FeedPieces(text, size, [&](std::string_view piece) {
        reader.Feed(piece);
        while (reader.Next(line)) continue;
      });
      EXPECT_FALSE(reader.Last(line)) << text << " in pieces of " << size;
    }
  }
}

TEST(PieceLines, HasNoLastLineWhenItsWalkStoppedAtOneFromTwoPieces) {
  PieceLines reader;
  std::string_view line;
  reader.Feed("be");
  EXPECT_FALSE(reader.Next(line));
  reader.Feed("gun\nrest");
  EXPECT_TRUE(reader.Next(line));
  EXPECT_FALSE(reader.Last(line));
}

TEST(PieceLines, DropsTheRestOfALineThatIsTooLong) {
  const std::string longest(PieceLines::kLongest, 'x');
  for (const std::size_t size : {std::size_t{1}, std::size_t{1000}, PieceLines::kLongest,
                                 PieceLines::kLongest + 1, std::size_t{1} << 20}) {
    EXPECT_EQ(LinesOfPieces("a\n" + longest + "\nb", size),
              (std::vector<std::string>{"a", longest, "b"}));
    for (const std::string& rest : {std::string("y"), std::string("y\r"), longest + longest}) {
      EXPECT_EQ(LinesOfPieces("a\n" + longest + rest + "\nb", size),
                (std::vector<std::string>{"a", longest, "b"}));
      EXPECT_EQ(LinesOfPieces("a\n" + longest + rest, size),
                (std::vector<std::string>{"a", longest}));
    }
  }
}

TEST(PieceLines, GivesTheLinesOfAnyTextInAnyPieces) {
  std::mt19937 random(3);
  for (int round = 0; round < 500; ++round) {
    std::string text;
    for (auto left = random() % 40; left > 0; --left) text += "ab \r\n\n"[random() % 6];
    const std::size_t size = 1 + random() % 9;
    EXPECT_EQ(LinesOfPieces(text, size), Lines(text)) << text << " in pieces of " << size;
  }
}

TEST(TextOnDisk, SurvivesEveryPrefix) {
  const std::string sample = "16744576\r\n\"" + kDegree + "\",1\r\n" + kEuro + "\n\xF0\x9F\x94\xA5";
  ForEveryPrefix(sample, [&](std::string_view prefix) {
    const std::string text = DecodeText(prefix);
    EXPECT_EQ(DecodeText(EncodeText(text)), text);
    std::size_t length = 0;
    for (const std::string& line : Lines(prefix)) length += line.size();
    EXPECT_LE(length, prefix.size());
  });
}

// The first one would be taken for the file's own mark.
TEST(TextOnDisk, KeepsAByteOrderMarkThatBelongsToTheText) {
  const std::string mark = "\xEF\xBB\xBF";
  for (const std::string& text : {mark, mark + "a", mark + mark + kDegree, mark + kEuro}) {
    EXPECT_EQ(DecodeText(EncodeText(text)), text);
  }
  EXPECT_EQ(DecodeText(mark + "a"), "a");
}

}  // namespace
}  // namespace tarnlink
