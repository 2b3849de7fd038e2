// The configuration check on a line that is not quiet: what is late, what comes twice, what is
// somebody else's, and when the next message goes out.

#include <algorithm>
#include <map>

#include "tools/cfg_check_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr const char* kQuestion = "The check is running. Stop it and close the window?";

class CfgCheckQuiet : public CfgCheckTest {
 protected:
  // Every few milliseconds, for as long as the test runs.
  void Babble(std::string bytes, Micros gap) {
    world.time().Post(gap, [this, bytes, gap] {
      world.port().Receive(bytes);
      Babble(bytes, gap);
    });
  }
  // What goes out within `span`.
  std::string AskedIn(Micros span) {
    world.Advance(span);
    return Sent();
  }
  bool SaysThatItWaits() const {
    return State().find(", waiting for a quiet line; ") != std::string::npos;
  }
};

// --- Noise ---

TEST_F(CfgCheckQuiet, GoesOnWhereTheLineIsNeverQuiet) {
  Begin(kOneItem);
  Babble("x", 30ms);
  EXPECT_EQ(Asked(), "nothing");
  EXPECT_TRUE(SaysThatItWaits());
  EXPECT_EQ(State(),
            "ID 056D (CH setpoint): reading the default, waiting for a quiet line; 1 left");
  EXPECT_EQ(AskedIn(1900ms), "nothing");
  EXPECT_EQ(AskedIn(300ms), "read 056D");
  EXPECT_FALSE(SaysThatItWaits());
  // Behind the bytes that came before, the answer would be torn; behind none it is taken.
  Receive(Frame(kCfgReadDone, 60));
  EXPECT_EQ(tool.CfgStage, 1);
}

TEST_F(CfgCheckQuiet, WaitsUntilTheNoiseInThePauseIsOver) {
  Begin(kOneItem);
  Asked();
  Receive(Frame(kCfgReadDone, 60));
  world.Advance(50ms);
  Receive("xyz");
  EXPECT_EQ(AskedIn(400ms), "nothing");
  EXPECT_TRUE(SaysThatItWaits());
  Receive("x");
  EXPECT_EQ(AskedIn(400ms), "nothing");
  EXPECT_EQ(AskedIn(60ms), "write 056D 30");
  Receive(Frame(kCfgWritten, 30));
  EXPECT_EQ(tool.CfgStage, 2);
}

TEST_F(CfgCheckQuiet, IsNotHeldUpByTheFramesOfAnotherMaster) {
  Begin(kOneItem);
  Asked();
  Receive(Frame(kCfgReadDone, 60));
  world.Advance(20ms);
  Receive(BuildZoltMessage(0x01, "0", 0x0001, 0, 0));
  world.Advance(20ms);
  Receive(BuildZoltMessage(0x11, "0", 0x0001, 0x12, 0x34));
  EXPECT_EQ(AskedIn(60ms), "write 056D 30");
  Receive(BuildZoltMessage(0x01, "0", 0x0001, 0, 0));
  Receive(BuildZoltMessage(0x11, "0", 0x0001, 0x12, 0x34));
  Receive(Frame(kCfgWritten, 30));
  EXPECT_EQ(tool.CfgStage, 2);
  EXPECT_EQ(Asked(), "read 056D");
}

TEST_F(CfgCheckQuiet, DoesNotSpeakIntoAFrameThatIsComing) {
  Begin(kOneItem);
  Asked();
  Receive(Frame(kCfgReadDone, 60));
  world.Advance(90ms);
  Receive(BuildZoltMessage(0x11, "0", 0x0001, 0x12, 0x34).substr(0, 9));
  EXPECT_EQ(AskedIn(10ms), "nothing");
  EXPECT_TRUE(SaysThatItWaits());
}

// --- Answers that are late or come twice ---

TEST_F(CfgCheckQuiet, WaitsForAQuietLineBehindASecondAnswerInThePause) {
  Begin(kOneItem);
  PassTo(2);
  EXPECT_EQ(Asked(), "read 056D");
  Receive(Frame(kCfgReadDone, 30));
  world.Advance(60ms);
  Receive(Frame(kCfgReadDone, 30));
  EXPECT_EQ(AskedIn(420ms), "nothing");
  EXPECT_EQ(AskedIn(40ms), "write 056D 29");
}

