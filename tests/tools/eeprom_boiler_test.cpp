// The EEPROM writer and the EEPROM downloader against the simulated boiler: what is written is what
// is held, and what is read back.

#include "files/eeprom_output.h"
#include "support/samples.h"
#include "tools/eeprom_fixture.h"

namespace tarnlink {
namespace {

TEST_F(EepromBoilerTest, HoldsWhatWasWrittenByteForByte) {
  Choose(Source(32));
  question = "Write 512 bytes, 0X8000 to 0X81FF, into slave 0?";
  PressWrite();
  ASSERT_TRUE(Finish(120s));
  EXPECT_EQ(LastResult(), "512 bytes written and verified.");
  EXPECT_EQ(Held(0x8000, 512), BinBytes(ReadEepromSource(Source(32))));
  EXPECT_EQ(tool.lstResults.List->size(), 65U);
  EXPECT_EQ(tool.lstResults.List->front(), "0X8000 to 0X800F written");
  EXPECT_EQ(tool.prgRun.Value.get(), 512);
  EXPECT_EQ(tool.picMap.Cells().back().State, CellState::kVerified);
  EXPECT_FALSE(world.port().PortOpen());
}

TEST_F(EepromBoilerTest, WritesIntoTheSlaveThatIsChosen) {
  for (int i = 0; i < 10; ++i) tool.ud_SlaveAddress.Press(1);
  Choose(Source(1));
  question = "Write 16 bytes, 0X8000 to 0X800F, into slave A?";
  PressWrite();
  ASSERT_TRUE(Finish());
  EXPECT_EQ(LastResult(), "16 bytes written and verified.");
}

TEST_F(EepromBoilerTest, FindsABlockOutThatWasAcknowledgedButNotStored) {
  Choose(Source(1));
  boiler.line().AddFault("write_ok_not_stored");
  PressWrite();
  ExpectError("Verify Error on " + kDefPath);
  ASSERT_TRUE(Finish());
  EXPECT_EQ(LastResult().substr(0, 6), "Ended:");
}

TEST_F(EepromBoilerTest, FindsEachSingleByteOutThatWasNotStored) {
  for (const int lost : {0, 1, 7, 13, 14, 15}) {
    Choose(Source(1));
    PressWrite();
    world.RunUntil([&] { return tool.Sent == lost + 1; }, 5s);
    const auto address = static_cast<std::uint16_t>(0x8000 + lost);
    world.RunUntil([&] { return tool.Answered == lost + 1; }, 5s);
    boiler.controller().WriteByte(
        address, static_cast<std::uint8_t>(boiler.controller().memory().Byte(address) ^ 1));
    ExpectError("Verify Error on " + kDefPath);
    ASSERT_TRUE(Finish());
    EXPECT_NE(LastResult().find("0X" + Hex(address) + ": "), std::string::npos) << lost;
    world.dialogs().TakeShown();
  }
}

TEST_F(EepromBoilerTest, RepeatsAWriteWhoseAnswerWasLost) {
  Choose(Source(1));
  boiler.line().AddFault("write_stored_answer_lost@0.3");
  PressWrite();
  ASSERT_TRUE(Finish(300s));
  EXPECT_EQ(LastResult(), "16 bytes written and verified.");
  EXPECT_NE(tool.lstResults.List->front().find(", repeated "), std::string::npos);
}

// Whatever the line does: a good end is a true one.
TEST_F(EepromBoilerTest, NeverSaysOkOfAnImageThatIsNotThere) {
  Choose(Source(4));
  question = "Write 64 bytes, 0X8000 to 0X803F, into slave 0?";
  const std::string image = BinBytes(ReadEepromSource(Source(4)));
  for (const char* fault :
       {"late_reply(1200)@0.1", "late_reply(2400)@0.1", "late_reply_after_next@0.1",
        "stale_duplicate@0.2", "answer_of_other_request@0.05", "wrong_address@0.2", "wrong_id@0.2",
        "wrong_kind@0.2", "refused(4)@0.2", "no_reply@0.1", "byte_drop@0.2", "byte_insert@0.2",
        "merge_two@0.2", "noise_before@0.2", "noise_after@0.2", "self_echo@0.5",
        "foreign_traffic@0.3", "truncate(9)@0.2"}) {
    for (int i = 0; i < 64; ++i) {
      boiler.controller().WriteByte(static_cast<std::uint16_t>(0x8000 + i), 0xEE);
    }
    boiler.line().AddFault(fault);
    PressWrite();
    ASSERT_TRUE(Finish(3600s)) << fault;
    EXPECT_EQ(LastResult(), "64 bytes written and verified.") << fault;
    EXPECT_EQ(Held(0x8000, 64), image) << fault;
    boiler.Calm();
    world.Advance(5s);
  }
}

TEST_F(EepromBoilerTest, FindsASlaveOutThatForgetsNowAndThen) {
  Choose(Source(4));
  question = "Write 64 bytes, 0X8000 to 0X803F, into slave 0?";
  boiler.line().AddFault("write_ok_not_stored@0.05");
  PressWrite();
  ExpectError("Verify Error on " + kDefPath);
  ASSERT_TRUE(Finish());
  EXPECT_NE(Held(0x8000, 64), BinBytes(ReadEepromSource(Source(4))));
  EXPECT_EQ(tool.picMap.Cells().at(tool.picMap.InWork()).State, CellState::kWrong);
}

class EepromTrapTest : public EepromBoilerTest {
 protected:
  explicit EepromTrapTest(const std::string& refusing = "8005", const std::string& silent = "")
      : EepromBoilerTest(Options(refusing, silent)) {
    Choose(Source(1));
    PressWrite();
    EXPECT_TRUE(Finish());
    EXPECT_EQ(LastResult(), "16 bytes written and verified.");
  }
  // The image with another record.
  static std::string OtherAt(const std::string& record, const std::string& other) {
    std::string text = Source(1);
    return text.replace(text.find(record), record.size(), other);
  }
  static boiler::SimulatedBoiler::Options Options(const std::string& refusing,
                                                  const std::string& silent) {
    boiler::SimulatedBoiler::Options options = EepromBoiler();
    options.slave.write_once = refusing;
    options.slave.write_once_silent = silent;
    return options;
  }
};

class EepromSilentTrapTest : public EepromTrapTest {
 protected:
  EepromSilentTrapTest() : EepromTrapTest("", "8006") {}
};

TEST_F(EepromTrapTest, TellsWhereTheSlaveRefuses) {
  Choose(OtherAt("19,25,0X8005", "77,119,0X8005"));
  PressWrite();
  EXPECT_FALSE(Finish(10s));
  EXPECT_EQ(tool.LastConfirmed, "0X8004");
  EXPECT_EQ(tool.lblProgress.Caption.get(), "0X8005 : 77 (cell 5)");
  EXPECT_TRUE(tool.lblTrouble.Caption->ends_with(" times: the slave refuses it."));
  tool.cmd_Stop.Press();
  EXPECT_EQ(LastResult(),
            "Stopped. The last address that was confirmed is 0X8004. Write the whole image again.");
  EXPECT_EQ(Held(0x8005, 1), "\x19");
}

TEST_F(EepromSilentTrapTest, FindsOutWhereTheFirstValueStays) {
  Choose(OtherAt("1E,30,0X8006", "78,120,0X8006"));
  PressWrite();
  ExpectError("Verify Error on " + kDefPath);
  ASSERT_TRUE(Finish());
  const std::string where =
      "0X8006: 78 expected, 1E read. The last address that was confirmed is 0X8005.";
  EXPECT_EQ(tool.lblLeft.Caption.get(), where);
  EXPECT_EQ(LastResult(), "Ended: Verify Error on " + kDefPath + " " + where);
}

TEST_F(EepromBoilerTest, TellsWhereItWasWhenItIsPulledOut) {
  Choose(Source(1));
  PressWrite();
  world.RunUntil([&] { return tool.Answered == 5; }, 5s);
  world.port().Unplug();
  world.dialogs().ExpectMessageBox(
      {.text = world.port().LossReason(),
       .title = "Error",
       .icon = Icon::kCritical,
       .detail = "The last address that was confirmed is 0X8004. Write the whole image again."});
  world.Advance(1s);
  EXPECT_FALSE(tool.Writing);
  world.port().PlugIn();
}

TEST_F(EepromBoilerTest, WritesTheSample) {
  Choose(SampleBytes("boiler.def"));
  EXPECT_EQ(tool.lblSource.Caption.get(), "512 bytes, 0X8000 to 0X81FF");
  question = "Write 512 bytes, 0X8000 to 0X81FF, into slave 0?";
  PressWrite();
  ASSERT_TRUE(Finish(120s));
  EXPECT_EQ(LastResult(), "512 bytes written and verified.");
  // It holds the settings of the factory.
  for (const char* name : {"stored_flow_setpoint", "prepurge_time", "retries", "eeprom_minor"}) {
    const boiler::MemoryItem& item = boiler::Item(name);
    EXPECT_EQ(boiler.controller().Value(item), item.power_on) << name;
  }
}

TEST_F(EepromDownTest, ReadsThirtyTwoBlocks) {
  for (const char* size : {"512", "511"}) {
    down.EESize.Text = size;
    ExpectDone();
    ASSERT_TRUE(Read());
    EXPECT_EQ(ReadEepromSource(world.disk().Get(kDefPath)).blocks.size(), 32U);
    EXPECT_EQ(Image(), Held(0x8000, 512));
    EXPECT_EQ(down.lblState.Caption.get(), "512 bytes read. ");
    EXPECT_EQ(world.disk().Get(kDefPath).substr(0, 10), "START\r\n" + Hex(60) + ",");
  }
}

TEST_F(EepromDownTest, AsksForTwoBytesAtATime) {
  down.EESize.Text = "16";
  down.Slave_address.Pick(10);
  ExpectDone();
  ASSERT_TRUE(Read());
  const auto sent = world.port().TakeSent();
  ASSERT_EQ(sent.size(), 8U);
  EXPECT_EQ(sent[0], zolt_frame::FinishFrame("\x07"
                                             "AFFAB8000"));
  EXPECT_EQ(sent[7], zolt_frame::FinishFrame("\x07"
                                             "AFFAB800E"));
  EXPECT_FALSE(world.port().PortOpen());
}

TEST_F(EepromDownTest, WritesWhatItReadIntoAnotherController) {
  ExpectDone();
  ASSERT_TRUE(Read());
  const std::string image = Held(0x8000, 512);
  for (int i = 0; i < 512; ++i) {
    boiler.controller().WriteByte(static_cast<std::uint16_t>(0x8000 + i), 0xEE);
  }
  Choose(world.disk().Get(kDefPath));
  question = "Write 512 bytes, 0X8000 to 0X81FF, into slave 0?";
  PressWrite();
  ASSERT_TRUE(Finish(120s));
  EXPECT_EQ(Held(0x8000, 512), image);
  EXPECT_EQ(LastResult(), "512 bytes written and verified.");
}

TEST_F(EepromDownTest, ReadsADspThatCanBeVerified) {
  down.Option1.Choose(frm_EEPROM_Down::kDsp);
  down.EESize.Text = "32";
  for (int i = 0; i < 14; ++i) {
    boiler.controller().WriteByte(static_cast<std::uint16_t>(0x9000 + i),
                                  static_cast<std::uint8_t>(i));
  }
  boiler.controller().WriteWord(0x900E, 0xD1A1);
  ExpectDone();
  ASSERT_TRUE(Read());
  const std::string text = world.disk().Get(kDefPath);
  EXPECT_EQ(text.substr(0, 25), "START\r\n \r\n00,0,0X9000, \r\n");
  EXPECT_EQ(Image(), Held(0x9000, 32));
  Choose(text);
  tool.cmd_VerifyEEPROM.Press();
  ASSERT_TRUE(Finish());
  EXPECT_EQ(LastResult(), "32 bytes verified.");
}

TEST_F(EepromDownTest, TellsBlocksWhoseCheckIsWrong) {
  boiler.controller().WriteByte(0x8012, 0x77);
  down.EESize.Text = "48";
  world.dialogs().ExpectMessageBox(
      {.text = "Tarnlink File is generated",
       .title = "File Generation Done...",
       .icon = Icon::kInformation,
       .detail = "The slave holds blocks whose check is wrong: 0X8010. In the image it is right."});
  ASSERT_TRUE(Read());
  EXPECT_EQ(Image().substr(0, 30), Held(0x8000, 30));
  EXPECT_NE(Image().substr(30, 2), Held(0x801E, 2));
  EXPECT_EQ(ReadEepromSource(world.disk().Get(kDefPath)).blocks.size(), 3U);
}

TEST_F(EepromDownTest, StartsNothingWithoutADefFile) {
  for (const char* path : {"/home/user/work/image.txt", "Output file not specified", "def/x"}) {
    down.txt_eepromsourcefile.Text = path;
    down.cmd_read_EEPROM.Press();
    EXPECT_FALSE(down.progress.form.Visible) << path;
    EXPECT_EQ(down.lblState.Caption.get(),
              "Choose a destination file whose name ends in \".def\".");
  }
  EXPECT_EQ(world.port(1).opens(), 0);
}

TEST_F(EepromDownTest, OpensTheNextDialogWhereTheLastWasLeft) {
  EXPECT_EQ(world.dialogs().last_file_request().folder, world.disk().DocumentsFolder());
  world.dialogs().ExpectSaveFile().Cancel();
  down.txt_eepromsourcefile.Click();
  EXPECT_EQ(world.dialogs().last_file_request().folder, "/home/user/work");
  EXPECT_EQ(down.txt_eepromsourcefile.Text.get(), kDefPath);
}

TEST_F(EepromDownTest, RefusesASizeThatIsNone) {
  for (const char* size : {"", "0", "-4", "many", "32769"}) {
    down.EESize.Text = size;
    ExpectError("The size must be 1 to 32768.");
    down.cmd_read_EEPROM.Press();
  }
  down.Option1.Choose(frm_EEPROM_Down::kDsp);
  ExpectError("The size must be 1 to 28672.");
  down.cmd_read_EEPROM.Press();
  EXPECT_EQ(world.port(1).opens(), 0);
}

TEST_F(EepromDownTest, TellsABlockThatIsNotWhole) {
  down.EESize.Text = "20";
  ExpectError("Line 22: the file ends behind record 4 of a block of 16.");
  ASSERT_TRUE(Read());
  EXPECT_FALSE(world.disk().Exists("/home/user/work/image.bin"));
}

TEST_F(EepromDownTest, TellsThatTheFileCannotBeWritten) {
  world.disk().Put(kDefPath, "old");
  world.disk().Forbid(kDefPath);
  down.EESize.Text = "16";
  ExpectKept(Forbidden(kDefPath, "written"));
  world.dialogs().ExpectSaveFile().Cancel();
  ASSERT_TRUE(Read());
  EXPECT_EQ(world.dialogs().TakeShown().size(), 2U);
  EXPECT_EQ(down.lblState.Caption.get(),
            "16 bytes read. No file has been written: " + Forbidden(kDefPath, "written"));
  EXPECT_FALSE(world.disk().Exists(kBinPath));
  world.disk().Allow(kDefPath);
  EXPECT_EQ(world.disk().Get(kDefPath), "old");
  world.disk().Put(kBinPath, "old");
  world.disk().Forbid(kBinPath);
  world.dialogs().ExpectMessageBox({.text = Forbidden(kBinPath, "written"),
                                    .title = "Error",
                                    .icon = Icon::kCritical,
                                    .detail = "\"" + kDefPath + "\" is written."});
  ASSERT_TRUE(Read());
  EXPECT_EQ(ReadEepromSource(world.disk().Get(kDefPath)).blocks.size(), 1U);
  world.disk().Allow(kBinPath);
  EXPECT_EQ(world.disk().Get(kBinPath), "old");
}

TEST_F(EepromDownTest, KeepsWhatItReadUntilItIsWritten) {
  const std::string full = "/home/user/work/full.def";
  const std::string other = "/home/user/work/other.def";
  const std::string disk_full = "\"" + full + "\" could not be written: the disk is full.";
  world.disk().Put(kDefPath, "old");
  world.disk().Forbid(kDefPath);
  down.EESize.Text = "16";
  ExpectKept(Forbidden(kDefPath, "written"));
  world.dialogs().ExpectSaveFile().Give(full).While([&] { world.disk().SetFreeSpace(100); });
  ExpectKept(disk_full);
  world.dialogs().ExpectSaveFile().Give("/home/user/work/other.txt");
  ExpectKept("Choose a destination file whose name ends in \".def\".");
  world.dialogs().ExpectSaveFile().Give(other).While([&] { world.disk().SetFreeSpace(10'000); });
  ExpectDone();
  ASSERT_TRUE(Read());
  EXPECT_EQ(world.port(1).TakeSent().size(), 8U);
  EXPECT_FALSE(world.disk().Exists(full));
  EXPECT_FALSE(world.disk().Exists("/home/user/work/other.txt"));
  EXPECT_EQ(ReadEepromSource(world.disk().Get(other)).blocks.size(), 1U);
  EXPECT_EQ(world.disk().Get("/home/user/work/other.bin"), Held(0x8000, 16));
  EXPECT_EQ(down.txt_eepromsourcefile.Text.get(), other);
  EXPECT_EQ(down.lblState.Caption.get(), "16 bytes read. ");
}

TEST_F(EepromDownTest, TellsThatTheDiskIsFullForTheImage) {
  down.EESize.Text = "16";
  ExpectDone();
  ASSERT_TRUE(Read());
  world.disk().SetFreeSpace(world.disk().Get(kDefPath).size() + 15);
  world.disk().Remove(kBinPath);
  ExpectError("\"" + kBinPath + "\" could not be written: the disk is full.");
  ASSERT_TRUE(Read());
  EXPECT_EQ(ReadEepromSource(world.disk().Get(kDefPath)).blocks.size(), 1U);
  EXPECT_FALSE(world.disk().Exists(kBinPath));
}

TEST_F(EepromDownTest, KeepsTheOldFileWhenItIsStopped) {
  world.disk().Put(kDefPath, "old");
  down.cmd_read_EEPROM.Press();
  EXPECT_EQ(down.progress.caption.Caption.get(), "EEPROM Reading in progress");
  world.Advance(1s);
  EXPECT_GT(down.progress.ProgressBar1.Value.get(), 0);
  down.progress.Cancel.Press();
  EXPECT_FALSE(down.progress.form.Visible);
  EXPECT_TRUE(down.form.Visible);
  EXPECT_EQ(down.lblState.Caption->substr(0, 46), "Stopped. The last address that was read is 0X8");
  EXPECT_EQ(world.disk().Get(kDefPath), "old");
  EXPECT_FALSE(world.port(1).PortOpen());
}

TEST_F(EepromDownTest, RepeatsWithoutEndWhenNobodyAnswers) {
  down.Slave_address.Pick(5);
  EXPECT_FALSE(Read(30s));
  EXPECT_EQ(world.port(1).TakeSent().size(), 30U);
  EXPECT_EQ(down.progress.lblTrouble.Caption.get(), "Sent again 29 times: no answer.");
  down.cmd_Cancel.Press();
  EXPECT_FALSE(down.progress.form.Visible);
}

TEST_F(EepromDownTest, TellsThatItWasPulledOut) {
  down.cmd_read_EEPROM.Press();
  world.Advance(1s);
  world.port(1).Unplug();
  ExpectError(world.port(1).LossReason());
  world.Advance(1s);
  EXPECT_FALSE(down.progress.form.Visible);
  world.port(1).PlugIn();
}

// Whatever the line does: the image is the one that the slave holds.
TEST_F(EepromDownTest, ReadsTheTrueImageOnABadLine) {
  down.EESize.Text = "128";
  for (const char* fault :
       {"late_reply(1200)@0.1", "late_reply(2400)@0.1", "late_reply_after_next@0.1",
        "stale_duplicate@0.2", "answer_of_other_request@0.05", "wrong_address@0.2", "wrong_id@0.2",
        "wrong_kind@0.2", "refused(4)@0.2", "no_reply@0.1", "byte_drop@0.2", "byte_insert@0.2",
        "merge_two@0.2", "noise_before@0.2", "noise_after@0.2", "self_echo@0.5",
        "foreign_traffic@0.3", "truncate(9)@0.2"}) {
    boiler.line().AddFault(fault);
    ExpectDone();
    ASSERT_TRUE(Read(3600s)) << fault;
    EXPECT_EQ(Image(), Held(0x8000, 128)) << fault;
    EXPECT_EQ(down.lblState.Caption.get(), "128 bytes read. ") << fault;
    boiler.Calm();
    world.Advance(5s);
    world.dialogs().TakeShown();
  }
}

}  // namespace
}  // namespace tarnlink
