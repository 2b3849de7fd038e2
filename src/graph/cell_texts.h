// The texts of values in a table, made once for each raw answer.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "graph/graph_attribute.h"

namespace tarnlink {

// A short text with the tab in front of it.
struct CellText {
  static constexpr std::size_t kMost = 15;

  std::array<char, kMost> text{};
  std::uint8_t length = 0;  // 0: none
};

// Which bytes of a raw answer count.
struct RawPart {
  std::int32_t mask = -1;
  int shift = 0;

  std::int32_t Of(std::int32_t raw) const { return (raw & mask) >> shift; }
};

// From raw answers to the texts of one kind of value: which byte counts, and its factor.
class CellTexts {
 public:
  // Texts that have been made. To be copied before many are looked up; valid as long as the others.
  struct Table {
    RawPart part;
    std::span<const CellText> by_number;

    // Null if there is none.
    const CellText* Find(std::int32_t raw) const {
      const std::size_t number = static_cast<std::uint32_t>(part.Of(raw));
      if (number >= by_number.size() || by_number[number].length == 0) return nullptr;
      return &by_number[number];
    }
    bool Holds(const CellText* cell) const {
      return !std::less<>()(cell, by_number.data()) &&
             std::less<>()(cell, by_number.data() + by_number.size());
    }
  };

  // Without a table each text is made anew.
  CellTexts(int stored_as, float factor, std::string decimal_separator, bool has_table);

  Table Made() const { return {part_, table_}; }
  // Without a text if that is too long. Keeps it in the table, if it has a place there.
  CellText Make(std::int32_t raw);
  std::string MakeLong(std::int32_t raw) const;

 private:
  RawPart part_;
  float factor_;
  std::string decimal_separator_;
  std::vector<CellText> table_;  // by number
};

// Those of all lines. Most lines share one with others.
class CellTables {
 public:
  explicit CellTables(std::string decimal_separator)
      : decimal_separator_(std::move(decimal_separator)) {}

  // Stays where it is.
  CellTexts& Of(const GraphAttribute& line);

 private:
  std::string decimal_separator_;
  std::map<std::pair<int, float>, CellTexts> tables_;
};

}  // namespace tarnlink
