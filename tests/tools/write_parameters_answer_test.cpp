// The parameter writer with answers that are late, double, torn or another's, with a port that
// goes, and with a user who leaves.

#include "common/run_time_error.h"
#include "tools/write_parameters_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr const char* kOne = "5 &H0123 &H2A\r\n";
constexpr const char* kTwo = "5 &H0123 &H2A\r\n5 &H0124 &H1234\r\n";
constexpr const char* kMemory = "7 &HF400 1\r\n7 &HF401 2\r\n";

// --- Answers to something else -------------------------------------------------------------------

TEST_F(WriteParametersTest, AnotherIdOrClassIsAnErrorAndTriedAgain) {
  for (const std::string& wrong : {FrameOf(kAckWritten + 5, 0x999), FrameOf(kAckWritten + 4, 0x123),
                                   FrameOf(kAckRead + 5, 0x123, 0x2A),
                                   FrameOf(kAckUnknown + 5, 0x999), FrameOf(0x35, 0x123, 0x2A)}) {
    Start(kOne);
    Sent();
    Receive(wrong);
    EXPECT_EQ(List().substr(List().size() - 6), "error|") << Readable(wrong);
    EXPECT_EQ(tool.RetryCount, 1);
    Quiet();
    EXPECT_EQ(Sent(), "85 0 0123 002A");
    ExpectAllSet();
    Answer(kAckWritten + 5, 0x123);
    tool.Unload();
  }
}

TEST_F(WriteParametersTest, ADamagedRequestIsSentAgain) {
  Start(kOne);
  Sent();
  Answer(kAckCorrupted + 5, 0x123);
  EXPECT_EQ(Sent(), "85 0 0123 002A");
  EXPECT_NE(List().find("corrupt msg|Retry  "), std::string::npos);
  ExpectAllSet();
  Answer(kAckWritten + 5, 0x123);
}

TEST_F(WriteParametersTest, ARequestThatIsDamagedThreeTimesIsGivenUp) {
  Start(kOne);
  for (int i = 0; i < 2; ++i) Answer(kAckCorrupted + 5, 0x123);
  ExpectReport("Write settings", "1 parameters NOT send.", Icon::kCritical);
  Answer(kAckCorrupted + 5, 0x123);
}

TEST_F(WriteParametersTest, AByteOfMemoryThatIsUnknownIsGivenUpInBothPhases) {
  Start("7 &HF400 1\r\n", true);
  Answer(kAckUnknown + 7, 0xFCFD, 0x0001);
  EXPECT_EQ(tool.NotSentCount, 1);
  ExpectReport("Write & verify settings", "2 parameters NOT send. -1 parameters NOT ok.");
  Answer(kAckUnknown + 7, 0xFFAB);
  Quiet();
}

TEST_F(WriteParametersTest, AFrameWithABadCheckIsAnError) {
  Start(kOne);
  Sent();
  std::string frame = FrameOf(kAckWritten + 5, 0x123);
  frame[12] = frame[12] == '0' ? '1' : '0';
  Receive(frame);
  EXPECT_EQ(tool.RetryCount, 1);
  EXPECT_EQ(Sent(), "nothing") << "The line is to be quiet first.";
  Quiet();
  EXPECT_EQ(Sent(), "85 0 0123 002A");
}

TEST_F(WriteParametersTest, ATornAnswerMakesTheRetryWaitForAQuietLine) {
  Start(kOne);
  Sent();
  Receive("\x7F" + FrameOf(kAckWritten + 5, 0x123));
  EXPECT_EQ(Sent(), "nothing");
  for (int i = 0; i < 3; ++i) {
    Receive("x");
    world.Advance(50ms);
  }
  EXPECT_EQ(Sent(), "nothing");
  Quiet();
  EXPECT_EQ(Sent(), "85 0 0123 002A");
}

TEST_F(WriteParametersTest, EchoRequestsAndOtherSlavesArePassedBy) {
  Start(kOne);
  const std::string request = world.port().TakeSent().back();
  Receive(request + FrameOf(kAckWritten + 5, 0x123, 0, "3"));
  EXPECT_EQ(Sent(), "nothing");
  EXPECT_EQ(tool.RetryCount, 0);
  const std::string answer = FrameOf(kAckWritten + 5, 0x123);
  Receive(answer.substr(0, 7));
  EXPECT_TRUE(tool.IsRunning());
  ExpectAllSet();
  Receive(answer.substr(7));
}