TEST_F(CfgCheckQuiet, SkipsTheAnswerToAWriteWhereItReads) {
  for (const int stage : {0, 2, 5}) {
    Begin(kOneItem);
    PassTo(stage);
    EXPECT_EQ(Asked(), "read 056D");
    Receive(Frame(kCfgWritten, 30));
    EXPECT_EQ(tool.CfgStage, stage);
    EXPECT_EQ(Result(), "\t\t");
    Receive(Frame(kCfgReadDone, stage == 0 ? 60 : stage == 2 ? 30 : 85));
    EXPECT_NE(tool.CfgStage, stage);
    tool.cmd_Stop.Press();
    world.Advance(1s);
  }
}

TEST_F(CfgCheckQuiet, SkipsTheAnswerToAReadWhereItWrites) {
  for (const int stage : {1, 3, 4, 6}) {
    Begin(kOneItem);
    PassTo(stage);
    Asked();
    Receive(Frame(kCfgReadDone, stage == 1 ? 60 : stage == 6 ? 85 : 30));
    EXPECT_EQ(tool.CfgStage, stage);
    EXPECT_EQ(Result(), "\t\t");
    // Nothing else came: it is sent once more.
    EXPECT_EQ(AskedIn(300ms), "nothing") << stage;
    EXPECT_TRUE(AskedIn(2400ms).starts_with("write 056D ")) << stage;
    EXPECT_NE(State().find(", an old answer came, repeated once; "), std::string::npos) << State();
    tool.cmd_Stop.Press();
    world.Advance(1s);
  }
}

TEST_F(CfgCheckQuiet, SkipsTheRefusalOfTheWriteBefore) {
  Begin(kOneItem);
  PassTo(4);
  EXPECT_EQ(Asked(), "write 056D 85");
  Receive(Frame(kCfgOutside, 29));
  EXPECT_EQ(tool.CfgStage, 4);
  Receive(Frame(kCfgWritten, 85));
  EXPECT_EQ(tool.CfgStage, 5);
}

TEST_F(CfgCheckQuiet, SkipsTheRefusalOfTheSameIdOnTheLineBefore) {
  Begin(std::string(kOneItem) + kOneItem);
  PassTo(7);
  EXPECT_EQ(Asked(), "read 056D");
  Receive(Frame(kCfgOutside, 86));
  EXPECT_EQ(Result(1), "\t\t");
  Receive(Frame(kCfgReadDone, 60));
  EXPECT_EQ(tool.CfgStage, 1);
}

TEST_F(CfgCheckQuiet, DoesNotCallALimitRightByAnOldRefusal) {
  Begin(kOneItem);
  PassTo(6);
  EXPECT_EQ(Asked(), "write 056D 86");
  Receive(Frame(kCfgOutside, 29));
  EXPECT_EQ(Result(), "\t\t");
  Receive(Frame(kCfgWritten, 30));
  EXPECT_EQ(Result(), "\t\t");
  Receive(Frame(kCfgWritten, 86));
  EXPECT_EQ(Result(), "Maximum limit incorrect");
}

// Some say what they hold, or nothing.
TEST_F(CfgCheckQuiet, NeedsNoSlaveThatGivesBackWhatWasWritten) {
  for (const bool holds : {false, true}) {
    Begin(kOneItem);
    const std::string answers[] = {Frame(kCfgReadDone, 60),
                                   Frame(kCfgWritten, holds ? 30 : 0),
                                   Frame(kCfgReadDone, 30),
                                   Frame(kCfgOutside, holds ? 30 : 0),
                                   Frame(kCfgWritten, holds ? 85 : 0),
                                   Frame(kCfgReadDone, 85),
                                   Frame(kCfgOutside, holds ? 85 : 0)};
    for (const std::string& answer : answers) {
      EXPECT_NE(Asked(), "nothing");
      Receive(answer);
    }
    EXPECT_EQ(Result(), "OK");
  }
}

// What looks like the answer to an older message, and comes again behind a quiet line, is what the
// slave has to say.
class CfgCheckSame : public CfgCheckQuiet {
 protected:
  // The answer comes, and once more to the repeat; the quiet between them is as long as it is told.
  void AnswerTwice(const std::string& answer) {
    ASSERT_NE(Asked(), "nothing");
    Receive(answer);
    world.Advance(300ms);
    EXPECT_EQ(Sent(), "nothing") << "It waits for a quiet line.";
    world.Advance(2200ms);
    ASSERT_NE(Sent(), "nothing");
    Receive(answer);
  }
};

TEST_F(CfgCheckSame, ASlaveThatGivesBackNothingIsJudgedWhereTheMinimumIsZero) {
  Begin("095C\t0\t255\t0\tHeat demand\t1\r\n");
  for (const std::string& answer : {Frame(kCfgReadDone, 0, 0x95C), Frame(kCfgWritten, 0, 0x95C),
                                    Frame(kCfgReadDone, 0, 0x95C)}) {
    ASSERT_NE(Asked(), "nothing");
    Receive(answer);
  }
  AnswerTwice(Frame(kCfgWritten, 0, 0x95C));
  world.Advance(1s);
  world.port().TakeSent();
  Receive(Frame(kCfgReadDone, 255, 0x95C));
  EXPECT_EQ(Result(), "OK");
}

