// The disk is full at every page of a document: by the limit of a file's size, which takes no
// rights, and on a small disk of the process's own.

#include <gtest/gtest.h>

#include "disk/bench.h"

namespace tarnlink::disk {
namespace {

constexpr long long kPage = 4096;

int SizeOf(const Kind& kind) {
  const bool is_long = kind.name == "measurements" || kind.name == "table";
  if (is_long) return IsFull() ? 60 : 4;
  return IsFull() ? 20 : 4;
}

// Room, by the command that makes it.
struct Room {
  std::string command;
  std::string reason;
  std::string root;
};

std::string With(const std::string& command, long long bytes) {
  return command + " " + std::to_string(bytes);
}

// Page by page until the document has had room for some steps.
void GiveRoom(const Bench& bench, WriterProcess& process, const Room& room, Figures& figures) {
  constexpr long long kMost = 64 << 20;
  const long long step = IsFull() ? kPage : 5 * kPage;
  int saved = 0;
  for (long long bytes = 0; saved < 3 || bytes < bench.bytes() + 2 * kPage; bytes += step) {
    ASSERT_LT(bytes, kMost) << "It never fits.";
    ASSERT_EQ(process.Ask(With(room.command, bytes)), "ok");
    const std::string answer = process.Ask("save B");
    const testing::ScopedTrace trace("", 0, With("room for", bytes));
    bench.Judge(answer, room.reason, figures, room.root);
    ASSERT_FALSE(testing::Test::HasFailure());
    saved += answer == "saved B" ? 1 : 0;
    if (bytes == 0) {
      EXPECT_EQ(saved, 0) << answer;
    }
    ASSERT_EQ(process.Ask(With(room.command, -1)), "ok");
    ASSERT_EQ(process.Ask("save A"), "saved A");
  }
}

// A log goes on behind each row that found no room.
void GiveRoomToLog(const Bench& bench, WriterProcess& process, const Room& room, Figures& figures) {
  int told = 0;
  for (int page = 0; page < 4; ++page) {
    ASSERT_EQ(process.Ask(With(room.command, page * kPage)), "ok");
    std::string answer = process.Ask("save A");
    for (; answer == "saved A"; answer = process.Ask("save A")) ++told;
    ++figures.told_failed;
    EXPECT_NE(answer.find(room.reason), std::string::npos) << answer;
    ASSERT_EQ(bench.Rows(room.root), told) << answer;
  }
  figures.told_saved += told;
  EXPECT_GT(told, 3 * kPage / static_cast<long long>(LogRow(told).size()));
}

void GiveRoomTo(const Bench& bench, WriterProcess& process, const Room& room, Figures& figures) {
  const testing::ScopedTrace trace(__FILE__, __LINE__, std::string(bench.kind().name));
  if (bench.IsLog()) {
    GiveRoomToLog(bench, process, room, figures);
  } else {
    ASSERT_EQ(process.Ask("save A"), "saved A");
    GiveRoom(bench, process, room, figures);
  }
}

TEST(FullDisk, ByTheLimitOfAFileLeavesTheOldDocument) {
  Figures figures;
  for (const Kind& kind : Kinds()) {
    const Bench bench(kind, SizeOf(kind));
    bench.Lay(Bench::kNone);
    const auto process = bench.Start();
    GiveRoomTo(bench, *process, {"limit", "the file would become too large.", ""}, figures);
    if (HasFailure()) break;
  }
  figures.Print("Limit of a file's size");
}

TEST(FullDisk, LeavesTheOldDocument) {
  Figures figures;
  for (const Kind& kind : Kinds()) {
    const Bench bench(kind, SizeOf(kind));
    bench.Lay(Bench::kNone);
    const auto process = bench.Start(false);
    if (process->Ask("mount " + bench.folder()) != "ok") {
      GTEST_SKIP() << "No small disk can be mounted here.";
    }
    GiveRoomTo(bench, *process,
               {"room", " full.", "/proc/" + std::to_string(process->pid()) + "/root"}, figures);
    if (HasFailure()) break;
  }
  figures.Print("Small disk");
}

}  // namespace
}  // namespace tarnlink::disk
