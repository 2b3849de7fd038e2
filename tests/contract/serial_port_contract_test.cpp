#include <gtest/gtest.h>

#include <vector>

#include "common/run_time_error.h"
#include "contract/serial_port_benches.h"

namespace tarnlink {
namespace {

template <class Bench>
class SerialPortContract : public testing::Test {
 protected:
  SerialPortContract() : port(bench.MakePort()) {
    port->SetOnComm([this](int event) {
      events.push_back(event);
      if (reading) got += port->Input();
    });
  }

  void Open(int threshold) {
    port->SetRThreshold(threshold);
    port->SetPortOpen(true);
  }
  bool Until(const std::function<bool()>& condition) { return bench.RunUntil(condition); }
  // Long enough for anything that is on its way.
  void Quiet() { bench.RunFor(40ms); }
  bool WaitForBytes(int count) {
    return Until([&] { return port->InBufferCount() >= count; });
  }

  Bench bench;
  std::unique_ptr<SerialPort> port;
  std::vector<int> events;
  bool reading = true;  // the handler reads what waits
  std::string got;
};

using Benches = testing::Types<FakePortBench, QtPortBench>;
TYPED_TEST_SUITE(SerialPortContract, Benches, BenchNames);

TYPED_TEST(SerialPortContract, SendsEveryByteAsItIs) {
  this->Open(0);
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  this->port->Output(all);
  this->port->Output("second");
  std::string arrived;
  EXPECT_TRUE(this->Until([&] {
    arrived += this->bench.FarEndGot();
    return arrived.size() >= all.size() + 6;
  }));
  EXPECT_EQ(arrived, all + "second");
}

TYPED_TEST(SerialPortContract, ReceivesEveryByteAsItIs) {
  this->Open(256);
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  this->bench.FarEndSends(all);
  EXPECT_TRUE(this->Until([&] { return !this->got.empty(); }));
  EXPECT_EQ(this->got, all);
}

TYPED_TEST(SerialPortContract, FiresTheReceiveEventFromTheThresholdOn) {
  this->Open(3);
  this->bench.FarEndSends("ab");
  EXPECT_TRUE(this->WaitForBytes(2));
  this->Quiet();
  EXPECT_TRUE(this->events.empty());
  this->bench.FarEndSends("c");
  EXPECT_TRUE(this->Until([&] { return !this->got.empty(); }));
  EXPECT_EQ(this->got, "abc");
  EXPECT_EQ(this->events, std::vector<int>{kCommReceive});
}

TYPED_TEST(SerialPortContract, ThresholdZeroNeverFires) {
  this->Open(0);
  this->bench.FarEndSends("abc");
  EXPECT_TRUE(this->WaitForBytes(3));
  this->Quiet();
  EXPECT_TRUE(this->events.empty());
}

TYPED_TEST(SerialPortContract, LoweringTheThresholdUnderWhatWaitsFiresThroughTheLoop) {
  this->Open(10);
  this->bench.FarEndSends("abc");
  EXPECT_TRUE(this->WaitForBytes(3));
  this->port->SetRThreshold(3);
  EXPECT_TRUE(this->events.empty());
  EXPECT_TRUE(this->Until([&] { return this->got == "abc"; }));
}

TYPED_TEST(SerialPortContract, RepeatsTheReceiveEventUntilTheBytesAreRead) {
  this->reading = false;
  this->Open(2);
  this->bench.FarEndSends("ab");
  EXPECT_TRUE(this->Until([&] { return this->events.size() >= 5; }));
  EXPECT_EQ(this->port->Input(), "ab");
  this->events.clear();
  this->Quiet();
  EXPECT_TRUE(this->events.empty());
}

TYPED_TEST(SerialPortContract, AnUnreadEventDoesNotStarveTimers) {
  this->reading = false;
  int ticks = 0;
  const auto timer = this->bench.MakeTimer();
  timer->SetInterval(5);
  timer->SetOnTimer([&] { ++ticks; });
  timer->SetEnabled(true);
  this->Open(1);
  this->bench.FarEndSends("x");
  EXPECT_TRUE(this->Until([&] { return this->events.size() >= 20 && ticks >= 5; }));
}

TYPED_TEST(SerialPortContract, InputTakesEverythingAndEmptiesTheBuffer) {
  this->Open(0);
  this->bench.FarEndSends("abc");
  EXPECT_TRUE(this->WaitForBytes(3));
  EXPECT_EQ(this->port->InBufferCount(), 3);
  EXPECT_EQ(this->port->Input(), "abc");
  EXPECT_EQ(this->port->InBufferCount(), 0);
  EXPECT_EQ(this->port->Input(), "");
}

TYPED_TEST(SerialPortContract, ClearInBufferThrowsAwayWhatWaits) {
  this->Open(0);
  this->bench.FarEndSends("abc");
  EXPECT_TRUE(this->WaitForBytes(3));
  this->port->ClearInBuffer();
  EXPECT_EQ(this->port->InBufferCount(), 0);
  this->Quiet();
  EXPECT_EQ(this->port->InBufferCount(), 0);
}

// The event loop has not seen these bytes yet when they are thrown away.
TYPED_TEST(SerialPortContract, ClearInBufferThrowsAwayWhatHasJustArrived) {
  this->Open(1);
  for (int i = 0; i < 5; ++i) {
    this->bench.FarEndSends("old");
    this->port->ClearInBuffer();
    this->port->ClearInBuffer();
    this->Quiet();
    EXPECT_TRUE(this->events.empty());
    EXPECT_TRUE(this->port->PortOpen());
  }
  this->bench.FarEndSends("old");
  this->port->ClearInBuffer();
  this->bench.FarEndSends("new");
  EXPECT_TRUE(this->Until([&] { return this->got.size() >= 3; }));
  EXPECT_EQ(this->got, "new");
}

TYPED_TEST(SerialPortContract, OpeningAnOpenPortThrows8005AndLeavesItOpen) {
  this->Open(0);
  EXPECT_EQ(ErrorOf([&] { this->port->SetPortOpen(true); }), kPortUnavailable);
  EXPECT_TRUE(this->port->PortOpen());
  this->port->Output("x");
  EXPECT_TRUE(this->Until([&] { return this->bench.FarEndGot() == "x"; }));
}

TYPED_TEST(SerialPortContract, ADeviceThatAnotherProgramHoldsThrows8005UntilItLetsGo) {
  this->bench.HoldElsewhere(true);
  EXPECT_EQ(ErrorOf([&] { this->Open(0); }), kPortUnavailable);
  EXPECT_FALSE(this->port->PortOpen());
  this->bench.HoldElsewhere(false);
  this->Open(0);
  EXPECT_TRUE(this->port->PortOpen());
}

TYPED_TEST(SerialPortContract, ASecondPortOnTheSameDeviceThrows8005UntilTheFirstCloses) {
  const auto second = this->bench.MakePort();
  this->Open(0);
  EXPECT_EQ(ErrorOf([&] { second->SetPortOpen(true); }), kPortUnavailable);
  EXPECT_FALSE(second->PortOpen());
  EXPECT_TRUE(this->port->PortOpen());
  this->port->SetPortOpen(false);
  second->SetPortOpen(true);
  EXPECT_TRUE(second->PortOpen());
}

TYPED_TEST(SerialPortContract, AMissingDeviceThrows8005) {
  this->bench.PullOut();
  EXPECT_EQ(ErrorOf([&] { this->Open(0); }), kPortUnavailable);
  EXPECT_FALSE(this->port->PortOpen());
}

TYPED_TEST(SerialPortContract, AClosedPortHasNothingAndTakesNothing) {
  EXPECT_EQ(this->port->Input(), "");
  EXPECT_EQ(this->port->InBufferCount(), 0);
  this->port->ClearInBuffer();
  this->port->SetPortOpen(false);
  EXPECT_FALSE(this->port->PortOpen());
  EXPECT_EQ(ErrorOf([&] { this->port->Output("x"); }), kDeviceIo);
}

TYPED_TEST(SerialPortContract, ALostDeviceIsToldOnceAndThePortIsClosedThen) {
  this->Open(1);
  EXPECT_EQ(this->port->LossReason(), "");
  this->bench.PullOut();
  EXPECT_TRUE(this->Until([&] { return !this->events.empty(); }));
  EXPECT_FALSE(this->port->PortOpen());
  this->Quiet();
  EXPECT_EQ(this->events, std::vector<int>{kCommDeviceGone});
  EXPECT_NE(this->port->LossReason(), "");
  EXPECT_EQ(this->port->Input(), "");
  EXPECT_EQ(ErrorOf([&] { this->port->SetPortOpen(true); }), kPortUnavailable);
}

TYPED_TEST(SerialPortContract, WorksAgainAsSoonAsALostDeviceIsBack) {
  for (int round = 0; round < 3; ++round) {
    this->Open(4);
    this->bench.PullOut();
    EXPECT_TRUE(this->Until([&] { return this->events.size() == 1; }));
    this->events.clear();
    this->bench.PlugInAgain();
    this->Open(4);
    this->bench.FarEndSends("back");
    EXPECT_TRUE(this->Until([&] { return this->got == "back"; }));
    this->port->SetPortOpen(false);
    this->events.clear();
    this->got.clear();
  }
}

TYPED_TEST(SerialPortContract, ThresholdZeroStillTellsOfALostDevice) {
  this->Open(0);
  this->bench.PullOut();
  EXPECT_TRUE(this->Until([&] { return !this->events.empty(); }));
  EXPECT_EQ(this->events, std::vector<int>{kCommDeviceGone});
}

TYPED_TEST(SerialPortContract, AHandlerMayReopenALostDeviceInside) {
  bool reopened = false;
  this->port->SetOnComm([&](int event) {
    if (event != kCommDeviceGone) return;
    this->bench.PlugInAgain();
    this->port->SetPortOpen(true);
    reopened = true;
  });
  this->Open(1);
  this->bench.PullOut();
  EXPECT_TRUE(this->Until([&] { return reopened; }));
  this->port->Output("hello");
  EXPECT_TRUE(this->Until([&] { return this->bench.FarEndGot() == "hello"; }));
}

TYPED_TEST(SerialPortContract, OpeningStartsWithAnEmptyBuffer) {
  this->bench.FarEndSends("stale");
  this->Open(1);
  this->Quiet();
  EXPECT_TRUE(this->events.empty());
  this->bench.FarEndSends("lost");
  this->port->SetPortOpen(false);
  this->port->SetPortOpen(true);
  this->Quiet();
  EXPECT_EQ(this->got, "");
}

TYPED_TEST(SerialPortContract, NoReceiveEventComesAfterClosing) {
  this->reading = false;
  this->Open(1);
  this->bench.FarEndSends("x");
  EXPECT_TRUE(this->Until([&] { return !this->events.empty(); }));
  this->port->SetPortOpen(false);
  this->events.clear();
  this->Quiet();
  EXPECT_TRUE(this->events.empty());
}

TYPED_TEST(SerialPortContract, AHandlerMayCloseAndReopenInside) {
  int rounds = 0;
  this->port->SetOnComm([&](int) {
    this->port->SetPortOpen(false);
    this->port->SetPortOpen(true);
    ++rounds;
  });
  this->Open(1);
  for (int i = 1; i <= 3; ++i) {
    this->bench.FarEndSends("x");
    EXPECT_TRUE(this->Until([&] { return rounds == i; }));
  }
  this->Quiet();
  EXPECT_EQ(rounds, 3);
  EXPECT_TRUE(this->port->PortOpen());
}

TYPED_TEST(SerialPortContract, AHandlerMayDestroyThePort) {
  this->port->SetOnComm([&](int) { this->port.reset(); });
  this->Open(1);
  this->bench.FarEndSends("x");
  EXPECT_TRUE(this->Until([&] { return this->port == nullptr; }));
  this->Quiet();
}

// As a handler that shows a message box after it has read.
TYPED_TEST(SerialPortContract, FurtherBytesFireInsideAHandlerThatHasRead) {
  int inner = 0;
  bool outer_done = false;
  this->port->SetOnComm([&](int) {
    this->port->Input();
    if (outer_done) return;
    if (inner++ > 0) return;
    this->bench.FarEndSends("y");
    EXPECT_TRUE(this->Until([&] { return inner == 2; }));
    outer_done = true;
  });
  this->Open(1);
  this->bench.FarEndSends("x");
  EXPECT_TRUE(this->Until([&] { return outer_done; }));
}

// As a handler that shows a message box first: the box must not come twice.
TYPED_TEST(SerialPortContract, NothingFiresInsideAHandlerThatHasNotReadYet) {
  int inside = 0;
  int deepest = 0;
  int calls = 0;
  this->port->SetOnComm([&](int) {
    ++calls;
    deepest = std::max(deepest, ++inside);
    this->bench.FarEndSends("y");
    this->Quiet();
    --inside;
    this->port->Input();
  });
  this->Open(1);
  this->bench.FarEndSends("x");
  EXPECT_TRUE(this->Until([&] { return calls >= 1 && inside == 0; }));
  EXPECT_EQ(deepest, 1);
}

TYPED_TEST(SerialPortContract, TakesTheSettingsOfTheOptionsAndOfTheTools) {
  for (const char* settings : {" 9600,N,8, 1", " 2400n,8,1", " 1200,E,8, 2", " 38400,O,8, 1",
                               "19200,e,7,1", " 4800,E,7, 2"}) {
    this->port->SetSettings(settings);
    EXPECT_EQ(this->port->Settings(), settings);
    this->port->SetPortOpen(true);
    EXPECT_TRUE(this->port->PortOpen()) << settings;
    this->port->SetPortOpen(false);
  }
}

TYPED_TEST(SerialPortContract, RefusesOtherSettingsWith13AndKeepsTheOldOnes) {
  this->port->SetSettings("4800,n,8,1");
  for (const char* settings : {"", "9600", "9600,X,8,1", "9600,N,9,1", "9600,N,8,3", "9600,N,8"}) {
    EXPECT_EQ(ErrorOf([&] { this->port->SetSettings(settings); }), kTypeMismatch) << settings;
  }
  EXPECT_EQ(this->port->Settings(), "4800,n,8,1");
}

TYPED_TEST(SerialPortContract, OtherSettingsOnAnOpenPortOpenItAnew) {
  this->Open(0);
  this->bench.FarEndSends("abc");
  EXPECT_TRUE(this->WaitForBytes(3));
  this->port->SetSettings("9600,N,8,1");
  EXPECT_EQ(this->port->InBufferCount(), 3) << "the same settings in other words";
  this->port->SetSettings(" 1200,E,7, 2");
  EXPECT_TRUE(this->port->PortOpen());
  EXPECT_EQ(this->port->InBufferCount(), 0);
  this->port->SetSettings(" 9600,N,8, 1");
  this->port->Output("x");
  EXPECT_TRUE(this->Until([&] { return this->bench.FarEndGot() == "x"; }));
}

TYPED_TEST(SerialPortContract, KeepsPortNumberAndThreshold) {
  this->port->SetCommPort(7);
  this->port->SetRThreshold(11);
  EXPECT_EQ(this->port->CommPort(), 7);
  EXPECT_EQ(this->port->RThreshold(), 11);
}

TYPED_TEST(SerialPortContract, AHandlerSetWhileBytesWaitIsCalled) {
  this->port->SetOnComm({});
  this->Open(1);
  this->bench.FarEndSends("x");
  EXPECT_TRUE(this->WaitForBytes(1));
  bool called = false;
  this->port->SetOnComm([&](int) {
    called = true;
    this->port->Input();
  });
  EXPECT_FALSE(called);
  EXPECT_TRUE(this->Until([&] { return called; }));
}

}  // namespace
}  // namespace tarnlink
