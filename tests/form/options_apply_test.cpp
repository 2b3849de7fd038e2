// What OK does in the options dialog, and in which order; the choice of the port and its refusals.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "form/desk_fixture.h"

namespace tarnlink {
namespace {

class OptionsOk : public DeskTest {
 protected:
  // From now on the notes tell of the status bar, the dialog and the readers of names too.
  void NoteEverything() {
    for (const int panel : {1, 3}) {
      main().StatusBar1(panel).SetView(
          [this, panel] { notes.Add("panel " + std::to_string(panel) + " " + Panel(panel)); });
    }
    options().form.SetView([this] { notes.Add(options().form.Visible ? "shown" : "hidden"); });
    main().M_Tools.SetView([this] { notes.Add(main().M_Tools.Enabled ? "tools" : "no tools"); });
    main().LoadClass7 = [this](const std::string& file) { notes.Add("map " + file); };
    main().ReadIDItems = [this](const std::string& file) {
      notes.Add("ids " + file + " for slave " + main().Locations[1].LocSlaveAddress +
                (main().FirstLoad ? ", first load" : ""));
    };
  }

  // Commport is to be saved as typed beside the button "COM".
  void ChooseOtherPort(const std::string& number) {
    ShowOptions();
    options().opt_CommPort.Choose(4);
    options().ComPortNumber.Text = number;
  }
};

TEST_F(OptionsOk, SavesShowsSetsHidesReloadsInThisOrder) {
  StartProgram();
  ShowOptions();
  options().opt_Protocol.Choose(2);
  options().opt_CommPort.Choose(1);
  options().MicroSelect.Choose(1);
  options().txt_LogPath.Text = "/var/log";
  NoteEverything();
  TakeNotes();
  Ok();
  EXPECT_EQ(TakeNotes(),
            "save Communication/Baudrate=4\n"
            "save Communication/Commport=2\n"
            "save Communication/Parity=1\n"
            "save Communication/StopBits=0\n"
            "save Communication/ExcelPath=D:\\EXCEL.EXE\n"
            "save Communication/IgnoreErrors=1\n"
            "save Communication/FileLogging=0\n"
            "save Communication/DDELogging=0\n"
            "save Communication/MsgTimeout=3\n"
            "save Communication/Scanning=0\n"
            "save Communication/Microprocessor=1\n"
            "save Paths/LogPath=/var/log\n"
            "save Paths/ZOLTIDDefPath=.\\default.ids\n"
            "save Paths/DatabaseFiles=.\n"
            "save Paths/MemoryDefPath=.\\default.map\n"
            "save Communication/Protocol=2\n"
            "panel 3 ModBus Protocol\n"
            "panel 1 COM2, 19200,E,8, 1\n"
            "port settings \" 19200,E,8, 1\"\n"
            "port number 2\n"
            "hidden\n"
            "map .\\default.map\n"
            "ids .\\default.ids for slave 0\n"
            "no tools\n");
  // The Locations of the empty screen follow the stored protocol last of all.
  EXPECT_EQ(main().Locations[1].LocSlaveAddress, "1");
  EXPECT_EQ(options().ComPortNumber.Text.get(), "2");
}

TEST_F(OptionsOk, TellsTheStatusBarAndThePortLetterByLetter) {
  struct Row {
    int baud, parity, stop;
    std::string panel, settings;
  };
  const std::vector<Row> rows = {{0, 0, 0, "COM1, 1200,N,8, 1", " 1200,N,8, 1"},
                                 {1, 1, 1, "COM1, 2400,E,8, 2", " 2400,E,8, 2"},
                                 {2, 2, 0, "COM1, 4800,O,8, 1", " 4800,O,8, 1"},
                                 {3, 0, 0, "COM1, 9600,N,8, 1", " 9600,N,8, 1"},
                                 {4, 1, 0, "COM1, 19200,E,8, 1", " 19200,E,8, 1"},
                                 {5, 2, 1, "COM1, 38400,O,8, 2", " 38400,O,8, 2"}};
  StartProgram();
  for (const Row& row : rows) {
    options().opt_Baudrate.Choose(row.baud);
    options().opt_parity.Choose(row.parity);
    options().opt_stop.Choose(row.stop);
    Ok();
    EXPECT_EQ(Panel(1), row.panel);
    EXPECT_EQ(main().Comm->Settings(), row.settings);
    EXPECT_EQ(Stored("Communication", "Baudrate"), std::to_string(row.baud));
    EXPECT_EQ(Stored("Communication", "Parity"), std::to_string(row.parity));
    EXPECT_EQ(Stored("Communication", "StopBits"), std::to_string(row.stop));
  }
}

TEST_F(OptionsOk, NamesTheProtocolInPanelThree) {
  StartProgram();
  const std::vector<std::string> names = {"TarnLink Protocol", "ZOLT Protocol", "ModBus Protocol"};
  for (int index = 0; index < 3; ++index) {
    options().opt_Protocol.Choose(index);
    Ok();
    EXPECT_EQ(Panel(3), names[static_cast<std::size_t>(index)]);
    EXPECT_EQ(Stored("Communication", "Protocol"), std::to_string(index));
  }
}

TEST_F(OptionsOk, SavesNothingForAGroupWithoutASetButton) {
  StartProgram();
  options().opt_Protocol.Clear();
  options().opt_Baudrate.Clear();
  options().opt_parity.Clear();
  options().opt_stop.Clear();
  TakeNotes();
  Ok();
  const std::string done = TakeNotes();
  for (const std::string key : {"Protocol", "Baudrate", "Parity", "StopBits"}) {
    EXPECT_EQ(done.find("save Communication/" + key + "="), std::string::npos) << done;
  }
  EXPECT_EQ(Panel(3), "ZOLT Protocol");
}

TEST_F(OptionsOk, TakesSpeedAndStopBitsFromTheStoreNotFromTheButtons) {
  Store("Communication", "Baudrate", "5");
  StartProgram();
  options().opt_Baudrate.Clear();
  options().opt_stop.Clear();
  Ok();
  EXPECT_EQ(Panel(1), "COM1, 38400,E,8, 2");
  EXPECT_EQ(main().Comm->Settings(), " 38400,E,8, 2");
}

TEST_F(OptionsOk, TakesTheMicroprocessorFromTheButtons) {
  StartProgram();
  for (const int index : {1, 2, 3, 0}) {
    options().MicroSelect.Choose(index);
    main().MicroType = 7;
    Ok();
    EXPECT_EQ(main().MicroType, index);
    EXPECT_EQ(Stored("Communication", "Microprocessor"), std::to_string(index));
  }
  options().MicroSelect.Clear();
  Ok();
  EXPECT_EQ(main().MicroType, 3);
  EXPECT_EQ(Stored("Communication", "Microprocessor"), "3");
}

TEST_F(OptionsOk, SavesThePortOfTheChosenButton) {
  StartProgram();
  for (int index = 0; index < 4; ++index) {
    const std::string number = std::to_string(index + 1);
    ShowOptions();
    options().opt_CommPort.Choose(index);
    Ok();
    EXPECT_EQ(Stored("Communication", "Commport"), number);
    EXPECT_EQ(options().ComPortNumber.Text.get(), number);
    EXPECT_EQ(main().Comm->CommPort(), index + 1);
    EXPECT_EQ(Panel(1), "COM" + number + ", 2400,E,8, 2");
  }
}

TEST_F(OptionsOk, AcceptsAnyNumberFromOneToSixteenBesideTheButtonCom) {
  struct Row {
    std::string typed;
    int number;
  };
  for (const Row& row : {Row{"1", 1}, Row{"5", 5}, Row{"16", 16}, Row{" 9", 9}, Row{"010", 10},
                         Row{"7 or so", 7}, Row{"&H0C", 12}}) {
    SCOPED_TRACE("\"" + row.typed + "\"");
    StartProgram();
    ChooseOtherPort(row.typed);
    Ok();
    EXPECT_FALSE(options().form.Visible);
    EXPECT_EQ(Stored("Communication", "Commport"), std::to_string(row.number));
    EXPECT_EQ(main().Comm->CommPort(), row.number);
    EXPECT_EQ(Panel(1), "COM" + std::to_string(row.number) + ", 2400,E,8, 2");
  }
}

TEST_F(OptionsOk, RefusesEveryOtherPortNumberAndOffersSixteen) {
  for (const std::string typed :
       {"0", "17", "abc", "", " ", "-1", "-16", "160", "65537", "4294967297",
        "99999999999999999999", "COM5", "&HFF", "&H", "x16", ",5", "\n5", "1e9"}) {
    SCOPED_TRACE("\"" + typed + "\"");
    StartProgram();
    ChooseOtherPort(typed);
    options().opt_Baudrate.Choose(5);
    options().txt_LogPath.Text = "/elsewhere";
    main().FirstLoad = true;
    TakeNotes();
    ExpectPortError();
    Ok();
    EXPECT_EQ(TakeNotes(), "save Communication/Baudrate=5\n");
    EXPECT_EQ(options().ComPortNumber.Text.get(), "16");
    EXPECT_TRUE(options().form.Visible);
    EXPECT_TRUE(main().FirstLoad);
    EXPECT_EQ(Panel(1), "COM1, 2400,E,8, 2");
    EXPECT_EQ(main().Comm->CommPort(), 1);

    Ok();
    EXPECT_FALSE(options().form.Visible);
    EXPECT_EQ(Stored("Communication", "Commport"), "16");
    EXPECT_EQ(Panel(1), "COM16, 38400,E,8, 2");
    EXPECT_EQ(main().Comm->CommPort(), 16);
    Store("Communication", "Commport", "1");
    Store("Communication", "Baudrate", "1");
  }
}

TEST_F(OptionsOk, IgnoresTheNumberWhileAnotherButtonIsSet) {
  StartProgram();
  for (const std::string typed : {"nonsense", "9"}) {
    for (int index = 0; index < 4; ++index) {
      ChooseOtherPort(typed);
      options().opt_CommPort.Choose(index);
      Ok();
      EXPECT_EQ(Stored("Communication", "Commport"), std::to_string(index + 1));
      EXPECT_EQ(options().ComPortNumber.Text.get(), std::to_string(index + 1));
    }
  }
}

TEST_F(OptionsOk, WithoutAPortButtonKeepsTheNumberAndSavesNone) {
  Store("Communication", "Commport", "17");
  StartProgram();
  EXPECT_EQ(options().opt_CommPort.Selected(), -1);
  EXPECT_EQ(Stored("Communication", "Commport"), "17");
  EXPECT_EQ(Panel(1), "COM1, 2400,E,8, 2");
  EXPECT_EQ(main().Comm->CommPort(), 1);
}

TEST_F(OptionsOk, ReadsTheNamesFromTheFirstFileOfTheProject) {
  StartProgram();
  NoteEverything();
  main().trvProject.AddFileToProject("lst", "/jobs/a.lst");
  main().trvProject.AddFileToProject("lst", "/jobs/b.map");
  main().trvProject.AddFileToProject("ids", "/jobs/a.ids");
  TakeNotes();
  Ok();
  const std::string done = TakeNotes();
  EXPECT_NE(done.find("map /jobs/a.lst\nids /jobs/a.ids for"), std::string::npos) << done;
}

TEST_F(OptionsOk, LeavesAScreenWithLocationsAlone) {
  StartProgram();
  OpenText(FileText({"255", R"("L",0,3,"01A0",0,"Flow","v",0,0,0,0,"0",0,1,2,3,4,"7")"}));
  main().M_Tools.Enabled = true;
  options().opt_Protocol.Choose(2);
  Ok();
  EXPECT_EQ(main().Locations[1].LocSlaveAddress, "7");
  EXPECT_EQ(main().form.BackColor.get(), 255);
  EXPECT_TRUE(main().M_Tools.Enabled);
}

TEST_F(OptionsOk, DisablesTheToolsOnAnEmptyScreenUnderModbusOnly) {
  StartProgram();
  for (const int index : {2, 0, 2, 1}) {
    options().opt_Protocol.Choose(index);
    Ok();
    EXPECT_EQ(main().M_Tools.Enabled, index != 2) << index;
    EXPECT_EQ(main().Locations[512].LocSlaveAddress, index == 2 ? "1" : "0") << index;
  }
}

TEST_F(OptionsOk, OnAnEmptyNewScreenGivesItsColourBack) {
  StartProgram();
  main().form.BackColor = 0x123456;
  Ok();
  EXPECT_EQ(main().form.BackColor.get(), 0xFF8080);
}

TEST_F(OptionsOk, LeavesAPortThatCannotBeHadAgainToTheNextStart) {
  Store("Communication", "Protocol", "0");
  StartProgram();
  OpenText(FileText({"255", R"("L",0,3,"01A0",0,"Flow","v",0,0,0,0,"0",0,1,2,3,4,"0")"}));
  main().Toolbar1(2).Press();
  world.dialogs().ExpectMessageBox("Slave is not responding", "Message Timeout");
  world.Advance(std::chrono::seconds(10));
  // The watchdog has opened the port once more.
  ASSERT_TRUE(main().Comm->PortOpen());
  main().tmr_noresponse->SetEnabled(false);
  world.port().MakeBusy();
  ShowOptions();
  options().opt_Baudrate.Choose(5);
  Ok();
  EXPECT_FALSE(options().form.Visible);
  EXPECT_EQ(Panel(1), "COM1, 38400,E,8, 2");
  EXPECT_EQ(main().Comm->Settings(), " 38400,E,8, 2");
  world.dialogs().ExpectMessageBox(
      "Communication port 1 occupied.\r\nStop communication and try again.", "Communication Error");
  main().Toolbar1(2).Press();
}

TEST_F(OptionsOk, TellsOnceThatTheStoreCannotBeWritten) {
  StartProgram();
  world.settings().BreakWriting("\"TarnLink2.ini\" could not be written: the disk is full.");
  world.dialogs().ExpectMessageBox("The settings could not be saved.", "TarnLink");
  Ok();
  EXPECT_NE(world.dialogs().shown().back().find("the disk is full."), std::string::npos);
  Ok();
  EXPECT_EQ(Panel(1), "COM1, 2400,E,8, 2");
}

}  // namespace
}  // namespace tarnlink
