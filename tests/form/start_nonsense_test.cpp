// A settings store that somebody or something has filled with nonsense: the program starts with
// something usable, and can be used, left and started again.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "form/desk_fixture.h"
#include "platform/port_settings.h"

namespace tarnlink {
namespace {

using Key = std::pair<std::string, std::string>;

std::vector<Key> AllKeys() {
  std::vector<Key> keys;
  for (const char* key :
       {"Protocol", "Baudrate", "Commport", "StopBits", "Parity", "ExcelPath", "IgnoreErrors",
        "FileLogging", "DDELogging", "MsgTimeout", "Scanning", "Microprocessor"}) {
    keys.emplace_back("Communication", key);
  }
  for (const char* key : {"LogPath", "ZOLTIDDefPath", "DatabaseFiles", "MemoryDefPath"}) {
    keys.emplace_back("Paths", key);
  }
  for (const char* key : {"Left", "Top", "Width", "Height"}) keys.emplace_back("Startup", key);
  for (const char* section : {"FileHistory", "FileHistoryPrj"}) {
    for (const char* key : {"Hist0", "Hist1", "Hist2", "Hist3"}) keys.emplace_back(section, key);
  }
  for (const char* section : {"WcrCmnDlg", "PrjCmnDlg", "ParCmnDlg", "GrpCmnDlg", "MssCmnDlg"}) {
    keys.emplace_back(section, "InitDir");
  }
  keys.emplace_back("Project", "ProjectWindow");
  keys.emplace_back("Ports", "COM1");
  return keys;
}

std::vector<std::string> AllNonsense() {
  return {"",
          " ",
          "abc",
          "True",
          "<Free>",
          "-1",
          "3",
          "6",
          "17",
          "255",
          "-32769",
          "65536",
          "-2147483649",
          "4294967296",
          "99999999999999999999999999",
          "-99999999999999999999999999",
          "1e400",
          "-1e400",
          "1e-400",
          "2.999",
          "1,5",
          "nan",
          "inf",
          "&HFFFF",
          "&HFFFFFFFF",
          "&O7",
          "0x10",
          "\n1",
          std::string("\0", 1),
          std::string("1\0002", 3),
          "\xFF\xFE\x80",
          "\xE2\x82\xAC",
          std::string(50'000, '9'),
          std::string(50'000, 'x')};
}

std::string Shortened(const std::string& value) {
  return value.size() > 40 ? value.substr(0, 40) + "..." : value;
}

class NonsenseStore : public DeskTest {
 protected:
  void ExpectUsable() {
    EXPECT_GE(options().opt_Protocol.Selected(), 0);
    EXPECT_GE(options().opt_Baudrate.Selected(), 0);
    EXPECT_GE(options().opt_parity.Selected(), 0);
    EXPECT_GE(options().opt_stop.Selected(), 0);
    EXPECT_GE(options().MicroSelect.Selected(), 0);
    EXPECT_EQ(main().MicroType, options().MicroSelect.Selected());
    EXPECT_GE(options().sld_MsgTimeout.Value.get(), 0);
    EXPECT_LE(options().sld_MsgTimeout.Value.get(), 5);
    const int port = main().Comm->CommPort();
    EXPECT_TRUE(port >= 1 && port <= 16) << port;
    EXPECT_EQ(options().ComPortNumber.Text.get(), std::to_string(port));
    EXPECT_NO_THROW(ParsePortSettings(main().Comm->Settings()));
    for (const auto* place :
         {&main().form.Left, &main().form.Top, &main().form.Width, &main().form.Height}) {
      EXPECT_TRUE(std::isfinite(place->get()) && std::abs(place->get()) <= 200000) << place->get();
    }
    EXPECT_EQ(Title(), "TarnLink - New Screen");
    EXPECT_FALSE(main().FirstLoad);
  }

  // A screen can be opened, polled and left with.
  void ExpectWorking() {
    OpenText(FileText({"255", R"("L",0,3,"01A0",0,"Flow","v",0,0,0,0,"0",0,1,2,3,4,"0")"}));
    EXPECT_EQ(Counts(), "MaxId 1, LocationCount 1, TextInfoCount 0");
    options().chk_GeneralLogging(0).Value = false;
    main().Toolbar1(2).Press();
    EXPECT_TRUE(main().CommRunning);
    world.Advance(std::chrono::milliseconds(20));
    EXPECT_EQ(world.port().frames().size(), 1U);
    ShowOptions();
    main().Toolbar1(3).Press();
    Exit();
    EXPECT_TRUE(Unloaded());
  }
};

TEST_F(NonsenseStore, InOneValueLeavesAProgramThatStarts) {
  for (const Key& key : AllKeys()) {
    for (const std::string& value : AllNonsense()) {
      SCOPED_TRACE(key.first + "/" + key.second + "=" + Shortened(value));
      Store(key.first, key.second, value);
      StartProgram();
      ExpectUsable();
    }
    Store(key.first, key.second, "1");  // which makes sense everywhere
  }
}

TEST_F(NonsenseStore, InEveryValueLeavesAProgramThatWorks) {
  std::vector<std::string> nonsense = AllNonsense();
  nonsense.emplace_back(5'000'000, '9');
  for (const std::string& value : nonsense) {
    SCOPED_TRACE(Shortened(value));
    for (const Key& key : AllKeys()) Store(key.first, key.second, value);
    StartProgram();
    ExpectUsable();
    ExpectWorking();
    StartProgram();
    ExpectUsable();
  }
}

TEST_F(NonsenseStore, LettersCountAsZeroAndAnIndexWithoutAButtonAsTheDefault) {
  struct Row {
    std::string stored, port_options;
    int micro;
  };
  const std::vector<Row> rows = {
      {"abc", "0: 1200 None One 0", 0},        {"", "0: 1200 None One 0", 0},
      {"-1", "1: 2400 Even Two 0", 0},         {"99", "1: 2400 Even Two 5", 0},
      {"4294967297", "1: 2400 Even Two 5", 0}, {"2 of them", "2: 4800 Odd Two 2", 2}};
  for (const Row& row : rows) {
    for (const char* key :
         {"Protocol", "Baudrate", "Parity", "StopBits", "MsgTimeout", "Microprocessor"}) {
      Store("Communication", key, row.stored);
    }
    StartProgram();
    EXPECT_EQ(PortOptions(), row.port_options) << row.stored;
    EXPECT_EQ(main().MicroType, row.micro) << row.stored;
  }
}

TEST_F(NonsenseStore, ACheckIsSetByAnyNumberButZero) {
  struct Row {
    std::string stored;
    bool set;
  };
  for (const Row& row : {Row{"1", true}, Row{"2", true}, Row{"-1", true}, Row{"0", false},
                         Row{"abc", false}, Row{"", false}}) {
    Store("Communication", "Scanning", row.stored);
    StartProgram();
    EXPECT_EQ(options().ScanningBox.Value, row.set) << row.stored;
    EXPECT_EQ(Stored("Communication", "Scanning"), row.set ? "1" : "0");
  }
}

TEST_F(NonsenseStore, AnEmptyHistoryEntryIsAFreePlace) {
  Store("FileHistory", "Hist1", "");
  StartProgram();
  EXPECT_EQ(main().M_fileHist(1).Caption.get(), "<Free>");
  EXPECT_FALSE(main().M_fileHist(1).Enabled);
}

TEST_F(NonsenseStore, AHistoryEntryThatNamesNoFileIsToldLikeOneThatHasGone) {
  for (const std::string& entry :
       {std::string("\0", 1), std::string("//"), std::string(5'000'000, 'x')}) {
    Store("FileHistory", "Hist1", entry);
    StartProgram();
    world.dialogs().ExpectMessageBox(
        "Internal System Error # " + std::string(entry == "//" ? "57" : "53") +
            " occured, please contact distributor.\r\nDuring opening wcr file " + entry,
        "Internal System Error");
    main().M_fileHist(1).Press();
    EXPECT_EQ(main().CurrentTarnLinkFile, "");
  }
}

}  // namespace
}  // namespace tarnlink
