// How much memory a piece of work takes. The unit replaces the operators new and delete of the
// whole test program by ones that count.
#pragma once

#include <cstddef>

namespace tarnlink {

// Counts from its making on, one at a time: bytes in blocks that the operators gave, as many as the
// heap set aside for them. What exists before does not count, also when it goes.
class MemoryWatch {
 public:
  MemoryWatch();

  // More than at the beginning, at the worst moment up to now; never below 0.
  std::size_t Peak() const;

 private:
  std::size_t before_;
};

// Of all blocks that there are now.
std::size_t HeldMemory();

}  // namespace tarnlink
