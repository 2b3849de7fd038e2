// How long bytes take on the line.
#pragma once

#include <cstddef>
#include <cstdint>

namespace boiler {

struct Pace {
  int baud = 0;            // 0: at once
  int bits_per_byte = 10;  // start, 8 data, stop; 11 with a parity bit or a second stop bit

  // For so many bytes in a row, rounded down to a microsecond.
  std::int64_t TimeOf(std::size_t bytes) const {
    if (baud == 0) return 0;
    return static_cast<std::int64_t>(bytes) * bits_per_byte * 1'000'000 / baud;
  }
};

}  // namespace boiler
