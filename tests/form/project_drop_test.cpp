// Files dropped from the desktop: each goes to the group of its extension.

#include <gtest/gtest.h>

#include <string>

#include "form/desk_fixture.h"

namespace tarnlink {
namespace {

class DroppingAFile : public DeskTest {
 protected:
  DroppingAFile() {
    StartProgram();
    main().ReadIDItems = [this](const std::string& file) { read += "ids " + file + "\n"; };
  }

  void Drop(const std::string& path) { main().form.FileDropped(path); }
  void ExpectBox(const std::string& text, const std::string& title) {
    world.dialogs().ExpectMessageBox({.text = text, .title = title, .icon = Icon::kExclamation});
  }
  // The project's files, "group: path" a line.
  std::string Files() {
    std::string text;
    for (const ProjectNode& node : main().trvProject.Nodes()) {
      if (node.parent != "p" && !node.parent.empty()) text += node.parent + ": " + node.key + "\n";
    }
    return text;
  }

  std::string read;
};

TEST_F(DroppingAFile, AddsItToItsGroup) {
  Drop("/jobs/main.wcr");
  Drop("/jobs/night.par");
  Drop("/jobs/flow.grp");
  Drop("/jobs/errors.erc");
  EXPECT_EQ(Files(),
            "wcr: /jobs/main.wcr\npar: /jobs/night.par\ngrp: /jobs/flow.grp\n"
            "erc: /jobs/errors.erc\n");
  EXPECT_TRUE(main().ProjectChanged);
  EXPECT_EQ(read, "");
}

TEST_F(DroppingAFile, EachAddChangesTheProject) {
  for (const std::string kind : {"wcr", "par", "grp", "erc", "ids", "lst"}) {
    main().ProjectChanged = false;
    Drop("/jobs/a." + kind);
    EXPECT_TRUE(main().ProjectChanged) << kind;
    EXPECT_EQ(main().trvProject.FirstChild(kind), "/jobs/a." + kind);
  }
}

TEST_F(DroppingAFile, TheCaseOfTheExtensionDoesNotCount) {
  for (const std::string kind : {"WCR", "Par", "gRP", "ERC", "IDS", "LST"}) Drop("/Jobs/A." + kind);
  EXPECT_EQ(Files(),
            "wcr: /Jobs/A.WCR\npar: /Jobs/A.Par\ngrp: /Jobs/A.gRP\nerc: /Jobs/A.ERC\n"
            "ids: /Jobs/A.IDS\nlst: /Jobs/A.LST\n");
}

TEST_F(DroppingAFile, OnlyTheLastThreeCharactersCount) {
  Drop("/jobs/mywcr");
  Drop("wcr2.par");
  EXPECT_EQ(Files(), "wcr: /jobs/mywcr\npar: wcr2.par\n");
}

TEST_F(DroppingAFile, ScreensParametersAndGraphsMayBeMany) {
  Drop("/jobs/a.wcr");
  Drop("/jobs/b.wcr");
  Drop("/jobs/a.par");
  Drop("/jobs/b.par");
  Drop("/jobs/a.grp");
  Drop("/jobs/b.grp");
  EXPECT_EQ(Files(),
            "wcr: /jobs/a.wcr\nwcr: /jobs/b.wcr\npar: /jobs/a.par\npar: /jobs/b.par\n"
            "grp: /jobs/a.grp\ngrp: /jobs/b.grp\n");
}

TEST_F(DroppingAFile, AFileOfTheProjectIsNotAddedAgain) {
  Drop("/jobs/a.wcr");
  main().ProjectChanged = false;
  ExpectBox("\"a.wcr\" stands in the project already.", "TarnLink");
  Drop("/jobs/a.wcr");
  EXPECT_EQ(Files(), "wcr: /jobs/a.wcr\n");
  EXPECT_FALSE(main().ProjectChanged);
}

TEST_F(DroppingAFile, AMemoryMapIsReadAtOnce) {
  world.disk().Put("/jobs/a.lst", "DATA\r\n           flow                    FE20\r\n");
  world.disk().Put("/jobs/a.map", "__cpu_name = ATmega64\nENTRY LIST\nflow DATA 000060\n");
  Location variable;
  variable.ActualVariable = "flow";
  for (const std::string path : {"/jobs/a.lst", "/jobs/a.map"}) {
    main().trvProject.InitNewProjectTree();
    main().MicroType = kAtmegaMap;
    Drop(path);
    EXPECT_EQ(Files(), "lst: " + path + "\n");
    EXPECT_TRUE(main().ProjectChanged);
    EXPECT_NE(program().map.AddressOf(variable), "") << path;
    EXPECT_EQ(main().MicroType, path.ends_with("lst") ? kNecListing : kAtmegaMap);
  }
}

TEST_F(DroppingAFile, ASecondMemoryMapIsLeftAlone) {
  Drop("/jobs/a.lst");
  main().ProjectChanged = false;
  read.clear();
  for (const std::string path : {"/jobs/b.lst", "/jobs/b.map", "/jobs/a.lst"}) Drop(path);
  EXPECT_EQ(Files(), "lst: /jobs/a.lst\n");
  EXPECT_EQ(read, "");
  EXPECT_FALSE(main().ProjectChanged);
}

TEST_F(DroppingAFile, AnIdFileIsReadAtOnceAndASecondIsRefused) {
  Drop("/jobs/a.ids");
  EXPECT_EQ(read, "ids /jobs/a.ids\n");
  main().ProjectChanged = false;
  for (const std::string path : {"/jobs/b.ids", "/jobs/a.ids"}) {
    ExpectBox("First remove the current id file from project.", "TarnLink");
    Drop(path);
  }
  EXPECT_EQ(Files(), "ids: /jobs/a.ids\n");
  EXPECT_EQ(read, "ids /jobs/a.ids\n");
  EXPECT_FALSE(main().ProjectChanged);
}

TEST_F(DroppingAFile, ASecondErrorDescriptionIsRefused) {
  Drop("/jobs/a.erc");
  main().ProjectChanged = false;
  ExpectBox("First remove the current error description file from project.", "TarnLink");
  Drop("/jobs/b.erc");
  EXPECT_EQ(Files(), "erc: /jobs/a.erc\n");
  EXPECT_FALSE(main().ProjectChanged);
}

TEST_F(DroppingAFile, OfAnotherTypeIsRefused) {
  for (const std::string path : {"/jobs/readme.txt", "/jobs/a.wcr.bak", "/jobs/wc", "", "a.wc"}) {
    ExpectBox("Unknown file type.", "TarnLink2");
    Drop(path);
  }
  EXPECT_EQ(Files(), "");
  EXPECT_FALSE(main().ProjectChanged);
}

TEST_F(DroppingAFile, AProjectIsOpenedInPlaceOfTheOldOne) {
  world.disk().Put("/jobs/job.prj", "\"p\"\r\n\"wcr\"\r\n\"/jobs/b.wcr\"\r\n");
  Drop("/jobs/a.wcr");
  world.dialogs()
      .ExpectMessageBox({.text = "Project has changed. Save Project ?",
                         .title = "Project Changed",
                         .buttons = Buttons::kOkCancel})
      .Press(Answer::kCancel);
  Drop("/jobs/job.prj");
  EXPECT_EQ(Files(), "wcr: /jobs/b.wcr\n");
  EXPECT_EQ(main().trvProject.RootText(), "job.prj");
  EXPECT_FALSE(main().ProjectChanged);
}

TEST_F(DroppingAFile, LeavesTheScreenAsItIs) {
  OpenText("255\r\n");
  Drop("/jobs/a.wcr");
  EXPECT_EQ(main().CurrentTarnLinkFile, kScreen);
  EXPECT_FALSE(main().WCRChanged);
}

TEST_F(DroppingAFile, NeedsNoReaderOfNames) {
  main().LoadClass7 = nullptr;
  main().ReadIDItems = nullptr;
  Drop("/jobs/a.lst");
  Drop("/jobs/a.ids");
  EXPECT_EQ(Files(), "ids: /jobs/a.ids\nlst: /jobs/a.lst\n");
}

}  // namespace
}  // namespace tarnlink
