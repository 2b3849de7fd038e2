// The settings table: where each setting is stored, what stands for it when it is absent, which
// control shows it, and by what it is saved again.

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "common/numbers.h"
#include "form/desk_fixture.h"

namespace tarnlink {
namespace {

// What a user can see and change of the program.
struct Desk {
  frm_Main& main;
  frm_Options& options;
};

struct SettingRow {
  std::string section;
  std::string key;
  std::string fallback;
  std::string other;  // as it would be stored
  // What the control shows, in the form in which it is stored.
  std::function<std::string(Desk)> shown;
  // The user changes the control to `other`.
  std::function<void(Desk)> change;
};

using TextOf = TextBox frm_Options::*;
using CheckOf = CheckBox frm_Options::*;
using GroupOf = OptionGroup frm_Options::*;

SettingRow Choice(const std::string& key, const std::string& fallback, int other, GroupOf group) {
  return {"Communication",
          key,
          fallback,
          std::to_string(other),
          [group](Desk desk) { return std::to_string((desk.options.*group).Selected()); },
          [group, other](Desk desk) { (desk.options.*group).Choose(other); }};
}

SettingRow Check(const std::string& key, const std::string& fallback, const std::string& other,
                 std::function<CheckBox&(Desk)> box) {
  return {"Communication",
          key,
          fallback,
          other,
          [box](Desk desk) -> std::string { return box(desk).Value ? "1" : "0"; },
          [box, other](Desk desk) { box(desk).Value = other == "1"; }};
}

SettingRow Path(const std::string& section, const std::string& key, const std::string& fallback,
                const std::string& other, TextOf box) {
  return {section,
          key,
          fallback,
          other,
          [box](Desk desk) { return (desk.options.*box).Text.get(); },
          [box, other](Desk desk) { (desk.options.*box).Text = other; }};
}

std::vector<SettingRow> RowsOfOptions() {
  return {
      Choice("Protocol", "1", 2, &frm_Options::opt_Protocol),
      Choice("Baudrate", "1", 5, &frm_Options::opt_Baudrate),
      {"Communication", "Commport", "1", "12",
       [](Desk desk) { return desk.options.ComPortNumber.Text.get(); },
       [](Desk desk) {
         desk.options.opt_CommPort.Choose(4);
         desk.options.ComPortNumber.Text = "12";
       }},
      Choice("StopBits", "1", 0, &frm_Options::opt_stop),
      Choice("Parity", "1", 2, &frm_Options::opt_parity),
      Path("Communication", "ExcelPath", "D:\\EXCEL.EXE", "/usr/bin/localc",
           &frm_Options::txt_PathToExcel),
      Check("IgnoreErrors", "1", "0",
            [](Desk desk) -> CheckBox& { return desk.options.chk_DisableCommErrors; }),
      Check("FileLogging", "0", "1",
            [](Desk desk) -> CheckBox& { return desk.options.chk_GeneralLogging(0); }),
      Check("DDELogging", "0", "1",
            [](Desk desk) -> CheckBox& { return desk.options.chk_GeneralLogging(1); }),
      {"Communication", "MsgTimeout", "3", "5",
       [](Desk desk) { return std::to_string(desk.options.sld_MsgTimeout.Value.get()); },
       [](Desk desk) { desk.options.sld_MsgTimeout.SetValue(5); }},
      Check("Scanning", "0", "1", [](Desk desk) -> CheckBox& { return desk.options.ScanningBox; }),
      Choice("Microprocessor", "0", 2, &frm_Options::MicroSelect),
      Path("Paths", "LogPath", "C:", "/var/log/boiler", &frm_Options::txt_LogPath),
      Path("Paths", "ZOLTIDDefPath", ".\\default.ids", "/jobs/a.ids", &frm_Options::txt_ZOLTIDDef),
      Path("Paths", "DatabaseFiles", ".", "/jobs", &frm_Options::txt_databasefiles),
      Path("Paths", "MemoryDefPath", ".\\default.map", "/jobs/a.map", &frm_Options::txt_MapFile),
  };
}

SettingRow Place(const std::string& key, const std::string& fallback, const std::string& other,
                 Property<float> Window::*place) {
  return {"Startup",
          key,
          fallback,
          other,
          [place](Desk desk) { return FormatSingle(desk.main.form.*place); },
          [place, other](Desk desk) { desk.main.form.*place = static_cast<float>(Val(other)); }};
}

SettingRow Entry(const std::string& section, int index, FixedArray<MenuEntry> frm_Main::*history) {
  const std::string other = "/jobs/" + section + std::to_string(index);
  return {section,
          "Hist" + std::to_string(index),
          "<Free>",
          other,
          [=](Desk desk) { return (desk.main.*history)(index).Caption.get(); },
          [=](Desk desk) { (desk.main.*history)(index).Caption = other; }};
}

SettingRow Folder(const std::string& section, CommonDialog frm_Main::*dialog) {
  const std::string other = "/jobs/" + section;
  return {section,
          "InitDir",
          "C:\\",
          other,
          [=](Desk desk) { return (desk.main.*dialog).InitDir; },
          [=](Desk desk) { (desk.main.*dialog).InitDir = other; }};
}

std::vector<SettingRow> RowsOfExit() {
  std::vector<SettingRow> rows = {
      Place("Left", "0", "1500", &Window::Left),
      Place("Top", "0", "-300", &Window::Top),
      Place("Width", "4000", "12000", &Window::Width),
      Place("Height", "3000", "9000", &Window::Height),
      Folder("WcrCmnDlg", &frm_Main::WcrCmnDlg),
      Folder("PrjCmnDlg", &frm_Main::PrjCmnDlg),
      Folder("ParCmnDlg", &frm_Main::ParCmnDlg),
      Folder("GrpCmnDlg", &frm_Main::GrpCmnDlg),
      Folder("MssCmnDlg", &frm_Main::MssCmnDlg),
      {"Project", "ProjectWindow", "True", "False",
       [](Desk desk) -> std::string { return desk.main.sstProject.Visible ? "True" : "False"; },
       [](Desk desk) { desk.main.mnuViewProjectWindow.Press(); }},
  };
  for (int i = 0; i < 4; ++i) {
    rows.push_back(Entry("FileHistory", i, &frm_Main::M_fileHist));
    rows.push_back(Entry("FileHistoryPrj", i, &frm_Main::M_fileHistPrj));
  }
  return rows;
}

std::vector<SettingRow> AllRows() {
  std::vector<SettingRow> rows = RowsOfOptions();
  for (SettingRow& row : RowsOfExit()) rows.push_back(std::move(row));
  return rows;
}

class Settings : public DeskTest {
 protected:
  Desk desk() { return {main(), options()}; }
};

TEST_F(Settings, AbsentOnesShowTheirDefaults) {
  StartProgram();
  for (const SettingRow& row : AllRows()) {
    EXPECT_EQ(row.shown(desk()), row.fallback) << row.section << "/" << row.key;
  }
}

TEST_F(Settings, StoredOnesAreShown) {
  for (const SettingRow& row : AllRows()) Store(row.section, row.key, row.other);
  StartProgram();
  for (const SettingRow& row : AllRows()) {
    EXPECT_EQ(row.shown(desk()), row.other) << row.section << "/" << row.key;
  }
}

TEST_F(Settings, EachIsReadByItselfAlone) {
  for (const SettingRow& row : AllRows()) {
    SCOPED_TRACE(row.section + "/" + row.key);
    FakeWorld fresh;
    fresh.settings().SaveSetting(row.section, row.key, row.other);
    Monitor monitor(fresh);
    monitor.start.Form_Load();
    for (const SettingRow& each : AllRows()) {
      const bool same = each.section == row.section && each.key == row.key;
      EXPECT_EQ(each.shown({monitor.main, monitor.options}), same ? each.other : each.fallback)
          << each.section << "/" << each.key;
    }
  }
}

TEST_F(Settings, OkSavesWhatTheUserChanged) {
  StartProgram();
  ShowOptions();
  for (const SettingRow& row : RowsOfOptions()) row.change(desk());
  Ok();
  for (const SettingRow& row : RowsOfOptions()) {
    EXPECT_EQ(Stored(row.section, row.key), row.other) << row.section << "/" << row.key;
  }
}

TEST_F(Settings, OkSavesEachByItselfAlone) {
  for (const SettingRow& row : RowsOfOptions()) {
    if (row.key == "Protocol") continue;  // presets others
    SCOPED_TRACE(row.section + "/" + row.key);
    FakeWorld fresh;
    Monitor monitor(fresh);
    monitor.start.Form_Load();
    row.change({monitor.main, monitor.options});
    monitor.options.cmd_OptionsOk.Press();
    for (const SettingRow& each : RowsOfOptions()) {
      const bool same = each.section == row.section && each.key == row.key;
      EXPECT_EQ(fresh.settings().GetSetting(each.section, each.key, "<absent>"),
                same ? each.other : each.fallback)
          << each.section << "/" << each.key;
    }
  }
}

TEST_F(Settings, OkSavesNothingElse) {
  StartProgram();
  Ok();
  std::set<std::string> expected;
  for (const SettingRow& row : RowsOfOptions()) {
    expected.insert(row.section + "/" + row.key + "=" + row.fallback + "\n");
  }
  std::string text;
  for (const std::string& line : expected) text += line;
  EXPECT_EQ(world.settings().Describe(), text);
}

TEST_F(Settings, LeavingSavesWhatIsNoOption) {
  StartProgram();
  for (const SettingRow& row : RowsOfExit()) row.change(desk());
  Exit();
  for (const SettingRow& row : RowsOfExit()) {
    EXPECT_EQ(Stored(row.section, row.key), row.other) << row.section << "/" << row.key;
  }
}

TEST_F(Settings, LeavingSavesNoOption) {
  StartProgram();
  ShowOptions();
  for (const SettingRow& row : RowsOfOptions()) row.change(desk());
  Exit();
  for (const SettingRow& row : RowsOfOptions()) {
    EXPECT_EQ(Stored(row.section, row.key), row.fallback) << row.section << "/" << row.key;
  }
}

TEST_F(Settings, SurviveLeavingAndStartingAgain) {
  StartProgram();
  for (const SettingRow& row : AllRows()) row.change(desk());
  Ok();
  Exit();
  StartProgram();
  for (const SettingRow& row : AllRows()) {
    EXPECT_EQ(row.shown(desk()), row.other) << row.section << "/" << row.key;
  }
}

TEST_F(Settings, GridAndClearingAreNeverStored) {
  StartProgram();
  const bool grid = options().chkGridOn.Value;
  const bool clear = options().chkClearAllValues.Value;
  EXPECT_FALSE(clear);
  const std::string before = world.settings().Describe();
  options().chkGridOn.Value = !grid;
  options().chkClearAllValues.Value = !clear;
  Ok();
  EXPECT_EQ(world.settings().Describe(), before);
  StartProgram();
  EXPECT_EQ(options().chkGridOn.Value, grid);
  EXPECT_EQ(options().chkClearAllValues.Value, clear);
}

}  // namespace
}  // namespace tarnlink