TEST_F(WriteParametersTest, ALateAnswerToAnotherItemIsPassedBy) {
  Start(kTwo);
  Silence();
  Answer(kAckWritten + 5, 0x123);
  Sent();
  Answer(kAckWritten + 5, 0x123);
  EXPECT_EQ(Sent(), "nothing");
  EXPECT_EQ(tool.ParameterIndex, 1);
  EXPECT_EQ(tool.RetryCount, 0);
  ExpectAllSet();
  Answer(kAckWritten + 5, 0x124);
}

TEST_F(WriteParametersTest, ALateWordThatItWasWrittenDoesNotVerify) {
  Start(kOne, true);
  Silence();
  Answer(kAckWritten + 5, 0x123);
  Silence();
  Quiet();
  EXPECT_EQ(tool.WritePhase, 0);
  Answer(kAckWritten + 5, 0x123);
  EXPECT_EQ(tool.ParameterIndex, 0);
  ExpectVerified();
  Answer(kAckRead + 5, 0x123, 0x2A);
}

TEST_F(WriteParametersTest, AnAnswerToAReadIsNoAnswerToAWrite) {
  Start(kOne);
  Answer(kAckRead + 5, 0x123, 0x2A);
  EXPECT_EQ(tool.VerifiedCount, 0);
  EXPECT_EQ(tool.ParameterIndex, 0);
  EXPECT_EQ(tool.RetryCount, 1);
}

// --- Reads of memory, whose answers do not bear an address
// -----------------------------------------

// An answer to one of them would pass for that to the next, and that one for the next but one.
class MemoryReads : public WriteParametersTest {
 protected:
  // Three bytes that should hold 1, as far as their verification.
  void Verify() {
    Start("7 &HF400 1\r\n7 &HF401 1\r\n7 &HF402 1\r\n", true);
    for (const int data : {0x0001, 0x0101, 0x0201}) Answer(kAckWritten + 7, 0xFCFD, data);
    EXPECT_EQ(LastSent(), "07 0 FFAB F400");
  }
  void Says(int value) { Answer(kAckRead + 7, 0xFFAB, value); }
  std::string LastSent() {
    const std::string sent = Sent();
    return sent.substr(sent.rfind(';') == std::string::npos ? 0 : sent.rfind(';') + 2);
  }
};

TEST_F(MemoryReads, CountOnlyBehindAQuietLine) {
  Verify();
  Says(1);
  EXPECT_EQ(tool.VerifiedCount, 0);
  EXPECT_EQ(LastSent(), "nothing");
  Quiet();
  EXPECT_EQ(tool.VerifiedCount, 1);
  EXPECT_EQ(LastSent(), "07 0 FFAB F401");
}

TEST_F(MemoryReads, AnAnswerThatComesTwiceIsOne) {
  Verify();
  Says(1);
  world.Advance(std::chrono::milliseconds(60));
  Says(1);
  Quiet();
  EXPECT_EQ(tool.VerifiedCount, 1);
  EXPECT_EQ(tool.RetryCount, 0);
  EXPECT_EQ(LastSent(), "07 0 FFAB F401");
}

// The second of the answers to the byte before, and then its own.
TEST_F(MemoryReads, OneThatIsContradictedIsAskedForAgain) {
  Verify();
  for (int i = 0; i < 2; ++i) {
    Says(1);
    Quiet();
  }
  EXPECT_EQ(LastSent(), "07 0 FFAB F402");
  Says(1);
  world.Advance(std::chrono::milliseconds(60));
  Says(9);
  Quiet();
  EXPECT_EQ(tool.VerifiedCount, 2);
  EXPECT_EQ(tool.RetryCount, 1);
  EXPECT_EQ(LastSent(), "07 0 FFAB F402");
  ExpectReport("Write & verify settings", "All parameters writen. 1 parameters NOT ok.");
  Says(9);
  Silence();
  Quiet();
  EXPECT_NE(List().find("F402   Value   &H0001.. error|Retry"), std::string::npos) << List();
  EXPECT_NE(List().find("F402   Value   &H0001.. FAULT|"), std::string::npos) << List();
}

TEST_F(MemoryReads, APartOfAFrameBehindOneIsAContradiction) {
  Verify();
  Says(1);
  Receive(FrameOf(kAckRead + 7, 0xFFAB, 9).substr(0, 11));
  Quiet();
  EXPECT_EQ(tool.VerifiedCount, 0);
  EXPECT_EQ(tool.RetryCount, 1);
}

