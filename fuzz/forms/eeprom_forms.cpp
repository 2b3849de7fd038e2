#include "fuzz/forms/forms.h"
#include "fuzz/forms/seed_text.h"
#include "fuzz/forms/tool_user.h"
#include "support/eeprom_text.h"
#include "tools/frm_eeprom.h"
#include "tools/frm_eeprom_down.h"

namespace tarnlink {
namespace {

constexpr const char* kFile = "/home/user/work/image.def";
constexpr const char* kOther = "/home/user/work/other.def";

const std::string& Source() {
  static const std::string text =
      "START\r\n" + DefBlock(0x8000, [](int offset) { return 5 * offset; }) + "END\r\n";
  return text;
}

void RunWriter(std::string_view bytes) {
  FuzzInput input(bytes);
  ToolUser user(input);
  user.world.disk().Put(kFile, Source());
  user.world.disk().Put(kOther, "START\r\n" + std::string(input.ShortText()) + "\r\nEND\r\n");
  frm_EEPROM tool(user.host);
  tool.CopyText = [](const std::string& text) { Claim(text.size() < 20'000, "the list is short"); };
  FormDriver& driver = user.driver;
  driver.Offer({kFile, kOther, "/home/user/work/none.def", "/home/user/work/list.txt", ""});
  driver.Form(tool.form);
  driver.Add(tool.cmd_Browse, tool.cmd_WriteEEPROM, tool.cmd_VerifyEEPROM, tool.cmd_Stop,
             tool.cmd_TarnlinkFile, tool.cmd_CalcFileChecksum, tool.txt_SlaveAddress,
             tool.ud_SlaveAddress, tool.cmdCopyResults, tool.cmdSaveResults, tool.cmd_Cancel);
  driver.AddAll(tool.chkOutputFormat);
  driver.Show(tool.lblSource, tool.lblProgress, tool.lblTrouble, tool.lblLeft);
  driver.Watch(tool.txt_FileChecksum.Text);
  driver.Watch(tool.txt_eepromsourcefile.Text);
  driver.Check = [&] {
    Claim(tool.prgRun.Value >= 0 && tool.prgRun.Value <= tool.prgRun.Max, "no more than there is");
    Claim(tool.ByteInBlock <= 16, "a block has sixteen bytes");
    Claim(tool.lstResults.List->size() < 200, "results come one by one");
  };
  driver.Guard([&] {
    tool.Show();
    tool.cmd_Browse.Press();
  });
  driver.Run();
  driver.Leave([&] { tool.Unload(); });
}

void RunDownloader(std::string_view bytes) {
  FuzzInput input(bytes);
  ToolUser user(input);
  frm_EEPROM_Down tool(user.host);
  FormDriver& driver = user.driver;
  driver.Offer({kFile, "/home/user/none/x.def", "/home/user/work/*.def", ""});
  driver.Form(tool.form);
  driver.Add(tool.cmd_read_EEPROM, tool.Option1, tool.EESize, tool.Slave_address, tool.cmd_Cancel);
  driver.Do([&] { tool.txt_eepromsourcefile.Click(); });
  driver.Form(tool.progress.form, true);
  driver.Add(tool.progress.Cancel);
  driver.Show(tool.lblState, tool.progress.lblItem, tool.progress.lblTrouble);
  driver.Check = [&] {
    Claim(tool.NextAddress >= 0 && tool.NextAddress <= 0x10000, "an address has two bytes");
  };
  driver.Guard([&] {
    tool.Show();
    tool.txt_eepromsourcefile.Click();
  });
  driver.Run();
  driver.Leave([&] { tool.Unload(); });
}

std::vector<std::string> WriterSeeds() {
  using namespace seed;
  const std::string begin = std::string("\3\0", 2) + File(0);
  return {begin + Act(1) + Yes() + Wait(2) + Times(18, Acknowledge() + Wait(2)),
          begin + Act(2) + Wait(2) + Times(10, Reply(0x0500) + Wait(2)),
          begin + Act(1) + Yes() + Times(4, Wait(7)) + Act(3),
          begin + Act(4) + Act(5),
          begin + Act(0) + File(1) + Act(5),
          begin + Act(2) + Wait(2) + Unplug() + PlugIn() + Act(2) + Act(9) + File(3)};
}

std::vector<std::string> DownloaderSeeds() {
  using namespace seed;
  const std::string begin = "\3" + File(0);
  return {begin + Act(2, Text(6)) + Act(0) + Times(20, Wait(2) + Reply(0x0102)),
          begin + Act(0) + Times(4, Wait(7)) + Act(6),
          begin + Act(1, "\1") + Act(0) + Wait(2) + Reply() + Unplug(),
          begin + Act(5) + File(1) + Act(0) + Wait(2) + Reply()};
}

}  // namespace

FuzzTarget EepromWriterFormTarget() { return {"eeprom_writer_form", RunWriter, WriterSeeds}; }
FuzzTarget EepromDownloaderFormTarget() {
  return {"eeprom_downloader_form", RunDownloader, DownloaderSeeds};
}

}  // namespace tarnlink
