#include "files/field_stream.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/run_time_error.h"
#include "support/prefixes.h"

namespace tarnlink {
namespace {

// The fields in square brackets, quoted ones with their quotes.
std::string Fields(std::string_view text) {
  std::string shown;
  FieldStream fields(text);
  while (const std::optional<Field> field = fields.Next()) {
    const std::string quote = field->quoted ? "\"" : "";
    shown += "[" + quote + std::string(field->text) + quote + "]";
  }
  return shown;
}

template <class Read>
std::string Outcome(std::string_view text, Read read) {
  FieldStream fields(text);
  try {
    read(fields);
    return "ok";
  } catch (const RunTimeError& error) {
    return std::to_string(error.code()) + " " + error.what();
  }
}

TEST(FieldStream, SplitsAtCommasAndAtLineEnds) {
  EXPECT_EQ(Fields("1,2\r\n3\n4"), "[1][2][3][4]");
  EXPECT_EQ(Fields("1,,2"), "[1][][2]");
  EXPECT_EQ(Fields(",1"), "[][1]");
}

TEST(FieldStream, KeepsCommasAndBlanksInsideQuotes) {
  EXPECT_EQ(Fields("\"a,b\",\" c \""), "[\"a,b\"][\" c \"]");
  EXPECT_EQ(Fields("\"\",1"), "[\"\"][1]");
}

TEST(FieldStream, CutsTheBlanksAroundABareField) {
  EXPECT_EQ(Fields("  1 , a b ,   \r\n 2 "), "[1][a b][][2]");
  EXPECT_EQ(Fields("  \"a\"  ,1"), "[\"a\"][1]");
}

TEST(FieldStream, OpensNoFieldBehindTheLastSeparator) {
  EXPECT_EQ(Fields(""), "");
  EXPECT_EQ(Fields("1\r\n"), "[1]");
  EXPECT_EQ(Fields("1,"), "[1]");
  EXPECT_EQ(Fields("\"a\"\r\n"), "[\"a\"]");
}

TEST(FieldStream, TakesAnEmptyLineInBetweenAsAnEmptyField) {
  EXPECT_EQ(Fields("1\r\n\r\n2"), "[1][][2]");
  EXPECT_EQ(Fields("\n1"), "[][1]");
}

TEST(FieldStream, EndsAnOpenQuoteAtTheEndOfItsLine) {
  EXPECT_EQ(Fields("\"a,b\r\n1"), "[\"a,b\"][1]");
  EXPECT_EQ(Fields("\"a,b\n1"), "[\"a,b\"][1]");
  EXPECT_EQ(Fields("1,\""), "[1][\"\"]");
  EXPECT_EQ(Fields("\"a\r"), "[\"a\"]");
}

TEST(FieldStream, PassesOverWhatStandsBehindAClosingQuote) {
  EXPECT_EQ(Fields("\"a\"bc,1"), "[\"a\"][1]");
  EXPECT_EQ(Fields("\"a\"\"b,1"), "[\"a\"][1]");
  EXPECT_EQ(Fields("\"a\"x\r\n1"), "[\"a\"][1]");
}

TEST(FieldStream, TakesAQuoteInsideABareFieldAsItIs) {
  EXPECT_EQ(Fields("5\",a\"b,1"), "[5\"][a\"b][1]");
}

TEST(FieldStream, KeepsOtherControlCharacters) {
  EXPECT_EQ(Fields(std::string_view("a\0b,\t1,\"c\rd\"", 12)),
            std::string("[a\0b][\t1][\"c\rd\"]", 16));
  EXPECT_EQ(Fields("a\rb\r\n"), "[a\rb]");
  EXPECT_EQ(Fields("a\r,b"), "[a\r][b]");
}

TEST(FieldStream, ReadsValuesOfTheirKind) {
  FieldStream fields("255,-32768,-2147483648,8.25,#true#,#FALSE#,\"Flow, hot\",bare");
  EXPECT_EQ(fields.ReadByte("a"), 255);
  EXPECT_EQ(fields.ReadInteger("b"), -32768);
  EXPECT_EQ(fields.ReadLong("c"), -2147483647 - 1);
  EXPECT_EQ(fields.ReadSingle("d"), 8.25F);
  EXPECT_TRUE(fields.ReadBoolean("e"));
  EXPECT_FALSE(fields.ReadBoolean("f"));
  EXPECT_EQ(fields.ReadText("g"), "Flow, hot");
  EXPECT_EQ(fields.ReadText("h"), "bare");
}

TEST(FieldStream, SaysLineFieldAndReasonOfAnError) {
  EXPECT_EQ(Outcome("x", [](FieldStream& f) { f.ReadByte("Class"); }),
            "13 Line 1, Class: \"x\" is no number.");
  EXPECT_EQ(Outcome("\"5\"", [](FieldStream& f) { f.ReadLong("Class"); }),
            "13 Line 1, Class: a text stands in the place of a number.");
  EXPECT_EQ(Outcome("1\r\n2\r\n300",
                    [](FieldStream& f) {
                      f.ReadText("a");
                      f.ReadText("b");
                      f.ReadByte("Class");
                    }),
            "6 Line 3, Class: \"300\" is not between 0 and 255.");
  EXPECT_EQ(Outcome("1", [](FieldStream& f) { f.ReadBoolean("Bold"); }),
            "13 Line 1, Bold: neither #TRUE# nor #FALSE# stands there.");
  EXPECT_EQ(Outcome("1",
                    [](FieldStream& f) {
                      f.ReadText("a");
                      f.ReadText("Alias");
                    }),
            "62 Line 1, Alias: the file ends before it.");
}

TEST(FieldStream, RefusesEverythingElseAsABoolean) {
  for (const std::string text : {"1", "0", "-1", "TRUE", "#TRUE", "TRUE#", "#YES#", "\"#TRUE#\"",
                                 "# TRUE#", "#TRUE##", "#FALSE##", "##", ""}) {
    const std::string line = text + ",1";
    EXPECT_EQ(Outcome(line, [](FieldStream& f) { f.ReadBoolean("Bold"); }).substr(0, 3), "13 ")
        << text;
  }
}

TEST(FieldStream, EndsOnEveryPrefix) {
  ForEveryPrefix("1,\"a,b\" x, c\"d ,\r\n\"open\r\n\n#TRUE#,,\"\"\r", [](std::string_view prefix) {
    FieldStream fields(prefix);
    std::size_t count = 0;
    while (fields.Next()) ++count;
    EXPECT_LE(count, prefix.size());
    EXPECT_FALSE(fields.Next());
  });
}

TEST(QuotedField, ReplacesWhatTheFormatCannotHold) {
  EXPECT_EQ(QuotedField("Flow"), "\"Flow\"");
  EXPECT_EQ(QuotedField(""), "\"\"");
  EXPECT_EQ(QuotedField(" a\"b\r\nc "), "\" a b  c \"");
}

TEST(BooleanField, IsInUpperCaseBetweenNumberSigns) {
  EXPECT_EQ(BooleanField(true), "#TRUE#");
  EXPECT_EQ(BooleanField(false), "#FALSE#");
}

}  // namespace
}  // namespace tarnlink
