// A configuration check whose slave the test plays.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "protocols/zolt_message.h"
#include "support/fake_world.h"
#include "tools/frm_cfg_check.h"
#include "tools/plain_host.h"

namespace tarnlink {

inline constexpr std::uint8_t kCfgReadDone = 0x10;
inline constexpr std::uint8_t kCfgCorrupted = 0x20;
inline constexpr std::uint8_t kCfgOutside = 0x40;
inline constexpr std::uint8_t kCfgUnknown = 0x60;
inline constexpr std::uint8_t kCfgWritten = 0x90;

// One parameter from 30 to 85 with the default 60.
inline constexpr const char* kOneItem = "056Dh\t30\t85\t60\tCH setpoint\t1\r\n";

class CfgCheckTest : public ::testing::Test {
 protected:
  CfgCheckTest() { tool.Show(); }

  void Load(const std::string& text) {
    world.disk().Put("/home/user/work/a.cfg", text);
    world.dialogs().ExpectOpenFile().Give("/home/user/work/a.cfg");
    tool.cmd_Open.Press();
  }
  void Begin(const std::string& text) {
    Load(text);
    tool.cmd_Check.Press();
  }
  // What goes out within the pause: "read 056D", "write 056D 30"; "nothing" without a message.
  std::string Asked() {
    world.Advance(std::chrono::milliseconds(100));
    return Sent();
  }
  std::string Sent() {
    const auto sent = world.port().TakeSent();
    if (sent.empty()) return "nothing";
    EXPECT_EQ(sent.size(), 1U);
    const std::string& frame = sent.back();
    EXPECT_EQ(frame.substr(9, 2), "00");
    const auto type = static_cast<unsigned char>(frame[1]);
    if (type == 0x05) return "read " + frame.substr(3, 4);
    EXPECT_EQ(type, 0x85);
    return "write " + frame.substr(3, 4) + " " +
           std::to_string(std::stoi(frame.substr(7, 2), nullptr, 16));
  }
  void Receive(const std::string& bytes) {
    world.port().Receive(bytes);
    world.Settle();
  }
  static std::string Frame(std::uint8_t kind, int high, int id = 0x56D,
                           const std::string& slave = "0") {
    return BuildZoltMessage(static_cast<std::uint8_t>(kind + 5), slave, id,
                            static_cast<std::uint8_t>(high), 0);
  }
  // As a slave whose limits are right does in each stage up to this one.
  void PassTo(int stage) {
    const std::string answers[] = {Frame(kCfgReadDone, 60), Frame(kCfgWritten, 30),
                                   Frame(kCfgReadDone, 30), Frame(kCfgOutside, 29),
                                   Frame(kCfgWritten, 85),  Frame(kCfgReadDone, 85),
                                   Frame(kCfgOutside, 86)};
    for (int i = 0; i < stage; ++i) {
      EXPECT_NE(Asked(), "nothing") << i;
      Receive(answers[i]);
    }
  }
  std::string Result(std::size_t index = 0) const { return tool.ConfigItems.at(index).Result; }
  std::string Row(std::size_t index = 0) const { return tool.ParametersList.List.get().at(index); }
  std::string Count() const { return tool.Label6.Caption; }
  std::string State() const { return tool.lblState.Caption; }
  void ExpectIdle() {
    EXPECT_FALSE(tool.IsRunning());
    EXPECT_FALSE(world.port().PortOpen());
    EXPECT_FALSE(tool.tim_cfgread->Enabled());
    EXPECT_FALSE(tool.tim_cfgread_timeout->Enabled());
    EXPECT_TRUE(tool.cmd_Check.Enabled);
    EXPECT_FALSE(tool.cmd_Stop.Enabled);
    world.port().TakeSent();
    world.Advance(std::chrono::seconds(5));
    EXPECT_TRUE(world.port().TakeSent().empty());
  }

  FakeWorld world;
  PlainHost plain{world};
  frm_CfgCheck tool{plain.host};
};

}  // namespace tarnlink
