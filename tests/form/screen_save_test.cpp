// Saving a screen: what is written, under which name, and what happens when it cannot be.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "form/desk_fixture.h"

namespace tarnlink {
namespace {

constexpr const char* kOther = "/home/user/Documents/sub/other.wcr";
constexpr const char* kL = R"("L",0,3,"01A0",0,"Flow","v",0,0,0,0,"0",0,1,2,3,4,"0")";
constexpr const char* kI = R"("I",1,3,"0012",0,"S","v",0,0,0,0,"0",1,1,2,3,4,"1",3,2)";
constexpr const char* kM =
    R"("M",1,3,"0012",0,"S","v",0,0,0,0,"0",1,1,2,3,4,"1",3,2,"&H10",4,#TRUE#)";
constexpr const char* kT = R"("T","Boiler",1,2,"Arial",8.25,#FALSE#,#TRUE#,255)";

class SavingAScreen : public DeskTest {
 protected:
  SavingAScreen() {
    world.disk().MakeFolder("/home/user/Documents/sub");
    StartProgram();
  }

  std::string OnDisk(const std::string& path = kScreen) { return world.disk().Get(path); }
  ScriptedDialog& ExpectName(const std::string& path) {
    return world.dialogs().ExpectSaveFile("Save As").Give(path);
  }
  // Saves under this name, outside the project.
  void SaveUnder(const std::string& path) {
    ExpectName(path);
    ExpectAddToProject().Press(Answer::kNo);
    SaveAs();
  }
  std::string ProposedName() { return world.dialogs().last_file_request().file_name; }
};

// --- What is written ---

TEST_F(SavingAScreen, WritesBackByteForByteWhatItRead) {
  for (const std::string& text :
       {FileText(
            {"16744576", R"("L",0,3,"01A0",0,"Flow","t_flow",0,1,0,0,"0",0,600,2400,600,240,"0")",
             R"("I",1,3,"0012",0,"Status","Not Assigned",0,0,0,0,"0",1,900,2400,900,240,"1",3,2)",
             R"("T","Boiler 1",120,240,"Arial",8.25,#TRUE#,#FALSE#,255)"}),
        FileText({"-2147483643", kM, kT}), FileText({"0"}),
        FileText(
            {"5",
             R"("L",-7,99,"    ",255,"","",255,255,255,255,"",-1,0.1,-0.5,16777216,1E+30,"")"})}) {
    OpenText(text);
    Save();
    if (text.find("1E+30") == std::string::npos) {
      EXPECT_EQ(OnDisk(), text);
    } else {
      EXPECT_EQ(OnDisk().find('E', OnDisk().find("16777216")), std::string::npos);
    }
  }
}

TEST_F(SavingAScreen, WritesWhatIsOnTheScreen) {
  OpenText(FileText({"255", kL, kT}));
  main().form.BackColor = 1;
  main().Locations[1].Alias = "Tank";
  main().RAM_LOC_TEXT(1).Left = 12.5F;
  main().RAM_LOC_TEXT(1).Top = 13;
  main().RAM_LOC_VAL(1).Left = 14;
  main().RAM_LOC_VAL(1).Top = -15;
  main().RAM_LOC_VAL(1).Text = "4711";
  main().Locations[1].RawValue = 4711;
  main().lbl_TextInfo(1).Caption = "Cellar";
  main().lbl_TextInfo(1).Top = 99;
  main().lbl_TextInfo(1).ForeColor = 65280;
  main().lbl_TextInfo(1).TextFont = Font{"Courier", 12, true, false};
  Save();
  EXPECT_EQ(OnDisk(),
            FileText({"1", R"("L",0,3,"01A0",0,"Tank","v",0,0,0,0,"0",0,-15,14,13,12.5,"0")",
                      R"("T","Cellar",99,2,"Courier",12,#TRUE#,#FALSE#,65280)"}));
}

TEST_F(SavingAScreen, DeletedLocationsAndLabelsLeaveNoRecordAndTheRestIsNumberedAnew) {
  const auto named = [](const std::string& alias) {
    return R"("L",0,3,"01A0",0,")" + alias + R"(","v",0,0,0,0,"0",0,1,2,3,4,"0")";
  };
  const auto label = [](const std::string& caption) {
    return R"("T",")" + caption + R"(",1,2,"Arial",8,#FALSE#,#FALSE#,0)";
  };
  OpenText(
      FileText({"255", named("a"), named("b"), named("c"), named("d"), label("x"), label("y")}));
  Delete(1);
  Delete(3);
  main().lbl_TextInfo(1).Visible = false;
  Save();
  EXPECT_EQ(OnDisk(), FileText({"255", named("b"), named("d"), label("y")}));
  Open(kScreen);
  EXPECT_EQ(Counts(), "MaxId 2, LocationCount 2, TextInfoCount 1");
  EXPECT_EQ(main().RAM_LOC_TEXT(1).Text.get(), "b");
  EXPECT_EQ(main().RAM_LOC_VAL(1).Text.get(), "Value 1");
  EXPECT_EQ(main().RAM_LOC_TEXT(2).Text.get(), "d");
  EXPECT_EQ(main().RAM_LOC_VAL(2).Text.get(), "Value 2");
}

TEST_F(SavingAScreen, UnderModbusIdRecordsBecomeModbusRecordsAndBack) {
  OpenText(FileText({"255", kL, kI}));
  options().opt_Protocol.Choose(2);
  Save();
  const std::string modbus =
      R"("M",1,3,"0012",0,"S","v",0,0,0,0,"0",1,1,2,3,4,"1",3,2,"&H00",1,#FALSE#)";
  EXPECT_EQ(OnDisk(), FileText({"255", kL, modbus}));
  Open(kScreen);
  EXPECT_EQ(options().opt_Protocol.Selected(), 2);
  for (const int other : {1, 0}) {
    options().opt_Protocol.Choose(other);
    Save();
    EXPECT_EQ(OnDisk(), FileText({"255", kL, kI}));
  }
}

TEST_F(SavingAScreen, AMemoryLocationIsOneUnderEveryProtocol) {
  OpenText(FileText({"255", kL}));
  for (const int protocol : {0, 1, 2}) {
    options().opt_Protocol.Choose(protocol);
    Save();
    EXPECT_EQ(OnDisk(), FileText({"255", kL}));
  }
}

TEST_F(SavingAScreen, AnyOtherSpecificationIsWrittenByClassAndId) {
  OpenText(FileText({"255", R"("L",2,3,"01A0",0,"Flow","v",0,0,0,0,"0",0,1,2,3,4,"0")"}));
  Save();
  EXPECT_EQ(OnDisk(),
            FileText({"255", R"("I",2,3,"01A0",0,"Flow","v",0,0,0,0,"0",0,1,2,3,4,"0",1,2)"}));
}

TEST_F(SavingAScreen, TextsThatFitAreWrittenAsWindowsReadsThem) {
  OpenText(FileText({"255", R"("T","W)"
                            "\xE4"
                            R"(rme 5 )"
                            "\x80"
                            R"(",1,2,"Arial",8,#FALSE#,#FALSE#,0)"}));
  EXPECT_EQ(main().lbl_TextInfo(1).Caption.get(), "Wärme 5 €");
  Save();
  EXPECT_NE(OnDisk().find("W\xE4rme 5 \x80"), std::string::npos);
  main().lbl_TextInfo(1).Caption = "Ω";
  Save();
  EXPECT_NE(OnDisk().find("\"Ω\""), std::string::npos);
}

TEST_F(SavingAScreen, WithoutAPathWritesNothing) {
  EXPECT_TRUE(program().screen.SaveScreenFile(""));
  EXPECT_EQ(world.faults().CountOf("Files.WriteWhole"), 0);
}

// --- Save ---

TEST_F(SavingAScreen, ToItsOwnFileAsksNothing) {
  OpenText(FileText({"255", kL}));
  main().form.BackColor = 7;
  ChangeScreen();
  EXPECT_EQ(Title(), "TarnLink - boiler.wcr *");
  Save();
  EXPECT_EQ(OnDisk(), FileText({"7", kL}));
  EXPECT_FALSE(main().WCRChanged);
  EXPECT_EQ(Title(), "TarnLink - boiler.wcr");
}

TEST_F(SavingAScreen, AnUnchangedScreenIsWrittenToo) {
  OpenText(FileText({"255", kL}));
  world.disk().Put(kScreen, "spoilt");
  Save();
  EXPECT_EQ(OnDisk(), FileText({"255", kL}));
}

TEST_F(SavingAScreen, ANewScreenAsksForAName) {
  ChangeScreen();
  ExpectName(kScreen);
  ExpectAddToProject().Press(Answer::kNo);
  Save();
  EXPECT_EQ(OnDisk(), "16744576\r\n");
  EXPECT_EQ(main().CurrentTarnLinkFile, kScreen);
  EXPECT_FALSE(main().WCRChanged);
  EXPECT_EQ(Title(), "TarnLink - boiler.wcr");
}

// --- Save as ---

TEST_F(SavingAScreen, AsAsksWithFilterExtensionAndOverwriteQuestion) {
  SaveUnder(kScreen);
  const FileDialogRequest& asked = world.dialogs().last_file_request();
  EXPECT_EQ(asked.filter, "Windows Tarnlink Screens (*.wcr)|*.wcr");
  EXPECT_EQ(asked.extension, "wcr");
  EXPECT_TRUE(asked.confirm_overwrite);
  EXPECT_EQ(asked.folder, kFolder);
}

TEST_F(SavingAScreen, AsTakesTheNewNameEverywhere) {
  OpenText(FileText({"255", kL}));
  ChangeScreen();
  SaveUnder(kOther);
  EXPECT_EQ(OnDisk(kOther), FileText({"255", kL}));
  EXPECT_EQ(main().CurrentTarnLinkFile, kOther);
  EXPECT_EQ(Title(), "TarnLink - other.wcr");
  EXPECT_FALSE(main().WCRChanged);
  EXPECT_EQ(History(main().M_fileHist),
            std::string(kOther) + "\n" + kScreen + "\n[<Free>]\n[<Free>]\n");
  EXPECT_EQ(main().WcrCmnDlg.InitDir, "/home/user/Documents/sub");
  main().form.BackColor = 9;
  Save();
  EXPECT_EQ(OnDisk(kOther), FileText({"9", kL}));
  EXPECT_EQ(OnDisk(kScreen), FileText({"255", kL}));
}

TEST_F(SavingAScreen, AsAFileOfTheHistoryMovesItUp) {
  OpenText("1\r\n", kOther);
  OpenText("2\r\n");
  SaveUnder(kOther);
  EXPECT_EQ(History(main().M_fileHist),
            std::string(kOther) + "\n" + kScreen + "\n[<Free>]\n[<Free>]\n");
}

TEST_F(SavingAScreen, AsCancelledChangesNothing) {
  OpenText(FileText({"255", kL}));
  ChangeScreen();
  TakeNotes();
  world.dialogs().ExpectSaveFile("Save As").Cancel();
  SaveAs();
  EXPECT_EQ(world.faults().CountOf("Files.WriteWhole"), 0);
  EXPECT_EQ(main().CurrentTarnLinkFile, kScreen);
  EXPECT_TRUE(main().WCRChanged);
  EXPECT_EQ(Title(), "TarnLink - boiler.wcr *");
  EXPECT_EQ(main().WcrCmnDlg.InitDir, kFolder);
  EXPECT_EQ(TakeNotes(), "");
}

TEST_F(SavingAScreen, AsOffersTheScreensOwnName) {
  OpenText("1\r\n", kOther);
  main().WcrCmnDlg.FileName = "something.else";
  world.dialogs().ExpectSaveFile("Save As").Cancel();
  SaveAs();
  EXPECT_EQ(ProposedName(), kOther);
}

TEST_F(SavingAScreen, AsOffersANewScreenTheLastNameMadeToEndLikeAScreen) {
  struct Row {
    std::string last, offered;
  };
  for (const Row& row :
       {Row{"", ""}, Row{"a", "a"}, Row{"a.b", "a.b"}, Row{".map", ".map"}, Row{"a.map", "a.wcr"},
        Row{"a.wcr", "a.wcr"}, Row{"a.WCR", "a.WCR"}, Row{"a.Wcr", "a.Wcr"}, Row{".wcr", ".wcr"},
        Row{"abcde", "a.wcr"}, Row{"/jobs/boiler.prj", "/jobs/boiler.wcr"},
        Row{"/jobs/boiler.wcr2", "/jobs/boiler..wcr"}, Row{"/jobs/boiler", "/jobs/bo.wcr"}}) {
    main().WcrCmnDlg.FileName = row.last;
    world.dialogs().ExpectSaveFile("Save As").Cancel();
    SaveAs();
    EXPECT_EQ(ProposedName(), row.offered) << row.last;
  }
}

TEST_F(SavingAScreen, TheLastFourOfAnOfferedNameAreCharactersNotBytes) {
  struct Row {
    std::string last, offered;
  };
  for (const Row& row : {Row{"/jobs/Kühlöl", "/jobs/Kü.wcr"}, Row{"/jobs/5€ab", "/jobs/.wcr"},
                         Row{"äöü", "äöü"}, Row{"/jobs/Wärme", "/jobs/W.wcr"}}) {
    main().WcrCmnDlg.FileName = row.last;
    world.dialogs().ExpectSaveFile("Save As").Cancel();
    SaveAs();
    EXPECT_EQ(ProposedName(), row.offered) << row.last;
  }
}

TEST_F(SavingAScreen, AsOffersTheNameOfTheScreenBeforeANewOne) {
  OpenText("1\r\n", "/home/user/Documents/readings.txt");
  main().M_NewScreen.Press();
  world.dialogs().ExpectSaveFile("Save As").Cancel();
  Save();
  EXPECT_EQ(ProposedName(), "/home/user/Documents/readings.wcr");
}

// --- The project ---

TEST_F(SavingAScreen, AsOffersToAddTheFileToTheProject) {
  ExpectName(kScreen);
  ExpectAddToProject().Press(Answer::kYes).While([this] {
    EXPECT_EQ(OnDisk(), "16744576\r\n");
    EXPECT_EQ(Title(), "TarnLink - boiler.wcr");
  });
  SaveAs();
  EXPECT_EQ(main().trvProject.FirstChild("wcr"), kScreen);
  EXPECT_TRUE(main().ProjectChanged);
}

TEST_F(SavingAScreen, NoAddsNothing) {
  SaveUnder(kScreen);
  EXPECT_EQ(main().trvProject.FirstChild("wcr"), std::nullopt);
  EXPECT_FALSE(main().ProjectChanged);
}

TEST_F(SavingAScreen, AFileOfTheProjectIsNotOfferedAgain) {
  main().trvProject.AddFileToProject("wcr", kScreen);
  ExpectName(kScreen);
  SaveAs();
  EXPECT_FALSE(main().ProjectChanged);
  ExpectName(kScreen);
  SaveAs();
}

TEST_F(SavingAScreen, SaveToItsOwnFileOffersNothingToTheProject) {
  OpenText("1\r\n");
  Save();
  EXPECT_FALSE(main().trvProject.HasNode(kScreen));
}

// --- Failures ---

TEST_F(SavingAScreen, ThatFailsTellsTheReasonAndKeepsTheOldFile) {
  struct Row {
    int code;
    std::function<void()> spoil, mend;
  };
  OpenText(FileText({"255", kL}));
  main().form.BackColor = 7;
  ChangeScreen();
  const std::vector<Row> rows = {
      {61, [this] { world.disk().SetFreeSpace(5); }, [this] { world.disk().SetFreeSpace(10'000); }},
      {70, [this] { world.disk().Forbid(kScreen); }, [this] { world.disk().Allow(kScreen); }},
      {70, [this] { world.disk().Forbid(kFolder); }, [this] { world.disk().Allow(kFolder); }},
      {57, [this] { world.faults().Break("Files.WriteWhole", RunTimeError(kDeviceIo, "Broken.")); },
       [] {}}};
  for (const Row& row : rows) {
    row.spoil();
    ExpectSaveFailure(row.code);
    Save();
    EXPECT_NE(world.dialogs().shown().back().find(" | "), std::string::npos);
    EXPECT_EQ(OnDisk(), FileText({"255", kL}));
    EXPECT_TRUE(main().WCRChanged);
    EXPECT_EQ(Title(), "TarnLink - boiler.wcr *");
    row.mend();
  }
  Save();
  EXPECT_EQ(OnDisk(), FileText({"7", kL}));
  EXPECT_FALSE(main().WCRChanged);
}

TEST_F(SavingAScreen, AsThatFailsIsToldKeepsTheChangeAndOffersNothingToTheProject) {
  ChangeScreen();
  world.disk().MakeFolder("/dev");
  world.disk().MakeSpecial("/dev/full");
  for (const auto& [path, code] : std::vector<std::pair<std::string, int>>{
           {"/nowhere/a.wcr", 76}, {"/dev/full", 57}, {"/home/user/Documents/sub", 57}}) {
    ExpectName(path);
    ExpectSaveFailure(code, path);
    SaveAs();
    EXPECT_TRUE(main().WCRChanged);
    EXPECT_FALSE(main().ProjectChanged);
  }
}

TEST_F(SavingAScreen, AnyCallThatBreaksDuringASaveIsTold) {
  OpenText(FileText({"255", kL}));
  const std::size_t before = world.faults().calls().size();
  SaveUnder(kOther);
  // Whether the file is in the project already is asked behind the save.
  const std::vector<std::string> made(world.faults().calls().begin() + static_cast<long>(before),
                                      world.faults().calls().end());
  const auto write = std::find(made.begin(), made.end(), "Files.WriteWhole");
  ASSERT_NE(write, made.end());
  const auto calls = static_cast<int>(write - made.begin()) + 1;
  for (int nth = 1; nth <= calls; ++nth) {
    ChangeScreen();
    ExpectName(kOther);
    ExpectSaveFailure(57, kOther);
    world.faults().Break("*", nth, RunTimeError(kDeviceIo, "It broke."));
    SaveAs();
    EXPECT_TRUE(world.faults().Spent());
    EXPECT_TRUE(main().WCRChanged);
    EXPECT_EQ(OnDisk(kOther), FileText({"255", kL}));
  }
}

}  // namespace
}  // namespace tarnlink
