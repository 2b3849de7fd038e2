// The EEPROM writer with a slave that the test plays, byte by byte.

#include "tools/eeprom_fixture.h"

namespace tarnlink {
namespace {

using zolt_frame::kReadAcknowledge;
using zolt_frame::kWriteAcknowledge;
constexpr std::uint8_t kDone = kWriteAcknowledge + 7;
constexpr std::uint8_t kRead = kReadAcknowledge + 7;

class EepromOutputFiles : public EepromWriterTest {};

TEST_F(EepromOutputFiles, AreMadeBesideTheSource) {
  Choose(Source(3));
  world.dialogs().ExpectMessageBox({.text = "Tarnlink File is generated",
                                    .title = "File Generation Done...",
                                    .icon = Icon::kInformation});
  tool.cmd_TarnlinkFile.Press();
  EXPECT_EQ(world.disk().Get("/home/user/work/image.bin").size(), 48U);
  EXPECT_EQ(world.disk().Get("/home/user/work/image.tlk").substr(0, 32),
            " START\r\n00 0 0X8000cell 0\r\n05 5 ");
}

TEST_F(EepromOutputFiles, AreThoseThatAreTicked) {
  Choose(Source(1));
  EXPECT_TRUE(tool.chkOutputFormat(0).Value && tool.chkOutputFormat(1).Value);
  tool.chkOutputFormat(0).Value = false;
  world.dialogs().ExpectMessageBox("Tarnlink File is generated", "File Generation Done...");
  tool.cmd_TarnlinkFile.Press();
  EXPECT_FALSE(world.disk().Exists("/home/user/work/image.tlk"));
  EXPECT_TRUE(world.disk().Exists("/home/user/work/image.bin"));
  tool.chkOutputFormat(1).Value = false;
  tool.cmd_TarnlinkFile.Press();
  EXPECT_EQ(tool.lblLeft.Caption.get(), "No file format is ticked.");
}

TEST_F(EepromOutputFiles, AreNotTouchedByASourceWithAnError) {
  std::string text = Source(2);
  text.replace(text.find("05,5,"), 5, "05,6,");
  Choose(text);
  world.disk().Put("/home/user/work/image.bin", "old");
  ExpectError("Value Error in EEPROM source file on line : 0X8001 cell 1");
  tool.cmd_TarnlinkFile.Press();
  EXPECT_EQ(world.disk().Get("/home/user/work/image.bin"), "old");
  EXPECT_TRUE(tool.cmd_TarnlinkFile.Enabled);
}

TEST_F(EepromOutputFiles, NeverReplaceTheirSource) {
  Choose(Source(1), "/home/user/work/image.bin");
  ExpectError("The output file would replace the source file.");
  tool.cmd_TarnlinkFile.Press();
  EXPECT_EQ(world.disk().Get("/home/user/work/image.bin"), Source(1));
}

TEST_F(EepromOutputFiles, TellWhatTheDiskSays) {
  Choose(Source(1));
  world.disk().Forbid("/home/user/work/image.tlk");
  world.disk().Put("/home/user/work/image.tlk", "old");
  EXPECT_EQ(world.disk().Get("/home/user/work/image.tlk"), "old");
  tool.cmd_CalcFileChecksum.Press();
  EXPECT_EQ(tool.txt_FileChecksum.Text->substr(0, 2), "&H");
}

TEST_F(EepromOutputFiles, NeedASourceThatIsChosen) {
  EXPECT_EQ(tool.txt_eepromsourcefile.Text.get(), "No file specified");
  tool.cmd_TarnlinkFile.Press();
  tool.cmd_CalcFileChecksum.Press();
  tool.WriteEEPROM();
  tool.VerifyEEPROM();
  Choose(Source(1));
  EXPECT_EQ(world.dialogs().last_file_request().file_name, "*.def");
  EXPECT_TRUE(tool.FileOpen);
  world.dialogs().ExpectOpenFile().Cancel();
  tool.cmd_Browse.Press();
  EXPECT_FALSE(tool.FileOpen);
  EXPECT_EQ(tool.txt_eepromsourcefile.Text.get(), "No file specified");
  world.dialogs().ExpectOpenFile().Give("*.def");
  tool.cmd_Browse.Press();
  EXPECT_FALSE(tool.FileOpen);
  EXPECT_FALSE(world.port().PortOpen());
}

TEST_F(EepromOutputFiles, HaveAChecksumOfTheirSource) {
  Choose("AB\r\nC\n");
  tool.cmd_CalcFileChecksum.Press();
  EXPECT_EQ(tool.txt_FileChecksum.Text.get(), "&HC6");
}

class EepromWriting : public EepromWriterTest {
 protected:
  // Acknowledges what went out, whatever it is.
  void Acknowledge() {
    const auto sent = world.port().TakeSent();
    ASSERT_EQ(sent.size(), 1U);
    Say(kDone, sent[0].substr(3, 4), sent[0].substr(7, 4));
  }
  void Start(int first = 0x8000) {
    Choose(Source(1, first));
    question = "Write 16 bytes, 0X" + Hex(first) + " to 0X" + Hex(first + 15) + ", into slave 0?";
    PressWrite();
    world.Advance(20ms);
  }
};

TEST_F(EepromWriting, AsksBeforeTheFirstByte) {
  Choose(Source(1));
  PressWrite(Answer::kNo);
  world.Advance(1s);
  EXPECT_TRUE(world.port().frames().empty());
  EXPECT_EQ(world.port().opens(), 0);
  EXPECT_FALSE(tool.Writing);
}

TEST_F(EepromWriting, SendsOffsetAndValueUnderTheAliasOfThePage) {
  Start();
  EXPECT_EQ(world.port().opened_with().baud, 9600);
  EXPECT_EQ(TakeFrames(), std::vector<std::string>{Readable(zolt_frame::FinishFrame("\x87"
                                                                                    "0FFFE0000"))});
  EXPECT_EQ(tool.lblProgress.Caption.get(), "0X8000 : 00 (cell 0)");
  EXPECT_FALSE(tool.cmd_TarnlinkFile.Enabled || tool.fra_Eewrite.Enabled);
  Say(kDone, "FFFE", "0000");
  EXPECT_EQ(TakeFrames(), std::vector<std::string>{Readable(zolt_frame::FinishFrame("\x87"
                                                                                    "0FFFE0105"))});
  EXPECT_EQ(tool.LastConfirmed, "0X8000");
}

TEST_F(EepromWriting, PutsABlankInFrontOfOneDigit) {
  std::string text = Source(1);
  text.replace(text.find("05,5,"), 5, "5,5,");
  Choose(text);
  PressWrite();
  world.Advance(20ms);
  Acknowledge();
  EXPECT_EQ(TakeFrames(), std::vector<std::string>{Readable(zolt_frame::FinishFrame("\x87"
                                                                                    "0FFFE01 5"))});
  Say(kDone, "FFFE", "01 5");
  EXPECT_EQ(tool.LastConfirmed, "0X8001");
}

TEST_F(EepromWriting, HasNoAliasForOtherPages) {
  Start(0x8100);
  EXPECT_EQ(TakeFrames(), std::vector<std::string>{Readable(zolt_frame::FinishFrame("\x87"
                                                                                    "0????0000"))});
  tool.cmd_Stop.Press();
  Start(0x9000);
  EXPECT_EQ(TakeFrames(), std::vector<std::string>{Readable(zolt_frame::FinishFrame("\x87"
                                                                                    "00000"))});
  Say(kDone, "0000", "0000");
  EXPECT_EQ(tool.LastConfirmed, "");
}

TEST_F(EepromWriting, RepeatsWithoutEndUntilItIsStopped) {
  Start();
  const std::string first = world.port().TakeSent().at(0);
  world.Advance(60s);
  const auto again = world.port().TakeSent();
  EXPECT_EQ(again.size(), 60U);
  EXPECT_EQ(again.back(), first);
  tool.cmd_Cancel.Press();
  EXPECT_FALSE(tool.Writing);
  EXPECT_TRUE(tool.form.Visible);
  EXPECT_FALSE(world.port().PortOpen());
  EXPECT_EQ(LastResult(), "Stopped. No address has been confirmed.");
  EXPECT_TRUE(tool.cmd_TarnlinkFile.Enabled && tool.fra_Eewrite.Enabled);
  world.Advance(5s);
  EXPECT_TRUE(world.port().TakeSent().empty());
}

TEST_F(EepromWriting, RepeatsARefusalAtOnce) {
  Start();
  const std::string first = world.port().TakeSent().at(0);
  for (const std::uint8_t kind : {0x27, 0x47, 0x67, 0x17}) {
    Say(kind, "FFFE", "0000");
    EXPECT_EQ(world.port().TakeSent(), std::vector<std::string>{first}) << int{kind};
  }
  EXPECT_EQ(tool.LastConfirmed, "");
}

TEST_F(EepromWriting, SkipsWhatIsNotItsAnswer) {
  Start();
  const std::string request = world.port().TakeSent().at(0);
  world.port().Receive(request);
  world.Advance(5ms);
  Say(kDone, "FFFE", "0000", "3");
  Say(kDone, "FF3D", "0000");
  Say(0x95, "FFFE", "0000");
  EXPECT_EQ(tool.LastConfirmed, "");
  EXPECT_TRUE(world.port().TakeSent().empty());
  Say(kDone, "FFFE", "0000");
  EXPECT_EQ(tool.LastConfirmed, "0X8000");
}

TEST_F(EepromWriting, TakesNoAcknowledgementOfAnotherByte) {
  Start();
  Acknowledge();
  const std::string second = world.port().TakeSent().at(0);
  Say(kDone, "FFFE", "0000");
  EXPECT_EQ(tool.LastConfirmed, "0X8000");
  world.Advance(500ms);
  EXPECT_EQ(world.port().TakeSent(), std::vector<std::string>{second});
  Say(kDone, "FFFE", "0105");
  EXPECT_EQ(tool.LastConfirmed, "0X8001");
}

TEST_F(EepromWriting, WaitsForAQuietLineBehindATornFrame) {
  Start();
  const std::string request = world.port().TakeSent().at(0);
  world.port().Receive(std::string(20, 'x'));
  world.Advance(50ms);
  world.port().Receive("y");
  world.Advance(50ms);
  EXPECT_TRUE(world.port().TakeSent().empty());
  world.Advance(500ms);
  EXPECT_EQ(world.port().TakeSent(), std::vector<std::string>{request});
}

TEST_F(EepromWriting, TellsTheLastConfirmedAddressWhenThePortIsPulledOut) {
  Start();
  for (int i = 0; i < 3; ++i) Acknowledge();
  world.dialogs().ExpectMessageBox({.text = "The port /dev/fake is gone.",
                                    .title = "Error",
                                    .icon = Icon::kCritical,
                                    .detail = "The last address that was confirmed is 0X8002."});
  world.port().Unplug();
  world.Advance(1s);
  EXPECT_FALSE(tool.Writing);
  EXPECT_NE(tool.lblLeft.Caption->find("0X8002"), std::string::npos);
}

TEST_F(EepromWriting, TellsAPortThatCannotBeOpened) {
  Choose(Source(1));
  world.port().MakeBusy();
  world.dialogs().ExpectMessageBox(question, "Write EEPROM").Press(Answer::kYes);
  ExpectError("");
  tool.cmd_WriteEEPROM.Press();
  EXPECT_FALSE(tool.Writing);
}

TEST_F(EepromWriting, ChecksAllOfTheSourceBeforeTheFirstByte) {
  std::string text = Source(2);
  text.replace(text.rfind("0X8019"), 6, "0X80G9");
  Choose(text);
  ExpectError("The address \"0X80G9\" is not in the form 0X8012. cell 9");
  tool.cmd_WriteEEPROM.Press();
  Choose("no block\n");
  ExpectError("The EEPROM source file holds no block behind a line \"START\".");
  tool.cmd_WriteEEPROM.Press();
  EXPECT_TRUE(world.port().frames().empty());
}

TEST_F(EepromWriting, AsksBeforeItClosesInTheMiddle) {
  Start();
  const std::string text = "The EEPROM is being written. Stop and close the window?";
  world.dialogs().ExpectMessageBox(text, "PROM File Generator").Press(Answer::kNo);
  EXPECT_FALSE(tool.MayClose());
  EXPECT_TRUE(tool.Writing);
  world.dialogs().ExpectMessageBox(text, "PROM File Generator").Press(Answer::kYes);
  EXPECT_TRUE(tool.MayClose());
  tool.Unload();
  EXPECT_TRUE(tool.MayClose());
  EXPECT_FALSE(world.port().PortOpen());
}

TEST_F(EepromWriting, StepsThroughSixteenSlaves) {
  EXPECT_EQ(tool.txt_SlaveAddress.Text.get(), "0");
  tool.ud_SlaveAddress.Press(-1);
  EXPECT_EQ(tool.txt_SlaveAddress.Text.get(), "0");
  for (int i = 0; i < 20; ++i) tool.ud_SlaveAddress.Press(1);
  EXPECT_EQ(tool.txt_SlaveAddress.Text.get(), "F");
}

class EepromVerifying : public EepromWriterTest {
 protected:
  EepromVerifying() {
    Choose(Source(1));
    tool.cmd_VerifyEEPROM.Press();
    world.Advance(20ms);
  }
  // The word of high and low byte, as digits.
  void SayWord(const std::string& digits) { Say(kRead, "FFAB", digits); }
};

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
  SayWord("0A05");
  EXPECT_EQ(tool.LastConfirmed, "0X8002");
}

// The high byte is right by chance: the low one gives it away.
TEST_F(EepromVerifying, LooksAtTheByteInFrontToo) {
  SayWord("0000");
  SayWord("0501");
  EXPECT_EQ(tool.LastConfirmed, "0X8000");
  world.Advance(500ms);
  world.dialogs().ExpectMessageBox({.text = "Verify Error on " + kDefPath,
                                    .title = "Error",
                                    .icon = Icon::kCritical,
                                    .detail =
                                        "0X8000: 00 expected, 01 read. The last address that was "
                                        "confirmed is 0X8000."});
  SayWord("0501");
  EXPECT_FALSE(tool.Writing);
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
