// Whole exchanges byte by byte, with their times.

#include <gtest/gtest.h>

#include "common/numbers.h"
#include "common/text.h"
#include "form/monitor_fixture.h"

namespace tarnlink {
namespace {

using RunPoll = MonitorTest;

TEST_F(RunPoll, ReadsAByteWithTheFrameAndThePaceOfTheProtocol) {
  Screen({ByteAt("01A0")});
  Start();
  EXPECT_EQ(Sent(), "");
  Advance(19);
  EXPECT_EQ(Sent(), "");
  Advance(1);
  EXPECT_EQ(Sent(), "20 ms: 04 05 30 31 41 30 44 37 03\n");
  EXPECT_EQ(world.port().RThreshold(), 11);
  EXPECT_EQ(State(), "Waiting, port open, timers Comm_Timer tmr_noresponse tmr_MsgTimeout");

  Advance(7);
  Answer(Bytes("04 05 30 31 41 30 32 41 34 41 03"));
  EXPECT_EQ(Value(1), "2A");
  EXPECT_EQ(State(), "Ready, port open, timers Comm_Timer");
}

TEST_F(RunPoll, ReadsAWordWithTheFrameOfTheProtocol) {
  Screen({WordAt("01A0")});
  Start();
  Advance(20);
  EXPECT_EQ(Sent(), "20 ms: 04 01 30 31 41 30 44 33 03\n");
  EXPECT_EQ(world.port().RThreshold(), 13);
  Answer(Bytes("04 01 30 31 41 30 31 32 41 42 41 39 03"));
  EXPECT_EQ(Value(1), "12AB");
}

TEST_F(RunPoll, ReadsAsTheStorageTypeAsks) {
  struct Case {
    std::int32_t storage_type;
    std::string frame;
    int threshold;
  };
  const std::string byte_read = "04 05 30 31 41 30 44 37 03";
  const std::string word_read = "04 01 30 31 41 30 44 33 03";
  for (const Case& c : {Case{kBit, byte_read, 11}, Case{kUnsignedByte, byte_read, 11},
                        Case{kSignedByte, byte_read, 11}, Case{kUnsignedWord, word_read, 13},
                        Case{kSignedWord, word_read, 13}}) {
    Location location = ByteAt("01A0");
    location.StorageType = c.storage_type;
    monitor.screen.UnloadObjects();
    Screen({location});
    Start();
    Advance(20);
    EXPECT_EQ(HexText(world.port().TakeSent().back()), c.frame) << c.storage_type;
    EXPECT_EQ(world.port().RThreshold(), c.threshold) << c.storage_type;
    Stop();
  }
}

TEST_F(RunPoll, AsksTheNextLocationAtTheFirstTickAfterTheAnswer) {
  Screen({ByteAt("01A0"), ByteAt("01A1")});
  SlaveHolds({{"01A0", "A1"}, {"01A1", "A2"}}, 25);
  Start();
  Advance(100);
  // Answered at 45, 85 ms: the ticks at 60 and 100 ms go on.
  EXPECT_EQ(Sent(),
            "20 ms: 04 05 30 31 41 30 44 37 03\n"
            "60 ms: 04 05 30 31 41 31 44 38 03\n"
            "100 ms: 04 05 30 31 41 30 44 37 03\n");
  EXPECT_EQ(Value(1), "A1");
  EXPECT_EQ(Value(2), "A2");
}

TEST_F(RunPoll, SendsNothingMoreWhileAnAnswerIsOut) {
  Screen({ByteAt("01A0"), ByteAt("01A1")});
  Start();
  Advance(2999);
  EXPECT_EQ(Sent(), "20 ms: 04 05 30 31 41 30 44 37 03\n");
  EXPECT_EQ(State(), "Waiting, port open, timers Comm_Timer tmr_noresponse tmr_MsgTimeout");
}

TEST_F(RunPoll, StartsPollsTimesOutStopsAndStartsAgain) {
  Screen({ByteAt("01A0"), WordAt("01A2")});
  Start();
  EXPECT_EQ(Panel(4), "Communication Running");
  Advance(20);
  Answer(AnswerOf("01A0", "2A"));
  Advance(20);
  EXPECT_EQ(Sent(),
            "20 ms: 04 05 30 31 41 30 44 37 03\n"
            "40 ms: 04 01 30 31 41 32 44 35 03\n");

  ExpectSilentSlaveBox().While([this] { EXPECT_EQ(Now(), 3040); }).For(std::chrono::seconds(0));
  Advance(3000);
  EXPECT_EQ(Panel(4), "Communication Stopped");
  EXPECT_EQ(Value(1), "2A");
  Sent();

  Stop();
  EXPECT_EQ(State(), "Stopped, port closed, timers tmr_noresponse");
  Advance(3000);
  Stop();
  EXPECT_EQ(State(), "Stopped, port closed, no timers");
  Advance(10000);
  EXPECT_EQ(Sent(), "");

  const long restarted = Now();
  Start();
  Advance(20);
  EXPECT_EQ(Sent(), std::to_string(restarted + 20) + " ms: 04 05 30 31 41 30 44 37 03\n");
  Answer(AnswerOf("01A0", "2B"));
  EXPECT_EQ(Value(1), "2B");
  Stop();
  EXPECT_EQ(State(), "Stopped, port closed, no timers");
}

TEST_F(RunPoll, ShowsTheLocationThatIsAsked) {
  Location location = ByteAt("01A0");
  location.Alias = "Flow temperature";
  Screen({ByteAt("0000"), location});
  SlaveHolds({{"0000", "00"}});
  Start();
  EXPECT_EQ(Panel(5), "");
  Advance(20);
  EXPECT_EQ(Panel(5), "at 0000: 1");
  Advance(20);
  EXPECT_EQ(Panel(5), "Flow temperature: 2");
  Stop();
  EXPECT_EQ(Panel(5), "Flow temperature: 2");
}

TEST_F(RunPoll, ShowsAndExplainsEveryStatusPanel) {
  Screen({ByteAt("01A0"), ByteAt("01A1"), ByteAt("01A2")});
  const std::vector<std::pair<std::string, std::string>> panels = {
      {"Communication Parameters", "COM1, 9600,N,8, 1"},
      {"Number of locations on screen.", "Locations : 3"},
      {"Activated Protocol", "TarnLink Protocol"},
      {"Communication Status", "Communication Running"},
      {"Location which is read", "at 01A0: 1"},
      {"Remote Connection", "Local Connection Active"},
  };
  Start();
  Advance(20);
  int panel = 0;
  for (const auto& [tool_tip, text] : panels) {
    ++panel;
    EXPECT_EQ(monitor.main.StatusBar1(panel).ToolTipText.get(), tool_tip);
    EXPECT_EQ(Panel(panel), text);
  }
}

TEST_F(RunPoll, OpensThePortWithTheSettingsOfTheOptions) {
  Screen({ByteAt("01A0")});
  Start();
  EXPECT_EQ(world.port().opened_with(), (PortSettings{9600, 'N', 8, 1}));
}

TEST_F(RunPoll, PollsFiveHundredTwelveLocationsInOrder) {
  std::vector<Location> locations;
  std::map<std::string, std::string> memory;
  for (int i = 1; i <= kLastLocation; ++i) {
    const std::string address = Stuff(Hex(i), 4);
    locations.push_back(WordAt(address));
    memory[address] = address;
  }
  Screen(locations);
  SlaveHolds(memory);
  Start();
  Advance(20 * (kLastLocation + 1));
  const auto frames = world.port().TakeSent();
  ASSERT_EQ(frames.size(), static_cast<std::size_t>(kLastLocation) + 1);
  for (int i = 1; i <= kLastLocation; ++i) {
    EXPECT_EQ(frames[static_cast<std::size_t>(i - 1)].substr(2, 4), Stuff(Hex(i), 4));
    EXPECT_EQ(Value(i), Hex(i));
  }
  EXPECT_EQ(frames.back(), frames.front());
}

TEST_F(RunPoll, ThePollTickIsTwentyMillisecondsAndDoesNotRunWhileStopped) {
  EXPECT_EQ(monitor.main.Comm_Timer->Interval(), 20);
  EXPECT_EQ(monitor.main.tmr_noresponse->Interval(), 3000);
  EXPECT_EQ(State(), "Stopped, port closed, no timers");
}

}  // namespace
}  // namespace tarnlink
