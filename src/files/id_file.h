// The ID file, extension ".ids": the names of a controller's data IDs. The format is told in
// docs/formats/ids.md.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "files/bad_line.h"

namespace tarnlink {

inline constexpr int kMostIds = 301;

struct IDItem {
  std::string Name;
  std::int32_t ID = 0;
  std::int32_t Class = 0;       // 0 for an ID without a class
  std::int32_t ByteSelect = 0;  // 0 the high byte, 1 the low byte, 2 both

  bool operator==(const IDItem&) const = default;
};

// Either `items` or `failure` is there, never both: a file with one bad line has no names at all.
struct IdFile {
  std::string IDRevision = "Unknown revision";  // as far as the file was read
  std::vector<IDItem> items;
  std::optional<BadLine> failure;
};

IdFile ReadIdFile(std::string_view text);

}  // namespace tarnlink
