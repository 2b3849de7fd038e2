#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <QSerialPort>
#include <algorithm>
#include <fstream>

#include "common/run_time_error.h"
#include "contract/serial_port_benches.h"
#include "platform/qt/line_errors.h"
#include "platform/qt/port_guard.h"
#include "platform/qt/port_holder.h"

namespace tarnlink {
namespace {

// Opens a port that means `path` and gives the sentence of the failure.
std::string OpeningFails(const std::string& path) {
  QtSerialPort port([&](int) { return path; });
  port.SetCommPort(3);
  EXPECT_EQ(ErrorOf([&] { port.SetPortOpen(true); }), kPortUnavailable) << path;
  EXPECT_FALSE(port.PortOpen());
  return ReasonOf([&] { port.SetPortOpen(true); });
}

TEST(QtSerialPort, SaysThatANumberWithoutDeviceNeedsOne) {
  EXPECT_EQ(OpeningFails(""),
            "COM3 stands for no serial device: plug one in, or choose one in the options.");
}

TEST(QtSerialPort, SaysThatAMissingDeviceHasToBePluggedIn) {
  EXPECT_EQ(OpeningFails("/dev/ttyUSB99"),
            "COM3 (/dev/ttyUSB99) is not there: plug it in, or choose another device in the "
            "options.");
}

TEST(QtSerialPort, RefusesWhatIsNoSerialPort) {
  const TemporaryFolder folder;
  std::ofstream(folder / "file") << "text";
  for (const std::string& path : {folder / "file", folder.path(), std::string("/dev/null")}) {
    EXPECT_EQ(OpeningFails(path), "COM3 (" + path + ") is no serial port.");
  }
  EXPECT_EQ(OpeningFails(folder / "file" + "/x"),
            "COM3 (" + (folder / "file") +
                "/x) is not there: plug it in, or choose another device "
                "in the options.");
}

TEST(QtSerialPort, NamesTheGroupOfADeviceThatIsNotPermitted) {
  PtyPair pty;
  ASSERT_EQ(chmod(pty.path().c_str(), 0660), 0);
  if (geteuid() != 0) GTEST_SKIP() << "Only root can give a terminal to another user.";
  ASSERT_EQ(chown(pty.path().c_str(), 0, 20), 0);
  const OrdinaryUser rights;
  EXPECT_EQ(OpeningFails(pty.path()),
            "You do not have the permission to use COM3 (" + pty.path() +
                "): it belongs to the group \"dialout\". Run \"sudo usermod -aG dialout $USER\", "
                "then log out and log in again.");
}

TEST(QtSerialPort, DoesNotRecommendAGroupThatMayNotUseTheDeviceEither) {
  if (geteuid() != 0) GTEST_SKIP() << "Only root can give a terminal to another user.";
  PtyPair pty;
  ASSERT_EQ(chmod(pty.path().c_str(), 0600), 0);
  ASSERT_EQ(chown(pty.path().c_str(), 0, 20), 0);
  const OrdinaryUser rights;
  EXPECT_EQ(OpeningFails(pty.path()),
            "You do not have the permission to use COM3 (" + pty.path() + "): only its owner may.");
}

TEST(WhyUnusable, SaysWhatOpeningWouldSay) {
  const TemporaryFolder folder;
  std::ofstream(folder / "file") << "text";
  for (const std::string& path : {std::string(), std::string("/dev/ttyUSB99"), folder / "file"}) {
    const std::string reason = WhyUnusable(3, path);
    EXPECT_FALSE(reason.empty()) << path;
    EXPECT_EQ(reason, OpeningFails(path));
  }
}

TEST(WhyUnusable, HasNothingAgainstADeviceEvenIfItIsInUse) {
  PtyPair pty;
  EXPECT_EQ(WhyUnusable(3, pty.path()), "");
  QtSerialPort port([&](int) { return pty.path(); });
  port.SetPortOpen(true);
  EXPECT_EQ(WhyUnusable(3, pty.path()), "");
}

TEST(WhyUnusable, NamesTheGroupOfADeviceThatIsNotPermitted) {
  if (geteuid() != 0) GTEST_SKIP() << "Only root can give a terminal to another user.";
  PtyPair pty;
  ASSERT_EQ(chmod(pty.path().c_str(), 0660), 0);
  ASSERT_EQ(chown(pty.path().c_str(), 0, 20), 0);
  const OrdinaryUser rights;
  const std::string reason = WhyUnusable(3, pty.path());
  EXPECT_NE(reason.find("usermod -aG dialout"), std::string::npos) << reason;
  EXPECT_EQ(reason, OpeningFails(pty.path()));
}

TEST(QtSerialPort, NamesTheProcessThatHoldsABusyDevice) {
  PtyPair pty;
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t child = fork();
  if (child == 0) {
    const int device = open(pty.path().c_str(), O_RDWR | O_NOCTTY);
    flock(device, LOCK_EX | LOCK_NB);
    const bool told = write(ready[1], "x", 1) == 1;
    pause();
    _exit(told ? 0 : 1);
  }
  char byte = 0;
  ASSERT_EQ(read(ready[0], &byte, 1), 1);
  EXPECT_EQ(OpeningFails(pty.path()),
            "COM3 (" + pty.path() + ") is in use by contract_tests (process " +
                std::to_string(child) + "). Close it there and try again.");
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  close(ready[0]);
  close(ready[1]);
}

TEST(QtSerialPort, SaysThatThisProgramItselfHoldsTheDevice) {
  PtyPair pty;
  QtSerialPort first([&](int) { return pty.path(); });
  first.SetPortOpen(true);
  EXPECT_EQ(OpeningFails(pty.path()),
            "COM3 (" + pty.path() + ") is in use by this program. Close it there and try again.");
}

// Programs of this kind lock by the name of the device, and a link has another name.
TEST(QtSerialPort, ALinkIsNoWayAroundTheLockFileOfAnotherProgram) {
  QtPortBench bench;
  QSerialPort other(QString::fromStdString(bench.pty().path()));
  ASSERT_TRUE(other.open(QIODevice::ReadWrite));
  const auto port = bench.MakePort();
  EXPECT_EQ(ErrorOf([&] { port->SetPortOpen(true); }), kPortUnavailable);
  other.close();
  port->SetPortOpen(true);
  EXPECT_TRUE(port->PortOpen());
}

TEST(PortHolder, CountsTheHandlesOfThisProgramOnlyBeyondItsOwn) {
  const PtyPair pty;  // has one handle on the device itself
  EXPECT_EQ(HolderOf(pty.path(), 0), "this program");
  EXPECT_EQ(HolderOf(pty.path(), 1), "");
  EXPECT_EQ(HolderOf("/dev/no-such-device", 0), "");
}

TEST(QtSerialPort, KeepsProgramsOutThatKnowNothingOfItsLock) {
  PtyPair pty;
  ASSERT_EQ(chmod(pty.path().c_str(), 0666), 0);
  QtSerialPort port([&](int) { return pty.path(); });
  port.SetPortOpen(true);
  {
    const OrdinaryUser rights;
    EXPECT_LT(open(pty.path().c_str(), O_RDWR | O_NOCTTY), 0);
  }
  port.SetPortOpen(false);
  const OrdinaryUser rights;
  const int other = open(pty.path().c_str(), O_RDWR | O_NOCTTY);
  EXPECT_GE(other, 0);
  close(other);
}

TEST(QtSerialPort, OpensEverySettingOnAPseudoTerminal) {
  QtPortBench bench;
  const auto port = bench.MakePort();
  for (const char* parity : {"N", "E", "O"}) {
    for (const char* rest : {",8,1", ",8,2", ",7,1", ",7,2"}) {
      for (const char* speed : {"1200,", "2400,", "4800,", "9600,", "19200,", "38400,"}) {
        port->SetSettings(std::string(speed) + parity + rest);
        EXPECT_EQ(ReasonOf([&] { port->SetPortOpen(true); }), "no error");
        port->SetPortOpen(false);
      }
    }
  }
}

// More than the terminal takes at once: the rest follows as the far end reads.
TEST(QtSerialPort, SendsALongTextInPieces) {
  QtPortBench bench;
  const auto port = bench.MakePort();
  port->SetPortOpen(true);
  std::string sent;
  for (int i = 0; i < 6000; ++i) sent += std::to_string(i);
  port->Output(sent);
  // The driver has room again, but the rest of the first text comes first.
  std::string arrived = bench.FarEndGot();
  EXPECT_LT(arrived.size(), sent.size());
  port->Output("end");
  EXPECT_TRUE(bench.RunUntil([&] {
    arrived += bench.FarEndGot();
    return arrived.size() >= sent.size() + 3;
  }));
  EXPECT_EQ(arrived, sent + "end");
}

TEST(QtSerialPort, TellsOnceWhenNobodyTakesWhatIsSent) {
  QtPortBench bench;
  const auto port = bench.MakePort();
  std::vector<int> events;
  port->SetOnComm([&](int event) { events.push_back(event); });
  port->SetPortOpen(true);
  const std::string block(30'000, 'x');
  for (int i = 0; i < 3; ++i) port->Output(block);
  EXPECT_TRUE(events.empty());
  EXPECT_TRUE(bench.RunUntil([&] { return !events.empty(); }));
  EXPECT_EQ(events, std::vector<int>{kCommTransmitFull});
  EXPECT_TRUE(port->PortOpen());
}

TEST(QtSerialPort, AnEventOnItsWayDoesNotReachTheNextOpening) {
  QtPortBench bench;
  const auto port = bench.MakePort();
  std::vector<int> events;
  port->SetOnComm([&](int event) { events.push_back(event); });
  port->SetPortOpen(true);
  for (int i = 0; i < 3; ++i) port->Output(std::string(30'000, 'x'));
  port->SetPortOpen(false);
  port->SetPortOpen(true);
  bench.RunFor(20ms);
  EXPECT_TRUE(events.empty());
}

TEST(QtSerialPort, NoticesTheLossWhileItSends) {
  QtPortBench bench;
  const auto port = bench.MakePort();
  std::vector<int> events;
  port->SetOnComm([&](int event) { events.push_back(event); });
  port->SetPortOpen(true);
  bench.PullOut();
  port->Output("x");
  EXPECT_TRUE(events.empty());
  EXPECT_TRUE(bench.RunUntil([&] { return !events.empty(); }));
  bench.RunFor(20ms);
  EXPECT_EQ(events, std::vector<int>{kCommDeviceGone});
  EXPECT_EQ(port->LossReason(),
            "COM1 (" + bench.link() + ") is gone: it was unplugged, or its far end was closed.");
}

// The event loop knows already that there is something to read when the bytes are thrown away; a
// read that finds nothing then would look like a lost device.
TEST(QtSerialPort, ClearInBufferBetweenArrivalAndReadingIsNoLossOfTheDevice) {
  QtPortBench bench;
  const auto port = bench.MakePort();
  std::vector<int> events;
  port->SetRThreshold(1);
  port->SetOnComm([&](int event) { events.push_back(event); });
  port->SetPortOpen(true);
  for (int round = 1; round <= 5; ++round) {
    int cleared = 0;
    QMetaObject::invokeMethod(
        qApp,
        [&] {
          port->ClearInBuffer();
          ++cleared;
        },
        Qt::QueuedConnection);
    bench.FarEndSends("abc");
    EXPECT_TRUE(bench.RunUntil([&] { return cleared > 0; }));
    bench.RunFor(5ms);
  }
  EXPECT_TRUE(events.empty());
  EXPECT_TRUE(port->PortOpen());
}

TEST(QtSerialPort, TellsOfALossAlsoWithTheReceiveEventStillOnItsWay) {
  QtPortBench bench;
  const auto port = bench.MakePort();
  std::vector<int> events;
  port->SetRThreshold(1);
  port->SetOnComm([&](int event) { events.push_back(event); });
  port->SetPortOpen(true);
  bench.FarEndSends("x");
  bench.PullOut();
  EXPECT_TRUE(bench.RunUntil(
      [&] { return std::count(events.begin(), events.end(), kCommDeviceGone) == 1; }));
  bench.RunFor(20ms);
  EXPECT_EQ(events.back(), kCommDeviceGone);
}

TEST(LineErrors, EachCounterThatMovedIsOneEvent) {
  const LineCounters before{1, 2, 3};
  EXPECT_TRUE(LineErrorsBetween(before, before).empty());
  EXPECT_EQ(LineErrorsBetween(before, {2, 2, 3}), std::vector<int>{kCommFrame});
  EXPECT_EQ(LineErrorsBetween(before, {1, 9, 3}), std::vector<int>{kCommOverrun});
  EXPECT_EQ(LineErrorsBetween(before, {1, 2, 4}), std::vector<int>{kCommReceiveOver});
  EXPECT_EQ(LineErrorsBetween(before, {5, 5, 5}),
            (std::vector<int>{kCommFrame, kCommOverrun, kCommReceiveOver}));
}

TEST(LineErrors, ACounterThatWrappedAroundHasMoved) {
  EXPECT_EQ(LineErrorsBetween({2147483647, 0, 0}, {-2147483647, 0, 0}),
            std::vector<int>{kCommFrame});
}

TEST(LineErrors, APseudoTerminalHasNoCounters) {
  const PtyPair pty;
  const int device = open(pty.path().c_str(), O_RDWR | O_NOCTTY);
  EXPECT_FALSE(ReadLineCounters(device).has_value());
  close(device);
}

}  // namespace
}  // namespace tarnlink
