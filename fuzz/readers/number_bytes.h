// Numbers of many bytes out of an input.
#pragma once

#include <bit>
#include <cstdint>

#include "fuzz/fuzz_input.h"

namespace tarnlink {

inline std::uint32_t DoubleWord(FuzzInput& bytes) {
  const std::uint32_t low = bytes.Word();
  return low | static_cast<std::uint32_t>(bytes.Word()) << 16;
}

inline std::int32_t Whole32(FuzzInput& bytes) {
  return static_cast<std::int32_t>(DoubleWord(bytes));
}

inline std::int64_t Whole64(FuzzInput& bytes) {
  const std::uint64_t low = DoubleWord(bytes);
  return static_cast<std::int64_t>(low | static_cast<std::uint64_t>(DoubleWord(bytes)) << 32);
}

// Whatever a file may hold: not a number and endless ones among them.
inline double AnyDouble(FuzzInput& bytes) { return std::bit_cast<double>(Whole64(bytes)); }
inline float AnySingle(FuzzInput& bytes) { return std::bit_cast<float>(DoubleWord(bytes)); }

}  // namespace tarnlink
