// An image that is verified, with a slave that the test plays, byte by byte.

#include "tools/eeprom_fixture.h"

namespace tarnlink {
namespace {

TEST_F(EepromVerifying, AsksOneAddressLower) {
  EXPECT_EQ(TakeFrames(), std::vector<std::string>{Readable(zolt_frame::FinishFrame("\x07"
                                                                                    "0FFAB7FFF"))});
  SayWord("0077");
  EXPECT_EQ(tool.LastConfirmed, "0X8000");
  EXPECT_EQ(TakeFrames(), std::vector<std::string>{Readable(zolt_frame::FinishFrame("\x07"
                                                                                    "0FFAB8000"))});
  SayWord("0500");
  EXPECT_EQ(tool.LastConfirmed, "0X8001");
}

TEST_F(EepromVerifying, EndsWhenAByteIsWrongTwice) {
  SayWord("0000");
  SayWord("0600");
  EXPECT_EQ(tool.LastConfirmed, "0X8000");
  world.Advance(500ms);
  EXPECT_TRUE(tool.Writing);
  world.dialogs().ExpectMessageBox({.text = "Verify Error on " + kDefPath,
                                    .title = "Error",
                                    .icon = Icon::kCritical,
                                    .detail =
                                        "0X8001: 05 expected, 06 read. The last address that was "
                                        "confirmed is 0X8000."});
  SayWord("0600");
  EXPECT_FALSE(tool.Writing);
}

// An answer to an earlier request is not the slave's last word.
TEST_F(EepromVerifying, AsksOnceMoreWhenAnAnswerDoesNotFit) {
  SayWord("0000");
  SayWord("0500");
  SayWord("0500");
  EXPECT_EQ(tool.LastConfirmed, "0X8001");
  world.Advance(500ms);
  EXPECT_EQ(tool.lblTrouble.Caption.get(), "Sent again once: another value came.");
  SayWord("0A05");
  EXPECT_EQ(tool.LastConfirmed, "0X8002");
}

// The high byte is right by chance: the low one gives it away.
TEST_F(EepromVerifying, LooksAtTheByteInFrontToo) {
  SayWord("0000");
  SayWord("0501");
  EXPECT_EQ(tool.LastConfirmed, "0X8000");
  world.Advance(500ms);
  world.dialogs().ExpectMessageBox(
      {.text = "Verify Error on " + kDefPath,
       .title = "Error",
       .icon = Icon::kCritical,
       .detail = "0X8000: 00 expected, 01 read. No address has been confirmed."});
  SayWord("0501");
  EXPECT_FALSE(tool.Writing);
}

TEST_F(EepromVerifying, NamesTheByteInFrontWhereBothAreWrong) {
  SayWord("0000");
  SayWord("0601");
  world.Advance(500ms);
  world.dialogs().ExpectMessageBox(
      {.text = "Verify Error on " + kDefPath,
       .title = "Error",
       .icon = Icon::kCritical,
       .detail = "0X8000: 00 expected, 01 read. No address has been confirmed."});
  SayWord("0601");
}

TEST_F(EepromVerifying, IgnoresErrorsOfTheLine) {
  for (const int event : {kCommFrame, kCommOverrun, kCommReceiveOver}) {
    world.port().RaiseLineError(event);
  }
  world.Advance(10ms);
  SayWord("0000");
  EXPECT_EQ(tool.LastConfirmed, "0X8000");
}

}  // namespace
}  // namespace tarnlink
