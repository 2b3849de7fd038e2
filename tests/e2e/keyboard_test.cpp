// Whole tasks with nothing but the keyboard: a Location defined, read and written, a screen saved,
// two lines of the graph recorded and kept, the slaves of a line found.

#include <gtest/gtest.h>

#include "tools_line.h"

namespace e2e {
namespace {

class KeyboardAlone : public ToolsOnALine {
 protected:
  void Keys(const std::vector<std::string>& names) {
    for (const std::string& name : names) program->Key(name);
  }
  // An entry of the menu that opens with Alt and `menu`, by its letter.
  void Choose(const std::string& menu, const std::string& letter) {
    program->Key("Alt+" + menu);
    program->Keys(letter);
  }
  // In place of what stands in the field that a letter leads to.
  void Fill(const std::string& letter, const std::string& text) {
    Keys({"Alt+" + letter, "Ctrl+A"});
    program->Keys(text);
  }
  // Into the dialog that comes to the front.
  void SaveAs(const std::string& name) {
    ASSERT_TRUE(ComesToFront("SaveFile"));
    program->Keys(folder.Path(name));
    program->Key("Return");
  }
};

TEST_F(KeyboardAlone, ALocationIsDefinedReadWrittenAndKept) {
  Start({"--protocol", "any", "--at-once"});
  Keys({"Ctrl+L", "Return"});
  ASSERT_TRUE(ComesToFront("frm_Settings"));
  program->Keys("pump");  // the alias, which has the keyboard
  program->Key("Alt+M");
  ASSERT_TRUE(program->Becomes("get optSpecification(0) checked", "true"));
  Fill("H", "F410");
  program->Key("Return");
  ASSERT_TRUE(program->Becomes("modal", "none"));
  EXPECT_EQ(program->Text("RAM_LOC_TEXT(1)"), "pump");

  program->Key("F5");
  ASSERT_TRUE(program->Becomes("text RAM_LOC_VAL(1)", "00"));
  Keys({"Tab", "Return"});
  ASSERT_TRUE(ComesToFront("frm_WriteValue"));
  program->Keys("42");
  program->Key("Return");
  EXPECT_TRUE(program->Becomes("text RAM_LOC_VAL(1)", "42"));
  EXPECT_EQ(Tell("get F410"), "F410 42");
  program->Key("Shift+F5");
  ASSERT_TRUE(program->Becomes("text StatusBar1(4)", "Communication Stopped"));

  program->Key("Ctrl+S");
  SaveAs("own.wcr");
  ASSERT_TRUE(ComesToFront("Add file to project?"));
  program->Key("Alt+N");
  ASSERT_TRUE(program->Becomes("modal", "none"));
  EXPECT_NE(folder.Read("own.wcr").find("\"pump\""), std::string::npos);
  program->Key("Ctrl+Q");
  EXPECT_EQ(program->process().WaitForEnd(kToolPatience), 0);
}

TEST_F(KeyboardAlone, TwoLinesOfTheGraphAreRecordedAndKept) {
  Start({"--at-once"});
  Choose("T", "g");
  ASSERT_TRUE(ComesToFront("frmGraphic"));
  program->Key("Menu");
  program->Keys("g");
  ASSERT_TRUE(ComesToFront("frmGraphConf"));
  Keys({"Tab", "Space", "Tab", "Tab", "Tab", "Space"});  // the lines of the first two rows
  program->Key("Escape");
  ASSERT_TRUE(ComesToFront("frmGraphic"));
  ASSERT_TRUE(Eventually([&] { return !LastData("00F1").empty() && !LastData("0302").empty(); }));
  EXPECT_EQ(LastData("0331"), "") << "the third";

  program->Key("Ctrl+S");
  SaveAs("own.mss");
  ASSERT_TRUE(ComesToFront("frmGraphic"));
  EXPECT_TRUE(Eventually([&] {
    const std::string saved = folder.Read("own.mss");
    return saved.find("Measurement 0\r\n") != std::string::npos &&
           saved.find("Measurement 1\r\n") != std::string::npos;
  }));
}

TEST_F(KeyboardAlone, TheSlavesOfALineAreFound) {
  Start({"--at-once", "--slaves", "0,3"});
  Choose("T", "s");
  ASSERT_TRUE(ComesToFront("frm_ScanSlaves"));
  EXPECT_TRUE(program->Becomes("text txtType(0)", "R1865CM2040"));
  EXPECT_TRUE(program->Becomes("text txtType(3)", "R1865S2043"));
  program->Key("Alt+T");
  EXPECT_TRUE(Says("text lblState", "topped"));
  program->Key("Escape");
  EXPECT_TRUE(program->Becomes("modal", "none"));
}

}  // namespace
}  // namespace e2e
