// The generator of wrong messages against the simulated boiler: what a slave says to what is wrong,
// and ten thousand messages on a bad line.

#include <gtest/gtest.h>

#include <utility>

#include "common/run_time_error.h"
#include "form/boiler_on_line.h"
#include "tools/line_faults.h"
#include "tools/wrong_message_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr boiler::LineOptions kLine = {.pace = {.baud = 9600}, .answer_delay_us = 5'000};

class WrongMessagesOnLine : public WrongMessageTest {
 protected:
  explicit WrongMessagesOnLine(std::uint64_t seed = 1)
      : boiler(world,
               {.protocol = "zolt",
                .slave = {.addresses = "0,3,A", .answers_corrupted = true},
                .line = kLine,
                .seed = seed},
               [this](const boiler::LogEntry& entry) {
                 if (entry.kind == boiler::LogKind::kFault) ++struck;
               }) {}

  // "Read Acknowledge", "No Response".
  std::string Outcome() {
    const std::string nothing = "critical box [Communication Problem] No Response (OK)";
    tool.cmd_SendErrMsg.Press();
    world.RunUntil([&] { return !tool.tim_IPMsgErr->Enabled(); }, 2s);
    const auto shown = world.dialogs().TakeShown();
    if (shown.empty()) return tool.txtStatus.Text;
    EXPECT_EQ(shown, std::vector<std::string>{nothing});
    return "No Response";
  }
  std::string Silence() {
    ExpectNoResponse(world);
    return Outcome();
  }
  void Type(const std::string& digits) {
    for (std::size_t i = 0; i < digits.size(); ++i) {
      Box(static_cast<int>(i) + 2).Text = digits.substr(i, 1);
    }
  }

  int struck = 0;
  BoilerOnLine boiler;
};

TEST_F(WrongMessagesOnLine, EachOfTheThreeSlavesAnswersTheDefaultMessage) {
  for (const char* slave : {"0", "3", "A"}) {
    Box(2).Text = slave;
    EXPECT_EQ(Outcome(), "Read Acknowledge");
    EXPECT_EQ(BoxTexts(tool.txt_RecErrMsg, 0, 6), std::string("0D 11 ") + slave + " 0 0 0 1");
  }
  Box(2).Text = "5";
  EXPECT_EQ(Silence(), "No Response");
}

TEST_F(WrongMessagesOnLine, AWrongCrcIsCorrupted) {
  Tick(0);
  EXPECT_EQ(Outcome(), "Corrupted Message");
  Tick(0, false);
  EXPECT_EQ(Outcome(), "Read Acknowledge");
}

TEST_F(WrongMessagesOnLine, ControlBytesAndDigitsThatAreNoneAreCorrupted) {
  Tick(1);
  EXPECT_EQ(Outcome(), "Corrupted Message");
  Tick(1, false);
  Box(5).Text = "g";
  EXPECT_EQ(Outcome(), "Corrupted Message");
}

TEST_F(WrongMessagesOnLine, AnIdThatNobodyKnowsIsUnknown) {
  Type("00BAD");
  EXPECT_EQ(Outcome(), "Unknown Data ID");
}

TEST_F(WrongMessagesOnLine, WritesAreAcknowledgedOrOutsideTheRange) {
  Box(1).Text = "85";
  Type("0056D2800");
  EXPECT_EQ(Outcome(), "Write Acknowledge");
  Type("0056DFF00");
  EXPECT_EQ(Outcome(), "Parameter outside range");
}

TEST_F(WrongMessagesOnLine, AFrameThatIsNoneIsNotAnswered) {
  Box(0).Text = "0C";
  EXPECT_EQ(Silence(), "No Response");
  tool.cmd_ResetDefault.Press();
  Box(4).Text = "";
  EXPECT_EQ(Silence(), "No Response");
  world.Advance(100ms);
  tool.cmd_ResetDefault.Press();
  EXPECT_EQ(Outcome(), "Read Acknowledge");
}

// --- Ten thousand messages -----------------------------------------------------------------------

class WrongMessagesBadLine : public WrongMessagesOnLine {
 protected:
  explicit WrongMessagesBadLine(std::uint64_t seed = 7) : WrongMessagesOnLine(seed) {
    world.port().on_input = [this](std::string_view bytes) { input += bytes; };
    ExpectSilences();
  }
  ~WrongMessagesBadLine() override { world.port().on_input = nullptr; }

