// The error history in the control panel: its answers do not say which entry they are of.

#include "tools/control_panel_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

class ControlPanelHistory : public ControlPanelTest {
 protected:
  ControlPanelHistory() {
    panel.Show();
    ignores_errors = true;
  }

  // All up to the first entry.
  void Begin() {
    panel.cmdUpdateError.Press();
    Slowly("0000");
    EXPECT_EQ(Sent(), (Requests{"1 50 0000", "6 875 0000"}));
  }
  // As long after the request as the line needs at least.
  void Slowly(const std::string& data) {
    world.Advance(kAnswerTime);
    AnswerLast(kReadDone, data);
  }
  static std::string Entry(const std::string& data) { return PanelFrame(kReadDone + 6, 875, data); }
  std::string Code(int entry) { return panel.txt_ErrBufCode(entry).Text; }
  // What is asked for when the line has been quiet.
  Requests AskedInTheEnd() {
    world.Advance(kQuiet);
    return Sent();
  }

  static constexpr Micros kAnswerTime = 50ms;
  static constexpr Micros kQuiet = 1100ms;
};

TEST_F(ControlPanelHistory, IsWorkedOffWithoutAPauseOnASoundLine) {
  Begin();
  const Micros start = world.now();
  for (int entry = 0; entry < 8; ++entry) {
    Slowly("001" + std::to_string(entry));
    EXPECT_EQ(Code(entry), " " + std::to_string(16 + entry));
    const std::string next = std::to_string(entry + 1);
    EXPECT_EQ(Sent(), Requests{entry < 7 ? "6 875 0" + next + "00" : "6 916 0000"});
  }
  EXPECT_EQ(world.now() - start, 8 * kAnswerTime);
}

TEST_F(ControlPanelHistory, ALateEntryIsNotTakenForTheNextOne) {
  Begin();
  world.Advance(3s);
  EXPECT_EQ(Sent(), Requests{"6 875 0000"});
  AnswerLast(kReadDone, "0011");  // to the first request
  Receive(Entry("0011"));         // to the second
  EXPECT_EQ(Code(1), "");
  EXPECT_EQ(AskedInTheEnd(), Requests{"1 50 0000"});
  Slowly("0000");
  EXPECT_EQ(Sent(), Requests{"6 875 0100"});
  Slowly("0012");
  EXPECT_EQ(Code(0) + Code(1), " 17 18");
}

TEST_F(ControlPanelHistory, AVeryLateEntryIsNotTakenForTheNextOne) {
  Begin();
  world.Advance(5100ms);
  Sent();
  Receive(Entry("0011"));
  EXPECT_EQ(Code(0), " 17");
  EXPECT_EQ(AskedInTheEnd(), Requests{"1 50 0000"}) << "Its answer comes behind all that is out.";
  world.Advance(1900ms);
  Receive(Entry("0011"));
  EXPECT_EQ(Code(1), "");
  EXPECT_EQ(AskedInTheEnd(), Requests{"1 50 0000"});
  Receive(PanelFrame(kReadDone + 1, 50, "0000"));
  world.Advance(kQuiet);
  EXPECT_EQ(Sent(), Requests{"6 875 0100"});
  Slowly("0012");
  EXPECT_EQ(Code(0) + Code(1), " 17 18");
}

TEST_F(ControlPanelHistory, ADamagedEchoDoesNotShiftTheEntries) {
  Begin();
  std::string echo = world.port().frames().back().bytes;
  echo[9] = '!';
  Receive(echo);
  EXPECT_EQ(Sent(), Requests{"6 875 0000"});
  world.Advance(kAnswerTime);
  Receive(Entry("0011"));
  EXPECT_EQ(Code(0), " 17");
  EXPECT_EQ(Sent(), Requests{"1 50 0000"});
  Receive(Entry("0011"));
  EXPECT_EQ(AskedInTheEnd(), Requests{"1 50 0000"});
  Slowly("0000");
  EXPECT_EQ(AskedInTheEnd(), Requests{"6 875 0100"});
  Slowly("0012");
  EXPECT_EQ(Code(0) + Code(1), " 17 18");
}

TEST_F(ControlPanelHistory, ACorruptLateAnswerDoesNotShiftTheEntries) {
  Begin();
  world.Advance(3050ms);
  std::string corrupt = Entry("0011");
  corrupt[12] = '!';
  Receive(corrupt);  // to the first request
  EXPECT_EQ(Sent(), Requests(2, "6 875 0000"));
  world.Advance(kAnswerTime);
  Receive(Entry("0011"));  // to the second
  EXPECT_EQ(Code(0), " 17");
  EXPECT_EQ(AskedInTheEnd(), Requests{"1 50 0000"});
  Receive(Entry("0011"));  // to the third
  EXPECT_EQ(Code(1), "");
}

