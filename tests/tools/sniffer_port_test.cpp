// How the sniffer opens and leaves its port, and how it falls back into step with the link.

#include "tools/sniffer_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr const char* kNotFound = "Sniffer text file not found.";
constexpr const char* kInUse = "COM1 is in use by another program.";

std::string Damaged(std::string frame) {
  frame[5] ^= 1;
  return frame;
}

// --- Opening -------------------------------------------------------------------------------------

TEST_F(SnifferTest, OpensThePortOfTheOptionsAndSendsNothing) {
  com_port = 3;
  EXPECT_FALSE(sniffer.form.Visible);
  sniffer.Show();
  EXPECT_TRUE(sniffer.form.Visible);
  EXPECT_TRUE(sniffer.sniffing);
  EXPECT_TRUE(error_texts_read);
  FakeSerialPort& port = world.port();
  EXPECT_TRUE(port.PortOpen());
  EXPECT_EQ(port.CommPort(), 3);
  EXPECT_EQ(port.opened_with(), (PortSettings{9600, 'N', 8, 1}));
  EXPECT_EQ(port.RThreshold(), 16);
  EXPECT_EQ(sniffer.lbl_Revision.Caption.get(), "R1.2");
  EXPECT_EQ(Counts(), "Frames: 0, bad: 0");
  Exchange(0xF1, 1, 0);
  EXPECT_TRUE(port.frames().empty());
}

TEST_F(OpenSnifferTest, IsOpenedOnce) {
  Exchange(0xF1, 1, 0);
  sniffer.Show();
  EXPECT_EQ(world.port().opens(), 1);
  EXPECT_EQ(Items(), "1 Flow 00F1 1\n");
}

TEST_F(OpenSnifferTest, LeavesThePortAndBeginsAnew) {
  int unloaded = 0;
  sniffer.Unloaded = [&] { ++unloaded; };
  sniffer.Unload();
  EXPECT_EQ(unloaded, 1);
  sniffer.Show();
  Exchange(0xF1, 1, 0);
  world.port().Receive(Damaged(FrameOf(kReadType, 1, 0, 0)));
  world.Settle();
  sniffer.Command2.Press();
  sniffer.txt_Find.Text = "x";
  sniffer.Unload();
  sniffer.Unload();
  EXPECT_EQ(unloaded, 2);
  EXPECT_FALSE(sniffer.form.Visible);
  EXPECT_FALSE(world.port(0).PortOpen());
  sniffer.Show();
  EXPECT_TRUE(world.port(0).PortOpen());
  EXPECT_TRUE(sniffer.sniffing);
  EXPECT_EQ(Items(), "");
  EXPECT_EQ(Detected(), "");
  EXPECT_EQ(Shown(), "");
  EXPECT_EQ(sniffer.txt_Find.Text.get(), "");
  EXPECT_EQ(Counts(), "Frames: 0, bad: 0");
  Exchange(0x01, 0, 1);
  EXPECT_EQ(Items(), "1 Status 0001 0000000000000001\n");
}

TEST_F(SnifferTest, ReadsItsFileEachTimeAnew) {
  sniffer.Show();
  sniffer.Unload();
  Open("Other,F1,1,L\r\n");
  Exchange(0xF1, 1, 2);
  EXPECT_EQ(Items(), "1 Other 00F1 0x02\n");
  EXPECT_EQ(sniffer.lbl_Revision.Caption.get(), "Unknown revision");
}

TEST_F(SnifferTest, ShowsTheBeginningOfALongRevision) {
  Open("*" + std::string(300, 'R') + "\r\nOther,F1,1,L\r\n");
  EXPECT_EQ(sniffer.lbl_Revision.Caption.get(), std::string(200, 'R') + "...");
}

// --- The sniffer text file -----------------------------------------------------------------------

