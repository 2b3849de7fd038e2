#include "simulator/random.h"

namespace boiler {
namespace {

constexpr std::uint64_t kStep = 0x9E3779B97F4A7C15;

// The finishing steps of the generator known as SplitMix64.
std::uint64_t Finish(std::uint64_t z) {
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EB;
  return z ^ (z >> 31);
}

}  // namespace

std::uint64_t Mix(std::uint64_t seed, std::uint64_t a, std::uint64_t b) {
  return Finish(Finish(Finish(seed + kStep) + a + kStep) + b + kStep);
}

std::uint64_t Random::Next() {
  state_ += kStep;
  return Finish(state_);
}

int Random::Below(int bound) {
  return static_cast<int>(Next() % static_cast<std::uint64_t>(bound));
}

double Random::Unit() { return static_cast<double>(Next() >> 11) * 0x1.0p-53; }

}  // namespace boiler
