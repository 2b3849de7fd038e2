// The parameter file that is made of the screen, and the dialog that says what goes in.

#include "monitor/gen_parameter_file.h"

#include <string>
#include <utility>

#include "common/text_file.h"
#include "form/locations.h"
#include "form/monitor_fixture.h"
#include "monitor/frm_gen_par_file.h"

namespace tarnlink {
namespace {

constexpr const char* kFile = "/jobs/boiler.par";

class GenParameterFileTest : public MonitorTest {
 protected:
  GenParameterFileTest() {
    world.disk().MakeFolder("/jobs");
    world.clock().Set({.year = 2024, .month = 3, .day = 5, .hour = 14, .minute = 7, .second = 9});
  }

  // A Location whose box shows a text.
  void Shows(Location location, const std::string& text) {
    locations.push_back(std::move(location));
    texts.push_back(text);
  }
  void BuildScreen() {
    Screen(locations);
    for (std::size_t i = 0; i < texts.size(); ++i) {
      Answered(static_cast<int>(i) + 1, texts[i]);
    }
  }
  // The Location has been read.
  void Answered(int index, const std::string& text) {
    monitor.main.RAM_LOC_VAL(index).Text = text;
    monitor.main.Reads.Note(index, monitor.main.Locations[index], text);
  }
  // What the file holds behind its header, with "|" for the ends of lines.
  std::string Made(const ParameterSelection& selection = {true, true, true}) {
    GenParameterFile(monitor.main, selection, kFile);
    LineReader lines(made = world.disk().Get(kFile));
    std::string shown;
    std::string_view line;
    for (int number = 1; lines.Next(line); ++number) {
      if (number > 3) shown.append(line).append("|");
    }
    return shown;
  }
  // The same for a screen of one Location.
  std::string MadeOf(const Location& location, const std::string& text) {
    if (monitor.main.MaxId == 0) Screen({location});
    monitor.main.Locations[1] = location;
    Answered(1, text);
    return Made();
  }
  static Location Parameter(const std::string& id, SelectByte byte,
                            std::int32_t representation = kDecimal) {
    Location location = Selected(byte, IdAt(id, "0", 5));
    location.Representation = representation;
    location.Alias = "P";
    return location;
  }
  static Location Memory(const std::string& address, std::int32_t representation = kDecimal) {
    Location location = ByteAt(address, representation);
    location.Specification = 0;
    location.Alias = "M";
    return location;
  }

