// The samples' ID and error files against the boiler that they belong to and the screens beside
// them.

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <utility>

#include "files/error_texts.h"
#include "files/id_file.h"
#include "files/screen_file.h"
#include "simulator/data_ids.h"
#include "simulator/modbus_registers.h"
#include "support/samples.h"

namespace tarnlink {
namespace {

constexpr const char* kZoltNames = "default.ids";
constexpr const char* kModbusNames = "MBID.ids";

class SampleNames : public testing::Test {
 protected:
  static std::vector<IDItem> Items(const char* file) { return ReadIdFile(SampleText(file)).items; }

  // How many Locations of the screen bear a name of the file; each must be what the name stands
  // for.
  static int CheckScreen(const char* screen, const char* file) {
    const std::vector<IDItem> items = Items(file);
    const std::string text = SampleText(screen);
    ScreenFileReader reader(text);
    reader.ReadColour();
    int checked = 0;
    while (const std::optional<ScreenRecord> record = reader.Next()) {
      const auto* location_record = std::get_if<LocationRecord>(&*record);
      if (location_record == nullptr || location_record->tag == kMemoryTag) continue;
      const Location& location = location_record->location;
      const auto item = std::find_if(items.begin(), items.end(), [&](const IDItem& one) {
        return one.Name == location.ActualVariable;
      });
      if (item == items.end()) {
        EXPECT_EQ(location.ActualVariable, "none");
        continue;
      }
      SCOPED_TRACE(item->Name);
      EXPECT_EQ(item->ID, std::stoi(location.Address, nullptr, 16));
      EXPECT_EQ(item->ByteSelect, location.SelectByte);
      EXPECT_TRUE(item->Class == 0 || item->Class == location.Class);
      ++checked;
    }
    return checked;
  }
};

TEST_F(SampleNames, AreThoseOfTheBoilersDataIds) {
  std::set<std::pair<int, int>> named;
  for (const IDItem& item : Items(kZoltNames)) {
    EXPECT_NE(boiler::FindDataId(item.Class, static_cast<std::uint16_t>(item.ID)), nullptr)
        << item.Name;
    EXPECT_LE(item.ID, 0xFFFF) << item.Name;
    named.emplace(item.Class, item.ID);
  }
  for (const boiler::DataId& id : boiler::DataIds()) {
    EXPECT_TRUE(named.contains({id.data_class, id.id})) << id.name << " has no name";
  }
}

TEST_F(SampleNames, AreThoseOfTheBoilersRegisters) {
  std::set<std::pair<int, std::string>> expected;
  for (const boiler::ModbusRegister& one : boiler::ModbusRegisters()) {
    expected.emplace(one.number, one.item);
    if (!one.high_item.empty()) expected.emplace(one.number, one.high_item);
  }
  std::set<std::pair<int, std::string>> named;
  for (const IDItem& item : Items(kModbusNames)) {
    EXPECT_EQ(item.Class, 0) << item.Name;
    named.emplace(item.ID, item.Name);
  }
  EXPECT_EQ(named, expected);
}

TEST_F(SampleNames, SayWhichByteOfARegisterIsWhich) {
  const std::vector<IDItem> items = Items(kModbusNames);
  for (const boiler::ModbusRegister& one : boiler::ModbusRegisters()) {
    if (one.high_item.empty()) continue;
    for (const IDItem& item : items) {
      if (item.ID != one.number) continue;
      EXPECT_EQ(item.ByteSelect, item.Name == one.high_item ? kMsb : kLsb) << item.Name;
    }
  }
}

TEST_F(SampleNames, AreGivenOnceEach) {
  for (const char* file : {kZoltNames, kModbusNames}) {
    std::set<std::string> names;
    for (const IDItem& item : Items(file)) EXPECT_TRUE(names.insert(item.Name).second) << item.Name;
    EXPECT_GT(names.size(), 60U);
  }
}

TEST_F(SampleNames, StandForWhatTheSampleScreensShowUnderThem) {
  EXPECT_EQ(CheckScreen("zolt.wcr", kZoltNames), 22);
  EXPECT_EQ(CheckScreen("modbus.wcr", kModbusNames), 18);
}

TEST_F(SampleNames, ComeWithTheRevisionOfTheirFile) {
  EXPECT_EQ(ReadIdFile(SampleText(kZoltNames)).IDRevision, "Gas boiler, ZOLT, 3.7");
  EXPECT_EQ(ReadIdFile(SampleText(kModbusNames)).IDRevision, "Gas boiler, Modbus, 3.7");
}

TEST(SampleErrors, HaveATextForEachCodeThatTheBoilerGivesByItself) {
  const ErrorTexts zolt = ReadErrorFile(SampleText("default.erc")).texts;
  for (std::size_t code = 0; code <= 30; ++code) EXPECT_NE(zolt[code], "") << code;
  EXPECT_EQ(zolt[4], "No flame after the last ignition");
  EXPECT_EQ(ReadErrorFile(SampleText("MBID.erc")).texts, zolt);
}

}  // namespace
}  // namespace tarnlink
