// Pictures of the EEPROM writer and the EEPROM downloader for a person to look at: idle, at work,
// finished and failed, in a light and a dark palette, whole and as on a small screen.

#include "ui/eeprom_fixture.h"
#include "ui/tool_looks.h"

namespace tarnlink {
namespace {

class EepromPictures : public ToolLooks<EepromWindowsTest> {
 protected:
  void AdvanceTo(int answered) {
    EXPECT_TRUE(
        world.RunUntil([this, answered] { return file_tools->eeprom.Answered == answered; }, 100s));
  }
};

TEST_P(EepromPictures, ShowTheWriter) {
  QWidget& writer = OpenWriter();
  Save(writer, "eeprom-new");
  Choose(writer);
  Click(writer, "cmd_CalcFileChecksum");
  Save(writer, "eeprom-idle");
  PressWrite(writer, "Write 512 bytes, 0X8000 to 0X81FF, into slave 0?");
  AdvanceTo(300);
  Save(writer, "eeprom-writing");
  AdvanceTo(512);
  AdvanceTo(200);
  boiler.line().AddFault("no_reply");
  world.Advance(5s);
  Save(writer, "eeprom-verifying");
  boiler.Calm();
  world.Advance(60s);
  Save(writer, "eeprom-finished");
  boiler.controller().WriteByte(0x8123, 0x77);
  world.dialogs().ExpectMessageBox("Verify Error on " + kImagePath, "Error");
  Click(writer, "cmd_VerifyEEPROM");
  world.Advance(60s);
  Save(writer, "eeprom-failed");
  writer.close();
}

TEST_P(EepromPictures, ShowTheDownloader) {
  QWidget& downloader = OpenDownloader();
  Save(downloader, "eeprom-down-idle");
  StartReading(downloader);
  world.Advance(12s);
  boiler.line().AddFault("no_reply");
  world.Advance(3s);
  QWidget& reading = Activated("frm_EEPROMRead_Progress");
  ShowWhole(reading);
  SavePicture(reading, std::string("eeprom-down-reading-") + GetParam().name);
  Key(reading, Qt::Key_Escape);
  Save(downloader, "eeprom-down-stopped");
  downloader.close();
}

TEST_P(EepromPictures, ShowTheDownloaderWhenItHasRead) {
  QWidget& downloader = OpenDownloader();
  StartReading(downloader, "32");
  world.dialogs().ExpectMessageBox("Tarnlink File is generated", "File Generation Done...");
  world.Advance(10s);
  Save(downloader, "eeprom-down-finished");
  downloader.close();
}

INSTANTIATE_TEST_SUITE_P(Looks, EepromPictures,
                         testing::Values(Look{"light", false}, Look{"dark", true}),
                         [](const testing::TestParamInfo<Look>& look) { return look.param.name; });

}  // namespace
}  // namespace tarnlink
