// The graph in the real program, on real pseudo terminals: opened, polling, sending the test mode
// command, left, refused during a run, on a line that falls silent and is pulled.

#include <gtest/gtest.h>
#include <poll.h>

#include <chrono>
#include <memory>
#include <string>

#include "job_folder.h"
#include "line_end.h"
#include "process.h"

namespace e2e {
namespace {

constexpr int kPatience = 5000;  // ms

// What `modal` says while the graph is open.
const std::string kGraph = "Graphic|frmGraphic";

// As the boiler's log has it, without the check: a read of the lanes, and the test mode command at
// full power.
const std::string kLanesRequest = "\t0D 01 30 30 30 30 31 30 30 30 30 ";
const std::string kTestCommand = "\t0D 81 30 30 30 30 45 46 46 36 34 ";

class GraphTest : public testing::Test {
 protected:
  void Start(const std::string& port, const std::vector<std::string>& files = {}) {
    std::vector<std::string> paths;
    for (const std::string& file : files) paths.push_back(folder.Path(file));
    program = std::make_unique<DrivenProgram>(folder, TarnLinkSettings(port), paths);
  }
  void OpenGraph() {
    program->Press("M_Graphics");
    ASSERT_TRUE(program->Becomes("modal", kGraph));
  }
  void LeaveGraph() {
    program->Mouse("lblExit");
    ASSERT_TRUE(program->Becomes("modal", "none"));
  }
  bool IsTold(const std::string& text, int milliseconds = kPatience) {
    return program->Becomes("get lblCommunicationError visible", "true", milliseconds) &&
           program->Becomes("text lblCommunicationError", text);
  }

  JobFolder folder;
  std::unique_ptr<DrivenProgram> program;
};

// --- Against the simulated boiler ----------------------------------------------------------------

class GraphOnABoiler : public GraphTest {
 protected:
  std::string Log() const { return folder.Read("line.log"); }
  // Waits until the boiler has heard a request, behind `from` in its log, and has answered it.
  bool IsAnswered(const std::string& request, std::size_t from = 0) {
    constexpr int kSlice = 10;
    for (int waited = 0; waited < kPatience; waited += kSlice) {
      const std::string log = Log();
      const std::size_t at = log.find("\theard\t", from);
      const std::size_t asked = at == std::string::npos ? at : log.find(request, at);
      if (asked != std::string::npos && log.find("\tsaid\t", asked) != std::string::npos) {
        return true;
      }
      poll(nullptr, 0, kSlice);
    }
    ADD_FAILURE() << Log().substr(from, 2000);
    return false;
  }

  Process boiler{{BOILER_SIMULATOR_PROGRAM, "--protocol", "any", "--at-once", "--until-eof",
                  "--log", folder.Path("line.log")},
                 {}};
};

TEST_F(GraphOnABoiler, PollsSendsTheTestCommandAndLetsThePortGo) {
  Start(boiler.ReadLine(kPatience), {"zolt.wcr"});
  OpenGraph();
  EXPECT_TRUE(IsAnswered(kLanesRequest));
  EXPECT_EQ(program->Ask("get lblCommunicationError visible"), "false");
  EXPECT_EQ(program->Ask("get mnuZOLTCom checked"), "true");
  EXPECT_EQ(Log().find(kTestCommand), std::string::npos);
  program->Mouse("lblTest");
  EXPECT_TRUE(IsAnswered(kTestCommand));
  LeaveGraph();

  program->Mouse("Toolbar1(2)");
  EXPECT_TRUE(program->Becomes("text StatusBar1(4)", "Communication Running"));
  EXPECT_TRUE(program->Becomes("text RAM_LOC_VAL(21)", "2938"));
}

TEST_F(GraphOnABoiler, IsRefusedDuringARunAndOpensFromTheProjectAfterwards) {
  Start(boiler.ReadLine(kPatience), {"boiler.prj", "zolt.wcr"});
  program->Mouse("Toolbar1(2)");
  ASSERT_TRUE(program->Becomes("text StatusBar1(4)", "Communication Running"));
  EXPECT_EQ(program->Ask("enabled M_Graphics"), "false");
  OpenFromTree(*program, "burner.grp");
  ASSERT_TRUE(program->Becomes("modal", "Communication Error|Stop Communication First"));
  program->Click("OK");
  ASSERT_TRUE(program->Becomes("modal", "none"));
  EXPECT_EQ(program->Text("StatusBar1(4)"), "Communication Running");

  program->Mouse("Toolbar1(3)");
  ASSERT_TRUE(program->Becomes("text StatusBar1(4)", "Communication Stopped"));
  const std::size_t run = Log().size();
  OpenFromTree(*program, "burner.grp");
  ASSERT_TRUE(program->Becomes("modal", kGraph));
  EXPECT_TRUE(IsAnswered(kLanesRequest, run));
  LeaveGraph();
  // A second one begins anew.
  OpenGraph();
  EXPECT_EQ(program->Ask("get lblCommunicationError visible"), "false");
  LeaveGraph();
}

// --- Lines that fail -----------------------------------------------------------------------------

TEST_F(GraphTest, WithoutItsPortItSaysSoAndOpensAllTheSame) {
  Start(folder.Path("no-device"));
  program->Press("M_Graphics");
  ASSERT_TRUE(program->Becomes("modal", "Communication port|Com port busy."));
  EXPECT_EQ(program->Ask("get frmGraphic visible"), "no such: frmGraphic");
  program->Click("OK");
  ASSERT_TRUE(program->Becomes("modal", kGraph));
  EXPECT_TRUE(IsTold("Communication stopped"));
  EXPECT_EQ(program->Ask("get mnuZOLTCom checked"), "false");
  LeaveGraph();
}

TEST_F(GraphTest, ASilentLineIsToldAfterFourteenSecondsAndAPulledOneEndsIt) {
  LineEnd line;
  Start(line.path());
  OpenGraph();
  ASSERT_EQ(line.Receive(11, kPatience), std::string("\r\x01") + "000010000");
  const auto asked = std::chrono::steady_clock::now();
  EXPECT_EQ(program->Ask("get lblCommunicationError visible"), "false");
  ASSERT_TRUE(IsTold("Communication error", 18'000));
  const std::chrono::duration<double> waited = std::chrono::steady_clock::now() - asked;
  EXPECT_NEAR(waited.count(), 14, 1.5);
  EXPECT_EQ(program->Ask("modal"), kGraph) << "There is no message box.";

  line.Unplug();
  ASSERT_TRUE(program->Becomes("modal", "Communication port|Com port busy."));
  program->Click("OK");
  ASSERT_TRUE(program->Becomes("modal", kGraph));
  EXPECT_TRUE(IsTold("Communication stopped"));
  LeaveGraph();
}

}  // namespace
}  // namespace e2e
