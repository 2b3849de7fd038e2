// What opening a screen does to the protocol, the options and the store.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "form/desk_fixture.h"

namespace tarnlink {
namespace {

constexpr const char* kL = R"("L",0,3,"01A0",0,"Flow","v",0,0,0,0,"0",0,1,2,3,4,"0")";
constexpr const char* kI = R"("I",1,3,"0012",0,"S","v",0,0,0,0,"0",1,1,2,3,4,"1",3,2)";
constexpr const char* kM =
    R"("M",1,3,"0012",0,"S","v",0,0,0,0,"0",1,1,2,3,4,"1",3,2,"&H03",1,#FALSE#)";
constexpr const char* kT = R"("T","Boiler",1,2,"Arial",8.25,#FALSE#,#FALSE#,0)";

class ProtocolOfAScreen : public DeskTest {
 protected:
  void OpenLines(std::vector<std::string> lines) {
    lines.insert(lines.begin(), "255");
    OpenText(FileText(lines));
  }
  // As a file holds a memory Location of this name.
  static std::string Named(const std::string& alias) {
    return R"("L",0,3,"01A0",0,")" + alias + R"(","v",0,0,0,0,"0",0,1,2,3,4,"0")";
  }
};

TEST_F(ProtocolOfAScreen, FollowsTheTags) {
  StartProgram();
  struct Row {
    std::vector<std::string> lines;
    int protocol;
  };
  const std::vector<Row> rows = {{{}, 0},
                                 {{kL, kT}, 0},
                                 {{kI}, 1},
                                 {{kM}, 2},
                                 {{kI, kL, kT}, 1},
                                 {{kI, kM}, 2},
                                 {{kM, kI}, 1},
                                 {{kL, kM, kT}, 2},
                                 {{kM, kL, kI, kT}, 1},
                                 {{Named("M")}, 2},
                                 {{Named("I")}, 1},
                                 {{kM, Named("I")}, 1},
                                 {{Named("M"), kI}, 1},
                                 {{kI, R"("T","M",1,2,"Arial",8.25,#FALSE#,#FALSE#,0)"}, 2},
                                 {{kL, R"("T","x",1,2,"I",8.25,#FALSE#,#FALSE#,0)"}, 1},
                                 {{Named("m")}, 0},
                                 {{Named("MI")}, 0},
                                 {{Named(" M")}, 0},
                                 {{Named("")}, 0}};
  for (const Row& row : rows) {
    SCOPED_TRACE(::testing::PrintToString(row.lines));
    OpenLines(row.lines);
    const std::vector<std::string> names = {"TarnLink Protocol", "ZOLT Protocol",
                                            "ModBus Protocol"};
    EXPECT_EQ(options().opt_Protocol.Selected(), row.protocol);
    EXPECT_EQ(Stored("Communication", "Protocol"), std::to_string(row.protocol));
    EXPECT_EQ(Panel(3), names[static_cast<std::size_t>(row.protocol)]);
    const std::string ids = row.protocol == 2 ? ".\\MBID.ids" : ".\\default.ids";
    EXPECT_EQ(options().txt_ZOLTIDDef.Text.get(), ids);
    EXPECT_EQ(Stored("Paths", "ZOLTIDDefPath"), ids);
  }
}

TEST_F(ProtocolOfAScreen, AnotherProtocolThanTheStoredOnePresetsThePort) {
  struct Row {
    const char* stored;
    const char* line;
    const char* port_options;
    const char* panel;
  };
  for (const Row& row : {Row{"1", kL, "0: 9600 None One 3", "COM7, 9600,N,8, 1"},
                         Row{"2", kL, "0: 9600 None One 3", "COM7, 9600,N,8, 1"},
                         Row{"0", kI, "1: 2400 None One 3", "COM7, 2400,N,8, 1"},
                         Row{"0", kM, "2: 19200 Even One 3", "COM7, 19200,E,8, 1"}}) {
    Store("Communication", "Protocol", row.stored);
    Store("Communication", "Baudrate", "5");
    Store("Communication", "Parity", "2");
    Store("Communication", "StopBits", "1");
    Store("Communication", "MsgTimeout", "5");
    Store("Communication", "Commport", "7");
    StartProgram();
    OpenLines({row.line});
    EXPECT_EQ(PortOptions(), row.port_options);
    EXPECT_EQ(Panel(1), row.panel);
    EXPECT_EQ(Stored("Communication", "MsgTimeout"), "3");
    EXPECT_EQ(Stored("Communication", "Baudrate"),
              std::to_string(options().opt_Baudrate.Selected()));
  }
}

TEST_F(ProtocolOfAScreen, TheStoredProtocolKeepsTheStoredPort) {
  struct Row {
    const char* stored;
    const char* line;
  };
  for (const Row& row : {Row{"0", kL}, Row{"1", kI}, Row{"2", kM}}) {
    Store("Communication", "Protocol", row.stored);
    Store("Communication", "Baudrate", "5");
    Store("Communication", "Parity", "2");
    Store("Communication", "StopBits", "1");
    Store("Communication", "MsgTimeout", "5");
    StartProgram();
    OpenLines({row.line});
    EXPECT_EQ(PortOptions(), std::string(row.stored) + ": 38400 Odd Two 5");
    EXPECT_EQ(Panel(1), "COM1, 38400,O,8, 2");
    EXPECT_EQ(main().Comm->Settings(), " 38400,O,8, 2");
  }
}

TEST_F(ProtocolOfAScreen, OptionsThatWereChangedAndCancelledGoBackToTheStoredOnes) {
  StartProgram();
  ShowOptions();
  options().opt_Protocol.Choose(0);
  options().opt_CommPort.Choose(3);
  options().txt_LogPath.Text = "/elsewhere";
  options().MicroSelect.Choose(2);
  options().chk_GeneralLogging(0).Value = true;
  Cancel();
  OpenLines({kI});
  EXPECT_EQ(PortOptions(), "1: 2400 Even Two 3");
  EXPECT_EQ(options().opt_CommPort.Selected(), 0);
  EXPECT_EQ(options().txt_LogPath.Text.get(), "C:");
  EXPECT_EQ(main().MicroType, 0);
  EXPECT_FALSE(options().chk_GeneralLogging(0).Value);
  EXPECT_EQ(Stored("Communication", "Commport"), "1");
  EXPECT_EQ(Stored("Paths", "LogPath"), "C:");
}

TEST_F(ProtocolOfAScreen, AnIdFileOfTheUsersIsReplaced) {
  Store("Paths", "ZOLTIDDefPath", "/jobs/own.ids");
  StartProgram();
  OpenLines({kI});
  EXPECT_EQ(Stored("Paths", "ZOLTIDDefPath"), ".\\default.ids");
}

TEST_F(ProtocolOfAScreen, ReloadsTheMapAndTheIds) {
  StartProgram();
  std::string read;
  main().LoadClass7 = [&](const std::string& file) { read += "map " + file + "\n"; };
  main().ReadIDItems = [&](const std::string& file) { read += "ids " + file + "\n"; };
  OpenLines({kM});
  EXPECT_EQ(read, "map .\\default.map\nids .\\MBID.ids\n");
}

TEST_F(ProtocolOfAScreen, LocationsTakeTheirDefaultsFromTheProtocolThatWasStoredBefore) {
  Store("Communication", "Protocol", "2");
  StartProgram();
  OpenLines({kL});
  EXPECT_EQ(main().Locations[2].LocSlaveAddress, "1");
  // An empty screen takes them anew once its protocol is stored.
  Store("Communication", "Protocol", "2");
  OpenLines({});
  EXPECT_EQ(main().Locations[2].LocSlaveAddress, "0");
}

TEST_F(ProtocolOfAScreen, OpensWithoutShowingTheDialog) {
  StartProgram();
  bool shown = false;
  options().form.SetView([&] { shown = shown || options().form.Visible; });
  OpenLines({kM});
  EXPECT_FALSE(shown);
}

}  // namespace
}  // namespace tarnlink
