#include "simulator/slave_tarnlink.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulator/bytes.h"
#include "slave_stream.h"

namespace boiler {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string kRead = *ParseHexBytes("04 05 30 31 41 30 44 37 03");
const std::string kWriteByte = *ParseHexBytes("04 06 46 34 30 30 35 41 35 36 03");

class TarnlinkStream : public ::testing::Test {
 protected:
  std::vector<std::string> Hear(const std::string& bytes) { return boiler::Hear(slave_, bytes); }
  std::string Silence() { return boiler::Silence(slave_); }

  TarnlinkSlave slave_;
};

TEST_F(TarnlinkStream, FindsOneFrame) {
  EXPECT_THAT(Hear(kRead), ElementsAre("read byte 01A0"));
  EXPECT_FALSE(slave_.Waiting());
}

TEST_F(TarnlinkStream, FindsAFrameSplitAnywhere) {
  for (std::size_t at = 1; at < kRead.size(); ++at) {
    EXPECT_THAT(Hear(kRead.substr(0, at)), IsEmpty());
    EXPECT_TRUE(slave_.Waiting());
    EXPECT_THAT(Hear(kRead.substr(at)), ElementsAre("read byte 01A0"));
  }
}

TEST_F(TarnlinkStream, FindsFramesThatCameTogether) {
  EXPECT_THAT(Hear(kRead + kWriteByte + kRead),
              ElementsAre("read byte 01A0", "write 5A to F400", "read byte 01A0"));
}

TEST_F(TarnlinkStream, LooksPastNoiseBetweenFrames) {
  EXPECT_THAT(Hear("ab\xFF" + kRead + "\x03\r\n" + kRead),
              ElementsAre("61 62 FF: outside a frame", "read byte 01A0",
                          "03 0D 0A: outside a frame", "read byte 01A0"));
}

TEST_F(TarnlinkStream, BeginsAnewAtEachStartByte) {
  EXPECT_THAT(Hear(kRead.substr(0, 5) + kRead),
              ElementsAre("04 05 30 31 41: a new frame began inside", "read byte 01A0"));
  EXPECT_THAT(Hear("\x04\x04" + kRead),
              ElementsAre("04: a new frame began inside", "04: a new frame began inside",
                          "read byte 01A0"));
}

TEST_F(TarnlinkStream, GivesUpAFrameWithoutEnd) {
  const std::string endless = "\x04\x05" + std::string(30, '0');
  EXPECT_THAT(Hear(endless + kRead),
              ElementsAre("04 05 30 30 30 30 30 30 30 30 30 30 30: no end in sight",
                          HexText(std::string(19, '0')) + ": outside a frame", "read byte 01A0"));
}

TEST_F(TarnlinkStream, ReportsLongNoiseInHandfuls) {
  const std::string handful = HexText(std::string(64, 'x')) + ": outside a frame";
  EXPECT_THAT(Hear(std::string(130, 'x')), ElementsAre(handful, handful));
  EXPECT_EQ(Silence(), "78 78: outside a frame");
}

TEST_F(TarnlinkStream, DropsAnIncompleteFrameInSilence) {
  Hear(kRead.substr(0, 8));
  EXPECT_EQ(Silence(), HexText(kRead.substr(0, 8)) + ": incomplete");
  EXPECT_EQ(Silence(), "nothing");
  EXPECT_THAT(Hear("\x03"), IsEmpty());
  EXPECT_EQ(Silence(), "03: outside a frame");
  EXPECT_THAT(Hear(kRead), ElementsAre("read byte 01A0"));
}

TEST_F(TarnlinkStream, IgnoresAWrongSumAndTakesTheNextFrame) {
  std::string wrong = kRead;
  wrong[7] = '8';
  EXPECT_THAT(
      Hear(wrong + kRead),
      ElementsAre("04 05 30 31 41 30 44 38 03: the sum is D8 and should be D7", "read byte 01A0"));
}

TEST_F(TarnlinkStream, HasNothingLeftAfterForgetting) {
  Hear(kRead.substr(0, 4));
  slave_.Forget();
  EXPECT_FALSE(slave_.Waiting());
  EXPECT_THAT(Hear(kRead), ElementsAre("read byte 01A0"));
}

TEST_F(TarnlinkStream, AccountsForEveryByteOfAnyStream) {
  ExpectAccountForEveryByte(slave_, "\x04\x05", kRead);
}

class TarnlinkAnswers : public ::testing::Test {
 protected:
  std::string Answer(const char* hex, WriteEffect effect = WriteEffect::kStored) {
    const Request request{*ParseHexBytes(hex), false, ""};
    return HexText(slave_.Answer(request, controller_, effect));
  }

