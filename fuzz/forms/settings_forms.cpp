#include "fuzz/forms/forms.h"
#include "fuzz/forms/monitor_user.h"
#include "fuzz/forms/seed_text.h"

namespace tarnlink {
namespace {

constexpr const char* kMap = "/home/user/work/boiler.map";
constexpr const char* kIds = "/home/user/work/boiler.ids";

void PutNames(FakeWorld& world) {
  world.disk().Put(kMap,
                   "__cpu_name = ATmega64\r\nENTRY LIST\r\nzero  DATA  00000100\r\n"
                   "alpha  DATA  00000106\r\nsbBeta  DATA  00000107\r\n");
  world.disk().Put(kIds, "*R1.2\r\nTemperature,1A,3,H\r\n-Status,2F,L\r\nflow,10,2\r\n");
}

void RunOptions(std::string_view bytes) {
  FuzzInput input(bytes);
  MonitorUser user(input, input.Below(kProtocolCount));
  PutNames(user.world);
  user.driver.Offer({kMap, kIds, "/home/user/none/x.map", "/home/user/work", ""});
  user.world.devices().PlugIn(
      {.path = "/dev/ttyUSB0", .stable_path = "", .description = "", .maker = ""});
  user.AddOptions();
  user.driver.Do([&user] {
    user.world.devices().PlugIn(
        {.path = "/dev/ttyUSB1", .stable_path = "", .description = "", .maker = ""});
  });
  user.driver.Do([&user] { user.world.devices().PullOut("/dev/ttyUSB0"); });
  user.driver.Guard([&] { user.monitor.main.M_options.Press(); });
  user.Run();
}

void RunSettings(std::string_view bytes) {
  FuzzInput input(bytes);
  MonitorUser user(input, input.Below(kProtocolCount));
  user.Screen(3);
  PutNames(user.world);
  const std::uint8_t names = input.Byte();
  user.driver.Guard([&] {
    if ((names & 1) != 0) user.monitor.map.LoadClass7(kMap);
    if ((names & 2) != 0) user.monitor.ids.ReadIDItems(kIds);
    user.monitor.main.RAM_LOC_TEXT.DblClick(1);
  });
  user.AddSettings();
  user.driver.Add(user.monitor.main.mnuUndo, user.monitor.main.mnuRedo);
  user.driver.Check = [check = user.driver.Check, &user] {
    check();
    for (int i = 1; i <= user.monitor.main.MaxId; ++i) {
      const Location& location = user.monitor.main.Locations[i];
      Claim(location.Address.size() == 4, "an address has four digits");
      Claim(location.StorageType >= 0 && location.StorageType < 5, "a storage type exists");
      Claim(location.Representation >= 0 && location.Representation < 4, "a representation exists");
    }
  };
  user.Run();
}

std::vector<std::string> OptionsSeeds() {
  using namespace seed;
  const std::string begin(1, '\1');
  return {begin + Act(1), begin + Act(3, "\2") + Act(4, "\5") + Act(1) + Act(0) + Act(2),
          begin + Act(5, "\4") + Act(6, Text(4)) + Act(7, Text(0)) + Act(1),
          begin + Act(12) + File(0) + Act(14) + File(1) + Act(1),
          begin + Act(18) + File(3) + Act(26) + Act(27) + Act(28) + Act(29) + Act(1)};
}

std::vector<std::string> SettingsSeeds() {
  using namespace seed;
  std::vector<std::string> seeds;
  for (const char protocol : {'\0', '\1', '\2'}) {
    const std::string begin = protocol + std::string("\1\x86\x10\0\x86\x11\0\3", 8);
    seeds.push_back(begin + Act(6, Text(4)) + Act(8, Text(18)) + Act(9, std::string(1, '\0')) +
                    Act(1));
    seeds.push_back(begin + Act(2, "\1") + Act(3, "\1\2") + Act(4, "\1\1") + Act(1) + Act(24));
    seeds.push_back(begin + Act(20, "\1\1") + Act(21, Text(3)) + Act(1) + Act(22) + Act(23) +
                    Yes());
  }
  return seeds;
}

}  // namespace

FuzzTarget OptionsFormTarget() { return {"options_form", RunOptions, OptionsSeeds}; }
FuzzTarget LocationSettingsFormTarget() {
  return {"location_settings_form", RunSettings, SettingsSeeds};
}

}  // namespace tarnlink