TEST_F(SnifferTest, TellsOfAFileThatIsMissingAndNamesNothing) {
  world.disk().Remove(kNames);
  world.dialogs().ExpectMessageBox(SnifferFileBox(kNotFound));
  sniffer.Show();
  EXPECT_TRUE(world.port().PortOpen());
  Exchange(0xF1, 0x2D, 0x1A);
  EXPECT_EQ(Items(), "1 1 Name  00F1 0x2D1A\n");
  EXPECT_EQ(sniffer.lbl_Revision.Caption.get(), "Unknown revision");
}

TEST_F(SnifferTest, TellsOfAFileThatCannotBeRead) {
  world.disk().Forbid(kNames);
  world.dialogs().ExpectMessageBox(SnifferFileBox(kNotFound));
  sniffer.Show();
  Exchange(0xF1, 1, 2);
  EXPECT_EQ(Items(), "1 1 Name  00F1 0x0102\n");
}

TEST_F(SnifferTest, TellsOfTheFirstBrokenLineAndReadsAllOthers) {
  MessageBoxRequest box = SnifferFileBox("boiler.snf, line 4: The representation is not 0 to 3.");
  box.detail = "The rest of the file has been read.";
  world.dialogs().ExpectMessageBox(box);
  Open("*R2\r\nFlow,F1,0,H\r\n\r\nOdd,F2,9\r\nworse\r\nStatus,1,2\r\n");
  EXPECT_EQ(sniffer.lbl_Revision.Caption.get(), "R2");
  for (const int id : {0xF1, 0xF2, 0x01}) Exchange(id, 1, 2);
  EXPECT_EQ(Items(), "1 Flow 00F1 1\n2 Odd 00F2 0x0102\n3 Status 0001 0000000100000010\n");
}

TEST_F(SnifferTest, FindsTheFileBesideTheIdFileWhateverThatIs) {
  id_file = ".\\default.ids";
  world.disk().Put("/usr/share/tarnlink/default.snf", "Shipped,F1,0,H\r\n");
  sniffer.Show();
  Exchange(0xF1, 1, 2);
  EXPECT_EQ(Items(), "1 Shipped 00F1 1\n");
}

TEST_F(SnifferTest, ReadsNamesInWindows1252) {
  Open("K\xFChlung,F1,0,H\r\n");
  Exchange(0xF1, 1, 2);
  EXPECT_EQ(Items(), "1 K\xC3\xBChlung 00F1 1\n");
}

TEST_F(SnifferTest, HasNoFileWhereNoIdsAreWanted) {
  id_file = "";
  world.dialogs().ExpectMessageBox(SnifferFileBox(kNotFound));
  sniffer.Show();
  EXPECT_TRUE(world.port().PortOpen());
}

TEST_F(SnifferTest, LeavesThePortAloneWhenItIsLeftWhileABoxIsUp) {
  world.disk().Remove(kNames);
  world.dialogs().ExpectMessageBox(SnifferFileBox(kNotFound)).While([this] { sniffer.Unload(); });
  sniffer.Show();
  EXPECT_FALSE(sniffer.form.Visible);
  EXPECT_FALSE(world.port().PortOpen());
}

// --- A port that cannot be had -------------------------------------------------------------------

class SnifferPort : public SnifferTest {
 protected:
  void ExpectBusy(const std::string& reason = kInUse) {
    world.dialogs().ExpectMessageBox({.text = "Com port busy.",
                                      .title = "Communication port",
                                      .icon = Icon::kCritical,
                                      .detail = reason});
  }
};

TEST_F(SnifferPort, TellsThatItIsBusyAndListensWhenItIsFree) {
  world.port().MakeBusy();
  ExpectBusy();
  sniffer.Show();
  EXPECT_EQ(sniffer.lbl_Port.Caption.get(), kInUse);
  world.Advance(10s);  // without a further word
  EXPECT_FALSE(world.port().PortOpen());
  world.port().MakeBusy(false);
  world.Advance(1s);
  EXPECT_TRUE(world.port().PortOpen());
  EXPECT_EQ(sniffer.lbl_Port.Caption.get(), "");
  Exchange(0xF1, 1, 0);
  EXPECT_EQ(Items(), "1 Flow 00F1 1\n");
  world.Advance(10s);
  EXPECT_EQ(world.port().opens(), 1);
}

