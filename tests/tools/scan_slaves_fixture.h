// A slave scan whose slaves the test plays.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "common/numbers.h"
#include "protocols/zolt_message.h"
#include "support/fake_world.h"
#include "tools/frm_scan_slaves.h"
#include "tools/plain_host.h"

namespace tarnlink {

inline constexpr std::uint8_t kScanRead = 0x10;
inline constexpr std::uint8_t kScanCorrupted = 0x20;
inline constexpr std::uint8_t kScanOutside = 0x40;
inline constexpr std::uint8_t kScanUnknown = 0x60;
inline constexpr std::uint8_t kScanWritten = 0x90;

// "OS number | LuP | HuP | EEPROM" of a row.
inline std::string RowText(const frm_ScanSlaves& scan, int row) {
  return scan.txtType(row).Text.get() + " | " + scan.txtLuP(row).Text.get() + " | " +
         scan.txtHuP(row).Text.get() + " | " + scan.txtEEPROM(row).Text.get();
}

class ScanSlavesTest : public ::testing::Test {
 protected:
  ScanSlavesTest() {
    plain.host.GoControlPanel = [this](int index, const std::function<void()>& closed) {
      panels.push_back(index);
      if (in_panel) in_panel();
      closed();
    };
  }

  // Whom the last request was for and what it asked: "slave 3 step 1"; "nothing" without one.
  std::string Asked() {
    const auto sent = world.port().TakeSent();
    if (sent.empty()) return "nothing";
    EXPECT_EQ(sent.size(), 1U);
    const int id = ParseZoltMessage(sent.back()).Id;
    const std::vector<int> ids = {61, 5337, 152, 1284, 164};
    const auto step = std::find(ids.begin(), ids.end(), id) - ids.begin();
    return std::string("slave ") + sent.back()[2] + " step " + std::to_string(step);
  }
  void Receive(const std::string& bytes) {
    world.port().Receive(bytes);
    world.Settle();
  }
  // The slave that was asked answers as asked.
  std::string AnswerFrame(std::uint8_t kind, int high, int low) {
    const std::vector<int> ids = {61, 5337, 152, 1284, 164};
    const int step = scan.ScanStep;
    return BuildZoltMessage(static_cast<std::uint8_t>(kind + (step < 2 ? 1 : 2)),
                            Hex(scan.ScanAddress), ids.at(static_cast<std::size_t>(step)),
                            static_cast<std::uint8_t>(high), static_cast<std::uint8_t>(low));
  }
  void Answer(std::uint8_t kind, int high = 0, int low = 0) {
    Receive(AnswerFrame(kind, high, low));
  }
  void AnswerWithBadCheck() {
    std::string frame = AnswerFrame(kScanRead, 1, 1);
    frame[12] = frame[12] == '0' ? '1' : '0';
    Receive(frame);
  }
  void AnswerAllSteps() {
    Answer(kScanRead, 5, 2);
    Answer(kScanRead, 0x07, 0xF8);
    Answer(kScanRead, 3, 7);
    Answer(kScanRead, 4, 12);
    Answer(kScanRead, 2, 114);
  }
  void Silence() { world.Advance(std::chrono::milliseconds(2500)); }
  // As many silent addresses.
  void Pass(int addresses) {
    for (int i = 0; i < addresses; ++i) Silence();
  }
  std::string Row(int row) const { return RowText(scan, row); }
  std::string State() const { return scan.lblState.Caption; }
  // The fields that are marked as being in work: "txtLuP(3)".
  std::string InWork() const { return WithColour(frm_ScanSlaves::kFieldInWork); }
  std::string WithColour(Colour colour) const {
    std::string names;
    for (int i = 0; i < frm_ScanSlaves::kAddresses; ++i) {
      for (const auto* texts :
           {&scan.txtAddress, &scan.txtType, &scan.txtLuP, &scan.txtHuP, &scan.txtEEPROM}) {
        if ((*texts)(i).BackColor != colour) continue;
        names += (names.empty() ? "" : " ") + (*texts)(i).name();
      }
    }
    return names;
  }

  FakeWorld world;
  PlainHost plain{world};
  std::vector<int> panels;         // that were opened
  std::function<void()> in_panel;  // while the panel is open
  frm_ScanSlaves scan{plain.host};
};

}  // namespace tarnlink
