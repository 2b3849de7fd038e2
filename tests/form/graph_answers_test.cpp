// What becomes of the slave's answers: good ones, bad ones, late ones, too many of them.

#include "form/graph_acquisition_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

// --- Answers that are none -----------------------------------------------------------------------

TEST_F(GraphAcquisitionTest, ABadOrNegativeAnswerCostsOneSample) {
  Show(0);
  menu.SetCommunication(true);
  Sent();
  std::string damaged = BuildZoltMessage(kReadAcknowledge, "0", 241, 1, 1);
  damaged[8] = '7';
  world.port().Receive(damaged);
  world.Settle();
  EXPECT_EQ(Sent(), Poll(1, kLanesId));
  EXPECT_EQ(Channel(0).Count(), 0);
  for (const std::uint8_t kind : std::initializer_list<std::uint8_t>{0x20, 0x40, 0x60, 0x90}) {
    Answer(kind, kLanesId, 1, 1);
    EXPECT_EQ(Sent(), Poll(4, 241)) << int{kind};
    Answer(kReadAcknowledge, 241, 0, 0);
    EXPECT_EQ(Sent(), Poll(1, kLanesId));
  }
  EXPECT_EQ(Channel(100).Count(), 0);
  EXPECT_EQ(graph.RetryCount, 0);
}

// The right answer is still to come: a second request would never be caught up with.
TEST_F(GraphAcquisitionTest, AnAnswerToAnotherRequestIsDroppedAndTheWaitGoesOn) {
  Show(0);
  Show(1);
  menu.SetCommunication(true);
  world.Advance(2s);  // the first line is given up
  EXPECT_EQ(Sent(), Poll(4, 241) + Poll(4, 770));
  Answer(kReadAcknowledge, 241, 1, 1);
  EXPECT_EQ(Sent(), "");
  EXPECT_TRUE(graph.CommWatch->Enabled());
  EXPECT_EQ(Channel(0).Count() + Channel(1).Count(), 0);
  Answer(kReadAcknowledge, 770, 2, 2);
  EXPECT_EQ(Newest(1), 0x202);
  EXPECT_EQ(Sent(), Poll(1, kLanesId));
}

// A stream of answers that nobody asked for would keep the polling up.
TEST_F(GraphAcquisitionTest, ALateAnswerDoesNotMakeTheWaitLonger) {
  Show(0);
  menu.SetCommunication(true);
  world.Advance(2s);
  Sent();
  world.Advance(1900ms);
  Answer(kReadAcknowledge, 241, 1, 1);
  EXPECT_EQ(graph.RetryCount, 0);
  world.Advance(99ms);
  EXPECT_EQ(Sent(), "");
  world.Advance(1ms);
  EXPECT_EQ(Sent(), Poll(4, 241));
}

TEST_F(GraphAcquisitionTest, ALateAnswerAndTheRightOneInOnePieceCostOneSample) {
  Show(0);
  Show(1);
  menu.SetCommunication(true);
  world.Advance(2s);
  Sent();
  const std::string late = BuildZoltMessage(kReadAcknowledge, "0", 241, 1, 1);
  const std::string right = BuildZoltMessage(kReadAcknowledge, "0", 770, 2, 2);
  world.port().Receive(late + right.substr(0, 5));
  world.Settle();
  EXPECT_EQ(Sent(), "");
  world.port().Receive(right.substr(5));
  world.Settle();
  EXPECT_EQ(Channel(0).Count(), 0);
  EXPECT_EQ(Newest(1), 0x202);
  EXPECT_EQ(Sent(), Poll(1, kLanesId));
}

// Slave and class tell two lines of one ID apart, where the answer of the first may still come.
TEST_F(GraphAcquisitionTest, ALateAnswerIsNotTakenForALineOfTheSameIdOfAnotherSlave) {
  Show(0);
  Show(1);
  Line(1).ID = Line(0).ID;
  Line(0).SlaveAddress = 1;
  Line(1).SlaveAddress = 2;
  menu.SetCommunication(true);
  world.Advance(2s);
  Sent();
  world.port().Receive(BuildZoltMessage(kReadAcknowledge + 4, "1", 241, 1, 1));
  world.Settle();
  EXPECT_EQ(Sent(), "");
  world.port().Receive(BuildZoltMessage(kReadAcknowledge + 4, "2", 241, 2, 2));
  world.Settle();
  EXPECT_EQ(Channel(0).Count(), 0);
  EXPECT_EQ(Newest(1), 0x202);
}

// Whose answer it is cannot be told, so that the next request waits for what may be too many.
TEST_F(GraphAcquisitionTest, OfTwoRequestsForTheSameNoneStaysOut) {
  menu.SetCommunication(true);
  world.Advance(2s);
  EXPECT_EQ(Sent(), Poll(1, kLanesId) + Poll(1, kLanesId));
  Answer(kReadAcknowledge, kLanesId, 1, 1);
  EXPECT_EQ(Channel(100).Count(), 1);
  world.Advance(60ms);
  Answer(kReadAcknowledge, kLanesId, 1, 1);
  EXPECT_EQ(Sent(), "");
  world.Advance(1s);
  EXPECT_EQ(Sent(), Poll(1, kLanesId));
  Answer(kReadAcknowledge, kLanesId, 1, 1);
  EXPECT_EQ(Sent(), Poll(1, kLanesId)) << "At once.";
}

