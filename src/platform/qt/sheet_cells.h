// The cells of one sheet in memory, packed so that weeks of a run fit.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <variant>
#include <vector>

#include "platform/workbook.h"

namespace tarnlink {

// A text as a cell of an .xlsx file can have it: what XML cannot hold is replaced, and what the
// cell has no room for is cut.
std::string TextForSheet(const std::string& text);

class SheetCells {
 public:
  using Value = std::variant<double, std::string>;

  // Two weeks of 200 Locations at 9600 baud; some 250 MB.
  static constexpr std::size_t kMostCells = 10'000'000;

  explicit SheetCells(std::size_t most_cells = kMostCells) : most_cells_(most_cells) {}

  // False if there is no room for the cell. What XML cannot hold is replaced in a text.
  bool Put(SheetCell cell, const Value& value);

  std::size_t count() const { return count_; }

  // Calls `on_text(cell, text)` or `on_number(cell, number)` for every cell, row by row; inside a
  // row in the order in which they came.
  template <class OnText, class OnNumber>
  void ForEach(const OnText& on_text, const OnNumber& on_number) const {
    for (std::size_t row = 0; row < rows_.size(); ++row) {
      for (const Packed& cell : rows_[row]) {
        const SheetCell place{static_cast<int>(row) + 1, cell.column};
        if (cell.text == kNoText) {
          on_number(place, cell.number);
        } else {
          on_text(place, texts_[cell.text]);
        }
      }
    }
  }

 private:
  static constexpr std::uint32_t kNoText = UINT32_MAX;

  struct Packed {
    double number;
    std::uint32_t text;  // index of a text, or kNoText
    std::uint16_t column;
  };

  std::uint32_t NumberOf(const std::string& text);

  std::size_t most_cells_;
  std::size_t count_ = 0;
  std::vector<std::vector<Packed>> rows_;
  // The same few texts stand in thousands of cells.
  std::unordered_map<std::string, std::uint32_t> text_numbers_;
  std::vector<std::string> texts_;  // as the file is to have them
};

}  // namespace tarnlink
