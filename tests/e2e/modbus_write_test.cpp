// Writes through the dialogs to slaves that stand on other people's libraries, over a real port.

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <algorithm>
#include <functional>
#include <vector>

#include "form/user_writes.h"
#include "modbus_peer.h"
#include "modbus_screen.h"
#include "monitor/monitor.h"
#include "monitor/setting_keys.h"
#include "platform/forwarding_platform.h"
#include "platform/qt/qt_serial_port.h"
#include "platform/qt/qt_timer.h"
#include "support/fake_world.h"

namespace e2e {
namespace {

using namespace tarnlink;

// Ports and timers are the machine's, all else is a test's.
class RealLinePlatform final : public ForwardingPlatform {
 public:
  explicit RealLinePlatform(std::string device)
      : ForwardingPlatform(world_), device_(std::move(device)) {}

  std::unique_ptr<SerialPort> CreatePort() override {
    return std::make_unique<QtSerialPort>([this](int) { return device_; });
  }
  std::unique_ptr<Timer> CreateTimer() override { return std::make_unique<QtTimer>(); }
  FakeDialogs& dialogs() override { return world_.dialogs(); }

  FakeFiles& disk() { return world_.disk(); }

 private:
  std::string device_;
  FakeWorld world_;
};

// A millisecond of Qt's event loop.
void RunLoop() {
  QEventLoop loop;
  QTimer::singleShot(1, &loop, &QEventLoop::quit);
  loop.exec();
}

// Runs the loop until `condition` holds; false if it does not in time.
bool Until(const std::function<bool()>& condition) {
  constexpr int kPatience = 5000;  // ms
  QElapsedTimer elapsed;
  elapsed.start();
  while (!condition()) {
    if (elapsed.hasExpired(kPatience)) return false;
    RunLoop();
  }
  return true;
}

class ModbusWrites : public testing::TestWithParam<Peer> {
 protected:
  ModbusWrites() {
    WriteSetting(platform.settings(), setting::kProtocol, "2");
    WriteSetting(platform.settings(), setting::kBaudrate, "4");
    WriteSetting(platform.settings(), setting::kParity, "0");
    WriteSetting(platform.settings(), setting::kStopBits, "0");
    monitor.start.Form_Load();
  }

  ~ModbusWrites() override {
    monitor.main.Toolbar1(3).Press();
    RunLoop();  // the port lets go of its device
  }

  // Opens the screen and polls it until the last Location, a whole register, has its value.
  void Start(const std::vector<Location>& locations) {
    const std::string path = "/home/user/Documents/peer.wcr";
    platform.disk().Put(path, ScreenFile(locations));
    monitor.screen.OpenTarnLinkFileBuildScreen(path);
    monitor.main.Toolbar1(2).Press();
    const int last = RegisterOf(locations.back());
    ASSERT_TRUE(Shows(static_cast<int>(locations.size()), Digits(ModbusPeer::FirstValue(3, last))));
  }

  void Write(int location, const std::string& hexadecimal) {
    Exchange([&] { TypeAndWrite(monitor, location, kHexadecimal, hexadecimal); });
  }
  void WriteSeveral(int location, const std::vector<int>& values) {
    Exchange([&] { TypeAndWriteBlock(monitor, location, values); });
  }

  std::string Value(int location) { return monitor.main.RAM_LOC_VAL(location).Text; }
  std::string Panel(int panel) { return monitor.main.StatusBar1(panel).Text; }
  testing::AssertionResult Shows(int location, const std::string& text) {
    if (Until([&] { return Value(location) == text; })) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "Location " << location << " shows " << Value(location);
  }

  // The slave holds `values` from register `first` on, and elsewhere what it held at the beginning.
  void ExpectHeld(int first, const std::vector<std::uint16_t>& values) {
    std::vector<std::uint16_t> expected = ModbusPeer::FirstValues(3, 0, ModbusPeer::kRegisters);
    std::copy(values.begin(), values.end(), expected.begin() + first);
    EXPECT_EQ(peer.Get(3, 0, ModbusPeer::kRegisters), expected);
  }

  ModbusPeer peer{GetParam()};
  RealLinePlatform platform{peer.line().master_path()};
  Monitor monitor{platform};

