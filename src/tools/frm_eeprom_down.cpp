#include "tools/frm_eeprom_down.h"

#include <algorithm>
#include <array>

#include "common/numbers.h"
#include "common/paths.h"
#include "common/run_time_error.h"
#include "common/text.h"
#include "common/text_file.h"
#include "files/eeprom_output.h"
#include "files/eeprom_source.h"
#include "platform/path_resolver.h"
#include "protocols/zolt_frame.h"
#include "tools/def_dialog.h"
#include "tools/tool_port.h"

namespace tarnlink {

namespace {

constexpr int kTick = 100;  // ms
constexpr int kStep = 2;    // bytes that one answer holds
// The address in front of the first one that is read.
constexpr std::int32_t kBcUnitStart = 0x7FFE;
constexpr std::int32_t kDspStart = 0x8FFE;
constexpr std::int32_t kAddresses = 0x10000;

constexpr const char* kNoFile = "Output file not specified";

std::string FourDigits(std::int32_t number) { return Stuff(Hex(number), 4); }

}  // namespace

frm_EEPROM_Down::frm_EEPROM_Down(ToolHost& host)
    : comm_eeread(host.platform.CreatePort()),
      tim_eeread(host.platform.CreateTimer()),
      tim_eeread_timeout(host.platform.CreateTimer()),
      host_(host),
      line_(host, *comm_eeread, *tim_eeread_timeout) {
  form.Visible = false;
  std::vector<ComboBox::Item> slaves;
  for (int i = 0; i < 16; ++i) slaves.push_back({Hex(i), i});
  Slave_address.List = slaves;
  Slave_address.Select(0);
  Option1.Select(kBcUnit);
  EESize.Text = "512";
  txt_eepromsourcefile.Text = kNoFile;
  txt_eepromsourcefile.Locked = true;
  txt_eepromsourcefile.Click = [this] { ChooseFile(); };
  cmd_read_EEPROM.Click = [this] { ReadEEPROM(); };
  cmd_Cancel.Click = [this] { is_reading_ ? Stopped("Stopped.") : Unload(); };
  progress.Cancel.Click = [this] { Stopped("Stopped."); };
  tim_eeread->SetInterval(kTick);
  tim_eeread->SetOnTimer([this] { Tick(); });
  line_.Answered = [this](std::string_view frame) { return TakeAnswer(frame); };
  line_.Repeated = [this](const std::string& trouble) { progress.lblTrouble.Caption = trouble; };
  line_.Lost = [this](const std::string& reason) { ErrorHandler(reason, LastReadText()); };
}

// --- Beginning and end ---------------------------------------------------------------------------

void frm_EEPROM_Down::Show() {
  if (form.Visible) return;
  form.Visible = true;
  ShowState();
}

void frm_EEPROM_Down::Unload() {
  if (!form.Visible) return;
  ShutDownCom();
  form.Visible = false;
  if (Unloaded) Unloaded();
}

void frm_EEPROM_Down::ShutDownCom() {
  is_reading_ = is_busy_ = false;
  tim_eeread->SetEnabled(false);
  line_.Close();
  progress.form.Visible = false;
  ShowState();
}

void frm_EEPROM_Down::ErrorHandler(const std::string& text, const std::string& detail) {
  Stopped(text);
  host_.platform.dialogs().MessageBox(
      {.text = text, .title = "Error", .icon = Icon::kCritical, .detail = detail});
}

void frm_EEPROM_Down::Stopped(const std::string& what) {
  const bool was_on = is_reading_;
  ShutDownCom();
  lblState.Caption = what + (was_on ? " " + LastReadText() + " No file has been written." : "");
}

std::string frm_EEPROM_Down::LastReadText() const {
  if (bytes_.empty()) return "No address has been read.";
  return "The last address that was read is 0X" +
         FourDigits(first_ + static_cast<std::int32_t>(bytes_.size()) - 1) + ".";
}

void frm_EEPROM_Down::ShowState() {
  for (Control* control :
       std::initializer_list<Control*>{&Slave_address, &Option1(kBcUnit), &Option1(kDsp), &EESize,
                                       &txt_eepromsourcefile, &cmd_read_EEPROM}) {
    control->Enabled = !is_reading_;
  }
}

void frm_EEPROM_Down::ShowProgress() {
  const auto done = static_cast<int>(bytes_.size());
  const int all = end_ - first_ + kStep;
  progress.ProgressBar1.Max = all;
  progress.ProgressBar1.Value = done;
  progress.lblItem.Caption =
      "0X" + FourDigits(NextAddress) + ", " + std::to_string(all - done) + " bytes left";
}

void frm_EEPROM_Down::ChooseFile() {
  if (is_reading_) return;
  const auto name =
      host_.platform.dialogs().SaveFile({.filter = "EEPROM def Files (*.def)|*.def",
                                         .file_name = kAnyDef,
                                         .folder = UsableFolder(folder_, host_.platform.files()),
                                         .extension = "def",
                                         .confirm_overwrite = true});
  if (!IsChosen(name)) return;
  folder_ = FolderOfPath(*name);
  txt_eepromsourcefile.Text = *name;
  txt_eepromsourcefile.ToolTipText = *name;
  lblState.Caption = "";
}

// --- Reading -------------------------------------------------------------------------------------

void frm_EEPROM_Down::ReadEEPROM() {
  path_ = txt_eepromsourcefile.Text;
  if (is_reading_) return;
  if (ToLower(StripExtFromPath(path_)) != "def") {
    lblState.Caption = "Choose a destination file whose name ends in \".def\".";
    return;
  }
  bytes_.clear();
  doubted_.clear();
  unsound_blocks_.clear();
  NextAddress = Option1.Selected() == kBcUnit ? kBcUnitStart : kDspStart;
  first_ = NextAddress + kStep;
  const int most = kAddresses - first_;
  const int size = ValInt(EESize.Text.get(), 0, kAddresses);
  if (size < 1 || size > most) {
    return ErrorHandler("The size must be 1 to " + std::to_string(most) + ".");
  }
  end_ = NextAddress + (size + 1) / kStep * kStep;
  slave_ = Slave_address.Text;
  try {
    line_.Open();
  } catch (const RunTimeError& error) {
    return ErrorHandler(PortTrouble(error));
  }
  is_reading_ = true;
  lblState.Caption = "";
  progress.lblTrouble.Caption = "";
  ShowState();
  ShowProgress();
  progress.form.Visible = true;
  Restart(*tim_eeread);
}

void frm_EEPROM_Down::Tick() {
  if (!is_reading_ || is_busy_ || !line_.IsReady()) return;
  if (NextAddress == end_) return Finish();
  NextAddress += kStep;
  is_busy_ = true;
  ShowProgress();
  line_.Send(zolt_frame::Request(zolt_frame::kReadMemory, slave_, zolt_frame::kReadMemoryId,
                                 FourDigits(NextAddress)),
             slave_, std::string(zolt_frame::kReadMemoryId));
}

// The low data byte is that of the address, the high one that of the next.
bool frm_EEPROM_Down::TakeAnswer(std::string_view frame) {
  if (zolt_frame::KindOf(zolt_frame::TypeOf(frame)) != zolt_frame::kReadAcknowledge) return false;
  for (const zolt_frame::Field field : {zolt_frame::kDataLow, zolt_frame::kDataHigh}) {
    bytes_.push_back(static_cast<std::uint8_t>(zolt_frame::Number(frame, field)));
  }
  is_busy_ = false;
  progress.lblTrouble.Caption = "";
  ShowProgress();
  if (bytes_.size() % kEepromBlock != 0) return true;
  if (IsBlockSound()) {
    doubted_.clear();
  } else {
    ReadBlockAgain();
  }
  return true;
}

bool frm_EEPROM_Down::IsBlockSound() const {
  std::array<std::uint8_t, kEepromBlock> block{};
  std::copy(bytes_.end() - kEepromBlock, bytes_.end(), block.begin());
  const std::uint16_t check = EepromCheck(block);
  return block[kEepromBlockData] == (check & 0xFF) && block[kEepromBlockData + 1] == check >> 8;
}

// An answer does not say which address it is of. Late ones would shift the block; so one whose
// check does not hold is taken only when it has been read twice as it is.
void frm_EEPROM_Down::ReadBlockAgain() {
  std::vector<std::uint8_t> block(bytes_.end() - kEepromBlock, bytes_.end());
  if (block == doubted_) {
    unsound_blocks_.push_back(first_ + static_cast<std::int32_t>(bytes_.size()) - kEepromBlock);
    doubted_.clear();
    return;
  }
  doubted_ = std::move(block);
  bytes_.resize(bytes_.size() - kEepromBlock);
  NextAddress -= kEepromBlock;
  line_.AwaitQuiet();
}

// --- The files -----------------------------------------------------------------------------------

void frm_EEPROM_Down::Finish() {
  ShutDownCom();
  if (WriteDefinition()) BinaryStep();
}

bool frm_EEPROM_Down::WriteDefinition() {
  try {
    host_.platform.files().WriteWhole(path_,
                                      EepromDefText(static_cast<std::uint16_t>(first_), bytes_));
    return true;
  } catch (const RunTimeError& error) {
    ErrorHandler(error.what());
    return false;
  }
}

void frm_EEPROM_Down::BinaryStep() {
  try {
    Files& files = host_.platform.files();
    const EepromSource source = ReadEepromSource(DecodeText(files.ReadWhole(path_)));
    files.WriteWhole(OutputPath(path_, "bin"), BinBytes(source));
  } catch (const RunTimeError& error) {
    return ErrorHandler(error.what());
  }
  lblState.Caption = std::to_string(bytes_.size()) + " bytes read. " + DifferenceText();
  host_.platform.dialogs().MessageBox({.text = "Tarnlink File is generated",
                                       .title = "File Generation Done...",
                                       .icon = Icon::kInformation,
                                       .detail = DifferenceText()});
}

// The image holds the check as it should be, not as the slave has it.
std::string frm_EEPROM_Down::DifferenceText() const {
  if (unsound_blocks_.empty()) return "";
  std::string text = "The slave holds blocks whose check is wrong:";
  for (const std::int32_t address : unsound_blocks_) text += " 0X" + FourDigits(address);
  return text + ". In the image it is right.";
}

}  // namespace tarnlink
