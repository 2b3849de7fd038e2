// The items of the sniffer: what each shows of the answers that go by, and where it stands. No
// item ever covers another: each has a cell of its own in a grid that is as wide as its view, so
// only the rows grow, and the view scrolls over them.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "files/sniffer_file.h"
#include "monitor/location_table.h"

namespace tarnlink {

// Items count from 1; 0 belongs to the template of the control arrays.
inline constexpr int kLastItem = kLastLocation;

// A record like those of the screen, with what only the sniffer knows.
struct SniffLocation : Location {
  std::int32_t SnifferType = kSniffBit;

  bool operator==(const SniffLocation&) const = default;
};

// An item that nothing has been given to.
SniffLocation InitialSniffLocation();

using SniffLocations = std::array<SniffLocation, kLastItem + 1>;

// Takes the item's value from an answer, and gives the text that its value box shows.
std::string TakeSniffedValue(SniffLocation& item, std::string_view frame);

// --- Places --------------------------------------------------------------------------------------

// In units of 1440 to the inch: name, ID and value stand side by side in a cell.
inline constexpr float kItemHeight = 300.0F;
inline constexpr float kItemGap = 60.0F;
inline constexpr float kItemNameWidth = 2000.0F;
inline constexpr float kItemIdWidth = 620.0F;
inline constexpr float kItemValueWidth = 2100.0F;  // sixteen binary digits
inline constexpr float kCellGap = 180.0F;          // between two items, and at the edge
inline constexpr float kCellWidth =
    kItemNameWidth + kItemIdWidth + kItemValueWidth + 2 * kItemGap + kCellGap;
inline constexpr float kCellHeight = kItemHeight + kItemGap;

struct ItemPlace {
  float Left = 0.0F;
  float Top = 0.0F;

  bool operator==(const ItemPlace&) const = default;
};

class SnifferLayout {
 public:
  // As many columns as fit beside each other, at least one. The order of the cells stays.
  void SetWidth(float width);

  // The first cell that is free becomes the item's. One that has a cell keeps it.
  void Add(int item);
  void Remove(int item);
  void Clear() { cells_.clear(); }

  // To the cell that is nearest to this place, at most one row below the last item. An item that
  // stands there goes to where this one came from.
  void MoveTo(int item, ItemPlace place);
  // By whole cells; beyond an edge the item stays.
  void Step(int item, int right, int down);

  bool Has(int item) const { return CellOf(item) >= 0; }
  ItemPlace PlaceOf(int item) const;
  int columns() const { return columns_; }
  // Of all rows, for scrolling.
  float Height() const;

 private:
  int CellOf(int item) const;
  int Rows() const;
  void Put(int item, int cell);
  void DropEmptyEnd();

  int columns_ = 1;
  std::vector<int> cells_;  // row by row; 0 for none, and never at the end
};

}  // namespace tarnlink
