// The parameter file, extension ".par": values to be written into a controller, a line each. The
// format is told in docs/formats/par.md.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "files/bad_line.h"

namespace tarnlink {

inline constexpr int kMemoryParameterClass = 7;  // whose ID is an address
inline constexpr int kHighestParameterClass = 7;
// As many as the writer can count.
inline constexpr int kMostParameters = 32'767;

struct ParameterItem {
  std::int32_t Class = 0;
  std::int32_t ID = 0;
  std::int32_t Value = 0;

  bool operator==(const ParameterItem&) const = default;
};

struct ParsedParameter {
  ParameterItem item;  // as far as it could be read
  bool Ok = false;
  std::string reason;  // one plain sentence, if it is not
};

// A line that is no comment.
ParsedParameter ParseLine(std::string_view Line);

struct ParameterFile {
  std::vector<ParameterItem> items;
  std::vector<std::string> comments;
  int count = 0;                   // of the lines that are no comment, a bad one too
  std::optional<BadLine> failure;  // with which the reading ended; there are no items then
};

ParameterFile ReadParameterFile(std::string_view text);

// --- Lines to be written, each with its end ---

// Ends of lines inside the text are blanks.
std::string ParameterComment(std::string_view text);

// "5 &H0123 &H2A". `Address` is four hexadecimal digits.
std::string ParameterLine(std::int32_t Class, std::string_view Address, std::int64_t Value);

}  // namespace tarnlink
