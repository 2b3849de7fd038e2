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

constexpr int kMostReadings = 5;  // of a block or an address that changes with each of them
constexpr std::int32_t kNoWord = -1;

constexpr const char* kNoFile = "Output file not specified";
constexpr const char* kNoDefFile = "Choose a destination file whose name ends in \".def\".";

std::string FourDigits(std::int32_t number) { return Stuff(Hex(number), 4); }

bool IsDefPath(const std::string& path) { return ToLower(StripExtFromPath(path)) == "def"; }

std::string ListOf(const std::vector<std::int32_t>& addresses) {
  std::string text;
  for (const std::int32_t address : addresses) text += " 0X" + FourDigits(address);
  return text;
}

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
  progress.lblItem.Caption = "0X" + FourDigits(std::max(NextAddress, first_)) + ", " +
                             std::to_string(all - done) + " bytes left";
}

bool frm_EEPROM_Down::ChooseFile() {
  if (is_reading_) return false;
  const auto name =
      host_.platform.dialogs().SaveFile({.filter = "EEPROM def Files (*.def)|*.def",
                                         .file_name = kAnyDef,
                                         .folder = UsableFolder(folder_, host_.platform.files()),
                                         .extension = "def",
                                         .confirm_overwrite = true});
  if (!IsChosen(name)) return false;
  folder_ = FolderOfPath(*name);
  txt_eepromsourcefile.Text = *name;
  txt_eepromsourcefile.ToolTipText = *name;
  lblState.Caption = "";
  return true;
}

// --- Reading -------------------------------------------------------------------------------------

void frm_EEPROM_Down::ReadEEPROM() {
  path_ = txt_eepromsourcefile.Text;
  if (is_reading_) return;
  if (!IsDefPath(path_)) {
    lblState.Caption = kNoDefFile;
    return;
  }
  bytes_.clear();
  doubted_.clear();
  again_.clear();
  unsound_blocks_.clear();
  changing_blocks_.clear();
  is_block_read_ = hears_more_ = false;
  readings_ = askings_ = 0;
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
  hears_more_ = hears_more_ || line_.HeardMore();
  if (is_block_read_) CheckBlock();
  if (NextAddress == end_ && askings_ == 0) return Finish();
  if (askings_ == 0) {
    doubted_word_ = kNoWord;
    NextAddress += kStep;
  }
  is_busy_ = true;
  ShowProgress();
  line_.Send(zolt_frame::Request(zolt_frame::kReadMemory, slave_, zolt_frame::kReadMemoryId,
                                 FourDigits(NextAddress)),
             slave_, std::string(zolt_frame::kReadMemoryId));
}

// The low data byte is that of the address, the high one that of the next.
bool frm_EEPROM_Down::TakeAnswer(std::string_view frame) {
  if (zolt_frame::KindOf(zolt_frame::TypeOf(frame)) != zolt_frame::kReadAcknowledge) return false;
  is_busy_ = false;
  progress.lblTrouble.Caption = again_;
  if (readings_ > 0) {
    // No answer that came twice may shift the block once more.
    line_.AwaitQuiet(hears_more_ ? EepromLine::kAnswerTime : 0);
    if (!IsWordSure(zolt_frame::Number(frame, zolt_frame::kData))) return true;
  }
  for (const zolt_frame::Field field : {zolt_frame::kDataLow, zolt_frame::kDataHigh}) {
    bytes_.push_back(static_cast<std::uint8_t>(zolt_frame::Number(frame, field)));
  }
  ShowProgress();
  const bool is_last = NextAddress == end_;
  is_block_read_ = is_last || bytes_.size() % kEepromBlock == 0;
  if (is_last) line_.AwaitQuiet(EepromLine::kAnswerTime);
  return true;
}

// Of a block that is read again each address is asked for until it answers twice the same.
bool frm_EEPROM_Down::IsWordSure(std::int32_t word) {
  ++askings_;
  const bool is_sure = word == doubted_word_ || askings_ == kMostReadings;
  if (is_sure) askings_ = 0;
  doubted_word_ = word;
  return is_sure;
}

// What is read of a last block that is not whole has no check.
bool frm_EEPROM_Down::IsBlockSound() const {
  if (bytes_.size() % kEepromBlock != 0) return true;
  std::array<std::uint8_t, kEepromBlock> block{};
  std::copy(bytes_.end() - kEepromBlock, bytes_.end(), block.begin());
  const std::uint16_t check = EepromCheck(block);
  return block[kEepromBlockData] == (check & 0xFF) && block[kEepromBlockData + 1] == check >> 8;
}

