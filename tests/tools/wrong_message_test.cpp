// The generator of wrong messages: how a frame is typed, broken and sent.

#include <map>
#include <set>

#include "tools/wrong_message_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr const char* kDefault = "0D 1 0 0 0 0 1 0 0 0 0 D 7 A F 0A";
constexpr int kWrongCrc = 0;
constexpr int kNonAscii = 1;

// --- The form ------------------------------------------------------------------------------------

TEST_F(WrongMessageTest, ShowsTheDefaultMessageUnderItsLabels) {
  EXPECT_EQ(tool.caption.Caption.get(), "Generate Wrong Messages");
  EXPECT_TRUE(tool.form.Visible);
  EXPECT_EQ(Boxes(0, 15), kDefault);
  EXPECT_EQ(Received(), std::string(15, ' '));
  EXPECT_EQ(Red(), "");
  std::string labels;
  for (int i = 0; i <= tool.lblByte.last(); ++i) labels += tool.lblByte(i).Caption.get() + "\n";
  EXPECT_EQ(labels,
            "Start Of Message\nMessage Type\nSlave Address\nDATA ID MSB HI\nDATA ID MSB LOW\n"
            "DATA ID LSB HI\nDATA ID LSB LOW\nDATA MSB HI\nDATA MSB LOW\nDATA LSB HI\n"
            "DATA LSB LOW\nCRC MSB HI\nCRC MSB LOW\nCRC LSB HI\nCRC LSB LOW\nEnd of Message\n");
  EXPECT_EQ(tool.lblGroup(0).Caption.get(), "Message ID");
  EXPECT_EQ(tool.lblGroup(1).Caption.get(), "Message DATA");
  EXPECT_EQ(tool.lblGroup(2).Caption.get(), "Message CRC");
  EXPECT_EQ(tool.lblReturnedData.Caption.get(), "Returned Raw Data");
  EXPECT_EQ(tool.chk_IPMsgErr(0).Caption.get(), "Calculate wrong CRC");
  EXPECT_EQ(tool.chk_IPMsgErr(1).Caption.get(), "Use non ASCII characters");
  EXPECT_EQ(tool.cmd_ResetDefault.Caption.get(), "Default Message");
  EXPECT_EQ(tool.cmd_CloseErrGen.Caption.get(), "Close Window");
  EXPECT_EQ(State(), "idle");
}

TEST_F(WrongMessageTest, TakesAByteInTwoDigitsAndEverythingElseInOneCharacter) {
  for (int i = 0; i < 16; ++i) {
    EXPECT_EQ(Box(i).MaxLength.get(), i == 0 || i == 1 || i == 15 ? 2 : 1) << i;
    EXPECT_EQ(Box(i).Locked.get(), i >= 11 && i <= 14) << i;
    EXPECT_TRUE(tool.txt_RecErrMsg(i).Locked);
  }
}

TEST_F(WrongMessageTest, BeginsAnewWhenItIsOpenedAgain) {
  Tick(kWrongCrc);
  Tick(kNonAscii);
  Box(0).Text = "07";
  SendAndReceive("0123456789ABCDEF");
  int unloaded = 0;
  tool.Unloaded = [&] { ++unloaded; };
  tool.cmd_CloseErrGen.Press();
  tool.Unload();
  EXPECT_EQ(unloaded, 1);
  EXPECT_FALSE(tool.form.Visible);
  tool.Show();
  EXPECT_TRUE(tool.form.Visible);
  EXPECT_EQ(Boxes(0, 15), kDefault);
  EXPECT_EQ(Red(), "");
  EXPECT_EQ(Received(), std::string(15, ' '));
  EXPECT_FALSE(tool.chk_IPMsgErr(kWrongCrc).Value);
  EXPECT_FALSE(tool.chk_IPMsgErr(kNonAscii).Value);
  EXPECT_TRUE(Box(7).Enabled);
  EXPECT_TRUE(Box(11).Locked);
  Box(6).Text = "9";
  tool.Show();
  EXPECT_EQ(Box(6).Text.get(), "9") << "It is open already.";
}

TEST_F(WrongMessageTest, ClosedWhileItWaitsLetsThePortGoWithoutAWord) {
  Send();
  tool.cmd_CloseErrGen.Press();
  EXPECT_EQ(State(), "idle");
  world.Advance(1min);
}

// --- Editing -------------------------------------------------------------------------------------

