#include "form/settings_fixture.h"

#include <algorithm>

#include "common/numbers.h"
#include "common/text.h"

namespace tarnlink {
namespace {

constexpr const char* kAtmega = "/home/user/work/atmega.map";
constexpr const char* kXmega = "/home/user/work/xmega.map";
constexpr const char* kNec = "/home/user/work/nec.lst";
constexpr const char* kIds = "/home/user/work/boiler.ids";

// A map of four variables that begin at this address.
std::string MapText(const std::string& processor, int first) {
  const auto line = [&](const char* name, int offset) {
    return std::string(name) + "  DATA  0000" + Stuff(Hex(first + offset), 4);
  };
  return FileText({"__cpu_name = " + processor, "ENTRY LIST", line("zero", 0), line("Table", 2),
                   line("alpha", 6), line("sbBeta", 7)});
}

std::string NecLine(const std::string& label, const std::string& place) {
  constexpr std::size_t kLabelField = 23;
  std::string field = label;
  field.resize(kLabelField, ' ');
  return std::string(11, ' ') + field + " " + place;
}

std::string ColourName(Colour colour) {
  switch (colour) {
    case kWhite:
      return "white";
    case kWindowBackground:
      return "window";
    case 0xFFFF00:
      return "aqua";
    case 65535:
      return "yellow";
    default:
      return Hex(colour);
  }
}

template <class T>
std::string Number(T value) {
  return " " + std::to_string(value);
}

}  // namespace

std::string RecordText(const Location& location) {
  return "kind" + Number(location.Specification) + " type" + Number(location.StorageType) +
         " text" + Number(location.Representation) + " at [" + location.Address + "]." +
         std::to_string(location.BitAddress) + " [" + location.Alias + "] [" +
         location.ActualVariable + "] log" + Number(location.LogEnable) + " dde" +
         Number(location.DDEEnable) + " column " + location.ExcelColumn + " slave " +
         location.LocSlaveAddress + " flags" + Number(location.ScanFlags) + " class" +
         Number(location.Class) + " byte" + Number(location.SelectByte) + " function " +
         location.FunctionCode + " registers" + Number(location.NumReg) +
         (location.RegisterFollower ? " follower" : "");
}

void SettingsTest::Begin(int protocol, int locations) {
  Store("Communication", "Protocol", std::to_string(protocol));
  StartProgram();
  for (int i = 0; i < locations; ++i) AddLocation();
}

void SettingsTest::BeginWith(int protocol, const std::vector<Location>& locations) {
  Begin(protocol, static_cast<int>(locations.size()));
  for (std::size_t i = 0; i < locations.size(); ++i) Define(static_cast<int>(i) + 1, locations[i]);
}

void SettingsTest::Define(int index, const Location& location) {
  main().Locations[index] = location;
  main().RAM_LOC_TEXT(index).Text = location.Alias;
}

void SettingsTest::LoadAtmegaMap() {
  world.disk().Put(kAtmega, MapText("ATmega64", 0x100));
  main().MicroType = kAtmegaMap;
  main().LoadClass7(kAtmega);
}

void SettingsTest::LoadXmegaMap() {
  world.disk().Put(kXmega, MapText("ATxmega64", 0x2100));
  main().MicroType = kXmegaMap;
  main().LoadClass7(kXmega);
}

void SettingsTest::LoadNecListing() {
  world.disk().Put(
      kNec, FileText({"Target CPU", "BITS", NecLine("lamp", "FE21.3"), NecLine("Heat", "FE21.7"),
                      "DATA", NecLine("ubFlow", "FE20"), NecLine("Tank", "0123"), "CODE"}));
  main().LoadClass7(kNec);
}

void SettingsTest::ReadIds() {
  world.disk().Put(kIds, FileText({"*R1.2", "Temperature,1A,3,H", "-Status,2F,L", "flow,10,2"}));
  main().ReadIDItems(kIds);
}

void SettingsTest::Confirm(int index) {
  OpenSettings(index);
  Ok();
}

void SettingsTest::Type(TextBox& box, const std::string& text) {
  box.Text = text;
  if (box.LostFocus) box.LostFocus();
}

void SettingsTest::PickName(const std::string& name) {
  const auto& rows = form().cmbActualVariable.List.get();
  const auto row =
      std::find_if(rows.begin(), rows.end(), [&](const auto& each) { return each.text == name; });
  ASSERT_NE(row, rows.end()) << name;
  form().cmbActualVariable.Pick(static_cast<int>(row - rows.begin()));
}

ScriptedDialog& SettingsTest::ExpectNoFunction() {
  return world.dialogs().ExpectMessageBox({.text = "Select Function Code", .title = ""});
}

ScriptedDialog& SettingsTest::ExpectBlockTooLong() {
  return world.dialogs().ExpectMessageBox(
      {.text = "The block needs a location on the screen for each register.",
       .title = "TarnLink",
       .icon = Icon::kExclamation});
}

std::string SettingsTest::Disabled() {
  frm_Settings& f = form();
  std::vector<const Control*> all;
  const auto add = [&](const std::vector<const Control*>& controls) {
    all.insert(all.end(), controls.begin(), controls.end());
  };
  const auto add_group = [&](OptionGroup& group) {
    for (int i = 0; i < group.count(); ++i) all.push_back(&group(i));
  };
  add({&f.Frame9, &f.cmbClass, &f.cmbActualVariable, &f.txt_Alias});
  add_group(f.optSpecification);
  add({&f.frmAddress, &f.txt_Address, &f.txt_Address_dec, &f.frm_BitAddress, &f.txt_BitAddress});
  all.push_back(&f.frmStorageType);
  add_group(f.opt_StorageType);
  add_group(f.opt_Representation);
  all.push_back(&f.frmSelectByte);
  add_group(f.optSelectByte);
  add({&f.Frame10, &f.txt_SlaveAddress, &f.UpDown1, &f.chk_Log, &f.chk_UseDDE, &f.txt_ExcelColumn,
       &f.ud_Col, &f.chk_DisableScanning, &f.chk_contwrite});
  add({&f.Function_code, &f.CmbFunc, &f.txt_NumReg, &f.cmd_Ok, &f.cmd_Cancel,
       &f.cmdDeleteLocation});
  std::string text;
  for (const Control* each : all) {
    if (!each->Enabled) text += (text.empty() ? "" : " ") + each->name();
  }
  return text;
}

std::string SettingsTest::Chosen() {
  std::string text;
  for (const OptionGroup* group : {&form().optSpecification, &form().optSelectByte,
                                   &form().opt_StorageType, &form().opt_Representation}) {
    const int set = group->Selected();
    text += (text.empty() ? "" : ", ") + (set < 0 ? "none" : (*group)(set).Caption.get());
  }
  return text;
}

std::string SettingsTest::Address() {
  return form().txt_Address.Text.get() + " " + form().txt_Address_dec.Text.get() + " ." +
         form().txt_BitAddress.Text.get();
}

std::string SettingsTest::Names() {
  std::string text;
  for (const auto& row : form().cmbActualVariable.List.get()) {
    text += (text.empty() ? "" : " ") + row.text + "=" + std::to_string(row.data);
  }
  return text;
}

std::string SettingsTest::Colours(int index) {
  return ColourName(main().RAM_LOC_TEXT(index).BackColor) + " " +
         ColourName(main().RAM_LOC_VAL(index).BackColor);
}

}  // namespace tarnlink
