// The slave scan's walk: whom it asks what, what it makes of answers and of silence.

#include "support/byte_text.h"
#include "support/zolt_text.h"
#include "tools/scan_slaves_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

// --- The form ------------------------------------------------------------------------------------

TEST_F(ScanSlavesTest, HasARowForEachAddress) {
  EXPECT_EQ(scan.caption.Caption.get(), "Scan slaves");
  EXPECT_FALSE(scan.form.Visible);
  scan.Show();
  EXPECT_TRUE(scan.form.Visible);
  const std::string digits = "0123456789ABCDEF";
  for (int i = 0; i < 16; ++i) {
    const std::string digit(1, digits[static_cast<std::size_t>(i)]);
    EXPECT_EQ(scan.txtAddress(i).Text.get(), digit);
    EXPECT_EQ(scan.cmdControlPanel(i).Caption.get(), "details");
    EXPECT_EQ(scan.cmdControlPanel(i).ToolTipText.get(), "Control Panel Slave " + digit);
    EXPECT_EQ(Row(i), " |  |  | ");
    EXPECT_TRUE(scan.txtType(i).Locked) << "It is only looked at.";
  }
  EXPECT_EQ(scan.txtEEPROM.last(), 15);
  EXPECT_EQ(scan.lblHeading(0).Caption.get(), "Slave Address");
  EXPECT_EQ(scan.lblHeading(1).Caption.get(), "OS number");
  EXPECT_EQ(scan.lblHeading(2).Caption.get(), "Version number LuP processor");
  EXPECT_EQ(scan.lblHeading(3).Caption.get(), "Version number HuP processor");
  EXPECT_EQ(scan.lblHeading(4).Caption.get(), "Version number EEPROM");
}

TEST_F(ScanSlavesTest, BeginsWithThePortOfTheOptionsAtAddressZero) {
  plain.com_port = 3;
  plain.baudrate = 2;
  scan.Show();
  EXPECT_EQ(world.port().CommPort(), 3);
  EXPECT_EQ(world.port().Settings(), " 4800n,8,1");
  EXPECT_EQ(world.port().RThreshold(), 16);
  EXPECT_TRUE(world.port().PortOpen());
  EXPECT_EQ(scan.ScanSlavesTimer->Interval(), 2500);
  EXPECT_TRUE(scan.ScanSlavesTimer->Enabled());
  EXPECT_EQ(Asked(), "slave 0 step 0");
  EXPECT_EQ(State(), "Scanning address 0");
}

TEST_F(ScanSlavesTest, ShownTwiceGoesOnAsItWas) {
  scan.Show();
  Silence();
  world.port().TakeSent();
  scan.Show();
  EXPECT_EQ(Asked(), "nothing");
  EXPECT_EQ(scan.ScanAddress, 1);
}

TEST_F(ScanSlavesTest, BeginsAnewWhenItIsOpenedAgain) {
  scan.Show();
  AnswerAllSteps();
  int unloaded = 0;
  scan.Unloaded = [&] { ++unloaded; };
  scan.Unload();
  scan.Unload();
  EXPECT_EQ(unloaded, 1);
  EXPECT_FALSE(scan.form.Visible);
  EXPECT_FALSE(world.port().PortOpen());
  world.port().TakeSent();
  world.Advance(1h);
  EXPECT_EQ(Asked(), "nothing");
  scan.Show();
  EXPECT_EQ(Asked(), "slave 0 step 0");
  EXPECT_EQ(Row(0), " |  |  | ");
  EXPECT_EQ(InWork(), "");
  Silence();
  EXPECT_EQ(Asked(), "slave 1 step 0") << "Nobody is known any more.";
}

// --- Frames --------------------------------------------------------------------------------------

