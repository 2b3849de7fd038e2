// What lies where in the controller's memory: the one table that the controller fills its memory by
// and that docs/simulator.md shows.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "simulator/boiler_model.h"

namespace boiler {

enum class ItemType { kByte, kSignedByte, kBits, kWord, kSignedWord };

enum class ItemRole {
  kLive,      // shows the boiler; what is written there lasts until the next tenth of a second
  kSetting,   // RAM that the boiler obeys; loaded at power on
  kCommand,   // a value that is not 0 is carried out and goes back to 0
  kConstant,  // set at power on
  kEeprom,    // survives power off; the boiler obeys it where a setting is named
};

struct MemoryItem {
  std::string_view name;
  std::uint16_t address;
  ItemType type;
  ItemRole role;
  int lowest;
  int highest;
  std::string_view meaning;
  int (*live)(const BoilerState&) = nullptr;  // what a live item shows
  int BoilerSettings::*setting = nullptr;     // what the boiler reads from here
  int power_on = 0;                           // of items that are not live
  std::uint16_t stored_at = 0;                // EEPROM cell that power on loads instead; 0 none
};

// The EEPROM area, both ends included: blocks of 16 bytes, 14 of data and a check of them, low byte
// first.
constexpr std::uint16_t kEepromFirst = 0x8000;
constexpr std::uint16_t kEepromLast = 0x83FF;
constexpr int kEepromBlock = 16;
constexpr int kEepromBlockData = 14;

// RAM that nothing but a write changes.
constexpr std::uint16_t kFreeRamFirst = 0xF400;
constexpr std::uint16_t kFreeRamLast = 0xF7FF;

// In the order of addresses.
const std::vector<MemoryItem>& MemoryLayout();

// The item of that name, which must be in the table.
const MemoryItem& Item(std::string_view name);

bool IsWord(ItemType type);
// "byte", "signed byte", "bits", "word", "signed word".
std::string_view TypeName(ItemType type);

}  // namespace boiler
