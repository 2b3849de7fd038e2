// The slave scan and its port: the control panel that takes it, stop and start, a port that is busy
// or unplugged, and answers that are none to what was asked.

#include "common/run_time_error.h"
#include "tools/scan_slaves_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr const char* kBusy = "Waiting at address 0: COM1 is in use by another program.";

// --- The control panel ---------------------------------------------------------------------------

TEST_F(ScanSlavesTest, ADetailsButtonOpensThePanelOnItsSlave) {
  scan.Show();
  in_panel = [&] { EXPECT_FALSE(world.port().PortOpen()); };
  for (int i = 0; i < 16; ++i) scan.cmdControlPanel(i).Press();
  ASSERT_EQ(panels.size(), 16U);
  for (int i = 0; i < 16; ++i) EXPECT_EQ(panels[static_cast<std::size_t>(i)], i);
}

TEST_F(ScanSlavesTest, LeavesThePortToThePanelAndGoesOnBehindIt) {
  scan.Show();
  Pass(4);
  world.Advance(1s);
  world.port().TakeSent();
  const int opens = world.port().opens();
  in_panel = [&] {
    world.Advance(1h);
    EXPECT_EQ(world.port().opens(), opens);
  };
  scan.cmdControlPanel(3).Press();
  EXPECT_FALSE(world.port().PortOpen());
  EXPECT_EQ(Asked(), "nothing");
  world.Advance(2500ms);
  EXPECT_TRUE(world.port().PortOpen());
  EXPECT_EQ(Asked(), "slave 4 step 0") << "The request that was cut off.";
  EXPECT_EQ(Row(4), " |  |  | ") << "Nobody has been silent.";
  Answer(kScanRead, 5, 2);
  EXPECT_EQ(Row(4), "R1865CM |  |  | ");
}

TEST_F(ScanSlavesTest, APanelThatWasOpenForAMomentCostsNoMoreThanATimeOut) {
  scan.Show();
  world.port().TakeSent();
  world.Advance(2s);
  scan.cmdControlPanel(0).Press();
  world.Advance(499ms);
  EXPECT_EQ(Asked(), "nothing");
  world.Advance(1ms);
  EXPECT_EQ(Asked(), "slave 0 step 0");
}

TEST_F(ScanSlavesTest, OpensOnePanelAtATime) {
  scan.Show();
  in_panel = [&] { scan.cmdControlPanel(5).Press(); };
  scan.cmdControlPanel(4).Press();
  EXPECT_EQ(panels, std::vector<int>{4});
}

TEST_F(ScanSlavesTest, OpensThePanelAlsoWhileItRests) {
  scan.Show();
  scan.cmdStop.Press();
  world.port().TakeSent();
  scan.cmdControlPanel(7).Press();
  world.Advance(1min);
  EXPECT_EQ(panels, std::vector<int>{7});
  EXPECT_EQ(Asked(), "nothing");
}

TEST_F(ScanSlavesTest, ClosedUnderThePanelStaysClosed) {
  scan.Show();
  world.port().TakeSent();
  in_panel = [&] { scan.Unload(); };
  scan.cmdControlPanel(0).Press();
  world.Advance(1min);
  EXPECT_EQ(Asked(), "nothing");
}

TEST_F(ScanSlavesTest, OpensThePanelWhileItWaitsForQuiet) {
  scan.Show();
  Receive("rubbish that is longer than a frame");
  world.port().TakeSent();
  in_panel = [&] { world.Advance(1min); };
  scan.cmdControlPanel(0).Press();
  EXPECT_EQ(Asked(), "nothing");
  world.Advance(2500ms);
  EXPECT_EQ(Asked(), "slave 1 step 0");
}