TEST_F(ScanSlavesTest, SendsTheseFrames) {
  const std::vector<std::pair<int, std::vector<std::string>>> frames = {
      {0x0, {"0003D0000279E", "014D9000010AA", "00098000086FE", "0050400003C90", "000A40000450B"}},
      {0x9, {"9003D0000E542", "914D90000D276", "9009800004422", "905040000FE4C", "900A4000087D7"}},
      {0xA, {"A003D00006766", "A14D900005052", "A00980000C606", "A050400007C68", "A00A4000005F3"}},
      {0xF, {"F003D0000D6CD", "F14D90000E1F9", "F0098000077AD", "F05040000CDC3", "F00A40000B458"}},
  };
  scan.Show();
  for (const auto& [address, digits] : frames) {
    while (scan.ScanAddress < address) Silence();
    for (std::size_t step = 0; step < digits.size(); ++step) {
      ASSERT_EQ(scan.ScanStep, static_cast<int>(step));
      EXPECT_EQ(Readable(world.port().TakeSent().back()),
                Readable(Frame(step < 2 ? 1 : 2, digits[step])));
      Answer(kScanRead);
    }
  }
}

TEST_F(ScanSlavesTest, ReopensThePortForEveryRequest) {
  scan.Show();
  Answer(kScanRead);
  Silence();
  Silence();
  Silence();
  EXPECT_EQ(world.port().frames().size(), 5U);
  EXPECT_EQ(world.port().opens(), 5);
  EXPECT_EQ(world.port().closes(), 4);
}

// --- Answers -------------------------------------------------------------------------------------

TEST_F(ScanSlavesTest, ASlaveThatAnswersIsAskedFiveTimes) {
  scan.Show();
  Answer(kScanRead, 5, 2);
  EXPECT_EQ(Row(0), "R1865CM |  |  | ");
  Answer(kScanRead, 0x07, 0xF8);
  EXPECT_EQ(Row(0), "R1865CM2040 |  |  | ");
  Answer(kScanRead, 3, 7);
  EXPECT_EQ(Row(0), "R1865CM2040 | 3.07 |  | ");
  Answer(kScanRead, 4, 12);
  EXPECT_EQ(Row(0), "R1865CM2040 | 3.07 | 4.12 | ");
  Answer(kScanRead, 2, 114);
  EXPECT_EQ(Row(0), "R1865CM2040 | 3.07 | 4.12 | 2.14") << "Only two digits behind the point.";
  world.port().TakeSent();
  EXPECT_EQ(scan.ScanAddress, 1);
  EXPECT_EQ(scan.ScanStep, 0);
  EXPECT_TRUE(scan.SlavePresent[0]);
  EXPECT_EQ(State(), "Scanning address 1");
}

TEST_F(ScanSlavesTest, ShowsTheNamesAndNumbersOfAllKinds) {
  scan.Show();
  Answer(kScanRead, 99, 3);
  Answer(kScanRead, 0, 0);
  Answer(kScanRead, 0, 0);
  Answer(kScanRead, 255, 255);
  Answer(kScanRead, 10, 10);
  EXPECT_EQ(Row(0), "R1866modem0 | 0.00 | 255.55 | 10.10");
  Answer(kScanRead, 200, 200);
  Answer(kScanRead, 255, 255);
  EXPECT_EQ(Row(1), "unknown65535 |  |  | ");
}

TEST_F(ScanSlavesTest, AnOldRowStaysUntilItIsReadAnew) {
  scan.Show();
  AnswerAllSteps();
  Pass(15);
  ASSERT_EQ(scan.ScanAddress, 0);
  EXPECT_EQ(Row(0), "R1865CM2040 | 3.07 | 4.12 | 2.14");
  Answer(kScanRead, 1, 1);
  EXPECT_EQ(Row(0), "R1862A2040 | 3.07 | 4.12 | 2.14") << "The number is that of the last pass.";
}

TEST_F(ScanSlavesTest, ASlaveThatDoesNotKnowTheNumberShowsItsNameOnly) {
  scan.Show();
  AnswerAllSteps();
  Pass(15);
  Answer(kScanRead, 5, 2);
  Answer(kScanUnknown);
  EXPECT_EQ(Row(0), "R1865CM | 3.07 | 4.12 | 2.14");
  EXPECT_TRUE(scan.SlavePresent[0]);
  EXPECT_EQ(scan.ScanStep, 2);
}