TEST_F(CfgCheckSame, AKindThatDoesNotFitIsToldInTheEnd) {
  Begin(kOneItem);
  AnswerTwice(Frame(kCfgWritten, 60));
  EXPECT_EQ(Result(), "Wrong default value");
  world.Advance(2s);
  Begin(kOneItem);
  PassTo(1);
  AnswerTwice(Frame(kCfgReadDone, 30));
  EXPECT_EQ(Result(), "Minimum is not written");
}

// Each of them by itself: what came once behind a quiet line has not come again.
TEST_F(CfgCheckSame, AnotherOldAnswerIsNotJudgedBehindTheQuietOfTheFirst) {
  Begin(kOneItem);
  PassTo(6);
  EXPECT_EQ(Asked(), "write 056D 86");
  Receive(Frame(kCfgWritten, 30));
  EXPECT_EQ(AskedIn(300ms), "nothing");
  EXPECT_EQ(AskedIn(2200ms), "write 056D 86");
  Receive(Frame(kCfgOutside, 29));
  EXPECT_EQ(AskedIn(1s), "nothing");
  Receive(Frame(kCfgOutside, 29));
  EXPECT_EQ(Result(), "\t\t");
  EXPECT_EQ(AskedIn(2300ms), "write 056D 86");
  Receive(Frame(kCfgWritten, 86));
  EXPECT_EQ(Result(), "Maximum limit incorrect");
}

TEST_F(CfgCheckSame, AnAnswerThatIsArrivingWhenTheTimeIsUpIsTaken) {
  Begin(kOneItem);
  EXPECT_EQ(Asked(), "read 056D");
  world.Advance(295ms);
  const std::string answer = Frame(kCfgReadDone, 60);
  Receive(answer.substr(0, 7));
  world.Advance(10ms);
  EXPECT_EQ(Sent(), "nothing");
  Receive(answer.substr(7));
  EXPECT_EQ(tool.CfgStage, 1);
  EXPECT_EQ(Asked(), "write 056D 30");
  // The rest of one that never comes is not waited for twice.
  world.Advance(295ms);
  Receive(answer.substr(0, 7));
  world.Advance(10ms);
  EXPECT_EQ(Sent(), "nothing");
  world.Advance(300ms);
  EXPECT_EQ(Sent(), "write 056D 30");
}

// A slave on the far end, each answer of which comes once more.
class TwiceAnsweringSlave {
 public:
  struct Limits {
    int lowest;
    int highest;
    int value;
  };
  TwiceAnsweringSlave(FakeWorld& world, Micros apart) : apart_(apart) {
    world.on_output = [this](FakeSerialPort& port, std::string_view frame) {
      const std::string answer = AnswerTo(std::string(frame));
      port.ReceiveIn(40ms, answer);
      port.ReceiveIn(40ms + apart_, answer);
    };
  }
  std::map<int, Limits> items = {{0x56D, {30, 85, 60}}, {0x5F4, {35, 65, 50}}};

 private:
  std::string AnswerTo(const std::string& frame) {
    const int id = std::stoi(frame.substr(3, 4), nullptr, 16);
    Limits& one = items.at(id);
    if (frame[1] == 0x05) return Answer(0x10, id, one.value);
    const int value = std::stoi(frame.substr(7, 2), nullptr, 16);
    const bool takes = value >= one.lowest && value <= one.highest;
    if (takes) one.value = value;
    return Answer(takes ? 0x90 : 0x40, id, value);
  }
  static std::string Answer(int kind, int id, int value) {
    return BuildZoltMessage(static_cast<std::uint8_t>(kind + 5), "0", id,
                            static_cast<std::uint8_t>(value), 0);
  }

  Micros apart_;
};

