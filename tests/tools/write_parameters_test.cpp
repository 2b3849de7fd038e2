// The parameter writer: its file, its frames, its list and its reports.

#include "tools/write_parameters_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr const char* kOne = "5 &H0123 &H2A\r\n";
constexpr const char* kTwo = "5 &H0123 &H2A\r\n5 &H0124 &H1234\r\n";
constexpr const char* kSendOne = "Sending  Class 5   ID  &H0123   Value   &H002A.. ";
constexpr const char* kRetryOne = "Retry  Class 5   ID  &H0123   Value   &H002A.. ";
constexpr const char* kSendTwo = "Sending  Class 5   ID  &H0124   Value   &H1234.. ";

// --- The file ------------------------------------------------------------------------------------

TEST(ShortnPathTest, ShowsFirstFolderAndFile) {
  EXPECT_EQ(ShortnPath("C:\\a\\b\\c.par"), "C:\\...\\c.par");
  EXPECT_EQ(ShortnPath("/home/user/c.par"), "/.../c.par");
  EXPECT_EQ(ShortnPath("C:\\a\\b.par"), "C:\\a\\b.par") << "Under 12 characters.";
  EXPECT_EQ(ShortnPath("C:\\boiler12.par"), "C:\\boiler12.par") << "One separator.";
  EXPECT_EQ(ShortnPath("boiler-twelve.par"), "boiler-twelve.par");
  EXPECT_EQ(ShortnPath(""), "");
}

TEST_F(WriteParametersTest, OpensEmptyWithoutAFile) {
  tool.Show();
  EXPECT_EQ(tool.caption.Caption.get(), "Write Parameters");
  EXPECT_EQ(tool.txtSlave.Text.get(), "0");
  EXPECT_EQ(List(), "");
  EXPECT_FALSE(tool.cmdWriteZOLT.Enabled);
  EXPECT_FALSE(world.port().PortOpen());
}

TEST_F(WriteParametersTest, ShowsTheFileOfTheProject) {
  Open("* Boiler\r\n5 291 42\r\n* more\r\n7 &HF000 &HFFFF\r\n");
  EXPECT_EQ(tool.txtFilename.Text.get(), "/.../boiler.par");
  EXPECT_EQ(tool.txtFilename.ToolTipText.get(), kFile);
  EXPECT_EQ(List(),
            "* Boiler|* more|Class 5   ID  &H0123   Value   &H002A|"
            "Class 7   ID  &HF000   Value   &HFFFF|");
  EXPECT_EQ(tool.StatusBar1.Text.get(), "2 parameters");
  EXPECT_TRUE(tool.cmdWriteZOLT.Enabled);
}

// The list is copied and saved, too, and a zero byte would end it for whoever reads it.
TEST_F(WriteParametersTest, AControlCharacterOfACommentIsABlank) {
  Open(std::string("* a\0b\033c\td\r\n5 1 2\r\n", 18));
  EXPECT_EQ(List(), "* a b c\td|Class 5   ID  &H0001   Value   &H0002|");
}

TEST_F(WriteParametersTest, OnlyCommentsAreNothingToWrite) {
  for (const char* text : {"* a\r\n* b\r\n", ""}) {
    Open(text);
    EXPECT_EQ(tool.StatusBar1.Text.get(), "0 parameters");
    EXPECT_FALSE(tool.cmdWriteZOLT.Enabled);
    tool.Unload();
  }
}

TEST_F(WriteParametersTest, ABadLineIsToldAndNothingIsLeft) {
  world.dialogs().ExpectMessageBox({.text = "Error in file /.../boiler.par line 3",
                                    .title = "Write Parameters",
                                    .icon = Icon::kCritical,
                                    .detail = "The class \"8\" is not 0 to 7."});
  Open("* a\r\n5 1 2\r\n8 1 1\r\n5 1 3\r\n");
  EXPECT_EQ(List(), "");
  EXPECT_EQ(tool.ParameterPath, "");
  EXPECT_EQ(tool.StatusBar1.Text.get(), "2 parameters");
  EXPECT_FALSE(tool.cmdWriteZOLT.Enabled);
}

TEST_F(WriteParametersTest, ABadFileAfterAGoodOneCanNotBeWritten) {
  Open(kOne);
  world.disk().Put("/jobs/bad.par", "x");
  world.dialogs().ExpectOpenFile("Open").Give("/jobs/bad.par");
  world.dialogs().ExpectMessageBox("Error in file /.../bad.par line 1", "Write Parameters");
  tool.cmdBrowse.Press();
  EXPECT_FALSE(tool.cmdWriteZOLT.Enabled);
  EXPECT_TRUE(tool.items().empty());
  tool.cmdWriteZOLT.Press();
  EXPECT_EQ(Sent(), "nothing");
}

