// The first minutes of a new user: no port, no file, nothing but the program.

#include <gtest/gtest.h>
#include <poll.h>

#include <filesystem>

#include "driven_program.h"

namespace e2e {
namespace {

constexpr const char* kRunning =
    "The simulated boiler answers on COM1. Open the sample project, then press \"Start "
    "Communication\".";

class FirstStepsOfAUser : public testing::Test {
 protected:
  std::string Stored() { return folder.Read("config/TarnLink2/TarnLink2.ini"); }

  TestFolder folder;
  const std::string gone = folder.Path("gone");
  DrivenProgram program{folder, "[Ports]\nCOM1=\"" + gone + "\"\n", ""};
};

TEST_F(FirstStepsOfAUser, FromTheEmptyScreenToLiveValues) {
  ASSERT_TRUE(program.Becomes("text lblPort",
                              "COM1 (" + gone +
                                  ") is not there: plug it in, or choose another device in the "
                                  "options."));
  program.Press("cmdBoiler");
  ASSERT_TRUE(program.Becomes("text lblPort", kRunning));
  program.Press("cmdSample");
  program.Press("Toolbar1(2)");
  EXPECT_TRUE(program.Becomes("text StatusBar1(4)", "Communication Running"));
  EXPECT_TRUE(program.Becomes("text StatusBar1(6)", "Local Connection Active"));
  program.Press("Toolbar1(3)");
  program.Press("M_exit");
  ASSERT_EQ(program.process().WaitForEnd(10'000), 0);
  EXPECT_NE(Stored().find("COM1=" + gone), std::string::npos) << Stored();
}

// However the program ends, the boiler ends with it.
TEST_F(FirstStepsOfAUser, AKilledProgramLeavesNoBoiler) {
  program.Press("cmdBoiler");
  ASSERT_TRUE(program.Becomes("text lblPort", kRunning));
  std::string settings;
  EXPECT_TRUE([&] {
    for (int i = 0; i < 500; ++i) {
      settings = Stored();
      if (settings.find("simulated-boiler") != std::string::npos) return true;
      poll(nullptr, 0, 10);
    }
    return false;
  }()) << settings;
  const std::size_t begin = settings.find("COM1=") + 5;
  const std::filesystem::path link = settings.substr(begin, settings.find('\n', begin) - begin);
  ASSERT_TRUE(std::filesystem::is_symlink(link)) << link;
  program.process().Kill();
  for (int i = 0; i < 500 && std::filesystem::is_symlink(link); ++i) poll(nullptr, 0, 10);
  EXPECT_FALSE(std::filesystem::is_symlink(link));
}

}  // namespace
}  // namespace e2e
