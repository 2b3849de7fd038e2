// Every sample, damaged in every way, opened by the command that opens such a file: it is loaded,
// or loaded in part as told, or refused with the told message, and takes little memory. What of
// these a format allows stands with its bench.
//
// Damaged are all bytes, lines and numbers of a sample, a byte with one of three masks in turn and
// a number by each eighth of the values in turn. Of the 11 to 12 kB of a map, a definition or lines
// of the graph it is every byte of the first 600 and every 7th behind them (2,090 to 2,291), every
// line of the first 60 and every 5th, and every number of the first 60 and every 13th; of the 222
// kB of measurements every byte of the first 400 and every 997th (623), every line of the first 140
// and every 997th, every number of the first 30 and every 4,001st. With TARNLINK_MUTATIONS=all in
// the environment it is every byte, line and number of all but the measurements, with every mask
// and every value, which takes minutes.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iostream>
#include <map>
#include <ostream>
#include <set>

#include "robustness/mutation_bench.h"
#include "robustness/mutation_damage.h"
#include "support/samples.h"

namespace tarnlink {
namespace {

constexpr std::size_t kMega = std::size_t{1} << 20;
constexpr std::size_t kMostMemory = 32 * kMega;
constexpr std::size_t kMostMemoryOfByte = 20;

void ExpectLittleMemory(FileBench& bench, std::size_t file) {
  EXPECT_LE(bench.TakePeak(), kMostMemory + kMostMemoryOfByte * file) << "bytes of memory";
}

constexpr std::array<unsigned char, 3> kMasks = {0x01, 0x80, 0xFF};

// How much of a file is damaged.
struct Extent {
  Places bytes = {};
  Places lines = {};
  Places numbers = {};
};

constexpr Extent kSmall;
constexpr Extent kLarge = {{600, 7}, {60, 5}, {60, 13}};
constexpr Extent kHuge = {{400, 997}, {140, 997}, {30, 4'001}};

// Where the end of a file can be missing and nothing is told, since what is left is a sound file.
enum class Unnoticed {
  kAnywhere,     // a line may have fewer words, or a word fewer letters
  kInLastField,  // every line has all of its fields; and in front of a line, or with its first
                 // letter
  kNowhere,      // how many lines there are is known
};

struct Sample {
  const char* name;
  MakeFileBench make;
  const Extent* extent = &kSmall;
  FileOutcome outcome = FileOutcome::kLoaded;  // of the sound file
  Unnoticed cut = Unnoticed::kAnywhere;
};

void PrintTo(const Sample& sample, std::ostream* out) { *out << sample.name; }

bool IsAllWanted() {
  const char* const wanted = std::getenv("TARNLINK_MUTATIONS");
  return wanted != nullptr && std::string_view(wanted) == "all";
}

std::vector<Sample> AllSamples() {
  return {
      {"boiler.wcr", MakeScreenBench, &kSmall, FileOutcome::kLoaded, Unnoticed::kInLastField},
      {"service.wcr", MakeScreenBench, &kSmall, FileOutcome::kLoaded, Unnoticed::kInLastField},
      {"zolt.wcr", MakeScreenBench, &kSmall, FileOutcome::kLoaded, Unnoticed::kInLastField},
      {"modbus.wcr", MakeScreenBench, &kSmall, FileOutcome::kLoaded, Unnoticed::kInLastField},
      {"boiler.prj", MakeProjectBench},
      {"modbus.prj", MakeProjectBench},
      {"default.ids", MakeIdBench},
      {"MBID.ids", MakeIdBench},
      {"default.erc", MakeErrorTextBench},
      {"MBID.erc", MakeErrorTextBench},
      {"default.snf", MakeSnifferBench},
      {"boiler.par", MakeParameterBench},
      {"boiler.cfg", MakeConfigBench},
      // Of a map, what lies outside the memory's window is skipped.
      {"atmega.map", MakeAvrMapBench, &kLarge, FileOutcome::kPart},
      {"xmega.map", MakeAvrMapBench, &kLarge, FileOutcome::kPart},
      {"nec.lst", MakeListingBench, &kLarge},
      {"boiler.def", MakeEepromBench, &kLarge, FileOutcome::kLoaded, Unnoticed::kInLastField},
      {"burner.grp", MakeLinesBench, &kLarge, FileOutcome::kLoaded, Unnoticed::kNowhere},
      {"burner_start.mss", MakeMeasurementBench, &kHuge, FileOutcome::kLoaded, Unnoticed::kNowhere},
  };
}

// A project has no numbers of its own: each of its files gets one in its name, and behind each line
// there is one that stands alone.
std::string WithNumbers(std::string_view project) {
  std::string text;
  for (const std::string_view line : LinesOf(project)) {
    const bool is_file = line.find('.') != std::string_view::npos;
    text.append(is_file ? "\"7 " : "\"").append(line.substr(1)).append("7\r\n");
  }
  return text;
}

// Opens one damaged file after the other in one form, a new one now and then.
class MutationTest : public testing::TestWithParam<Sample> {
 protected:
  TakeDamage Opens() {
    return [this](const Damage& damage) {
      if (opened_ % kOpenedByOne == 0) bench_ = GetParam().make();
      ++opened_;
      ++outcomes_[bench_->Open(damage.bytes)];
      ExpectLittleMemory(*bench_, damage.bytes.size());
      if (HasFailure()) ADD_FAILURE() << "This was " << damage.Describe();
      return !HasFailure();
    };
  }

  const Extent& extent() const {
    const Extent* const extent = GetParam().extent;
    return IsAllWanted() && extent == &kLarge ? kSmall : *extent;
  }
  static Turns TurnsOf(std::size_t step) { return {IsAllWanted() ? 1 : step}; }

  void ExpectOpened(int at_least) {
    EXPECT_GE(opened_, at_least) << "damaged files";
    std::cout << GetParam().name << ": " << opened_ << " damaged files\n";
    RecordProperty("opened", opened_);
    RecordProperty("loaded", outcomes_[FileOutcome::kLoaded]);
    RecordProperty("loaded_in_part", outcomes_[FileOutcome::kPart]);
    RecordProperty("refused", outcomes_[FileOutcome::kRefused]);
  }

  std::string Whole() const { return SampleBytes(GetParam().name); }

  std::map<FileOutcome, int> outcomes_;
  int opened_ = 0;

 private:
  static constexpr int kOpenedByOne = 1'000;

  std::unique_ptr<FileBench> bench_;
};

TEST_P(MutationTest, IsLoadedWhenItIsSound) {
  Opens()({"whole", 0, Whole()});
  EXPECT_EQ(outcomes_[GetParam().outcome], 1);
}

// Whether nothing need be told of a file that ends in front of this byte.
bool MayEndAt(std::string_view whole, std::size_t place, Unnoticed cut) {
  if (place == whole.size() || cut == Unnoticed::kAnywhere) return true;
  if (cut == Unnoticed::kNowhere) return false;
  const std::size_t before = whole.substr(0, place).rfind('\n');
  const std::size_t begin = before == std::string_view::npos ? 0 : before + 1;
  if (place <= begin + 1) return true;
  const std::string_view line = LinesOf(whole.substr(begin)).front();
  const std::size_t last = line.rfind(',');
  return last == std::string_view::npos || place > begin + last;
}

TEST_P(MutationTest, IsToldWhenACutLeavesNoSoundFile) {
  const std::string whole = Whole();
  const TakeDamage open = Opens();
  const auto judged = [&](const Damage& damage) {
    const int untold = outcomes_[FileOutcome::kLoaded];
    if (!open(damage)) return false;
    const bool is_told = outcomes_[FileOutcome::kLoaded] == untold;
    EXPECT_TRUE(is_told || MayEndAt(whole, damage.place, GetParam().cut)) << damage.Describe();
    return !HasFailure();
  };
  Prefixes(whole, extent().bytes, judged);
  ExpectOpened(80);
  EXPECT_GT(opened_ - outcomes_[FileOutcome::kLoaded], 0) << "no cut has been told";
}

TEST_P(MutationTest, TakesOrTellsEveryDamagedByte) {
  Flips(Whole(), extent().bytes, kMasks, TurnsOf(kMasks.size()), Opens());
  ExpectOpened(80);
}

TEST_P(MutationTest, TakesOrTellsLinesThatAreDoubledOrGone) {
  LineFaults(Whole(), extent().lines, Opens());
  ExpectOpened(10);
}

TEST_P(MutationTest, TakesOrTellsNulBytes) {
  constexpr std::size_t kFewer = 7;
  NulBytes(Whole(), {kFewer, extent().bytes.stride * kFewer}, Opens());
  ExpectOpened(30);
}

TEST_P(MutationTest, TakesOrTellsNumbersAtAndBeyondEveryEdge) {
  constexpr std::size_t kEighth = 8;
  const std::string name = GetParam().name;
  const std::string whole = name.ends_with(".prj") ? WithNumbers(Whole()) : Whole();
  Numbers(whole, extent().numbers, EdgeNumbers(), TurnsOf(kEighth), Opens());
  ExpectOpened(60);
}

std::string NameOf(const testing::TestParamInfo<Sample>& sample) {
  std::string name = sample.param.name;
  std::replace(name.begin(), name.end(), '.', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(All, MutationTest, testing::ValuesIn(AllSamples()), NameOf);

class LongLineTest : public MutationTest {};

TEST_P(LongLineTest, IsLoadedOrTold) {
  LongLines(Whole(), 16 * kMega, Opens());
  ExpectOpened(4);
}

// One of each kind.
std::vector<Sample> OneOfEach() {
  std::vector<Sample> samples = AllSamples();
  std::set<std::string> seen;
  std::erase_if(samples, [&](const Sample& sample) {
    const std::string name = sample.name;
    return !seen.insert(name.substr(name.find('.'))).second;
  });
  return samples;
}

INSTANTIATE_TEST_SUITE_P(All, LongLineTest, testing::ValuesIn(OneOfEach()), NameOf);

// Every file in every other one's place, as a user who takes the wrong one.
TEST(WrongFile, IsLoadedOrToldByEveryCommand) {
  const std::vector<Sample> samples = AllSamples();
  for (const Sample& command : samples) {
    const auto bench = command.make();
    const auto open = [&](const std::string& name) {
      const std::string bytes = name.empty() ? "" : SampleBytes(name);
      const FileOutcome outcome = bench->Open(bytes);
      ExpectLittleMemory(*bench, bytes.size());
      return outcome;
    };
    for (const Sample& file : samples) {
      open(file.name);
      ASSERT_FALSE(testing::Test::HasFailure()) << file.name << " in place of " << command.name;
    }
    open("burner_start.txt");
    open("");
    ASSERT_FALSE(testing::Test::HasFailure()) << "nothing in place of " << command.name;
    EXPECT_EQ(open(command.name), command.outcome) << command.name << " behind all the others";
  }
}

}  // namespace
}  // namespace tarnlink
