// Addresses that follow the names of a rebuilt map, and the settings of a Location, in the real
// program under mouse and keys.

#include <gtest/gtest.h>

#include "job_folder.h"
#include "line_end.h"

namespace e2e {
namespace {

constexpr int kPatience = 5000;  // ms

const std::string kQuestion =
    "TarnLink|Addresses are not corresponding with MAP file. Adapt addresses ?";
const std::string kRead = "atmega.map: 122 variables read, 11 lines skipped";
// Eight Locations of the screen lie outside the map's memory.
const std::string kUnnamed = "8 locations without their name";

class NamesTest : public testing::Test {
 protected:
  NamesTest() {
    OpenFromTree(program, "boiler.wcr");
    ExpectScreen(program, "boiler.wcr");
  }

  // A new build moves three variables of the screen.
  void Rebuild() {
    folder.Move("flow_temperature", "00000120");
    folder.Move("fan_speed", "0000012A");
    folder.Move("burner_starts", "00000130");
  }
  std::string Followed() const {
    std::string text = Replaced(before, "\"F000\",0,\"Flow\"", "\"F120\",0,\"Flow\"");
    text = Replaced(text, "\"F00A\",0,\"Fan,", "\"F12A\",0,\"Fan,");
    return Replaced(text, "\"F040\",0,\"Burner starts\"", "\"F130\",0,\"Burner starts\"");
  }
  // Saves by the keyboard; the file is then `text`.
  void SaveAndExpect(const std::string& text) {
    std::filesystem::remove(folder.Path("boiler.wcr"));
    program.Key("Ctrl+S");
    ASSERT_TRUE(folder.Becomes("boiler.wcr", text));
  }
  void ExpectRequest(const std::string& frame) {
    EXPECT_EQ(line.Receive(frame.size(), kPatience), frame);
  }

