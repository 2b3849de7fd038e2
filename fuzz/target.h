// One thing that takes bytes from outside, as libFuzzer and tests/robustness run it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarnlink {

struct FuzzTarget {
  std::string name;  // small letters, digits and underscores: also the name of its corpus
  // Feeds the bytes in. Whatever they are it returns, in bounded time and memory; what must hold is
  // claimed with `Claim`.
  void (*run)(std::string_view input);
  // Inputs to begin with, such as the samples.
  std::vector<std::string> (*seeds)();
};

// Readers of files, decoders of bytes from the line, and form models.
std::vector<FuzzTarget> ReaderTargets();
std::vector<FuzzTarget> DecoderTargets();
std::vector<FuzzTarget> FormTargets();
std::vector<FuzzTarget> AllFuzzTargets();

}  // namespace tarnlink