TEST_F(MemoryReads, BehindATornAnswerThatToTheFirstRequestIsWaitedFor) {
  Verify();
  Receive("0123456789abcdef");
  EXPECT_EQ(tool.RetryCount, 1);
  Quiet();
  EXPECT_EQ(LastSent(), "07 0 FFAB F400");
  Says(1);
  world.Advance(std::chrono::milliseconds(2500));
  EXPECT_EQ(LastSent(), "nothing");
  Says(1);
  world.Advance(std::chrono::milliseconds(2500));
  EXPECT_EQ(LastSent(), "nothing");
  Silence();
  EXPECT_EQ(LastSent(), "07 0 FFAB F401");
}

TEST_F(MemoryReads, OneThatIsGivenUpIsWaitedForAllTheSame) {
  Verify();
  for (int i = 0; i < 3; ++i) Silence();
  EXPECT_EQ(tool.RetryCount, 3);
  Sent();
  world.Advance(std::chrono::milliseconds(2500));
  Says(1);
  EXPECT_EQ(LastSent(), "nothing");
  EXPECT_EQ(tool.VerifiedCount, 0);
  Silence();
  Quiet();
  EXPECT_EQ(tool.NotSentCount, 1);
  EXPECT_EQ(LastSent(), "07 0 FFAB F401");
}

TEST_F(MemoryReads, ALateRefusalDoesNotGiveUpTheNextOne) {
  Verify();
  Silence();
  Answer(kAckUnknown + 7, 0xFFAB);
  EXPECT_EQ(tool.RetryCount, 1);
  world.Advance(std::chrono::milliseconds(1000));
  Answer(kAckUnknown + 7, 0xFFAB);
  Sent();
  Silence();
  Quiet();
  EXPECT_EQ(tool.ParameterIndex, 1);
  EXPECT_EQ(LastSent(), "07 0 FFAB F401");
}

TEST_F(MemoryReads, AnAnswerThatAnotherMasterAskedForIsNobodys) {
  Verify();
  Receive(FrameOf(0x07, 0xFFAB, 0xF500));
  Says(1);
  EXPECT_EQ(tool.RetryCount, 1);
  Quiet();
  EXPECT_EQ(tool.VerifiedCount, 0);
  EXPECT_EQ(LastSent(), "07 0 FFAB F400");
  Says(1);
  Silence();
  Quiet();
  EXPECT_EQ(tool.VerifiedCount, 1);
  // What he asks another slave, or of an ID, is not in the way.
  Receive(FrameOf(0x07, 0xFFAB, 0xF500, "3") + FrameOf(0x05, 0x0123));
  Says(1);
  Quiet();
  EXPECT_EQ(tool.VerifiedCount, 2);
}

TEST_F(MemoryReads, TheirEchoIsNoOtherMaster) {
  Verify();
  Receive(FrameOf(0x07, 0xFFAB, 0xF400));
  Says(1);
  Quiet();
  EXPECT_EQ(tool.VerifiedCount, 1);
}

// The refusal of a write bears the alias of the page only.
TEST_F(WriteParametersTest, ALateRefusalOfAByteDoesNotGiveUpItsNeighbour) {
  Start("7 &HF400 1\r\n7 &HF401 1\r\n");
  ExpectTwoLate(kAckOutside + 7, 0xFCFD, 0x0001);
  EXPECT_EQ(Sent(), "87 0 FCFD 0101");
  ExpectReport("Write settings", "1 parameters NOT send.", Icon::kCritical);
  Answer(kAckWritten + 7, 0xFCFD, 0x0101);
}

TEST_F(WriteParametersTest, AnAnswerUnderAnIdOfNoMemoryDoesNotVerifyAddressZero) {
  Start("7 0 0\r\n", true);
  EXPECT_EQ(Sent(), "07 0 FFAB 0000");
  Answer(kAckRead + 7, 0x1234, 0x5678);
  Quiet();
  EXPECT_EQ(tool.VerifiedCount, 0);
  EXPECT_EQ(tool.RetryCount, 1);
}

TEST_F(WriteParametersTest, WhereNothingTimesOutAnotherIdIsAnErrorAtOnce) {
  timeout = 0;
  Start(kTwo);
  Sent();
  Answer(kAckWritten + 5, 0x124, 0x1234);
  EXPECT_EQ(tool.RetryCount, 1);
  Quiet();
  EXPECT_EQ(Sent(), "85 0 0123 002A");
}

// --- Items of the same ID -----------------------------------------------------------------------

