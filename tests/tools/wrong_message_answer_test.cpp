// The generator of wrong messages: what comes back, or does not, and what the port does to it.

#include "common/run_time_error.h"
#include "tools/wrong_message_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

// An answer to the default message, of this type.
std::string AnswerOf(int type) {
  return "\r" + std::string(1, static_cast<char>(type)) + "000011234ABCD\n";
}

// --- The answer ----------------------------------------------------------------------------------

TEST_F(WrongMessageTest, ShowsTheAnswerByteByByte) {
  SendAndReceive(AnswerOf(0x11));
  EXPECT_EQ(Received(), "0D 11 0 0 0 0 1 1 2 3 4 A B C D 0A");
  EXPECT_EQ(tool.txt_ReturnedData.Text.get(), AnswerOf(0x11));
  EXPECT_EQ(tool.txtStatus.Text.get(), "Read Acknowledge");
}

TEST_F(WrongMessageTest, TheKindOfTheAnswerIsItsStatus) {
  for (int type = 0; type < 256; ++type) {
    std::string status;
    if (type >> 4 == 1) status = "Read Acknowledge";
    if (type >> 4 == 2) status = "Corrupted Message";
    if (type >> 4 == 4) status = "Parameter outside range";
    if (type >> 4 == 6) status = "Unknown Data ID";
    if (type >> 4 == 9) status = "Write Acknowledge";
    SendAndReceive(AnswerOf(type));
    EXPECT_EQ(tool.txtStatus.Text.get(), status) << type;
  }
}

TEST_F(WrongMessageTest, EachReceivedBoxTellsItsByte) {
  std::string bytes;
  for (const int one : {0, 1, 2, 9, 10, 13, 31, 32, 65, 127, 128, 163, 0xE9, 0xC3, 0xA9, 255}) {
    bytes += static_cast<char>(one);
  }
  SendAndReceive(bytes);
  const std::vector<std::string> codes = {"00", "01", "02", "09", "0A", "0D", "1F", "20",
                                          "41", "7F", "80", "A3", "E9", "C3", "A9", "FF"};
  for (int i = 0; i < 16; ++i) {
    EXPECT_EQ(tool.txt_RecErrMsg(i).ToolTipText.get(),
              "Hex " + codes.at(static_cast<std::size_t>(i)));
  }
  EXPECT_EQ(tool.txt_RecErrMsg(0).Text.get(), "00");
  EXPECT_EQ(tool.txt_RecErrMsg(1).Text.get(), "01");
  EXPECT_EQ(tool.txt_RecErrMsg(8).Text.get(), "A");
  EXPECT_EQ(tool.txt_RecErrMsg(12).Text.get(), "é");
  EXPECT_EQ(tool.txt_RecErrMsg(13).Text.get(), "Ã") << "Each byte is a character of its own.";
  EXPECT_EQ(tool.txt_RecErrMsg(14).Text.get(), "©");
  EXPECT_EQ(tool.txt_RecErrMsg(15).Text.get(), "FF");
}

TEST_F(WrongMessageTest, AZeroByteIsShownAsABlank) {
  SendAndReceive(
      std::string("\r\x11"
                  "00\0"
                  "ab00000000\0",
                  16));
  EXPECT_EQ(tool.txt_RecErrMsg(4).Text.get(), " ");
  EXPECT_EQ(tool.txt_RecErrMsg(4).ToolTipText.get(), "Hex 00");
  EXPECT_EQ(tool.txt_ReturnedData.Text.get(),
            "\r\x11"
            "00 ab00000000 ");
}

TEST_F(WrongMessageTest, BytesBehindTheFrameAreInTheRawDataOnly) {
  SendAndReceive(AnswerOf(0x61) + "more");
  EXPECT_EQ(tool.txt_ReturnedData.Text.get(), AnswerOf(0x61) + "more");
  EXPECT_EQ(Received(), "0D 61 0 0 0 0 1 1 2 3 4 A B C D 0A");
}

TEST_F(WrongMessageTest, TwoBytesOfTheRawDataAreNeverOneCharacter) {
  SendAndReceive("0123456789ABCD\xC3\xA9");
  EXPECT_EQ(tool.txt_ReturnedData.Text.get(), "0123456789ABCDÃ©");
}