TEST(HexDigit, IsUpperCaseAndOne) {
  for (int code = 0; code < 256; ++code) {
    const bool is_digit = (code >= '0' && code <= '9') || (code >= 'A' && code <= 'F');
    EXPECT_EQ(IsHexDigit(std::string(1, static_cast<char>(code))), is_digit) << code;
  }
  EXPECT_FALSE(IsHexDigit(""));
  EXPECT_FALSE(IsHexDigit("12"));
}

TEST_F(WrongMessageTest, ABoxOfTheFrameTurnsRedWhenItIsChanged) {
  for (const int i : {0, 1, 2, 15}) {
    Box(i).Text = "5";
    EXPECT_EQ(Red(), std::to_string(i));
    tool.cmd_ResetDefault.Press();
    EXPECT_EQ(Red(), "");
    EXPECT_EQ(Boxes(0, 15), kDefault);
  }
}

TEST_F(WrongMessageTest, ADigitThatIsNoneTurnsItsBoxRedUntilItIsOne) {
  for (int i = 3; i <= 10; ++i) {
    for (const char* text : {"G", "a", "f", " ", "", "é", "/", ":", "@"}) {
      Box(i).Text = text;
      EXPECT_EQ(Red(), std::to_string(i)) << text;
      EXPECT_EQ(Box(i).Text.get(), text);
    }
    for (const char* text : {"0", "9", "A", "F"}) {
      Box(i).Text = text;
      EXPECT_EQ(Red(), "") << text;
    }
  }
}

TEST_F(WrongMessageTest, TheCheckDigitsAreNeverRed) {
  Tick(kWrongCrc);
  for (int i = 11; i <= 14; ++i) Box(i).Text = "?";
  EXPECT_EQ(Red(), "");
}

TEST_F(WrongMessageTest, TheDefaultMessageLeavesTheTicksAsTheyAre) {
  Tick(kWrongCrc);
  tool.cmd_ResetDefault.Press();
  EXPECT_EQ(Boxes(0, 15), kDefault);
  EXPECT_TRUE(tool.chk_IPMsgErr(kWrongCrc).Value);
}

TEST_F(WrongMessageTest, AWrongCrcFreesItsBoxes) {
  Tick(kWrongCrc);
  EXPECT_EQ(Boxes(11, 14), "D 7 A F");
  for (int i = 11; i <= 14; ++i) EXPECT_FALSE(Box(i).Locked);
  Tick(kWrongCrc, false);
  EXPECT_EQ(Boxes(11, 14), "0 0 0 0");
  for (int i = 11; i <= 14; ++i) EXPECT_TRUE(Box(i).Locked);
}

TEST_F(WrongMessageTest, NonAsciiTakesTheDataAway) {
  Box(8).Text = "4";
  Tick(kNonAscii);
  EXPECT_EQ(Boxes(7, 10), "x x x x");
  EXPECT_EQ(Red(), "7 8 9 10") << "No digits.";
  for (int i = 7; i <= 10; ++i) EXPECT_FALSE(Box(i).Enabled);
  tool.cmd_ResetDefault.Press();
  EXPECT_EQ(Red(), "");
  Send();
  EXPECT_EQ(Red(), "7 8 9 10") << "They are sent all the same.";
  Tick(kNonAscii, false);
  EXPECT_EQ(Boxes(7, 10), "0 0 0 0");
  for (int i = 7; i <= 10; ++i) EXPECT_TRUE(Box(i).Enabled);
  EXPECT_EQ(Red(), "");
}

// --- Frames --------------------------------------------------------------------------------------

TEST_F(WrongMessageTest, TheDefaultMessageIsASoundRead) {
  EXPECT_EQ(Send(), "<0D><01>000010000D7AF<0A>");
  EXPECT_EQ(Boxes(0, 15), kDefault);
}

TEST_F(WrongMessageTest, AnEditedMessageGoesOutWithItsOwnCrc) {
  Box(6).Text = "2";
  EXPECT_EQ(Boxes(11, 14), "D 7 A F") << "Not before it is sent.";
  EXPECT_EQ(Send(), "<0D><01>000020000397D<0A>");
  EXPECT_EQ(Boxes(11, 14), "3 9 7 D");
  Box(6).Text = "1";
  Box(1).Text = "81";
  EXPECT_EQ(Send(), "<0D><81>000010000339B<0A>");
  EXPECT_EQ(Boxes(11, 14), "3 3 9 B");
}