TEST_F(WriteParametersTest, AnAcknowledgementThatComesTwiceIsNotThatOfAnotherValueOfTheId) {
  Start("5 1 2\r\n5 1 3\r\n");
  Sent();
  Answer(kAckWritten + 5, 1, 2);
  world.Advance(std::chrono::milliseconds(60));
  Answer(kAckWritten + 5, 1, 2);
  EXPECT_EQ(Sent(), "nothing");
  Quiet();
  EXPECT_EQ(Sent(), "85 0 0001 0003");
}

TEST_F(WriteParametersTest, ALateAnswerDoesNotAcknowledgeAnotherValueOfTheSameId) {
  Start("5 1 2\r\n5 1 3\r\n");
  Silence();
  Sent();
  Answer(kAckWritten + 5, 1, 2);
  EXPECT_EQ(Sent(), "nothing");
  Answer(kAckWritten + 5, 1, 2);
  EXPECT_EQ(Sent(), "nothing");
  Silence();
  Quiet();
  EXPECT_EQ(Sent(), "85 0 0001 0003");
  ExpectAllSet();
  Answer(kAckWritten + 5, 1, 3);
}

// An item that cannot be sent stands between the two.
TEST_F(WriteParametersTest, ALateAnswerIsKeptFromTheNextItemThatCanBeSent) {
  Start("5 1 2\r\n7 &H9000 1\r\n5 1 3\r\n");
  Silence();
  Sent();
  Answer(kAckWritten + 5, 1, 2);
  EXPECT_EQ(Sent(), "nothing");
  Answer(kAckWritten + 5, 1, 2);
  Silence();
  Quiet();
  EXPECT_EQ(Sent(), "85 0 0001 0003");
  ExpectReport("Write settings", "2 parameters NOT send.", Icon::kCritical);
  Answer(kAckOutside + 5, 1, 3);
}

TEST_F(WriteParametersTest, ALateRefusalIsKeptFromTheNextByteThatCanBeSent) {
  Start("7 &HF400 1\r\n7 &H9000 1\r\n7 &HF401 1\r\n");
  ExpectTwoLate(kAckOutside + 7, 0xFCFD, 0x0001);
  EXPECT_EQ(Sent(), "87 0 FCFD 0101");
  ExpectReport("Write settings", "2 parameters NOT send.", Icon::kCritical);
  Answer(kAckWritten + 7, 0xFCFD, 0x0101);
}

// Behind the last item the first one is read.
TEST_F(WriteParametersTest, ALateRefusalOfTheLastWriteDoesNotGiveUpTheFirstRead) {
  Start("5 &H123 1\r\n", true);
  ExpectTwoLate(kAckOutside + 5, 0x123, 1);
  EXPECT_EQ(Sent(), "05 0 0123 0000");
  ExpectReport("Write & verify settings", "1 parameters NOT send. -1 parameters NOT ok.");
  Answer(kAckRead + 5, 0x123, 1);
}

TEST_F(WriteParametersTest, OfTwoAnswersToAReadNoneCounts) {
  Start("7 &HF400 1\r\n", true);
  Answer(kAckWritten + 7, 0xFCFD, 0x0001);
  Sent();
  Receive(FrameOf(kAckRead + 7, 0xFFAB, 1) + FrameOf(kAckRead + 7, 0xFFAB, 9));
  EXPECT_EQ(tool.VerifiedCount, 0);
  EXPECT_EQ(tool.RetryCount, 1);
  Quiet();
  EXPECT_EQ(Sent(), "07 0 FFAB F400");
}

TEST_F(WriteParametersTest, AWriteToAnotherAddressIsAnError) {
  Start("7 &HF400 1\r\n");
  Answer(kAckWritten + 7, 0xFCFD, 0x0101);
  EXPECT_EQ(tool.RetryCount, 1);
  EXPECT_EQ(tool.ParameterIndex, 0);
}

TEST_F(WriteParametersTest, ATimeOutOfNothingWaitsForTheUser) {
  timeout = 0;
  Start(kOne);
  world.Advance(1h);
  EXPECT_EQ(Sent(), "85 0 0123 002A");
  ExpectAllSet();
  Answer(kAckWritten + 5, 0x123);
}

// --- The port ------------------------------------------------------------------------------------