TEST_F(ScanSlavesTest, APanelThatCanNotBeOpenedDoesNotStopTheWalk) {
  scan.Show();
  in_panel = [] { throw RunTimeError(kDeviceIo, "No panel."); };
  EXPECT_THROW(scan.cmdControlPanel(0).Press(), RunTimeError);
  world.port().TakeSent();
  world.Advance(2500ms);
  EXPECT_EQ(Asked(), "slave 0 step 0");
  Answer(kScanRead, 5, 2);
  EXPECT_EQ(Row(0), "R1865CM |  |  | ");
  in_panel = nullptr;
  scan.cmdControlPanel(1).Press();
  EXPECT_EQ(panels, (std::vector<int>{0, 1}));
}

TEST_F(ScanSlavesTest, StartedUnderThePanelItWaitsForIt) {
  scan.Show();
  world.port().TakeSent();
  in_panel = [&] {
    scan.Stop();
    scan.Start();
    world.Advance(1min);
    EXPECT_EQ(Asked(), "nothing");
    EXPECT_FALSE(world.port().PortOpen());
  };
  scan.cmdControlPanel(0).Press();
  world.Advance(2500ms);
  EXPECT_EQ(Asked(), "slave 0 step 0");
}

// --- Stop and start ------------------------------------------------------------------------------

TEST_F(ScanSlavesTest, CanBeStoppedAndGoesOnWhereItWas) {
  scan.Show();
  EXPECT_FALSE(scan.cmdStart.Enabled);
  EXPECT_TRUE(scan.cmdStop.Enabled);
  Pass(10);
  Answer(kScanRead, 5, 2);
  world.port().TakeSent();
  scan.cmdStop.Press();
  EXPECT_EQ(State(), "Stopped at address A");
  EXPECT_TRUE(scan.cmdStart.Enabled);
  EXPECT_FALSE(scan.cmdStop.Enabled);
  EXPECT_FALSE(world.port().PortOpen());
  world.Advance(1h);
  EXPECT_EQ(Asked(), "nothing");
  scan.cmdStart.Press();
  EXPECT_EQ(State(), "Scanning address A");
  EXPECT_EQ(Asked(), "slave A step 1");
  Answer(kScanRead, 0x08, 0x02);
  EXPECT_EQ(Row(10), "R1865CM2050 |  |  | ");
}

// With both greyed for a moment the focus would go elsewhere.
TEST_F(ScanSlavesTest, OneOfStartAndStopCanAlwaysBePressed) {
  bool is_one = true;
  const auto look = [&] { is_one = is_one && (scan.cmdStart.Enabled || scan.cmdStop.Enabled); };
  scan.cmdStart.SetView(look);
  scan.cmdStop.SetView(look);
  scan.Show();
  scan.cmdStop.Press();
  scan.cmdStart.Press();
  scan.cmdStop.Press();
  scan.Unload();
  scan.Show();
  EXPECT_TRUE(is_one);
  scan.cmdStart.SetView({});
  scan.cmdStop.SetView({});
}

TEST_F(ScanSlavesTest, WithoutAPanelADetailsButtonLeavesThePortAlone) {
  plain.host.GoControlPanel = {};
  scan.Show();
  scan.cmdControlPanel(4).Press();
  EXPECT_TRUE(world.port().PortOpen());
  Answer(kScanRead, 5, 2);
  EXPECT_EQ(Row(0), "R1865CM |  |  | ");
}

TEST_F(ScanSlavesTest, CheckDigitsMayBeOfEitherCase) {
  scan.Show();
  std::string other = BuildZoltMessage(kScanRead + 1, "3", 61, 5, 2);
  std::string frame = AnswerFrame(kScanRead, 5, 2);
  for (std::string* one : {&other, &frame}) {
    bool has_letter = false;
    for (std::size_t at = 11; at < 15; ++at) {
      if ((*one)[at] < 'A') continue;
      (*one)[at] = static_cast<char>((*one)[at] + ('a' - 'A'));
      has_letter = true;
    }
    ASSERT_TRUE(has_letter);
  }
  Receive(other);
  EXPECT_EQ(scan.ScanAddress, 0) << "Another slave's.";
  EXPECT_EQ(Row(0), " |  |  | ");
  Receive(frame);
  EXPECT_EQ(Row(0), "R1865CM |  |  | ");
}

