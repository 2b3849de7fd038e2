#include "files/avr_map.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "common/numbers.h"
#include "common/text.h"
#include "monitor/location_table.h"
#include "support/pieces.h"
#include "support/prefixes.h"
#include "support/samples.h"

namespace tarnlink {
namespace {

constexpr std::int16_t kAtmega = 0;
constexpr std::int16_t kXmega = 1;

// A line of data, the address as the linker writes it.
std::string Data(const std::string& name, const std::string& address) {
  return name + "  DATA  0000" + address + "\n";
}

// "count F060 size 2 type 3; " for each entry, or "no entry list".
std::string Text(const AvrMap& map) {
  if (!map.has_entry_list) return map.variables.empty() ? "no entry list" : "entries without list";
  std::string text;
  for (const MapVariable& one : map.variables) {
    text += one.Name + " " + one.address + " size " + std::to_string(one.Size) + " type " +
            std::to_string(one.StorageType) + "; ";
  }
  if (map.is_cut) text += "cut; ";
  return text + std::to_string(map.skipped_lines) + " skipped";
}

// What is read, which must be the same whatever pieces the map comes in.
std::string ReadWhole(std::string_view text, std::int16_t micro_type = kAtmega) {
  const std::string read = Text(ReadInPieces(AvrMapReader(micro_type), text, text.size()));
  for (const std::size_t size : PieceSizes(text)) {
    EXPECT_EQ(Text(ReadInPieces(AvrMapReader(micro_type), text, size)), read)
        << "pieces of " << size;
  }
  return read;
}

std::string Read(const std::string& entries, std::int16_t micro_type = kAtmega) {
  return ReadWhole("ENTRY LIST\n" + entries, micro_type);
}

// The addresses of what is read, in order.
std::string Addresses(const std::string& entries, std::int16_t micro_type) {
  std::string text;
  for (const MapVariable& one :
       ReadInPieces(AvrMapReader(micro_type), "ENTRY LIST\n" + entries, 10).variables) {
    text += one.address + " ";
  }
  return text;
}

TEST(AvrMap, ReadsTheVariablesBehindTheEntryList) {
  EXPECT_EQ(ReadWhole("MAP\r\n\r\n** ENTRY LIST **\r\ncount   DATA    00000060\r\n"
                      "Start   CODE    00000062\r\nmode    DATA    00000062\r\n"),
            "count F060 size 2 type 3; mode F062 size 1 type 1; 0 skipped");
}

TEST(AvrMap, EndsLinesAtCrLfAndAtLf) {
  for (const std::string end : {"\r\n", "\n"}) {
    for (const std::string& last : {end, std::string()}) {
      EXPECT_EQ(ReadWhole("ENTRY LIST" + end + "a DATA 00000060" + last),
                "a F060 size 1 type 1; 0 skipped");
    }
  }
}

TEST(AvrMap, PassesOverDataBeforeTheEntryList) {
  EXPECT_EQ(ReadWhole(Data("a", "0060") + "ENTRY LIST\n" + Data("b", "0061")),
            "b F061 size 1 type 1; 0 skipped");
  EXPECT_EQ(ReadWhole("ENTRY LIST DATA 00000060\n" + Data("b", "0061")),
            "b F061 size 1 type 1; 0 skipped");
}

TEST(AvrMap, AnEntryListWithoutALineBehindItIsNone) {
  for (const std::string text :
       {"", "\r\n", "ENTRY LIST", "ENTRY LIST\r\n", "ENTRY LIST\n", "x\r\nENTRY LIST\r\n",
        "a DATA 00000060\nENTRY LIST", "a DATA 00000060\n", "ENTRY\nLIST\na DATA 00000060\n",
        "Entry List\na DATA 00000060\n", "ENTRY  LIST\na DATA 00000060\n"}) {
    EXPECT_EQ(ReadWhole(text), "no entry list") << text;
  }
}

TEST(AvrMap, AnEntryListWithALineBehindItMayBeEmpty) {
  for (const std::string text : {"ENTRY LIST\n\n", "ENTRY LIST\r\n\r\n", "ENTRY LIST\nx",
                                 "ENTRY LIST\nENTRY LIST\n", "ENTRY LIST\n "}) {
    EXPECT_EQ(ReadWhole(text), "0 skipped") << text;
  }
}

TEST(AvrMap, OnlyALineWithDataBetweenBlanksCounts) {
  for (const std::string line : {"a CODE 00000060", "a DATA", "DATA 00000060", "a\tDATA\t00000060",
                                 "a data 00000060", "a XDATA 00000060", "a DATA2 00000060",
                                 "aDATA 00000060", "a DATA\t00000060", "", "a D ATA 00000060"}) {
    EXPECT_EQ(Read(line + "\n" + Data("b", "0061")), "b F061 size 1 type 1; 0 skipped") << line;
  }
}

TEST(AvrMap, BlanksInARowAreOne) {
  for (const std::string line : {"a DATA 00000060", "   a   DATA     00000060   ",
                                 "a DATA 00000060 ", " a  DATA 00000060"}) {
    EXPECT_EQ(Read(line + "\n"), "a F060 size 1 type 1; 0 skipped") << line;
  }
}

TEST(AvrMap, SkipsALineWhoseThirdFieldDoesNotBeginWithThreeZeros) {
  for (const std::string line :
       {"a DATA 00800060", "a DATA 00100060", "a DATA F060", "a DATA 0060", "a DATA x0000060",
        "a DATA 0x000060", "DATA DATA DATA", "a b DATA 00000060", " DATA 00000060", "a DATA ",
        "a DATA 00", "a b c DATA 00000060"}) {
    EXPECT_EQ(Read(line + "\n" + Data("b", "0061")), "b F061 size 1 type 1; 1 skipped") << line;
  }
}

TEST(AvrMap, SkipsALineThatDoesNotEndInAnAddress) {
  for (const std::string line :
       {"a DATA 0000006G", "a DATA 00000060 x", "a DATA 00000060 file.o", "a DATA 000 60",
        "a DATA 000&H60", "a DATA 0000-060", "a DATA 000000.6", "a DATA 0000006\xC3\x84",
        "a DATA 00000060\t"}) {
    EXPECT_EQ(Read(line + "\n" + Data("b", "0061")), "b F061 size 1 type 1; 1 skipped") << line;
  }
}

TEST(AvrMap, TheThirdFieldTakesTheRestOfTheLine) {
  EXPECT_EQ(Read("a DATA 000 0060\nb DATA 0001 x 0061\n"),
            "a F060 size 1 type 1; b F061 size 1 type 1; 0 skipped");
}

TEST(AvrMap, AnAtmegasMemoryEndsAt07FF) {
  EXPECT_EQ(Addresses(Data("a", "0000") + Data("b", "0060") + Data("c", "07ff"), kAtmega),
            "F000 F060 F7FF ");
  for (const std::string address : {"0800", "0801", "1060", "2010", "7FFF", "8000", "FFFF"}) {
    EXPECT_EQ(Read(Data("a", address)), "1 skipped") << address;
  }
}

TEST(AvrMap, AnXmegasMemoryIs2000To2EFFAndBeginsAtF100) {
  EXPECT_EQ(Addresses(Data("a", "2000") + Data("b", "2001") + Data("c", "20ff") +
                          Data("d", "2100") + Data("e", "2EFF"),
                      kXmega),
            "F100 F101 F1FF F200 FFFF ");
  for (const std::string address :
       {"0000", "0060", "1FFF", "2F00", "2FFF", "3000", "7FFF", "A000", "FFFF"}) {
    EXPECT_EQ(Read(Data("a", address), kXmega), "1 skipped") << address;
  }
}

TEST(AvrMap, EveryOtherMicroprocessorHasTheXmegasWindow) {
  for (const int micro_type : {1, 2, 3}) {
    EXPECT_EQ(
        Addresses(Data("a", "2000") + Data("b", "0060"), static_cast<std::int16_t>(micro_type)),
        "F100 ");
  }
}

TEST(AvrMap, SortsByAddress) {
  EXPECT_EQ(Addresses(Data("a", "07FF") + Data("b", "0000") + Data("c", "0100") +
                          Data("d", "00FF") + Data("e", "000A"),
                      kAtmega),
            "F000 F00A F0FF F100 F7FF ");
}

TEST(AvrMap, AVariableReachesToTheNextOneAndTheLastIsOneByte) {
  EXPECT_EQ(Read(Data("a", "0000") + Data("b", "0001") + Data("c", "0003") + Data("d", "0007")),
            "a F000 size 1 type 1; b F001 size 2 type 3; c F003 size 4 type 1; d F007 size 1 type "
            "1; 0 skipped");
  EXPECT_EQ(Read(Data("a", "2000") + Data("b", "2EFF"), kXmega),
            "a F100 size 3839 type 1; b FFFF size 1 type 1; 0 skipped");
}

TEST(AvrMap, OfTwoNamesForOneAddressTheFirstHasNoSize) {
  EXPECT_EQ(Read(Data("a", "0060") + Data("b", "0060") + Data("c", "0062")),
            "b F060 size 0 type 1; a F060 size 2 type 3; c F062 size 1 type 1; 0 skipped");
  EXPECT_EQ(Read(Data("swa", "0060") + Data("swb", "0060")),
            "swb F060 size 0 type 4; swa F060 size 1 type 4; 0 skipped");
}

std::string Digits(int address) { return Stuff(Hex(address), 4); }

// The type of a variable of that name and size; -1 if it is not read.
int TypeOf(const std::string& name, int size) {
  const std::string entries = Data(name, "0100") + Data("next", Digits(0x100 + size));
  const AvrMap map = ReadInPieces(AvrMapReader(kAtmega), "ENTRY LIST\n" + entries, 100);
  return map.variables.size() == 2 ? map.variables[0].StorageType : -1;
}

TEST(AvrMap, APrefixOfTheNameTellsTheTypeWhateverTheSize) {
  const std::vector<std::pair<std::string, int>> cases = {
      {"swCount", kSignedWord},   {"sbCount", kSignedByte},  {"ubCount", kUnsignedByte},
      {"uwCount", kUnsignedWord}, {"_swCount", kSignedWord}, {"_sb", kSignedByte},
      {"gub", kUnsignedByte},     {"uw", kUnsignedWord},     {"sw", kSignedWord}};
  for (const auto& [name, type] : cases) {
    for (const int size : {1, 2, 4}) {
      EXPECT_EQ(TypeOf(name, size), type) << name << " of " << size;
    }
  }
}

TEST(AvrMap, WithoutAPrefixTwoBytesAreAWord) {
  for (const std::string name :
       {"count", "SWcount", "Sbcount", "UB", "xxsw", "coub", "s_w", "c", "xx", "bus"}) {
    for (const int size : {1, 2, 3, 4, 256}) {
      EXPECT_EQ(TypeOf(name, size), size == 2 ? kUnsignedWord : kUnsignedByte)
          << name << " of " << size;
    }
  }
}

std::string ManyEntries(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += Data("v" + std::to_string(i), Digits(2 * (i % 1000)));
  return text;
}

// Each damage at each place of the memory; a sound line stands behind.
TEST(AvrMap, ADamagedLineNeverNamesAVariable) {
  int refused = 0;
  for (const std::string digits : {"0000", "0060", "00FF", "0100", "07FE", "07FF"}) {
    const std::vector<std::string> lines = {
        "a  DATA  0010" + digits,         "a  DATA  F000" + digits,
        "a  DATA  11" + digits,           "a  DATA  000X" + digits.substr(0, 3),
        "a  DATA  0000" + digits + "h",   "a  DATA  0000" + digits + " x",
        std::string("a  DATA"),           std::string("a  DATA  "),
        "a  data  0000" + digits,         "a  XDATA  0000" + digits,
        "a\tDATA\t0000" + digits,         "DATA  0000" + digits,
        "a  CODE  0000" + digits,         "a  b  DATA  0000" + digits,
        "a  DATA  -000" + digits,         "a  DATA  0x00" + digits,
        "a  DATA  \"0000" + digits + "\""};
    for (const std::string& line : lines) {
      EXPECT_EQ(Read(line + "\n" + Data("z", "0010")).substr(0, 7), "z F010 ") << line;
      ++refused;
    }
  }
  EXPECT_EQ(refused, 102);
}

TEST(AvrMap, Takes1001Entries) {
  const AvrMap map =
      ReadInPieces(AvrMapReader(kAtmega), "ENTRY LIST\n" + ManyEntries(1001) + "x\n", 1000);
  EXPECT_EQ(map.variables.size(), 1001U);
  EXPECT_FALSE(map.is_cut);
}

TEST(AvrMap, AFurtherEntryEndsTheReadingAndWhatWasReadIsWhole) {
  const std::string full = "ENTRY LIST\n" + ManyEntries(1001);
  const AvrMap expected = ReadInPieces(AvrMapReader(kAtmega), full, 1000);
  const std::string further = Data("further", "0001") + "b DATA 00800000\n" + Data("c", "0003");
  for (const std::size_t size : {std::size_t{1}, std::size_t{1000}, std::size_t{1} << 20}) {
    const AvrMap map = ReadInPieces(AvrMapReader(kAtmega), full + further, size);
    EXPECT_TRUE(map.is_cut);
    EXPECT_TRUE(map.has_entry_list);
    EXPECT_EQ(map.skipped_lines, 0);
    EXPECT_EQ(map.variables, expected.variables);
  }
  AvrMapReader reader(kAtmega);
  EXPECT_TRUE(reader.Take(full));
  EXPECT_FALSE(reader.Take(further));
}

TEST(AvrMap, ALineThatIsSkippedIsNoEntry) {
  const AvrMap map = ReadInPieces(
      AvrMapReader(kAtmega),
      "ENTRY LIST\n" + ManyEntries(1001) + "b DATA 00800000\n" + Data("c", "0800") + "x\n", 1000);
  EXPECT_FALSE(map.is_cut);
  EXPECT_EQ(map.variables.size(), 1001U);
  EXPECT_EQ(map.skipped_lines, 2);
}

TEST(AvrMap, LeavesOutTheLineInWhichAReadingBrokeOff) {
  const auto names = [](bool is_whole) {
    AvrMapReader reader(kAtmega);
    std::string map = "ENTRY LIST\n" + Data("flow", "0060") + Data("back", "0061");
    map.pop_back();
    reader.Take(map);
    std::string text;
    for (const MapVariable& one : reader.Finish(is_whole).variables) text += one.Name + " ";
    return text;
  };
  EXPECT_EQ(names(true), "flow back ");
  EXPECT_EQ(names(false), "flow ");
}

TEST(AvrMap, ReadsNamesInUtf8AndInWindows1252) {
  EXPECT_EQ(Read("K\xFChl DATA 00000060\nK\xC3\xBChl DATA 00000061\n"),
            "K\xC3\xBChl F060 size 1 type 1; K\xC3\xBChl F061 size 1 type 1; 0 skipped");
}

TEST(AvrMap, OutlastsALineThatNeverEnds) {
  const std::string text = "ENTRY LIST\n" + std::string(200'000, 'x') + " DATA 00000060\n" +
                           Data("a", "0061") + "b DATA " + std::string(200'000, '0');
  EXPECT_EQ(Text(ReadInPieces(AvrMapReader(kAtmega), text, 5000)),
            "a F061 size 1 type 1; 1 skipped");
}

TEST(AvrMap, TakesBytesThatAreNoText) {
  const std::string zero(1, '\0');
  EXPECT_EQ(Read(Data("a" + zero + "b", "0060") + Data("c", zero + "061")),
            "a" + zero + "b F060 size 1 type 1; 1 skipped");
}

TEST(AvrMap, ReadsEveryPrefixOfTheSamples) {
  for (const auto& [name, micro_type] : std::vector<std::pair<std::string, std::int16_t>>{
           {"atmega.map", kAtmega}, {"xmega.map", kXmega}}) {
    SCOPED_TRACE(name);
    const std::string sample = SampleBytes(name);
    const AvrMap whole = ReadInPieces(AvrMapReader(micro_type), sample, sample.size());
    ASSERT_GT(whole.variables.size(), 100U);
    std::set<std::pair<std::string, std::string>> known;
    for (const MapVariable& one : whole.variables) known.emplace(one.Name, one.address);
    const std::size_t list = sample.find("ENTRY LIST") + 10;
    ForEveryPrefix(sample, [&, type = micro_type](std::string_view prefix) {
      const AvrMap read = ReadInPieces(AvrMapReader(type), prefix, 1000);
      EXPECT_EQ(read.has_entry_list, prefix.size() > list + 2);
      ASSERT_LE(read.variables.size(), whole.variables.size());
      EXPECT_TRUE(std::is_sorted(
          read.variables.begin(), read.variables.end(),
          [](const MapVariable& a, const MapVariable& b) { return a.address < b.address; }));
      // An address that is cut short may still be one.
      EXPECT_LE(std::count_if(read.variables.begin(), read.variables.end(),
                              [&](const MapVariable& one) {
                                return !known.contains({one.Name, one.address});
                              }),
                1);
    });
  }
}

TEST(SqueezeBlanks, MakesOneOfEveryRowOfBlanksInTheLineAndInTheResult) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"", ""},        {" ", ""},           {"     ", ""},           {"a", "a"},
      {"a b", "a b"},  {"  a  b  ", "a b"}, {"a   b    c", "a b c"}, {"a\t \t b", "a\t \t b"},
      {"\t a", "\t a"}};
  for (const auto& [line, expected] : cases) {
    std::string changed = line;
    EXPECT_EQ(SqueezeBlanks(changed), expected) << line;
    EXPECT_EQ(changed, expected) << line;
  }
}

std::vector<MapVariable> Unsorted(const std::vector<std::string>& addresses) {
  std::vector<MapVariable> list;
  for (const std::string& address : addresses) {
    list.push_back({.Name = std::to_string(list.size()), .address = address});
  }
  return list;
}

// "2F000 0F001 ": the name is the place that the entry had.
std::string Order(const std::vector<MapVariable>& list) {
  std::string text;
  for (const MapVariable& one : list) text += one.Name + one.address + " ";
  return text;
}

TEST(SortMapVariables, MovesWholeEntries) {
  auto list = Unsorted({"F005", "F001", "F004", "F002", "F003"});
  SortMapVariables(list, 0, 0);
  EXPECT_EQ(Order(list), "1F001 3F002 4F003 2F004 0F005 ");
}

TEST(SortMapVariables, SwapsEntriesOfOneAddressAsItComesUponThem) {
  const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
      {{"F000"}, "0F000 "},
      {{"F000", "F000"}, "1F000 0F000 "},
      {{"F000", "F000", "F000"}, "2F000 1F000 0F000 "},
      {{"F001", "F000", "F001"}, "1F000 2F001 0F001 "},
      {{"F000", "F001", "F000"}, "2F000 0F000 1F001 "}};
  for (const auto& [addresses, expected] : cases) {
    auto list = Unsorted(addresses);
    SortMapVariables(list, 0, 0);
    EXPECT_EQ(Order(list), expected);
  }
}