TEST_F(WrongMessageTest, ShowsAsMuchAsThereIsOfAShortMessage) {
  tool.ShowReceivedMessage(
      "\r\x21"
      "0");
  EXPECT_EQ(Received(), "0D 21 0" + std::string(13, ' '));
  EXPECT_EQ(tool.txtStatus.Text.get(), "Corrupted Message");
  tool.ClearReceived();
  tool.ShowReceivedMessage("");
  EXPECT_EQ(tool.txtStatus.Text.get(), "");
}

TEST_F(WrongMessageTest, TheNextMessageClearsWhatWasReceived) {
  SendAndReceive(AnswerOf(0x11));
  Send();
  EXPECT_EQ(Received(), std::string(15, ' '));
  EXPECT_EQ(tool.txt_ReturnedData.Text.get(), "");
  EXPECT_EQ(tool.txtStatus.Text.get(), "");
  EXPECT_EQ(tool.txt_RecErrMsg(4).ToolTipText.get(), "");
}

// --- An adapter that sends back what it is given ---

TEST_F(WrongMessageTest, TheMessageComingBackIsNoAnswer) {
  Send();
  const std::string echo = world.port().frames().back().bytes;
  Receive(echo);
  EXPECT_EQ(State(), "waiting, Tx");
  EXPECT_EQ(tool.txt_ReturnedData.Text.get(), "");
  EXPECT_EQ(tool.txtStatus.Text.get(), "");
  Receive(AnswerOf(0x11));
  EXPECT_EQ(tool.txt_ReturnedData.Text.get(), AnswerOf(0x11));
  EXPECT_EQ(tool.txtStatus.Text.get(), "Read Acknowledge");
}

TEST_F(WrongMessageTest, TheAnswerMayComeWithItOrInPieces) {
  for (const std::size_t cut : {1U, 8U, 15U, 16U, 17U, 24U, 31U, 32U}) {
    Send();
    const std::string all = world.port().frames().back().bytes + AnswerOf(0x61);
    Receive(all.substr(0, cut));
    Receive(all.substr(cut));
    EXPECT_EQ(tool.txt_ReturnedData.Text.get(), AnswerOf(0x61)) << cut;
    EXPECT_EQ(tool.txtStatus.Text.get(), "Unknown Data ID") << cut;
  }
}

TEST_F(WrongMessageTest, AMessageThatIsShortComesBackShort) {
  Box(4).Text = "";
  Send();
  const std::string echo = world.port().frames().back().bytes;
  ASSERT_EQ(echo.size(), 15U);
  Receive(echo + AnswerOf(0x21));
  EXPECT_EQ(tool.txtStatus.Text.get(), "Corrupted Message");
  EXPECT_EQ(tool.txt_ReturnedData.Text.get(), AnswerOf(0x21));
}

// Such as a plug that joins both wires.
TEST_F(WrongMessageTest, TheMessageComingBackWithNothingBehindItIsShownAndNoAnswer) {
  Box(1).Text = "91";
  Send();
  const std::string echo = world.port().frames().back().bytes;
  Receive(echo);
  world.Advance(999ms);
  EXPECT_EQ(State(), "waiting");
  EXPECT_EQ(tool.txt_ReturnedData.Text.get(), "");
  ExpectNoResponse(world);
  world.Advance(1ms);
  EXPECT_EQ(State(), "idle, Rx");
  EXPECT_EQ(BoxTexts(tool.txt_RecErrMsg, 0, 6), "0D 91 0 0 0 0 1");
  EXPECT_EQ(tool.txtStatus.Text.get(), "Write Acknowledge");
  tool.cmd_ResetDefault.Press();
  SendAndReceive("<");
  ExpectNoResponse(world);
  world.Advance(1s);
  EXPECT_EQ(Received(), std::string(15, ' ')) << "That of the message before is gone.";
}

TEST_F(WrongMessageTest, TheMessageComingBackWithHalfAnAnswerBehindItIsSilence) {
  Send();
  Receive(world.port().frames().back().bytes + AnswerOf(0x11).substr(0, 5));
  ExpectNoResponse(world);
  world.Advance(1s);
  EXPECT_EQ(Received(), std::string(15, ' '));
}

TEST_F(WrongMessageTest, AFrameThatCanNotBeBuiltOpensNoPort) {
  Box(0).Text = "?";
  EXPECT_EQ(Send(), "nothing");
  EXPECT_EQ(world.port().opens(), 0);
}

