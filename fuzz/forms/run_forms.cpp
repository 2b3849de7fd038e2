#include "fuzz/forms/forms.h"
#include "fuzz/forms/monitor_user.h"
#include "fuzz/forms/seed_text.h"

namespace tarnlink {
namespace {

void RunWith(std::string_view bytes, int protocol) {
  FuzzInput input(bytes);
  MonitorUser user(input, protocol);
  user.Screen(4);
  const std::uint8_t recorded = input.Byte();
  user.monitor.options.chk_GeneralLogging(0).Value = (recorded & 1) != 0;
  user.monitor.options.chk_GeneralLogging(1).Value = (recorded & 2) != 0;
  user.driver.Offer({"/home/user/work/run.xls", "/home/user/none/x", ""});
  user.AddRun();
  user.AddWriteDialogs();
  if (protocol == kModbusProtocol) user.AddMultipleRegisters();
  user.driver.Guard([&] { user.monitor.main.Toolbar1(2).Press(); });
  user.Run();
}

void RunTarnlink(std::string_view bytes) { RunWith(bytes, kTarnlinkProtocol); }
void RunZolt(std::string_view bytes) { RunWith(bytes, kZoltProtocol); }
void RunModbus(std::string_view bytes) { RunWith(bytes, kModbusProtocol); }

// Writes alone, of one Location, without anything being recorded.
void RunWrites(std::string_view bytes) {
  FuzzInput input(bytes);
  const int protocol = input.Below(kProtocolCount);
  MonitorUser user(input, protocol);
  user.Screen(1);
  user.AddWriteDialogs();
  user.driver.Form(user.monitor.main.form);
  user.driver.Do([&user] { user.monitor.main.RAM_LOC_VAL.DblClick(1); });
  user.driver.Guard([&] {
    user.monitor.main.Toolbar1(2).Press();
    user.monitor.main.RAM_LOC_VAL.DblClick(1);
  });
  user.Run();
}

void RunRegisters(std::string_view bytes) {
  FuzzInput input(bytes);
  MonitorUser user(input, kModbusProtocol);
  user.Screen(4);
  user.AddMultipleRegisters();
  user.AddWriteDialogs();
  user.driver.Form(user.monitor.main.form);
  user.driver.Do([&user] { user.monitor.main.RAM_LOC_VAL.DblClick(1); });
  frm_multiple_reg& form = user.monitor.write_registers;
  user.driver.Do([&] {
    form.Unload();
    form.NumReg_frm = 1 + input.Below(kRegisterLines);
    user.monitor.main.SelectedLocation = 1;
    form.Show();
  });
  user.driver.Guard([&] {
    user.monitor.main.Toolbar1(2).Press();
    user.monitor.main.RAM_LOC_VAL.DblClick(1);
    user.monitor.write_value.Option1.Choose(kMultipleWrite);
  });
  user.Run();
}

std::vector<std::string> RunSeeds() {
  using namespace seed;
  const std::string screen("\1\x86\x10\0\x87\x12\0\0", 8);
  const std::string logged("\1\x86\x10\x60\x47\x12\x60\3", 8);
  const std::string poll = Wait(2) + Reply();
  return {screen + Times(5, poll), screen + Wait(2) + Times(3, Wait(7)), logged + Times(6, poll),
          screen + poll + Act(2, std::string(1, '\0')) + Act(4, Text(4)) + Act(5) + Acknowledge() +
              Wait(2) + Times(3, Acknowledge()),
          screen + poll + Unplug() + Wait(2) + PlugIn() + Act(0) + poll + Act(1)};
}

std::vector<std::string> WriteSeeds() {
  using namespace seed;
  std::vector<std::string> seeds;
  for (const char protocol : {'\0', '\1', '\2'}) {
    const std::string begin = protocol + std::string("\0\x86\x10\0", 4);
    seeds.push_back(begin + Act(0, Text(4)) + Act(1) + Times(3, Acknowledge() + Wait(2)));
    seeds.push_back(begin + Act(2, "\2") + Act(0, Text(27)) + Act(1) + Times(3, Wait(7)));
    const std::string bit = protocol + std::string("\0\1\x10\3", 4);
    seeds.push_back(bit + Act(7, "\1") + Act(8) + Acknowledge() + Wait(2));
  }
  return seeds;
}

std::vector<std::string> RegisterSeeds() {
  using namespace seed;
  const std::string screen("\1\x86\x10\x10\x87\x11\0", 7);
  return {screen + Act(6, Text(3)) + Act(7) + Act(0, "\1" + Text(4)) + Act(2) + Act(4) +
              Times(4, Acknowledge()),
          screen + Act(11, "\3") + Act(0, "\2" + Text(17)) + Act(1, "\1") + Act(2) + Act(3),
          screen + Act(6, Text(9)) + Act(7) + Act(2) + Act(4) + Acknowledge() + Wait(2) +
              Acknowledge()};
}

}  // namespace

FuzzTarget RunTarnlinkFormTarget() { return {"run_tarnlink_form", RunTarnlink, RunSeeds}; }
FuzzTarget RunZoltFormTarget() { return {"run_zolt_form", RunZolt, RunSeeds}; }
FuzzTarget RunModbusFormTarget() { return {"run_modbus_form", RunModbus, RunSeeds}; }
FuzzTarget WriteDialogsFormTarget() { return {"write_dialogs_form", RunWrites, WriteSeeds}; }
FuzzTarget MultipleRegistersFormTarget() {
  return {"multiple_registers_form", RunRegisters, RegisterSeeds};
}

}  // namespace tarnlink
