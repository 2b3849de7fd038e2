#include "fuzz/decoders/line_bytes.h"
#include "fuzz/forms/forms.h"
#include "fuzz/forms/seed_text.h"
#include "fuzz/forms/tool_user.h"
#include "tools/frm_sniff_settings.h"
#include "tools/frm_sniffer.h"

namespace tarnlink {
namespace {

// A frame that goes by, of few IDs, so that they come again.
std::string AnyFrame(FuzzInput& input, const std::string&) {
  constexpr const char* kIds[] = {"0001", "0032", "056D", "1a2b"};
  const std::uint8_t kind = input.Byte();
  std::string body(1, static_cast<char>((kind & 0xF0) | 1));
  body += '0';
  body += kIds[kind & 3];
  body += (kind & 4) != 0 ? "1234" : "0000";
  return SoundZolt(body);
}

// A program with a file of names for the sniffer.
struct SnifferUser : ToolUser {
  explicit SnifferUser(FuzzInput& input) : ToolUser(input, AnyFrame) {
    world.disk().Put("/home/user/work/default.snf",
                     "*Boiler, 3.7\r\nstatus,0001,2,W\r\nerror,0032,0,H\r\n");
    id_file = "/home/user/work/default.ids";
    driver.Offer({"/home/user/work/sniffer.log", "/home/user/none/x.log", ""});
  }

  void ClaimSilence() {
    for (int i = 0; i < world.port_count(); ++i) {
      Claim(world.port(i).frames().empty(), "a sniffer says nothing");
    }
  }
};

void AddSniffer(SnifferUser& user, frmSniffer& tool) {
  FormDriver& driver = user.driver;
  driver.Form(tool.form);
  driver.Add(tool.Command1, tool.Command2, tool.cmd_Clear, tool.txt_Find, tool.cmd_Find,
             tool.LogCheck, tool.List_DisplayDetectedID);
  const auto item = [&driver] { return 1 + driver.input().Below(6); };
  driver.Do([&tool, item] {
    const int index = item();
    if (tool.RAM_TEXT.Has(index) && tool.RAM_TEXT.DblClick) tool.RAM_TEXT.DblClick(index);
  });
  driver.Do([&tool, item, &driver] {
    const int index = item();
    const MousePress press{.X = static_cast<float>(driver.input().Byte())};
    if (tool.RAM_TEXT.Has(index) && tool.RAM_TEXT.MouseDown) tool.RAM_TEXT.MouseDown(index, press);
  });
  driver.Do([&tool, &driver] {
    const auto x = static_cast<float>(16 * driver.input().Word());
    tool.Items.DragDrop(x - 100, static_cast<float>(driver.input().Word()));
  });
  driver.Do([&tool] { tool.Items.DragCancel(); });
  driver.Do([&tool, &driver] { tool.Items.Resized(static_cast<float>(driver.input().Word())); });
  driver.Do([&tool, item, &driver] {
    const int index = item();
    if (!tool.RAM_TEXT.Has(index) || !tool.RAM_TEXT.Arrow) return;
    tool.RAM_TEXT.Arrow(index, {.right = driver.input().Below(3) - 1, .down = 1});
  });
  driver.Show(tool.lbl_Find, tool.lbl_Frames, tool.lbl_Port, tool.lbl_Revision);
  driver.Watch(tool.txt_Messages.Text);
  driver.Check = [&user, &tool] {
    user.ClaimSilence();
    Claim(tool.bad_frames() <= tool.frames(), "bad frames are frames");
    Claim(tool.running_text().size() < 100'000, "the running text is cut");
  };
}

void RunSniffer(std::string_view bytes) {
  FuzzInput input(bytes);
  SnifferUser user(input);
  frmSniffer tool(user.host);
  AddSniffer(user, tool);
  user.driver.Guard([&] { tool.Show(); });
  user.driver.Run();
  user.driver.Leave([&] { tool.Unload(); });
  user.ClaimSilence();
}

void RunSettings(std::string_view bytes) {
  FuzzInput input(bytes);
  SnifferUser user(input);
  frmSniffer tool(user.host);
  frm_Sniff_Settings settings(tool);
  FormDriver& driver = user.driver;
  AddSniffer(user, tool);
  driver.Form(settings.form, true);
  driver.Add(settings.txt_SniffAddress, settings.txt_SniffAlias, settings.opt_sniff_storage_type,
             settings.txt_SniffBitAddress, settings.opt_Representation, settings.chk_Log,
             settings.chk_UseDDE, settings.txt_ExcelColumn, settings.ud_Col, settings.cmd_Ok,
             settings.cmd_Cancel, settings.cmdDeleteLocation);
  driver.Show(settings.lbl_Wrong);
  driver.Guard([&] {
    tool.Show();
    for (const char* body : {"\x11"
                             "000011234",
                             "\x11"
                             "000320A0B"}) {
      user.world.port().Receive(SoundZolt(body));
    }
    user.world.Settle();
    settings.Show(1 + input.Below(2));
  });
  driver.Run();
  driver.Leave([&] {
    tool.Unload();
    Claim(!settings.form.Visible, "the settings go with the sniffer");
  });
  user.ClaimSilence();
}

std::string Frame(int kind) {
  std::string frame = "\x60";
  return frame += static_cast<char>(kind);
}

std::vector<std::string> Seeds() {
  using namespace seed;
  const std::string begin(1, '\3');
  return {begin + Frame(0x10) + Frame(0x15) + Frame(0x92) + Act(3, Text(0)) + Act(4),
          begin + Frame(0x11) + Act(8, "\1\5") + Act(9, "\2\2\1\1") + Act(6, std::string(1, '\0')),
          begin + Act(5) + File(0) + Frame(0x10) + Frame(0x16) + Unplug() + Wait(7) + PlugIn() +
              Wait(7) + Act(5),
          begin + Act(1) + Frame(0x14) + Act(0) + Act(2) + Act(11, "\0\x40") + Act(12, "\1\2")};
}

std::vector<std::string> SettingsSeeds() {
  using namespace seed;
  const std::string begin("\3\0", 2);
  return {begin + Act(13, Text(18)) + Act(16, Text(2)) + Act(15, "\0") + Act(22),
          begin + Act(14, "\xC1\4name") + Act(15, "\4") + Act(17, "\2") + Act(22) + Frame(0x14),
          begin + Act(24) + Frame(0x10), begin + Act(20, Text(7)) + Act(21, "\1") + Act(23)};
}

}  // namespace

FuzzTarget SnifferFormTarget() { return {"sniffer_form", RunSniffer, Seeds}; }
FuzzTarget SnifferSettingsFormTarget() {
  return {"sniffer_settings_form", RunSettings, SettingsSeeds};
}

}  // namespace tarnlink