TEST_F(ControlPanelHistory, AnAnswerThatIsSentTwiceIsNotTheNextEntrys) {
  Begin();
  Slowly("0011");
  EXPECT_EQ(Sent(), Requests{"6 875 0100"});
  world.Advance(17ms);
  Receive(Entry("0011"));
  world.Advance(kAnswerTime);
  Receive(Entry("0012"));
  EXPECT_EQ(Code(1), "");
  EXPECT_EQ(AskedInTheEnd(), Requests{"1 50 0000"});
  Slowly("0000");
  EXPECT_EQ(Sent(), Requests{"6 875 0100"});
  Slowly("0012");
  EXPECT_EQ(Code(0) + Code(1), " 17 18");
}

TEST_F(ControlPanelHistory, AnAnswerThatIsSentTwiceAtOnceIsShownOnce) {
  Begin();
  world.Advance(kAnswerTime);
  Receive(Entry("0011") + Entry("0011"));
  EXPECT_EQ(Code(0) + Code(1), " 17");
  EXPECT_EQ(Sent(), Requests{}) << "A third one may follow.";
  EXPECT_EQ(AskedInTheEnd(), Requests{"6 875 0100"});
}

// Some adapters bring every answer sooner than the line could; others tell by their ID.
TEST_F(ControlPanelHistory, WhereOtherAnswersAreAsEarlyAnEarlyOneCounts) {
  panel.cmdUpdateError.Press();
  AnswerLast(kReadDone, "0000");
  for (int entry = 0; entry < 8; ++entry) {
    AnswerLast(kReadDone, "001" + std::to_string(entry));
    EXPECT_EQ(Code(entry), " " + std::to_string(16 + entry));
  }
  EXPECT_EQ(Sent().size(), 10U);
}

TEST_F(ControlPanelHistory, AClockThatIsSetBackDoesNotMakeAnAdapterFast) {
  Begin();
  Slowly("0011");
  world.clock().Set({2024, 3, 5, 12, 0, 0});
  Slowly("0012");
  world.Advance(17ms);
  Receive(Entry("0012"));
  EXPECT_EQ(Code(1) + Code(2), " 18") << "It has come twice.";
}

TEST_F(ControlPanelHistory, AnEarlyAnswerCountsThatIsNotTheSame) {
  Begin();
  Slowly("0011");
  AnswerLast(kReadDone, "0012");
  EXPECT_EQ(Code(0) + Code(1), " 17 18");
}

TEST_F(ControlPanelHistory, AnEntryThatIsTheSameIsAskedForBehindTheErrorCode) {
  Begin();
  Slowly("0011");
  world.Advance(17ms);
  AnswerLast(kReadDone, "0011");
  EXPECT_EQ(Code(1), "");
  Sent();
  EXPECT_EQ(AskedInTheEnd(), Requests{"1 50 0000"});
  Slowly("0000");
  world.Advance(17ms);
  AnswerLast(kReadDone, "0011");
  EXPECT_EQ(Code(1), " 17");
}

TEST_F(ControlPanelHistory, EntriesThatAreTheSameTakeNoLonger) {
  Begin();
  for (int entry = 0; entry < 8; ++entry) Slowly("0011");
  EXPECT_EQ(Code(7), " 17");
  EXPECT_EQ(Sent().size(), 8U);
}

TEST_F(ControlPanelHistory, AnEntryThatNobodyAskedForIsDropped) {
  panel.cmdUpdateStatus.Press();
  world.Advance(kAnswerTime);
  Receive(Entry("0011"));
  Answer(kReadDone + 6, 916, "0011");
  EXPECT_EQ(Code(0), "");
  EXPECT_EQ(panel.txt_ErrBuffTime(0).Text.get(), "");
}

// The entries begin behind the error code, whatever was out before.
TEST_F(ControlPanelHistory, AnUpdateInTheMiddleDoesNotShiftTheEntries) {
  Begin();
  Slowly("0011");
  Slowly("0012");
  panel.cmdUpdateError.Press();
  Receive(Entry("0013"));  // to the request before the press
  EXPECT_EQ(AskedInTheEnd().back(), "1 50 0000");
  Slowly("0000");
  world.Advance(kQuiet);
  EXPECT_EQ(Sent(), Requests{"6 875 0000"});
  Slowly("0021");
  EXPECT_EQ(Code(0) + Code(1) + Code(2), " 33 18");
}

}  // namespace
}  // namespace tarnlink
