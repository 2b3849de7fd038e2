// The memory map files: what reading one does to the options and the tool bar, what is told of it,
// and the commands that add and refresh one.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/text.h"
#include "form/desk_fixture.h"
#include "simulator/memory_layout.h"
#include "support/samples.h"

namespace tarnlink {
namespace {

constexpr const char* kMap = "/jobs/a.map";
constexpr const char* kListing = "/jobs/a.lst";
constexpr const char* kDecided = "map decides, reload, ";
constexpr const char* kOptionsDecide = "options decide, ";

// Variables at 0060 and 0062 of an ATMega.
constexpr const char* kAtmega =
    "__cpu_name = ATmega64\r\nENTRY LIST\r\nflow DATA 00000060\r\nfan DATA 00000062\r\n";
constexpr const char* kXmega =
    "__cpu_name = ATxmega64\r\nENTRY LIST\r\nflow DATA 00002060\r\nfan DATA 00002062\r\n";
constexpr const char* kNec =
    "Target CPU\r\nDATA\r\n           flow                    FE20\r\nBITS\r\n"
    "           fan                     FE21.3\r\n";

class MemoryMapTest : public DeskTest {
 protected:
  MemoryMapTest() { StartProgram(); }

  void Load(const std::string& path, const std::string& text) {
    world.disk().Put(path, text);
    program().map.LoadClass7(path);
  }
  // "map decides, reload, ATMega 0": who decides the microprocessor, whether the screen can be
  // reloaded, the option that is set, and the type that counts.
  std::string State() {
    std::string enabled;
    for (int i = 0; i < 3; ++i) enabled += options().MicroSelect(i).Enabled ? "1" : "0";
    EXPECT_TRUE(options().MicroSelect(3).Enabled);
    EXPECT_EQ(enabled, options().frmMicro.Enabled ? "111" : "000");
    const int selected = options().MicroSelect.Selected();
    return std::string(options().frmMicro.Enabled ? kOptionsDecide : kDecided) +
           (main().Toolbar1(6).Enabled == options().frmMicro.Enabled ? "out of step, " : "") +
           options().MicroSelect(selected).Caption.get() + " " + std::to_string(main().MicroType);
  }
  // Nothing while no line is shown.
  std::string Notice() {
    const Label& line = main().lbl_MapNotice;
    EXPECT_EQ(line.Visible, !line.Caption.get().empty());
    return line.Caption;
  }
  // "2 variables, 1 byte, 1 bit".
  std::string Lists() {
    const MemoryMap& map = program().map;
    return std::to_string(map.variables().size()) + " " + std::to_string(map.bytes().size()) + " " +
           std::to_string(map.bits().size());
  }
  std::string AddressOf(const std::string& name, std::int32_t storage = kUnsignedByte) {
    Location location;
    location.ActualVariable = name;
    location.StorageType = storage;
    return program().map.AddressOf(location);
  }
  void ExpectBox(const std::string& text) {
    world.dialogs().ExpectMessageBox(
        {.text = text, .title = "TarnLink", .icon = Icon::kExclamation});
  }
  void Add(const std::string& path) {
    world.dialogs().ExpectOpenFile("Open").Give(path);
    main().mnuAddNecMap.Press();
  }
};

// --- Reading -------------------------------------------------------------------------------------

TEST_F(MemoryMapTest, WithoutOneTheOptionsDecide) {
  EXPECT_EQ(State(), "options decide, ATMega 0");
  EXPECT_EQ(Lists(), "0 0 0");
  EXPECT_EQ(Notice(), "");
}

TEST_F(MemoryMapTest, AnAtmegasMapDecidesTheMicroprocessor) {
  Load(kMap, kAtmega);
  EXPECT_EQ(State(), "map decides, reload, ATMega 0");
  EXPECT_EQ(Lists(), "2 0 0");
  EXPECT_EQ(AddressOf("fan"), "F062");
  EXPECT_EQ(Notice(), "a.map: 2 variables read, 0 lines skipped");
}

TEST_F(MemoryMapTest, AnXmegasMapIsReadRightTheSecondTime) {
  Load(kMap, kXmega);
  EXPECT_EQ(State(), "map decides, reload, XMega 1");
  EXPECT_EQ(Lists(), "0 0 0");
  EXPECT_EQ(Notice(),
            "a.map: 0 variables read, 2 lines skipped, as an ATMega's: press Ok in the options to "
            "read it as an XMega's");
  program().map.LoadClass7(kMap);
  EXPECT_EQ(State(), "map decides, reload, XMega 1");
  EXPECT_EQ(Lists(), "2 0 0");
  EXPECT_EQ(Notice(), "a.map: 2 variables read, 0 lines skipped");
  EXPECT_EQ(AddressOf("fan"), "F162");
}

TEST_F(MemoryMapTest, AnAtmegasMapBehindAnXmegasIsReadRightTheSecondTime) {
  options().MicroSelect.Choose(1);
  Load(kMap, kAtmega);
  EXPECT_EQ(State(), "map decides, reload, ATMega 0");
  EXPECT_EQ(Lists(), "0 0 0");
  EXPECT_EQ(Notice(),
            "a.map: 0 variables read, 2 lines skipped, as an XMega's: press Ok in the options to "
            "read it as an ATMega's");
  program().map.LoadClass7(kMap);
  EXPECT_EQ(Lists(), "2 0 0");
}

TEST_F(MemoryMapTest, AListingIsReadAtOnceWhateverTheMicroprocessorWas) {
  for (const int before : {0, 1, 2, 3}) {
    options().MicroSelect.Choose(before);
    Load(kListing, kNec);
    EXPECT_EQ(State(), "map decides, reload, NEC 2");
    EXPECT_EQ(Lists(), "0 1 1");
    EXPECT_EQ(AddressOf("flow"), "FE20");
    EXPECT_EQ(AddressOf("fan", kBit), "FE21");
    EXPECT_EQ(AddressOf("fan"), "");
    EXPECT_EQ(Notice(), "a.lst: 2 variables read, 0 lines skipped");
    Load("/jobs/no.txt", "");
  }
}

TEST_F(MemoryMapTest, AnUnknownOneEmptiesTheListsAndLetsTheOptionsDecide) {
  const std::vector<std::pair<std::string, std::string>> unknown = {
      {"/jobs/b.map", ""},       {"/jobs/b.map", "__cpu_name = other\nENTRY LIST\n"},
      {"/jobs/b.lst", "DATA\n"}, {"/jobs/b.txt", kAtmega},
      {"/jobs/b.MAP", kAtmega},  {"/jobs/b.LST", kNec},
      {"/jobs/b.lst", kAtmega},  {"/jobs/b.map", kNec}};
  for (const auto& [path, text] : unknown) {
    SCOPED_TRACE(path + " " + text);
    Load(kMap, kAtmega);
    program().map.LoadClass7(kMap);
    Load(kListing, kNec);
    ASSERT_EQ(Lists(), "2 1 1");
    Load(path, text);
    EXPECT_EQ(State(), "options decide, NEC 2");
    EXPECT_EQ(Lists(), "0 0 0");
    EXPECT_EQ(Notice(), "");
  }
}

TEST_F(MemoryMapTest, OneThatCannotBeOpenedIsUnknownAndNothingIsTold) {
  world.disk().Put("/jobs/locked.map", kAtmega);
  world.disk().Forbid("/jobs/locked.map");
  world.disk().MakeFolder("/jobs/folder.map");
  for (const std::string path :
       {"/jobs/gone.map", "/nowhere/a.map", "/jobs/locked.map", "/jobs/folder.map", ""}) {
    SCOPED_TRACE(path);
    Load(kMap, kAtmega);
    program().map.LoadClass7(kMap);
    ASSERT_EQ(Lists(), "2 0 0");
    program().map.LoadClass7(path);
    EXPECT_EQ(State(), "options decide, ATMega 0");
    EXPECT_EQ(Lists(), "0 0 0");
    EXPECT_EQ(Notice(), "");
  }
}

TEST_F(MemoryMapTest, OneThatCannotBeReadAfterAllIsAsGoodAsEmpty) {
  Load(kMap, kAtmega);
  world.faults().Break("Files.ReadPieces", 2, RunTimeError(kDeviceIo, "broken"));
  program().map.LoadClass7(kMap);
  EXPECT_EQ(State(), "options decide, ATMega 0");
  EXPECT_EQ(Lists(), "0 0 0");

  Load(kListing, kNec);
  world.faults().Break("Files.ReadPieces", 2, RunTimeError(kDeviceIo, "broken"));
  program().map.LoadClass7(kListing);
  EXPECT_EQ(State(), "map decides, reload, NEC 2");
  EXPECT_EQ(Lists(), "0 0 0");
}

// The address that it was reading may be cut short and still look like one.
TEST_F(MemoryMapTest, ALineInWhichTheReadingFailsIsLeftOut) {
  world.disk().Put(kMap, kAtmega);
  world.disk().BreakReading(kMap, std::string_view(kAtmega).rfind("62"));
  program().map.LoadClass7(kMap);
  EXPECT_EQ(State(), "map decides, reload, ATMega 0");
  EXPECT_EQ(Lists(), "1 0 0");
  EXPECT_EQ(Notice(), "a.map: 1 variable read, 0 lines skipped");

  constexpr std::string_view kTwo =
      "Target CPU\r\nDATA\r\n           flow                    FE20\r\n"
      "           fan                     FE21";
  world.disk().Put(kListing, kTwo);
  world.disk().BreakReading(kListing, kTwo.size());
  program().map.LoadClass7(kListing);
  EXPECT_EQ(Lists(), "1 1 0");
}

TEST_F(MemoryMapTest, AMapWithoutAnEntryListLeavesTheOptionsToDecideAndIsToldOf) {
  for (const std::string rest : {"", "ENTRY LIST", "ENTRY LIST\r\n", "flow DATA 00000060\r\n"}) {
    Load(kMap, kAtmega);
    options().MicroSelect.Select(3);
    Load(kMap, "__cpu_name = ATxmega64\r\n" + rest);
    EXPECT_EQ(State(), "options decide, XMega 1");
    EXPECT_EQ(Lists(), "0 0 0");
    EXPECT_EQ(Notice(), "a.map: 0 variables read, 0 lines skipped, no entry list found");
    options().MicroSelect.Choose(0);
  }
  // It can be read as soon as it is whole.
  Load(kMap, kAtmega);
  EXPECT_EQ(State(), "map decides, reload, ATMega 0");
  EXPECT_EQ(Lists(), "2 0 0");
}

TEST_F(MemoryMapTest, AMapAndAListingKeepEachOthersNames) {
  Load(kListing, kNec);
  Load(kMap, "__cpu_name = ATmega64\r\n");
  EXPECT_EQ(Lists(), "0 1 1");
  options().MicroSelect.Choose(0);
  Load(kMap, kAtmega);
  EXPECT_EQ(Lists(), "2 1 1");
  EXPECT_EQ(AddressOf("flow"), "F060");
  Load(kListing, kNec);
  EXPECT_EQ(Lists(), "2 1 1");
  EXPECT_EQ(AddressOf("flow"), "FE20");
}

TEST_F(MemoryMapTest, AMapThatIsTooLongIsReadAsFarAsItGoesAndToldOf) {
  std::string text = "__cpu_name = ATmega64\r\nENTRY LIST\r\n";
  for (int i = 0; i < 1002; ++i) text += "v" + std::to_string(i) + " DATA 00000060\r\n";
  Load(kMap, text);
  EXPECT_EQ(State(), "map decides, reload, ATMega 0");
  EXPECT_EQ(Lists(), "1001 0 0");
  EXPECT_EQ(AddressOf("v1000"), "F060");
  EXPECT_EQ(AddressOf("v1001"), "");
  EXPECT_EQ(Notice(),
            "a.map: 1001 variables read, 0 lines skipped, the rest left out: the list is full");
}

TEST_F(MemoryMapTest, TellsHowManyLinesWereSkipped) {
  Load(kMap, std::string(kAtmega) + "a DATA 00800060\r\n");
  EXPECT_EQ(Notice(), "a.map: 2 variables read, 1 line skipped");
  Load(kListing, "Target CPU\nDATA\n" + std::string(11, ' ') + "flow" + std::string(20, ' ') +
                     "FE20\n" + std::string(11, ' ') + "fan" + std::string(21, ' ') + "FE2\n");
  EXPECT_EQ(Notice(), "a.lst: 1 variable read, 1 line skipped");
}

TEST_F(MemoryMapTest, NoNamesCountUnderARenesas) {
  Load(kMap, kAtmega);
  Load(kListing, kNec);
  options().MicroSelect.Choose(3);
  for (const std::int32_t storage : {kBit, kUnsignedByte, kUnsignedWord}) {
    EXPECT_EQ(AddressOf("flow", storage), "");
    EXPECT_EQ(AddressOf("fan", storage), "");
  }
}

TEST_F(MemoryMapTest, TellsHowTheScreenStandsToIt) {
  const auto line = [](const std::string& name, const std::string& address, int storage) {
    return R"("L",0,)" + std::to_string(storage) + ",\"" + address + R"(",0,"a",")" + name +
           R"(",0,0,0,0,"0",0,1,2,3,4,"0")";
  };
  OpenText(FileText({"255", line("flow", "F060", 1), line("fan", "F070", 1),
                     line("flow", "F061", 1), line("gone", "F060", 1), line("fan", "F070", 0),
                     line("Not Assigned", "F060", 1), line("", "F060", 1)}));
  Load(kMap, kAtmega);
  EXPECT_EQ(Notice(),
            "a.map: 2 variables read, 0 lines skipped; 2 locations moved; 1 location without its "
            "name");
  EXPECT_EQ(main().Locations[2].Address, "F070");
  Load(kMap, "__cpu_name = ATmega64\r\nENTRY LIST\r\nfan DATA 00000062\r\n");
  EXPECT_EQ(Notice(),
            "a.map: 1 variable read, 0 lines skipped; 1 location moved; 3 locations without their "
            "name");
  Load(kMap, kAtmega);
  Delete(3);
  Delete(4);
  program().map.LoadClass7(kMap);
  EXPECT_EQ(Notice(), "a.map: 2 variables read, 0 lines skipped; 1 location moved");
  EXPECT_FALSE(main().WCRChanged);
}

// --- The commands --------------------------------------------------------------------------------

TEST_F(MemoryMapTest, AddAsksForAFileAndReadsIt) {
  world.disk().Put(kMap, kAtmega);
  Add(kMap);
  const FileDialogRequest& asked = world.dialogs().last_file_request();
  EXPECT_EQ(asked.file_name, "");
  EXPECT_EQ(asked.folder, ".");
  EXPECT_EQ(asked.filter, "Memory Layout (*.map;*.lst)|*.map;*.lst");
  EXPECT_EQ(main().trvProject.FirstChild("lst"), kMap);
  EXPECT_TRUE(main().ProjectChanged);
  EXPECT_EQ(State(), "map decides, reload, ATMega 0");
  EXPECT_EQ(Lists(), "2 0 0");
}

TEST_F(MemoryMapTest, AddTakesAListingToo) {
  world.disk().Put(kListing, kNec);
  Add(kListing);
  EXPECT_EQ(main().trvProject.FirstChild("lst"), kListing);
  EXPECT_EQ(State(), "map decides, reload, NEC 2");
}

TEST_F(MemoryMapTest, ASecondOneIsRefusedBeforeAFileIsAskedFor) {
  world.disk().Put(kMap, kAtmega);
  Add(kMap);
  main().ProjectChanged = false;
  ExpectBox("First remove the current Memory Map file from project.");
  main().mnuAddNecMap.Press();
  EXPECT_EQ(main().trvProject.Count(), 8);
  EXPECT_FALSE(main().ProjectChanged);
  EXPECT_EQ(Lists(), "2 0 0");
}

TEST_F(MemoryMapTest, AddRefusesAnUnknownFileAndKeepsTheNamesThatItHas) {
  Load(kMap, kAtmega);
  world.disk().Put("/jobs/b.map", "__cpu_name = other\n");
  world.disk().Put("/jobs/b.txt", kAtmega);
  world.disk().Put("/jobs/B.MAP", kAtmega);
  for (const std::string path : {"/jobs/b.map", "/jobs/b.txt", "/jobs/B.MAP", "/jobs/gone.map"}) {
    world.dialogs().ExpectOpenFile("Open").Give(path);
    ExpectBox("Unkonwn map file.");
    main().mnuAddNecMap.Press();
    EXPECT_EQ(main().trvProject.Count(), 7);
    EXPECT_FALSE(main().ProjectChanged);
    EXPECT_EQ(State(), "map decides, reload, ATMega 0");
    EXPECT_EQ(Lists(), "2 0 0");
  }
}

TEST_F(MemoryMapTest, ACancelOfAddReadsNothing) {
  world.dialogs().ExpectOpenFile("Open").Cancel();
  main().mnuAddNecMap.Press();
  Add("");
  EXPECT_EQ(State(), "options decide, ATMega 0");
  EXPECT_FALSE(main().ProjectChanged);
}

TEST_F(MemoryMapTest, AFileThatTheProjectDoesNotTakeIsNotRead) {
  world.disk().Put(kMap, kAtmega);
  main().trvProject.Remove("lst");
  world.dialogs().ExpectOpenFile("Open").Give(kMap);
  ExpectBox("\"a.map\" has no group in this project.");
  main().mnuAddNecMap.Press();
  EXPECT_EQ(State(), "options decide, ATMega 0");
  EXPECT_EQ(Lists(), "0 0 0");
  EXPECT_FALSE(main().ProjectChanged);
}

TEST_F(MemoryMapTest, RefreshReadsTheProjectsMapAgain) {
  world.disk().Put(kMap, kAtmega);
  Add(kMap);
  main().ProjectChanged = false;
  world.disk().Put(kMap, "__cpu_name = ATmega64\nENTRY LIST\nflow DATA 00000070\n");
  main().mnuRefresh.Press();
  EXPECT_EQ(AddressOf("flow"), "F070");
  EXPECT_EQ(Lists(), "1 0 0");
  EXPECT_FALSE(main().ProjectChanged);
}

TEST_F(MemoryMapTest, AMapOfTheProjectThatCannotBeHadIsToldInItsLine) {
  world.disk().Put(kMap, kAtmega);
  Add(kMap);
  world.disk().Put(kMap, "something else");
  main().mnuRefresh.Press();
  EXPECT_EQ(Notice(), "a.map: no memory map of a known kind, so there are no names");
  world.disk().Remove(kMap);
  main().mnuRefresh.Press();
  EXPECT_EQ(Notice(), "a.map: there is no such file, so there are no names");
}

TEST_F(MemoryMapTest, RefreshLeavesTheScreensAddresses) {
  world.disk().Put(kMap, kAtmega);
  OpenText(FileText({"255", R"("L",0,1,"F060",0,"a","flow",0,0,0,0,"0",0,1,2,3,4,"0")"}));
  Add(kMap);
  world.disk().Put(kMap, "__cpu_name = ATmega64\nENTRY LIST\nflow DATA 00000070\n");
  main().mnuRefresh.Press();
  EXPECT_EQ(main().Locations[1].Address, "F060");
  EXPECT_FALSE(main().WCRChanged);
  EXPECT_EQ(Notice(), "a.map: 1 variable read, 0 lines skipped; 1 location moved");
}

TEST_F(MemoryMapTest, RefreshWithoutAMapSaysSo) {
  Load(kMap, kAtmega);
  ExpectBox("No Memory Map file in this project.");
  main().mnuRefresh.Press();
  EXPECT_EQ(Lists(), "2 0 0");
}

TEST_F(MemoryMapTest, RefreshOfAMapThatIsGoneLetsTheOptionsDecide) {
  world.disk().Put(kMap, kAtmega);
  Add(kMap);
  world.disk().Remove(kMap);
  main().mnuRefresh.Press();
  EXPECT_EQ(State(), "options decide, ATMega 0");
  EXPECT_EQ(Lists(), "0 0 0");
}

TEST_F(MemoryMapTest, TheOptionsReadTheOneThatTheyName) {
  world.disk().Put(kMap, kAtmega);
  Store("Paths", "MemoryDefPath", kMap);
  StartProgram();
  EXPECT_EQ(State(), "map decides, reload, ATMega 0");
  EXPECT_EQ(Lists(), "2 0 0");
}

// --- The samples ---------------------------------------------------------------------------------

class SampleMaps : public MemoryMapTest {
 protected:
  void LoadSample(const std::string& name) {
    world.disk().Put("/jobs/" + name, SampleBytes(name));
    program().map.LoadClass7("/jobs/" + name);
    program().map.LoadClass7("/jobs/" + name);
  }
  // The items of the boiler's memory that the map has, each at its place.
  int CheckBoiler() {
    int found = 0;
    for (const boiler::MemoryItem& item : boiler::MemoryLayout()) {
      const std::string address = AddressOf(std::string(item.name));
      if (address.empty()) continue;
      EXPECT_EQ(std::stoi(address, nullptr, 16), item.address) << item.name;
      ++found;
    }
    return found;
  }
};

TEST_F(SampleMaps, TheListingNamesAllOfTheBoilersMemory) {
  LoadSample("nec.lst");
  EXPECT_EQ(State(), "map decides, reload, NEC 2");
  EXPECT_EQ(CheckBoiler(), static_cast<int>(boiler::MemoryLayout().size()));
  EXPECT_EQ(AddressOf("b_pump", kBit), "0062");
}

TEST_F(SampleMaps, TheAtmegasMapNamesTheBoilersMemoryFromF000On) {
  LoadSample("atmega.map");
  EXPECT_EQ(State(), "map decides, reload, ATMega 0");
  int expected = 0;
  for (const boiler::MemoryItem& item : boiler::MemoryLayout()) expected += item.address >= 0xF000;
  EXPECT_EQ(CheckBoiler(), expected);
  // The variables of the EEPROM.
  EXPECT_EQ(Notice(), "atmega.map: 122 variables read, 11 lines skipped");
}

TEST_F(SampleMaps, TheXmegasMapLiesInTheBoilersFreeMemory) {
  LoadSample("xmega.map");
  EXPECT_EQ(State(), "map decides, reload, XMega 1");
  ASSERT_GT(program().map.variables().size(), 100U);
  for (const MapVariable& one : program().map.variables()) {
    const int address = std::stoi(one.address, nullptr, 16);
    EXPECT_TRUE(address >= boiler::kFreeRamFirst && address <= boiler::kFreeRamLast) << one.Name;
  }
}

TEST_F(SampleMaps, EveryMapHasAVariableOfEachTypeAndAnAlias) {
  for (const std::string name : {"atmega.map", "xmega.map"}) {
    LoadSample(name);
    std::vector<int> types(5);
    int aliases = 0;
    for (const MapVariable& one : program().map.variables()) {
      ++types[static_cast<std::size_t>(one.StorageType)];
      aliases += one.Size == 0;
    }
    for (int type = 1; type <= 4; ++type) EXPECT_GT(types[static_cast<std::size_t>(type)], 1);
    EXPECT_EQ(aliases, 1) << name;
  }
}

}  // namespace
}  // namespace tarnlink
