// The browse buttons of the options dialog.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "form/desk_fixture.h"

namespace tarnlink {
namespace {

class OptionsBrowse : public DeskTest {
 protected:
  OptionsBrowse() { StartProgram(); }

  // Chooses a map file, about which a box then tells.
  void BrowseMap(const std::string& path, const std::string& told, Icon icon) {
    world.dialogs().ExpectOpenFile("Memory map file").Give(path);
    world.dialogs().ExpectMessageBox({.text = told, .title = "TarnLink", .icon = icon});
    options().cmdBrowseMapFile.Press();
  }
  std::string Filter() { return world.dialogs().last_file_request().filter; }
  std::string Folder() { return world.dialogs().last_file_request().folder; }
};

TEST_F(OptionsBrowse, MapFileTellsWhatItFoundAndChoosesTheMicroprocessor) {
  struct Row {
    std::string path, text, message;
    int micro;
  };
  const std::vector<Row> rows = {
      {"/jobs/x.map", "a\r\n .text __cpu_name ATxmega128\r\n", "XMEGA map file found.", 1},
      {"/jobs/n.lst", "head\nTarget CPU : 78K0\n", "NEC map file found.", 2},
      {"/jobs/a.map", "a\n__cpu_name  ATmega64\n", "ATMEGA map file found.", 0}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.path);
    world.disk().Put(row.path, row.text);
    BrowseMap(row.path, row.message, Icon::kInformation);
    EXPECT_EQ(options().MicroSelect.Selected(), row.micro);
    EXPECT_EQ(main().MicroType, row.micro);
    EXPECT_EQ(options().txt_MapFile.Text.get(), row.path);
  }
  EXPECT_EQ(Filter(), "Memory map file (*.map,*.lst)|*.map;*.lst");
}

TEST_F(OptionsBrowse, AMapFileWithoutASignatureKeepsTheOldFile) {
  options().MicroSelect.Choose(3);
  struct Row {
    std::string path, text;
  };
  const std::vector<Row> rows = {{"/jobs/a.map", ""},
                                 {"/jobs/a.map", "cpu_name ATmega64\n"},
                                 {"/jobs/a.map", "__cpu_name other\n__cpu_name ATmega64\n"},
                                 {"/jobs/a.map", "Target CPU\n"},
                                 {"/jobs/a.lst", "__cpu_name ATmega64\n"},
                                 {"/jobs/a.lst", "Target\nCPU\n"},
                                 {"/jobs/a.txt", "__cpu_name ATmega64\nTarget CPU\n"},
                                 {"/jobs/map", "\xFF\xFE"}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.path + " " + row.text);
    world.disk().Put(row.path, row.text);
    BrowseMap(row.path, "Unkonwn map file.", Icon::kExclamation);
    EXPECT_EQ(options().MicroSelect.Selected(), 3);
    EXPECT_EQ(main().MicroType, 3);
    EXPECT_EQ(options().txt_MapFile.Text.get(), ".\\default.map");
  }
}

TEST_F(OptionsBrowse, AMapFileThatCannotBeReadIsUnknown) {
  world.disk().Put("/jobs/a.map", "__cpu_name ATmega64\n");
  world.disk().Forbid("/jobs/a.map");
  for (const std::string path : {"/jobs/a.map", "/jobs/gone.map", "/nowhere/a.map", "/jobs"}) {
    SCOPED_TRACE(path);
    BrowseMap(path, "Unkonwn map file.", Icon::kExclamation);
    EXPECT_EQ(options().txt_MapFile.Text.get(), ".\\default.map");
  }
}

TEST_F(OptionsBrowse, ACancelledDialogChangesNothingAndSaysNothing) {
  world.dialogs().ExpectOpenFile("Memory map file").Cancel();
  options().cmdBrowseMapFile.Press();
  world.dialogs().ExpectOpenFile("ZOLT ID definition file").Cancel();
  options().cmdBrowseZOLTIDFile.Press();
  world.dialogs().ExpectOpenFile("Excel").Cancel();
  options().cmdBrowseExcel.Press();
  world.dialogs().ExpectFolder("Log Path").Cancel();
  options().cmdBrowseLogPath.Press();
  world.dialogs().ExpectFolder("Path to database files").Cancel();
  options().cmdBrowseDatabasefiles.Press();
  EXPECT_EQ(options().txt_MapFile.Text.get(), ".\\default.map");
  EXPECT_EQ(options().txt_ZOLTIDDef.Text.get(), ".\\default.ids");
  EXPECT_EQ(options().txt_PathToExcel.Text.get(), "D:\\EXCEL.EXE");
  EXPECT_EQ(options().txt_LogPath.Text.get(), "C:");
  EXPECT_EQ(options().txt_databasefiles.Text.get(), ".");
}

