// The fuzzer: libFuzzer with one target, named by --target=NAME. Beside libFuzzer's own options:
//   --list             names the targets and ends
//   --seeds=FOLDER     writes the target's seeds into the folder and ends
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>

#include "fuzz/claim.h"
#include "fuzz/target.h"

namespace tarnlink {
namespace {

std::optional<FuzzTarget> chosen_target;

std::optional<std::string> OptionOf(std::string_view argument, std::string_view option) {
  if (argument.substr(0, option.size()) != option) return std::nullopt;
  return std::string(argument.substr(option.size()));
}

void ListTargets() {
  for (const FuzzTarget& target : AllFuzzTargets()) std::puts(target.name.c_str());
}

void WriteSeeds(const std::string& folder) {
  int number = 0;
  for (const std::string& seed : chosen_target->seeds()) {
    std::ofstream file(folder + "/seed" + std::to_string(number++), std::ios::binary);
    file.write(seed.data(), static_cast<std::streamsize>(seed.size()));
    if (!file.flush()) std::exit(1);
  }
}

void Choose(const std::string& name) {
  for (const FuzzTarget& target : AllFuzzTargets()) {
    if (target.name == name) chosen_target = target;
  }
}

void Initialize(int count, char** arguments) {
  // What a fake of the tests complains about is found as well.
  testing::GTEST_FLAG(throw_on_failure) = true;
  std::optional<std::string> seeds;
  for (int i = 1; i < count; ++i) {
    if (const auto name = OptionOf(arguments[i], "--target=")) Choose(*name);
    if (const auto folder = OptionOf(arguments[i], "--seeds=")) seeds = folder;
    if (std::string_view(arguments[i]) == "--list") {
      ListTargets();
      std::exit(0);
    }
  }
  if (!chosen_target) {
    std::fputs("fuzzer: name one of the targets of --list with --target=NAME\n", stderr);
    std::exit(2);
  }
  if (seeds) {
    WriteSeeds(*seeds);
    std::exit(0);
  }
}

void Run(std::string_view input) {
  try {
    chosen_target->run(input);
  } catch (const BrokenClaim& claim) {
    std::fprintf(stderr, "Broken claim: %s\n", claim.what().c_str());
    std::abort();
  }
}

}  // namespace
}  // namespace tarnlink

// No memory outlives a run, so that what one frees has to be kept back until its end only. Where
// memory was asked for takes long to note each time: the replay of an input that breaks tells it.
extern "C" const char* __asan_default_options() {
  return "quarantine_size_mb=8:malloc_context_size=0";
}

extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments) {
  tarnlink::Initialize(*count, *arguments);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tarnlink::Run({reinterpret_cast<const char*>(data), size});
  return 0;
}