TEST_F(ScanSlavesTest, WhatASlaveDoesNotKnowIsEmptied) {
  scan.Show();
  AnswerAllSteps();
  Pass(15);
  Answer(kScanUnknown);
  EXPECT_EQ(Row(0), "2040 | 3.07 | 4.12 | 2.14");
  Answer(kScanUnknown);
  EXPECT_EQ(Row(0), " | 3.07 | 4.12 | 2.14");
  Answer(kScanUnknown);
  EXPECT_EQ(Row(0), " |  | 4.12 | 2.14");
  Answer(kScanUnknown);
  EXPECT_EQ(Row(0), " |  |  | 2.14");
  Answer(kScanUnknown);
  EXPECT_EQ(Row(0), " |  |  | ");
  EXPECT_TRUE(scan.SlavePresent[0]);
  EXPECT_EQ(scan.ScanAddress, 1);
}

TEST_F(ScanSlavesTest, ACorruptFirstAnswerIsAnError) {
  scan.Show();
  AnswerAllSteps();
  Pass(15);
  world.port().TakeSent();
  AnswerWithBadCheck();
  EXPECT_EQ(Row(0), "err |  |  | ");
  EXPECT_FALSE(scan.SlavePresent[0]);
  EXPECT_EQ(Asked(), "slave 1 step 0");
}

TEST_F(ScanSlavesTest, ALaterCorruptAnswerEmptiesTheVersionsOnly) {
  for (int step = 1; step < 5; ++step) {
    scan.Show();
    AnswerAllSteps();
    Pass(15);
    for (int i = 0; i < step; ++i) Answer(kScanUnknown);
    const std::string type = scan.txtType(0).Text;
    world.port().TakeSent();
    AnswerWithBadCheck();
    EXPECT_EQ(Row(0), type + " |  |  | ") << step;
    EXPECT_FALSE(scan.SlavePresent[0]);
    EXPECT_EQ(Asked(), "slave 1 step 0");
    scan.Unload();
  }
}

TEST_F(ScanSlavesTest, AnyOtherAnswerIsThatOfNobodyAndKeepsTheRow) {
  for (const std::uint8_t kind : {kScanCorrupted, kScanOutside, kScanWritten}) {
    for (int step = 0; step < 5; ++step) {
      scan.Show();
      AnswerAllSteps();
      Pass(15);
      for (int i = 0; i < step; ++i) Answer(kScanUnknown);
      const std::string row = Row(0);
      world.port().TakeSent();
      Answer(kind, 9, 9);
      EXPECT_EQ(Row(0), row);
      EXPECT_FALSE(scan.SlavePresent[0]) << int{kind} << " in step " << step;
      EXPECT_EQ(Asked(), "slave 1 step 0");
      scan.Unload();
    }
  }
}

TEST_F(ScanSlavesTest, AnAnswerInPiecesIsOne) {
  scan.Show();
  const std::string frame = AnswerFrame(kScanRead, 5, 2);
  for (const char byte : frame) {
    EXPECT_EQ(Row(0), " |  |  | ");
    Receive(std::string(1, byte));
    world.Advance(100ms);
  }
  EXPECT_EQ(Row(0), "R1865CM |  |  | ");
}

TEST_F(ScanSlavesTest, AResponseThatIsNoFrameIsACorruptOne) {
  scan.Show();
  for (const std::string& raw : {std::string(), std::string("\r"), std::string(16, '\0')}) {
    scan.SlavePresent[0] = true;
    scan.txtType(0).Text = "";
    scan.ScanProcessResponse(raw);
    EXPECT_EQ(Row(0), "err |  |  | ");
    EXPECT_FALSE(scan.SlavePresent[0]);
  }
}

// --- Silence -------------------------------------------------------------------------------------

TEST_F(ScanSlavesTest, ASilentAddressCostsTwoAndAHalfSeconds) {
  scan.Show();
  world.port().TakeSent();
  world.Advance(2499ms);
  EXPECT_EQ(Asked(), "nothing");
  world.Advance(1ms);
  EXPECT_EQ(Asked(), "slave 1 step 0");
  EXPECT_EQ(Row(0), "- |  |  | ");
}

TEST_F(ScanSlavesTest, BehindTheLastAddressComesTheFirst) {
  scan.Show();
  Pass(15);
  world.port().TakeSent();
  EXPECT_EQ(scan.ScanAddress, 15);
  Silence();
  EXPECT_EQ(Asked(), "slave 0 step 0");
  world.Advance(40s);
  EXPECT_EQ(scan.ScanAddress, 0);
  EXPECT_EQ(Row(15), "- |  |  | ");
}

