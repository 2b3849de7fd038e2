// The rows of a log under the TarnLink protocol, piece by piece and in every order of events.

#include <gtest/gtest.h>

#include "form/log_fixture.h"

namespace tarnlink {
namespace {

class LogRow : public LogTest {
 protected:
  // Three logged Locations and a slave that holds A1, A2, A3.
  void RunThree() {
    Screen({Logged(ByteAt("0001")), Logged(ByteAt("0002")), Logged(ByteAt("0003"))});
    HoldAgain();
    StartLog();
  }
  void HoldAgain() { SlaveHolds({{"0001", "A1"}, {"0002", "A2"}, {"0003", "A3"}}); }
  // The answer to one poll.
  void Tick() { Advance(20); }

  void AddLocation() { monitor.main.Toolbar1(1).Press(); }
  void Undo() { monitor.main.mnuUndo.Press(); }
  void Redo() { monitor.main.mnuRedo.Press(); }
};

TEST_F(LogRow, GrowsByATabAtTheRequestAndByTheValueAtTheResponse) {
  Screen({Logged(ByteAt("0001")), ByteAt("0002"), Logged(WordAt("0003", kDecimal))});
  StartLog();
  Tick();
  EXPECT_EQ(Rows(), "14:07:09|");
  Answer(AnswerOf("0001", "A1"));
  EXPECT_EQ(Rows(), "14:07:09|A1");
  Tick();
  Answer(AnswerOf("0002", "A2"));
  EXPECT_EQ(Rows(), "14:07:09|A1");
  Tick();
  EXPECT_EQ(Rows(), "14:07:09|A1|");
  Answer(AnswerOf("0003", "8001"));
  EXPECT_EQ(Rows(), "14:07:09|A1|-32767\n14:07:09");
}

TEST_F(LogRow, TheRequestIsOutBeforeItsTab) {
  Screen({Logged(ByteAt("0001"))});
  StartLog();
  world.on_output = [this](FakeSerialPort&, std::string_view) { EXPECT_EQ(Rows(), "14:07:09"); };
  Tick();
  EXPECT_EQ(Rows(), "14:07:09|");
}

TEST_F(LogRow, EveryPieceIsOneWrite) {
  Screen({Logged(ByteAt("0001")), Logged(ByteAt("0002"))});
  SlaveHolds({{"0001", "A1"}, {"0002", "A2"}});
  StartLog();
  const int before = world.faults().CountOf("Rows.Append");
  // Two tabs, two values, a line end, a time.
  Advance(59);
  EXPECT_EQ(world.faults().CountOf("Rows.Append"), before + 6);
}

TEST_F(LogRow, BearsTheTimeAtWhichItsRoundBegan) {
  Screen({Logged(ByteAt("0001"))});
  StartLog();
  Tick();
  world.clock().Set({2024, 3, 5, 23, 59, 59});
  Answer(AnswerOf("0001", "A1"));
  Tick();
  world.clock().Set({2024, 3, 6, 0, 0, 0});
  Answer(AnswerOf("0001", "A2"));
  EXPECT_EQ(Rows(), "14:07:09|A1\n23:59:59|A2\n00:00:00");
}

TEST_F(LogRow, StopClosesTheFileInTheMiddleOfTheLine) {
  RunThree();
  Advance(65);
  Tick();
  Stop();
  EXPECT_FALSE(monitor.main.filelogging);
  EXPECT_EQ(Rows(), "14:07:09|A1|A2|A3\n14:07:09|A1");
  Advance(1000);
  EXPECT_EQ(Rows(), "14:07:09|A1|A2|A3\n14:07:09|A1");
}

TEST_F(LogRow, AMessageTimeoutClosesTheFileInTheMiddleOfTheLine) {
  RunThree();
  Tick();
  Answer("");
  SlaveIsSilent();
  ExpectSilentSlaveBox();
  Advance(4000);
  EXPECT_FALSE(monitor.main.filelogging);
  // The watchdog has taken the scan on while the box was up.
  EXPECT_EQ(Rows(), "14:07:09|A1||");
}

TEST_F(LogRow, AScreenLoadAndANewScreenCloseTheFile) {
  RunThree();
  Advance(45);
  monitor.main.M_NewScreen.Press();
  EXPECT_FALSE(monitor.main.filelogging);
  EXPECT_EQ(Rows(), "14:07:09|A1|A2");
  world.disk().Put("/jobs/a.wcr", "16744576\r\n");
  monitor.screen.OpenTarnLinkFileBuildScreen("/jobs/a.wcr");
  EXPECT_EQ(Rows(), "14:07:09|A1|A2");
}

TEST_F(LogRow, AScreenLoadClosesTheFileOfARun) {
  RunThree();
  Advance(45);
  world.disk().Put("/jobs/a.wcr", "16744576\r\n");
  monitor.screen.OpenTarnLinkFileBuildScreen("/jobs/a.wcr");
  EXPECT_FALSE(monitor.main.filelogging);
  Advance(1000);
  EXPECT_EQ(Rows(), "14:07:09|A1|A2");
}

TEST_F(LogRow, AVanishedDeviceClosesTheFile) {
  RunThree();
  Advance(45);
  world.port().Unplug();
  ExpectDeviceGoneBox();
  Advance(1000);
  EXPECT_FALSE(monitor.main.filelogging);
  EXPECT_EQ(Rows(), "14:07:09|A1|A2");
}

// --- Locations that come, go and change ----------------------------------------------------------

TEST_F(LogRow, ADeletedLocationTakesItsFieldOutOfTheRow) {
  Screen({Logged(ByteAt("0001")), Logged(ByteAt("0002"))});
  HoldAgain();
  StartLog();
  Advance(45);
  Delete(1);
  Advance(55);
  EXPECT_EQ(Text(),
            "5-Mar-2024|\n||at 0001(0001)|at 0002(0002)\n14:07:09|A1|A2\n14:07:09|A2\n14:07:09");
}

TEST_F(LogRow, ADeletedLastLocationTakesItsFieldOutOfTheRow) {
  RunThree();
  Advance(65);
  const int row = monitor.main.DDERowCounter;
  Delete(3);
  Advance(60);
  EXPECT_EQ(Rows(), "14:07:09|A1|A2|A3\n14:07:09|A1|A2");
  Advance(20);
  EXPECT_EQ(Rows(), "14:07:09|A1|A2|A3\n14:07:09|A1|A2\n14:07:09");
  // Only the log begins a new row there.
  EXPECT_EQ(monitor.main.DDERowCounter, row);
}

TEST_F(LogRow, ALocationThatIsDeletedBehindItsRequestLeavesItsFieldEmpty) {
  Screen({Logged(ByteAt("0001")), Logged(ByteAt("0002"))});
  StartLog();
  Tick();
  Delete(1);
  Answer(AnswerOf("0001", "A1"));
  Tick();
  Answer(AnswerOf("0002", "A2"));
  EXPECT_EQ(Rows(), "14:07:09||A2\n14:07:09");
}

TEST_F(LogRow, AnAddedLocationHasNoField) {
  RunThree();
  Advance(65);
  AddLocation();
  monitor.main.Locations[4].LogEnable = 1;
  Advance(80);
  EXPECT_EQ(Rows(), "14:07:09|A1|A2|A3\n14:07:09|A1|A2|A3");
  Answer(AnswerOf("0000", "1234"));
  EXPECT_EQ(Value(4), "1234");
  EXPECT_EQ(Rows(), "14:07:09|A1|A2|A3\n14:07:09|A1|A2|A3\n14:07:09");
}

TEST_F(LogRow, AnAddingThatIsUndoneAndRedoneTakesItsFieldOutAndBringsItBack) {
  Screen({Logged(ByteAt("0001"))});
  AddLocation();
  monitor.main.Locations[2] = Logged(ByteAt("0002"));
  HoldAgain();
  StartLog();
  Advance(45);
  Undo();
  Advance(40);
  Redo();
  monitor.main.Locations[2] = Logged(ByteAt("0002"));
  Advance(40);
  EXPECT_EQ(Rows(), "14:07:09|A1|A2\n14:07:09|A1\n14:07:09|A1\n14:07:09|A1|A2\n14:07:09");
}

TEST_F(LogRow, ALocationThatIsNoLongerLoggedLeavesItsFieldEmpty) {
  RunThree();
  Advance(65);
  monitor.main.Locations[2].LogEnable = 0;
  Advance(60);
  monitor.main.Locations[3].LogEnable = 0;
  monitor.main.Locations[2].LogEnable = 1;
  Advance(60);
  EXPECT_EQ(Rows(), "14:07:09|A1|A2|A3\n14:07:09|A1||A3\n14:07:09|A1|A2|\n14:07:09");
}

TEST_F(LogRow, ALocationThatIsLoggedOnlyFromNowOnHasNoField) {
  Screen({Logged(ByteAt("0001")), ByteAt("0002")});
  HoldAgain();
  StartLog();
  Advance(25);
  monitor.main.Locations[2].LogEnable = 1;
  Advance(40);
  EXPECT_EQ(Rows(), "14:07:09|A1\n14:07:09|A1");
}

TEST_F(LogRow, WithTheOptionTakenAwayTheFieldsStayEmpty) {
  RunThree();
  Advance(65);
  monitor.options.chk_GeneralLogging(0).Value = false;
  Advance(60);
  EXPECT_EQ(Rows(), "14:07:09|A1|A2|A3\n14:07:09|||\n14:07:09");
}

TEST_F(LogRow, TheWrapOverADeletedLastLocationBeginsARow) {
  Screen({Logged(ByteAt("0001"))});
  HoldAgain();
  StartLog();
  Advance(25);
  Delete(1);
  monitor.main.LocationCount = 1;
  Advance(40);
  // The wrap over the deleted one begins a row, and TarnLink drops its field.
  EXPECT_EQ(Rows(), "14:07:09|A1\n14:07:09\n14:07:09");
}

// --- Answers and writes out of order -------------------------------------------------------------

TEST_F(LogRow, ASecondAnswerToARequestIsNotLogged) {
  Screen({Logged(ByteAt("0001")), Logged(ByteAt("0002"))});
  StartLog();
  Tick();
  Answer(AnswerOf("0001", "A1"));
  Answer(AnswerOf("0001", "B1"));
  EXPECT_EQ(Value(1), "B1");
  EXPECT_EQ(Rows(), "14:07:09|A1");
}

TEST_F(LogRow, AWriteFurtherOnLeavesThePassedOverFieldsEmpty) {
  Screen({Logged(ByteAt("0001")), Logged(ByteAt("0002")), Logged(ByteAt("0003")),
          Logged(ByteAt("0004"))});
  StartLog();
  Tick();
  Answer(AnswerOf("0001", "A1"));
  Write(4, "55");
  Answer(AnswerOf("0004", "55"));
  SlaveHolds({{"0001", "A1"}, {"0004", "55"}});
  Advance(300);
  EXPECT_EQ(Rows().substr(0, 34), "14:07:09|A1|||55\n14:07:09|A1|")
      << "The answer to the write stands in the log, or a field is missing.";
}

TEST_F(LogRow, AWriteFurtherBackDoesNotFillAFieldTwice) {
  RunThree();
  Advance(45);
  EXPECT_EQ(Rows(), "14:07:09|A1|A2");
  SlaveIsSilent();
  Tick();
  Write(1, "55");
  Answer(AnswerOf("0001", "55"));
  SlaveHolds({{"0001", "55"}, {"0002", "A2"}, {"0003", "A3"}});
  Advance(300);
  const std::string rows = Rows();
  EXPECT_EQ(rows.substr(0, 40), "14:07:09|A1|A2|A3\n14:07:09|55|A2|A3\n14:0") << rows;
}

TEST_F(LogRow, TheAcknowledgeOfAWriteIsNoValueOfALocationThatNeverAnswered) {
  Screen({Logged(ByteAt("0001")), Logged(ByteAt("0002"))});
  StartLog();
  Tick();
  std::string value = "55";
  monitor.run.SendWrite(2, value);
  Answer(AnswerOf("0002", "55"));
  Advance(1);  // the first event only ends the write
  EXPECT_EQ(Value(1), "55");
  EXPECT_EQ(Rows(), "14:07:09|");
  Advance(kQuietAt9600 + 40);  // the answer of the read might still come
  Answer(AnswerOf("0002", "55"));
  EXPECT_EQ(Rows(), "14:07:09||55\n14:07:09");
}

TEST_F(LogRow, TheLocationThatWasAskedForWhenAWriteCameInIsFilledAfterIt) {
  RunThree();
  Advance(45);
  SlaveIsSilent();
  Tick();
  EXPECT_EQ(Rows(), "14:07:09|A1|A2|");
  Write(3, "55");
  Answer(AnswerOf("0003", "00"));
  EXPECT_EQ(Rows(), "14:07:09|A1|A2|");
  SlaveHolds({{"0003", "55"}});
  Advance(200);
  EXPECT_EQ(Rows().substr(0, 27), "14:07:09|A1|A2|55\n14:07:09|") << Rows();
}

TEST_F(LogRow, OfFiveHundredAndTwelveLocationsIsWhole) {
  std::vector<Location> locations;
  std::map<std::string, std::string> digits;
  std::string expected = "14:07:09";
  for (int i = 1; i <= kLastLocation; ++i) {
    const std::string address = std::to_string(1000 + i);
    locations.push_back(Logged(ByteAt(address)));
    digits[address] = HexText(std::string(1, static_cast<char>(0x10 + i % 0xE0)));
    expected += "|" + digits[address];
  }
  Screen(locations);
  SlaveHolds(digits);
  StartLog();
  Advance(20 * kLastLocation + 5);
  EXPECT_EQ(Rows(), expected + "\n14:07:19");
}

}  // namespace
}  // namespace tarnlink