TEST_F(WrongMessageTest, OnlyOnceAndOnlyAsItWasSentItIsNoAnswer) {
  Send();
  const std::string echo = world.port().frames().back().bytes;
  Receive(echo + echo);
  EXPECT_EQ(tool.txt_ReturnedData.Text.get(), echo);
  for (std::size_t at = 0; at < echo.size(); ++at) {
    Send();
    std::string other = echo;
    other[at] = '~';
    Receive(other);
    EXPECT_EQ(tool.txt_ReturnedData.Text.get(), other) << at;
  }
}

// --- The port, the lamps and the time ------------------------------------------------------------

TEST_F(WrongMessageTest, OpensThePortOfTheOptionsForOneExchange) {
  plain.com_port = 4;
  plain.baudrate = 1;
  EXPECT_EQ(world.port().opens(), 0);
  Send();
  EXPECT_EQ(world.port().CommPort(), 4);
  EXPECT_EQ(world.port().Settings(), " 2400n,8,1");
  EXPECT_EQ(world.port().RThreshold(), 16);
  EXPECT_EQ(State(), "waiting, Tx");
  EXPECT_EQ(tool.tim_IPMsgErr->Interval(), 1000);
  EXPECT_EQ(tool.tim_TxRxLed->Interval(), 100);
  Receive(AnswerOf(0x11));
  EXPECT_FALSE(world.port().PortOpen());
  plain.com_port = 1;
  plain.baudrate = 5;
  Send();
  EXPECT_EQ(world.port().CommPort(), 1);
  EXPECT_EQ(world.port().Settings(), " 38400n,8,1");
}

TEST_F(WrongMessageTest, EachLampIsLitForATenthOfASecond) {
  Send();
  EXPECT_EQ(tool.shp_Tx.BackColor.get(), frm_IPMsgErr::kTxLit);
  world.Advance(99ms);
  EXPECT_EQ(State(), "waiting, Tx");
  world.Advance(1ms);
  EXPECT_EQ(State(), "waiting");
  world.Advance(300ms);
  Receive(AnswerOf(0x11));
  EXPECT_EQ(State(), "idle, Rx");
  EXPECT_EQ(tool.shp_Rx.BackColor.get(), 65280);
  world.Advance(99ms);
  EXPECT_EQ(State(), "idle, Rx");
  world.Advance(1ms);
  EXPECT_EQ(State(), "idle");
}

TEST_F(WrongMessageTest, BothLampsGoOutTogether) {
  Send();
  world.Advance(60ms);
  Receive(AnswerOf(0x11));
  EXPECT_EQ(State(), "idle, Tx, Rx");
  world.Advance(99ms);
  EXPECT_EQ(State(), "idle, Tx, Rx");
  world.Advance(1ms);
  EXPECT_EQ(State(), "idle");
}

TEST_F(WrongMessageTest, SilenceIsToldOnceAfterASecond) {
  Send();
  world.Advance(999ms);
  EXPECT_EQ(State(), "waiting");
  ExpectNoResponse(world).While([&] { EXPECT_EQ(State(), "idle"); }).For(1min);
  world.Advance(1ms);
  EXPECT_EQ(State(), "idle");
  world.Advance(1h);
  EXPECT_EQ(Received(), std::string(15, ' '));
}

TEST_F(WrongMessageTest, AnAnswerThatIsTooShortIsSilence) {
  Send();
  Receive(AnswerOf(0x11).substr(0, 15));
  EXPECT_EQ(State(), "waiting, Tx");
  ExpectNoResponse(world);
  world.Advance(1s);
  EXPECT_EQ(Received(), std::string(15, ' '));
  EXPECT_EQ(tool.txt_ReturnedData.Text.get(), "");
}

TEST_F(WrongMessageTest, AnAnswerThatComesTooLateIsLost) {
  Send();
  ExpectNoResponse(world);
  world.Advance(1s);
  Receive(AnswerOf(0x11));
  EXPECT_EQ(Received(), std::string(15, ' '));
}

TEST_F(WrongMessageTest, SendingWhileAnAnswerIsAwaitedBeginsAnew) {
  Send();
  Receive("half an");
  world.Advance(900ms);
  Box(6).Text = "2";
  EXPECT_EQ(Send(), "<0D><01>000020000397D<0A>");
  EXPECT_EQ(world.port().opens(), 2);
  EXPECT_EQ(world.port().closes(), 1);
  world.Advance(900ms);
  EXPECT_EQ(State(), "waiting") << "It has its own second.";
  Receive(AnswerOf(0x11));
  EXPECT_EQ(tool.txt_ReturnedData.Text.get(), AnswerOf(0x11)) << "The half one is gone.";
  EXPECT_EQ(State(), "idle, Rx");
}

