#include "fuzz/forms/monitor_user.h"

#include "monitor/screen_builder.h"
#include "monitor/setting_keys.h"
#include "protocols/frame_bytes.h"

namespace tarnlink {
namespace {

constexpr FormDriver::Limits kLimits = {
    .steps = 40, .milliseconds = 3'000, .silence = 1'000, .pause = 20, .users_share_timer = true};
constexpr int kMostBoxes = 600;

Location LocationOf(FuzzInput& input, int protocol) {
  Location location;
  const std::uint8_t kind = input.Byte();
  location.Specification = protocol == kTarnlinkProtocol ? 0
                           : protocol == kZoltProtocol   ? kind & 1
                                                         : 1;
  location.StorageType = (kind >> 1) % 5;
  location.Representation = (kind >> 4) & 3;
  const int select_byte = location.StorageType >= kUnsignedWord ? int{kBoth} : kind >> 7;
  location.SelectByte = static_cast<std::uint8_t>(select_byte);
  location.Address = HexDigits(0xF400 + input.Byte(), 4);
  location.Alias = "at " + location.Address;
  const std::uint8_t flags = input.Byte();
  location.ScanFlags = (flags & 0x0F) == 0 ? (flags >> 4) & 3 : 0;
  location.BitAddress = flags & 0x0F;
  location.LogEnable = (flags & 0x20) != 0 ? 1 : 0;
  location.DDEEnable = (flags & 0x40) != 0 ? 1 : 0;
  if (protocol != kModbusProtocol) return location;
  location.LocSlaveAddress = "1";
  location.FunctionCode = "&H03";
  location.RegisterFollower = (flags & 0x80) != 0;
  location.NumReg = (flags & 0x10) != 0 ? 3 : 1;
  return location;
}

}  // namespace

MonitorUser::MonitorUser(FuzzInput& input, int protocol, FormDriver::Answerer slave)
    : monitor(world), driver(input, world, slave, kLimits), input_(input), protocol_(protocol) {
  WriteSetting(world.settings(), setting::kProtocol, std::to_string(protocol));
  WriteSetting(world.settings(), setting::kBaudrate, "3");
  WriteSetting(world.settings(), setting::kIgnoreErrors, "0");
  WriteSetting(world.settings(), setting::kMsgTimeout, "1");
  WriteSetting(world.settings(), setting::kLogPath, "/home/user/work");
  WriteSetting(world.settings(), setting::kExcelPath, "/home/user/work");
  WriteSetting(world.settings(), setting::kIdDefinition, "/home/user/work/default.ids");
  WriteSetting(world.settings(), setting::kMemoryMap, "/home/user/work/default.map");
  // All that the start of the program does beside this takes more time than a run.
  driver.Guard([&] {
    LoadOptions(monitor.main, monitor.options);
    monitor.main.InitForm();
  });
  driver.Check = [this] { Check(); };
}

void MonitorUser::Screen(int most) {
  frm_Main& main = monitor.main;
  for (int count = 1 + input_.Below(most); count > 0; --count) {
    const Location location = LocationOf(input_, protocol_);
    const int index = ++main.MaxId;
    BuildLocation(main, monitor.options, index,
                  {.tag = location.Specification == 0 ? kMemoryTag : kIdTag, .location = location});
  }
  main.LocationCount = main.MaxId;
  main.ShowLocationCount();
}

int MonitorUser::AnyLocation() {
  const int most = std::min(monitor.main.MaxId, 255);
  const int index = most == 0 ? 0 : 1 + input_.Below(most);
  return index > 0 && monitor.main.IsShown(index) ? index : 0;
}

// --- What is within reach ------------------------------------------------------------------------

void MonitorUser::AddRun() {
  frm_Main& main = monitor.main;
  driver.Form(main.form);
  driver.Add(main.Toolbar1(2), main.Toolbar1(3));
  driver.Do([this] {
    if (const int index = AnyLocation(); index > 0) monitor.main.RAM_LOC_VAL.DblClick(index);
  });
  driver.Do([this] {
    if (const int index = AnyLocation(); index > 0) {
      CheckBox& box = monitor.main.RAM_LOC_CHECK(index);
      if (box.Visible && box.Enabled) box.Value = !box.Value;
    }
  });
  for (int panel = main.StatusBar1.first(); panel <= main.StatusBar1.last(); ++panel) {
    driver.Watch(main.StatusBar1(panel).Text);
  }
  for (int i = 1; i <= main.MaxId; ++i) driver.Watch(main.RAM_LOC_VAL(i).Text);
}

void MonitorUser::AddWriteDialogs() {
  frm_WriteValue& value = monitor.write_value;
  driver.Form(value.form, true);
  driver.Add(value.txt_WriteValue, value.cmd_WriteOk, value.opt_WriteValueFormat, value.Option1,
             value.Text1, value.Values, value.cmd_WriteCancel);
  driver.Show(value.lbl_GoesOut);
  frm_WriteBitValue& bit = monitor.write_bit;
  driver.Form(bit.form, true);
  driver.Do([&bit, this] { bit.Choose(input_.Coin()); });
  driver.Add(bit.cmd_Ok, bit.cmd_Cancel);
}

void MonitorUser::AddMultipleRegisters() {
  frm_multiple_reg& registers = monitor.write_registers;
  driver.Form(registers.form, true);
  driver.Do([&registers, this] {
    const int index = input_.Below(kRegisterLines + 1);
    if (registers.value.Has(index)) registers.value(index).Text = driver.Text();
  });
  driver.Add(registers.Option_multiplereg, registers.Command1);
  driver.Do([&registers] { registers.Dismiss(); });
}

void MonitorUser::AddOptions() {
  driver.Form(monitor.main.form);
  driver.Add(monitor.main.M_options);
  frm_Options& o = monitor.options;
  driver.Form(o.form, true);
  driver.Add(o.cmd_OptionsOk, o.cmd_OptionsCancel, o.opt_Protocol, o.opt_Baudrate, o.opt_CommPort,
             o.ComPortNumber, o.cmbPortDevice, o.opt_stop, o.opt_parity, o.MicroSelect,
             o.txt_MapFile, o.cmdBrowseMapFile, o.txt_ZOLTIDDef, o.cmdBrowseZOLTIDFile,
             o.txt_databasefiles, o.cmdBrowseDatabasefiles, o.txt_LogPath, o.cmdBrowseLogPath,
             o.txt_PathToExcel, o.cmdBrowseExcel, o.chk_DisableCommErrors, o.sld_MsgTimeout,
             o.ScanningBox, o.chkGridOn, o.chkClearAllValues);
  driver.AddAll(o.chk_GeneralLogging);
}

void MonitorUser::AddSettings() {
  driver.Form(monitor.main.form);
  driver.Do([this] {
    if (const int index = AnyLocation(); index > 0) monitor.main.RAM_LOC_TEXT.DblClick(index);
  });
  frm_Settings& s = monitor.settings;
  driver.Form(s.form, true);
  driver.Add(s.cmd_Ok, s.optSpecification, s.cmbClass, s.cmbActualVariable, s.txt_Alias,
             s.txt_Address, s.txt_Address_dec, s.txt_BitAddress, s.opt_StorageType,
             s.opt_Representation, s.optSelectByte, s.txt_SlaveAddress, s.UpDown1, s.chk_Log,
             s.chk_UseDDE, s.txt_ExcelColumn, s.ud_Col, s.chk_DisableScanning, s.chk_contwrite,
             s.CmbFunc, s.txt_NumReg, s.cmd_Cancel, s.cmdDeleteLocation);
}

void MonitorUser::Check() {
  const frm_Main& main = monitor.main;
  Claim(main.MsgPointer >= 0 && main.MsgPointer <= kLastLocation, "the scan stands on a Location");
  Claim(main.MaxId >= 0 && main.MaxId <= kLastLocation, "the table has its size");
  Claim(main.LocationCount >= 0 && main.LocationCount <= main.MaxId, "no more than were made");
  Claim(world.dialogs().shown().size() < kMostBoxes, "boxes come one by one");
}

void MonitorUser::Run() {
  driver.Run();
  Leave();
}

// Behind a silent slave the watchdog opens the port once more; Stop then closes it.
void MonitorUser::Leave() {
  constexpr auto kWatchdog = std::chrono::seconds(6);
  frm_Main& main = monitor.main;
  world.faults().Clear();
  driver.Guard([&] {
    monitor.run.StopCommunication();
    if (main.tmr_noresponse->Enabled()) world.Advance(kWatchdog);
    monitor.run.StopCommunication();
    main.WCRChanged = main.ProjectChanged = false;
  });
  driver.Leave([&] {
    monitor.start.M_exit();
    Claim(!main.CommRunning && !main.filelogging, "nothing runs and no log is open");
  });
}

}  // namespace tarnlink