// One stray byte would shift this answer and all that follow.
TEST_F(GraphAcquisitionTest, AfterATornAnswerTheLineHasToBeQuiet) {
  const std::string frame = BuildZoltMessage(kReadAcknowledge, "0", kLanesId, 7, 7);
  menu.SetCommunication(true);
  for (const std::string& torn : {"\xFF" + frame, frame.substr(0, 5) + "00" + frame.substr(5),
                                  frame.substr(0, 9) + "\r" + frame}) {
    Sent();
    for (const char byte : torn) {
      world.port().Receive(std::string(1, byte));
      world.Advance(1ms);
    }
    EXPECT_EQ(Sent(), "");
    EXPECT_FALSE(graph.CommWatch->Enabled());
    EXPECT_TRUE(world.RunUntil([this] { return graph.CommWatch->Enabled(); }, 500ms));
    EXPECT_EQ(Sent(), Poll(1, kLanesId));
    Answer(kReadAcknowledge, kLanesId, 8, 8);
    EXPECT_EQ(Newest(100), 0x808);
    world.Advance(1s);
  }
}

TEST_F(GraphAcquisitionTest, ARestOfAnAnswerIsGoneWithTheExpiry) {
  menu.SetCommunication(true);
  world.port().Receive(BuildZoltMessage(kReadAcknowledge, "0", kLanesId, 7, 7).substr(0, 10));
  world.Advance(2s);
  EXPECT_EQ(Channel(100).Count(), 0);
  Answer(kReadAcknowledge, kLanesId, 8, 8);
  EXPECT_EQ(Newest(100), 0x808);
}

// Some adapters hear themselves.
TEST_F(GraphAcquisitionTest, TheEchoOfARequestIsNoAnswer) {
  menu.SetCommunication(true);
  const std::string request = world.port().TakeSent().front();
  world.port().Receive(request);
  world.Settle();
  EXPECT_EQ(Sent(), "");
  Answer(kReadAcknowledge, kLanesId, 8, 8);
  EXPECT_EQ(Newest(100), 0x808);
}

// As a file of another size may leave them.
TEST_F(GraphAcquisitionTest, TablesOfOtherSizesAreNoError) {
  menu.SetCommunication(true);
  Sent();
  graph.Data.Attributes.resize(17);
  Answer(kReadAcknowledge, kLanesId, 7, 7);
  EXPECT_EQ(Channel(100).Count(), 0);
  EXPECT_EQ(Sent(), "type 0 slave 0 id 0 data 0 0\n");
  graph.Data.Channels.resize(2);
  Answer(kReadAcknowledge, 0, 7, 7);
  EXPECT_TRUE(graph.CommWatch->Enabled());
  EXPECT_EQ(State(), "running");
}

TEST_F(GraphAcquisitionTest, AnIdThatNoRequestCanCarryIsPassedByWithoutWaiting) {
  Show(0);
  Line(0).ID = 0x10000 + 241;
  menu.SetCommunication(true);
  EXPECT_EQ(Sent(), Poll(4, 241));
  Answer(kReadAcknowledge, 241, 1, 1);
  EXPECT_EQ(Channel(0).Count(), 0);
  EXPECT_EQ(Sent(), Poll(1, kLanesId));
}

TEST_F(GraphAcquisitionTest, BytesOfHalfAFrameWaitForMore) {
  menu.SetCommunication(true);
  Sent();
  const std::string frame = BuildZoltMessage(kReadAcknowledge, "0", kLanesId, 7, 7);
  world.port().Receive(frame.substr(0, 10));
  world.Settle();
  EXPECT_EQ(Sent(), "");
  world.port().Receive(frame.substr(10));
  world.Settle();
  EXPECT_EQ(Newest(100), 0x707);
}

TEST_F(GraphAcquisitionTest, LineErrorsAreNotLookedAt) {
  menu.SetCommunication(true);
  Sent();
  world.port().RaiseLineError(kCommFrame);
  world.Settle();
  EXPECT_EQ(Sent(), "");
  EXPECT_TRUE(graph.CommWatch->Enabled());
}

// It heard a damaged request, of which it may repeat anything.
TEST_F(GraphAcquisitionTest, ASlaveThatHeardNonsenseHasAnsweredWhateverIdItSays) {
  Show(0);
  menu.SetCommunication(true);
  Sent();
  Answer(0x20, 999, 0, 0);
  EXPECT_EQ(Sent(), Poll(1, kLanesId));
  EXPECT_EQ(graph.RetryCount, 0);
}

// Behind some adapters all bytes come at once, whatever the speed.
TEST_F(GraphAcquisitionTest, ALineThatIsFasterThanItsSpeedIsTrusted) {
  menu.SetCommunication(true);
  int waits = 0;
  for (int i = 0; i < 200; ++i) {
    Sent();
    world.Advance(1ms);
    Answer(kReadAcknowledge, kLanesId, 1, 1);
    if (graph.CommWatch->Enabled()) continue;
    ++waits;
    world.Advance(260ms);
    EXPECT_EQ(Sent(), Poll(1, kLanesId));
  }
  EXPECT_EQ(waits, 1);
}

}  // namespace
}  // namespace tarnlink
