// The log of the real program on a disk that fills up.

#include <gtest/gtest.h>
#include <sys/mount.h>

#include <fstream>
#include <memory>
#include <string>

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

TEST(LogOnAFullDisk, IsToldOnceKeepsItsWholeRowsAndTheRunGoesOn) {
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
  EXPECT_EQ(program.Ask("click OK"), "ok");
  ASSERT_TRUE(program.Becomes("modal", "none"));
  ASSERT_NO_FATAL_FAILURE(logging->Answer(kMoreThanFits));
  EXPECT_EQ(program.Ask("modal"), "none");

  const std::string log = logging->Log();
  const auto rows = static_cast<int>(Split(log, "\r\n").size()) - 3;
  EXPECT_GE(rows, 2) << log;
  EXPECT_TRUE(log.ends_with("\r\n")) << log;
  EXPECT_EQ(FaultOfLog(log, rows * LogProgram::kColumns), "") << log;
}

}  // namespace
}  // namespace e2e