// An answer does not say which address it is of. Late ones would shift the block; so one whose
// check does not hold is taken only when it has been read twice as it is. Behind the last one
// nobody asks any more, so that the answer too many is seen by itself.
void frm_EEPROM_Down::CheckBlock() {
  is_block_read_ = false;
  const bool has_more = NextAddress == end_ && line_.HeardMore();
  const bool is_sound = IsBlockSound();
  const bool is_steady = std::equal(bytes_.begin() + static_cast<std::ptrdiff_t>(BlockBegin()),
                                    bytes_.end(), doubted_.begin(), doubted_.end());
  ++readings_;
  if ((is_sound && !has_more) || is_steady || readings_ == kMostReadings) {
    TakeBlock(is_sound || is_steady);
  } else {
    ReadBlockAgain(is_sound ? "more than one answer came" : "its check is wrong");
  }
}

void frm_EEPROM_Down::TakeBlock(bool is_steady) {
  const std::int32_t address = first_ + static_cast<std::int32_t>(BlockBegin());
  if (!IsBlockSound()) unsound_blocks_.push_back(address);
  if (!is_steady) changing_blocks_.push_back(address);
  doubted_.clear();
  readings_ = 0;
  hears_more_ = false;
  again_.clear();
  progress.lblTrouble.Caption = "";
}

void frm_EEPROM_Down::ReadBlockAgain(const std::string& why) {
  const std::size_t begin = BlockBegin();
  doubted_.assign(bytes_.begin() + static_cast<std::ptrdiff_t>(begin), bytes_.end());
  bytes_.resize(begin);
  NextAddress = first_ + static_cast<std::int32_t>(begin) - kStep;
  again_ = "The block at 0X" + FourDigits(NextAddress + kStep) + " is read again: " + why + ".";
  progress.lblTrouble.Caption = again_;
}

// --- The files -----------------------------------------------------------------------------------

void frm_EEPROM_Down::Finish() {
  ShutDownCom();
  if (WriteDefinition()) BinaryStep();
}

// Another file is asked for until it is written: what was read is not lost with it.
bool frm_EEPROM_Down::WriteDefinition() {
  for (std::string failure = WriteFailure(); !failure.empty(); failure = WriteFailure()) {
    ErrorHandler(failure, "What was read is kept. Choose another file.");
    if (!form.Visible) return false;
    if (!ChooseFile()) {
      lblState.Caption = BytesRead() + "No file has been written: " + failure;
      return false;
    }
    path_ = txt_eepromsourcefile.Text;
  }
  return true;
}

std::string frm_EEPROM_Down::WriteFailure() {
  if (!IsDefPath(path_)) return kNoDefFile;
  try {
    host_.platform.files().WriteWhole(path_,
                                      EepromDefText(static_cast<std::uint16_t>(first_), bytes_));
    return {};
  } catch (const RunTimeError& error) {
    return error.what();
  }
}

void frm_EEPROM_Down::BinaryStep() {
  try {
    Files& files = host_.platform.files();
    const EepromSource source = ReadEepromSource(DecodeText(files.ReadWhole(path_)));
    files.WriteWhole(OutputPath(path_, "bin"), BinBytes(source));
  } catch (const RunTimeError& error) {
    return ErrorHandler(error.what(), "\"" + path_ + "\" is written.");
  }
  lblState.Caption = BytesRead() + DifferenceText();
  host_.platform.dialogs().MessageBox({.text = "Tarnlink File is generated",
                                       .title = "File Generation Done...",
                                       .icon = Icon::kInformation,
                                       .detail = DifferenceText()});
}

// The image holds the check as it should be, not as the slave has it.
std::string frm_EEPROM_Down::DifferenceText() const {
  std::string text;
  if (!unsound_blocks_.empty()) {
    text = "The slave holds blocks whose check is wrong:" + ListOf(unsound_blocks_) +
           ". In the image it is right.";
  }
  if (!changing_blocks_.empty()) {
    text += " Blocks that were read otherwise each time:" + ListOf(changing_blocks_) + ".";
  }
  return text;
}

std::string frm_EEPROM_Down::BytesRead() const {
  return std::to_string(bytes_.size()) + " bytes read. ";
}

}  // namespace tarnlink