TEST_F(ScanSlavesTest, AStopForgetsARetry) {
  scan.Show();
  Answer(kScanRead, 5, 2);
  Silence();
  scan.cmdStop.Press();
  scan.cmdStart.Press();
  world.port().TakeSent();
  Silence();
  EXPECT_EQ(Asked(), "slave 0 step 1");
}

TEST_F(ScanSlavesTest, StartsWithTheOptionsOfTheMoment) {
  scan.Show();
  scan.Stop();
  plain.com_port = 2;
  plain.baudrate = 0;
  scan.Start();
  EXPECT_EQ(world.port().CommPort(), 2);
  EXPECT_EQ(world.port().Settings(), " 1200n,8,1");
  world.port().TakeSent();
  scan.Start();
  EXPECT_EQ(Asked(), "nothing") << "It runs already.";
}

TEST_F(ScanSlavesTest, DoesNotStartBeforeItIsShown) {
  scan.Start();
  EXPECT_EQ(world.port().opens(), 0);
}

TEST_F(ScanSlavesTest, StopsWhileItWaitsForQuiet) {
  scan.Show();
  Receive("rubbish that is longer than a frame");
  world.port().TakeSent();
  scan.Stop();
  world.Advance(1min);
  EXPECT_EQ(Asked(), "nothing");
}

TEST_F(ScanSlavesTest, NothingOfBeforeTheStopIsLeftBehindTheStart) {
  scan.Show();
  Receive(AnswerFrame(kScanRead, 5, 2).substr(0, 9));
  scan.Stop();
  scan.Start();
  Answer(kScanRead, 5, 2);
  EXPECT_EQ(Row(0), "R1865CM |  |  | ") << "Not half an answer.";
  Receive("rubbish that is longer than a frame");
  EXPECT_EQ(scan.ScanAddress, 1);
  scan.Stop();
  scan.Start();
  world.port().TakeSent();
  Answer(kScanRead, 1, 1);
  EXPECT_EQ(Row(1), "R1862A |  |  | ");
  EXPECT_EQ(Asked(), "slave 1 step 1") << "Not the doubt.";
}

// --- The port ------------------------------------------------------------------------------------

TEST_F(ScanSlavesTest, ABusyPortIsToldUntilItIsFree) {
  world.port().MakeBusy();
  scan.Show();
  EXPECT_EQ(State(), kBusy);
  world.Advance(1min);
  EXPECT_EQ(State(), kBusy);
  EXPECT_EQ(Asked(), "nothing");
  EXPECT_EQ(Row(0), " |  |  | ") << "Nobody has been asked.";
  world.port().MakeBusy(false);
  world.Advance(2500ms);
  EXPECT_EQ(State(), "Scanning address 0");
  EXPECT_EQ(Asked(), "slave 0 step 0");
}

TEST_F(ScanSlavesTest, APortThatIsNoneIsTold) {
  plain.com_port = 17;
  scan.Show();
  EXPECT_EQ(State(), "Waiting at address 0: COM17 is no port number.");
  scan.Stop();
  EXPECT_EQ(State(), "Stopped at address 0");
}

TEST_F(ScanSlavesTest, AFailureWithoutAReasonIsToldToo) {
  world.faults().Break("Port.Open", RunTimeError(kPortUnavailable));
  scan.Show();
  EXPECT_EQ(State(), "Waiting at address 0: The communication port can not be used.");
}

TEST_F(ScanSlavesTest, AnUnpluggedDeviceIsToldAndComesBack) {
  scan.Show();
  AnswerAllSteps();
  world.Advance(1s);
  world.port().Unplug();
  world.Settle();
  EXPECT_EQ(State(), "Waiting at address 1: COM1 was unplugged.");
  world.Advance(1min);
  EXPECT_EQ(State(), "Waiting at address 1: COM1 is not plugged in.");
  EXPECT_EQ(Row(0), "R1865CM2040 | 3.07 | 4.12 | 2.14");
  EXPECT_EQ(Row(1), " |  |  | ");
  world.port().PlugIn();
  world.port().TakeSent();
  world.Advance(2500ms);
  EXPECT_EQ(Asked(), "slave 1 step 0");
  EXPECT_EQ(State(), "Scanning address 1");
}

