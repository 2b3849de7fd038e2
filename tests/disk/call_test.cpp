// Calls of the system fail while a document is saved: each of them, once and from then on.

#include <gtest/gtest.h>

#include <map>

#include "disk/bench.h"
#include "disk/tracer.h"

namespace tarnlink::disk {
namespace {

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

  // True if the process came to that call.
  bool Try(const Failing& failing, Figures& figures) {
    bench_.Lay(bench_.IsLog() ? Bench::kNone : 'A');
    if (process_ == nullptr || bench_.IsLog()) process_ = bench_.Start();
    const std::string fault = "error=" + failing.error + ":when=" + std::to_string(failing.number) +
                              (failing.for_ever ? "+" : "");
    Tracer tracer(process_->pid(), bench_.folder() + ".trace", failing.call, fault);
    const std::string answer = process_->Ask("save B");
    const std::string failed = tracer.Finish();
    const testing::ScopedTrace trace("", 0, failing.error + ":\n" + failed);
    if (failed.empty()) {
      EXPECT_EQ(answer, "saved B");
      return false;
    }
    if (bench_.IsLog()) {
      JudgeLog(bench_, answer, failing, figures);
    } else {
      // Behind the sync of the document comes that of its folder, with the new one in place.
      const bool in_folder = failing.call == "fsync" && failing.number == 2;
      bench_.Judge(answer, Reasons().at(failing.error), figures, {}, in_folder ? 'B' : 'A');
    }
    return true;
  }

 private:
  Bench bench_;
  std::unique_ptr<WriterProcess> process_;
};

// Every call of that name fails once, and once with all that follow, until there is none any more.
void FailOneByOne(FailingCalls& calls, const std::string& call, int offset, Figures& figures) {
  constexpr int kMostCalls = 1000;
  const int stride = IsFull() ? 1 : 5;
  int error_number = 0;
  for (const auto& [error, reason] : Reasons()) {
    if (!IsFull() && error_number++ != offset % 3) continue;
    for (const bool for_ever : {false, true}) {
      int number = IsFull() ? 1 : 1 + offset % 2;
      while (number < kMostCalls && calls.Try({call, error, number, for_ever}, figures)) {
        ASSERT_FALSE(testing::Test::HasFailure())
            << call << " " << number << " with " << error << (for_ever ? " for ever" : " once");
        number += stride;
      }
    }
  }
}

TEST(CallsThatFail, LeaveTheOldDocumentOrTheNewOneAsIsTold) {
  if (!Tracer::Works()) GTEST_SKIP() << "No process may look into another one here.";
  Figures figures;
  int offset = 0;
  int kinds = 0;
  for (const Kind& kind : Kinds()) {
    FailingCalls calls(kind);
    for (const char* call : {"write", "fsync", "rename", "openat", "ftruncate", "close"}) {
      const testing::ScopedTrace trace(__FILE__, __LINE__, std::string(kind.name));
      // In the short form every other call of each kind.
      if (IsFull() || (offset + kinds) % 2 == 0) FailOneByOne(calls, call, offset, figures);
      ++offset;
    }
    ++kinds;
    if (HasFailure()) break;
  }
  figures.Print("Failed calls");
}

}  // namespace
}  // namespace tarnlink::disk