TEST_F(CfgCheckQuiet, JudgesRightWhereEachAnswerComesTwice) {
  // The first ID once more behind itself: what is late for one is not taken for the other.
  const std::string file =
      std::string(kOneItem) + "056D\t30\t85\t-\t\t1\r\n05F4\t35\t65\t50\tDHW\t1\r\n";
  for (int apart = 0; apart <= 200; apart += 5) {
    TwiceAnsweringSlave slave(world, std::chrono::milliseconds(apart));
    SCOPED_TRACE(std::to_string(apart) + " ms");
    Begin(file);
    EXPECT_TRUE(world.RunUntil([&] { return !tool.IsRunning(); }, 1min));
    EXPECT_EQ(Result(0) + ", " + Result(1) + ", " + Result(2), "OK, OK, OK");
    world.Advance(1s);
    slave.items = {{0x56D, {29, 85, 60}}, {0x5F4, {35, 66, 50}}};
    tool.cmd_Check.Press();
    EXPECT_TRUE(world.RunUntil([&] { return !tool.IsRunning(); }, 1min));
    EXPECT_EQ(Result(0), "Minimum limit incorrect");
    EXPECT_EQ(Result(1), "Minimum limit incorrect");
    EXPECT_EQ(Result(2), "Maximum limit incorrect");
    world.Advance(1s);
    world.port().TakeSent();
  }
  world.on_output = nullptr;
}

// --- Stop and begin anew ---

TEST_F(CfgCheckQuiet, BeginsWithAQuietLineWhereAnAnswerWasStillOut) {
  Begin(kOneItem);
  PassTo(5);
  EXPECT_EQ(Asked(), "read 056D");
  tool.cmd_Stop.Press();
  tool.cmd_Check.Press();
  EXPECT_TRUE(SaysThatItWaits());
  world.Advance(150ms);
  Receive(Frame(kCfgReadDone, 85));
  EXPECT_EQ(AskedIn(420ms), "nothing");
  EXPECT_EQ(AskedIn(40ms), "read 056D");
  EXPECT_EQ(tool.CfgStage, 0);
  Receive(Frame(kCfgReadDone, 60));
  // Where none is, or none can come any more, it begins at once.
  world.Advance(50ms);
  tool.cmd_Stop.Press();
  tool.cmd_Check.Press();
  EXPECT_EQ(Asked(), "read 056D");
  tool.cmd_Stop.Press();
  world.Advance(1s);
  tool.cmd_Check.Press();
  EXPECT_EQ(Asked(), "read 056D");
}

TEST_F(CfgCheckQuiet, BeginsWithAQuietLineWhereItWaitedForOne) {
  Begin(kOneItem);
  Asked();
  Receive(Frame(kCfgReadDone, 60) + "xy");
  EXPECT_TRUE(SaysThatItWaits());
  tool.cmd_Stop.Press();
  tool.cmd_Check.Press();
  EXPECT_EQ(AskedIn(420ms), "nothing");
  EXPECT_EQ(AskedIn(40ms), "read 056D");
}

// --- While the user is asked ---

TEST_F(CfgCheckQuiet, SendsNothingWhileTheUserReadsTheQuestion) {
  Begin(kOneItem);
  EXPECT_EQ(Asked(), "read 056D");
  Receive(Frame(kCfgReadDone, 60));
  world.dialogs().ExpectMessageBox(kQuestion, "Configuration check").For(30s).Press(Answer::kNo);
  tool.Unload();
  EXPECT_EQ(Sent(), "nothing");
  EXPECT_EQ(Asked(), "write 056D 30");
  // A message that is out is not repeated either, and its answer counts.
  world.dialogs()
      .ExpectMessageBox(kQuestion, "Configuration check")
      .While([this] { world.port().ReceiveIn(20s, Frame(kCfgWritten, 30)); })
      .For(30s)
      .Press(Answer::kNo);
  tool.Unload();
  EXPECT_EQ(Sent(), "nothing");
  EXPECT_EQ(tool.CfgStage, 2);
  EXPECT_EQ(Asked(), "read 056D");
  world.dialogs().ExpectMessageBox(kQuestion, "Configuration check").For(30s).Press(Answer::kNo);
  tool.Unload();
  EXPECT_EQ(Sent(), "nothing");
  EXPECT_EQ(AskedIn(300ms), "read 056D");
}

TEST_F(CfgCheckQuiet, SendsNothingBehindAQuietLineEitherWhileTheUserReads) {
  Begin(kOneItem);
  Asked();
  EXPECT_EQ(AskedIn(300ms), "read 056D");
  Receive(Frame(kCfgReadDone, 60) + "xy");
  EXPECT_TRUE(SaysThatItWaits());
  world.dialogs()
      .ExpectMessageBox(kQuestion, "Configuration check")
      .For(30s)
      .While([this] {
        world.Advance(5s);
        EXPECT_EQ(State(), "ID 056D (CH setpoint): writing 30; 1 left");
      })
      .Press(Answer::kYes);
  tool.Unload();
  EXPECT_EQ(Sent(), "nothing");
  ExpectIdle();
}

}  // namespace
}  // namespace tarnlink
