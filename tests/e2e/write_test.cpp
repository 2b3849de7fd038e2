// Values, bits and blocks written by double click and dialog in the real program, to the simulated
// boiler on a real pseudo terminal, and read back on the screen.

#include <gtest/gtest.h>

#include "driven_program.h"
#include "process.h"

namespace e2e {
namespace {

constexpr int kPatience = 5000;  // ms

struct WriteCase {
  const char* name;
  int protocol;
  std::string screen;
};

std::string Place(int row) {
  const std::string top = std::to_string(600 + 360 * row);
  return top + ",2400," + top + ",240,";
}

// A byte at F410 in decimal, a bit and a word beside it.
const std::string kMemoryLines =
    "\"L\",0,1,\"F410\",0,\"Byte\",\"b\",0,0,0,0,\"0\",0," + Place(0) + "\"0\"\r\n" +
    "\"L\",0,0,\"F412\",3,\"Bit\",\"t\",0,0,0,0,\"0\",0," + Place(1) + "\"0\"\r\n" +
    "\"L\",0,3,\"F414\",0,\"Word\",\"w\",0,0,0,0,\"0\",1," + Place(2) + "\"0\"\r\n";

// A data ID makes it a screen of ZOLT.
const std::string kIdLine =
    "\"I\",1,4,\"003D\",0,\"Id\",\"i\",0,0,0,0,\"0\",0," + Place(3) + "\"0\",1,2\r\n";

std::string RegisterLine(int row, const std::string& address, const std::string& storage,
                         const std::string& representation, const std::string& select) {
  return "\"M\",1," + storage + ",\"" + address + "\",3,\"at " + address +
         "\",\"r\",0,0,0,0,\"0\"," + representation + "," + Place(row) + "\"1\",1," + select +
         ",\"&H03\",1,#FALSE#\r\n";
}

class WriteOnALine : public testing::TestWithParam<WriteCase> {
 protected:
  std::string Settings() {
    return "[Communication]\nProtocol=" + std::to_string(GetParam().protocol) +
           "\nBaudrate=3\nCommport=1\nStopBits=0\nParity=0\nIgnoreErrors=1\nMsgTimeout=3\n\n"
           "[Ports]\nCOM1=" +
           boiler.ReadLine(kPatience) + "\n";
  }

  bool Shows(int index, const std::string& text) {
    return program.Becomes("text RAM_LOC_VAL(" + std::to_string(index) + ")", text, kPatience);
  }

  TestFolder folder;
  Process boiler{
      {BOILER_SIMULATOR_PROGRAM, "--protocol", GetParam().name, "--at-once", "--until-eof"}, {}};
  DrivenProgram program{folder, Settings(),
                        folder.Write("boiler.wcr", "16744576\r\n" + GetParam().screen)};
};

TEST_P(WriteOnALine, AValueABitAndAWordAreWrittenAndReadBack) {
  // Under the TarnLink protocol a number has no zeros in front, and a bit is shown as its byte.
  const bool is_tarnlink = GetParam().protocol == 0;
  program.Press("Toolbar1(2)");
  ASSERT_TRUE(Shows(1, "0"));
  ASSERT_TRUE(Shows(3, is_tarnlink ? "0" : "0000"));
  ASSERT_EQ(program.Ask("twice RAM_LOC_VAL(1)"), "ok");
  ASSERT_TRUE(program.Becomes("text txt_WriteValue", "0"));
  EXPECT_EQ(program.Ask("type 300"), "ok");
  EXPECT_EQ(program.Text("lbl_GoesOut"), "Goes out: 2C");
  program.Click("Write Ok");
  EXPECT_TRUE(Shows(1, "44"));
  EXPECT_EQ(program.Ask("modal"), "none");

  ASSERT_EQ(program.Ask("twice RAM_LOC_VAL(2)"), "ok");
  ASSERT_TRUE(program.Becomes("text cmd_Ok", "&Write Bit"));
  program.Click("TRUE");
  program.Click("Write Bit");
  EXPECT_TRUE(Shows(2, is_tarnlink ? "8" : "TRUE"));

  ASSERT_EQ(program.Ask("twice RAM_LOC_VAL(3)"), "ok");
  ASSERT_TRUE(program.Becomes("text txt_WriteValue", is_tarnlink ? "0" : "0000"));
  EXPECT_EQ(program.Ask("type 0012"), "ok");
  program.Click("Write Ok");
  EXPECT_TRUE(Shows(3, is_tarnlink ? "12" : "0012"));
}

class BlockOnALine : public WriteOnALine {};

TEST_P(BlockOnALine, IsWrittenByOneMessageAndReadBack) {
  program.Press("Toolbar1(2)");
  ASSERT_TRUE(Shows(3, "0000"));
  ASSERT_EQ(program.Ask("twice RAM_LOC_VAL(3)"), "ok");
  ASSERT_TRUE(program.Becomes("text txt_WriteValue", "0000"));
  program.Click("Multiple Write");
  ASSERT_TRUE(program.Becomes("enabled Text1", "true"));
  EXPECT_EQ(program.Ask("focus Text1"), "ok");
  EXPECT_EQ(program.Ask("type 2"), "ok");
  program.Press("Values");
  ASSERT_TRUE(program.Becomes("modal", "Multiple Registers|frm_multiple_reg"));
  EXPECT_EQ(program.Ask("focus value(1)"), "ok");
  EXPECT_EQ(program.Ask("type 10"), "ok");
  EXPECT_EQ(program.Ask("focus value(2)"), "ok");
  EXPECT_EQ(program.Ask("type 258"), "ok");
  program.Click("Store values");
  ASSERT_TRUE(program.Becomes("text lbl_GoesOut", "Goes out: 000A 0102"));
  program.Click("Write Ok");
  EXPECT_TRUE(Shows(3, "000A"));
  EXPECT_TRUE(Shows(4, "0102"));
}

const std::string kRegisterLines =
    RegisterLine(0, "0200", "1", "0", "1") + RegisterLine(1, "0201", "0", "0", "1") +
    RegisterLine(2, "0202", "3", "1", "2") + RegisterLine(3, "0203", "3", "1", "2");

std::string NameOf(const testing::TestParamInfo<WriteCase>& test) { return test.param.name; }

INSTANTIATE_TEST_SUITE_P(Protocols, WriteOnALine,
                         testing::Values(WriteCase{"tarnlink", 0, kMemoryLines},
                                         WriteCase{"zolt", 1, kMemoryLines + kIdLine},
                                         WriteCase{"modbus", 2, kRegisterLines}),
                         NameOf);
INSTANTIATE_TEST_SUITE_P(Protocols, BlockOnALine,
                         testing::Values(WriteCase{"modbus", 2, kRegisterLines}), NameOf);

}  // namespace
}  // namespace e2e