TEST_F(WriteParametersTest, BrowseTakesAnotherFileAndACancelChangesNothing) {
  Open(kOne);
  world.dialogs().ExpectOpenFile("Open").Cancel();
  tool.cmdBrowse.Press();
  EXPECT_EQ(world.dialogs().last_file_request().filter, "Parameter Files (*.par)|*.par");
  EXPECT_EQ(tool.ParameterPath, kFile);
  EXPECT_TRUE(tool.cmdWriteZOLT.Enabled);
  world.disk().Put("/other/b.par", kTwo);
  world.dialogs().ExpectOpenFile("Open").Give("/other/b.par");
  tool.cmdBrowse.Press();
  EXPECT_EQ(tool.ParameterPath, "/other/b.par");
  EXPECT_EQ(tool.items().size(), 2U);
  EXPECT_EQ(kept_folder, "/other");
}

TEST_F(WriteParametersTest, AFileThatIsGoneIsTold) {
  file = "/jobs/gone.par";
  world.disk().MakeFolder("/jobs");
  world.dialogs().ExpectMessageBox(
      "Internal System Error # 53 occured, please contact distributor.\r\n"
      "During reading par file /jobs/gone.par",
      "Internal System Error");
  tool.Show();
  EXPECT_EQ(tool.StatusBar1.Text.get(), "0 parameters");
  EXPECT_FALSE(tool.cmdWriteZOLT.Enabled);
}

