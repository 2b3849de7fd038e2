#include "simulator/command.h"

#include <gtest/gtest.h>

#include "problem_text.h"
#include "simulator/bytes.h"

namespace boiler {
namespace {

TEST(ParseCommand, ReadsPlainCommandsWithBlanksAround) {
  struct Row {
    const char* line;
    CommandKind kind;
  };
  for (const Row& row :
       {Row{"clear", CommandKind::kClear}, Row{"  unplug\t", CommandKind::kUnplug},
        Row{"replug\r", CommandKind::kReplug}, Row{"replug  other", CommandKind::kReplugOther},
        Row{"reboot", CommandKind::kReboot}, Row{"quit", CommandKind::kQuit},
        Row{"", CommandKind::kNothing}, Row{" \t\r", CommandKind::kNothing}}) {
    EXPECT_EQ(ParseCommand(row.line).kind, row.kind) << row.line;
  }
}

TEST(ParseCommand, ReadsFaultSetAndGet) {
  const Command fault = ParseCommand("fault bit_flip(2)@0.1");
  EXPECT_EQ(fault.kind, CommandKind::kFault);
  EXPECT_EQ(fault.text, "bit_flip(2)@0.1");

  const Command set = ParseCommand("set f400 12 34ab");
  EXPECT_EQ(set.kind, CommandKind::kSet);
  EXPECT_EQ(set.address, 0xF400);
  EXPECT_EQ(HexText(set.bytes), "12 34 AB");

  const Command get = ParseCommand("get 1A0");
  EXPECT_EQ(get.kind, CommandKind::kGet);
  EXPECT_EQ(get.address, 0x1A0);
  EXPECT_EQ(get.count, 1);
  EXPECT_EQ(ParseCommand("get 1A0 1024").count, 1024);
}

TEST(ParseCommand, RefusesTheRestWithASentence) {
  const std::string set = "set takes an address and bytes of two hexadecimal digits each.";
  const std::string get = "get takes an address and a count of 1 to 1024.";
  struct Row {
    const char* line;
    std::string sentence;
  };
  for (const Row& row : {
           Row{"help", "\"help\" is no command."},
           Row{"fault", "\"fault\" is no command."},
           Row{" Clear ", "\"Clear\" is no command."},
           Row{"clear all", "\"clear all\" is no command."},
           Row{"replug another", "\"replug another\" is no command."},
           Row{"quit now", "\"quit now\" is no command."},
           Row{"set", "\"\" is no address of 1 to 4 digits."},
           Row{"set 10000 12", "\"10000\" is no address of 1 to 4 digits."},
           Row{"set F400", set},
           Row{"set F400 1", set},
           Row{"set F400 1 2", set},
           Row{"set F400 xx", set},
           Row{"get", "\"\" is no address of 1 to 4 digits."},
           Row{"get xyz", "\"xyz\" is no address of 1 to 4 digits."},
           Row{"get F400 0", get},
           Row{"get F400 1025", get},
           Row{"get F400 2 3", get},
           Row{"get F400 two", get},
       }) {
    EXPECT_EQ(ProblemText([&] { ParseCommand(row.line); }), row.sentence);
  }
}

}  // namespace
}  // namespace boiler
