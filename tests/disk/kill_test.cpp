// The program is killed while it saves: at random moments, and in every call of the system.

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <random>

#include "disk/bench.h"
#include "disk/calls.h"
#include "disk/tracer.h"

namespace tarnlink::disk {
namespace {

using SteadyClock = std::chrono::steady_clock;

// Several MB of measurements in the full form; of all else more than a page.
int SizeOf(const Kind& kind) {
  if (kind.name == "measurements" || kind.name == "table") return IsFull() ? 100 : 30;
  return 20;
}

// By the clock itself: a wait of the system's would always wake at the same moments.
void KillAfter(WriterProcess& process, double seconds) {
  const auto end = SteadyClock::now() + std::chrono::duration<double>(seconds);
  while (SteadyClock::now() < end) {
  }
  process.Kill();
}

// The process saves one version behind the other, is killed, and what it told is on the disk.
class RandomKills {
 public:
  RandomKills(const Kind& kind, unsigned seed) : bench_(kind, SizeOf(kind)), random_(seed) {}

  void Run(int kills, Figures& figures) {
    constexpr int kInOneFolder = 8;
    for (int kill = 0; kill < kills; ++kill) {
      if (bench_.IsLog() || kill % kInOneFolder == 0) {
        const bool has_none = bench_.IsLog() || kill % (2 * kInOneFolder) == 0;
        before_ = has_none ? Bench::kNone : 'A';
        bench_.Lay(before_);
        left_over_ = 0;
      }
      Kill(figures);
      ++figures.kills;
      const int left_over = bench_.LeftOver();
      EXPECT_LE(left_over, left_over_ + MostLeftOver()) << bench_.kind().name;
      figures.left_over += std::max(left_over - left_over_, 0);
      left_over_ = left_over;
      ASSERT_FALSE(testing::Test::HasFailure()) << bench_.kind().name << ", kill " << kill;
    }
  }

 private:
  // The file beside the document; of the settings their lock too, which the next one takes over.
  int MostLeftOver() const { return bench_.kind().name == kSettings && left_over_ == 0 ? 2 : 1; }

  void Kill(Figures& figures) {
    // Some saves behind those that are waited for, and what the process takes to begin with them.
    const double longest = std::min(4 * bench_.seconds(), 0.3) + 0.001;
    const auto process = bench_.Start();
    process->Send(std::string("loop ") + Next());
    int told = 0;
    const auto take = [&] {
      const std::string answer = process->Answer();
      if (answer.empty()) return false;
      EXPECT_EQ(answer, std::string("saved ") + Next());
      before_ = Next();
      ++told;
      return true;
    };
    // A slow disk would be killed in its first save for ever.
    const int waited_for = std::uniform_int_distribution<int>(0, 4)(random_);
    while (told < waited_for && take()) continue;
    EXPECT_EQ(told, waited_for);
    KillAfter(*process, std::uniform_real_distribution<double>(0, longest)(random_));
    while (take()) continue;
    EXPECT_TRUE(process->WasKilled());
    figures.told_saved += told;
    bench_.IsLog() ? JudgeLog(told, figures) : JudgeDocument(Next(), figures);
  }

  // The version behind the one that must be there.
  char Next() const { return before_ == Bench::kNone ? 'A' : VersionAfter(before_); }

  void JudgeDocument(char next, Figures& figures) {
    const char found = bench_.Look();
    figures.half += found == Bench::kHalf ? 1 : 0;
    figures.none += found == Bench::kNone ? 1 : 0;
    figures.fresh += found == next ? 1 : 0;
    figures.old += found == before_ && found != Bench::kNone ? 1 : 0;
    EXPECT_TRUE(found == before_ || found == next)
        << bench_.kind().name << " is " << found << ", where " << before_ << " was told as saved";
    before_ = found;
  }

  void JudgeLog(int told, Figures& figures) {
    const int rows = bench_.Rows();
    figures.half += rows < 0 ? 1 : 0;
    figures.old += rows == told ? 1 : 0;
    figures.fresh += rows == told + 1 ? 1 : 0;
    EXPECT_TRUE(rows == told || rows == told + 1) << rows << " rows, " << told << " told";
  }

  Bench bench_;
  std::mt19937 random_;
  int left_over_ = 0;           // in the folder
  char before_ = Bench::kNone;  // that must be there, unless its successor is
};

TEST(KilledWhileSaving, LeavesTheOldDocumentOrTheNewOneAndWhatWasToldAsSaved) {
  const int kills = IsFull() ? 1000 : 60;
  const int kinds = static_cast<int>(Kinds().size());
  Figures figures;
  for (int i = 0; i < kinds && !HasFailure(); ++i) {
    RandomKills random(Kinds()[static_cast<std::size_t>(i)], 20240305U + static_cast<unsigned>(i));
    random.Run(kills / kinds + (i < kills % kinds ? 1 : 0), figures);
  }
  figures.Print("Killed at random moments");
  EXPECT_EQ(figures.kills, kills);
  // Between two saves, and within one.
  EXPECT_GT(figures.told_saved, kills);
  EXPECT_GT(figures.old, 0);
  EXPECT_GT(figures.fresh + figures.left_over, 0);
}

// --- In a call of the system ---------------------------------------------------------------------

struct Moment {
  std::string call;
  int number;
};

std::vector<Moment> Moments(const Bench& bench) {
  std::vector<Moment> moments;
  for (const auto& [call, count] : CountCalls(bench)) {
    for (int number = 1; number <= count; ++number) moments.push_back({call, number});
  }
  return moments;
}

// In that call of its second save. It has to come there.
void KillInCall(const Bench& bench, const Moment& moment, Figures& figures) {
  const auto process = bench.StartBehindASave();
  Tracer tracer(process->pid(), bench.folder() + ".trace", moment.call,
                "signal=KILL:when=" + std::to_string(moment.number));
  const std::string answer = process->Ask("save B");
  EXPECT_EQ(answer, "");
  EXPECT_TRUE(process->WasKilled());
  tracer.Finish();
  ++figures.kills;
  if (bench.IsLog()) {
    const int rows = bench.Rows();
    figures.half += rows < 0 ? 1 : 0;
    EXPECT_TRUE(rows == 1 || rows == 0) << rows;
  } else {
    const char found = bench.Look();
    figures.half += found == Bench::kHalf ? 1 : 0;
    figures.old += found == 'A' ? 1 : 0;
    figures.fresh += found == 'B' ? 1 : 0;
    EXPECT_TRUE(found == 'B' || found == 'A') << found;
  }
  EXPECT_LE(bench.LeftOver(), 2) << "the file beside the document, and the lock of the settings";
  figures.left_over += bench.LeftOver();
}

TEST(KilledWhileSaving, InAnyCallOfTheSystemToo) {
  if (!Tracer::Works()) GTEST_SKIP() << "No process may look into another one here.";
  const int stride = IsFull() ? 1 : 3;
  Figures figures;
  int turn = 0;
  for (const Kind& kind : Kinds()) {
    const Bench bench(kind, 2);
    for (const Moment& moment : Moments(bench)) {
      if (turn++ % stride != 0) continue;
      KillInCall(bench, moment, figures);
      ASSERT_FALSE(HasFailure()) << kind.name << ", " << moment.call << " " << moment.number;
    }
  }
  figures.Print("Killed in a call");
  EXPECT_GE(figures.kills, turn / stride);
  EXPECT_GT(figures.old, 0);
  EXPECT_GT(figures.fresh, 0);
}

}  // namespace
}  // namespace tarnlink::disk
