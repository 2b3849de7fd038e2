// What the program under test holds of the heap, counted by a library that is loaded in front of
// the system's own and kept in a file that the test maps too.
#pragma once

#include <atomic>
#include <cstdint>

namespace e2e {

struct HeapCount {
  std::atomic<std::int64_t> blocks;
  std::atomic<std::int64_t> bytes;
};

// The variable of the environment that names the file.
inline constexpr const char* kHeapFile = "TARNLINK_HEAP_FILE";

}  // namespace e2e
