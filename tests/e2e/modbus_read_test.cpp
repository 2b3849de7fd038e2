// The real program as a Modbus master of slaves that stand on other people's libraries.

#include <gtest/gtest.h>

#include <tuple>

#include "driven_program.h"
#include "modbus_peer.h"
#include "modbus_screen.h"

namespace e2e {
namespace {

using tarnlink::Location;

constexpr int k1200 = 0;  // indices of opt_Baudrate
constexpr int k19200 = 4;

constexpr int kRefused = 0x10;

// The program, polling a screen of registers.
class Master {
 public:
  Master(ModbusPeer& peer, const std::vector<Location>& locations, int speed)
      : program_(folder_, Settings(peer, speed), folder_.Write("peer.wcr", ScreenFile(locations))) {
    EXPECT_EQ(program_.Text("StatusBar1(3)"), "ModBus Protocol");
    program_.Press("Toolbar1(2)");
  }

  bool Shows(int index, int value) { return Says(index, Digits(value)); }
  bool Says(int index, const std::string& text) {
    return program_.Becomes("text RAM_LOC_VAL(" + std::to_string(index) + ")", text);
  }
  bool Tells(const std::string& text) { return program_.Becomes("text StatusBar1(6)", text); }

  // Neither told nor stopped by anything.
  void ExpectUndisturbed() {
    EXPECT_EQ(program_.Text("StatusBar1(4)"), "Communication Running");
    EXPECT_EQ(program_.Ask("modal"), "none");
  }

 private:
  static std::string Settings(ModbusPeer& peer, int speed) {
    return "[Communication]\nProtocol=2\nBaudrate=" + std::to_string(speed) +
           "\nCommport=1\nStopBits=0\nParity=0\nIgnoreErrors=0\nMsgTimeout=1\n\n[Ports]\nCOM1=" +
           peer.line().master_path() + "\n";
  }

