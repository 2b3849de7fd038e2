// The error description file, extension ".erc": the texts of a controller's error codes. The format
// is told in docs/formats/erc.md.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "files/bad_line.h"

namespace tarnlink {

// By error code; a code without a text is empty.
using ErrorTexts = std::array<std::string, 256>;

struct ErrorFile {
  ErrorTexts texts;  // those read before the failure stay
  std::optional<BadLine> failure;
};

ErrorFile ReadErrorFile(std::string_view text);

}  // namespace tarnlink
