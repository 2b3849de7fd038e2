// Every frame that a dialog can send, byte by byte: each storage type, selected byte and
// specification under each protocol, and texts that are no proper numbers.

#include <array>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "form/user_writes.h"
#include "form/write_fixture.h"
#include "simulator/bytes.h"
#include "simulator/tarnlink_frames.h"
#include "simulator/zolt_frames.h"

namespace tarnlink {
namespace {

// --- Every kind of Location ----------------------------------------------------------------------

// A protocol, and under Modbus the function.
enum class Way { kTarnlink, kZolt, kModbusOne, kModbusSeveral };
constexpr std::array kWays = {Way::kTarnlink, Way::kZolt, Way::kModbusOne, Way::kModbusSeveral};
constexpr std::string_view kWayNames[] = {"TarnLink", "Zolt", "Modbus_6", "Modbus_16"};

int ProtocolOf(Way way) {
  if (way == Way::kTarnlink) return kTarnlinkProtocol;
  return way == Way::kZolt ? kZoltProtocol : kModbusProtocol;
}

// Type and digits, the CRC among them; a word of memory goes out in two.
struct ZoltFrames {
  int type;
  std::string first;
  std::string second = {};
};

struct LocationKind {
  std::int32_t storage;
  SelectByte select;
  std::int32_t specification;
};

struct Frames {
  std::string tarnlink;
  ZoltFrames zolt;
  std::string modbus;
};

// The value is 12AB, the bit number 3 of a byte that has been read as 55.
const std::string kTarnByte = "04 06 46 34 31 30 41 42 36 34 03";
const std::string kTarnWord = "04 06 46 34 31 30 31 32 41 42 43 37 03";
const std::string kTarnBit = "04 06 46 34 31 30 35 44 35 41 03";

// Address F410, and data ID 056D of class 5.
const ZoltFrames kMemoryByte = {0x87, "0FCFD10ABC9A5"};
const ZoltFrames kMemoryWord = {0x87, "0FCFD10ABC9A5", "0FCFD1112885B"};
const ZoltFrames kMemoryBit = {0x87, "0FCFD105D6DFE"};
const ZoltFrames kIdHigh = {0x85, "0056DAB00D690"};
const ZoltFrames kIdLow = {0x85, "0056D00AB3184"};
const ZoltFrames kIdWord = {0x85, "0056D12AB2950"};
const ZoltFrames kIdHighBit = {0x85, "0056D5D00ECB4"};
const ZoltFrames kIdLowBit = {0x85, "0056D005D95DF"};
const ZoltFrames kIdShortBit = {0x85, "0056D5DDF72"};  // two digits short

// Register 0200 of slave 1.
const std::string kHighByte = "01 06 02 00 AB 00 F7 42";
const std::string kLowByte = "01 06 02 00 00 AB C9 CD";
const std::string kWord = "01 06 02 00 12 AB C5 6D";
const std::string kHighBit = "01 06 02 00 5D 00 B0 E2";
const std::string kLowBit = "01 06 02 00 00 5D 49 8B";
const std::string kRegisters = "01 10 02 00 00 02 04 12 AB 00 07 DF 95";

Frames ExpectedOf(const LocationKind& kind) {
  struct Row {
    std::int32_t first_storage;  // to the last one that has the same frames
    std::int32_t last_storage;
    SelectByte select;
    std::int32_t specification;
    Frames frames;
  };
  static const std::vector<Row> rows = {
      {kBit, kBit, kMsb, 0, {kTarnBit, kMemoryBit, kHighBit}},
      {kBit, kBit, kLsb, 0, {kTarnBit, kMemoryBit, kLowBit}},
      {kBit, kBit, kBoth, 0, {kTarnBit, kMemoryBit, kLowBit}},
      {kBit, kBit, kMsb, 1, {kTarnBit, kIdHighBit, kHighBit}},
      {kBit, kBit, kLsb, 1, {kTarnBit, kIdLowBit, kLowBit}},
      {kBit, kBit, kBoth, 1, {kTarnBit, kIdShortBit, kLowBit}},
      {kUnsignedByte, kSignedByte, kMsb, 0, {kTarnByte, kMemoryByte, kHighByte}},
      {kUnsignedByte, kSignedByte, kLsb, 0, {kTarnByte, kMemoryByte, kLowByte}},
      {kUnsignedByte, kSignedByte, kBoth, 0, {kTarnByte, kMemoryByte, kLowByte}},
      {kUnsignedByte, kSignedByte, kMsb, 1, {kTarnByte, kIdHigh, kHighByte}},
      {kUnsignedByte, kSignedByte, kLsb, 1, {kTarnByte, kIdLow, kLowByte}},
      {kUnsignedByte, kSignedByte, kBoth, 1, {kTarnWord, kIdWord, kWord}},
      {kUnsignedWord, kSignedWord, kMsb, 0, {kTarnWord, kMemoryWord, kHighByte}},
      {kUnsignedWord, kSignedWord, kLsb, 0, {kTarnWord, kMemoryWord, kLowByte}},
      {kUnsignedWord, kSignedWord, kBoth, 0, {kTarnWord, kMemoryWord, kWord}},
      {kUnsignedWord, kSignedWord, kMsb, 1, {kTarnByte, kIdHigh, kHighByte}},
      {kUnsignedWord, kSignedWord, kLsb, 1, {kTarnByte, kIdLow, kLowByte}},
      {kUnsignedWord, kSignedWord, kBoth, 1, {kTarnWord, kIdWord, kWord}},
  };
  for (const Row& row : rows) {
    if (row.first_storage <= kind.storage && kind.storage <= row.last_storage &&
        row.select == kind.select && row.specification == kind.specification) {
      return row.frames;
    }
  }
  ADD_FAILURE() << "No row for this kind.";
  return {};
}

using KindAndWay = std::tuple<std::int32_t, SelectByte, std::int32_t, Way>;

class EveryKindWritten : public WriteTest, public ::testing::WithParamInterface<KindAndWay> {
 protected:
  EveryKindWritten() : WriteTest(ProtocolOf(std::get<Way>(GetParam()))) {}

