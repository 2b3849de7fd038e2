#include "simulator/log.h"

#include <gtest/gtest.h>

#include "problem_text.h"

namespace boiler {
namespace {

const LogEntry kFaultEntry{1234, LogKind::kFault, 7, Check::kBroken, "\x04\x05", "bit_flip(2)"};
constexpr std::string_view kFaultLine = "1234\tfault\t7\tbroken\t04 05\tbit_flip(2)";

TEST(LogLine, HasSixColumns) {
  EXPECT_EQ(LogLine(kFaultEntry), kFaultLine);
  EXPECT_EQ(LogLine({0, LogKind::kPort, 0, Check::kNone, "", "unplugged"}),
            "0\tport\t-\t-\t-\tunplugged");
}

TEST(LogLine, IsReadBackWhateverTheKind) {
  for (const LogKind kind : {LogKind::kHeard, LogKind::kIgnored, LogKind::kSaid, LogKind::kFault,
                             LogKind::kPort, LogKind::kNote}) {
    const LogEntry entry{99, kind, 3, Check::kHolds, std::string("\0\xFF", 2), "with\ttab"};
    EXPECT_EQ(ParseLogLine(LogLine(entry)), entry);
  }
}

TEST(ParseLogLine, RefusesWhatIsNoLine) {
  for (const char* line : {
           "",
           "1234",
           "x\tfault\t7\tbroken\t04\tm",
           "12 \tfault\t7\tbroken\t04\tm",
           "1234\tfaults\t7\tbroken\t04\tm",
           "1234\tfault\t0\tbroken\t04\tm",
           "1234\tfault\t-7\tbroken\t04\tm",
           "1234\tfault\t\tbroken\t04\tm",
           "1234\tfault\t7\tmaybe\t04\tm",
           "1234\tfault\t7\tbroken\t4\tm",
           "1234\tfault\t7\tbroken\t\tm",
           "1234\tfault\t7\tbroken",
       }) {
    EXPECT_EQ(ParseLogLine(line), std::nullopt) << line;
  }
}

TEST(ReadLog, LeavesOutAnUnfinishedLastLine) {
  const std::string text = std::string(kFaultLine) + "\n" + "1300\tsai";
  EXPECT_EQ(ReadLog(text), std::vector{kFaultEntry});
}

TEST(ReadLog, TellsWhichLineIsNone) {
  const std::string text = std::string(kFaultLine) + "\nnonsense\n";
  EXPECT_EQ(ProblemText([&] { ReadLog(text); }), "Line 2 is no line of a log.");
}

}  // namespace
}  // namespace boiler
