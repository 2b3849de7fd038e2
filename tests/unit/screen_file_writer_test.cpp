#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "common/text_file.h"
#include "files/screen_file.h"

namespace tarnlink {
namespace {

std::vector<ScreenRecord> ReadAll(std::string_view text) {
  ScreenFileReader reader(text);
  reader.ReadColour();
  std::vector<ScreenRecord> records;
  while (std::optional<ScreenRecord> record = reader.Next()) records.push_back(*std::move(record));
  return records;
}

std::string Written(const ScreenRecord& record) {
  return WriteScreenFile(0, std::vector<ScreenRecord>{record});
}

TEST(WriteScreenFile, WritesOneLineForTheColourAndOneForEachRecord) {
  LocationRecord flow;
  flow.location.Specification = 0;
  flow.location.Address = "01A0";
  flow.location.Alias = "Flow";
  flow.location.ActualVariable = "t_flow";
  flow.location.LogEnable = 1;
  flow.location.ExcelColumn = "0";
  flow.location.Representation = kDecimal;
  flow.value_top = 600;
  flow.value_left = 2400.5F;
  flow.name_top = 600;
  flow.name_left = -0.25F;
  LocationRecord supply = flow;
  supply.tag = kModbusTag;
  supply.location.Specification = 1;
  supply.location.FunctionCode = "&H03";
  supply.location.NumReg = 8;
  supply.location.RegisterFollower = true;
  LocationRecord status = supply;
  status.tag = kIdTag;
  const LabelRecord label = {"Boiler 1", 120, 240, {"Arial", 8.25F, true, false}, 255};
  const std::vector<ScreenRecord> records = {flow, status, supply, label};

  const std::string fields =
      ",3,\"01A0\",0,\"Flow\",\"t_flow\",0,1,0,0,\"0\",0,600,2400.5,600,-0.25,\"0\"";
  EXPECT_EQ(WriteScreenFile(0xFF8080, records),
            "16744576\r\n"
            "\"L\",0" +
                fields +
                "\r\n"
                "\"I\",1" +
                fields +
                ",1,2\r\n"
                "\"M\",1" +
                fields +
                ",1,2,\"&H03\",8,#TRUE#\r\n"
                "\"T\",\"Boiler 1\",120,240,\"Arial\",8.25,#TRUE#,#FALSE#,255\r\n");
}

TEST(WriteScreenFile, WritesOnlyTheColourOfAnEmptyScreen) {
  EXPECT_EQ(WriteScreenFile(kFormBackground, {}), "-2147483633\r\n");
}

TEST(WriteScreenFile, NeverLetsAQuoteOrALineEndIntoAText) {
  LocationRecord record;
  record.location.Alias = " 5\" pipe\r\n";
  record.location.ActualVariable = "\"\"";
  const std::string text = Written(record);
  EXPECT_NE(text.find("\" 5  pipe  \",\"  \""), std::string::npos) << text;
  const auto read = std::get<LocationRecord>(ReadAll(text).at(0));
  EXPECT_EQ(read.location.Alias, " 5  pipe  ");
  EXPECT_EQ(Written(read), text);
}

TEST(WriteScreenFile, TurnsAnIdRecordIntoAModbusRecordAndBack) {
  LocationRecord record;
  record.location.FunctionCode = "&H04";
  record.tag = LocationTag(record.location, true);
  auto read = std::get<LocationRecord>(ReadAll(Written(record)).at(0));
  EXPECT_EQ(read.tag, kModbusTag);
  EXPECT_EQ(read.location.FunctionCode, "&H04");

  read.tag = LocationTag(read.location, false);
  read = std::get<LocationRecord>(ReadAll(Written(read)).at(0));
  EXPECT_EQ(read.tag, kIdTag);
  EXPECT_EQ(read.location.FunctionCode, "&H00");
}

TEST(WriteScreenFile, StoresNoNumbersSoThatTheHoleOfADeletedLocationCloses) {
  std::vector<ScreenRecord> records;
  for (const std::string alias : {"one", "three"}) {
    LocationRecord record;
    record.location.Alias = alias;
    records.emplace_back(record);
  }
  const std::vector<ScreenRecord> read = ReadAll(WriteScreenFile(0, records));
  ASSERT_EQ(read.size(), 2U);
  EXPECT_EQ(std::get<LocationRecord>(read[1]).location.Alias, "three");
}

// Random records whose fields take any value that the format can hold.
class RecordMaker {
 public:
  explicit RecordMaker(unsigned seed) : random_(seed) {}

