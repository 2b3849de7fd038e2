// Every input that the fuzzer has kept, and every one that once broke something, goes through its
// target again: fuzz/corpus holds a packed file a target, fuzz/found a file an input.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "fuzz/claim.h"
#include "fuzz/corpus_pack.h"
#include "fuzz/target.h"

namespace tarnlink {
namespace {

namespace fs = std::filesystem;

const fs::path kCorpus = TARNLINK_FUZZ_FOLDER "/corpus";
const fs::path kFound = TARNLINK_FUZZ_FOLDER "/found";

std::string BytesOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void Replay(const FuzzTarget& target, const std::string& input, const std::string& which) {
  try {
    // A copy of its exact size, so that a sanitizer sees a read past its end.
    const std::vector<char> bytes(input.begin(), input.end());
    target.run({bytes.data(), bytes.size()});
  } catch (const BrokenClaim& claim) {
    ADD_FAILURE() << which << ": " << claim.what();
  }
}

class ReplayTest : public testing::TestWithParam<FuzzTarget> {};

TEST_P(ReplayTest, TakesItsSeedsAndWhateverIsEmpty) {
  Replay(GetParam(), "", "the empty input");
  const auto seeds = GetParam().seeds();
  EXPECT_FALSE(seeds.empty());
  for (std::size_t i = 0; i < seeds.size(); ++i) {
    Replay(GetParam(), seeds[i], "seed " + std::to_string(i));
  }
}

TEST_P(ReplayTest, TakesTheKeptInputs) {
  const auto inputs = UnpackCorpus(BytesOf(kCorpus / (GetParam().name + ".pack")));
  EXPECT_FALSE(inputs.empty()) << "no inputs are kept";
  for (std::size_t i = 0; i < inputs.size(); ++i) {
    Replay(GetParam(), inputs[i], "kept input " + std::to_string(i));
  }
}

TEST_P(ReplayTest, TakesWhatOnceBroke) {
  const fs::path folder = kFound / GetParam().name;
  if (!fs::exists(folder)) return;
  for (const auto& entry : fs::directory_iterator(folder)) {
    Replay(GetParam(), BytesOf(entry.path()), entry.path().filename().string());
  }
}

INSTANTIATE_TEST_SUITE_P(All, ReplayTest, testing::ValuesIn(AllFuzzTargets()),
                         [](const auto& each) { return each.param.name; });

TEST(FuzzFolder, HasNothingOfATargetThatDoesNotExist) {
  std::set<std::string> names;
  for (const FuzzTarget& target : AllFuzzTargets()) {
    EXPECT_TRUE(names.insert(target.name).second) << target.name << " is there twice";
  }
  for (const fs::path& folder : {kCorpus, kFound}) {
    if (!fs::exists(folder)) continue;
    for (const auto& entry : fs::directory_iterator(folder)) {
      EXPECT_TRUE(names.count(entry.path().stem().string())) << entry.path();
    }
  }
}

TEST(CorpusPack, IsTakenApartWithoutWhatIsCutOff) {
  using namespace std::string_literals;
  const std::string packed = "\2\0\0\0ab\0\0\0\0\1\0\0\0c"s;
  EXPECT_EQ(UnpackCorpus(packed), (std::vector<std::string>{"ab", "", "c"}));
  EXPECT_EQ(UnpackCorpus(packed.substr(0, packed.size() - 1)),
            (std::vector<std::string>{"ab", ""}));
  EXPECT_EQ(UnpackCorpus("\xff\xff\xff\xff"s), (std::vector<std::string>{}));
}

}  // namespace
}  // namespace tarnlink