TEST(SortMapVariables, SortsAPartOfTheList) {
  auto list = Unsorted({"F009", "F008", "F007", "F006", "F005"});
  SortMapVariables(list, 1, 3);
  EXPECT_EQ(Order(list), "0F009 3F006 2F007 1F008 4F005 ");
}

TEST(SortMapVariables, LosesNothingOfAnyList) {
  std::mt19937 random(1);
  for (int round = 0; round < 300; ++round) {
    std::vector<std::string> addresses;
    for (auto left = random() % 40 + 1; left > 0; --left) {
      addresses.push_back("F0" + Hex(static_cast<int>(16 + random() % 30)));
    }
    auto list = Unsorted(addresses);
    SortMapVariables(list, 0, 0);
    std::set<std::string> names;
    for (std::size_t i = 0; i < list.size(); ++i) {
      EXPECT_EQ(list[i].address, addresses[std::stoul(list[i].Name)]);
      EXPECT_TRUE(names.insert(list[i].Name).second);
      EXPECT_LE(list[i > 0 ? i - 1 : 0].address, list[i].address);
    }
    EXPECT_EQ(list.size(), addresses.size());
  }
}

TEST(GetElementSize, IsTheDistanceToTheNextAddress) {
  const auto list = Unsorted({"F000", "F000", "F002", "F7FF", "FFFF"});
  const std::vector<int> sizes = {0, 2, 2045, 2048, 1};
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(GetElementSize(list, i), sizes[static_cast<std::size_t>(i)]) << i;
  }
}