  std::vector<ScreenRecord> Screen() {
    std::vector<ScreenRecord> records;
    for (auto count = random_() % 20; count > 0; --count) {
      records.push_back(random_() % 4 == 0 ? ScreenRecord(Label()) : ScreenRecord(Place()));
    }
    return records;
  }

  std::int32_t Long() { return static_cast<std::int32_t>(random_()); }

 private:
  LocationRecord Place() {
    LocationRecord record;
    Location& location = record.location;
    record.tag = "LIM"[random_() % 3];
    location.Specification = Long();
    location.StorageType = Long();
    location.Address = FixedAddress(Text());
    location.BitAddress = Byte();
    location.Alias = Text();
    location.ActualVariable = Text();
    location.SpareByte = Byte();
    location.LogEnable = Byte();
    location.ScanFlags = Byte();
    location.DDEEnable = Byte();
    location.ExcelColumn = Text();
    location.Representation = Long();
    location.LocSlaveAddress = Text();
    for (float* place :
         {&record.value_top, &record.value_left, &record.name_top, &record.name_left}) {
      *place = Single();
    }
    if (record.tag == kMemoryTag) return record;
    location.Class = Byte();
    location.SelectByte = Byte();
    if (record.tag == kIdTag) return record;
    location.FunctionCode = Text();
    location.NumReg = static_cast<std::int16_t>(random_());
    location.RegisterFollower = Flag();
    return record;
  }

  LabelRecord Label() {
    return {Text(), Single(), Single(), {Text(), Single(), Flag(), Flag()}, Long()};
  }

  std::uint8_t Byte() { return static_cast<std::uint8_t>(random_()); }
  bool Flag() { return random_() % 2 == 0; }

  float Single() {
    const auto bits = static_cast<std::uint32_t>(random_());
    float number = 0;
    std::memcpy(&number, &bits, sizeof number);
    return std::isfinite(number) ? number : 240.0F;
  }

  std::string Text() {
    static const std::vector<std::string> kPieces = {"a",        "M",
                                                     "I",        "1",
                                                     "0x",       ",",
                                                     ", ",       " ",
                                                     "#TRUE#",   "'",
                                                     "\t",       "T",
                                                     "L",        std::string(1, '\0'),
                                                     "\xC2\xB0", "\xE2\x82\xAC",
                                                     "\xCE\xA9", "\xC3\x83",
                                                     ";",        "\\",
                                                     "\xC2\xA9"};
    std::string text;
    for (auto n = random_() % 5; n > 0; --n) text += kPieces[random_() % kPieces.size()];
    return text;
  }

  std::mt19937 random_;
};

TEST(ScreenFile, ComesBackTheSameAfterSaveReadAndSave) {
  for (unsigned seed = 1; seed <= 500; ++seed) {
    RecordMaker maker(seed);
    const Colour colour = maker.Long();
    const std::vector<ScreenRecord> records = maker.Screen();
    const std::string text = WriteScreenFile(colour, records);
    const std::string loaded = DecodeText(EncodeText(text));
    ASSERT_EQ(loaded, text) << seed;
    ASSERT_EQ(ScreenFileReader(loaded).ReadColour(), colour) << seed;
    const std::vector<ScreenRecord> read = ReadAll(loaded);
    ASSERT_EQ(read, records) << seed;
    ASSERT_EQ(WriteScreenFile(colour, read), text) << seed;
  }
}

}  // namespace
}  // namespace tarnlink