TEST_F(OptionsBrowse, IdFile) {
  world.dialogs().ExpectOpenFile("ZOLT ID definition file").Give("/jobs/a.ids");
  options().cmdBrowseZOLTIDFile.Press();
  EXPECT_EQ(Filter(), "ZOLT ID file (*.ids)|*.ids");
  EXPECT_EQ(options().txt_ZOLTIDDef.Text.get(), "/jobs/a.ids");
}

TEST_F(OptionsBrowse, SpreadsheetProgram) {
  world.dialogs().ExpectOpenFile("Excel").Give("/usr/bin/localc");
  options().cmdBrowseExcel.Press();
  EXPECT_EQ(Filter(), "(Excel.exe)|Excel.exe");
  EXPECT_EQ(options().txt_PathToExcel.Text.get(), "/usr/bin/localc");
}

TEST_F(OptionsBrowse, Folders) {
  world.dialogs().ExpectFolder("Log Path").Give("/var/log");
  options().cmdBrowseLogPath.Press();
  world.dialogs().ExpectFolder("Path to database files").Give("/jobs");
  options().cmdBrowseDatabasefiles.Press();
  EXPECT_EQ(options().txt_LogPath.Text.get(), "/var/log");
  EXPECT_EQ(options().txt_databasefiles.Text.get(), "/jobs");
}

TEST_F(OptionsBrowse, AFolderEndsAtItsFirstNul) {
  world.dialogs().ExpectFolder("Log Path").Give(std::string("/var/log\0junk", 13));
  options().cmdBrowseLogPath.Press();
  EXPECT_EQ(options().txt_LogPath.Text.get(), "/var/log");
  world.dialogs().ExpectFolder("Path to database files").Give(std::string("\0junk", 5));
  options().cmdBrowseDatabasefiles.Press();
  EXPECT_EQ(options().txt_databasefiles.Text.get(), "");
}

TEST_F(OptionsBrowse, AFolderHasAtMost260Characters) {
  for (const std::size_t length : {259U, 260U, 261U, 5000U}) {
    world.dialogs().ExpectFolder("Log Path").Give("/" + std::string(length - 1, 'a'));
    options().cmdBrowseLogPath.Press();
    EXPECT_EQ(options().txt_LogPath.Text->size(), std::min<std::size_t>(length, 260));
  }
}

TEST_F(OptionsBrowse, TheCharactersOfAFolderAreNotItsBytes) {
  std::string folder = "/";
  for (int i = 0; i < 200; ++i) folder += "ü";
  world.dialogs().ExpectFolder("Log Path").Give(folder);
  options().cmdBrowseLogPath.Press();
  EXPECT_EQ(options().txt_LogPath.Text.get(), folder);
}

TEST_F(OptionsBrowse, DialogsOpenWhereTheOldFileIs) {
  options().txt_ZOLTIDDef.Text = "/jobs/a.ids";
  world.dialogs().ExpectOpenFile("ZOLT ID definition file").Cancel();
  options().cmdBrowseZOLTIDFile.Press();
  EXPECT_EQ(Folder(), "/jobs");
  // A drive of the old world names no folder here.
  world.dialogs().ExpectOpenFile("Excel").Cancel();
  options().cmdBrowseExcel.Press();
  EXPECT_EQ(Folder(), kFolder);
  world.dialogs().ExpectFolder("Log Path").Cancel();
  options().cmdBrowseLogPath.Press();
  EXPECT_EQ(world.dialogs().last_folder(), kFolder);
}

TEST_F(OptionsBrowse, SavesNothingBeforeOk) {
  TakeNotes();
  world.disk().Put("/jobs/n.lst", "Target CPU");
  BrowseMap("/jobs/n.lst", "NEC map file found.", Icon::kInformation);
  world.dialogs().ExpectOpenFile("Excel").Give("/usr/bin/localc");
  options().cmdBrowseExcel.Press();
  EXPECT_EQ(TakeNotes(), "");
}

}  // namespace
}  // namespace tarnlink