 private:
  // Between two polls, so that the next answer is the one to the write.
  void Exchange(const std::function<void()>& write) {
    ASSERT_TRUE(Until([&] { return monitor.main.message_received; }))
        << "The last exchange has no end.";
    write();
    ASSERT_FALSE(monitor.main.message_received) << "Nothing has been written.";
    ASSERT_TRUE(Until([&] { return monitor.main.message_received; })) << "The write has no answer.";
  }
};

INSTANTIATE_TEST_SUITE_P(EveryPeer, ModbusWrites, testing::ValuesIn(kPeers),
                         [](const auto& parameters) { return PeerName(parameters.param); });

TEST_P(ModbusWrites, OfOneRegisterArriveAndAreReadBack) {
  Start({Register(0x12), Register(0x13), Register(0x14)});
  Write(2, "12AB");
  ExpectHeld(0x13, {0x12AB});
  ASSERT_TRUE(Shows(2, "12AB"));
  Write(2, "7");
  ExpectHeld(0x13, {0x0007});
  ASSERT_TRUE(Shows(2, "0007"));
  EXPECT_EQ(Value(1), Digits(ModbusPeer::FirstValue(3, 0x12)));
  EXPECT_EQ(Value(3), Digits(ModbusPeer::FirstValue(3, 0x14)));
  EXPECT_EQ(Panel(6), "Local Connection Active");
}

TEST_P(ModbusWrites, OfOneByteGoIntoItsHalfOfTheRegister) {
  std::vector<Location> screen(3, Register(0x12));
  screen[0].SelectByte = kMsb;
  screen[1].SelectByte = kLsb;
  for (int i = 0; i < 2; ++i) screen[i].StorageType = kUnsignedByte;
  Start(screen);
  Write(1, "AB");
  ExpectHeld(0x12, {0xAB00});
  ASSERT_TRUE(Shows(1, "AB"));
  ASSERT_TRUE(Shows(2, "00"));
  ASSERT_TRUE(Shows(3, "AB00"));
  Write(2, "CD");
  ExpectHeld(0x12, {0x00CD});
  ASSERT_TRUE(Shows(1, "00"));
  ASSERT_TRUE(Shows(2, "CD"));
  ASSERT_TRUE(Shows(3, "00CD"));
}

TEST_P(ModbusWrites, OfSeveralRegistersArriveInOrderAndAreReadBack) {
  constexpr int kFirst = 0x40;
  std::vector<Location> screen;
  AddBlock(screen, kFirst, kMostRegisters);
  Start(screen);
  std::vector<std::uint16_t> held = ModbusPeer::FirstValues(3, kFirst, kMostRegisters);
  for (const int count : {1, 2, 3, 19, kRegisterLines}) {
    std::vector<int> values;
    for (int i = 0; i < count; ++i) values.push_back((1013 * count + 257 * i) % 0x10000);
    WriteSeveral(1, values);
    std::copy(values.begin(), values.end(), held.begin());
    ExpectHeld(kFirst, held);
    for (int i = 0; i < kMostRegisters; ++i) ASSERT_TRUE(Shows(i + 1, Digits(held[i])));
  }
  EXPECT_EQ(Panel(6), "Local Connection Active");
}

TEST_P(ModbusWrites, ThatTheSlaveRefusesAreToldAndChangeNothing) {
  constexpr int kRefused = 0x13;
  constexpr int kLast = ModbusPeer::kRegisters - 1;
  std::vector<Location> screen{Register(kRefused), Register(kLast), Register(kLast + 1),
                               Register(0x14)};
  // Not polled, so that what is told is told of the write.
  for (int i = 0; i < 3; ++i) screen[i].ScanFlags = kScanningDisabled;
  Start(screen);
  EXPECT_EQ(Panel(6), "Local Connection Active");
  for (const int code : {1, 4, 6}) {
    peer.Refuse(kRefused, code);
    Write(1, "1234");
    EXPECT_EQ(Panel(6), "Exception code:" + std::to_string(code));
    peer.Refuse(kRefused, code + 1);
    WriteSeveral(1, {1, 2});
    EXPECT_EQ(Panel(6), "Exception code:" + std::to_string(code + 1));
  }
  Write(3, "1234");
  EXPECT_EQ(Panel(6), "Exception code:2");
  peer.Refuse(kRefused, 6);
  Write(1, "1234");
  WriteSeveral(2, {1, 2});
  EXPECT_EQ(Panel(6), "Exception code:2");
  ExpectHeld(0, {});
  for (int i = 1; i <= 3; ++i) EXPECT_EQ(Value(i), "Value " + std::to_string(i));
  peer.Set(3, 0x14, {0xBEEF});
  ASSERT_TRUE(Shows(4, "BEEF"));
}

}  // namespace
}  // namespace e2e
