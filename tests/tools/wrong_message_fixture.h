// The generator of wrong messages with a slave that the test plays.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "support/byte_text.h"
#include "support/fake_world.h"
#include "tools/frm_ip_msg_err.h"
#include "tools/plain_host.h"

namespace tarnlink {

// The texts of some boxes with blanks between them.
inline std::string BoxTexts(const FixedArray<ArrayText>& boxes, int first, int last) {
  std::string texts;
  for (int i = first; i <= last; ++i) {
    texts += (i > first ? " " : "") + boxes(i).Text.get();
  }
  return texts;
}

inline ScriptedDialog& ExpectNoResponse(FakeWorld& world) {
  return world.dialogs().ExpectMessageBox(
      {.text = "No Response", .title = "Communication Problem", .icon = Icon::kCritical});
}

class WrongMessageTest : public ::testing::Test {
 protected:
  WrongMessageTest() { tool.Show(); }

  ArrayText& Box(int index) { return tool.txt_ErrMsg(index); }
  std::string Boxes(int first, int last) const { return BoxTexts(tool.txt_ErrMsg, first, last); }
  std::string Received() const { return BoxTexts(tool.txt_RecErrMsg, 0, 15); }
  void Tick(int index, bool on = true) { tool.chk_IPMsgErr(index).Value = on; }
  // Which boxes are marked.
  std::string Red() const {
    std::string red;
    for (int i = 0; i < frm_IPMsgErr::kBoxes; ++i) {
      if (tool.txt_ErrMsg(i).BackColor != frm_IPMsgErr::kWarning) continue;
      red += (red.empty() ? "" : " ") + std::to_string(i);
    }
    return red;
  }
  // The frame that goes out, "nothing" for none.
  std::string Send() {
    tool.cmd_SendErrMsg.Press();
    const auto sent = world.port().TakeSent();
    return sent.empty() ? "nothing" : Readable(sent.back());
  }
  void Receive(const std::string& bytes) {
    world.port().Receive(bytes);
    world.Settle();
  }
  void SendAndReceive(const std::string& bytes) {
    Send();
    Receive(bytes);
  }
  // "waiting" or "idle", and what is lit: "waiting, Tx".
  std::string State() {
    const bool waits = tool.tim_IPMsgErr->Enabled();
    EXPECT_EQ(waits, world.port().PortOpen());
    EXPECT_EQ(IsLit(tool.shp_Tx) || IsLit(tool.shp_Rx), tool.tim_TxRxLed->Enabled());
    std::string text = waits ? "waiting" : "idle";
    if (IsLit(tool.shp_Tx)) text += ", Tx";
    if (IsLit(tool.shp_Rx)) text += ", Rx";
    return text;
  }
  static bool IsLit(const PlacedControl& lamp) { return lamp.BackColor != frm_IPMsgErr::kLampOut; }

  FakeWorld world;
  PlainHost plain{world};
  std::vector<std::uint32_t> numbers;  // by chance; 0 when they are used up
  std::size_t drawn = 0;
  frm_IPMsgErr tool{plain.host, [this] {
                      const std::size_t at = drawn++;
                      return at < numbers.size() ? numbers[at] : 0U;
                    }};
};

}  // namespace tarnlink
