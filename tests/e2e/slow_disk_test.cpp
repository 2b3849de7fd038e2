// The real program on a disk that takes its time.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>

#include "job_folder.h"
#include "log_program.h"

namespace e2e {
namespace {

// Each `call` that has to do with `path` takes so long.
std::vector<std::string> WithSlow(const std::string& call, const std::string& path,
                                  int milliseconds) {
  return {"strace", "-D",
          "-f",     "-qq",
          "-o",     "/dev/null",
          "-P",     path,
          "-e",     "trace=" + call,
          "-e",     "inject=" + call + ":delay_enter=" + std::to_string(milliseconds) + "000"};
}

bool MayTrace() { return std::system("strace -qq -o /dev/null true") == 0; }

constexpr const char* kNoTracing = "Processes may not be traced here.";

ino_t NodeOf(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 ? status.st_ino : 0;
}

class SlowDiskTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!MayTrace()) GTEST_SKIP() << kNoTracing;
    program = std::make_unique<DrivenProgram>(
        folder, TarnLinkSettings(""), std::vector<std::string>{folder.Path("screens/boiler.wcr")},
        WithSlow("fsync", folder.Path("screens"), 1500));  // its entry is on the disk so late
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

TEST(SlowDisk, AFileOfTheProjectIsLookedForBesideTheWindow) {
  if (!MayTrace()) GTEST_SKIP() << kNoTracing;
  const JobFolder folder;
  const std::string gone = folder.Path("gone.wcr");
  const std::string project =
      folder.Write("slow.prj", "\"p\"\r\n\"wcr\"\r\n\"" + gone +
                                   "\"\r\n\"par\"\r\n\"grp\"\r\n\"erc\"\r\n\"ids\"\r\n\"lst\"\r\n");
  // With a screen, since an empty one is looked at for a port each second, which being traced makes
  // slow.
  DrivenProgram program(folder, TarnLinkSettings(""), {project, folder.Path("boiler.wcr")},
                        WithSlow("newfstatat", gone, 1500));
  ExpectScreen(program, "boiler.wcr");
  OpenFromTree(program, "gone.wcr");
  ASSERT_TRUE(program.Becomes("modal", "TarnLink|Waiting"));
  EXPECT_TRUE(program.Becomes("modal", "File Error|The file : " + gone + " does not exist"));
}

TEST(SlowDisk, ALogIsWrittenBesideTheRunAndWhole) {
  if (!MayTrace()) GTEST_SKIP() << kNoTracing;
  constexpr int kAnswers = 6;
  LogProgram logging({"a", "b", "c"}, nullptr,
                     [](const std::string& log) { return WithSlow("write", log, 150); });
  ASSERT_NO_FATAL_FAILURE(logging.StartLog());
  ASSERT_NO_FATAL_FAILURE(logging.Answer(kAnswers));
  logging.program().Press("Toolbar1(3)");
  ASSERT_TRUE(logging.program().Becomes("text StatusBar1(4)", "Communication Stopped"));
  EXPECT_NE(FaultOfLog(logging.Log(), kAnswers), "") << "The disk was not slow.";
  logging.program().Press("M_exit");
  EXPECT_EQ(logging.program().process().WaitForEnd(5000), 0);
  EXPECT_EQ(FaultOfLog(logging.Log(), kAnswers), "");
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
