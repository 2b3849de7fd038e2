// What a fuzz target says must hold, whatever the input.
#pragma once

#include <string>
#include <utility>

namespace tarnlink {

// Thrown where a claim does not hold: ends the fuzzer with the input that did it, and fails the
// replay of that input. No exception of the program's own kind, so that nobody handles it.
class BrokenClaim {
 public:
  explicit BrokenClaim(std::string what) : what_(std::move(what)) {}
  const std::string& what() const { return what_; }

 private:
  std::string what_;
};

inline void Claim(bool holds, const char* what) {
  if (!holds) throw BrokenClaim(what);
}

}  // namespace tarnlink