  JobFolder folder;
  const std::string before = folder.Read("boiler.wcr");
  LineEnd line;
  DrivenProgram program{folder, TarnLinkSettings(line.path()), {folder.Path("boiler.prj")}};
};

TEST_F(NamesTest, TheAddressesOfAScreenThatIsOpenedAgainFollowTheMap) {
  EXPECT_EQ(program.Ask("items trvProject"), kSampleTree);
  EXPECT_EQ(program.Text("lbl_MapNotice"), kRead + "; " + kUnnamed);
  EXPECT_EQ(program.Ask("get lbl_MapNotice visible"), "true");
  Rebuild();
  program.Press("mnuRefresh");
  ASSERT_TRUE(program.Becomes("text lbl_MapNotice", kRead + "; 3 locations moved; " + kUnnamed));
  EXPECT_EQ(program.Ask("modal"), "none");

  OpenFromTree(program, "boiler.wcr");
  ASSERT_TRUE(program.Becomes("modal", kQuestion));
  program.Key("Return");
  ASSERT_TRUE(program.Becomes("modal", "none"));
  ExpectScreen(program, "boiler.wcr");
  EXPECT_EQ(program.Text("lbl_MapNotice"), kRead + "; " + kUnnamed);
  EXPECT_EQ(folder.Read("boiler.wcr"), before);
  SaveAndExpect(Followed());

  OpenFromTree(program, "zolt.wcr");
  ASSERT_TRUE(program.Becomes("modal", kQuestion)) << "It reads the fan's memory, too.";
  program.Key("Escape");
  ASSERT_TRUE(program.Becomes("modal", "none"));
  ExpectScreen(program, "zolt.wcr");
  OpenFromTree(program, "boiler.wcr");
  ExpectScreen(program, "boiler.wcr");
  program.Press("Toolbar1(2)");
  ExpectRequest(std::string("\x04\x01") + "F120" + "DA" + "\x03");
}

TEST_F(NamesTest, RefreshScreenAsksAtOnceAndCancelLeavesTheAddresses) {
  Rebuild();
  program.Mouse("Toolbar1(6)");
  ASSERT_TRUE(program.Becomes("modal", kQuestion));
  program.Click("Cancel");
  ASSERT_TRUE(program.Becomes("modal", "none"));
  ExpectScreen(program, "boiler.wcr");
  EXPECT_EQ(program.Text("lbl_MapNotice"), kRead + "; 3 locations moved; " + kUnnamed);
  SaveAndExpect(before);
  // Nobody has adapted them: they differ as before.
  program.Mouse("Toolbar1(6)");
  ASSERT_TRUE(program.Becomes("modal", kQuestion));
  program.Key("Escape");
  ASSERT_TRUE(program.Becomes("modal", "none"));
  program.Press("Toolbar1(2)");
  ExpectRequest(std::string("\x04\x01") + "F000" + "D7" + "\x03");
}

TEST_F(NamesTest, ANameThatIsTypedAndPickedGivesALocationItsAddressInTheFile) {
  OpenSettings(program, 1);
  // The alias has the keyboard, all of it marked.
  program.Keys("Supply");
  TypeName(program, "N_SPEED");
  program.Key("Down");
  program.Key("Return");
  ASSERT_TRUE(program.Becomes("text cmbActualVariable", "fan_speed"));
  EXPECT_TRUE(program.Becomes("text txt_Address", "F00A"));
  EXPECT_EQ(program.Text("txt_Address_dec"), "61450");
  EXPECT_EQ(program.Ask("get opt_StorageType(3) checked"), "true");
  program.Mouse("opt_Representation(2)");
  program.Mouse("cmd_Ok");
  ASSERT_TRUE(program.Becomes("modal", "none"));
  EXPECT_EQ(program.Text("RAM_LOC_TEXT(1)"), "Supply");
  EXPECT_EQ(program.Ask("get RAM_LOC_VAL(1) toolTip"), "fan_speed");
  SaveAndExpect(Replaced(before, R"("L",0,4,"F000",0,"Flow","flow_temperature",0,1,0,0,"0",0,)",
                         R"("L",0,3,"F00A",0,"Supply","fan_speed",0,1,0,0,"0",2,)"));
}

TEST_F(NamesTest, AnElementOfAVariableIsTypedAndTakenByEnter) {
  OpenSettings(program, 1);
  TypeName(program, "fan_speed+1");
  program.Key("Return");
  ASSERT_TRUE(program.Becomes("text txt_Address", "F00C"));
  EXPECT_EQ(program.Ask("modal"), kSettings);
  program.Key("Return");
  ASSERT_TRUE(program.Becomes("modal", "none"));
  SaveAndExpect(Replaced(before, R"("F000",0,"Flow","flow_temperature")",
                         R"("F00C",0,"Flow","fan_speed+1")"));
}

TEST_F(NamesTest, SettingsThatAreCancelledChangeNothing) {
  OpenSettings(program, 1);
  program.Keys("Supply");
  program.Mouse("opt_StorageType(1)");
  program.Mouse("chk_DisableScanning");
  ASSERT_TRUE(program.Becomes("get chk_DisableScanning checked", "true"));
  program.Key("Escape");
  ASSERT_TRUE(program.Becomes("modal", "none"));
  ExpectScreen(program, "boiler.wcr");
  EXPECT_EQ(program.Text("RAM_LOC_TEXT(1)"), "Flow");
  SaveAndExpect(before);
}

TEST_F(NamesTest, ALocationIsDeletedInItsSettingsAfterAQuestion) {
  OpenSettings(program, 1);
  for (const char* answer : {"Escape", "Return"}) {
    EXPECT_EQ(program.Ask("get RAM_LOC_TEXT(1) visible"), "true");
    program.Mouse("cmdDeleteLocation");
    ASSERT_TRUE(program.Becomes(
        "modal", "Delete Location|Are you sure you want to delete the selected location ?"));
    program.Key(answer);
    const bool stays = std::string(answer) == "Escape";
    ASSERT_TRUE(program.Becomes("modal", stays ? kSettings : "none"));
  }
  EXPECT_EQ(program.Ask("get RAM_LOC_TEXT(1) visible"), "false");
  const std::size_t begin = before.find("\r\n") + 2;
  std::string without = before;
  SaveAndExpect(without.erase(begin, before.find("\r\n", begin) + 2 - begin));
}

}  // namespace
}  // namespace e2e
