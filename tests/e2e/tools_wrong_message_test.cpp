// Wrong messages in the real program: what goes out, and what the boiler says to it.

#include "tools_line.h"

namespace e2e {
namespace {

const std::string kForm = "frm_IPMsgErr";

class WrongMessageOnALine : public ToolsOnALine {
 protected:
  std::string Boxes(const std::string& row, int first, int last) {
    std::string text;
    for (int i = first; i <= last; ++i) {
      text += program->Text(row + "(" + std::to_string(i) + ")");
    }
    return text;
  }
};

TEST_F(WrongMessageOnALine, AGoodOneIsAcknowledgedAndAWrongOneIsCorrupted) {
  Start({"--at-once", "--corrupted"});
  Open("M_errgen", kForm);
  EXPECT_EQ(Boxes("txt_ErrMsg", 0, 15), "0D1000010000D7AF0A");
  program->Mouse("cmd_SendErrMsg");
  EXPECT_TRUE(program->Becomes("text txtStatus", "Read Acknowledge"));
  EXPECT_EQ(Heard(), std::vector<std::string>{"01 0 0001 0000"});
  EXPECT_EQ(Boxes("txt_RecErrMsg", 0, 6), "0D1100001");
  EXPECT_EQ(Boxes("txt_RecErrMsg", 7, 10), LastData("0001"));

  program->Mouse("chk_IPMsgErr(0)");
  program->Mouse("cmd_SendErrMsg");
  EXPECT_TRUE(program->Becomes("text txtStatus", "Corrupted Message"));
  const RecordedFrame wrong = Record("heard").back();
  EXPECT_EQ(wrong.meaning, "corrupted, the check should be D7AF");
  EXPECT_EQ(wrong.bytes.substr(11, 4), Boxes("txt_ErrMsg", 11, 14));
  EXPECT_EQ(wrong.bytes.find_first_not_of("123456789", 11), 15u) << "digits 1 to 9";
  EXPECT_EQ(Record("said").back().type(), 0x21);
  EXPECT_EQ(program->Text("txt_RecErrMsg(1)"), "21");

  program->Mouse("chk_IPMsgErr(0)");
  program->Mouse("chk_IPMsgErr(1)");
  program->Mouse("cmd_SendErrMsg");
  EXPECT_TRUE(Eventually([&] { return Record("heard").size() == 3; }));
  EXPECT_EQ(Record("heard").back().data(), "\x01\x02\x03\x04");
  EXPECT_EQ(Record("heard").back().meaning, "corrupted, no digits, slave 0");
  EXPECT_TRUE(program->Becomes("text txtStatus", "Corrupted Message"));
  Leave();
}

TEST_F(WrongMessageOnALine, WithoutAnAnswerItSaysSo) {
  Start({"--at-once"});
  Open("M_errgen", kForm);
  program->Mouse("chk_IPMsgErr(0)");
  program->Mouse("cmd_SendErrMsg");
  ASSERT_TRUE(program->Becomes("modal", "Communication Problem|No Response"));
  program->Click("OK");
  ASSERT_TRUE(ComesToFront(kForm));
  EXPECT_EQ(Record("ignored").size(), 1u);
  program->Mouse("chk_IPMsgErr(0)");
  program->Mouse("cmd_SendErrMsg");
  EXPECT_TRUE(program->Becomes("text txtStatus", "Read Acknowledge"));
  Leave();
}

}  // namespace
}  // namespace e2e
