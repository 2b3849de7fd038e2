// The counter of the memory that reading a file takes counts indeed.
#include "robustness/memory_watch.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <string>
#include <vector>

#include "robustness/mutation_bench.h"

namespace tarnlink {
namespace {

constexpr std::size_t kMega = std::size_t{1} << 20;
constexpr std::size_t kLittle = 65'536;  // what the heap may set aside beside a block

TEST(MemoryWatch, CountsWhatIsHeldAtTheWorstMoment) {
  const MemoryWatch watch;
  { const std::string large(5 * kMega, 'x'); }
  const std::vector<char> small(kMega);
  EXPECT_GE(watch.Peak(), 5 * kMega);
  EXPECT_LE(watch.Peak(), 5 * kMega + kLittle);
}

TEST(MemoryWatch, AddsWhatIsHeldAtOneTime) {
  const MemoryWatch watch;
  std::vector<std::unique_ptr<char[]>> blocks;
  for (int i = 0; i < 10; ++i) blocks.push_back(std::make_unique<char[]>(kMega));
  EXPECT_GE(watch.Peak(), 10 * kMega);
  EXPECT_LE(watch.Peak(), 10 * kMega + kLittle);
}

TEST(MemoryWatch, DoesNotCountWhatWasThereBefore) {
  auto before = std::make_unique<char[]>(8 * kMega);
  const MemoryWatch watch;
  EXPECT_EQ(watch.Peak(), 0U);
  before.reset();
  const std::vector<char> later(kMega);
  EXPECT_LE(watch.Peak(), kLittle) << "room that was given back counts as well";
}

TEST(MemoryWatch, KnowsEveryKindOfNew) {
  struct alignas(64) Aligned {
    char bytes[kMega];
  };
  const std::size_t before = HeldMemory();
  {
    const MemoryWatch watch;
    const auto one = std::make_unique<Aligned>();
    EXPECT_GE(watch.Peak(), kMega);
    const auto many = std::make_unique<Aligned[]>(3);
    EXPECT_GE(watch.Peak(), 4 * kMega);
    void* const quiet = ::operator new(kMega, std::nothrow);
    EXPECT_GE(watch.Peak(), 5 * kMega);
    ::operator delete(quiet, std::nothrow);
  }
  EXPECT_EQ(HeldMemory(), before) << "what was taken has not all come back";
}

class TwoCommands final : public FileBench {
 public:
  FileOutcome Open(std::string_view bytes) override {
    Run([&] { const std::string first(bytes.size() * kMega, 'x'); });
    Run([&] { const std::string second(kMega, 'x'); });
    return FileOutcome::kLoaded;
  }
};

TEST(FileBench, KeepsTheLargestPeakOfItsCommandsUntilItIsTaken) {
  TwoCommands bench;
  bench.Open("12345");
  EXPECT_GE(bench.TakePeak(), 5 * kMega) << "a smaller one behind it is no reason to forget it";
  bench.Open("");
  const std::size_t peak = bench.TakePeak();
  EXPECT_GE(peak, kMega);
  EXPECT_LE(peak, kMega + kLittle) << "that of the opening before";
}

}  // namespace
}  // namespace tarnlink
