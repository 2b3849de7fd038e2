// The start of the program: its order and what each step leaves, on an empty store and on others.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "form/desk_fixture.h"

namespace tarnlink {
namespace {

class StartUp : public DeskTest {
 protected:
  void Load() { program().start.Form_Load(); }
};

TEST_F(StartUp, OnAnEmptyStoreComesUpAsFirstDelivered) {
  StartProgram();
  EXPECT_EQ(PortOptions(), "1: 2400 Even Two 3");
  EXPECT_EQ(options().opt_CommPort.Selected(), 0);
  EXPECT_EQ(options().ComPortNumber.Text.get(), "1");
  EXPECT_EQ(main().MicroType, 0);
  EXPECT_EQ(options().MicroSelect.Selected(), 0);
  EXPECT_EQ(options().txt_LogPath.Text.get(), "C:");
  EXPECT_EQ(Panel(1), "COM1, 2400,E,8, 2");
  EXPECT_EQ(Panel(2), "Locations : 0");
  EXPECT_EQ(Panel(3), "ZOLT Protocol");
  EXPECT_EQ(Panel(4), "");
  EXPECT_EQ(main().Comm->Settings(), " 2400,E,8, 2");
  EXPECT_EQ(main().Comm->CommPort(), 1);
  EXPECT_FALSE(main().Comm->PortOpen());
  EXPECT_EQ(Title(), "TarnLink - New Screen");
  EXPECT_EQ(Screen(), "colour FF8080\n");
  EXPECT_EQ(Counts(), "MaxId 0, LocationCount 0, TextInfoCount 0");
  EXPECT_TRUE(main().sstProject.Visible);
  EXPECT_TRUE(main().mnuViewProjectWindow.Checked);
  EXPECT_EQ(History(main().M_fileHist), "[<Free>]\n[<Free>]\n[<Free>]\n[<Free>]\n");
  EXPECT_EQ(History(main().M_fileHistPrj), "[<Free>]\n[<Free>]\n[<Free>]\n[<Free>]\n");
}

TEST_F(StartUp, AppliesTheOptionsOnceWithoutShowingThem) {
  MakeProgram();
  int shown = 0;
  options().form.SetView([&] { shown += options().form.Visible ? 1 : 0; });
  Load();
  EXPECT_EQ(shown, 0);
  EXPECT_FALSE(options().form.Visible);
  EXPECT_EQ(Stored("Communication", "Protocol"), "1");
}

TEST_F(StartUp, IsTheFirstLoadUntilTheOptionsHaveBeenApplied) {
  MakeProgram();
  std::vector<bool> seen;
  main().LoadClass7 = [&](const std::string&) { seen.push_back(main().FirstLoad); };
  main().ReadIDItems = [&](const std::string&) { seen.push_back(main().FirstLoad); };
  Load();
  EXPECT_EQ(seen, (std::vector<bool>{true, true}));
  EXPECT_FALSE(main().FirstLoad);
}

TEST_F(StartUp, LoadsTheOptionsBeforeItAppliesThem) {
  Store("Paths", "MemoryDefPath", "/jobs/a.map");
  Store("Communication", "Baudrate", "5");
  MakeProgram();
  std::string map;
  main().LoadClass7 = [&](const std::string& file) { map = file; };
  Load();
  EXPECT_EQ(map, "/jobs/a.map");
  EXPECT_EQ(Panel(1), "COM1, 38400,E,8, 2");
}

TEST_F(StartUp, BeginsAnEmptyProjectBeforeItAppliesTheOptions) {
  MakeProgram();
  main().trvProject.AddFileToProject("lst", "/jobs/old.lst");
  std::string map;
  main().LoadClass7 = [&](const std::string& file) { map = file; };
  Load();
  EXPECT_EQ(map, ".\\default.map");
  std::string keys;
  for (const ProjectNode& node : main().trvProject.Nodes()) keys += node.key + " ";
  EXPECT_EQ(keys, "p wcr par grp erc ids lst ");
  EXPECT_EQ(main().trvProject.RootText(), "Unnamed Project");
}

TEST_F(StartUp, PutsTheLocationsToTheDefaultsOfTheStoredProtocol) {
  for (const std::string protocol : {"0", "1", "2"}) {
    Store("Communication", "Protocol", protocol);
    MakeProgram();
    main().Locations[0].Alias = "stale";
    main().Locations[512].Alias = "stale";
    Load();
    Location expected;
    expected.LocSlaveAddress = protocol == "2" ? "1" : "0";
    for (const int index : {0, 1, 512}) EXPECT_EQ(main().Locations[index], expected) << index;
  }
}

TEST_F(StartUp, LeavesAnUnchangedScreen) {
  MakeProgram();
  main().WCRChanged = true;
  Load();
  EXPECT_FALSE(main().WCRChanged);
}

TEST_F(StartUp, DefaultFilesThatAreNotThereAreNoError) {
  // Any dialog would fail this test.
  StartProgram();
  EXPECT_EQ(world.dialogs().shown().size(), 0U);
}

TEST_F(StartUp, MovesANormalWindowToItsPlace) {
  Store("Startup", "Left", "-1200");
  Store("Startup", "Top", "450");
  Store("Startup", "Width", "15000");
  Store("Startup", "Height", "10000");
  StartProgram();
  EXPECT_EQ(main().form.Left.get(), -1200);
  EXPECT_EQ(main().form.Top.get(), 450);
  EXPECT_EQ(main().form.Width.get(), 15000);
  EXPECT_EQ(main().form.Height.get(), 10000);
}

TEST_F(StartUp, LeavesAMaximizedOrMinimizedWindowWhereItIs) {
  for (const WindowState state : {WindowState::kMaximized, WindowState::kMinimized}) {
    Store("Startup", "Left", "100");
    Store("Startup", "Top", "200");
    Store("Startup", "Width", "15000");
    Store("Startup", "Height", "10000");
    MakeProgram();
    main().form.State = state;
    main().form.Left = 1;
    main().form.Top = 2;
    main().form.Width = 3;
    main().form.Height = 4;
    Load();
    EXPECT_EQ(main().form.Left.get(), 1);
    EXPECT_EQ(main().form.Top.get(), 2);
    EXPECT_EQ(main().form.Width.get(), 3);
    EXPECT_EQ(main().form.Height.get(), 4);
  }
}

TEST_F(StartUp, ReadsTheProjectWindowFromItsText) {
  struct Row {
    std::string stored;
    bool shown;
  };
  for (const Row& row : {Row{"True", true}, Row{"False", false}, Row{"false", false},
                         Row{"FALSE", false}, Row{"true", true}}) {
    Store("Project", "ProjectWindow", row.stored);
    StartProgram();
    EXPECT_EQ(main().sstProject.Visible, row.shown) << row.stored;
    EXPECT_EQ(main().mnuViewProjectWindow.Checked, row.shown) << row.stored;
  }
}

TEST_F(StartUp, TheFoldersAreThoseOfTheDialogs) {
  Store("WcrCmnDlg", "InitDir", "/jobs/screens");
  StartProgram();
  world.dialogs().ExpectOpenFile("Open").Cancel();
  main().M_fileopen.Press();
  EXPECT_EQ(world.dialogs().last_file_request().folder, "/jobs/screens");
}

TEST_F(StartUp, AFolderOfTheOldWorldMeansTheDocuments) {
  StartProgram();
  EXPECT_EQ(main().WcrCmnDlg.InitDir, "C:\\");
  world.dialogs().ExpectOpenFile("Open").Cancel();
  main().M_fileopen.Press();
  EXPECT_EQ(world.dialogs().last_file_request().folder, kFolder);
}

TEST_F(StartUp, CommportOutOfRangeLoadsAsOne) {
  for (const std::string stored : {"0", "17", "-1", "abc", "", "160", "99999999999"}) {
    Store("Communication", "Commport", stored);
    StartProgram();
    EXPECT_EQ(options().ComPortNumber.Text.get(), "1") << stored;
    EXPECT_EQ(main().Comm->CommPort(), 1) << stored;
    EXPECT_EQ(Panel(1), "COM1, 2400,E,8, 2") << stored;
  }
}

TEST_F(StartUp, LoadsThePortNumberIntoItsTextBeforeAnythingIsApplied) {
  struct Row {
    std::string stored, shown;
    int button;
  };
  for (const Row& row : {Row{"0", "1", -1}, Row{"17", "1", -1}, Row{"x", "1", -1}, Row{"2", "2", 1},
                         Row{" 4 ", "4", 3}, Row{"5", "5", 4}, Row{"16", "16", 4}}) {
    Store("Communication", "Commport", row.stored);
    MakeProgram();
    LoadOptions(main(), options());
    EXPECT_EQ(options().ComPortNumber.Text.get(), row.shown);
    EXPECT_EQ(options().opt_CommPort.Selected(), row.button);
    EXPECT_EQ(Stored("Communication", "Commport"), row.stored);
  }
}

TEST_F(StartUp, LoadsTheMicroprocessorWhateverABuildOutputHasMadeOfIt) {
  StartProgram();
  main().MicroType = 2;
  LoadOptions(main(), options());
  EXPECT_EQ(main().MicroType, 0);
}

TEST_F(StartUp, CommportFiveToSixteenIsTheButtonComWithItsNumber) {
  for (const int number : {5, 6, 15, 16}) {
    Store("Communication", "Commport", std::to_string(number));
    StartProgram();
    EXPECT_EQ(options().opt_CommPort.Selected(), 4);
    EXPECT_TRUE(options().ComPortNumber.Enabled);
    EXPECT_EQ(main().Comm->CommPort(), number);
    EXPECT_EQ(Stored("Communication", "Commport"), std::to_string(number));
  }
}

TEST_F(StartUp, StoredPortOptionsWinOverThePresetOfTheProtocol) {
  Store("Communication", "Protocol", "2");
  Store("Communication", "Baudrate", "0");
  Store("Communication", "Parity", "2");
  Store("Communication", "StopBits", "1");
  Store("Communication", "MsgTimeout", "5");
  StartProgram();
  EXPECT_EQ(PortOptions(), "2: 1200 Odd Two 5");
  EXPECT_EQ(Panel(1), "COM1, 1200,O,8, 2");
  EXPECT_EQ(Panel(3), "ModBus Protocol");
  EXPECT_FALSE(main().M_Tools.Enabled);
}

}  // namespace
}  // namespace tarnlink