  Controller controller_{1};
  TarnlinkSlave slave_;
};

TEST_F(TarnlinkAnswers, GivesAByteInElevenBytes) {
  controller_.WriteByte(0xF400, 0x5A);
  EXPECT_EQ(Answer("04 05 46 34 30 30 44 46 03"), "04 05 46 34 30 30 35 41 35 35 03");
}

TEST_F(TarnlinkAnswers, GivesAWordInThirteenBytesHighDigitsFirst) {
  controller_.WriteByte(0xF400, 0x5A);
  controller_.WriteByte(0xF401, 0x12);
  EXPECT_EQ(Answer("04 01 46 34 30 30 44 42 03"), "04 01 46 34 30 30 31 32 35 41 42 34 03");
}

TEST_F(TarnlinkAnswers, StoresAByteAndAcknowledgesIt) {
  EXPECT_EQ(Answer("04 06 46 34 30 30 35 41 35 36 03"), "04 06 46 34 30 30 35 41 35 36 03");
  EXPECT_EQ(controller_.memory().Word(0xF400), 0x005A);
}

TEST_F(TarnlinkAnswers, StoresAWordAndAcknowledgesItsLowDigitsInElevenBytes) {
  EXPECT_EQ(Answer("04 06 46 34 30 30 31 32 33 34 41 41 03"), "04 06 46 34 30 30 33 34 34 37 03");
  EXPECT_EQ(controller_.memory().Byte(0xF400), 0x34);
  EXPECT_EQ(controller_.memory().Byte(0xF401), 0x12);
}

TEST_F(TarnlinkAnswers, AcknowledgesTheWordWriteCommandInThirteenBytes) {
  EXPECT_EQ(Answer("04 02 46 34 30 30 31 32 33 34 41 36 03"),
            "04 02 46 34 30 30 31 32 33 34 41 36 03");
  EXPECT_EQ(controller_.memory().Word(0xF400), 0x1234);
}

TEST_F(TarnlinkAnswers, FillsTheAcknowledgementOfTheWordWriteCommandUp) {
  EXPECT_EQ(Answer("04 02 46 34 30 30 31 32 33 46 03"), "04 02 46 34 30 30 30 30 31 32 39 46 03");
  EXPECT_EQ(controller_.memory().Word(0xF400), 0x0012);
}

TEST_F(TarnlinkAnswers, SaysThatItStoredWhatItForgets) {
  controller_.WriteByte(0xF400, 0x11);
  EXPECT_EQ(Answer("04 06 46 34 30 30 35 41 35 36 03", WriteEffect::kForgotten),
            "04 06 46 34 30 30 35 41 35 36 03");
  EXPECT_EQ(controller_.memory().Byte(0xF400), 0x11);
}

TEST_F(TarnlinkAnswers, ShowsWhatItKeepsWhenItRejectsAWrite) {
  controller_.WriteWord(0xF400, 0x0634);
  EXPECT_EQ(Answer("04 06 46 34 30 30 35 41 35 36 03", WriteEffect::kRejected),
            "04 06 46 34 30 30 33 34 34 37 03");
  EXPECT_EQ(Answer("04 06 46 34 30 30 31 32 33 34 41 41 03", WriteEffect::kRejected),
            "04 06 46 34 30 30 33 34 34 37 03");
  EXPECT_EQ(controller_.memory().Word(0xF400), 0x0634);
}

TEST(TarnlinkSlave, TellsWhichFaultsItCannotHave) {
  EXPECT_THAT(Misfits(TarnlinkSlave()),
              ElementsAre("wrong_address", "refused", "high_bit_stripped", "crlf_translated"));
}

}  // namespace
}  // namespace boiler
