// An image that is verified, with a slave that the test plays, byte by byte.

#include "files/eeprom_output.h"
#include "protocols/frame_bytes.h"
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
  ExpectVerifyError(
      "0X8001: 05 expected, 06 read. The last address that was "
      "confirmed is 0X8000.");
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
  ExpectVerifyError("0X8000: 00 expected, 01 read. No address has been confirmed.");
  SayWord("0501");
  EXPECT_FALSE(tool.Writing);
}

TEST_F(EepromVerifying, NamesTheByteInFrontWhereBothAreWrong) {
  SayWord("0000");
  SayWord("0601");
  world.Advance(500ms);
  ExpectVerifyError("0X8000: 00 expected, 01 read. No address has been confirmed.");
  SayWord("0601");
}

// The last byte of a block is proved by the answer for the first one of the next.
class EepromBlockVerifying : public EepromVerifying {
 protected:
  EepromBlockVerifying() {
    tool.cmd_Stop.Press();
    Verify(Source(2));
    world.Advance(1500ms);
    int front = 0x77;
    for (int offset = 0; offset < 14; ++offset) {
      SayWord(HexDigits(offset * 5 << 8 | front, 4));
      front = offset * 5;
    }
    const std::string image = BinBytes(ReadEepromSource(Source(2)));
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(image[i]); };
    SayWord(HexDigits(byte(14) << 8 | byte(13), 4));
    SayWord(HexDigits(byte(15) << 8 | byte(14), 4));
    last = byte(15);
    EXPECT_EQ(tool.LastConfirmed, "0X800F");
    EXPECT_TRUE(tool.lstResults.List->empty());
  }
  void SayTwice(int word) {
    SayWord(HexDigits(word, 4));
    world.Advance(500ms);
    ExpectError("Verify Error on " + kDefPath);
    SayWord(HexDigits(word, 4));
  }

  const std::string kRow = "0X8000 to 0X800F verified";
  int last = 0;
};

TEST_F(EepromBlockVerifying, IsDoneWhenItsLastByteIsProved) {
  SayWord(HexDigits(0x2500 | last, 4));
  EXPECT_EQ(tool.lstResults.List.get(), std::vector<std::string>{kRow});
}

TEST_F(EepromBlockVerifying, IsNotDoneWhenItsLastByteIsRefuted) {
  SayTwice(0x2500 | (last ^ 1));
  EXPECT_EQ(tool.lstResults.List->size(), 1U);
  EXPECT_EQ(LastResult().substr(0, 6), "Ended:");
}

TEST_F(EepromBlockVerifying, IsDoneWhereTheNextByteIsWrong) {
  SayTwice(0x2600 | last);
  ASSERT_EQ(tool.lstResults.List->size(), 2U);
  EXPECT_EQ(tool.lstResults.List->front(), kRow);
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
