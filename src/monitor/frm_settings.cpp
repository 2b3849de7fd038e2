#include "monitor/frm_settings.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "common/numbers.h"
#include "common/shown_text.h"
#include "common/text.h"

namespace tarnlink {

namespace {

constexpr int kAddressDigits = 4;
constexpr int kLongestDecimal = 5;
constexpr int kLastZoltSlave = 0xF;
constexpr int kLastModbusSlave = 247;

template <std::size_t N>
std::vector<std::string> Captions(const std::array<std::string_view, N>& texts) {
  return {texts.begin(), texts.end()};
}

std::vector<ComboBox::Item> Rows(const std::vector<std::string>& texts) {
  std::vector<ComboBox::Item> rows;
  for (const std::string& text : texts) rows.push_back({text, static_cast<int>(rows.size())});
  return rows;
}

// A row for each entry; its data is the entry's index, whatever order the rows are shown in.
template <class Entries, class Name>
std::vector<ComboBox::Item> NameRows(const Entries& entries, Name name) {
  std::vector<ComboBox::Item> rows;
  rows.reserve(entries.size());
  for (const auto& entry : entries) rows.push_back({name(entry), static_cast<int>(rows.size())});
  return rows;
}

}  // namespace

frm_Settings::frm_Settings(frm_Main& main, const frm_Options& options, const MemoryMap& map,
                           IdNames& ids)
    : opt_StorageType("opt_StorageType", Captions(kStorageTypeCaptions)),
      opt_Representation("opt_Representation", Captions(kRepresentationCaptions)),
      main_(main),
      options_(options),
      map_(map),
      ids_(ids) {
  form.Visible = false;
  ids.Changed = [this] { ShowRevision(); };
  FillLists();
  BindGroups();
  BindBoxes();
}

void frm_Settings::FillLists() {
  cmbClass.List = Rows({"1", "2", "3", "4", "5", "6"});
  CmbFunc.List = Rows({"0x00", "0x03", "0x04", "0x06", "0x10"});
  CmbFunc.Text = std::string(kNoFunctionCode);
  txt_Address.MaxLength = kAddressDigits;
  txt_Address.ToolTipText = "Address and ID in HEX format !";
  txt_Address_dec.MaxLength = kLongestDecimal;
  txt_Address_dec.ToolTipText = "Address and ID in Decimal format !";
  chk_DisableScanning.ToolTipText = "Disables the scanning of this location";
  chk_contwrite.ToolTipText = "Write continuous (e.g. waterpressure)";
}

void frm_Settings::BindGroups() {
  optSpecification.Click = [this](int Index) { SpecificationClicked(Index); };
  optSelectByte.Click = [this](int Index) { SelectByteClicked(Index); };
  opt_StorageType.Click = [this](int) { StorageTypeClicked(); };
  cmbActualVariable.Click = [this] { ActualVariableClicked(); };
}

void frm_Settings::BindBoxes() {
  txt_Address.LostFocus = [this] { AddressLeft(); };
  txt_Address_dec.LostFocus = [this] { DecimalAddressLeft(); };
  ud_Col.Step = [this](int step) { StepColumn(step); };
  UpDown1.Step = [this](int step) { StepSlave(step); };
  chk_contwrite.Click = [this] {
    // What is written continuously is not read.
    if (chk_contwrite.Value) chk_DisableScanning.Value = true;
  };
}

// --- What the buttons do to each other -----------------------------------------------------------

void frm_Settings::SpecificationClicked(int Index) {
  // The storage type that is selected here may empty the box.
  const std::string name = cmbActualVariable.Text;
  const bool is_class = Index == kClassSpecification;
  frmAddress.Caption = is_class ? "ID" : "Address";
  if (is_class) {
    ShowRevision();
  } else {
    Frame9.Caption = "Specification";
    Frame9.ToolTipText = "";
  }
  frmSelectByte.Enabled = is_class;
  for (int i = 0; i < optSelectByte.count(); ++i) optSelectByte(i).Enabled = is_class;
  optSelectByte.Select(is_class ? kLsb : kMsb);
  frmStorageType.Enabled = true;
  EnableStorage(true, !is_class);
  opt_StorageType.Select(kUnsignedByte);
  chk_contwrite.Enabled = true;
  cmbClass.Enabled = is_class;
  cmbActualVariable.Text = name;
  FillActualVariables(true);
}

// The frame may be too narrow for it; then the tool tip has it whole.
void frm_Settings::ShowRevision() {
  const std::string shown = ShownText(ids_.IDRevision());
  Frame9.Caption = shown;
  Frame9.ToolTipText = shown;
}

void frm_Settings::SelectByteClicked(int Index) {
  txt_BitAddress.Enabled = false;
  frm_BitAddress.Enabled = false;
  const bool both = Index == kBoth;
  EnableStorage(!both, both);
  opt_StorageType.Select(both ? kUnsignedWord : kUnsignedByte);
}

void frm_Settings::EnableStorage(bool bytes, bool words) {
  for (int i = 0; i < opt_StorageType.count(); ++i) {
    opt_StorageType(i).Enabled = i <= kSignedByte ? bytes : words;
  }
}

void frm_Settings::StorageTypeClicked() {
  const bool is_bit = GetStorageTypeIndex() == kBit;
  txt_BitAddress.Enabled = is_bit;
  frm_BitAddress.Enabled = is_bit;
  // The bits of a NEC controller have a list of their own.
  if (IsMemory() && main_.MicroType == kNecListing) FillActualVariables(false);
}

// --- Names ---------------------------------------------------------------------------------------

void frm_Settings::FillActualVariables(bool KeepText) {
  const std::string kept = KeepText ? cmbActualVariable.Text.get() : std::string();
  std::vector<ComboBox::Item> rows;
  if (!IsMemory()) {
    rows = NameRows(ids_.items(), [](const IDItem& each) { return each.Name; });
  } else if (IsAvr(main_.MicroType)) {
    rows = NameRows(map_.variables(), [](const MapVariable& each) { return each.Name; });
  } else if (main_.MicroType == kNecListing && GetStorageTypeIndex() == kBit) {
    rows = NameRows(map_.bits(), [](const NecBit& each) { return each.Label; });
  } else if (main_.MicroType == kNecListing) {
    rows = NameRows(map_.bytes(), [](const NecByte& each) { return each.Label; });
  }
  std::stable_sort(rows.begin(), rows.end(), [](const auto& one, const auto& other) {
    return ToLower(one.text) < ToLower(other.text);
  });
  cmbActualVariable.List = rows;
  cmbActualVariable.ListIndex = -1;
  cmbActualVariable.Text = kept;
}

void frm_Settings::ActualVariableClicked() {
  const int row = cmbActualVariable.ListIndex;
  if (row < 0) {
    if (IsMemory()) TakeTypedName();
    return;
  }
  const int entry = cmbActualVariable.List.get().at(static_cast<std::size_t>(row)).data;
  if (IsMemory()) {
    TakeMapName(entry);
  } else {
    TakeIdName(entry);
  }
  ShowDecimalAddress();
}

void frm_Settings::TakeMapName(int row) {
  const auto entry = static_cast<std::size_t>(row);
  const bool is_bit = GetStorageTypeIndex() == kBit;
  if (main_.MicroType == kNecListing) {
    const std::int32_t address =
        is_bit ? map_.bits().at(entry).address : map_.bytes().at(entry).address;
    txt_Address.Text = FormatHex(Hex(address), kAddressDigits);
    txt_BitAddress.Text = is_bit ? Hex(map_.bits().at(entry).BitAddress) : std::string();
    return;
  }
  const MapVariable& variable = map_.variables().at(entry);
  txt_Address.Text = variable.address;
  // The map knows no bits: one is chosen in its variable.
  if (is_bit) return;
  txt_BitAddress.Text = "";
  opt_StorageType.Clear();
  opt_StorageType.Select(variable.StorageType);
}

// "table+3" is an element of a variable.
void frm_Settings::TakeTypedName() {
  if (!IsAvr(main_.MicroType)) return;
  const std::string address =
      GetVyroLstByteAddress(map_.variables(), cmbActualVariable.Text.get(), GetStorageTypeIndex());
  if (address.empty()) return;
  txt_Address.Text = address;
  ShowDecimalAddress();
}

void frm_Settings::TakeIdName(int row) {
  const IDItem& item = ids_.items().at(static_cast<std::size_t>(row));
  txt_Address.Text = Right("0000" + Hex(item.ID), kAddressDigits);
  if (!IsModbus()) ShowClass(item.Class);
  optSelectByte.Clear();
  optSelectByte.Select(item.ByteSelect);
}

// A class without a row is shown all the same.
void frm_Settings::ShowClass(int data_class) { cmbClass.SelectText(std::to_string(data_class)); }

// --- Boxes that go together ----------------------------------------------------------------------

void frm_Settings::ShowDecimalAddress() {
  const std::string address = txt_Address.Text;
  txt_Address_dec.Text = std::to_string(ValInt("&H" + address + "&", 0, UINT16_MAX));
}

void frm_Settings::AddressLeft() {
  txt_Address.Text = FormatHex(txt_Address.Text.get(), kAddressDigits);
  ShowDecimalAddress();
}

void frm_Settings::DecimalAddressLeft() {
  const int number = ValInt(txt_Address_dec.Text.get(), 0, UINT16_MAX + 1);
  if (number > UINT16_MAX) txt_Address_dec.Text = "0";
  txt_Address.Text = FormatHex(Hex(number > UINT16_MAX ? 0 : number), kAddressDigits);
}

void frm_Settings::StepColumn(int step) {
  txt_ExcelColumn.Text = SteppedColumn(txt_ExcelColumn.Text.get(), step);
}

void frm_Settings::StepSlave(int step) {
  const int last = IsModbus() ? kLastModbusSlave : kLastZoltSlave;
  const int slave = ValInt("&H" + txt_SlaveAddress.Text.get() + "&", 0, last) + step;
  txt_SlaveAddress.Text = Hex(std::clamp(slave, 0, last));
}

}  // namespace tarnlink