TEST_F(WrongMessageTest, AFrameThatCanNotBeBuiltGivesUpWhatWasAwaited) {
  Send();
  Box(0).Text = "?";
  EXPECT_EQ(Send(), "nothing");
  world.Advance(1min);
  EXPECT_EQ(State(), "idle");
}

TEST_F(WrongMessageTest, ABusyPortIsToldAndWorksWhenItIsFree) {
  world.port().MakeBusy();
  EXPECT_EQ(Send(), "nothing");
  EXPECT_EQ(tool.txtStatus.Text.get(), "COM1 is in use by another program.");
  EXPECT_EQ(State(), "idle");
  world.Advance(1min);
  world.port().MakeBusy(false);
  EXPECT_EQ(Send(), "<0D><01>000010000D7AF<0A>");
  EXPECT_EQ(tool.txtStatus.Text.get(), "");
}

TEST_F(WrongMessageTest, APortThatIsNoneIsTold) {
  plain.com_port = 17;
  EXPECT_EQ(Send(), "nothing");
  EXPECT_EQ(tool.txtStatus.Text.get(), "COM17 is no port number.");
}

TEST_F(WrongMessageTest, AnUnpluggedDeviceIsToldAndComesBack) {
  Send();
  world.Advance(500ms);
  world.port().Unplug();
  world.Settle();
  EXPECT_EQ(tool.txtStatus.Text.get(), "COM1 was unplugged.");
  ExpectNoResponse(world);
  world.Advance(1min);
  EXPECT_EQ(State(), "idle");
  EXPECT_EQ(Send(), "nothing");
  EXPECT_EQ(tool.txtStatus.Text.get(), "COM1 is not plugged in.");
  world.port().PlugIn();
  SendAndReceive(AnswerOf(0x11));
  EXPECT_EQ(tool.txtStatus.Text.get(), "Read Acknowledge");
}

TEST_F(WrongMessageTest, CallsOfThePortThatFailArePassedBy) {
  const RunTimeError error(kDeviceIo, "Input/output error");
  world.faults().Break("Port.Output", error);
  EXPECT_EQ(Send(), "nothing");
  EXPECT_EQ(tool.txtStatus.Text.get(), "Input/output error");
  EXPECT_EQ(State(), "idle");
  world.faults().Break("Port.Settings", RunTimeError(kTypeMismatch));
  EXPECT_EQ(Send(), "nothing");
  EXPECT_EQ(tool.txtStatus.Text.get(), "The communication port can not be used.");
  Send();
  world.faults().Break("Port.Input", error);
  Receive(AnswerOf(0x11));
  world.Advance(10ms);
  EXPECT_EQ(tool.txtStatus.Text.get(), "Read Acknowledge");
  world.Advance(100ms);
  EXPECT_EQ(State(), "idle");
}

TEST_F(WrongMessageTest, APortThatDoesNotCloseIsClosedByTheNextMessage) {
  Send();
  world.faults().Break("Port.Close", RunTimeError(kDeviceIo));
  Receive(AnswerOf(0x11));
  EXPECT_TRUE(world.port().PortOpen());
  EXPECT_FALSE(tool.tim_IPMsgErr->Enabled());
  Receive(AnswerOf(0x61));
  EXPECT_EQ(world.port().InBufferCount(), 0) << "What nobody waits for does not come again.";
  EXPECT_EQ(tool.txtStatus.Text.get(), "Read Acknowledge");
  EXPECT_EQ(Send(), "<0D><01>000010000D7AF<0A>");
  Receive(AnswerOf(0x91));
  EXPECT_EQ(tool.txtStatus.Text.get(), "Write Acknowledge");
  EXPECT_EQ(State(), "idle, Tx, Rx");
}

TEST_F(WrongMessageTest, ErrorsOfTheLineAreNoAnswer) {
  Send();
  for (const int event : {kCommFrame, kCommOverrun, kCommReceiveOver, kCommTransmitFull}) {
    world.port().RaiseLineError(event);
    world.Settle();
  }
  EXPECT_EQ(State(), "waiting, Tx");
}

}  // namespace
}  // namespace tarnlink
