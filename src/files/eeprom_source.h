// The EEPROM definition file, extension ".def": the image of a slave's EEPROM in blocks of sixteen
// bytes, of which the last two are the check of the others. The format is told in
// docs/formats/def.md.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarnlink {

inline constexpr int kEepromBlock = 16;
inline constexpr int kEepromBlockData = 14;

struct EepromRecord {
  std::string HexValue;       // as it stands in the file; of a check byte two digits
  std::uint8_t DecValue = 0;  // the same
  std::string Address;        // "0X8012"
  std::string Comment;

  bool operator==(const EepromRecord&) const = default;
};

using EepromBlock = std::array<EepromRecord, kEepromBlock>;

struct EepromSource {
  std::vector<std::string> preamble;  // with the line "START", which may be missing
  std::vector<EepromBlock> blocks;    // their check bytes are computed, whatever the file says
};

// What stands in front of the record at fault when its two values differ.
inline constexpr std::string_view kValueError = "Value Error in EEPROM source file on line : ";

// Throws RunTimeError 13 for a record whose values differ, 62 for a block that is too short, and 13
// for any other line that is none; the reason is what the user reads.
EepromSource ReadEepromSource(std::string_view text);

// The check of a block's data. Of its four digits the last two are stored first.
std::uint16_t EepromCheck(const std::array<std::uint8_t, kEepromBlock>& block);

// Where the record's byte lies. Throws RunTimeError 13 for an address that is not in the form
// "0X8012".
std::uint16_t AddressOf(const EepromRecord& record);

// The text of a file that holds `bytes` from `first` on.
std::string EepromDefText(std::uint16_t first, const std::vector<std::uint8_t>& bytes);

}  // namespace tarnlink