TEST_F(SnifferPort, TakesAnotherNumberOfTheOptionsWhileItWaits) {
  world.port().MakeBusy();
  ExpectBusy();
  sniffer.Show();
  com_port = 2;
  world.Advance(1s);
  EXPECT_TRUE(world.port().PortOpen());
  EXPECT_EQ(world.port().CommPort(), 2);
}

TEST_F(SnifferPort, DoesNotWaitForItOnceItIsLeft) {
  world.port().MakeBusy();
  ExpectBusy();
  sniffer.Show();
  sniffer.Unload();
  world.port().MakeBusy(false);
  world.Advance(10s);
  EXPECT_EQ(world.port().opens(), 0);
}

TEST_F(SnifferPort, TellsOfANumberThatNoPortHas) {
  com_port = 17;
  ExpectBusy("COM17 is no port number.");
  sniffer.Show();
  com_port = 1;
  world.Advance(1s);
  EXPECT_TRUE(world.port().PortOpen());
}

TEST_F(SnifferPort, ComesBackAfterItWasUnplugged) {
  sniffer.Show();
  Exchange(0xF1, 1, 0);
  world.port().Receive("\r\x04");  // half a frame is lost with it
  world.port().Unplug();
  world.Settle();
  EXPECT_EQ(sniffer.lbl_Port.Caption.get(), "COM1 was unplugged.");
  world.Advance(5s);
  EXPECT_FALSE(world.port().PortOpen());
  EXPECT_EQ(sniffer.lbl_Port.Caption.get(), "COM1 is not plugged in.");
  world.port().PlugIn();
  world.Advance(1s);
  EXPECT_EQ(sniffer.lbl_Port.Caption.get(), "");
  Exchange(0xF1, 2, 0);
  EXPECT_EQ(Items(), "1 Flow 00F1 2\n");
  EXPECT_EQ(Counts(), "Frames: 4, bad: 0");
}

TEST_F(SnifferPort, StaysClosedWhenTheSnifferIsLeftAsItIsUnplugged) {
  sniffer.Show();
  world.port().Unplug();
  sniffer.Unload();
  world.port().PlugIn();
  world.Advance(10s);
  EXPECT_FALSE(world.port().PortOpen());
}

TEST_F(SnifferPort, ComesBackWhenItCannotBeHadBehindABadFrame) {
  sniffer.Show();
  world.faults().Break("Port.Open", RunTimeError(kPortUnavailable, "COM1 is busy."));
  HearBytes(Damaged(FrameOf(kReadType, 0xF1, 0, 0)));
  EXPECT_FALSE(world.port().PortOpen());
  EXPECT_EQ(sniffer.lbl_Port.Caption.get(), "COM1 is busy.");
  world.Advance(1s);
  Exchange(0xF1, 2, 0);
  EXPECT_EQ(Items(), "1 Flow 00F1 2\n");
}

TEST_F(SnifferPort, IsStillOutOfStepWhenItCanBeHadAgainBehindABadFrame) {
  sniffer.Show();
  world.faults().Break("Port.Open", RunTimeError(kPortUnavailable, "COM1 is busy."));
  HearBytes(Damaged(FrameOf(kReadType, 0xF1, 0, 0)));
  world.Advance(1s);
  HearBytes(FrameOf(kReadType, 0xF1, 0, 0).substr(3));
  Exchange(0xF1, 2, 0);
  EXPECT_EQ(Items(), "1 Flow 00F1 2\n");
  EXPECT_EQ(Counts(), "Frames: 3, bad: 1");
}