  std::vector<Location> locations;
  std::vector<std::string> texts;
  std::string made;
};

TEST_F(GenParameterFileTest, BeginsWithThreeComments) {
  BuildScreen();
  GenParameterFile(monitor.main, {}, kFile);
  EXPECT_EQ(world.disk().Get(kFile),
            "* Generated with TarnLink Version " TARNLINK_VERSION
            "\r\n"
            "* from /jobs/boiler.par at 05-Mar-2024\r\n"
            "* Class 5 writes a word while the value is byte in MSB, class 7 writes one byte "
            "only\r\n");
}

TEST_F(GenParameterFileTest, AClass5ByteStandsInItsHalfOfTheWord) {
  EXPECT_EQ(MadeOf(Parameter("0123", kMsb), "2"), "* P <- 2|5 &H0123 &H200|");
  EXPECT_EQ(MadeOf(Parameter("0123", kLsb), "2"), "* P <- 2|5 &H0123 &H2|");
  EXPECT_EQ(MadeOf(Parameter("0123", kBoth), "40000"), "* P <- 40000|5 &H0123 &H9C40|");
  EXPECT_EQ(MadeOf(Parameter("0123", kMsb), "-5"), "* P <- -5|5 &H0123 &HFB00|");
  EXPECT_EQ(MadeOf(Parameter("0123", kBoth), "-1"), "* P <- -1|5 &H0123 &HFFFF|");
}

TEST_F(GenParameterFileTest, TakesTheNumberByItsRepresentation) {
  EXPECT_EQ(MadeOf(Parameter("0001", kBoth, kHexadecimal), "FFFF"), "* P <- FFFF|5 &H0001 &HFFFF|");
  EXPECT_EQ(MadeOf(Parameter("0001", kMsb, kHexadecimal), "FF"), "* P <- FF|5 &H0001 &HFF00|");
  EXPECT_EQ(MadeOf(Parameter("0001", kBoth, kOctal), "17"), "* P <- 17|5 &H0001 &HF|");
  EXPECT_EQ(MadeOf(Parameter("0001", kBoth, kBinary), "00000101"), "* P <- 00000101|5 &H0001 &H0|");
}

TEST_F(GenParameterFileTest, AMemoryByteGoesInByItsPage) {
  EXPECT_EQ(MadeOf(Memory("8010"), "300"), "* M <- 300|7 &H8010 &H2C|");
  EXPECT_EQ(MadeOf(Memory("F010"), "255"), "* M <- 255|7 &HF010 &HFF|");
  EXPECT_EQ(MadeOf(Memory("F010", kHexadecimal), "2A"), "* M <- 2A|7 &HF010 &H2A|");
  EXPECT_EQ(MadeOf(Memory("01A0"), "1"), "");
}

TEST_F(GenParameterFileTest, OnlyWhatIsTickedGoesIn) {
  Shows(Parameter("0001", kBoth), "1");
  Shows(Memory("8001"), "2");
  Shows(Memory("F001"), "3");
  BuildScreen();
  EXPECT_EQ(Made({}), "");
  EXPECT_EQ(Made({.Class5 = true}), "* P <- 1|5 &H0001 &H1|");
  EXPECT_EQ(Made({.Class7EEPROM = true}), "* M <- 2|7 &H8001 &H2|");
  EXPECT_EQ(Made({.Class7RAM = true}), "* M <- 3|7 &HF001 &H3|");
}

TEST_F(GenParameterFileTest, OtherClassesStayOut) {
  for (const int one : {1, 2, 3, 4, 6, 7}) {
    EXPECT_EQ(MadeOf(IdAt("0001", "0", one), "1"), "") << one;
  }
}

TEST_F(GenParameterFileTest, WhatWasNotReadStaysOut) {
  for (const std::string text :
       {"", "can not read", "-", "Value 1", "Value", "TRUE", "FALSE", "00FA", "1.5", " 1", "--1"}) {
    EXPECT_EQ(MadeOf(Parameter("0001", kBoth), text), "") << text;
  }
  EXPECT_EQ(MadeOf(Parameter("0001", kBoth, kHexadecimal), "FALSE"), "");
  EXPECT_EQ(MadeOf(Parameter("0001", kBoth, kBinary), "2"), "");
  EXPECT_EQ(MadeOf(Parameter("0001", kBoth, kOctal), "8"), "");
}

TEST_F(GenParameterFileTest, WhatTheControllerDidNotSayLikeThisStaysOut) {
  const Location location = Parameter("0001", kBoth);
  EXPECT_EQ(MadeOf(location, "1"), "* P <- 1|5 &H0001 &H1|");
  monitor.main.RAM_LOC_VAL(1).Text = "2";
  EXPECT_EQ(Made(), "") << "Another text.";
  Answered(1, "2");
  monitor.main.Locations[1].Address = "0002";
  EXPECT_EQ(Made(), "") << "Another ID.";
  monitor.main.Locations[1] = location;
  monitor.main.Locations[1].Representation = kHexadecimal;
  EXPECT_EQ(Made(), "") << "Other digits.";
  monitor.main.Locations[1] = location;
  monitor.main.Locations[1].SelectByte = kMsb;
  EXPECT_EQ(Made(), "") << "Another half.";
}

// "1 23" would be read as another ID.
TEST_F(GenParameterFileTest, AnAddressThatIsNoneStaysOut) {
  EXPECT_EQ(MadeOf(Parameter("1 23", kBoth), "1"), "");
  EXPECT_EQ(MadeOf(Parameter("01G3", kBoth), "1"), "");
  EXPECT_EQ(MadeOf(Memory("F00"), "1"), "");
}

TEST_F(GenParameterFileTest, ADeletedLocationStaysOut) {
  Shows(Parameter("0001", kBoth), "1");
  Shows(Parameter("0002", kBoth), "2");
  BuildScreen();
  Delete(1);
  EXPECT_EQ(Made(), "* P <- 2|5 &H0002 &H2|");
}

TEST_F(GenParameterFileTest, ANameOfTwoLinesIsOneComment) {
  Location location = Parameter("0001", kBoth);
  location.Alias = "a\r\n5 &H0002 &H3";
  EXPECT_EQ(MadeOf(location, "1"), "* a  5 &H0002 &H3 <- 1|5 &H0001 &H1|");
}

// --- The dialog ----------------------------------------------------------------------------------

class GenParFileDialogTest : public GenParameterFileTest {
 protected:
  GenParFileDialogTest() {
    Shows(Parameter("0001", kBoth), "1");
    BuildScreen();
    dialog.Show();
  }
  ScriptedDialog& ExpectQuestion() {
    return world.dialogs().ExpectMessageBox({.text = "Add file to project?",
                                             .title = "TarnLink2",
                                             .icon = Icon::kQuestion,
                                             .buttons = Buttons::kYesNo});
  }

