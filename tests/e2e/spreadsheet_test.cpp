// The workbook of the real program, read by a program that knows nothing of it.

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "driven_program.h"
#include "line_end.h"

namespace e2e {
namespace {

constexpr int kPatience = 20'000;  // ms
constexpr int kColumns = 3;
constexpr std::size_t kRequest = 9;

class SpreadsheetOfTheProgram : public testing::Test {
 protected:
  SpreadsheetOfTheProgram() {
    folder_.Write("logs/older.txt", "");
    std::string screen = "16744576\r\n";
    for (int i = 1; i <= kColumns; ++i) {
      const std::string number = std::to_string(i);
      screen += "\"L\",0,3,\"F00" + number + "\",0,\"Name " + number + "\",\"name\",0,0,0,1,\"" +
                number + "\",0,600,2400,600,240,\"0\"\r\n";
    }
    program =
        std::make_unique<DrivenProgram>(folder_, Settings(), folder_.Write("boiler.wcr", screen));
  }

  // Answers so many requests with the numbers from 1 on.
  void Answer(int count) {
    for (int i = 0; i < count; ++i) {
      const std::string request = line_.Receive(kRequest, kPatience);
      ASSERT_EQ(request.size(), kRequest) << "The program asks for nothing.";
      std::string digits = "0000";
      std::snprintf(digits.data(), digits.size() + 1, "%04X", static_cast<unsigned>(++answers));
      line_.Send("\x04\x01" + request.substr(2, 4) + digits + "00\x03");
    }
  }

  // The workbook's lines, such as "R2C1 number 7", as another program reads them.
  std::vector<std::string> Book() const {
    std::vector<std::string> lines;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.Path("logs"))) {
      if (entry.path().extension() != ".xlsx") continue;
      Process reader({"/usr/bin/python3", TARNLINK_READ_WORKBOOK, entry.path().string()}, {});
      for (std::string line = reader.ReadLine(kPatience); !line.empty();
           line = reader.ReadLine(kPatience)) {
        lines.push_back(line);
      }
      EXPECT_EQ(reader.WaitForEnd(kPatience), 0) << entry.path();
    }
    return lines;
  }

  // What a workbook with so many values holds.
  static std::vector<std::string> BookOf(int values) {
    std::vector<std::string> lines{"Sheet1"};
    for (int i = 1; i <= kColumns && i <= values; ++i) {
      lines.push_back("R1C" + std::to_string(i) + " text Name " + std::to_string(i));
    }
    for (int i = 0; i < values; ++i) {
      lines.push_back("R" + std::to_string(2 + i / kColumns) + "C" +
                      std::to_string(1 + i % kColumns) + " number " + std::to_string(i + 1));
    }
    return lines;
  }

  std::unique_ptr<DrivenProgram> program;
  int answers = 0;

 private:
  std::string Settings() const {
    return "[Communication]\nProtocol=0\nBaudrate=3\nCommport=1\nStopBits=0\nParity=0\n"
           "IgnoreErrors=1\nMsgTimeout=5\nDDELogging=1\n\n[Paths]\nLogPath=" +
           folder_.Path("logs") + "\n\n[Ports]\nCOM1=" + line_.path() + "\n";
  }

  TestFolder folder_;
  LineEnd line_;
};

TEST_F(SpreadsheetOfTheProgram, HoldsEveryValueAfterStop) {
  constexpr int kAnswers = 10 * kColumns;
  program->Press("Toolbar1(2)");
  ASSERT_NO_FATAL_FAILURE(Answer(kAnswers));
  ASSERT_TRUE(program->Becomes("text RAM_LOC_VAL(3)", std::to_string(kAnswers)));
  program->Press("Toolbar1(3)");
  std::vector<std::string> book = Book();
  // The file is written by the side of the program's own work.
  for (int i = 0; i < 50 && book.size() < BookOf(kAnswers).size(); ++i) book = Book();
  EXPECT_EQ(book, BookOf(kAnswers));
}

TEST_F(SpreadsheetOfTheProgram, AProgramThatIsKilledLeavesAWholeWorkbookOfSecondsAgo) {
  constexpr int kAnswers = 400;  // of 20 ms each, at least
  constexpr int kMostLost = 300;
  program->Press("Toolbar1(2)");
  ASSERT_NO_FATAL_FAILURE(Answer(kAnswers));
  program->process().Kill();
  const std::vector<std::string> book = Book();
  const int values = static_cast<int>(book.size()) - 1 - kColumns;
  EXPECT_GT(values, answers - kMostLost);
  EXPECT_LE(values, answers);
  EXPECT_EQ(book, BookOf(values));
}

}  // namespace
}  // namespace e2e