TEST_F(WriteParametersTest, APortThatCanNotBeOpenedIsTold) {
  world.port().MakeBusy();
  world.dialogs().ExpectMessageBox({.text = "COM1 is in use by another program.",
                                    .title = "Write Parameters",
                                    .icon = Icon::kCritical,
                                    .detail = "0 of 1 parameters were acknowledged."});
  Start(kOne);
  EXPECT_FALSE(tool.IsRunning());
  EXPECT_TRUE(tool.cmdWriteZOLT.Enabled);
  EXPECT_EQ(Sent(), "nothing");
}

TEST_F(WriteParametersTest, APortThatIsNoneIsTold) {
  plain.com_port = 17;
  world.dialogs().ExpectMessageBox("COM17 is no port number.", "Write Parameters");
  Start(kOne);
  EXPECT_FALSE(tool.IsRunning());
}

TEST_F(WriteParametersTest, UnpluggedItStopsAndSaysHowFarItCame) {
  Start(kTwo);
  Answer(kAckWritten + 5, 0x123);
  world.dialogs().ExpectMessageBox({.text = "COM1 was unplugged.",
                                    .title = "Write Parameters",
                                    .icon = Icon::kCritical,
                                    .detail = "1 of 2 parameters were acknowledged."});
  world.port().Unplug();
  world.Settle();
  EXPECT_FALSE(tool.IsRunning());
  world.port().PlugIn();
  Sent();
  world.Advance(1min);
  EXPECT_EQ(Sent(), "nothing");
  EXPECT_NE(List().find(".. |COM1 was unplugged.|"), std::string::npos) << List();
}

TEST_F(WriteParametersTest, CallsOfThePortThatFailNeverMakeItSayOk) {
  for (const char* call : {"Port.Open", "Port.Output"}) {
    world.faults().Break(call, RunTimeError(kDeviceIo, "Input/output error"));
    world.dialogs().ExpectMessageBox("Input/output error", "Write Parameters");
    Start(kOne);
    EXPECT_FALSE(tool.IsRunning()) << call;
    tool.Unload();
  }
}

// --- Leaving -------------------------------------------------------------------------------------

constexpr const char* kQuestion =
    "Parameters are still being sent. Those sent so far stay in the controller.\r\n"
    "Do you want to stop?";

TEST_F(WriteParametersTest, LeavingInTheMiddleAsks) {
  Start(kTwo);
  world.dialogs().ExpectMessageBox(kQuestion, "Write Parameters").Press(tarnlink::Answer::kNo);
  tool.cmdCancel.Press();
  EXPECT_TRUE(tool.form.Visible);
  EXPECT_TRUE(tool.IsRunning());
  int unloaded = 0;
  tool.Unloaded = [&] { ++unloaded; };
  world.dialogs().ExpectMessageBox(kQuestion, "Write Parameters").Press(tarnlink::Answer::kYes);
  tool.cmdCancel.Press();
  EXPECT_FALSE(tool.form.Visible);
  EXPECT_FALSE(world.port().PortOpen());
  EXPECT_EQ(unloaded, 1);
  Sent();
  world.Advance(1min);
  EXPECT_EQ(Sent(), "nothing");
}

TEST_F(WriteParametersTest, UnpluggedWhileItAsksItStops) {
  Start(kTwo);
  world.dialogs()
      .ExpectMessageBox(kQuestion, "Write Parameters")
      .While([&] {
        world.dialogs().ExpectMessageBox("COM1 was unplugged.", "Write Parameters");
        world.port().Unplug();
        world.Settle();
      })
      .Press(tarnlink::Answer::kNo);
  tool.Unload();
  EXPECT_FALSE(tool.IsRunning());
  EXPECT_TRUE(tool.form.Visible);
  world.Advance(1min);
}

TEST_F(WriteParametersTest, WhileItAsksNothingGoesOut) {
  Start(kTwo);
  Sent();
  world.dialogs()
      .ExpectMessageBox(kQuestion, "Write Parameters")
      .While([&] {
        Answer(kAckWritten + 5, 0x123);
        world.Advance(1min);
        EXPECT_EQ(Sent(), "nothing");
      })
      .Press(tarnlink::Answer::kNo);
  tool.Unload();
  EXPECT_EQ(Sent(), "85 0 0124 1234");
}

TEST_F(WriteParametersTest, IdleItClosesWithoutAQuestionAndOpensAnew) {
  Open(kOne);
  tool.cmdCancel.Press();
  EXPECT_FALSE(tool.form.Visible);
  file.clear();
  tool.Show();
  EXPECT_EQ(List(), "");
  EXPECT_FALSE(tool.cmdWriteZOLT.Enabled);
}

}  // namespace
}  // namespace tarnlink
