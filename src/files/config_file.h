// The configuration default file, extension ".cfg": the limits and defaults that a controller's
// parameters are to have. The format is told in docs/formats/cfg.md.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "files/bad_line.h"

namespace tarnlink {

inline constexpr int kMostConfigItems = 301;

struct ConfigItem {
  // What `Result` is before there is one: the two columns of a check, both empty.
  static constexpr const char* kNoResult = "\t\t";
  // The default of an item that has none.
  static constexpr const char* kNoDefault = "-";

  std::int32_t ID = 0;  // 0 to FFFF
  std::uint8_t Minimum = 0;
  std::uint8_t Maximum = 0;
  std::uint8_t DefaultValue = 0;
  std::string DefaultText = kNoDefault;  // as it stands in the file
  std::string Description;
  std::uint8_t TestType = 0;
  std::optional<std::uint8_t> ReadValue;  // that the slave gave first
  std::string Result = kNoResult;

  bool HasDefault() const { return DefaultText != kNoDefault; }

  bool operator==(const ConfigItem&) const = default;
};

struct ConfigFile {
  std::vector<ConfigItem> items;
  std::optional<BadLine> failure;   // the first line that could not be read
  std::optional<BadLine> too_many;  // the first one that there was no room for
  int left_out = 0;                 // lines that made no item, whatever was wrong with them
};

ConfigFile ReadConfigFile(std::string_view text);

}  // namespace tarnlink
