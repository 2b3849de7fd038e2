// The texts of a log.

#include "files/log_file.h"

#include <gtest/gtest.h>

#include "common/text_file.h"

namespace tarnlink {
namespace {

TEST(LogFile, IsNamedByTheNumberOfLocations) {
  EXPECT_EQ(LogName(5), "log 5.log");
  EXPECT_EQ(LogName(512), "log 512.log");
}

TEST(LogFile, HasDayAndScreenAndThenTheNamesBehindTwoTabs) {
  EXPECT_EQ(LogHeading("5-Mar-2002", "C:\\a.wcr", {{"Flow", "01A0"}, {"Fan", "F00A"}}),
            "5-Mar-2002\tC:\\a.wcr\r\n\t\tFlow(01A0)\tFan(F00A)\r\n");
}

TEST(LogFile, OfANewScreenHasNothingBehindTheDay) {
  EXPECT_EQ(LogHeading("15-Dec-2002", "", {{"Flow", "01A0"}}),
            "15-Dec-2002\t\r\n\t\tFlow(01A0)\r\n");
}

TEST(LogFile, ATextThatHoldsASeparatorStaysInItsField) {
  EXPECT_EQ(LogField("a\tb\r\nc"), "a b  c");
  EXPECT_EQ(LogHeading("1-May-2002", "/a\tb.wcr", {{"Flow\nline", "1\t"}, {"Fan", "F00A"}}),
            "1-May-2002\t/a b.wcr\r\n\t\tFlow line(1 )\tFan(F00A)\r\n");
}

TEST(LogFile, IsWindowsTextWhereAllOfItFits) {
  const LogEncoding encoding("Wärme 14:07:09");
  EXPECT_EQ(encoding.Bytes("Wärme"), "W\xE4rme");
  EXPECT_EQ(encoding.Bytes("\t61"), "\t61");
}

TEST(LogFile, IsUnicodeAsAWholeWhereAnyOfItDoesNotFit) {
  const LogEncoding encoding("Wärme Ω 14:07:09");
  EXPECT_EQ(encoding.Bytes("Wärme"), "Wärme");
  EXPECT_EQ(DecodeText(encoding.Bytes("Wärme") + encoding.Bytes("Ω")), "WärmeΩ");
}

TEST(LogFile, APlainHeadingLeavesLaterTextReadable) {
  const LogEncoding encoding("Flow 14:07:09");
  EXPECT_EQ(DecodeText("Flow" + encoding.Bytes("Wärme") + encoding.Bytes("Ω")), "FlowWärmeΩ");
}

// What comes later has to be read with what stands there.
TEST(LogFile, OfWindowsTextTakesNothingElseLater) {
  const LogEncoding encoding("Wärme\r\n");
  EXPECT_EQ(encoding.Bytes("10 Ω"), "10 ?");
  EXPECT_EQ(encoding.Bytes("Ã©"), "\xC3\xA9");
  const std::string log = encoding.Bytes("Wärme\r\n") + encoding.Bytes("10 Ω\tÃ©\t☃");
  EXPECT_EQ(DecodeText(log), "Wärme\r\n10 ?\tÃ©\t?");
}

// What may come need not come: a log that never had it would be read as another text.
TEST(LogFile, IsWindowsTextOnlyIfItsHeadingShowsIt) {
  const LogEncoding encoding("Flow\r\n", "2:07:09 après-midi");
  EXPECT_EQ(DecodeText(encoding.Bytes("Flow\r\n") + encoding.Bytes("Ã©")), "Flow\r\nÃ©");
  const LogEncoding other("Wärme\r\n", "2:07:09 μ.μ.");
  EXPECT_EQ(other.Bytes("Wärme"), "Wärme");
}

}  // namespace
}  // namespace tarnlink