class AddressesOfNames : public ::testing::Test {
 protected:
  std::string Word(std::string_view label) {
    return GetVyroLstByteAddress(list, label, kUnsignedWord);
  }
  std::string Byte(std::string_view label) {
    return GetVyroLstByteAddress(list, label, kUnsignedByte);
  }

  std::vector<MapVariable> list = {{"table", "F060"}, {"count", "F0FF"}, {"table", "F200"},
                                   {"top", "FFFC"},   {"a+b", "F300"},   {"last", "FFFF"},
                                   {"", "F301"},      {"first", "F000"}};
};

TEST_F(AddressesOfNames, TheFirstVariableOfTheNameCounts) {
  EXPECT_EQ(Byte("table"), "F060");
  EXPECT_EQ(Byte("count"), "F0FF");
  EXPECT_EQ(Word("last"), "FFFF");
}

TEST_F(AddressesOfNames, ANameMustBeTheSameToTheLetter) {
  for (const std::string label : {"Table", "TABLE", "tabl", "tables", " table", "table ", "F060",
                                  "table-1", "table +1", "a", "b", "a+b"}) {
    EXPECT_EQ(Byte(label), "") << label;
    EXPECT_EQ(Word(label), "") << label;
  }
}

TEST_F(AddressesOfNames, AnEmptyListHasNone) {
  list.clear();
  for (const std::string label : {"table", "table+1", "", "+1"}) EXPECT_EQ(Byte(label), "");
}