  Location Target() const {
    Location location = RegisterAt("0200");
    if (way() == Way::kTarnlink) location = ByteAt("F410");
    if (way() == Way::kZolt) {
      location = kind().specification == 0 ? ByteAt("F410") : IdAt("056D", "0", 5);
    }
    location.StorageType = kind().storage;
    location.SelectByte = kind().select;
    location.Specification = kind().specification;
    location.BitAddress = 3;
    return location;
  }

  void WriteIt() {
    if (kind().storage == kBit) {
      // Of an earlier block; a bit is one register all the same.
      if (way() == Way::kModbusSeveral) dialog().Option1.Choose(kMultipleWrite);
      monitor.main.Locations[1].RawValue = 0x55;
      return WriteBit(1, true);
    }
    if (way() == Way::kModbusSeveral) return WriteBlock(1, {0x12AB, 7});
    Write(1, "3412ab");
  }

  std::string Expected() const {
    const Frames frames = ExpectedOf(kind());
    if (way() == Way::kTarnlink) return SentLine(38, Bytes(frames.tarnlink));
    if (way() == Way::kZolt) {
      const auto& [type, first, second] = frames.zolt;
      return At(type, first, 38) + (second.empty() ? "" : At(type, second, 43));
    }
    const bool is_block = way() == Way::kModbusSeveral && kind().storage != kBit;
    return SentLine(38, Bytes(is_block ? kRegisters : frames.modbus));
  }