TEST_F(SnifferPort, SaysThatItIsClosedWhereTheErrorSaysNothing) {
  constexpr const char* kNoWord = "The communication port can not be used.";
  world.faults().Break("Port.Open", RunTimeError(kPortUnavailable));
  ExpectBusy(kNoWord);
  sniffer.Show();
  EXPECT_EQ(sniffer.lbl_Port.Caption.get(), kNoWord);
}

TEST_F(SnifferPort, DoesNotMindALossThatIsToldWhenItIsOpenAgain) {
  sniffer.Show();
  world.port().Unplug();
  sniffer.Unload();
  world.port().PlugIn();
  sniffer.Show();
  world.Settle();
  EXPECT_TRUE(world.port().PortOpen());
  HearBytes(FrameOf(kReadType, 0x01, 0, 0) + FrameOf(kReadType, 0xF1, 0, 0).substr(0, 7));
  world.Advance(5s);
  HearBytes(FrameOf(kReadType, 0xF1, 0, 0).substr(7));
  EXPECT_EQ(Items(), "1 Status 0001 \n2 Flow 00F1 \n");
  EXPECT_EQ(Counts(), "Frames: 2, bad: 0");
}

TEST_F(SnifferPort, EndsAnEventWithAnErrorSilently) {
  sniffer.Show();
  world.faults().Break("Port.Input", RunTimeError(kDeviceIo, "no"));
  HearBytes(FrameOf(kReadType, 0xF1, 0, 0));
  world.Advance(10ms);
  EXPECT_EQ(Items(), "1 Flow 00F1 \n");
  world.faults().Break("Port.Close", RunTimeError(kDeviceIo, "no"));
  HearBytes(Damaged(FrameOf(kReadType, 1, 0, 0)));
  world.Advance(10ms);
  Exchange(0xF1, 2, 0);
  EXPECT_EQ(Items(), "1 Flow 00F1 2\n");
}

TEST_F(SnifferPort, DoesNotMindErrorsOfTheLine) {
  sniffer.Show();
  for (const int event : {kCommFrame, kCommOverrun, kCommReceiveOver, kCommTransmitFull}) {
    world.port().RaiseLineError(event);
  }
  world.Settle();
  Exchange(0xF1, 2, 0);
  EXPECT_EQ(Items(), "1 Flow 00F1 2\n");
}

// --- In step with the link -----------------------------------------------------------------------

TEST_F(OpenSnifferTest, ReopensThePortBehindABadFrameAndGoesOn) {
  HearBytes(Damaged(FrameOf(kReadType, 0xF1, 0, 0)));
  EXPECT_EQ(world.port().opens(), 2);
  EXPECT_EQ(world.port().closes(), 1);
  EXPECT_EQ(world.port().RThreshold(), 16);
  EXPECT_EQ(Counts(), "Frames: 1, bad: 1");
  EXPECT_EQ(Shown(), "");
  EXPECT_EQ(Detected(), "");
  Exchange(0xF1, 1, 0);
  EXPECT_EQ(Items(), "1 Flow 00F1 1\n");
  EXPECT_EQ(Counts(), "Frames: 3, bad: 1");
  EXPECT_EQ(world.port().opens(), 2);
}

TEST_F(OpenSnifferTest, LosesWhatWaitsBehindABadFrame) {
  HearBytes(Damaged(FrameOf(kReadType, 0xF1, 0, 0)) + FrameOf(kReadType, 1, 0, 0) +
            "\r\x04"
            "0");
  EXPECT_EQ(Detected(), "");
  EXPECT_EQ(world.port().opens(), 2);
  HearBytes(FrameOf(kReadType, 0xF1, 0, 0).substr(3));  // of which the beginning was lost
  Exchange(0xF1, 1, 0);
  EXPECT_EQ(Items(), "1 Flow 00F1 1\n");
  EXPECT_EQ(Counts(), "Frames: 3, bad: 1");
}

