#include "monitor/location_settings.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "common/numbers.h"
#include "common/text.h"
#include "monitor/scan_mark.h"

namespace tarnlink {

namespace {

constexpr Colour kBeingSet = 65535;  // yellow: the boxes whose dialog is open

// The function of a row of `CmbFunc`, such as "0x10".
int FunctionOf(const ComboBox::Item& row) {
  return ValInt("&H" + Right(row.text, 2), 0, UINT8_MAX);
}

std::uint8_t ByteOf(const std::string& text) {
  return static_cast<std::uint8_t>(ValInt(text, 0, UINT8_MAX));
}

}  // namespace

LocationSettings::LocationSettings(frm_Main& main, frm_Settings& settings, ObjectCommands& objects,
                                   EditHistory& history)
    : main_(main), form_(settings), objects_(objects), history_(history) {
  main_.RAM_LOC_TEXT.DblClick = [this](int index) { Open(index); };
  form_.cmd_Ok.Click = [this] { cmd_Ok(); };
  form_.cmd_Cancel.Click = [this] { cmd_Cancel(); };
  form_.cmdDeleteLocation.Click = [this] { cmdDeleteLocation(); };
  main_.CommRunning.Changed = [this] { AllowChanges(); };
}

// --- Opening -------------------------------------------------------------------------------------

void LocationSettings::Open(int index) {
  if (form_.form.Visible || !main_.RAM_LOC_TEXT.Has(index)) return;
  // The double click began with a press, which began a drag.
  if (main_.form.DragCancel) main_.form.DragCancel();
  main_.SelectedLocation = index;
  const Location& location = Target();
  const bool is_new = IsNew(location);
  ShowButtons(location);
  ShowFields(location);
  ShowFunction(location.FunctionCode, is_new);
  EnableForProtocol(location, is_new);
  KeepColours(index);
  SetColour(index, kBeingSet);
  block_.clear();
  form_.form.Visible = true;
}

// A run may end, or begin, behind the dialog.
void LocationSettings::AllowChanges() {
  const char* why_not =
      main_.CommRunning ? "Communication runs: press \"Stop Communication\" first" : "";
  for (CommandButton* button : {&form_.cmd_Ok, &form_.cmdDeleteLocation}) {
    button->Enabled = !main_.CommRunning;
    button->ToolTipText = why_not;
  }
}

// These come first: each presets fields that are then shown as they are stored.
void LocationSettings::ShowButtons(const Location& location) {
  form_.optSpecification.Clear();
  form_.optSpecification.Select(location.Specification == 0 ? kMemorySpecification
                                                            : kClassSpecification);
  form_.optSelectByte.Select(std::min<int>(location.SelectByte, kBoth));
  form_.opt_StorageType.Select(std::clamp<int>(location.StorageType, kBit, kSignedWord));
  form_.opt_Representation.Select(std::clamp<int>(location.Representation, kDecimal, kOctal));
}

void LocationSettings::ShowFields(const Location& location) {
  // A short address of a file ends in blanks, among which nothing could be typed.
  form_.txt_Address.Text = Trim(location.Address);
  form_.ShowDecimalAddress();
  form_.txt_BitAddress.Text = Hex(location.BitAddress);
  form_.txt_Alias.Text = location.Alias;
  form_.cmbActualVariable.SelectText(location.ActualVariable);
  form_.chk_Log.Value = location.LogEnable != 0;
  form_.txt_ExcelColumn.Text = location.ExcelColumn;
  form_.chk_UseDDE.Value = location.DDEEnable != 0;
  form_.txt_SlaveAddress.Text = location.LocSlaveAddress;
  form_.ShowClass(location.Class);
  form_.chk_contwrite.Value = (location.ScanFlags & kContinuousWrite) != 0;
  // Behind the other one, whose click would set it.
  form_.chk_DisableScanning.Value = (location.ScanFlags & kScanningDisabled) != 0;
  form_.txt_NumReg.Text = std::to_string(location.NumReg);
}

// Of a Location that nobody has defined yet the function must be chosen.
void LocationSettings::ShowFunction(const std::string& FunctionCode, bool is_new) {
  if (is_new && form_.IsModbus()) {
    form_.CmbFunc.Select(-1);
    form_.CmbFunc.Text = std::string(kNoFunctionCode);
    return;
  }
  // Any other function is the first row.
  const auto& rows = form_.CmbFunc.List.get();
  const int function = ValInt(FunctionCode, 0, UINT8_MAX);
  const auto row = std::find_if(rows.begin(), rows.end(),
                                [&](const auto& each) { return FunctionOf(each) == function; });
  form_.CmbFunc.Select(row == rows.end() ? 0 : static_cast<int>(row - rows.begin()));
}

// Whether words and "Both" can be chosen is left as the clicks of the other buttons have made it.
void LocationSettings::EnableForProtocol(const Location& location, bool is_new) {
  const bool modbus = form_.IsModbus();
  for (const int type : {kBit, kUnsignedByte, kSignedByte, kSignedWord}) {
    form_.opt_StorageType(type).Enabled = true;
  }
  form_.optSelectByte(kMsb).Enabled = true;
  form_.optSelectByte(kLsb).Enabled = true;
  form_.txt_BitAddress.Enabled = true;
  for (int i = 0; i < form_.optSpecification.count(); ++i) {
    form_.optSpecification(i).Enabled = !modbus;
  }
  form_.cmbClass.Enabled = !modbus;
  if (modbus) {
    form_.Frame10.Enabled = true;
    form_.txt_SlaveAddress.Enabled = true;
  } else {
    for (const int text : {kDecimal, kBinary, kOctal}) {
      form_.opt_Representation(text).Enabled = true;
    }
  }
  form_.CmbFunc.Enabled = modbus && !location.RegisterFollower;
  // The length of a block is given once, before it is read for the first time.
  form_.txt_NumReg.Enabled = modbus && is_new;
}

// Nobody has chosen its function yet.
bool LocationSettings::IsNew(const Location& location) {
  return location.FunctionCode == Location().FunctionCode && location.NumReg == 1 &&
         !location.RegisterFollower;
}

// --- OK ------------------------------------------------------------------------------------------

// A missing function code is found last, when all else has been stored. Users know the dialog that
// way.
void LocationSettings::cmd_Ok() {
  const int i = main_.SelectedLocation;
  GiveColoursBack(i);
  ScreenEdit edit = history_.Begin("settings of " + EditName(main_.RAM_LOC_TEXT(i).Text));
  const int last = std::min(i + BlockLength() - 1, main_.MaxId);
  for (int j = i; j <= std::max(i, last); ++j) edit.Location(j);
  for (const BlockMember& member : block_) edit.Location(member.index);
  Location& location = Target();
  StoreValue(location);
  StoreNames(location);
  StoreScanning(location);
  ShowOnScreen(location);
  StoreBlock();
  history_.Commit(edit, Effect::kChangesFile);
  main_.MarkChanged();  // also without a change
  Dialogs& dialogs = main_.platform().dialogs();
  if (IsBlockTooLong()) {
    dialogs.MessageBox({.text = "The block needs a location on the screen for each register.",
                        .title = std::string(kProgramTitle),
                        .icon = Icon::kExclamation});
  } else if (form_.CmbFunc.Enabled && form_.CmbFunc.Text.get() == kNoFunctionCode) {
    dialogs.MessageBox({.text = "Select Function Code", .title = ""});
  } else {
    form_.form.Visible = false;
  }
  // For another OK, where the form stays.
  KeepColours(i);
}

void LocationSettings::StoreValue(Location& location) {
  location.Address = FixedAddress(form_.txt_Address.Text.get());
  location.Class = ByteOf(form_.cmbClass.Text);
  if (!form_.IsMemory() && location.Class == 0) location.Class = 1;
  location.StorageType = std::max(form_.GetStorageTypeIndex(), 0);
  location.Representation = std::max(form_.opt_Representation.Selected(), 0);
  location.Specification = form_.IsMemory() ? 0 : 1;
  location.SelectByte = static_cast<std::uint8_t>(std::max(form_.optSelectByte.Selected(), 0));
  location.LocSlaveAddress = form_.txt_SlaveAddress.Text;
  location.BitAddress = ByteOf("&H" + form_.txt_BitAddress.Text.get());
}

// Screen files quote their texts.
void LocationSettings::StoreNames(Location& location) {
  location.Alias = WithoutQuotes(form_.txt_Alias.Text.get());
  location.ActualVariable = WithoutQuotes(form_.cmbActualVariable.Text.get());
}

void LocationSettings::StoreScanning(Location& location) {
  location.LogEnable = form_.chk_Log.Value ? 1 : 0;
  // A broadcast is never answered.
  if (form_.IsModbus() && form_.txt_SlaveAddress.Text.get() == "0") {
    form_.chk_DisableScanning.Value = true;
    form_.chk_contwrite.Value = true;
  }
  location.ScanFlags =
      static_cast<std::uint8_t>((form_.chk_DisableScanning.Value ? kScanningDisabled : 0) +
                                (form_.chk_contwrite.Value ? kContinuousWrite : 0));
  location.DDEEnable = form_.chk_UseDDE.Value ? 1 : 0;
  location.ExcelColumn = form_.chk_UseDDE.Value ? form_.txt_ExcelColumn.Text.get() : "0";
}

std::string LocationSettings::NameToolTip(const Location& location) const {
  std::string text = location.Address;
  if (location.StorageType == kBit) text += "." + std::to_string(location.BitAddress);
  text += "):";
  text += form_.opt_StorageType(location.StorageType).Caption.get();
  text += form_.opt_Representation(location.Representation).Caption.get();
  if (location.DDEEnable == 1) text += " [DDE]";
  return text;
}

void LocationSettings::ShowOnScreen(const Location& location) {
  const int i = main_.SelectedLocation;
  TextBox& name = main_.RAM_LOC_TEXT(i);
  ShowScanMark(main_, i);
  name.Text = location.Alias;
  name.ToolTipText = NameToolTip(location);
  main_.RAM_LOC_VAL(i).ToolTipText = location.ActualVariable;
  SetColour(i, location.RegisterFollower ? kBlockColour : kWindowBackground);
  main_.RAM_LOC_CHECK(i).Value = !form_.chk_DisableScanning.Value;
}

int LocationSettings::BlockLength() const {
  constexpr int kLongest = std::numeric_limits<std::int16_t>::max();
  const std::string& text = form_.txt_NumReg.Text;
  return text.empty() ? 0 : ValInt(text, 0, kLongest);
}

// Of a block that a file brought along, the Locations that have been deleted since do not matter.
bool LocationSettings::IsBlockTooLong() const {
  return form_.txt_NumReg.Enabled && main_.SelectedLocation + BlockLength() - 1 > main_.MaxId;
}

// The first Location of a block reads it, those behind it follow. Of the block that an OK before
// has stored nothing is left behind.
void LocationSettings::StoreBlock() {
  if (IsBlockTooLong()) return;
  TakeBackBlock();
  const int i = main_.SelectedLocation;
  const int length = BlockLength();
  const bool is_block = form_.txt_NumReg.Text.get() != "1";
  for (int j = i; j < i + length && j <= main_.MaxId; ++j) {
    block_.push_back(MemberOf(j));
    Location& location = main_.Locations[j];
    if (j == i) location.NumReg = static_cast<std::int16_t>(length);
    if (j != i && is_block) location.RegisterFollower = true;
    if (is_block) SetColour(j, kBlockColour);
    if (form_.CmbFunc.Text.get() != kNoFunctionCode) {
      location.FunctionCode = "&H" + Right(form_.CmbFunc.Text.get(), 2);
    }
  }
}

LocationSettings::BlockMember LocationSettings::MemberOf(int index) {
  const Location& location = main_.Locations[index];
  return {.index = index,
          .NumReg = location.NumReg,
          .RegisterFollower = location.RegisterFollower,
          .FunctionCode = location.FunctionCode,
          .name_colour = main_.RAM_LOC_TEXT(index).BackColor,
          .value_colour = main_.RAM_LOC_VAL(index).BackColor};
}

void LocationSettings::TakeBackBlock() {
  for (const BlockMember& member : block_) {
    Location& location = main_.Locations[member.index];
    location.NumReg = member.NumReg;
    location.RegisterFollower = member.RegisterFollower;
    location.FunctionCode = member.FunctionCode;
    main_.RAM_LOC_TEXT(member.index).BackColor = member.name_colour;
    main_.RAM_LOC_VAL(member.index).BackColor = member.value_colour;
  }
  block_.clear();
}

// --- Cancel, Delete Location ---------------------------------------------------------------------

// Also a Location of a block takes the plain colour, until the screen is built again. Users know
// the dialog that way.
void LocationSettings::cmd_Cancel() {
  SetColour(main_.SelectedLocation, kWindowBackground);
  form_.form.Visible = false;
}

void LocationSettings::cmdDeleteLocation() {
  const int i = main_.SelectedLocation;
  GiveColoursBack(i);
  objects_.DeleteLocation(i);
  if (main_.RAM_LOC_TEXT(i).Visible) {
    SetColour(i, kBeingSet);
  } else {
    form_.form.Visible = false;
  }
}

void LocationSettings::KeepColours(int index) {
  name_colour_ = main_.RAM_LOC_TEXT(index).BackColor;
  value_colour_ = main_.RAM_LOC_VAL(index).BackColor;
}

void LocationSettings::GiveColoursBack(int index) {
  main_.RAM_LOC_TEXT(index).BackColor = name_colour_;
  main_.RAM_LOC_VAL(index).BackColor = value_colour_;
}

void LocationSettings::SetColour(int index, Colour colour) {
  main_.RAM_LOC_TEXT(index).BackColor = colour;
  main_.RAM_LOC_VAL(index).BackColor = colour;
}

}  // namespace tarnlink
