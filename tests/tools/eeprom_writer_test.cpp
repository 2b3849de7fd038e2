// The EEPROM writer with a slave that the test plays, byte by byte.

#include "files/eeprom_output.h"
#include "tools/eeprom_fixture.h"

namespace tarnlink {
namespace {

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
  const std::string tlk = "/home/user/work/image.tlk";
  world.disk().Put(tlk, "old");
  world.disk().Forbid(tlk);
  ExpectError(Forbidden(tlk, "written"));
  tool.cmd_TarnlinkFile.Press();
  EXPECT_EQ(world.dialogs().TakeShown().size(), 1U);
  EXPECT_EQ(world.disk().Get(tlk), "old");
  EXPECT_FALSE(world.disk().Exists("/home/user/work/image.bin"));
  EXPECT_TRUE(tool.cmd_TarnlinkFile.Enabled);
  // The source itself: nothing is begun with it.
  world.disk().Forbid(kDefPath);
  for (CommandButton* button : {&tool.cmd_TarnlinkFile, &tool.cmd_CalcFileChecksum,
                                &tool.cmd_WriteEEPROM, &tool.cmd_VerifyEEPROM}) {
    ExpectError(Forbidden(kDefPath, "read"));
    button->Press();
    EXPECT_EQ(world.dialogs().TakeShown().size(), 1U) << button->name();
  }
  EXPECT_EQ(world.port().opens(), 0);
  EXPECT_EQ(tool.txt_FileChecksum.Text.get(), "");
}

TEST_F(EepromOutputFiles, AreWholeOrNotThereWhenTheDiskIsFull) {
  const std::string tlk = "/home/user/work/image.tlk";
  const std::string bin = "/home/user/work/image.bin";
  Choose(Source(1));
  world.disk().Put(tlk, "old");
  world.disk().SetFreeSpace(20);
  ExpectError("\"" + tlk + "\" could not be written: the disk is full.");
  tool.cmd_TarnlinkFile.Press();
  EXPECT_EQ(world.dialogs().TakeShown().size(), 1U);
  EXPECT_EQ(world.disk().Get(tlk), "old");
  EXPECT_FALSE(world.disk().Exists(bin));
  // Room for the first one only.
  const std::string text = TlkText(ReadEepromSource(Source(1)));
  world.disk().SetFreeSpace(text.size() + 15);
  world.dialogs().ExpectMessageBox(
      {.text = "\"" + bin + "\" could not be written: the disk is full.",
       .title = "Error",
       .icon = Icon::kCritical,
       .detail = "\"" + tlk + "\" is made."});
  tool.cmd_TarnlinkFile.Press();
  EXPECT_EQ(world.dialogs().TakeShown().size(), 1U);
  EXPECT_EQ(world.disk().Get(tlk), text);
  EXPECT_FALSE(world.disk().Exists(bin));
}

TEST_F(EepromOutputFiles, NeedASourceThatIsChosen) {
  EXPECT_EQ(tool.txt_eepromsourcefile.Text.get(), "No file specified");
  tool.cmd_TarnlinkFile.Press();
  tool.cmd_CalcFileChecksum.Press();
  tool.WriteEEPROM();
  tool.VerifyEEPROM();
  for (const CommandButton* button : {&tool.cmd_TarnlinkFile, &tool.cmd_CalcFileChecksum,
                                      &tool.cmd_WriteEEPROM, &tool.cmd_VerifyEEPROM}) {
    EXPECT_FALSE(button->Enabled) << button->name();
  }
  Choose(Source(1));
  EXPECT_EQ(world.dialogs().last_file_request().file_name, "*.def");
  EXPECT_TRUE(tool.FileOpen);
  world.dialogs().ExpectOpenFile().Cancel();
  tool.cmd_Browse.Press();
  EXPECT_FALSE(tool.FileOpen);
  EXPECT_EQ(tool.txt_eepromsourcefile.Text.get(), "No file specified");
  for (const char* as_it_was : {"*.def", "/home/user/work/*.def"}) {
    Choose(Source(1));
    world.dialogs().ExpectOpenFile().Give(as_it_was);
    tool.cmd_Browse.Press();
    EXPECT_FALSE(tool.FileOpen);
    EXPECT_EQ(tool.txt_eepromsourcefile.Text.get(), "No file specified");
  }
  EXPECT_FALSE(world.port().PortOpen());
}

TEST_F(EepromOutputFiles, AreLookedForWhereTheLastWas) {
  Choose(Source(1));
  EXPECT_EQ(world.dialogs().last_file_request().folder, world.disk().DocumentsFolder());
  world.dialogs().ExpectOpenFile().Cancel();
  tool.cmd_Browse.Press();
  EXPECT_EQ(world.dialogs().last_file_request().folder, "/home/user/work");
}

TEST_F(EepromOutputFiles, ShowWhatTheirSourceHolds) {
  Choose(Source(3));
  EXPECT_EQ(tool.lblSource.Caption.get(), "48 bytes, 0X8000 to 0X802F");
  ASSERT_EQ(tool.picMap.Cells().size(), 48U);
  EXPECT_EQ(tool.picMap.Cells()[1].Text, "05 cell 1");
  EXPECT_EQ(tool.picMap.Cells()[1].Address, "0X8001");
  EXPECT_EQ(tool.txt_eepromsourcefile.ToolTipText.get(), kDefPath);
  Choose("START\r\n01,2,0X8000,first\r\n");
  EXPECT_EQ(tool.lblSource.Caption.get(),
            "Value Error in EEPROM source file on line : 0X8000 first");
  EXPECT_TRUE(tool.picMap.Cells().empty());
  Choose("nothing");
  EXPECT_EQ(tool.lblSource.Caption.get(),
            "The EEPROM source file holds no block behind a line \"START\".");
  Choose(Source(1));
  world.dialogs().ExpectOpenFile().Cancel();
  tool.cmd_Browse.Press();
  EXPECT_EQ(tool.lblSource.Caption.get(), "");
  EXPECT_TRUE(tool.picMap.Cells().empty());
}

TEST_F(EepromOutputFiles, HaveAChecksumOfTheirSource) {
  Choose("AB\r\nC\n");
  tool.cmd_CalcFileChecksum.Press();
  EXPECT_EQ(tool.txt_FileChecksum.Text.get(), "&HC6");
}

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
  EXPECT_EQ(world.port().opened_with().speed, 9600);
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

TEST_F(EepromWriting, HasAnAliasOfItsOwnForPage81) {
  Start(0x8100);
  EXPECT_EQ(TakeFrames(), std::vector<std::string>{Readable(zolt_frame::FinishFrame("\x87"
                                                                                    "0FF3D0000"))});
  Say(kDone, "FFFE", "0000");
  EXPECT_EQ(tool.LastConfirmed, "");
  world.Advance(500ms);
  Say(kDone, "FF3D", "0000");
  EXPECT_EQ(tool.LastConfirmed, "0X8100");
}

// A frame of twelve bytes, which no slave answers.
TEST_F(EepromWriting, HasNoAliasForOtherPages) {
  question_detail =
      "All that these addresses hold now is lost. Only pages 80 and 81 can be written: the run "
      "will get no further than 0X9000.";
  Start(0x9000);
  EXPECT_EQ(TakeFrames(), std::vector<std::string>{Readable(zolt_frame::FinishFrame("\x87"
                                                                                    "00000"))});
  Say(kDone, "0000", "0000");
  EXPECT_EQ(tool.LastConfirmed, "");
}

TEST_F(EepromWriting, TellsTheLastConfirmedAddressWhenThePortIsPulledOut) {
  Start();
  for (int i = 0; i < 3; ++i) Acknowledge();
  world.dialogs().ExpectMessageBox(
      {.text = "COM1 was unplugged.",
       .title = "Error",
       .icon = Icon::kCritical,
       .detail = "The last address that was confirmed is 0X8002. Write the whole image again."});
  world.port().Unplug();
  world.Advance(1s);
  EXPECT_FALSE(tool.Writing);
  EXPECT_NE(tool.lblLeft.Caption->find("0X8002"), std::string::npos);
}

TEST_F(EepromWriting, TellsAPortThatCannotBeOpened) {
  Choose(Source(1));
  const auto press = [&](const std::string& trouble) {
    world.dialogs().ExpectMessageBox(question, "Write EEPROM").Press(Answer::kYes);
    ExpectError(trouble);
    tool.cmd_WriteEEPROM.Press();
    // No detail: there is nothing that the main window could do for it.
    EXPECT_EQ(world.dialogs().TakeShown().back(), "critical box [Error] " + trouble + " (OK)");
    EXPECT_FALSE(tool.Writing);
  };
  world.port().MakeBusy();
  press("COM1 is in use by another program.");
  world.port().MakeBusy(false);
  world.port().Unplug();
  press("COM1 is not plugged in.");
  EXPECT_TRUE(tool.cmd_WriteEEPROM.Enabled);
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

TEST_F(EepromWriting, SendsNothingOfASourceWhoseValuesDiffer) {
  std::string text = Source(2);
  text.replace(text.find("0A,10,0X8002"), 5, "0A,11");
  Choose(text);
  for (CommandButton* button : {&tool.cmd_WriteEEPROM, &tool.cmd_VerifyEEPROM}) {
    ExpectError("Value Error in EEPROM source file on line : 0X8002 cell 2");
    button->Press();
    world.Advance(1s);
    EXPECT_EQ(world.dialogs().TakeShown().size(), 1U);
    EXPECT_EQ(world.port().opens(), 0);
  }
}

// The source may be gone meanwhile: the run does not need it any more.
TEST_F(EepromWriting, SumsNothingUpDuringARun) {
  Start();
  EXPECT_FALSE(tool.cmd_CalcFileChecksum.Enabled);
  world.disk().Forbid(kDefPath);
  tool.CalcFileChecksum();
  EXPECT_TRUE(tool.Writing);
  tool.cmd_Stop.Press();
  EXPECT_TRUE(tool.cmd_CalcFileChecksum.Enabled);
}

TEST_F(EepromWriting, AsksBeforeItClosesInTheMiddle) {
  Start();
  const std::string text = "The EEPROM is being written. Stop and close the window?";
  world.dialogs().ExpectMessageBox(text, "PROM File Generator").Press(Answer::kNo);
  tool.Unload();
  EXPECT_TRUE(tool.form.Visible);
  EXPECT_TRUE(tool.Writing);
  Acknowledge();
  // Once, however often the window is told to close.
  world.dialogs()
      .ExpectMessageBox(text, "PROM File Generator")
      .While([&] { tool.Unload(); })
      .Press(Answer::kYes);
  tool.Unload();
  EXPECT_FALSE(tool.form.Visible);
  EXPECT_FALSE(tool.Writing);
  EXPECT_FALSE(world.port().PortOpen());
  EXPECT_EQ(tool.lstResults.List->back(),
            "Stopped. The last address that was confirmed is 0X8000. Write the whole image again.");
}

TEST_F(EepromWriting, AsksBeforeItClosesWhileItIsNotProved) {
  Start();
  for (int i = 0; i < 16; ++i) Acknowledge();
  world.dialogs()
      .ExpectMessageBox("What was written is being verified. Stop and close the window?",
                        "PROM File Generator")
      .Press(Answer::kNo);
  tool.Unload();
  EXPECT_TRUE(tool.form.Visible);
  tool.cmd_Stop.Press();
  tool.cmd_VerifyEEPROM.Press();
  EXPECT_TRUE(tool.Writing);
  tool.Unload();
  EXPECT_FALSE(tool.form.Visible);
}

TEST_F(EepromWriting, ShowsNothingOfTheRunBeforeWithAnotherSource) {
  Start();
  Acknowledge();
  tool.cmd_Stop.Press();
  EXPECT_EQ(tool.prgRun.Value.get(), 1);
  world.dialogs().ExpectOpenFile("").Give(kDefPath);
  tool.cmd_Browse.Press();
  EXPECT_TRUE(tool.lstResults.List->empty());
  EXPECT_EQ(tool.prgRun.Value.get(), 0);
  EXPECT_EQ(tool.lblLeft.Caption.get() + tool.lblProgress.Caption.get() +
                tool.lblTrouble.Caption.get() + tool.LastConfirmed,
            "");
}

TEST_F(EepromWriting, DoesNotBeginWhileTheMainWindowHasThePort) {
  Choose(Source(1));
  plain.host.GivePort = [] { return false; };
  world.dialogs().ExpectMessageBox({.text = "Stop Communication First",
                                    .title = "Communication Error",
                                    .icon = Icon::kCritical});
  tool.VerifyEEPROM();
  EXPECT_FALSE(tool.Writing);
  EXPECT_FALSE(world.port().PortOpen());
  EXPECT_EQ(tool.ResultText(), "Not begun: the main window communicates.\n");
  plain.host.GivePort = [] { return true; };
  tool.VerifyEEPROM();
  EXPECT_TRUE(tool.Writing);
}

TEST_F(EepromWriting, SaysThatAnAddressIsThereTwice) {
  std::string twice = Source(1);
  twice.replace(twice.find("0X8002"), 6, "0X8001");
  question_detail =
      "All that these addresses hold now is lost. The source has the address 0X8001 "
      "more than once.";
  StartWith(twice);
}

// What the slave has acknowledged is not proved by that.
TEST_F(EepromWriting, HasConfirmedNothingWhenTheProofBegins) {
  Start();
  for (int i = 0; i < 16; ++i) Acknowledge();
  Say(kRead, "FFAB", "0700");
  world.Advance(500ms);
  ExpectVerifyError("0X8000: 00 expected, 07 read. No address has been confirmed.");
  Say(kRead, "FFAB", "0700");
  EXPECT_FALSE(tool.Writing);
}

TEST_F(EepromWriting, KeepsItsResultsWhereTheQuestionIsAnsweredNo) {
  Start();
  Acknowledge();
  tool.cmd_Stop.Press();
  const std::string before = tool.ResultText();
  PressWrite(Answer::kNo);
  EXPECT_EQ(tool.ResultText(), before);
  EXPECT_EQ(tool.picMap.Cells().at(0).State, CellState::kWritten);
  PressWrite();
  EXPECT_EQ(tool.ResultText(), "");
  EXPECT_EQ(tool.picMap.Cells().at(0).State, CellState::kOpen);
}

TEST_F(EepromWriting, PaintsHowFarEachByteIs) {
  Start();
  const auto state = [this](std::size_t cell) { return tool.picMap.Cells().at(cell).State; };
  EXPECT_EQ(state(0), CellState::kInWork);
  Acknowledge();
  EXPECT_EQ(state(0), CellState::kWritten);
  EXPECT_EQ(state(1), CellState::kInWork);
  EXPECT_EQ(state(2), CellState::kOpen);
  for (int i = 1; i < 16; ++i) Acknowledge();
  EXPECT_EQ(state(0), CellState::kInWork);
  EXPECT_EQ(state(15), CellState::kWritten);
  Say(kRead, "FFAB", "0000");
  EXPECT_EQ(state(0), CellState::kVerified);
  Say(kRead, "FFAB", "0600");
  world.Advance(500ms);
  ExpectError("Verify Error on " + kDefPath);
  Say(kRead, "FFAB", "0600");
  EXPECT_EQ(state(1), CellState::kWrong);
  EXPECT_TRUE(tool.cmdCopyResults.Enabled && tool.cmdSaveResults.Enabled);
}

TEST_F(EepromWriting, KeepsItsResults) {
  EXPECT_FALSE(tool.cmdCopyResults.Enabled || tool.cmdSaveResults.Enabled);
  Start();
  Acknowledge();
  tool.cmd_Stop.Press();
  std::string copied;
  tool.CopyText = [&](const std::string& text) { copied = text; };
  tool.cmdCopyResults.Press();
  EXPECT_EQ(
      copied,
      "Stopped. The last address that was confirmed is 0X8000. Write the whole image again.\n");
  world.dialogs().ExpectSaveFile("Save list").Give("/home/user/work/results.txt");
  tool.cmdSaveResults.Press();
  EXPECT_EQ(
      world.disk().Get("/home/user/work/results.txt"),
      "Stopped. The last address that was confirmed is 0X8000. Write the whole image again.\r\n");
  world.dialogs().ExpectSaveFile("Save list").Cancel();
  tool.cmdSaveResults.Press();
}

TEST_F(EepromWriting, GoesOnWhileItsResultsAreSaved) {
  const std::string path = "/home/user/work/results.txt";
  Start();
  for (int i = 0; i < 16; ++i) Acknowledge();
  world.dialogs().ExpectSaveFile("Save list").Give(path).While([&] {
    Say(kRead, "FFAB", "0000");
    EXPECT_EQ(tool.LastConfirmed, "0X8000");
  });
  tool.cmdSaveResults.Press();
  EXPECT_EQ(world.disk().Get(path), "0X8000 to 0X800F written\r\n");
  // A disk that is full ends nothing.
  world.disk().SetFreeSpace(3);
  world.dialogs().ExpectSaveFile("Save list").Give(path);
  world.dialogs().ExpectMessageBox("The list can not be saved.", "PROM File Generator");
  tool.cmdSaveResults.Press();
  EXPECT_TRUE(tool.Writing);
  Say(kRead, "FFAB", "0500");
  EXPECT_EQ(tool.LastConfirmed, "0X8001");
  EXPECT_EQ(world.disk().Get(path), "0X8000 to 0X800F written\r\n");
}

TEST_F(EepromWriting, StepsThroughSixteenSlaves) {
  EXPECT_EQ(tool.txt_SlaveAddress.Text.get(), "0");
  tool.ud_SlaveAddress.Press(-1);
  EXPECT_EQ(tool.txt_SlaveAddress.Text.get(), "0");
  for (int i = 0; i < 20; ++i) tool.ud_SlaveAddress.Press(1);
  EXPECT_EQ(tool.txt_SlaveAddress.Text.get(), "F");
}

}  // namespace
}  // namespace tarnlink