 private:
  Way way() const { return std::get<Way>(GetParam()); }
  LocationKind kind() const {
    const auto& [storage, select, specification, way] = GetParam();
    return {storage, select, specification};
  }
};

TEST_P(EveryKindWritten, GoesOutInItsFrame) {
  Run({Target()});
  // A screen makes a word of the whole of a data ID; the frame goes by the record.
  monitor.main.Locations[1] = Target();
  WriteIt();
  Advance(8);  // a second half goes out with the answer to the first
  EXPECT_EQ(Sent(), Expected());
}

std::string NameOfKind(const ::testing::TestParamInfo<KindAndWay>& info) {
  constexpr std::string_view kStorages[] = {"Bit", "UnsignedByte", "SignedByte", "UnsignedWord",
                                            "SignedWord"};
  constexpr std::string_view kSelects[] = {"High", "Low", "Both"};
  const auto& [storage, select, specification, way] = info.param;
  std::string name(kStorages[storage]);
  name.append("_").append(kSelects[select]).append(specification == 0 ? "_Memory_" : "_Id_");
  return name.append(kWayNames[static_cast<std::size_t>(way)]);
}

INSTANTIATE_TEST_SUITE_P(Each, EveryKindWritten,
                         ::testing::Combine(::testing::Range<std::int32_t>(kBit, kSignedWord + 1),
                                            ::testing::Values(kMsb, kLsb, kBoth),
                                            ::testing::Values(0, 1), ::testing::ValuesIn(kWays)),
                         NameOfKind);

// --- Texts that are no proper numbers ------------------------------------------------------------

struct TextCase {
  const char* name;
  int format;
  const char* text;
  // The digits that go out; of text that is not hexadecimal a register gets the number before it.
  const char* byte;
  const char* word;
  const char* register_byte;
  const char* register_word;
};

const TextCase kTexts[] = {
    {"NoNumber", kDecimal, "two", "00", "0000", "00", "0000"},
    {"Negative", kDecimal, "-1", "FF", "FFFF", "FF", "FFFF"},
    {"NegativeBeyondAByte", kDecimal, "-129", "7F", "FF7F", "7F", "FF7F"},
    {"NegativeBeyondAWord", kDecimal, "-32769", "FF", "7FFF", "FF", "7FFF"},
    {"TooLongForAByte", kDecimal, "300", "2C", "012C", "2C", "012C"},
    {"TooLongForAWord", kDecimal, "999999", "3F", "423F", "3F", "423F"},
    {"NumberWithTextBehind", kDecimal, "18x", "12", "0012", "12", "0012"},
    {"PrefixOfHexadecimal", kDecimal, "&H1F", "1F", "001F", "1F", "001F"},
    {"LongHexadecimal", kHexadecimal, "123456", "56", "3456", "56", "3456"},
    {"OtherLetters", kHexadecimal, "12x4", "X4", "12X4", "00", "1200"},
    {"OtherLettersBehind", kHexadecimal, "a4xy", "XY", "A4XY", "00", "A400"},
    {"OneOtherLetter", kHexadecimal, "g", "0G", "000G", "00", "0000"},
    {"MinusInHexadecimal", kHexadecimal, "-1", "-1", "00-1", "00", "0000"},
    {"Binary", kBinary, "101", "00", "0000", "00", "0000"},
    {"Octal", kOctal, "17", "00", "0000", "00", "0000"},
    {"NothingBesideANumber", kDecimal, "", "00", "0000", "00", "0000"},
    {"NothingBesideANumberInHexadecimal", kHexadecimal, "", "00", "0000", "00", "0000"},
};

class OddTextWritten : public ::testing::WithParamInterface<TextCase> {
 protected:
  // An empty text is a cancel unless this is left.
  static void LeaveNumberOfRegisters(frm_WriteValue& dialog) { dialog.Text1.Text = "3"; }
};

class TarnlinkText : public TarnlinkWrite, public OddTextWritten {
 protected:
  static std::string FrameOf(const std::string& digits) {
    const std::string body = "\x06" + std::string("F410") + digits;
    return "\x04" + body + UnpaddedSum(body) + "\x03";
  }
  static std::string UnpaddedSum(std::string_view body) {
    const unsigned sum = boiler::TarnlinkSum(body);
    return boiler::HexDigits(sum, sum < 0x10 ? 1 : 2);
  }
  void ExpectFrame(const Location& location, const std::string& digits) {
    Run({location});
    LeaveNumberOfRegisters(dialog());
    TypeAndWrite(monitor, 1, GetParam().format, GetParam().text);
    EXPECT_EQ(Sent(), SentLine(38, FrameOf(digits)));
  }
};

TEST_P(TarnlinkText, GoesIntoAByte) { ExpectFrame(ByteAt("F410"), GetParam().byte); }
TEST_P(TarnlinkText, GoesIntoAWord) { ExpectFrame(WordAt("F410"), GetParam().word); }

class ZoltText : public ZoltDialogWrite, public OddTextWritten {
 protected:
  void ExpectFrame(const Location& location, char type, const std::string& id,
                   const std::string& data) {
    Run({location});
    LeaveNumberOfRegisters(dialog());
    TypeAndWrite(monitor, 1, GetParam().format, GetParam().text);
    EXPECT_EQ(Sent(), SentLine(38, boiler::BuildZoltFrame(type, '0', id, data)));
  }
};

TEST_P(ZoltText, GoesIntoAByteOfMemory) {
  ExpectFrame(ByteAt("F410"), '\x87', "FCFD", std::string("10") + GetParam().byte);
}
TEST_P(ZoltText, GoesIntoTheFirstByteOfAWord) {
  ExpectFrame(WordAt("F410"), '\x87', "FCFD", std::string("10") + (GetParam().word + 2));
  EXPECT_EQ(monitor.main.SecondByteValue, std::string(GetParam().word, 2));
}
TEST_P(ZoltText, GoesIntoADataId) {
  ExpectFrame(IdAt("056D", "0", 5), '\x85', "056D", GetParam().word);
}

class ModbusText : public ModbusDialogWrite, public OddTextWritten {
 protected:
  void ExpectFrame(SelectByte select, const std::string& data) {
    Run({Selected(select, RegisterAt("0200"))});
    LeaveNumberOfRegisters(dialog());
    TypeAndWrite(monitor, 1, GetParam().format, GetParam().text);
    EXPECT_EQ(Sent(), SentLine(38, Framed("01 06 02 00 " + data)));
  }
};

TEST_P(ModbusText, GoesIntoAByteOfARegister) {
  ExpectFrame(kMsb, std::string(GetParam().register_byte) + " 00");
}
TEST_P(ModbusText, GoesIntoARegister) { ExpectFrame(kBoth, GetParam().register_word); }

std::string NameOfText(const ::testing::TestParamInfo<TextCase>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(Each, TarnlinkText, ::testing::ValuesIn(kTexts), NameOfText);
INSTANTIATE_TEST_SUITE_P(Each, ZoltText, ::testing::ValuesIn(kTexts), NameOfText);
INSTANTIATE_TEST_SUITE_P(Each, ModbusText, ::testing::ValuesIn(kTexts), NameOfText);

}  // namespace
}  // namespace tarnlink
