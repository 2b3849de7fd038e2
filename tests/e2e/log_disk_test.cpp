// The log of the real program on a disk that fills up.

#include <gtest/gtest.h>
#include <sys/mount.h>

#include <algorithm>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "log_program.h"

namespace e2e {
namespace {

constexpr std::size_t kPage = 4096;

// A disk of one page in place of a folder.
class SmallDisk {
 public:
  ~SmallDisk() {
    if (!folder_.empty()) umount2(folder_.c_str(), MNT_DETACH);
  }
  void Mount(const std::string& folder) {
    if (mount("tmpfs", folder.c_str(), "tmpfs", 0, "size=4096,mode=0777") != 0) return;
    folder_ = folder;
    std::ofstream(folder + "/older.txt");
  }
  bool mounted() const { return !folder_.empty(); }

 private:
  std::string folder_;
};

TEST(LogOnAFullDisk, IsToldOnceKeepsItsValuesAndTheRunGoesOn) {
  std::unique_ptr<LogProgram> logging;  // whose folder goes after the disk in it
  SmallDisk disk;
  // The heading leaves room for a few rows.
  const std::string long_name(kPage / 3 - 70, 'x');
  logging = std::make_unique<LogProgram>(std::vector<std::string>{long_name, long_name, long_name},
                                         [&](const std::string& logs) { disk.Mount(logs); });
  if (!disk.mounted()) GTEST_SKIP() << "A small disk takes root.";
  DrivenProgram& program = logging->program();
  ASSERT_NO_FATAL_FAILURE(logging->StartLog());
  constexpr int kMoreThanFits = 60;
  ASSERT_NO_FATAL_FAILURE(logging->Answer(kMoreThanFits));
  ASSERT_TRUE(
      program.Becomes("modal",
                      "Internal System Error|Internal System Error # 61 occured, please contact "
                      "distributor.\\nDuring writing log file " +
                          logging->LogPath()));
  // The box is still up.
  ASSERT_NO_FATAL_FAILURE(logging->Answer(kMoreThanFits));
  EXPECT_EQ(program.Text("StatusBar1(4)"), "Communication Running");
  program.Click("OK");
  ASSERT_TRUE(program.Becomes("modal", "none"));
  ASSERT_NO_FATAL_FAILURE(logging->Answer(kMoreThanFits));
  EXPECT_EQ(program.Ask("modal"), "none");

  const std::string log = logging->Log();
  const std::vector<std::string> lines = Split(log, "\r\n");
  const auto rows = static_cast<int>(lines.size()) - 3;
  EXPECT_GE(rows, 2) << log;
  // Of the last row what had room; a tab goes ahead of its value.
  const std::vector<std::string> fields = Split(lines.back(), "\t");
  const auto begun = static_cast<int>(fields.size()) - (fields.back().empty() ? 2 : 1);
  EXPECT_EQ(FaultOfLog(log, rows * LogProgram::kColumns + std::max(begun, 0)), "") << log;
}

}  // namespace
}  // namespace e2e
