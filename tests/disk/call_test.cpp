// Calls of the system fail while a document is saved: each of them, once and from then on.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "disk/bench.h"
#include "disk/calls.h"
#include "disk/tracer.h"

namespace tarnlink::disk {
namespace {

// Without these no document gets to the disk.
const std::set<std::string> kNeeded = {"close", "fsync", "openat", "rename", "write"};

struct Failing {
  std::string call;
  std::string error;
  int number;  // of the call that fails first
  bool for_ever;
};

const std::map<std::string, std::string>& Reasons() {
  static const std::map<std::string, std::string> kReasons = {
      {"ENOSPC", "the disk is full."},
      {"EIO", "the system says \"Input/output error\"."},
      {"EACCES", "you do not have the permission."}};
  return kReasons;
}

// "4" of "openat(...) = 4".
std::string HandleOf(const std::string& line) {
  const std::size_t at = line.rfind("= ");
  return at == std::string::npos ? "" : line.substr(at + 2);
}

// A row that was told as written is there, one that was not has left nothing.
void JudgeLog(const Bench& bench, const std::string& answer, const Failing& failing,
              Figures& figures) {
  const int rows = bench.Rows();
  const bool told = answer == "saved B";
  figures.half += rows < 0 ? 1 : 0;
  figures.told_saved += told ? 1 : 0;
  figures.told_failed += told ? 0 : 1;
  figures.fresh += rows == 1 ? 1 : 0;
  figures.none += rows == 0 ? 1 : 0;
  EXPECT_EQ(rows, told ? 1 : 0) << answer;
  if (told) return;
  EXPECT_NE(answer.find("\"" + bench.path() + "\""), std::string::npos) << answer;
  EXPECT_NE(answer.find(Reasons().at(failing.error)), std::string::npos) << answer;
}

class FailingCalls {
 public:
  explicit FailingCalls(const Kind& kind) : bench_(kind, 2) {}

  // Each call of a save fails with each reason, once and with all that follow.
  std::vector<Failing> Table() const {
    std::vector<Failing> table;
    for (const auto& [call, count] : CountCalls(bench_)) {
      // What cannot be removed stays.
      if (call == "unlink") continue;
      for (const auto& [error, reason] : Reasons()) {
        for (int number = 1; number <= count; ++number) {
          table.push_back({call, error, number, false});
          table.push_back({call, error, number, true});
        }
      }
    }
    return table;
  }

  void Try(const Failing& failing, Figures& figures) {
    if (process_ == nullptr || bench_.IsLog()) process_ = bench_.StartBehindASave();
    bench_.Lay(bench_.IsLog() ? Bench::kNone : 'A');
    const std::string fault = "error=" + failing.error + ":when=" + std::to_string(failing.number) +
                              (failing.for_ever ? "+" : "");
    Tracer tracer(process_->pid(), bench_.folder() + ".trace", failing.call, fault);
    const std::string answer = process_->Ask("save B");
    const std::string failed = tracer.Finish();
    const testing::ScopedTrace trace("", 0, failing.error + ":\n" + failed);
    EXPECT_NE(failed, "") << "No call has failed.";
    if (bench_.IsLog()) {
      JudgeLog(bench_, answer, failing, figures);
    } else {
      // Behind the sync of the document comes that of its folder, with the new one in place.
      const bool in_folder = failing.call == "fsync" && failing.number == 2;
      bench_.Judge(answer, Reasons().at(failing.error), figures, {}, in_folder ? 'B' : 'A');
    }
  }

 private:
  Bench bench_;
  std::unique_ptr<WriterProcess> process_;
};

// What came to its turn at least once.
struct Turns {
  std::set<std::string> calls;
  std::set<std::string> errors;
  std::set<bool> for_ever;
  std::set<int> numbers;
};

TEST(CallsThatFail, LeaveTheOldDocumentOrTheNewOneAsIsTold) {
  if (!Tracer::Works()) GTEST_SKIP() << "No process may look into another one here.";
  // No divisor of how many reasons there are and how often: the short form comes to each of them.
  const int stride = IsFull() ? 1 : 11;
  Figures figures;
  Turns turns;
  std::set<std::string> all_calls;
  int turn = 0;
  for (const Kind& kind : Kinds()) {
    FailingCalls calls(kind);
    for (const Failing& failing : calls.Table()) {
      all_calls.insert(failing.call);
      if (turn++ % stride != 0) continue;
      turns.calls.insert(failing.call);
      turns.errors.insert(failing.error);
      turns.for_ever.insert(failing.for_ever);
      turns.numbers.insert(failing.number);
      calls.Try(failing, figures);
      ASSERT_FALSE(HasFailure()) << kind.name << ": " << failing.call << " " << failing.number
                                 << " with " << failing.error
                                 << (failing.for_ever ? " for ever" : " once");
    }
  }
  figures.Print("Failed calls");
  EXPECT_EQ(turns.calls, all_calls);
  EXPECT_TRUE(std::includes(all_calls.begin(), all_calls.end(), kNeeded.begin(), kNeeded.end()));
  EXPECT_EQ(turns.errors.size(), Reasons().size());
  EXPECT_EQ(turns.for_ever.size(), 2U);
  EXPECT_TRUE(turns.numbers.contains(1) && turns.numbers.contains(2));
}

// What a power cut takes is what was not synced: the document is on the disk before it takes its
// name, and its name before it is told as saved.
TEST(CallsOfASave, TheDocumentIsOnTheDiskBeforeItIsTold) {
  if (!Tracer::Works()) GTEST_SKIP() << "No process may look into another one here.";
  for (const Kind& kind : Kinds()) {
    const Bench bench(kind, 2);
    // A row of a log is worth no wait for the disk.
    if (bench.IsLog()) continue;
    std::string order;
    std::string folder;  // that was opened, to be synced
    for (const CallOfASave& call : WatchSave(bench)) {
      if (call.name == "write" && !order.ends_with("write ")) order += "write ";
      if (call.name == "rename") order += "rename ";
      if (call.name == "saved") order += "saved";
      if (call.name == "openat" && call.line.find("O_DIRECTORY") != std::string::npos)
        folder = HandleOf(call.line);
      if (call.name != "fsync") continue;
      order += call.line.find("fsync(" + folder + ")") == std::string::npos ? "sync " : "folder ";
    }
    EXPECT_TRUE(order.ends_with("write sync rename folder saved")) << kind.name << ": " << order;
  }
}

}  // namespace
}  // namespace tarnlink::disk
