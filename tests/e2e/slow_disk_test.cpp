// The real program on a disk that takes its time.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>

#include "job_folder.h"

namespace e2e {
namespace {

// The entry of `folder` is on the disk only after so long.
std::vector<std::string> WithSlowFolder(const std::string& folder) {
  return {"strace", "-D",   "-f", "-qq",         "-o", "/dev/null",
          "-P",     folder, "-e", "trace=fsync", "-e", "inject=fsync:delay_enter=1500000"};
}

ino_t NodeOf(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 ? status.st_ino : 0;
}

class SlowDiskTest : public testing::Test {
 protected:
  void SetUp() override {
    if (std::system("strace -qq -o /dev/null true") != 0) {
      GTEST_SKIP() << "Processes may not be traced here.";
    }
    program = std::make_unique<DrivenProgram>(
        folder, TarnLinkSettings(""), std::vector<std::string>{folder.Path("screens/boiler.wcr")},
        WithSlowFolder(folder.Path("screens")));
    ExpectScreen(*program, "boiler.wcr");
    node = NodeOf(folder.Path("screens/boiler.wcr"));
  }

  JobFolder folder;
  std::string screen = folder.Write("screens/boiler.wcr", folder.Read("boiler.wcr"));
  std::unique_ptr<DrivenProgram> program;
  ino_t node = 0;
};

// Whether the window answers meanwhile every test of the real program looks at.
TEST_F(SlowDiskTest, AScreenIsSavedAndTheUserIsToldWhatIsWaitedFor) {
  program->Press("M_filesave(0)");
  ASSERT_TRUE(program->Becomes("modal", "TarnLink|Waiting"));
  EXPECT_TRUE(program->Becomes("modal", "none"));
  EXPECT_NE(NodeOf(screen), node);
  EXPECT_EQ(folder.Read("screens/boiler.wcr"), folder.Read("boiler.wcr"));
}

TEST_F(SlowDiskTest, TheUserNeedNotWait) {
  program->Press("M_filesave(0)");
  ASSERT_TRUE(program->Becomes("modal", "TarnLink|Waiting"));
  program->Click("Stop waiting");
  ASSERT_TRUE(program->Becomes(
      "modal",
      "Internal System Error|Internal System Error # 57 occured, please contact distributor.\\n"
      "During saving wcr file " +
          screen));
  program->Click("OK");
  EXPECT_TRUE(program->Becomes("modal", "none"));
  EXPECT_EQ(folder.Read("screens/boiler.wcr"), folder.Read("boiler.wcr"));
}

// Qt would wait for the disk twice, with the window, to keep how its dialog was left.
TEST(FileDialog, IsLeftWithoutWaitingForTheDisk) {
  const JobFolder folder;
  DrivenProgram program(folder, TarnLinkSettings(""), folder.Path("boiler.wcr"));
  ExpectScreen(program, "boiler.wcr");
  program.Press("M_fileopen");
  ASSERT_TRUE(program.Becomes("modal", "Open|OpenFile"));
  program.Click("Cancel");
  ASSERT_TRUE(program.Becomes("modal", "none"));
  EXPECT_FALSE(std::filesystem::exists(folder.Path("config/QtProject.conf")));
}

}  // namespace
}  // namespace e2e
