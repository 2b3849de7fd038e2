// The parameter writer with a slave that the test plays.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "protocols/zolt_message.h"
#include "support/byte_text.h"
#include "support/fake_world.h"
#include "tools/frm_write_parameters.h"
#include "tools/plain_host.h"

namespace tarnlink {

inline constexpr std::uint8_t kAckRead = 0x10;
inline constexpr std::uint8_t kAckCorrupted = 0x20;
inline constexpr std::uint8_t kAckOutside = 0x40;
inline constexpr std::uint8_t kAckUnknown = 0x60;
inline constexpr std::uint8_t kAckWritten = 0x90;

class WriteParametersTest : public ::testing::Test {
 protected:
  static constexpr const char* kFile = "/jobs/boiler.par";

  WriteParametersTest() {
    plain.host.MsgTimeout = [this] { return timeout; };
    plain.host.ParameterFile = [this] { return file; };
    plain.host.ParFolder = [] { return std::string("/jobs"); };
    plain.host.KeepParFolder = [this](const std::string& folder) { kept_folder = folder; };
    plain.host.IgnoresErrors = [] { return false; };
  }

  void Open(const std::string& text) {
    world.disk().Put(kFile, text);
    file = kFile;
    tool.Show();
  }
  void Start(const std::string& text, bool verifies = false) {
    Open(text);
    tool.chkVerify.Value = verifies;
    tool.cmdWriteZOLT.Press();
  }
  // The frames since the last time, their types as numbers: "85 0 0123 002A"; "nothing" for none.
  std::string Sent() {
    std::string text;
    for (const std::string& frame : world.port().TakeSent()) {
      text += (text.empty() ? "" : "; ") + HexText(frame.substr(1, 1)) + " " + frame.substr(2, 1) +
              " " + frame.substr(3, 4) + " " + frame.substr(7, 4);
    }
    return text.empty() ? "nothing" : text;
  }
  void Receive(const std::string& bytes) {
    world.port().Receive(bytes);
    world.Settle();
  }
  void Answer(int kind_and_class, int id, int data = 0, const std::string& slave = "0") {
    Receive(FrameOf(kind_and_class, id, data, slave));
  }
  static std::string FrameOf(int kind_and_class, int id, int data = 0,
                             const std::string& slave = "0") {
    return BuildZoltMessage(static_cast<std::uint8_t>(kind_and_class), slave, id,
                            static_cast<std::uint8_t>(data >> 8),
                            static_cast<std::uint8_t>(data & 0xFF));
  }
  void Silence() { world.Advance(std::chrono::seconds(timeout)); }
  // Until a line that was doubted is quiet.
  void Quiet() { world.Advance(std::chrono::milliseconds(500)); }
  // The message goes out twice, and each is answered late: the line is watched before the next one.
  void ExpectTwoLate(int kind_and_class, int id, int data) {
    Silence();
    Sent();
    Answer(kind_and_class, id, data);
    EXPECT_EQ(Sent(), "nothing");
    world.Advance(std::chrono::milliseconds(1000));
    Answer(kind_and_class, id, data);
    EXPECT_EQ(Sent(), "nothing");
    Silence();
    Quiet();
  }
  // The list with "|" for the ends of lines.
  std::string List() const {
    std::string text = tool.txtScrollStatus.Text();
    for (std::size_t at = 0; (at = text.find("\r\n", at)) != std::string::npos;) {
      text.replace(at, 2, "|");
    }
    return text;
  }
  void ExpectReport(const std::string& title, const std::string& text,
                    Icon icon = Icon::kInformation) {
    world.dialogs().ExpectMessageBox({.text = text, .title = title, .icon = icon});
  }
  void ExpectAllSet() { ExpectReport("Write settings", "All parameters set."); }
  void ExpectVerified() {
    ExpectReport("Write & verify settings", "All parameters set. And verified.");
  }

  FakeWorld world;
  PlainHost plain{world};
  int timeout = 3;
  std::string file;
  std::string kept_folder;
  frmWriteParameters tool{plain.host};
};

}  // namespace tarnlink
