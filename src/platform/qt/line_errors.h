// Errors on the line, as the driver of a serial device counts them.
#pragma once

#include <optional>
#include <vector>

namespace tarnlink {

struct LineCounters {
  int frame = 0;
  int overrun = 0;
  int buffer_overrun = 0;

  bool operator==(const LineCounters&) const = default;
};

// Empty where the driver does not count, such as on a pseudo terminal.
std::optional<LineCounters> ReadLineCounters(int handle);

// The CommEvents for what was counted in between, one for each kind.
std::vector<int> LineErrorsBetween(const LineCounters& before, const LineCounters& now);

}  // namespace tarnlink
