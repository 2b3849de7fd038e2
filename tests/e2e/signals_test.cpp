// The system tells the real program to end, as when the user leaves the session.

#include <gtest/gtest.h>

#include <csignal>

#include "log_program.h"

namespace e2e {
namespace {

constexpr int kPatience = 10000;  // ms
constexpr int kBySignal = 128;    // of a status
const char* const kStore = "config/TarnLink2/TarnLink2.ini";
const char* const kQuestion = "TarnLink2|The screen was changed. Do you want to save the changes?";
const char* const kScreen =
    "16744576\r\n"
    "\"L\",0,1,\"01A0\",0,\"Flow\",\"t_flow\",0,0,0,0,\"0\",0,600,2400,600,240,\"0\"\r\n";

class EndOfASession : public testing::TestWithParam<int> {
 protected:
  TestFolder folder;
  DrivenProgram program{folder, "[Startup]\nLeft=1500\nTop=1500\nWidth=12000\nHeight=9000\n",
                        folder.Write("boiler.wcr", kScreen)};
};

TEST_P(EndOfASession, StopsTheRunAndClosesItsLogAsExitDoes) {
  LogProgram logging(std::vector<std::string>{"One", "Two", "Three"});
  ASSERT_NO_FATAL_FAILURE(logging.StartLog());
  ASSERT_NO_FATAL_FAILURE(logging.Answer(7));
  ASSERT_TRUE(logging.program().Becomes("text RAM_LOC_VAL(1)", "7"));
  logging.program().process().Signal(GetParam());
  EXPECT_EQ(logging.program().process().WaitForEnd(kPatience), 0);
  EXPECT_EQ(FaultOfLog(logging.Log(), logging.answers()), "") << logging.Log();
}

TEST_P(EndOfASession, KeepsTheSettingsAndTheWindowsPlace) {
  ASSERT_NE(program.Ask("title frm_Main"), "");
  program.process().Signal(GetParam());
  EXPECT_EQ(program.process().WaitForEnd(kPatience), 0);
  const std::string store = folder.Read(kStore);
  EXPECT_NE(store.find("Width=12000"), std::string::npos) << store;
  EXPECT_NE(store.find("Hist0=" + folder.Path("boiler.wcr")), std::string::npos) << store;
}

INSTANTIATE_TEST_SUITE_P(Signals, EndOfASession, testing::Values(SIGTERM, SIGINT, SIGHUP));

using EndOfASessionWithAUser = EndOfASession;

TEST_P(EndOfASessionWithAUser, AsksAboutAChangedScreenAndStaysIfTheUserWants) {
  program.Mouse("RAM_LOC_TEXT(1)");
  program.Key("Right");
  ASSERT_TRUE(program.Becomes("title frm_Main", "TarnLink - boiler.wcr *"));
  for (int time = 0; time < 2; ++time) {
    program.process().Signal(GetParam());
    ASSERT_TRUE(program.Becomes("modal", kQuestion));
    program.Key("Escape");
    ASSERT_TRUE(program.Becomes("modal", "none"));
    // The box is gone before the question has been answered to who asked it.
    for (int i = 0; i < 3; ++i) ASSERT_NE(program.Ask("title frm_Main"), "");
  }
  program.process().Signal(GetParam());
  ASSERT_TRUE(program.Becomes("modal", kQuestion));
  program.process().Signal(GetParam());
  EXPECT_EQ(program.process().WaitForEnd(kPatience), kBySignal + GetParam()) << "The second ends.";
}

TEST_P(EndOfASessionWithAUser, ClosesWhatStandsInFrontOfTheWindow) {
  program.Press("M_options");
  ASSERT_NE(program.Ask("modal"), "none");
  program.process().Signal(GetParam());
  EXPECT_EQ(program.process().WaitForEnd(kPatience), 0);
  EXPECT_NE(folder.Read(kStore).find("Width=12000"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Signals, EndOfASessionWithAUser, testing::Values(SIGTERM));

}  // namespace
}  // namespace e2e