TEST_F(OpenSnifferTest, TakesSeveralFramesThatComeAtOnce) {
  HearBytes(FrameOf(kReadType, 0xF1, 0, 0) + FrameOf(kAnswerType, 0xF1, 1, 0) +
            FrameOf(kReadType, 1, 0, 0).substr(0, 5));
  EXPECT_EQ(Items(), "1 Flow 00F1 1\n");
  EXPECT_EQ(world.port().RThreshold(), 11);
  HearBytes(FrameOf(kReadType, 1, 0, 0).substr(5));
  EXPECT_EQ(Items(), "1 Flow 00F1 1\n2 Status 0001 \n");
  EXPECT_EQ(world.port().RThreshold(), 16);
  EXPECT_EQ(world.port().opens(), 1);
}

TEST_F(OpenSnifferTest, TakesAFrameThatComesByteByByte) {
  for (const char one : FrameOf(kReadType, 0xF1, 0, 0)) HearBytes(std::string(1, one));
  EXPECT_EQ(Items(), "1 Flow 00F1 \n");
}

TEST_F(OpenSnifferTest, DropsNoiseThatComesTogetherWithAFrame) {
  HearBytes(FrameOf(kReadType, 0xF1, 0, 0) + "xyz");
  HearBytes(FrameOf(kAnswerType, 0xF1, 1, 0));
  EXPECT_EQ(Items(), "1 Flow 00F1 1\n");
  EXPECT_EQ(Counts(), "Frames: 2, bad: 0");
}

TEST_F(OpenSnifferTest, CountsBytesWithoutAnyStartAsBadFrames) {
  HearBytes(std::string(16, 'x'));
  HearBytes(std::string(16, 'y'));
  EXPECT_EQ(Counts(), "Frames: 2, bad: 2");
  EXPECT_EQ(world.port().opens(), 3);
}

// Wherever the link is torn, at most two frames are lost.
class SnifferTorn : public OpenSnifferTest, public ::testing::WithParamInterface<int> {
 protected:
  // A good stretch of the link, byte by byte as it comes.
  void HearStretch() {
    for (int i = 0; i < 20; ++i) {
      const std::string both = FrameOf(kReadType, 0xF1, 0, 0) + FrameOf(kAnswerType, 0xF1, 7, 0);
      for (const char one : both) HearBytes(std::string(1, one));
    }
  }
  void ExpectFewLost() {
    sniffer.cmd_Clear.Press();
    HearStretch();
    int lines = 0;
    for (const char one : Shown()) lines += one == '\n' ? 1 : 0;
    EXPECT_GE(lines, 38);
    EXPECT_EQ(Items(), "1 Flow 00F1 7\n");
  }
};

TEST_P(SnifferTorn, FallsIntoStepBehindHalfAFrame) {
  HearBytes(FrameOf(kReadType, 0xF1, 0, 0).substr(0, static_cast<std::size_t>(GetParam())));
  ExpectFewLost();
}

TEST_P(SnifferTorn, FallsIntoStepWhenItComesInTheMiddle) {
  HearBytes(FrameOf(kReadType, 0xF1, 0, 0).substr(static_cast<std::size_t>(GetParam())));
  ExpectFewLost();
}

TEST_P(SnifferTorn, FallsIntoStepBehindNoise) {
  HearBytes(std::string(static_cast<std::size_t>(GetParam()), '\xA5'));
  ExpectFewLost();
}

TEST_P(SnifferTorn, FallsIntoStepBehindNoiseOfStarts) {
  HearBytes(std::string(static_cast<std::size_t>(GetParam()), '\r'));
  ExpectFewLost();
}

INSTANTIATE_TEST_SUITE_P(ByEachNumberOfBytes, SnifferTorn, ::testing::Range(1, 16));

}  // namespace
}  // namespace tarnlink