TEST_F(WrongMessageTest, BytesAreReadAsHexadecimal) {
  const std::map<std::string, std::string> bytes = {{"0D", "<0D>"}, {"d", "<0D>"}, {"ff", "<FF>"},
                                                    {"FF", "<FF>"}, {"0", "<00>"}, {"41", "A"}};
  for (const auto& [text, byte] : bytes) {
    Box(0).Text = text;
    Box(15).Text = text;
    EXPECT_EQ(Send(), byte + "<01>000010000D7AF" + byte);
  }
}

TEST_F(WrongMessageTest, WhatIsTypedIsSentAsItIs) {
  Box(2).Text = "Z";
  Box(3).Text = "g";
  Box(4).Text = " ";
  Box(10).Text = "é";
  EXPECT_EQ(Send().substr(0, 19), "<0D><01>Zg 01000<E9");
  Box(5).Text = "";
  tool.cmd_SendErrMsg.Press();
  EXPECT_EQ(world.port().TakeSent().back().size(), 15U) << "An empty box is no byte.";
}

TEST_F(WrongMessageTest, AWrongCrcIsOfTheDigitsOneToNine) {
  Tick(kWrongCrc);
  numbers = {0, 8, 4, 9, 17, 18, 0xFFFFFFFF, 5};
  EXPECT_EQ(Send(), "<0D><01>0000100001951<0A>");
  EXPECT_EQ(Boxes(11, 14), "1 9 5 1");
  EXPECT_EQ(drawn, 4U) << "One for each digit.";
  Box(11).Text = "F";
  EXPECT_EQ(Send(), "<0D><01>0000100009146<0A>") << "What was typed is filled over.";
}

TEST(WrongMessageByChance, HasEachDigitFromOneToNineAndNoOther) {
  FakeWorld world;
  PlainHost plain(world);
  frm_IPMsgErr tool(plain.host);
  tool.Show();
  tool.chk_IPMsgErr(kWrongCrc).Value = true;
  std::set<char> digits;
  for (int i = 0; i < 300; ++i) {
    tool.cmd_SendErrMsg.Press();
    for (int box = 11; box <= 14; ++box) digits.insert(tool.txt_ErrMsg(box).Text.get().at(0));
  }
  EXPECT_EQ(std::string(digits.begin(), digits.end()), "123456789");
}

TEST_F(WrongMessageTest, NonAsciiDataAreFourControlBytesUnderTheCrc) {
  Tick(kNonAscii);
  EXPECT_EQ(Send(), "<0D><01>00001<01><02><03><04>0026<0A>");
  EXPECT_EQ(Boxes(7, 14), "x x x x 0 0 2 6");
}

TEST_F(WrongMessageTest, BothWrongModesGoTogether) {
  Tick(kNonAscii);
  Tick(kWrongCrc);
  numbers = {1, 2, 3, 4};
  tool.cmd_ResetDefault.Press();
  EXPECT_EQ(Send(), "<0D><01>00001<01><02><03><04>2345<0A>");
  EXPECT_EQ(Boxes(0, 15), "0D 1 0 0 0 0 1 x x x x 2 3 4 5 0A");
}

TEST_F(WrongMessageTest, AFrameThatCanNotBeBuiltLeavesThePortClosedWithoutAWord) {
  for (const auto& [box, text] :
       std::vector<std::pair<int, std::string>>{{0, "G1"},
                                                {0, ""},
                                                {0, " D"},
                                                {0, "100"},
                                                {0, "-1"},
                                                {0, "0000000000D"},
                                                {1, "x"},
                                                {1, ""},
                                                {15, "0 "},
                                                {2, "\xE2\x82\xBF"},  // no byte stands for it
                                                {9, "\xCE\xB1"}}) {
    tool.cmd_ResetDefault.Press();
    Box(box).Text = text;
    EXPECT_EQ(Send(), "nothing") << box << " " << text;
    EXPECT_EQ(State(), "idle");
    EXPECT_EQ(tool.txtStatus.Text.get(), "");
  }
  world.Advance(1min);
  tool.cmd_ResetDefault.Press();
  EXPECT_EQ(Send(), "<0D><01>000010000D7AF<0A>");
}

TEST_F(WrongMessageTest, WhatIsBadAtTheEndShowsItsCrcAllTheSame) {
  Box(6).Text = "2";
  Box(15).Text = "?";
  EXPECT_EQ(Send(), "nothing");
  EXPECT_EQ(Boxes(11, 14), "3 9 7 D");
}

}  // namespace
}  // namespace tarnlink
