// The guard of the line tells too early from soon enough.
#include "faults/line_guard.h"

#include <gtest/gtest.h>

namespace tarnlink {
namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;

// A line whose answers have 16 bytes and are waited for 100 ms.
class LineGuardTest : public testing::Test {
 protected:
  LineGuardTest() { Open(); }

  void Open() {
    if (port->PortOpen()) port->SetPortOpen(false);
    port->SetPortOpen(true);
  }
  void Receive(std::size_t bytes) { world.port().Receive(std::string(bytes, 'x')); }

  FakeWorld world;
  std::unique_ptr<SerialPort> port = world.CreatePort();
  LineGuard guard{world, world.port(), EndOfZolt([] { return milliseconds(100); })};
};

TEST_F(LineGuardTest, AsksForNothingWhereEachMessageIsAnswered) {
  int heard = 0;
  world.on_output = [&](FakeSerialPort&, std::string_view) { ++heard; };
  for (int i = 0; i < 3; ++i) {
    port->Output("message");
    Receive(16);
  }
  EXPECT_EQ(guard.asked(), 3);
  EXPECT_EQ(guard.hurried(), 0) << guard.first_hurried();
  EXPECT_EQ(heard, 3) << "it stands in nobody's way";
}

TEST_F(LineGuardTest, CountsASecondMessageBehindTheFirst) {
  port->Output("one");
  port->Output("two");
  EXPECT_EQ(guard.hurried(), 1);
  EXPECT_EQ(guard.first_hurried(),
            "74 77 6F goes out 0 ms behind 6F 6E 65, of whose answer 0 bytes have come");
}

TEST_F(LineGuardTest, TakesNoReadForAnAnswer) {
  port->Output("one");
  port->Input();
  port->ClearInBuffer();
  port->Output("two");
  EXPECT_EQ(guard.hurried(), 1);
}

TEST_F(LineGuardTest, TakesAPartForNoAnswer) {
  port->Output("one");
  Receive(15);
  port->Input();
  port->Output("two");
  EXPECT_EQ(guard.hurried(), 1);
  Receive(15);
  Receive(1);
  port->Output("three");
  EXPECT_EQ(guard.hurried(), 1) << "in pieces it is whole all the same";
}

TEST_F(LineGuardTest, TakesWhatHadComeBeforeForNoAnswer) {
  Receive(16);
  port->Output("one");
  port->Input();
  port->Output("two");
  EXPECT_EQ(guard.hurried(), 1);
}

TEST_F(LineGuardTest, TakesAPortThatIsOpenedAnewForNoEnd) {
  port->Output("one");
  Open();
  port->Output("two");
  EXPECT_EQ(guard.hurried(), 1);
}

TEST_F(LineGuardTest, TakesItForOneWhereTheUserStartsAnew) {
  LineGuard tarnlink(world, world.port(), EndOfTarnlink([] { return milliseconds(100); }));
  port->Output("\4\5");
  Open();
  port->Output("\4\5");
  EXPECT_EQ(tarnlink.hurried(), 0);
  port->Output("\4\5");
  EXPECT_EQ(tarnlink.hurried(), 1);
}

TEST_F(LineGuardTest, TakesTheTimeThatAnAnswerHasForAnEnd) {
  port->Output("one");
  world.Advance(99ms);
  port->Output("two");
  EXPECT_EQ(guard.hurried(), 1);
  world.Advance(100ms);
  port->Output("three");
  EXPECT_EQ(guard.hurried(), 1) << guard.first_hurried();
}

TEST_F(LineGuardTest, TakesTheQuietLineBehindAShortAnswerOfModbusForAnEnd) {
  const std::string read("\1\3\0\0\0\2\0\0", 8);
  LineGuard modbus(world, world.port(), EndOfModbus([] { return milliseconds(3s); }));
  const auto hurried_behind = [&](std::size_t bytes, milliseconds quiet) {
    const long before = modbus.hurried();
    port->Output(read);
    Receive(bytes);
    world.Advance(quiet);
    port->Output(read);
    world.Advance(3s);
    return modbus.hurried() - before;
  };
  EXPECT_EQ(hurried_behind(9, 0ms), 0) << "a whole one";
  EXPECT_EQ(hurried_behind(8, 19ms), 1);
  EXPECT_EQ(hurried_behind(8, 20ms), 0);
  EXPECT_EQ(hurried_behind(4, 2999ms), 1) << "too short to have begun";
  EXPECT_EQ(hurried_behind(4, 3000ms), 0);
}

TEST(EndOfMessage, HasTheLengthOfTheAnswerToEachMessage) {
  const auto none = [] { return milliseconds(0); };
  const EndOfMessage tarnlink = EndOfTarnlink(none);
  EXPECT_EQ(tarnlink.length("\4\5"
                            "01A0D7\3"),
            11U);
  EXPECT_EQ(tarnlink.length("\4\1"
                            "01A0D3\3"),
            13U);
  const EndOfMessage modbus = EndOfModbus(none);
  EXPECT_EQ(modbus.length(std::string("\1\4\2\0\0\3\0\0", 8)), 11U);
  EXPECT_EQ(modbus.length(std::string("\1\6\2\0\0\3\0\0", 8)), 8U);
  EXPECT_EQ(EndOfZolt(none).length("any"), 16U);
}

}  // namespace
}  // namespace tarnlink
