// The control panel on a port whose far end is the test. Frames are made by the simulator's code,
// so that a mistake of the program's own cannot hide.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "simulator/bytes.h"
#include "simulator/zolt_frames.h"
#include "support/fake_world.h"
#include "tools/frm_cont_panel.h"

namespace tarnlink {

inline constexpr int kRead = 0x00;
inline constexpr int kReadDone = 0x10;
inline constexpr int kCorrupted = 0x20;
inline constexpr int kOutOfRange = 0x40;
inline constexpr int kUnknown = 0x60;
inline constexpr int kWrite = 0x80;
inline constexpr int kWriteDone = 0x90;

// `data` is four digits.
inline std::string PanelFrame(int type, int id, const std::string& data, char slave = '0') {
  return boiler::BuildZoltFrame(static_cast<char>(type), slave,
                                boiler::HexDigits(static_cast<unsigned>(id), 4), data);
}

inline ErrorTexts NumberedTexts() {
  ErrorTexts texts;
  for (std::size_t i = 0; i < texts.size(); ++i) texts[i] = "text of " + std::to_string(i);
  return texts;
}

class ControlPanelTest : public ::testing::Test {
 protected:
  // The requests since the last time, without frames around them: "type id data" in decimal,
  // decimal and digits.
  std::vector<std::string> Sent() {
    std::vector<std::string> requests;
    for (const std::string& frame : world.port().TakeSent()) {
      EXPECT_TRUE(boiler::ZoltCheckHolds(frame));
      requests.push_back(std::to_string(static_cast<unsigned char>(frame.at(1))) + " " +
                         std::to_string(*boiler::ParseHex(frame.substr(3, 4))) + " " +
                         frame.substr(7, 4));
    }
    return requests;
  }
  using Requests = std::vector<std::string>;

  void Receive(const std::string& bytes) {
    world.port().Receive(bytes);
    world.Settle();
  }
  void Answer(int type, int id, const std::string& data) { Receive(PanelFrame(type, id, data)); }
  // An answer to the request that went out last, so that the line is in no doubt.
  void AnswerLast(int kind, const std::string& data) {
    const std::string frame = world.port().frames().back().bytes;
    Receive(boiler::BuildZoltFrame(static_cast<char>(kind | (frame[1] & 0x0F)), frame[2],
                                   frame.substr(3, 4), data));
  }
  // Sets just these flags.
  void SetPending(const std::vector<int>& indices) {
    panel.Pending.fill(false);
    for (const int index : indices) panel.Pending.at(static_cast<std::size_t>(index)) = true;
  }
  std::vector<int> Pending() const {
    std::vector<int> indices;
    for (int i = 0; i < kPendingFlags; ++i) {
      if (panel.Pending.at(static_cast<std::size_t>(i))) indices.push_back(i);
    }
    return indices;
  }
  ScriptedDialog& ExpectTimeout() {
    return world.dialogs().ExpectMessageBox("No communication with slave", "Communication Timeout");
  }

  FakeWorld world;
  int com_port = 3;
  int baudrate = 3;
  bool ignores_errors = false;
  ErrorTexts texts = NumberedTexts();
  ToolHost host{.platform = world,
                .line = {.ComPortNumber = [this] { return com_port; },
                         .Baudrate = [this] { return baudrate; }},
                .IgnoresErrors = [this] { return ignores_errors; },
                .LoadErrorTexts = [this]() -> const ErrorTexts& { return texts; },
                .IdFile = {},
                .LogPath = {},
                .GoControlPanel = {}};
  frm_ContPanel panel{host};
};

}  // namespace tarnlink
