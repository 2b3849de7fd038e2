// The EEPROM writer and the EEPROM downloader, alone or with the simulated boiler at the other end
// of the line.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "form/boiler_on_line.h"
#include "protocols/zolt_frame.h"
#include "support/byte_text.h"
#include "support/eeprom_text.h"
#include "support/fake_world.h"
#include "tools/frm_eeprom.h"
#include "tools/frm_eeprom_down.h"
#include "tools/plain_host.h"

namespace tarnlink {

using namespace std::chrono_literals;

inline constexpr boiler::LineOptions kEepromLine = {.pace = {.baud = 9600},
                                                    .answer_delay_us = 5'000};
inline const std::string kDefPath = "/home/user/work/image.def";
inline const std::string kBinPath = "/home/user/work/image.bin";

inline boiler::SimulatedBoiler::Options EepromBoiler(std::uint64_t seed = 1) {
  return {.protocol = "zolt", .slave = {.addresses = "0,A"}, .line = kEepromLine, .seed = seed};
}

// What the disk says of a path that is forbidden; `what` is "read" or "written".
inline std::string Forbidden(const std::string& path, const std::string& what) {
  return "\"" + path + "\" could not be " + what + ": you do not have the permission.";
}

class EepromWriterTest : public ::testing::Test {
 protected:
  EepromWriterTest() { tool.Show(); }

  void Choose(const std::string& text, const std::string& path = kDefPath) {
    world.disk().Put(path, text);
    world.dialogs().ExpectOpenFile().Give(path);
    tool.cmd_Browse.Press();
    world.dialogs().TakeShown();
  }
  static std::string Source(int blocks, int first = 0x8000) {
    std::string text = "START\r\n";
    for (int i = 0; i < blocks; ++i) {
      text += DefBlock(first + 16 * i, [&](int offset) { return (i * 37 + offset * 5) & 0xFF; });
      text += i + 1 < blocks ? "\r\n" : "END\r\n";
    }
    return text;
  }
  void PressWrite(Answer answer = Answer::kYes) {
    world.dialogs()
        .ExpectMessageBox({.text = question,
                           .title = "Write EEPROM",
                           .icon = Icon::kQuestion,
                           .buttons = Buttons::kYesNo,
                           .second_is_default = true,
                           .detail = question_detail})
        .Press(answer);
    tool.cmd_WriteEEPROM.Press();
    world.dialogs().TakeShown();
  }
  bool Finish(Micros at_most = 60s) {
    return world.RunUntil([this] { return !tool.Writing; }, at_most);
  }
  ScriptedDialog& ExpectError(const std::string& text) {
    return world.dialogs().ExpectMessageBox(
        {.text = text, .title = "Error", .icon = Icon::kCritical});
  }
  // The byte that is wrong, and the last one that was right.
  void ExpectVerifyError(const std::string& detail) {
    world.dialogs().ExpectMessageBox({.text = "Verify Error on " + kDefPath,
                                      .title = "Error",
                                      .icon = Icon::kCritical,
                                      .detail = detail});
  }
  std::string LastResult() const {
    const auto& lines = tool.lstResults.List.get();
    return lines.empty() ? "" : lines.back();
  }
  // The frames that went out since the last call.
  std::vector<std::string> TakeFrames() {
    std::vector<std::string> frames;
    for (const std::string& frame : world.port().TakeSent()) frames.push_back(Readable(frame));
    return frames;
  }
  void Say(std::uint8_t type, const std::string& id, const std::string& data,
           const std::string& slave = "0") {
    world.port().Receive(zolt_frame::Request(type, slave, id, data));
    world.Advance(20ms);
  }

  std::string question = "Write 16 bytes, 0X8000 to 0X800F, into slave 0?";
  std::string question_detail = "All that these addresses hold now is lost.";
  FakeWorld world;
  PlainHost plain{world};
  frm_EEPROM tool{plain.host};
};

constexpr std::uint8_t kRead = zolt_frame::kReadAcknowledge + zolt_frame::kMemoryClass;
constexpr std::uint8_t kDone = zolt_frame::kWriteAcknowledge + zolt_frame::kMemoryClass;

class EepromWriting : public EepromWriterTest {
 protected:
  // Acknowledges what went out, whatever it is.
  void Acknowledge() {
    const auto sent = world.port().TakeSent();
    ASSERT_EQ(sent.size(), 1U);
    Say(kDone, sent[0].substr(3, 4), sent[0].substr(7, 4));
  }
  void Start(int first = 0x8000) { StartWith(Source(1, first), first); }
  void StartWith(const std::string& source, int first = 0x8000) {
    Choose(source);
    question = "Write 16 bytes, 0X" + Hex(first) + " to 0X" + Hex(first + 15) + ", into slave 0?";
    PressWrite();
    world.Advance(20ms);
  }
};

// An image that is being verified, with a slave that the test plays.
class EepromVerifying : public EepromWriterTest {
 protected:
  EepromVerifying() { Verify(Source(1)); }
  void Verify(const std::string& source) {
    Choose(source);
    tool.cmd_VerifyEEPROM.Press();
    world.Advance(20ms);
  }
  static std::string Frame(const std::string& digits) {
    return zolt_frame::Request(kRead, "0", "FFAB", digits);
  }
  // The word of high and low byte, as digits.
  void SayWord(const std::string& digits) { Say(kRead, "FFAB", digits); }
};

// With the boiler.
class EepromBoilerTest : public EepromWriterTest {
 protected:
  explicit EepromBoilerTest(const boiler::SimulatedBoiler::Options& options = EepromBoiler())
      : boiler(world, options) {}

  std::string Held(int first, int count) {
    std::string bytes;
    for (int i = 0; i < count; ++i) {
      const auto address = static_cast<std::uint16_t>(first + i);
      bytes += static_cast<char>(boiler.controller().memory().Byte(address));
    }
    return bytes;
  }

  BoilerOnLine boiler;
};

// The downloader as well.
class EepromDownTest : public EepromBoilerTest {
 protected:
  EepromDownTest() {
    down.Show();
    world.dialogs().ExpectSaveFile().Give(kDefPath);
    down.txt_eepromsourcefile.Click();
    world.dialogs().TakeShown();
  }
  bool Read(Micros at_most = 120s) {
    down.cmd_read_EEPROM.Press();
    return world.RunUntil([this] { return !down.progress.form.Visible; }, at_most);
  }
  void ExpectDone() {
    world.dialogs().ExpectMessageBox({.text = "Tarnlink File is generated",
                                      .title = "File Generation Done...",
                                      .icon = Icon::kInformation});
  }
  // The file could not be written, and another one is asked for.
  void ExpectKept(const std::string& trouble) {
    world.dialogs().ExpectMessageBox({.text = trouble,
                                      .title = "Error",
                                      .icon = Icon::kCritical,
                                      .detail = "What was read is kept. Choose another file."});
  }
  std::string Image() { return world.disk().Get(kBinPath); }

  frm_EEPROM_Down down{plain.host};
};

}  // namespace tarnlink