TEST_F(ScanSlavesTest, UnpluggedWhileItRestsIsNoNews) {
  scan.Show();
  world.port().Unplug();
  scan.Stop();
  world.Settle();
  EXPECT_EQ(State(), "Stopped at address 0");
}

TEST_F(ScanSlavesTest, CallsOfThePortThatFailArePassedBy) {
  for (const char* call : {"Port.Open", "Port.Close", "Port.Output", "Port.Input"}) {
    scan.Show();
    world.port().TakeSent();
    world.faults().Break(call, RunTimeError(kDeviceIo, "Input/output error"));
    Answer(kScanRead, 5, 2);
    world.Advance(2500ms);
    EXPECT_TRUE(world.faults().Spent()) << call;
    world.Advance(2500ms);
    EXPECT_EQ(scan.txtType(0).Text.get(), "R1865CM") << call;
    EXPECT_EQ(State().substr(0, 8), "Scanning") << call;
    scan.Unload();
  }
}

TEST_F(ScanSlavesTest, OnAPortThatDoesNotCloseNothingIsHeardAnyMore) {
  scan.Show();
  world.faults().Break("Port.Close", RunTimeError(kDeviceIo));
  scan.Stop();
  EXPECT_TRUE(world.port().PortOpen());
  Answer(kScanRead, 5, 2);
  EXPECT_EQ(world.port().InBufferCount(), 0);
  EXPECT_EQ(Row(0), " |  |  | ");
  scan.Start();
  Answer(kScanRead, 5, 2);
  EXPECT_EQ(Row(0), "R1865CM |  |  | ");
}

TEST_F(ScanSlavesTest, ErrorsOfTheLineAreNoAnswer) {
  scan.Show();
  world.port().TakeSent();
  for (const int event : {kCommFrame, kCommOverrun, kCommReceiveOver, kCommTransmitFull}) {
    world.port().RaiseLineError(event);
    world.Settle();
  }
  EXPECT_EQ(Asked(), "nothing");
  Answer(kScanRead, 5, 2);
  EXPECT_EQ(Row(0), "R1865CM |  |  | ");
}

TEST_F(ScanSlavesTest, WithoutARequestNothingIsAnAnswer) {
  world.faults().Break("Port.Output", RunTimeError(kDeviceIo, "Input/output error"));
  scan.Show();
  EXPECT_EQ(State(), "Waiting at address 0: Input/output error");
  Receive("0123456789ABCDEF");
  Answer(kScanRead, 5, 2);
  EXPECT_EQ(Row(0), " |  |  | ");
  EXPECT_EQ(scan.ScanAddress, 0);
  EXPECT_EQ(Asked(), "nothing");
  EXPECT_EQ(world.port().InBufferCount(), 0);
  world.Advance(2500ms);
  EXPECT_EQ(Asked(), "slave 0 step 0");
  Answer(kScanRead, 5, 2);
  EXPECT_EQ(Row(0), "R1865CM |  |  | ");
}

// --- Answers to something else -------------------------------------------------------------------

TEST_F(ScanSlavesTest, AnAnswerThatComesLateIsNotTheNextSlaves) {
  scan.Show();
  const std::string late = AnswerFrame(kScanRead, 5, 2);
  Silence();
  world.port().TakeSent();
  Receive(late);
  EXPECT_EQ(Row(1), " |  |  | ");
  EXPECT_EQ(Asked(), "nothing") << "The right one is waited for.";
  Answer(kScanRead, 1, 1);
  EXPECT_EQ(Row(1), "R1862A |  |  | ");
}

TEST_F(ScanSlavesTest, ALateWordOfDamageIsThatOfItsOwnAddress) {
  scan.Show();
  const std::string late = BuildZoltMessage(kScanCorrupted + 1, "0", 61, 0, 0);
  Silence();
  world.port().TakeSent();
  Receive(late);
  EXPECT_EQ(scan.ScanAddress, 1);
  EXPECT_EQ(Asked(), "nothing");
  Answer(kScanRead, 1, 1);
  EXPECT_EQ(Row(1), "R1862A |  |  | ");
}

