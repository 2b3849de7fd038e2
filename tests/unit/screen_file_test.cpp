#include "files/screen_file.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "common/run_time_error.h"
#include "common/text_file.h"
#include "support/prefixes.h"

namespace tarnlink {
namespace {

const std::string kExample =
    "16744576\r\n"
    "\"L\",0,3,\"01A0\",0,\"Flow\",\"t_flow\",0,1,0,0,\"0\",0,600,2400,600,240,\"0\"\r\n"
    "\"I\",1,3,\"0012\",0,\"Status\",\"Not Assigned\",0,0,0,0,\"0\",1,900,2400,900,240,\"1\",3,2"
    "\r\n"
    "\"T\",\"Boiler 1\",120,240,\"Arial\",8.25,#TRUE#,#FALSE#,255\r\n";

const std::string kModbusExample =
    "-2147483633\r\n"
    "\"M\",1,4,\"0040\",0,\"Supply\",\"Not "
    "Assigned\",7,1,3,1,\"12\",2,600.5,0.1,-15,240,\"17\",255,2"
    ",\"&H03\",8,#FALSE#\r\n"
    "\"M\",1,0,\"0041\",15,\"Pump\",\"Not Assigned\",0,0,0,0,\"1\",3,1,2,3,4,\"17\",1,0,\"&H03\",1"
    ",#TRUE#\r\n";

// What a load gets out of a file: all that it could build, and the code of the error that ended it.
struct Loaded {
  Colour colour = 0;
  std::vector<ScreenRecord> records;
  int code = 0;
};

Loaded Load(std::string_view text) {
  Loaded loaded;
  try {
    ScreenFileReader reader(text);
    loaded.colour = reader.ReadColour();
    while (std::optional<ScreenRecord> record = reader.Next()) {
      loaded.records.push_back(*std::move(record));
    }
  } catch (const RunTimeError& error) {
    loaded.code = error.code();
  }
  return loaded;
}

// "3 records", with the error's code behind it if there was one.
std::string Summary(std::string_view text) {
  const Loaded loaded = Load(text);
  std::string summary = std::to_string(loaded.records.size()) + " records";
  if (loaded.code != 0) summary += ", error " + std::to_string(loaded.code);
  return summary;
}

LocationRecord LocationAt(const Loaded& loaded, std::size_t index) {
  return std::get<LocationRecord>(loaded.records.at(index));
}

std::string Replaced(std::string text, const std::string& what, const std::string& with) {
  return text.replace(text.find(what), what.size(), with);
}

// The kinds of the fields behind the tag, and a good record of each tag.
enum class Kind { kText, kByte, kInteger, kLong, kSingle, kBoolean };
using enum Kind;

struct Layout {
  std::string tag;
  std::vector<Kind> kinds;
};

std::vector<Layout> Layouts() {
  const std::vector<Kind> memory = {kLong,   kLong,   kText,   kByte,   kText, kText,
                                    kByte,   kByte,   kByte,   kByte,   kText, kLong,
                                    kSingle, kSingle, kSingle, kSingle, kText};
  std::vector<Kind> id = memory;
  id.insert(id.end(), {kByte, kByte});
  std::vector<Kind> modbus = id;
  modbus.insert(modbus.end(), {kText, kInteger, kBoolean});
  return {{"L", memory},
          {"I", id},
          {"M", modbus},
          {"T", {kText, kSingle, kSingle, kText, kSingle, kBoolean, kBoolean, kLong}}};
}

std::string GoodField(Kind kind) {
  if (kind == kText) return "\"text\"";
  return kind == kBoolean ? "#TRUE#" : "1";
}

// A file of one good label and one record of `layout`, whose field `position` reads `field`.
std::string FileWith(const Layout& layout, std::size_t position, const std::string& field) {
  std::string line = '"' + layout.tag + '"';
  for (std::size_t i = 0; i < layout.kinds.size(); ++i) {
    line += "," + (i == position ? field : GoodField(layout.kinds[i]));
  }
  return "0\r\n\"T\",\"first\",1,1,\"Arial\",8,#TRUE#,#TRUE#,0\r\n" + line + "\r\n";
}

// Calls `check` with every layout and every position in it.
template <class Check>
void ForEveryField(Check check) {
  for (const Layout& layout : Layouts()) {
    for (std::size_t position = 0; position < layout.kinds.size(); ++position) {
      SCOPED_TRACE(layout.tag + ", field " + std::to_string(position + 2));
      check(layout, position);
    }
  }
}

TEST(ScreenFileReader, ReadsEveryFieldOfTheExample) {
  const Loaded loaded = Load(kExample);
  EXPECT_EQ(loaded.code, 0);
  EXPECT_EQ(loaded.colour, 0xFF8080);
  ASSERT_EQ(loaded.records.size(), 3U);

  LocationRecord flow;
  flow.tag = kMemoryTag;
  flow.location.Specification = 0;
  flow.location.StorageType = kUnsignedWord;
  flow.location.Address = "01A0";
  flow.location.Alias = "Flow";
  flow.location.ActualVariable = "t_flow";
  flow.location.LogEnable = 1;
  flow.location.ExcelColumn = "0";
  flow.location.Representation = kDecimal;
  flow.location.LocSlaveAddress = "0";
  flow.value_top = 600;
  flow.value_left = 2400;
  flow.name_top = 600;
  flow.name_left = 240;
  EXPECT_EQ(LocationAt(loaded, 0), flow);

  LocationRecord status;
  status.tag = kIdTag;
  status.location.Address = "0012";
  status.location.Alias = "Status";
  status.location.ExcelColumn = "0";
  status.location.LocSlaveAddress = "1";
  status.location.Class = 3;
  status.location.SelectByte = kBoth;
  status.value_top = 900;
  status.value_left = 2400;
  status.name_top = 900;
  status.name_left = 240;
  EXPECT_EQ(LocationAt(loaded, 1), status);

  const LabelRecord label = {"Boiler 1", 120, 240, {"Arial", 8.25F, true, false}, 255};
  EXPECT_EQ(std::get<LabelRecord>(loaded.records[2]), label);
}

TEST(ScreenFileReader, ReadsEveryFieldOfAModbusRecord) {
  const Loaded loaded = Load(kModbusExample);
  EXPECT_EQ(loaded.code, 0);
  EXPECT_EQ(loaded.colour, kFormBackground);
  ASSERT_EQ(loaded.records.size(), 2U);

  LocationRecord supply;
  supply.tag = kModbusTag;
  supply.location.StorageType = kSignedWord;
  supply.location.Representation = kBinary;
  supply.location.Address = "0040";
  supply.location.Alias = "Supply";
  supply.location.SpareByte = 7;
  supply.location.LogEnable = 1;
  supply.location.ScanFlags = kScanningDisabled | kContinuousWrite;
  supply.location.DDEEnable = 1;
  supply.location.ExcelColumn = "12";
  supply.location.LocSlaveAddress = "17";
  supply.location.Class = 255;
  supply.location.FunctionCode = "&H03";
  supply.location.NumReg = 8;
  supply.value_top = 600.5F;
  supply.value_left = 0.1F;
  supply.name_top = -15;
  supply.name_left = 240;
  EXPECT_EQ(LocationAt(loaded, 0), supply);
  EXPECT_EQ(LocationAt(loaded, 1).location.BitAddress, 15);
  EXPECT_EQ(LocationAt(loaded, 1).location.SelectByte, kMsb);
  EXPECT_TRUE(LocationAt(loaded, 1).location.RegisterFollower);
}

TEST(ScreenFileReader, GivesAnEmptyScreenForAFileWithOnlyTheFirstLine) {
  for (const std::string text : {"16744576\r\n", "16744576\n", "16744576"}) {
    EXPECT_EQ(Load(text).colour, 0xFF8080);
    EXPECT_EQ(Summary(text), "0 records");
    EXPECT_EQ(ScreenFileReader::InferProtocol(text), 0);
  }
}

TEST(ScreenFileReader, NeedsAColourFirst) {
  EXPECT_EQ(Summary(""), "0 records, error 62");
  EXPECT_EQ(Summary("\r\n1"), "0 records, error 13");
  EXPECT_EQ(Summary("\"L\",0,3"), "0 records, error 13");
  EXPECT_EQ(Summary("\"16744576\""), "0 records, error 13");
  EXPECT_EQ(Summary("2147483653"), "0 records, error 6");
  EXPECT_EQ(Summary(std::string_view("\0", 1)), "0 records, error 13");
}

TEST(ScreenFileReader, ReadsTheSameWithEitherLineEndAndWithoutTheLast) {
  const Loaded loaded = Load(kExample);
  std::string unix_lines;
  for (const char c : kExample) {
    if (c != '\r') unix_lines += c;
  }
  for (const std::string& text : {unix_lines, unix_lines.substr(0, unix_lines.size() - 1),
                                  kExample.substr(0, kExample.size() - 1), kExample + "\r\n\r\n"}) {
    EXPECT_EQ(Load(text).records, loaded.records);
    EXPECT_EQ(Load(text).code, 0);
  }
}

TEST(ScreenFileReader, TakesARecordThatIsSpreadOverLines) {
  std::string spread;
  for (const char c : kExample) spread += c == ',' ? std::string("\r\n") : std::string(1, c);
  EXPECT_EQ(Load(spread).records, Load(kExample).records);
}

TEST(ScreenFileReader, CountsATagByItsTextQuotedOrNot) {
  EXPECT_EQ(Load(Replaced(kExample, "\"L\"", " L ")).records, Load(kExample).records);
  EXPECT_EQ(Summary(Replaced(kExample, "\"L\"", "\"l\"")), "2 records");
  EXPECT_EQ(Summary(Replaced(kExample, "\"L\"", "\"L \"")), "2 records");
  EXPECT_EQ(Summary(Replaced(kExample, "\"L\"", "\"LL\"")), "2 records");
}

TEST(ScreenFileReader, FallsBackIntoStepAfterStrayFields) {
  EXPECT_EQ(Summary(Replaced(kExample, "\"I\"", "stray,1,\"x\",#TRUE#\r\n\r\n\"I\"")), "3 records");
  EXPECT_EQ(Summary(Replaced(kExample, "\"0\"\r\n", "\"0\",5,\"more\"\r\n")), "3 records");
}

TEST(ScreenFileReader, PassesOverASecondHeader) {
  EXPECT_EQ(Load("16744576\r\n" + kExample).records, Load(kExample).records);
  const Loaded doubled = Load(kExample + kExample);
  EXPECT_EQ(doubled.records.size(), 6U);
  EXPECT_EQ(doubled.code, 0);
}

TEST(ScreenFileReader, LosesOnlyTheLineOfAQuoteThatNeverCloses) {
  const std::string open = Replaced(kExample, "\"0\"\r\n", "\"0\r\n");
  EXPECT_EQ(Load(open).records, Load(kExample).records);
  // Here another quote follows on the line and closes the text too late.
  EXPECT_EQ(Summary(Replaced(kExample, "Boiler 1\"", "Boiler 1")), "2 records, error 13");
}

TEST(ScreenFileReader, SurvivesNulBytes) {
  const std::string nul(1, '\0');
  EXPECT_EQ(Summary(Replaced(kExample, ",600,", "," + nul + ",")), "0 records, error 13");
  EXPECT_EQ(Summary(Replaced(kExample, "\"I\"", nul + ",\"I\"")), "3 records");
  const Loaded loaded = Load(Replaced(kExample, "Flow", "F" + nul + "low"));
  EXPECT_EQ(LocationAt(loaded, 0).location.Alias, "F" + nul + "low");
  EXPECT_EQ(Summary("0\r\n" + std::string(1000, '\0')), "0 records");
}

TEST(ScreenFileReader, HoldsAnAddressAtFourCharacters) {
  EXPECT_EQ(LocationAt(Load(Replaced(kExample, "01A0", "1A")), 0).location.Address, "1A  ");
  EXPECT_EQ(LocationAt(Load(Replaced(kExample, "01A0", "01A0B")), 0).location.Address, "01A0");
}

TEST(ScreenFileReader, KeepsNumbersOutsideTheirEnumeration) {
  const Loaded loaded = Load(FileWith(Layouts()[0], 1, "7"));
  EXPECT_EQ(LocationAt(loaded, 1).location.StorageType, 7);
  EXPECT_EQ(LocationAt(Load(FileWith(Layouts()[0], 11, "-7")), 1).location.Representation, -7);
}

TEST(ScreenFileReader, KeepsTheNameOfAFontThatNobodyHas) {
  const Loaded loaded = Load(Replaced(kExample, "Arial", "No Such Font"));
  EXPECT_EQ(std::get<LabelRecord>(loaded.records[2]).font.name, "No Such Font");
}

TEST(ScreenFileReader, LeavesFieldsThatTheTagDoesNotStoreAtTheirDefaults) {
  for (const Layout& layout : Layouts()) {
    if (layout.tag == "T") continue;
    const Location location = LocationAt(Load(FileWith(layout, 99, "")), 1).location;
    EXPECT_EQ(location.RawValue, 0);
    EXPECT_EQ(location.SelectByte, layout.tag == "L" ? 2 : 1);
    EXPECT_EQ(location.FunctionCode, layout.tag == "M" ? "text" : "&H00");
    EXPECT_EQ(location.RegisterFollower, layout.tag == "M");
  }
}

TEST(ScreenFileReader, RefusesAFieldOfTheWrongKindAndKeepsWhatCameBefore) {
  const std::vector<std::string> no_numbers = {
      "\"5\"", "\"\"", "", "abc", "#TRUE#", "1 2", "1.2.3", "&H5", "5x", "-", ".", "1E", "nan"};
  const std::vector<std::string> no_booleans = {"\"#TRUE#\"", "1",     "-1",  "0", "",
                                                "TRUE",       "#TRUE", "#1#", "x", "#TRUE##"};
  ForEveryField([&](const Layout& layout, std::size_t position) {
    const Kind kind = layout.kinds[position];
    if (kind == kText) return;
    for (const std::string& field : kind == kBoolean ? no_booleans : no_numbers) {
      EXPECT_EQ(Summary(FileWith(layout, position, field)), "1 records, error 13") << field;
    }
  });
}

TEST(ScreenFileReader, TakesAnyFieldAsAText) {
  ForEveryField([](const Layout& layout, std::size_t position) {
    if (layout.kinds[position] != kText) return;
    for (const std::string field : {"5", "#TRUE#", "", "bare text", "\"a,b\""}) {
      EXPECT_EQ(Summary(FileWith(layout, position, field)), "2 records") << field;
    }
  });
}

TEST(ScreenFileReader, RefusesANumberOutOfRangeInEveryPosition) {
  const std::vector<std::pair<Kind, std::vector<std::string>>> cases = {
      {kByte, {"256", "-1", "255.5", "1E99", "99999999999999999999"}},
      {kInteger, {"32768", "-32769", "65535", "1E99"}},
      {kLong, {"2147483648", "-2147483649", "4294967295", "1E999"}},
      {kSingle, {"3.5E38", "-3.5E38", "1E999"}}};
  ForEveryField([&](const Layout& layout, std::size_t position) {
    for (const auto& [kind, fields] : cases) {
      if (kind != layout.kinds[position]) continue;
      for (const std::string& field : fields) {
        EXPECT_EQ(Summary(FileWith(layout, position, field)), "1 records, error 6") << field;
      }
    }
  });
}

TEST(ScreenFileReader, TakesTheLimitsOfEachRange) {
  const std::vector<std::pair<Kind, std::vector<std::string>>> cases = {
      {kByte, {"0", "255"}},
      {kInteger, {"32767", "-32768"}},
      {kLong, {"2147483647", "-2147483648"}},
      {kSingle, {"3.4E38", "-3.4E38", "0.0000001"}},
      {kBoolean, {"#FALSE#", "#false#", "#True#"}}};
  ForEveryField([&](const Layout& layout, std::size_t position) {
    for (const auto& [kind, fields] : cases) {
      if (kind != layout.kinds[position]) continue;
      for (const std::string& field : fields) {
        EXPECT_EQ(Summary(FileWith(layout, position, field)), "2 records") << field;
      }
    }
  });
}

TEST(ScreenFileReader, RefusesTheEndOfTheFileInsideARecord) {
  ForEveryField([](const Layout& layout, std::size_t position) {
    const std::string mark = "END";
    const std::string file = FileWith(layout, position, mark);
    const std::string cut = file.substr(0, file.rfind(mark));  // ends with the comma before it
    EXPECT_EQ(Summary(cut), "1 records, error 62");
    EXPECT_EQ(Summary(cut.substr(0, cut.size() - 1)), "1 records, error 62");
  });
}

TEST(ScreenFileReader, SaysWhereAndWhyItGaveUp) {
  ScreenFileReader reader("0\r\n\"T\",\"Boiler\",high,0,\"Arial\",8,#TRUE#,#TRUE#,0\r\n");
  reader.ReadColour();
  try {
    reader.Next();
    FAIL();
  } catch (const RunTimeError& error) {
    EXPECT_STREQ(error.what(), "Line 2, the label's Top: \"high\" is no number.");
  }
}

TEST(ScreenFileReader, Takes512LocationsAndRefusesOneMore) {
  std::string text = "0\r\n";
  const std::string line =
      "\"L\",0,3,\"01A0\",0,\"a\",\"b\",0,1,0,0,\"0\",0,600,2400,600,240,\"0\"\r\n";
  for (int i = 0; i < 512; ++i) text += line;
  const std::string label = "\"T\",\"c\",1,1,\"Arial\",8,#TRUE#,#TRUE#,0\r\n";
  EXPECT_EQ(Summary(text + label), "513 records");
  EXPECT_EQ(Summary(text + label + line), "513 records, error 9");
  EXPECT_EQ(Summary(text + "\"M\""), "512 records, error 9");
}

TEST(ScreenFileReader, EndsOnEveryPrefixWithWholeRecordsOrAnError) {
  for (const std::string& sample : {kExample, kModbusExample}) {
    const std::vector<ScreenRecord> whole = Load(sample).records;
    ForEveryPrefix(sample, [&](std::string_view prefix) {
      const Loaded loaded = Load(prefix);
      EXPECT_TRUE(loaded.code == 0 || loaded.code == kTypeMismatch || loaded.code == kPastEndOfFile)
          << loaded.code;
      ASSERT_LE(loaded.records.size(), whole.size());
      // The last record's last field may be cut short and still be one.
      for (std::size_t i = 0; i + 1 < loaded.records.size(); ++i) {
        EXPECT_EQ(loaded.records[i], whole[i]);
      }
      EXPECT_GE(ScreenFileReader::InferProtocol(prefix), 0);
    });
  }
}

TEST(ScreenFileReader, ReadsAnOverLongLineInBoundedTime) {
  constexpr std::size_t kLength = std::size_t{16} << 20;
  const auto many = [](const std::string& piece) {
    std::string text = piece;
    while (text.size() < kLength) text += text;
    return text;
  };
  struct Case {
    std::string text;
    std::string summary;
    int protocol = 0;
  };
  const std::vector<Case> cases = {
      {"0\r\n" + many("x"), "0 records"},
      {"0\r\n" + many(","), "0 records"},
      {"0\r\n" + many(" "), "0 records"},
      {"0\r\n" + many("\""), "0 records"},
      {"0\r\n" + many("\"L\"x"), "0 records, error 62"},
      {many("9"), "0 records, error 6"},
      {many("0"), "0 records"},
      {"0\r\n" + many("\r\n"), "0 records"},
      {Replaced(kExample, "Flow", many("x")), "3 records", 1},
      {Replaced(kExample, "600", many("1")), "0 records, error 6", 1},
      {Replaced(kExample, "600", "0." + many("1")), "3 records", 1},
      {kExample.substr(0, kExample.find("Flow")) + many(",a"), "0 records, error 62"}};
  const auto start = std::chrono::steady_clock::now();
  for (const Case& c : cases) {
    EXPECT_EQ(Summary(c.text), c.summary) << c.text.substr(0, 80);
    EXPECT_EQ(ScreenFileReader::InferProtocol(c.text), c.protocol) << c.text.substr(0, 80);
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
}

TEST(InferProtocol, IsTarnlinkForMemoryLocationsAndLabels) {
  EXPECT_EQ(ScreenFileReader::InferProtocol("0\r\n\"L\",0,3\r\n\"T\",\"a\",1\r\n"), 0);
  EXPECT_EQ(ScreenFileReader::InferProtocol(""), 0);
}

TEST(InferProtocol, GoesByTheLastTag) {
  EXPECT_EQ(ScreenFileReader::InferProtocol(kExample), 1);
  EXPECT_EQ(ScreenFileReader::InferProtocol(kModbusExample), 2);
  EXPECT_EQ(ScreenFileReader::InferProtocol(kExample + kModbusExample), 2);
  EXPECT_EQ(ScreenFileReader::InferProtocol(kModbusExample + kExample), 1);
}

TEST(InferProtocol, TakesAnAliasThatIsExactlyATagForOne) {
  const std::string memory_only = kExample.substr(0, kExample.find("\"I\""));
  EXPECT_EQ(ScreenFileReader::InferProtocol(memory_only), 0);
  EXPECT_EQ(ScreenFileReader::InferProtocol(Replaced(memory_only, "Flow", "M")), 2);
  EXPECT_EQ(ScreenFileReader::InferProtocol(Replaced(memory_only, "Flow", "I")), 1);
  EXPECT_EQ(ScreenFileReader::InferProtocol(Replaced(kModbusExample, "\"&H03\",1", "\"I\",1")), 1);
}

TEST(InferProtocol, LooksAtWholeFieldsInTheirExactCase) {
  const std::string memory_only = kExample.substr(0, kExample.find("\"I\""));
  for (const std::string alias : {"m", "i", "M ", " I", "MI", "a,M,b", "I\"x\""}) {
    const int expected = alias == "I\"x\"" ? 1 : 0;
    EXPECT_EQ(ScreenFileReader::InferProtocol(Replaced(memory_only, "Flow", alias)), expected)
        << alias;
  }
}

TEST(LocationTag, IsChosenBySpecificationAndProtocol) {
  Location location;
  location.Specification = 0;
  EXPECT_EQ(LocationTag(location, false), 'L');
  EXPECT_EQ(LocationTag(location, true), 'L');
  for (const int specification : {1, 2, -1}) {
    location.Specification = specification;
    EXPECT_EQ(LocationTag(location, false), 'I');
    EXPECT_EQ(LocationTag(location, true), 'M');
  }
}

TEST(MakeWordIfBothBytes, MakesAWordOfWhatShowsBothBytes) {
  const auto made = [](std::int32_t storage_type, std::uint8_t select_byte) {
    Location location;
    location.StorageType = storage_type;
    location.SelectByte = select_byte;
    MakeWordIfBothBytes(location);
    return location.StorageType;
  };
  EXPECT_EQ(made(kBit, 2), kUnsignedWord);
  EXPECT_EQ(made(kSignedByte, 2), kUnsignedWord);
  EXPECT_EQ(made(7, 255), kUnsignedWord);
  EXPECT_EQ(made(kSignedWord, 2), kSignedWord);
  EXPECT_EQ(made(kSignedByte, 1), kSignedByte);
  EXPECT_EQ(made(kBit, 0), kBit);
}

}  // namespace
}  // namespace tarnlink
