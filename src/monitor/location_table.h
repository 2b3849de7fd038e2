// The table of Locations: the memory items and data IDs that a screen shows, with the rules by
// which a raw value becomes the text in a value box.
#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

#include "common/run_time_error.h"
#include "platform/settings_store.h"

namespace tarnlink {

// Indices 1 to 512 are real Locations; 0 belongs to the template of the control arrays.
inline constexpr int kLastLocation = 512;

// Indices of `opt_Protocol`, in the store and everywhere else.
inline constexpr int kTarnlinkProtocol = 0;
inline constexpr int kZoltProtocol = 1;
inline constexpr int kModbusProtocol = 2;
inline constexpr int kProtocolCount = 3;

enum StorageType : std::int32_t {
  kBit = 0,
  kUnsignedByte = 1,
  kSignedByte = 2,
  kUnsignedWord = 3,
  kSignedWord = 4,
};
inline constexpr std::array<std::string_view, 5> kStorageTypeCaptions = {
    "Bit", "Unsigned Byte", "Signed Byte", "Unsigned Word", "Signed Word"};

enum Representation : std::int32_t { kDecimal = 0, kHexadecimal = 1, kBinary = 2, kOctal = 3 };
inline constexpr std::array<std::string_view, 4> kRepresentationCaptions = {
    "Decimal", "Hexadecimal", "Binary", "Octal"};

enum SelectByte : std::uint8_t { kMsb = 0, kLsb = 1, kBoth = 2 };

// Bits of `Location::ScanFlags`.
inline constexpr std::uint8_t kScanningDisabled = 1;
inline constexpr std::uint8_t kContinuousWrite = 2;

struct Location {
  std::int32_t Specification = 1;  // 0: memory location, 1: class and ID
  std::int32_t StorageType = kUnsignedWord;
  std::int32_t Representation = kHexadecimal;
  std::string Address = "0000";  // four upper-case hexadecimal digits, sent as they stand
  std::uint8_t BitAddress = 0;
  std::string Alias = "No name";
  std::string ActualVariable = "Not Assigned";
  std::int32_t RawValue = 0;
  std::uint8_t LogEnable = 0;
  std::uint8_t DDEEnable = 0;
  std::string ExcelColumn = "1";
  std::uint8_t SpareByte = 0;  // kept through load and save, read by nothing
  std::string LocSlaveAddress = "0";
  std::uint8_t ScanFlags = 0;
  std::uint8_t Class = 1;
  std::uint8_t SelectByte = kBoth;
  std::string FunctionCode = "&H00";
  std::int16_t NumReg = 1;
  bool RegisterFollower = false;

  bool operator==(const Location&) const = default;
};

// Exactly four characters: blanks behind a shorter text, a longer one is cut.
std::string FixedAddress(std::string_view text);

// The column of a spreadsheet one step up or down from that of a text.
std::string SteppedColumn(std::string_view column, int step);

class LocationTable {
 public:
  // An index outside 0 to 512 throws RunTimeError 9.
  // A record stays where it is from the first time that it could be changed.
  Location& operator[](int index);
  const Location& operator[](int index) const;

  // Puts every record, 0 to 512, to its defaults. The slave address goes by the stored protocol.
  void InitLocations(const SettingsStore& settings);

 private:
  static std::size_t Checked(int index);

  // Most screens use few: records that nobody could change yet are not there, and are `initial_`.
  Location initial_;
  std::deque<Location> locations_;
};

// Binary text with at least `bits` digits (up to 16). 0 and every negative value give `bits` zeros.
std::string dec2bin(std::int32_t value, std::uint8_t bits);

// Four hexadecimal digits of a typed address, or two when `Length` is 2. Of a longer text the four
// characters from one before the last four are taken, so "12345" gives "1234". Anything that is not
// hexadecimal gives zeros.
std::string FormatHex(std::string_view text, std::int16_t Length);

// Value box text of a memory poll under the TarnLink protocol. `digits` are the hexadecimal digits
// of the response, two for a byte and four for a word. Neither the storage type nor the response is
// checked: a word prints as a signed 16-bit number whatever it stands for.
std::string TarnlinkValueText(std::string_view digits, std::int32_t Representation);

// One decoded answer under the ZOLT protocol and Modbus.
struct DecodedValue {
  std::int32_t RawValue = 0;  // unsigned
  bool is_word = false;
};

// Chooses byte or word of an answer's two data bytes. `is_memory` is a ZOLT Location of
// Specification 0, whose low byte stands at the asked address.
DecodedValue SelectValue(const Location& location, std::uint8_t high, std::uint8_t low,
                         bool is_memory);

// The signed text of an unsigned value. The limits differ on purpose: the byte 0x80 is -128 while
// the word 0x8000 stays 32768.
std::string SignedText(const DecodedValue& value);

// Whether a bit of the value is set; bits beyond a word are not.
bool IsBitSet(std::int32_t value, std::uint8_t bit);

// What the value box of a Bit Location says.
std::string BitText(bool is_set);

// Value box text of a number by the Location's storage type and representation. Whether a bit is to
// be shown in its place is for the protocol to say.
std::string DecodedValueText(const Location& location, const DecodedValue& value);

}  // namespace tarnlink
