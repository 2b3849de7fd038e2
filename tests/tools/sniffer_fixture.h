// An open sniffer on a link whose frames the test gives.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "protocols/zolt_message.h"
#include "support/fake_world.h"
#include "support/zolt_text.h"
#include "tools/frm_sniff_settings.h"
#include "tools/frm_sniffer.h"

namespace tarnlink {

inline constexpr std::uint8_t kReadType = 0x04;
inline constexpr std::uint8_t kAnswerType = 0x14;

inline MessageBoxRequest SnifferFileBox(const std::string& text) {
  return {.text = text, .title = "Sniffer", .icon = Icon::kExclamation};
}

class SnifferTest : public ::testing::Test {
 protected:
  static constexpr const char* kNames = "/jobs/boiler.snf";

  SnifferTest() { world.disk().Put(kNames, "*R1.2\r\nFlow,F1,0,H\r\nStatus,1,2,W\r\n"); }

  void Open(const std::string& names) {
    world.disk().Put(kNames, names);
    sniffer.Show();
  }

  // A sound frame is on the line.
  void Hear(std::uint8_t type, int id, int high, int low) {
    world.port().Receive(FrameOf(type, id, high, low));
    world.Settle();
  }
  static std::string FrameOf(std::uint8_t type, int id, int high, int low) {
    return BuildZoltMessage(type, "0", id, static_cast<std::uint8_t>(high),
                            static_cast<std::uint8_t>(low));
  }
  // A request, and an answer with these bytes.
  void Exchange(int id, int high, int low) {
    Hear(kReadType, id, 0, 0);
    Hear(kAnswerType, id, high, low);
  }
  void HearBytes(const std::string& bytes) {
    world.port().Receive(bytes);
    world.Settle();
  }

  // "1 Flow 00F1 45" for each item that is shown, one a line.
  std::string Items() {
    std::string text;
    for (int i = 1; i <= kLastItem; ++i) {
      if (!sniffer.RAM_TEXT.Has(i) || !sniffer.RAM_TEXT(i).Visible) continue;
      EXPECT_TRUE(sniffer.RAM_ID(i).Visible && sniffer.RAM_VALUE(i).Visible) << i;
      text += std::to_string(i) + " " + sniffer.RAM_TEXT(i).Text.get() + " " +
              sniffer.RAM_ID(i).Text.get() + " " + sniffer.RAM_VALUE(i).Text.get() + "\n";
    }
    return text;
  }
  // The detected IDs with blanks between them.
  std::string Detected() {
    std::string text;
    for (const std::string& id : sniffer.List_DetectedID.List.get()) {
      text += (text.empty() ? "" : " ") + id;
    }
    EXPECT_EQ(sniffer.List_DetectedID.List.get(), sniffer.List_DisplayDetectedID.List.get());
    return text;
  }
  std::string Shown() { return sniffer.txt_Messages.Text; }
  std::string Counts() { return sniffer.lbl_Frames.Caption; }
  SniffLocation& Item(int index) { return sniffer.SniffItems.at(static_cast<std::size_t>(index)); }

  FakeWorld world;
  int com_port = 1;
  bool error_texts_read = false;
  ErrorTexts texts;
  std::string id_file = "/jobs/boiler.ids";
  std::string log_path = "/logs";
  ToolHost host{.platform = world,
                .line = {[this] { return com_port; }, [] { return 3; }},
                .IgnoresErrors = [] { return false; },
                .LoadErrorTexts = [this]() -> const ErrorTexts& {
                  error_texts_read = true;
                  return texts;
                },
                .IdFile = [this] { return id_file; },
                .LogPath = [this] { return log_path; },
                .GoControlPanel = {}};
  frmSniffer sniffer{host};
  frm_Sniff_Settings settings{sniffer};
};

class OpenSnifferTest : public SnifferTest {
 protected:
  OpenSnifferTest() { sniffer.Show(); }
};

}  // namespace tarnlink
