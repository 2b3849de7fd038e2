// The service tools in the real program when another program has the port, and when its cable is
// pulled and put back: each one says so and works as soon as the port can be had again.

#include "tools_line.h"

namespace e2e {
namespace {

const std::string kInUse = "is in use by";
const std::string kPanel = "frm_ContPanel";
const std::string kScan = "frm_ScanSlaves";
const std::string kSniffer = "frmSniffer";
const std::string kWrongMessage = "frm_IPMsgErr";

class ToolsWithoutAPort : public ToolsOnALine {
 protected:
  void Pull() { ASSERT_EQ(Tell("unplug"), "ok"); }
  void PutBack() { ASSERT_EQ(Tell("replug"), "ok"); }
  bool SaysSomething(const std::string& label) {
    return Eventually([&] { return !program->Text(label).empty(); });
  }
  // Of the boiler: it hears requests that are new.
  bool GoesOn() {
    constexpr std::size_t kSome = 5;
    return HasHeard(Record("heard").size() + kSome);
  }
};

TEST_F(ToolsWithoutAPort, ThePanelAsksAgainWhenThePortIsFree) {
  Start({"--at-once"});
  OtherUser other(device);
  Open("M_ControlPanel", kPanel);
  program->Mouse("cmdUpdateStatus");
  EXPECT_TRUE(Says("text lblLine", kInUse));
  EXPECT_TRUE(Record("heard").empty());
  other.LetGo();
  EXPECT_TRUE(program->Becomes("text txt_HUPCRC", "C51E"));
  EXPECT_EQ(program->Text("lblLine"), "");

  program->Mouse("chkContinuousUpdate");
  EXPECT_TRUE(GoesOn());
  Pull();
  EXPECT_TRUE(SaysSomething("lblLine"));
  PutBack();
  EXPECT_TRUE(GoesOn());
  EXPECT_TRUE(program->Becomes("text lblLine", ""));
  program->Mouse("cmdClose");
  ASSERT_TRUE(ComesToFront("none"));
}

TEST_F(ToolsWithoutAPort, TheScanWaitsAtItsAddress) {
  Start({"--at-once", "--slaves", "0,1,2,3,4,5,6,7,8,9,A,B,C,D,E,F"});
  OtherUser other(device);
  Open("mnuScanSlaves", kScan);
  EXPECT_TRUE(Says("text lblState", "Waiting at address 0: COM1"));
  EXPECT_TRUE(Says("text lblState", kInUse));
  EXPECT_EQ(program->Text("txtType(0)"), "") << "Nobody was asked.";
  other.LetGo();
  EXPECT_TRUE(program->Becomes("text txtEEPROM(0)", "2.14"));
  EXPECT_TRUE(Says("text lblState", "Scanning address"));

  Pull();
  EXPECT_TRUE(Says("text lblState", "Waiting at address"));
  PutBack();
  EXPECT_TRUE(GoesOn());
  EXPECT_TRUE(Says("text lblState", "Scanning address"));
  EXPECT_TRUE(program->Becomes("text txtEEPROM(15)", "2.29"));
  Leave();
}

TEST_F(ToolsWithoutAPort, TheSnifferListensAgain) {
  Start({"--poll", "0"});
  OtherUser other(device);
  program->Press("mnuSniffer");
  ASSERT_TRUE(program->Becomes("modal", "Communication port|Com port busy."));
  program->Click("OK");
  ASSERT_TRUE(ComesToFront(kSniffer));
  EXPECT_TRUE(Says("text lbl_Port", kInUse));
  EXPECT_EQ(program->Text("lbl_Frames"), "Frames: 0, bad: 0");
  const auto frames = [&] { return std::stoi(program->Text("lbl_Frames").substr(8)); };
  const auto hears_more = [&] {
    const int before = frames();
    return Eventually([&] { return frames() >= before + 10; });
  };
  other.LetGo();
  EXPECT_TRUE(hears_more());
  EXPECT_EQ(program->Text("lbl_Port"), "");

  Pull();
  EXPECT_TRUE(SaysSomething("lbl_Port"));
  PutBack();
  EXPECT_TRUE(hears_more());
  EXPECT_EQ(program->Text("lbl_Port"), "");
  Leave();
}

TEST_F(ToolsWithoutAPort, AWrongMessageIsSentWhenThePortIsThere) {
  Start({"--at-once"});
  Open("M_errgen", kWrongMessage);
  {
    const OtherUser other(device);
    program->Mouse("cmd_SendErrMsg");
    EXPECT_TRUE(Says("text txtStatus", kInUse));
    EXPECT_TRUE(Record("heard").empty());
  }
  program->Mouse("cmd_SendErrMsg");
  EXPECT_TRUE(program->Becomes("text txtStatus", "Read Acknowledge"));

  ASSERT_EQ(Tell("fault unplug_while_writing#1"), "ok");
  program->Mouse("cmd_SendErrMsg");
  EXPECT_TRUE(Says("text txtStatus", "COM1"));
  ASSERT_TRUE(program->Becomes("modal", "Communication Problem|No Response"));
  program->Click("OK");
  ASSERT_TRUE(ComesToFront(kWrongMessage));
  program->Mouse("cmd_SendErrMsg");
  EXPECT_TRUE(Says("text txtStatus", "is not there"));
  PutBack();
  program->Mouse("cmd_SendErrMsg");
  EXPECT_TRUE(program->Becomes("text txtStatus", "Read Acknowledge"));
  Leave();
}

}  // namespace
}  // namespace e2e