  // From now on each box is closed, at once or after a while.
  void ExpectSilences() {
    ExpectNoResponse(world)
        .While([this] {
          ++silences;
          if (!ending) ExpectSilences();
        })
        .For(silences % 3 * 400ms);
  }
  // One message; at times another one before its answer, at times the user plugs in again.
  void SendOne(int turn, const std::string& what) {
    input.clear();
    const int before = silences;
    Box(6).Text = turn % 2 == 0 ? "1" : "2";
    Tick(0, turn % 5 == 4);
    Tick(1, turn % 7 == 6);
    tool.cmd_SendErrMsg.Press();
    if (turn % 11 == 10) {
      world.Advance(10ms);
      tool.cmd_SendErrMsg.Press();
    }
    const bool is_out = tool.tim_IPMsgErr->Enabled();
    ASSERT_EQ(is_out, world.port().PortOpen()) << what;
    ASSERT_TRUE(is_out || !tool.txtStatus.Text.get().empty()) << "It says why: " << what;
    world.Advance(2200ms);
    const bool is_answered = !tool.txt_ReturnedData.Text.get().empty();
    if (is_out) {
      ASSERT_EQ((is_answered ? 1 : 0) + silences - before, 1) << what;
    }
    ASSERT_EQ(State(), "idle") << what;
    ExpectReceived(is_answered, what);
    if (turn % 3 == 2) world.port().PlugIn();
    ++messages;
    if (messages % 500 == 0) world.port().Forget();
  }
  void ExpectReceived(bool is_answered, const std::string& what) {
    if (!is_answered) {
      ASSERT_EQ(Received(), std::string(15, ' ')) << what;
      return;
    }
    // What was sent may come back before the answer, and is none; alone it is one.
    const std::string sent = world.port().frames().back().bytes;
    if (input.substr(0, sent.size()) == sent && input != sent) input.erase(0, sent.size());
    ASSERT_GE(input.size(), 16U) << what;
    for (int i = 0; i < 16; ++i) {
      const std::string code = HexText(input.substr(static_cast<std::size_t>(i), 1));
      ASSERT_EQ(tool.txt_RecErrMsg(i).ToolTipText.get(), "Hex " + code) << what;
    }
  }
  void ExpectRecovery(const std::string& what) {
    world.faults().Clear();
    boiler.Calm();
    world.port().PlugIn();
    world.Advance(6s);
    Tick(0, false);
    Tick(1, false);
    tool.cmd_ResetDefault.Press();
    EXPECT_EQ(Outcome(), "Read Acknowledge") << what;
  }
  void End() {
    ending = true;
    Box(2).Text = "5";
    tool.cmd_SendErrMsg.Press();
    world.Advance(2200ms);
  }

  std::string input;
  int silences = 0;
  long messages = 0;
  bool ending = false;
};

class WrongMessagesFault : public WrongMessagesBadLine,
                           public ::testing::WithParamInterface<std::string> {};

TEST_P(WrongMessagesFault, EndsInAnAnswerOrNoneAndPasses) {
  for (const char* rate : {"@0.1", "@0.6"}) {
    const std::string what = GetParam() + rate;
    boiler.line().AddFault(what);
    const int count = ExchangesEach(LineFaults().size() * 2);
    for (int turn = 0; turn < count && !HasFatalFailure(); ++turn) SendOne(turn, what);
    EXPECT_GT(std::exchange(struck, 0), 0) << what;
    world.dialogs().TakeShown();
    ExpectRecovery(what);
  }
  End();
}

INSTANTIATE_TEST_SUITE_P(Each, WrongMessagesFault, ::testing::ValuesIn(LineFaults()),
                         LineFaultName);

TEST_F(WrongMessagesBadLine, StandsAllFaultsTogetherAndCallsThatFail) {
  const std::vector<std::string> kCalls = {"Port.Open", "Port.Output", "Port.Input"};
  const std::string share = "@" + std::to_string(0.7 / static_cast<double>(LineFaults().size()));
  for (const std::string& fault : LineFaults()) boiler.line().AddFault(fault + share);
  for (int turn = 0; turn < 10'000 && !HasFatalFailure(); ++turn) {
    if (turn % 20 == 0 && world.faults().Spent()) BreakACall(world.faults(), kCalls, turn / 20);
    SendOne(turn, "turn " + std::to_string(turn));
  }
  EXPECT_EQ(messages, 10'000);
  EXPECT_GT(silences, 1'000);
  EXPECT_GT(struck, 2'000);
  world.dialogs().TakeShown();
  ExpectRecovery("all together");
  End();
}

}  // namespace
}  // namespace tarnlink
