// The pictures of the help of the service tools, and F1 in each of their windows.

#include "ui/cfg_check_fixture.h"
#include "ui/eeprom_fixture.h"
#include "ui/help_shots.h"
#include "ui/sniffer_fixture.h"
#include "ui/write_parameters_fixture.h"

namespace tarnlink {
namespace {

template <class Windows>
class WithHelp : public Windows {
 protected:
  // The form as large as it would like to be.
  void Shot(QWidget& form, const std::string& name, const std::string& page) {
    Windows::ShowWhole(form);
    HelpShot(form, name);
    reader.ExpectPage(form, page);
  }

  HelpReader reader;
};

class HelpShotsOfTools : public WithHelp<ServiceToolsTest> {};
class HelpShotsOfCfgCheck : public WithHelp<CfgWindowTest> {};
class HelpShotsOfEeprom : public WithHelp<EepromWindowsTest> {};
class HelpShotsOfParameters : public WithHelp<ParameterWindowTest> {};
class HelpShotsOfSniffer : public WithHelp<SnifferUiTest> {};

TEST_F(HelpShotsOfTools, TheControlPanel) {
  QWidget& panel = OpenPanel();
  ShowWhole(panel);
  Click(panel, "cmdUpdateStatus");
  world.Advance(20s);
  Shot(panel, "control-panel", "control-panel.html");
  panel.close();
}

TEST_F(HelpShotsOfTools, TheScanOfAllSlaves) {
  QWidget& scan = OpenScan();
  world.Advance(30s);
  Shot(scan, "scan-slaves", "scan-slaves.html");
  scan.close();
}

TEST_F(HelpShotsOfTools, AWrongMessage) {
  QWidget& dialog = OpenWrongMessages();
  ShowWhole(dialog);
  Click(dialog, "cmd_SendErrMsg");
  world.Advance(80ms);
  Shot(dialog, "wrong-messages", "wrong-messages.html");
  dialog.close();
}

TEST_F(HelpShotsOfTools, TheWaterPressure) {
  file_tools->wp_conversion.Show();
  QWidget& form = Activated("frmWPconversion");
  Key(form, Qt::Key_Return);
  Shot(form, "pressure", "pressure.html");
  form.close();
}

TEST_F(HelpShotsOfCfgCheck, TheConfigurationCheck) {
  QWidget& form = OpenCheck();
  ShowWhole(form);
  Load(form);
  Click(form, "cmd_Check");
  RunTo(5);
  world.Advance(1s);
  Shot(form, "cfg-check", "cfg-check.html");
  form.close();
}

TEST_F(HelpShotsOfEeprom, TheWriter) {
  QWidget& writer = OpenWriter();
  ShowWhole(writer);
  Choose(writer);
  Click(writer, "cmd_CalcFileChecksum");
  PressWrite(writer, "Write 512 bytes, 0X8000 to 0X81FF, into slave 0?");
  EXPECT_TRUE(world.RunUntil([this] { return file_tools->eeprom.Answered == 300; }, 100s));
  Shot(writer, "eeprom-writer", "eeprom.html");
  world.Advance(100s);  // a window that writes is not closed without a question
  writer.close();
}

TEST_F(HelpShotsOfEeprom, TheDownloaderAndItsProgress) {
  QWidget& downloader = OpenDownloader();
  ShowWhole(downloader);
  StartReading(downloader);
  world.Advance(12s);
  QWidget& reading = Activated("frm_EEPROMRead_Progress");
  Shot(reading, "eeprom-progress", "eeprom.html");
  Key(reading, Qt::Key_Escape);
  Shot(downloader, "eeprom-download", "eeprom.html");
  downloader.close();
}

TEST_F(HelpShotsOfParameters, TheWriter) {
  QWidget& form = OpenWriter(SampleBytes("boiler.par"));
  ShowWhole(form);
  Click(form, "cmdWriteZOLT");
  ExpectReport("All parameters set. And verified.");
  world.Advance(10s);
  Shot(form, "write-parameters", "parameters.html");
  form.close();
}

TEST_F(HelpShotsOfSniffer, TheSnifferAndAnItemsSettings) {
  world.disk().Put("/jobs/boiler.snf",
                   "*Gas boiler\r\nflow,1001,0,H\r\nreturn,1002,0,H\r\nstatus,1003,2,W\r\n"
                   "fan_speed,1004,0,W\r\n");
  Window().close();
  tools->ShowSniffer();
  Activated("frmSniffer");
  PlaceItems(8);
  Hear(0x14, 0x1001, 0x3C, 0x00);
  Hear(0x14, 0x1002, 0x32, 0x00);
  Hear(0x14, 0x1003, 0xA5, 0x5A);
  Hear(0x14, 0x1004, 0x12, 0x34);
  Window().resize(1000, 620);
  WaitForBars(Window());
  HelpShot(Window(), "sniffer");
  reader.ExpectPage(Window(), "sniffer.html");
  tools->sniffer.RAM_TEXT.DblClick(2);
  Shot(Settings(), "sniffer-settings", "sniffer.html");
}

}  // namespace
}  // namespace tarnlink