TEST_F(WriteParametersTest, TakesTenThousandLines) {
  std::string text;
  for (int i = 0; i < 10'000; ++i) text += "5 " + std::to_string(i) + " 1\r\n";
  Open(text);
  EXPECT_EQ(tool.StatusBar1.Text.get(), "10000 parameters");
}

// --- Frames and list -----------------------------------------------------------------------------

TEST_F(WriteParametersTest, SendsWordsOfIdsAndBytesOfAddresses) {
  Start("5 &H0123 &H1234\r\n7 &HF312 300\r\n0 1 2\r\n");
  EXPECT_EQ(world.port().Settings(), " 9600n,8,1");
  EXPECT_EQ(world.port().RThreshold(), 16);
  EXPECT_EQ(Sent(), "85 0 0123 1234");
  Answer(kAckWritten + 5, 0x123, 0x1234);
  EXPECT_EQ(Sent(), "87 0 0F01 122C");
  Answer(kAckWritten + 7, 0x0F01, 0x122C);
  EXPECT_EQ(Sent(), "80 0 0001 0002");
  ExpectAllSet();
  Answer(kAckWritten, 1, 2);
  EXPECT_FALSE(world.port().PortOpen());
}

TEST_F(WriteParametersTest, TheFrameIsThatOfTheProtocol) {
  Start("1 1 0\r\n");
  EXPECT_EQ(world.port().TakeSent().back(), BuildZoltMessage(0x81, "0", 1, 0, 0));
}

TEST_F(WriteParametersTest, OnlyTheFirstCharacterOfTheSlaveCounts) {
  Open(kOne);
  tool.txtSlave.Text = "12";
  tool.chkVerify.Value = false;
  tool.cmdWriteZOLT.Press();
  EXPECT_EQ(Sent(), "85 1 0123 002A");
  ExpectAllSet();
  Answer(kAckWritten + 5, 0x123, 0x2A, "1");
}

TEST_F(WriteParametersTest, WithoutACharacterTheSlaveIsZero) {
  Open(kOne);
  tool.txtSlave.Text = "";
  tool.chkVerify.Value = false;
  tool.cmdWriteZOLT.Press();
  EXPECT_EQ(Sent(), "85 0 0123 002A");
  ExpectAllSet();
  Answer(kAckWritten + 5, 0x123);
}

TEST_F(WriteParametersTest, TheListTellsWhatHappensToEachItem) {
  Start(kTwo, true);
  EXPECT_EQ(tool.StatusBar1.Text.get(), "Writing to ZOLT");
  EXPECT_EQ(tool.lblProgress.Caption.get(), "Writing parameter 1 of 2, 1 left");
  EXPECT_TRUE(tool.ProgressBar1.Visible);
  EXPECT_EQ(tool.ProgressBar1.Max.get(), 2);
  EXPECT_EQ(List(), std::string("Writing parameters|") + kSendOne);
  Answer(kAckWritten + 5, 0x123);
  EXPECT_EQ(tool.ProgressBar1.Value.get(), 1);
  Answer(kAckWritten + 5, 0x124);
  EXPECT_EQ(tool.StatusBar1.Text.get(), "Verifing parameters");
  EXPECT_EQ(Sent(), "85 0 0123 002A; 85 0 0124 1234; 05 0 0123 0000");
  Answer(kAckRead + 5, 0x123, 0x2A);
  ExpectVerified();
  Answer(kAckRead + 5, 0x124, 0x1234);
  EXPECT_EQ(List(), std::string("Writing parameters|") + kSendOne + "OK|" + kSendTwo +
                        "OK|Verifing parameters|" + kSendOne + "OK|" + kSendTwo + "OK||");
  EXPECT_EQ(tool.VerifiedCount, 2);
}

TEST_F(WriteParametersTest, WhileItRunsNothingCanBeChanged) {
  Start(kOne);
  for (Control* control :
       std::vector<Control*>{&tool.cmdWriteZOLT, &tool.cmdBrowse, &tool.txtFilename, &tool.txtSlave,
                             &tool.chkVerify}) {
    EXPECT_FALSE(control->Enabled) << control->name();
  }
  ExpectAllSet();
  Answer(kAckWritten + 5, 0x123);
  for (Control* control :
       std::vector<Control*>{&tool.cmdWriteZOLT, &tool.cmdBrowse, &tool.txtFilename, &tool.txtSlave,
                             &tool.chkVerify}) {
    EXPECT_TRUE(control->Enabled) << control->name();
  }
  EXPECT_FALSE(tool.ProgressBar1.Visible);
  EXPECT_EQ(tool.StatusBar1.Text.get(), "");
  EXPECT_EQ(tool.lblProgress.Caption.get(), "1 of 1 parameters were acknowledged.");
  EXPECT_FALSE(tool.CommWatch->Enabled());
}

TEST_F(WriteParametersTest, OpensThePortAnewForEachMessage) {
  Start(kTwo);
  EXPECT_EQ(world.port().opens(), 1);
  Answer(kAckWritten + 5, 0x123);
  EXPECT_EQ(world.port().opens(), 2);
}

// --- Refusals and reports ------------------------------------------------------------------------

TEST_F(WriteParametersTest, ARefusedItemIsGivenUpAtOnce) {
  Start(kTwo);
  Answer(kAckUnknown + 5, 0x123, 0x2A);
  EXPECT_EQ(Sent(), "85 0 0123 002A; 85 0 0124 1234");
  ExpectReport("Write settings", "2 parameters NOT send.", Icon::kCritical);
  Answer(kAckOutside + 5, 0x124, 0x1234);
  EXPECT_EQ(List(), std::string("Writing parameters|") + kSendOne +
                        "unknown ID|Continue with next parameter|" + kSendTwo +
                        "out range|Continue with next parameter||");
}

TEST_F(WriteParametersTest, ThreeTimeOutsGiveUp) {
  Start(kOne);
  Silence();
  Silence();
  EXPECT_EQ(tool.RetryCount, 2);
  ExpectReport("Write settings", "1 parameters NOT send.", Icon::kCritical);
  Silence();
  EXPECT_EQ(Sent(), "85 0 0123 002A; 85 0 0123 002A; 85 0 0123 002A");
  EXPECT_EQ(List(), std::string("Writing parameters|") + kSendOne + "TimeOut|" + kRetryOne +
                        "TimeOut|" + kRetryOne + "TimeOut|Continue with next parameter||");
}

TEST_F(WriteParametersTest, AGivenUpItemIsReadBackAndCountsOnceMore) {
  Start(kTwo, true);
  Answer(kAckUnknown + 5, 0x123);
  Answer(kAckWritten + 5, 0x124);
  Sent();
  Answer(kAckUnknown + 5, 0x123);
  ExpectReport("Write & verify settings", "2 parameters NOT send. -1 parameters NOT ok.");
  Answer(kAckRead + 5, 0x124, 0x1234);
}

TEST_F(WriteParametersTest, AnotherValueIsAFaultAndNotTriedAgain) {
  Start(kOne, true);
  Answer(kAckWritten + 5, 0x123);
  ExpectReport("Write & verify settings", "All parameters writen. 1 parameters NOT ok.");
  Answer(kAckRead + 5, 0x123, 0x2B);
  EXPECT_EQ(List(), std::string("Writing parameters|") + kSendOne + "OK|Verifing parameters|" +
                        kSendOne + "FAULT||");
}

TEST_F(WriteParametersTest, AnAddressThatNoSlaveHasIsNotAsked) {
  for (const char* slave : {"w", " ", "-1", "\xC3\xA9"}) {
    Open(kOne);
    tool.txtSlave.Text = slave;
    world.dialogs().ExpectMessageBox("A slave has an address from 0 to F.", "Write Parameters");
    tool.cmdWriteZOLT.Press();
    EXPECT_FALSE(tool.IsRunning());
    EXPECT_EQ(Sent(), "nothing");
  }
  tool.txtSlave.Text = "a";
  tool.cmdWriteZOLT.Press();
  EXPECT_EQ(Sent(), "85 A 0123 002A");
}

TEST_F(WriteParametersTest, WhatIsLeftSaysHowMuchIsProved) {
  Start("5 1 2\r\n5 2 3\r\n", true);
  Answer(kAckWritten + 5, 1, 2);
  Answer(kAckOutside + 5, 2);
  Answer(kAckRead + 5, 1, 2);
  ExpectReport("Write & verify settings", "1 parameters NOT send. 0 parameters NOT ok.");
  Answer(kAckRead + 5, 2, 9);
  EXPECT_EQ(tool.lblProgress.Caption.get(), "1 of 2 parameters were acknowledged, 1 verified.");
}

TEST_F(WriteParametersTest, AByteOf300IsAFault) {
  Start("7 &HF312 300\r\n", true);
  Answer(kAckWritten + 7, 0x0F01, 0x122C);
  Sent();
  ExpectReport("Write & verify settings", "All parameters writen. 1 parameters NOT ok.");
  Answer(kAckRead + 7, 0xFFAB, 0x012C);
  Quiet();
}

TEST_F(WriteParametersTest, AReadByteIsTheLowOne) {
  Start("7 &HF312 44\r\n", true);
  Answer(kAckWritten + 7, 0x0F01, 0x122C);
  EXPECT_EQ(Sent(), "87 0 0F01 122C; 07 0 FFAB F312");
  ExpectVerified();
  Answer(kAckRead + 7, 0xFFAB, 0x992C);
  Quiet();
}

TEST_F(WriteParametersTest, APageWithoutAnAliasIsNotSent) {
  Start("7 &H0000 1\r\n7 &HF000 1\r\n7 &HD000 1\r\n" + std::string(kOne));
  EXPECT_EQ(Sent(), "85 0 0123 002A");
  EXPECT_EQ(tool.NotSentCount, 3);
  ExpectReport("Write settings", "3 parameters NOT send.", Icon::kCritical);
  Answer(kAckWritten + 5, 0x123);
  EXPECT_NE(List().find("Value   &H0001.. protected area|Continue with next parameter|"),
            std::string::npos);
}

TEST_F(WriteParametersTest, ManyThatCanNotBeSentAreGivenUpInSteps) {
  std::string text;
  for (int i = 0; i < 1'000; ++i) text += "7 4096 1\r\n";
  Start(text);
  EXPECT_TRUE(tool.IsRunning());
  EXPECT_LE(tool.ParameterIndex, 50);
  ExpectReport("Write settings", "1000 parameters NOT send.", Icon::kCritical);
  world.Advance(1s);
  EXPECT_FALSE(tool.IsRunning());
  EXPECT_EQ(List().find("TimeOut"), std::string::npos);
}

TEST_F(WriteParametersTest, LeftBetweenTwoStepsItStays) {
  std::string text;
  for (int i = 0; i < 1'000; ++i) text += "7 4096 1\r\n";
  Start(text + kOne);
  world.dialogs()
      .ExpectMessageBox(
          "Parameters are still being sent. Those sent so far stay in the controller."
          "\r\nDo you want to stop?",
          "Write Parameters")
      .Press(tarnlink::Answer::kYes);
  tool.Unload();
  world.Advance(1min);
  EXPECT_EQ(Sent(), "nothing");
}

TEST_F(WriteParametersTest, TheListCanBeCopiedAndSaved) {
  Open(kOne);
  std::string copied;
  tool.CopyText = [&](const std::string& text) { copied = text; };
  tool.cmdCopy.Press();
  EXPECT_EQ(copied, "Class 5   ID  &H0123   Value   &H002A\r\n");
  world.dialogs().ExpectSaveFile("Save list").Give("/jobs/list.txt");
  tool.cmdSaveList.Press();
  EXPECT_EQ(world.disk().Get("/jobs/list.txt"), copied);
  EXPECT_EQ(world.dialogs().last_file_request().folder, "/jobs") << "Beside the file.";
  world.disk().SetFreeSpace(0);
  world.dialogs().ExpectSaveFile("Save list").Give("/jobs/list.txt");
  world.dialogs().ExpectMessageBox("The list can not be saved.", "Write Parameters");
  tool.cmdSaveList.Press();
}

}  // namespace
}  // namespace tarnlink