TEST_F(ScanSlavesTest, EachAnswerBeginsTheTimeAnew) {
  scan.Show();
  world.Advance(2400ms);
  Answer(kScanRead);
  world.Advance(2400ms);
  EXPECT_EQ(scan.ScanRetries, 0);
  world.Advance(100ms);
  EXPECT_EQ(scan.ScanRetries, 1);
}

TEST_F(ScanSlavesTest, ASlaveThatStopsAnsweringGetsOneRetry) {
  scan.Show();
  Answer(kScanRead, 5, 2);
  Answer(kScanRead, 0x07, 0xF8);
  Answer(kScanRead, 3, 7);
  world.port().TakeSent();
  Silence();
  EXPECT_EQ(Asked(), "slave 0 step 3");
  EXPECT_EQ(Row(0), "R1865CM2040 | 3.07 |  | ");
  EXPECT_EQ(scan.ScanRetries, 1);
  Silence();
  EXPECT_EQ(Asked(), "slave 1 step 0");
  EXPECT_EQ(Row(0), "- |  |  | ");
  EXPECT_FALSE(scan.SlavePresent[0]);
  EXPECT_EQ(scan.ScanRetries, 0);
}

TEST_F(ScanSlavesTest, ARetryThatIsAnsweredGoesOn) {
  scan.Show();
  Answer(kScanRead, 5, 2);
  Silence();
  world.port().TakeSent();
  Answer(kScanRead, 0x07, 0xF8);
  EXPECT_EQ(Row(0), "R1865CM2040 |  |  | ");
  EXPECT_EQ(Asked(), "slave 0 step 2");
  Silence();
  EXPECT_EQ(Asked(), "slave 0 step 2") << "Each request has its own retry.";
}

TEST_F(ScanSlavesTest, AKnownSlaveHasItsRetryAtTheBeginningOfAPassToo) {
  scan.Show();
  AnswerAllSteps();
  Pass(15);
  world.port().TakeSent();
  Silence();
  EXPECT_EQ(Asked(), "slave 0 step 0");
  Silence();
  EXPECT_EQ(Asked(), "slave 1 step 0");
  EXPECT_EQ(Row(0), "- |  |  | ");
  Pass(15);
  world.port().TakeSent();
  Silence();
  EXPECT_EQ(Asked(), "slave 1 step 0") << "It is unknown now.";
}

// --- Colours -------------------------------------------------------------------------------------

TEST_F(ScanSlavesTest, TheFieldInWorkIsYellow) {
  scan.Show();
  EXPECT_EQ(InWork(), "");
  for (const char* name : {"txtType(0)", "txtLuP(0)", "txtHuP(0)", "txtEEPROM(0)", "txtType(1)"}) {
    Answer(kScanRead);
    EXPECT_EQ(InWork(), name);
  }
  Silence();
  EXPECT_EQ(InWork(), "txtType(2)");
  AnswerWithBadCheck();
  EXPECT_EQ(InWork(), "txtType(3)");
  EXPECT_EQ(WithColour(kWhite),
            "txtType(0) txtLuP(0) txtHuP(0) txtEEPROM(0) txtType(1) txtLuP(1) txtHuP(1) "
            "txtEEPROM(1) txtType(2) txtLuP(2) txtHuP(2) txtEEPROM(2)");
  EXPECT_EQ(frm_ScanSlaves::kFieldInWork, 0xFFFF);
}

// --- The table as text ---------------------------------------------------------------------------

TEST_F(ScanSlavesTest, ItsTableCanBeCopied) {
  scan.Show();
  AnswerAllSteps();
  Silence();
  AnswerWithBadCheck();
  std::string copied;
  scan.CopyText = [&](const std::string& text) { copied = text; };
  scan.cmdCopy.Press();
  std::string expected =
      "Slave Address\tOS number\tVersion number LuP processor\tVersion number HuP processor\t"
      "Version number EEPROM\n"
      "0\tR1865CM2040\t3.07\t4.12\t2.14\n"
      "1\t-\t\t\t\n"
      "2\terr\t\t\t\n";
  for (const char digit : std::string("3456789ABCDEF")) {
    expected += digit;
    expected += "\t\t\t\t\n";
  }
  EXPECT_EQ(copied, expected);
  scan.CopyText = nullptr;
  scan.cmdCopy.Press();
}

}  // namespace
}  // namespace tarnlink
