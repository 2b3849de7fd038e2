#include "files/error_texts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "common/text_file.h"
#include "support/prefixes.h"
#include "support/samples.h"

namespace tarnlink {
namespace {

// "code=text" for each text that there is, then "!line: reason" if there is a failure, with "; "
// between them.
std::string Read(std::string_view text) {
  const ErrorFile file = ReadErrorFile(text);
  std::string shown;
  const auto add = [&shown](const std::string& part) {
    if (!shown.empty()) shown += "; ";
    shown += part;
  };
  for (std::size_t code = 0; code < file.texts.size(); ++code) {
    if (!file.texts[code].empty()) add(std::to_string(code) + "=" + file.texts[code]);
  }
  if (file.failure) add("!" + std::to_string(file.failure->line) + ": " + file.failure->reason);
  return shown;
}

constexpr const char* kNoText = "!1: No text stands behind the code.";

TEST(ReadErrorFile, PutsATextAtItsCode) {
  EXPECT_EQ(Read("4 No flame"), "4=No flame");
  EXPECT_EQ(Read("0 No error\r\n255 Fan failure"), "0=No error; 255=Fan failure");
  EXPECT_EQ(Read("007 Low water"), "7=Low water");
}

TEST(ReadErrorFile, KeepsInnerBlanksOnly) {
  EXPECT_EQ(Read("7   Low  water"), "7=Low  water");
  EXPECT_EQ(Read("   7   Low  water   "), "7=Low  water");
  EXPECT_EQ(Read("7 \tLow water\t"), "7=\tLow water\t");
}

TEST(ReadErrorFile, ReplacesATextByALaterOne) {
  EXPECT_EQ(Read("7 first\r\n7 second"), "7=second");
}

TEST(ReadErrorFile, ReadsEveryLineHoweverMany) {
  std::string text;
  for (int i = 0; i < 1'000; ++i) {
    text += std::to_string(i % 256) + " text " + std::to_string(i) + "\r\n";
  }
  const ErrorFile file = ReadErrorFile(text);
  EXPECT_FALSE(file.failure);
  EXPECT_EQ(file.texts[0], "text 768");
  EXPECT_EQ(file.texts[231], "text 999");
  EXPECT_EQ(file.texts[255], "text 767");
}

TEST(ReadErrorFile, LeavesTheOtherTextsEmpty) {
  const ErrorFile file = ReadErrorFile("");
  EXPECT_FALSE(file.failure);
  for (const std::string& text : file.texts) EXPECT_EQ(text, "");
}

TEST(ReadErrorFile, RefusesACodeOutOfRange) {
  for (const std::string code : {"256", "-1", "1000", "65536", "99999999999999999999", "255.6"}) {
    EXPECT_EQ(Read(code + " x"), "!1: \"" + code + "\" is not between 0 and 255.");
  }
}

TEST(ReadErrorFile, RefusesACodeThatIsNoNumber) {
  for (const std::string code : {"x", "E12", "7:", "&H10", "0x10", "7\tLow", "*", "-", "1,5"}) {
    EXPECT_EQ(Read(code + " x"), "!1: \"" + code + "\" is no number.");
  }
}

TEST(ReadErrorFile, RefusesALineWithoutAText) {
  for (const std::string line : {"7", "7 ", " 7  ", "7\tLow", "Low", "7,Low", "7\xC2\xA0Low"}) {
    EXPECT_EQ(Read(line), kNoText) << line;
  }
}

TEST(ReadErrorFile, RefusesABlankLine) {
  EXPECT_EQ(Read("\r\n"), kNoText);
  EXPECT_EQ(Read("   \n"), kNoText);
  EXPECT_EQ(Read("7 x\r\n\r\n8 y"), "7=x; !2: No text stands behind the code.");
}

TEST(ReadErrorFile, KeepsTheTextsInFrontOfABadLine) {
  EXPECT_EQ(Read("7 x\r\n8 y\r\n256 z\r\n9 v\r\n"),
            "7=x; 8=y; !3: \"256\" is not between 0 and 255.");
  EXPECT_EQ(Read("7 x\r\n7"), "7=x; !2: No text stands behind the code.");
}

TEST(ReadErrorFile, EndsLinesAtCrLfAndAtLf) {
  for (const std::string text : {"7 x\r\n8 y\r\n", "7 x\n8 y\n", "7 x\r\n8 y", "7 x\n8 y\r"}) {
    EXPECT_EQ(Read(text), "7=x; 8=y") << text;
  }
}

TEST(ReadErrorFile, ReadsTextsInUtf8AndInWindows1252) {
  for (const std::string bytes : {"7 zu hei\xC3\x9F", "7 zu hei\xDF",
                                  "\xEF\xBB\xBF"
                                  "7 zu hei\xC3\x9F"}) {
    EXPECT_EQ(Read(DecodeText(bytes)), "7=zu hei\xC3\x9F");
  }
}

TEST(ReadErrorFile, ReadsEverySampleAndEveryPrefixOfIt) {
  for (const std::string name : {"default.erc", "MBID.erc"}) {
    SCOPED_TRACE(name);
    const std::string sample = SampleText(name);
    const ErrorFile whole = ReadErrorFile(sample);
    ASSERT_FALSE(whole.failure) << whole.failure->line << ": " << whole.failure->reason;
    ForEveryPrefix(sample, [&](std::string_view prefix) {
      const ErrorFile read = ReadErrorFile(prefix);
      // A code or text that is cut short may still be one: it is that of the last line.
      int others = 0;
      for (std::size_t code = 0; code < read.texts.size(); ++code) {
        if (!read.texts[code].empty() && read.texts[code] != whole.texts[code]) ++others;
      }
      EXPECT_LE(others, 1);
      if (read.failure) {
        EXPECT_EQ(read.failure->line, 1 + std::count(prefix.begin(), prefix.end(), '\n'));
      }
    });
  }
}

TEST(ReadErrorFile, EndsOnBytesThatAreNoText) {
  EXPECT_EQ(Read(std::string_view("7 a\0b", 5)), std::string("7=a\0b", 5));
  EXPECT_EQ(Read(std::string(std::size_t{1} << 20, '\0')), kNoText);
  EXPECT_EQ(Read("7 " + std::string(std::size_t{1} << 20, ' ')), kNoText);
}

}  // namespace
}  // namespace tarnlink