  TestFolder folder_;
  DrivenProgram program_;
};

// --- Reads -------------------------------------------------------------------------------------

// Blocks of every length, as few screens as hold them. No two blocks of a screen overlap.
std::vector<std::vector<Location>> ScreensOfEveryCount(int function) {
  std::vector<std::vector<Location>> screens(1);
  for (int count = 1; count <= kMostRegisters; ++count) {
    if (screens.back().size() + static_cast<std::size_t>(count) > tarnlink::kLastLocation) {
      screens.emplace_back();
    }
    // Each screen begins at another register.
    const auto first = 3 * screens.size() + screens.back().size();
    AddBlock(screens.back(), static_cast<int>(first), count, function);
  }
  return screens;
}

class ModbusReads : public testing::TestWithParam<std::tuple<Peer, int>> {};

TEST_P(ModbusReads, ShowEveryRegisterOfBlocksOf1To60) {
  const auto [kind, function] = GetParam();
  ModbusPeer peer(kind, 19200);
  for (const std::vector<Location>& screen : ScreensOfEveryCount(function)) {
    Master master(peer, screen, k19200);
    for (std::size_t i = 0; i < screen.size(); ++i) {
      const int index = RegisterOf(screen[i]);
      ASSERT_TRUE(master.Shows(static_cast<int>(i) + 1, ModbusPeer::FirstValue(function, index)));
    }
    EXPECT_TRUE(master.Tells("Local Connection Active"));
    master.ExpectUndisturbed();
  }
}

INSTANTIATE_TEST_SUITE_P(EveryPeer, ModbusReads,
                         testing::Combine(testing::ValuesIn(kPeers), testing::Values(3, 4)),
                         [](const auto& parameters) {
                           return PeerName(std::get<0>(parameters.param)) + "Function" +
                                  std::to_string(std::get<1>(parameters.param));
                         });

class ModbusMaster : public testing::TestWithParam<Peer> {};

INSTANTIATE_TEST_SUITE_P(EveryPeer, ModbusMaster, testing::ValuesIn(kPeers),
                         [](const auto& parameters) { return PeerName(parameters.param); });

// Its answer takes 1.04 s, longer than the time-out.
TEST_P(ModbusMaster, TakesALongBlockOnASlowLineWhole) {
  constexpr int kRequest = 8;
  constexpr int kAnswer = 5 + 2 * kMostRegisters;
  ModbusPeer peer(GetParam(), 1200);
  std::vector<Location> screen;
  AddBlock(screen, 0x100, kMostRegisters);
  Master master(peer, screen, k1200);
  ASSERT_TRUE(master.Shows(kMostRegisters, ModbusPeer::FirstValue(3, 0x100 + kMostRegisters - 1)));
  // The first answer, that is: at most one more request has gone out since.
  EXPECT_LE(peer.line().asked(), 2 * kRequest);
  EXPECT_GE(peer.line().answered(), kAnswer);
  for (int i = 0; i < kMostRegisters; ++i) {
    EXPECT_TRUE(master.Shows(i + 1, ModbusPeer::FirstValue(3, 0x100 + i)));
  }
  master.ExpectUndisturbed();
}

TEST_P(ModbusMaster, ShowsWhatTheSlaveChanges) {
  ModbusPeer peer(GetParam());
  std::vector<Location> screen;
  AddBlock(screen, 0x20, 3);
  Master master(peer, screen, k19200);
  ASSERT_TRUE(master.Shows(3, ModbusPeer::FirstValue(3, 0x22)));
  peer.Set(3, 0x21, {0xFFFF, 0x8001});
  EXPECT_TRUE(master.Shows(2, 0xFFFF));
  EXPECT_TRUE(master.Shows(3, 0x8001));
  EXPECT_TRUE(master.Shows(1, ModbusPeer::FirstValue(3, 0x20)));
}

// --- Exceptions --------------------------------------------------------------------------------

TEST_P(ModbusMaster, TellsEveryExceptionKeepsTheValueAndPollsOn) {
  ModbusPeer peer(GetParam());
  for (const int function : {3, 4}) {
    Master master(peer, {Register(kRefused, function), Register(0x11, function)}, k19200);
    ASSERT_TRUE(master.Shows(1, ModbusPeer::FirstValue(function, kRefused)));
    for (const int code : {1, 2, 3, 4, 5, 6, 7, 8, 10, 11}) {
      peer.Refuse(kRefused, code);
      ASSERT_TRUE(master.Tells("Exception code:" + std::to_string(code)));
      // What the refused register holds by now is not to be seen, the other one goes on.
      peer.Set(function, kRefused, {0xDEAD, static_cast<std::uint16_t>(0xBE00 + code)});
      EXPECT_TRUE(master.Shows(2, 0xBE00 + code));
      EXPECT_TRUE(master.Shows(1, ModbusPeer::FirstValue(function, kRefused)));
    }
    peer.Refuse(kRefused, 0);
    EXPECT_TRUE(master.Shows(1, 0xDEAD));
    EXPECT_TRUE(master.Tells("Exception code:11"));
    master.ExpectUndisturbed();
  }
}

// What the libraries refuse of their own.
TEST_P(ModbusMaster, TellsOfRegistersThatTheSlaveDoesNotHave) {
  ModbusPeer peer(GetParam());
  std::vector<Location> behind{Register(ModbusPeer::kRegisters)};
  std::vector<Location> over_the_end;
  AddBlock(over_the_end, ModbusPeer::kRegisters - 2, 3);
  std::vector<Location> too_many{Register(0)};
  too_many.front().NumReg = 126;
  std::vector<Location> none{Register(0)};
  none.front().NumReg = 0;
  for (const auto& [locations, code] : {std::pair{behind, 2}, std::pair{over_the_end, 2},
                                        std::pair{too_many, 3}, std::pair{none, 3}}) {
    std::vector<Location> screen = locations;
    screen.push_back(Register(ModbusPeer::kRegisters - 1, 4));
    Master master(peer, screen, k19200);
    EXPECT_TRUE(master.Tells("Exception code:" + std::to_string(code)));
    EXPECT_TRUE(master.Shows(static_cast<int>(screen.size()),
                             ModbusPeer::FirstValue(4, ModbusPeer::kRegisters - 1)));
    EXPECT_TRUE(master.Says(1, "Value 1"));
    master.ExpectUndisturbed();
  }
}

}  // namespace
}  // namespace e2e