TEST_F(ScanSlavesTest, AWordOfDamageWithoutAnAddressIsThatOfTheAddressInWork) {
  for (const char* slave : {" ", "?", "a"}) {
    scan.Show();
    Receive(BuildZoltMessage(kScanCorrupted + 1, slave, 0, 0, 0));
    EXPECT_EQ(scan.ScanAddress, 1);
    scan.Unload();
  }
}

TEST_F(ScanSlavesTest, TheSecondAnswerToARetryIsPassedBy) {
  scan.Show();
  Answer(kScanRead, 5, 2);
  const std::string number = AnswerFrame(kScanRead, 0x07, 0xF8);
  Silence();
  Receive(number);
  world.port().TakeSent();
  Receive(number);
  EXPECT_EQ(Row(0), "R1865CM2040 |  |  | ");
  EXPECT_EQ(Asked(), "nothing");
  Answer(kScanRead, 3, 7);
  EXPECT_EQ(Row(0), "R1865CM2040 | 3.07 |  | ");
}

TEST_F(ScanSlavesTest, ARequestThatComesBackIsNoAnswer) {
  scan.Show();
  const std::string request = world.port().TakeSent().back();
  Receive(request + AnswerFrame(kScanRead, 5, 2));
  EXPECT_EQ(Row(0), "R1865CM |  |  | ");
  EXPECT_EQ(Asked(), "slave 0 step 1");
}

TEST_F(ScanSlavesTest, TheRestOfAnAnswerBehindSomethingElseIsWaitedFor) {
  scan.Show();
  const std::string request = world.port().TakeSent().back();
  const std::string answer = AnswerFrame(kScanRead, 5, 2);
  Receive(request + answer.substr(0, 9));
  EXPECT_EQ(Row(0), " |  |  | ");
  Receive(answer.substr(9));
  EXPECT_EQ(Row(0), "R1865CM |  |  | ");
}

TEST_F(ScanSlavesTest, AForeignAnswerDoesNotKeepTheWalkUp) {
  scan.Show();
  const std::string foreign = BuildZoltMessage(0x11, "0", 1, 2, 3);
  for (int i = 0; i < 5; ++i) {
    world.Advance(400ms);
    Receive(foreign);
  }
  EXPECT_EQ(scan.ScanAddress, 0);
  world.Advance(500ms);
  EXPECT_EQ(scan.ScanAddress, 1);
  EXPECT_EQ(Row(0), "- |  |  | ");
}

TEST_F(ScanSlavesTest, BytesTooManyMakeTheNextRequestWaitUntilTheLineIsQuiet) {
  scan.Show();
  world.port().TakeSent();
  Receive("\x7F" + AnswerFrame(kScanRead, 5, 2));
  EXPECT_EQ(Row(0), "err |  |  | ");
  EXPECT_EQ(Asked(), "nothing");
  EXPECT_EQ(State(), "Scanning address 1");
  for (int i = 0; i < 5; ++i) {
    Receive("x");
    world.Advance(100ms);
  }
  EXPECT_EQ(Asked(), "nothing");
  world.Advance(300ms);
  EXPECT_EQ(Asked(), "slave 1 step 0");
  Answer(kScanRead, 1, 1);
  EXPECT_EQ(Row(1), "R1862A |  |  | ");
}

TEST_F(ScanSlavesTest, ALineThatIsNeverQuietIsAskedAllTheSame) {
  scan.Show();
  world.port().TakeSent();
  int asked = 0;
  for (int i = 0; i < 200; ++i) {
    Receive("0123456789");
    world.Advance(50ms);
    asked += static_cast<int>(world.port().TakeSent().size());
  }
  EXPECT_GE(asked, 8);
  EXPECT_LE(asked, 10);
  EXPECT_EQ(Row(0), "err |  |  | ");
}

}  // namespace
}  // namespace tarnlink