  frm_Main& main = monitor.main;
  frmGenParFile dialog{main};
};

TEST_F(GenParFileDialogTest, OpensByTheMenuAndCancelHidesIt) {
  dialog.Hide();
  main.mnuGenParaFile.Press();
  EXPECT_TRUE(dialog.form.Visible);
  EXPECT_EQ(dialog.caption.Caption.get(), "Generate parameter file");
  dialog.cmdCancel.Press();
  EXPECT_FALSE(dialog.form.Visible);
  EXPECT_TRUE(world.dialogs().shown().empty());
}

TEST_F(GenParFileDialogTest, ProposesTheNameOfTheScreen) {
  for (const auto& [screen, name] :
       std::vector<std::pair<std::string, std::string>>{{"C:\\a\\b.wcr", "C:\\a\\b.par"},
                                                        {"", "Para.par"},
                                                        {".wcr", "Para.par"},
                                                        {"a.wcr", "a.par"},
                                                        {"/jobs/ü", "/jo.par"}}) {
    main.CurrentTarnLinkFile = screen;
    world.dialogs().ExpectSaveFile("Save As").Cancel();
    dialog.cmdSave.Press();
    EXPECT_EQ(world.dialogs().last_file_request().file_name, name);
  }
  EXPECT_EQ(world.dialogs().last_file_request().filter, "Parameter File (*.par)|*.par");
  EXPECT_TRUE(dialog.form.Visible);
}

TEST_F(GenParFileDialogTest, TellsHowManyLocationsGoIn) {
  EXPECT_EQ(dialog.lblCount.Caption.get(), "0 of 1 locations go in");
  dialog.chkClass5.Value = true;
  EXPECT_EQ(dialog.lblCount.Caption.get(), "1 of 1 locations go in");
  dialog.Hide();
  main.RAM_LOC_VAL(1).Text = "can not read";
  dialog.Show();
  EXPECT_EQ(dialog.lblCount.Caption.get(), "0 of 1 locations go in");
}

TEST_F(GenParFileDialogTest, TellsThatABinaryValueGoesInAsZero) {
  dialog.chkClass5.Value = true;
  main.Locations[1].Representation = kBinary;
  main.RAM_LOC_VAL(1).Text = "1";
  main.Reads.Note(1, main.Locations[1], "1");
  dialog.Show();
  EXPECT_EQ(dialog.lblCount.Caption.get(), "1 of 1 locations go in, 1 of them binary, as 0");
}

TEST_F(GenParFileDialogTest, SavesWhatIsTickedAndAddsTheFile) {
  dialog.chkClass5.Value = true;
  main.ProjectChanged = false;
  world.dialogs().ExpectSaveFile("Save As").Give(kFile);
  ExpectQuestion().Press(Answer::kYes);
  dialog.cmdSave.Press();
  EXPECT_NE(world.disk().Get(kFile).find("5 &H0001 &H1\r\n"), std::string::npos);
  EXPECT_EQ(main.trvProject.FirstChild("par"), kFile);
  EXPECT_TRUE(main.ProjectChanged);
  EXPECT_FALSE(dialog.form.Visible);
  EXPECT_EQ(main.ParCmnDlg.InitDir, "/jobs");
}

TEST_F(GenParFileDialogTest, NoLeavesTheProjectAndAFileOfItIsNotAskedFor) {
  main.ProjectChanged = false;
  world.dialogs().ExpectSaveFile("Save As").Give(kFile);
  ExpectQuestion().Press(Answer::kNo);
  dialog.cmdSave.Press();
  EXPECT_FALSE(main.ProjectChanged);
  main.trvProject.AddFileToProject("par", kFile);
  dialog.Show();
  world.dialogs().ExpectSaveFile("Save As").Give(kFile);
  dialog.cmdSave.Press();
  EXPECT_FALSE(dialog.form.Visible);
}

TEST_F(GenParFileDialogTest, AFileThatCanNotBeWrittenIsToldAndTheOldOneStays) {
  world.disk().Put(kFile, "old");
  world.disk().SetFreeSpace(0);
  world.dialogs().ExpectSaveFile("Save As").Give(kFile);
  world.dialogs().ExpectMessageBox(
      {.text = "Internal System Error # 61 occured, please contact distributor.\r\n"
               "During saving par file /jobs/boiler.par",
       .title = "Internal System Error",
       .icon = Icon::kCritical});
  dialog.cmdSave.Press();
  EXPECT_EQ(world.disk().Get(kFile), "old");
  EXPECT_TRUE(dialog.form.Visible);
}

}  // namespace
}  // namespace tarnlink
