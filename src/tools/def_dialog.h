// What the file dialogs for EEPROM definition files have in common.
#pragma once

#include <optional>
#include <string>

#include "common/paths.h"

namespace tarnlink {

// The name that they open with.
inline constexpr const char* kAnyDef = "*.def";

// Neither cancelled nor left as it opened.
inline bool IsChosen(const std::optional<std::string>& path) {
  return path && !path->empty() && StripFileFromPath(*path) != kAnyDef;
}

}  // namespace tarnlink
