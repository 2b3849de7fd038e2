// Chance that a seed repeats, on every machine the same.
#pragma once

#include <cstdint>

namespace boiler {

// A well mixed number of its three inputs: chance that depends on no earlier call.
std::uint64_t Mix(std::uint64_t seed, std::uint64_t a, std::uint64_t b = 0);

// A stream of numbers from a seed.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  std::uint64_t Next();
  // 0 to `bound` - 1; `bound` is at least 1.
  int Below(int bound);
  // 0 up to, not including, 1.
  double Unit();
  char Byte() { return static_cast<char>(Below(256)); }

 private:
  std::uint64_t state_;
};

}  // namespace boiler
