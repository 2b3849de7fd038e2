// Parameters in the real program: made into a file of the values that a screen shows, written back
// into the boiler and read again, and a boiler that says it has stored what it has not.

#include <utility>

#include "tools_line.h"

namespace e2e {
namespace {

const std::string kWriter = "frmWriteParameters";
const std::string kMaker = "frmGenParFile";

// Two setpoints, a word of measured values, and a free byte of memory.
const std::string kScreen =
    "16777215\r\n"
    "\"I\",1,1,\"056D\",0,\"Heating\",\"a\",0,0,0,0,\"0\",0,600,2400,600,240,\"0\",5,0\r\n"
    "\"I\",1,1,\"05F4\",0,\"Hot water\",\"b\",0,0,0,0,\"0\",0,1200,2400,1200,240,\"0\",5,0\r\n"
    "\"I\",1,4,\"00FE\",0,\"Flow\",\"c\",0,0,0,0,\"0\",0,1800,2400,1800,240,\"0\",4,2\r\n"
    "\"L\",0,1,\"F410\",0,\"Free\",\"d\",0,0,0,0,\"0\",1,2400,2400,2400,240,\"0\"\r\n";

class ParametersOnALine : public ToolsOnALine {
 protected:
  // The boiler's two setpoints, and its free byte.
  void Hold(const std::string& setpoints, const std::string& free) {
    ASSERT_EQ(Tell("set F090 " + setpoints), "ok");
    ASSERT_EQ(Tell("set 8000 " + setpoints), "ok");
    ASSERT_EQ(Tell("set F410 " + free), "ok");
  }
  // The list's lines, with "|" between them.
  std::string List() {
    std::string text = program->Ask("get txtScrollStatus plainText");
    for (std::size_t at = 0; (at = text.find("\\n", at)) != std::string::npos;) {
      text.replace(at, 2, "|");
    }
    return text;
  }
  // In the file dialog that is up or comes up, behind which there is `front`.
  void ChooseFile(const std::string& name, const std::string& front) {
    ASSERT_TRUE(program->Becomes("modal", "Open|OpenFile"));
    ASSERT_TRUE(program->Becomes("type " + folder.Path(name), "ok"));
    // While the dialog is still reading its folder it may take no notice of the button.
    const auto is_gone = [&] {
      if (Front() == "OpenFile") program->Ask("click Open");
      return Front() == front;
    };
    EXPECT_TRUE(Eventually(is_gone));
  }
  void OpenWriter(const std::string& text) {
    folder.Write("some.par", text);
    Open("mnuLoadParameters", kWriter);
    program->Mouse("cmdBrowse");
    ChooseFile("some.par", kWriter);
    EXPECT_EQ(program->Ask("get txtFilename toolTip"), folder.Path("some.par"));
  }
  // The run reads the whole screen and is stopped again.
  void RunOnce() {
    program->Mouse("Toolbar1(2)");
    for (const auto& [box, text] : std::vector<std::pair<std::string, std::string>>{
             {"RAM_LOC_VAL(1)", "60"}, {"RAM_LOC_VAL(2)", "55"}, {"RAM_LOC_VAL(4)", "2A"}}) {
      EXPECT_TRUE(program->Becomes("text " + box, text)) << box;
    }
    program->Mouse("Toolbar1(3)");
    ASSERT_TRUE(program->Becomes("text StatusBar1(4)", "Communication Stopped"));
  }
  // Writes the file that is open, with the report that comes then.
  void Write(const std::string& report) {
    program->Mouse("cmdWriteZOLT");
    ASSERT_TRUE(program->Becomes("modal", report, 20'000));
    program->Click("OK");
    ASSERT_TRUE(ComesToFront(kWriter));
  }
};

TEST_F(ParametersOnALine, AFileMadeOfTheScreenIsWrittenBackAndVerified) {
  Start({"--at-once"});
  Hold("3C 37", "2A");
  folder.Write("boiler.wcr", kScreen);
  program->Press("M_fileopen");
  ChooseFile("boiler.wcr", "none");
  RunOnce();

  Open("mnuGenParaFile", kMaker);
  program->Press("chkClass5");
  program->Press("chkClass7RAM");
  EXPECT_TRUE(program->Becomes("text lblCount", "3 of 4 locations go in"));
  program->Mouse("cmdSave");
  program->SaveAs("Save As", folder.Path("made.par"));
  ASSERT_TRUE(ComesToFront("Add file to project?"));
  program->Click("Yes");
  ASSERT_TRUE(ComesToFront("none"));
  const std::string made = folder.Read("made.par");
  EXPECT_EQ(made.substr(made.find("* Heating")),
            "* Heating <- 60\r\n5 &H056D &H3C00\r\n* Hot water <- 55\r\n5 &H05F4 &H3700\r\n"
            "* Free <- 2A\r\n7 &HF410 &H2A\r\n");

  Hold("41 28", "00");
  const std::size_t from = Record("heard").size();
  program->Twice("trvProject/made.par");
  ASSERT_TRUE(ComesToFront(kWriter));
  EXPECT_EQ(program->Text("StatusBar1"), "3 parameters");
  Write("Write & verify settings|All parameters set. And verified.");
  EXPECT_EQ(Heard(from),
            (std::vector<std::string>{"85 0 056D 3C00", "85 0 05F4 3700", "87 0 FCFD 102A",
                                      "05 0 056D 0000", "05 0 05F4 0000", "07 0 FFAB F410"}));
  EXPECT_EQ(Tell("get 8000 2"), "8000 3C 37");
  EXPECT_EQ(Tell("get F410"), "F410 2A");
  EXPECT_EQ(List(),
            "Writing parameters|"
            "Sending  Class 5   ID  &H056D   Value   &H3C00.. OK|"
            "Sending  Class 5   ID  &H05F4   Value   &H3700.. OK|"
            "Sending  Class 7   ID  &HF410   Value   &H002A.. OK|"
            "Verifing parameters|"
            "Sending  Class 5   ID  &H056D   Value   &H3C00.. OK|"
            "Sending  Class 5   ID  &H05F4   Value   &H3700.. OK|"
            "Sending  Class 7   ID  &HF410   Value   &H002A.. OK||");
  Leave();
}

TEST_F(ParametersOnALine, ABoilerThatStoresNothingIsFoundOut) {
  Start({"--at-once"});
  ASSERT_EQ(Tell("set 8000 3C"), "ok");
  ASSERT_EQ(Tell("fault write_ok_not_stored"), "ok");
  OpenWriter("5 &H056D &H3E00\r\n7 &HF410 &H2B\r\n");
  EXPECT_TRUE(Record("heard").empty()) << "Nothing goes out before the user says so.";
  Write("Write & verify settings|All parameters writen. 2 parameters NOT ok.");
  EXPECT_EQ(Tell("get 8000"), "8000 3C");
  EXPECT_NE(List().find("&H3E00.. OK|"), std::string::npos) << "It said that it had.";
  EXPECT_NE(List().find("&H3E00.. FAULT|"), std::string::npos);
  EXPECT_NE(List().find("&H002B.. FAULT|"), std::string::npos);
  Leave();
}

TEST_F(ParametersOnALine, ACableThatIsPulledEndsItAndALeaverIsAsked) {
  Start({"--delay", "100"});
  std::string text;
  for (int i = 0; i < 100; ++i) text += "7 &HF410 " + std::to_string(i) + "\r\n";
  OpenWriter(text);
  program->Mouse("cmdWriteZOLT");
  EXPECT_TRUE(HasHeard(2));
  program->Key("Escape");
  ASSERT_TRUE(
      Says("modal", "Parameters are still being sent. Those sent so far stay in the controller."));
  program->Click("No");
  ASSERT_TRUE(ComesToFront(kWriter));
  EXPECT_TRUE(HasHeard(Record("heard").size() + 2));
  ASSERT_EQ(Tell("unplug"), "ok");
  ASSERT_TRUE(Says("modal", "Write Parameters|"));
  EXPECT_TRUE(Says("modal", "COM1"));
  program->Click("OK");
  ASSERT_TRUE(ComesToFront(kWriter));
  EXPECT_EQ(program->Ask("enabled cmdWriteZOLT"), "true");
  ASSERT_EQ(Tell("replug"), "ok");
  const std::size_t heard = Record("heard").size();
  program->Key("Escape");
  ASSERT_TRUE(ComesToFront("none"));
  EXPECT_EQ(Record("heard").size(), heard);
}

}  // namespace
}  // namespace e2e
