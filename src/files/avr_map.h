// The map file that the AVR linker writes: its variables with their addresses.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/text_file.h"

namespace tarnlink {

// More of them end the reading.
inline constexpr int kMostMapVariables = 1'001;

struct MapVariable {
  std::string Name;
  std::string address;           // four hexadecimal digits in capitals, the first one "F"
  std::int16_t StorageType = 0;  // as that of a Location
  std::int16_t Size = 0;         // bytes up to the next variable

  bool operator==(const MapVariable&) const = default;
};

struct AvrMap {
  std::vector<MapVariable> variables;  // by address
  bool has_entry_list = false;
  bool is_cut = false;    // it held more than kMostMapVariables
  int skipped_lines = 0;  // lines of data that name no variable of the controller's memory
};

// Reads a map that comes in pieces. `MicroType` 0 takes the window of an ATMega's memory, any other
// one that of an XMega, which is told by the addresses that its slaves know: F100 and up.
class AvrMapReader {
 public:
  explicit AvrMapReader(std::int16_t MicroType) : micro_type_(MicroType) {}

  // False once nothing more is to be had.
  bool Take(std::string_view piece);
  // `is_whole` false leaves out the line in which a failed reading broke off.
  AvrMap Finish(bool is_whole = true);

 private:
  void TakeLine(std::string_view line);
  void TakeData(std::string_view line);

  std::int16_t micro_type_;
  PieceLines lines_;
  AvrMap map_;
  bool in_entries_ = false;
};

// Cuts blanks at both ends and makes one of every row of blanks. `Line` is changed as well.
std::string SqueezeBlanks(std::string& Line);

// Sorts by the text of `address`, by quicksort; of two entries with one address the order is what
// this makes of it. A `Last` of 0 means all of them.
void SortMapVariables(std::vector<MapVariable>& List, int First, int Last);

// The bytes from variable `Index` to the next one; 1 for the last.
std::int16_t GetElementSize(const std::vector<MapVariable>& list, int Index);

// The address of a variable, or of an element of it: "table+3" is its fourth, of two bytes each if
// `StorageType` is a word. Empty if there is no such variable. An element that would lie beyond the
// top of the memory has the address of its variable.
std::string GetVyroLstByteAddress(const std::vector<MapVariable>& list, std::string_view Label,
                                  std::int32_t StorageType);

}  // namespace tarnlink