TEST_F(AddressesOfNames, AnElementIsAStepOfItsTypeFurther) {
  EXPECT_EQ(Byte("table+2"), "F062");
  EXPECT_EQ(Word("table+2"), "F064");
  EXPECT_EQ(Byte("table+10"), "F06A");
  EXPECT_EQ(Word("count+1"), "F101");
  for (const int type : {0, 1, 2}) EXPECT_EQ(GetVyroLstByteAddress(list, "table+3", type), "F063");
  for (const int type : {3, 4}) EXPECT_EQ(GetVyroLstByteAddress(list, "table+3", type), "F066");
}

TEST_F(AddressesOfNames, ElementZeroIsTheVariableItself) {
  for (const std::string label :
       {"table+0", "table+", "table+x", "table+ ", "table++3", "table+x3"}) {
    EXPECT_EQ(Word(label), label == "table++3" ? "F066" : "F060") << label;
  }
}

TEST_F(AddressesOfNames, TheTextBehindTheFirstPlusIsTheElement) {
  EXPECT_EQ(Byte("table+2+3"), "F062");
  EXPECT_EQ(Byte("table+ 2 "), "F062");
  EXPECT_EQ(Byte("table+2x"), "F062");
  EXPECT_EQ(Byte("+2"), "F303");
}

TEST_F(AddressesOfNames, AnElementAtTheTopOfTheMemoryOrBeyondHasItsVariablesAddress) {
  EXPECT_EQ(Byte("top+2"), "FFFE");
  EXPECT_EQ(Word("top+1"), "FFFE");
  for (const std::string label : {"top+3", "top+4", "top+5", "top+999999999", "last+1"}) {
    EXPECT_EQ(Byte(label), label[0] == 't' ? "FFFC" : "FFFF") << label;
  }
  EXPECT_EQ(Word("top+2"), "FFFC");
  EXPECT_EQ(Word("top+99999999999999999999"), "FFFC");
}

TEST_F(AddressesOfNames, AnElementBeforeTheVariableIsCountedBack) {
  EXPECT_EQ(Byte("table+-1"), "F05F");
  EXPECT_EQ(Word("table+-1"), "F05E");
  EXPECT_EQ(Byte("first+-1"), "EFFF");
}

}  // namespace
}  // namespace tarnlink
