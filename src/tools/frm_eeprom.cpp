#include "tools/frm_eeprom.h"

#include <algorithm>

#include "common/numbers.h"
#include "common/paths.h"
#include "common/run_time_error.h"
#include "common/text.h"
#include "common/text_file.h"
#include "files/eeprom_output.h"
#include "platform/path_resolver.h"
#include "protocols/zolt_frame.h"
#include "tools/def_dialog.h"
#include "tools/list_file.h"
#include "tools/tool_port.h"

namespace tarnlink {

namespace {

constexpr int kTick = 10;  // ms
constexpr int kTlk = 0;    // of `chkOutputFormat`
constexpr int kBin = 1;
constexpr int kMostWrongAnswers = 5;
constexpr int kMannerAcknowledges = 3;
constexpr int kMostAcknowledges = 5;
// So often more may come behind an answer before it is taken all the same.
constexpr int kMostAnswersWithMore = 5;
constexpr const char* kNoBlock = "The EEPROM source file holds no block behind a line \"START\".";

std::string FourDigits(std::uint16_t number) { return Stuff(Hex(number), 4); }
std::string TwoDigits(int number) { return Stuff(Hex(number), 2); }

// Under which ID a byte of this page is written. An image has the pages 80 and 81; page 81 has the
// alias that a slave acknowledges, for one of four question marks no slave takes. A byte of another
// page goes out without an ID, in a frame of twelve bytes that no slave answers.
std::string PrefixOf(std::uint16_t address) {
  const std::string page = TwoDigits(address >> 8);
  return page == "80" || page == "81" ? std::string(zolt_frame::WriteAlias(page)) : "";
}

// A value of one digit has a blank in front.
std::string WriteMessage(const std::string& slave, std::uint16_t address,
                         const EepromRecord& record) {
  return zolt_frame::Request(
      zolt_frame::kWriteMemory, slave, PrefixOf(address),
      FourDigits(address).substr(2) + RightAlign(ToUpper(record.HexValue), 2));
}

// The high data byte of the answer is that of the address behind the one that is asked.
std::string VerifyMessage(const std::string& slave, std::uint16_t address) {
  return zolt_frame::Request(zolt_frame::kReadMemory, slave, zolt_frame::kReadMemoryId,
                             FourDigits(static_cast<std::uint16_t>(address - 1)));
}

std::optional<std::uint16_t> TwiceThere(std::vector<std::uint16_t> addresses) {
  std::sort(addresses.begin(), addresses.end());
  const auto twice = std::adjacent_find(addresses.begin(), addresses.end());
  if (twice == addresses.end()) return std::nullopt;
  return *twice;
}

bool IsKind(std::string_view frame, std::uint8_t kind) {
  return zolt_frame::KindOf(zolt_frame::TypeOf(frame)) == kind;
}

}  // namespace

frm_EEPROM::frm_EEPROM(ToolHost& host)
    : comm_eewrite(host.platform.CreatePort()),
      tim_eewrite(host.platform.CreateTimer()),
      tim_verify(host.platform.CreateTimer()),
      tim_eewrite_timeout(host.platform.CreateTimer()),
      host_(host),
      line_(host, *comm_eewrite, *tim_eewrite_timeout) {
  form.Visible = false;
  for (TextBox* box : {&txt_eepromsourcefile, &txt_FileChecksum, &txt_SlaveAddress}) {
    box->Locked = true;
  }
  txt_eepromsourcefile.Text = kNoFile;
  for (const int format : {kTlk, kBin}) chkOutputFormat(format).Value = true;
  txt_SlaveAddress.Text = "0";
  ud_SlaveAddress.Step = [this](int step) { StepSlave(step); };
  cmd_Browse.Click = [this] { Browse(); };
  cmd_TarnlinkFile.Click = [this] { MakeOutputFiles(); };
  cmd_CalcFileChecksum.Click = [this] { CalcFileChecksum(); };
  cmd_WriteEEPROM.Click = [this] { WriteEEPROM(); };
  cmd_VerifyEEPROM.Click = [this] { VerifyEEPROM(); };
  cmd_Stop.Click = [this] { Stop(); };
  cmd_Cancel.Click = [this] { Writing ? Stop() : Unload(); };
  cmdCopyResults.Click = [this] {
    if (CopyText) CopyText(ResultText());
  };
  cmdSaveResults.Click = [this] { SaveResults(); };
  for (Timer* timer : {tim_eewrite.get(), tim_verify.get()}) {
    timer->SetInterval(kTick);
    timer->SetOnTimer([this] { Tick(); });
  }
  line_.Answered = [this](std::string_view frame) { return TakeAnswer(frame); };
  line_.Repeated = [this](const std::string& trouble) { lblTrouble.Caption = trouble; };
  line_.Lost = [this](const std::string& reason) { ReportError(reason, ConfirmedText()); };
  ShowState();
}

// --- Beginning and end ---------------------------------------------------------------------------

void frm_EEPROM::Show() {
  if (form.Visible) return;
  form.Visible = true;
  ShowState();
}

bool frm_EEPROM::MayClose() {
  if (!Writing || !was_written_) return true;
  const bool is_writing = pass_ == Pass::kWrite;
  is_asking_ = true;
  const Answer answer = host_.platform.dialogs().MessageBox(
      {.text = is_writing ? "The EEPROM is being written. Stop and close the window?"
                          : "What was written is being verified. Stop and close the window?",
       .title = caption.Caption,
       .icon = Icon::kQuestion,
       .buttons = Buttons::kYesNo,
       .second_is_default = true,
       .detail = is_writing ? "An image that is not complete fails its check."
                            : "What the slave holds is not proved yet."});
  is_asking_ = false;
  return answer == Answer::kYes;
}

void frm_EEPROM::Unload() {
  if (!form.Visible || is_asking_ || !MayClose()) return;
  if (Writing) Stop();
  Halt();
  form.Visible = false;
  if (Unloaded) Unloaded();
}

void frm_EEPROM::Halt() {
  Writing = Busy = false;
  tim_eewrite->SetEnabled(false);
  tim_verify->SetEnabled(false);
  line_.Close();
  ShowState();
}

void frm_EEPROM::Stop() {
  if (!Writing) return;
  Halt();
  AddResult("Stopped. " + ConfirmedText());
}

void frm_EEPROM::ReportError(const std::string& text, const std::string& detail) {
  const bool was_on = Writing;
  Halt();
  lblTrouble.Caption = "";
  if (was_on) {
    AddResult("Ended: " + text + (detail.empty() ? "" : " " + detail));
    // Where it is leaves no room for the path of the source.
    lblLeft.Caption = detail;
  }
  host_.platform.dialogs().MessageBox(
      {.text = text, .title = "Error", .icon = Icon::kCritical, .detail = detail});
}

std::string frm_EEPROM::ConfirmedText() const {
  if (LastConfirmed.empty()) return "No address has been confirmed.";
  const std::string text = "The last address that was confirmed is " + LastConfirmed + ".";
  return was_written_ && pass_ == Pass::kWrite ? text + " Write the whole image again." : text;
}

void frm_EEPROM::ShowState() {
  for (Control* control : std::initializer_list<Control*>{
           &cmd_Browse, &fra_Eewrite, &chkOutputFormat(kTlk), &chkOutputFormat(kBin),
           &txt_SlaveAddress, &ud_SlaveAddress}) {
    control->Enabled = !Writing;
  }
  cmd_Stop.Enabled = Writing;
  for (CommandButton* button :
       {&cmd_CalcFileChecksum, &cmd_TarnlinkFile, &cmd_WriteEEPROM, &cmd_VerifyEEPROM}) {
    button->Enabled = FileOpen && !Writing;
  }
  const bool has_results = !lstResults.List->empty();
  for (CommandButton* button : {&cmdCopyResults, &cmdSaveResults}) button->Enabled = has_results;
}

void frm_EEPROM::StepSlave(int step) {
  constexpr int kLast = 15;
  const auto now = static_cast<int>(Val("&H" + txt_SlaveAddress.Text.get()));
  txt_SlaveAddress.Text = Hex(std::clamp(now + step, 0, kLast));
}

// --- The source and its output files -------------------------------------------------------------

void frm_EEPROM::Browse() {
  if (Writing) return;
  const auto name =
      host_.platform.dialogs().OpenFile({.filter = std::string(kAnyDef) + "|" + kAnyDef,
                                         .file_name = kAnyDef,
                                         .folder = UsableFolder(folder_, host_.platform.files())});
  FileOpen = IsChosen(name);
  if (FileOpen) folder_ = FolderOfPath(*name);
  txt_eepromsourcefile.Text = FileOpen ? *name : std::string(kNoFile);
  txt_eepromsourcefile.ToolTipText = FileOpen ? *name : std::string();
  txt_FileChecksum.Text = "";
  ShowSource();
  ShowState();
}

// At a glance, before anything is done with it; what is done reads it anew.
void frm_EEPROM::ShowSource() {
  records_.clear();
  std::string trouble;
  try {
    if (FileOpen) {
      TakeRecords(ReadEepromSource(DecodeText(host_.platform.files().ReadWhole(Path()))));
      if (records_.empty()) trouble = kNoBlock;
    }
  } catch (const RunTimeError& error) {
    records_.clear();
    trouble = error.what();
  }
  ShowImage();
  if (!trouble.empty()) lblSource.Caption = trouble;
}

std::optional<EepromSource> frm_EEPROM::ReadSource() {
  try {
    return ReadEepromSource(DecodeText(host_.platform.files().ReadWhole(Path())));
  } catch (const RunTimeError& error) {
    ReportError(error.what());
    return std::nullopt;
  }
}

void frm_EEPROM::MakeOutputFiles() {
  if (!FileOpen || Writing) return;
  const std::optional<EepromSource> source = ReadSource();
  if (!source) return;
  const std::string tlk = OutputPath(Path(), "tlk");
  const std::string bin = OutputPath(Path(), "bin");
  if (tlk == Path() || bin == Path()) {
    return ReportError("The output file would replace the source file.");
  }
  const bool makes_tlk = chkOutputFormat(kTlk).Value;
  const bool makes_bin = chkOutputFormat(kBin).Value;
  if (!makes_tlk && !makes_bin) {
    lblLeft.Caption = "No file format is ticked.";
    return;
  }
  std::string done;
  try {
    Files& files = host_.platform.files();
    if (makes_tlk) {
      files.WriteWhole(tlk, EncodeText(TlkText(*source)));
      done = "\"" + tlk + "\" is made.";
    }
    if (makes_bin) files.WriteWhole(bin, BinBytes(*source));
  } catch (const RunTimeError& error) {
    return ReportError(error.what(), done);
  }
  host_.platform.dialogs().MessageBox({.text = "Tarnlink File is generated",
                                       .title = "File Generation Done...",
                                       .icon = Icon::kInformation});
}

void frm_EEPROM::CalcFileChecksum() {
  if (!FileOpen || Writing) return;
  try {
    const std::string bytes = host_.platform.files().ReadWhole(Path());
    txt_FileChecksum.Text = "&H" + Hex(FileChecksum(bytes));
  } catch (const RunTimeError& error) {
    ReportError(error.what());
  }
}

// --- The run -------------------------------------------------------------------------------------

std::string frm_EEPROM::ImageText() const {
  return std::to_string(records_.size()) + " bytes, " + records_.front().Address + " to " +
         records_.back().Address;
}

// Throws RunTimeError for an address that is none.
void frm_EEPROM::TakeRecords(const EepromSource& source) {
  records_.clear();
  addresses_.clear();
  for (const EepromBlock& block : source.blocks) {
    for (const EepromRecord& record : block) {
      addresses_.push_back(AddressOf(record));
      records_.push_back(record);
    }
  }
}

void frm_EEPROM::ShowImage() {
  ForgetRun();
  std::vector<EepromMap::Cell> cells;
  for (const EepromRecord& record : records_) {
    cells.push_back({record.Address, record.HexValue + " " + record.Comment});
  }
  picMap.Fill(std::move(cells));
  lblSource.Caption = records_.empty() ? "" : ImageText();
}

// What is shown of the run before is not of the image that is shown now.
void frm_EEPROM::ForgetRun() {
  LastConfirmed.clear();
  lstResults.List = {};
  prgRun.Value = 0;
  for (Label* label : {&lblProgress, &lblLeft, &lblTrouble}) label->Caption = "";
}

// All of it is checked before the first byte goes out.
bool frm_EEPROM::LoadRecords() {
  const std::optional<EepromSource> source = ReadSource();
  if (!source) return false;
  try {
    TakeRecords(*source);
  } catch (const RunTimeError& error) {
    ReportError(error.what());
    return false;
  }
  if (!records_.empty()) return true;
  ReportError(kNoBlock);
  return false;
}

bool frm_EEPROM::AsksFirst() {
  const auto stuck = std::find_if(addresses_.begin(), addresses_.end(),
                                  [](std::uint16_t address) { return PrefixOf(address).empty(); });
  std::string detail = "All that these addresses hold now is lost.";
  if (stuck != addresses_.end()) {
    detail += " Only pages 80 and 81 can be written: the run will get no further than 0X" +
              FourDigits(*stuck) + ".";
  }
  if (const auto twice = TwiceThere(addresses_)) {
    detail += " The source has the address 0X" + FourDigits(*twice) + " more than once.";
  }
  const std::string text = "Write " + ImageText() + ", into slave " + slave_ + "?";
  return host_.platform.dialogs().MessageBox({.text = text,
                                              .title = "Write EEPROM",
                                              .icon = Icon::kQuestion,
                                              .buttons = Buttons::kYesNo,
                                              .second_is_default = true,
                                              .detail = detail}) == Answer::kYes;
}

void frm_EEPROM::WriteEEPROM() {
  if (!FileOpen || Writing || !LoadRecords()) return;
  slave_ = txt_SlaveAddress.Text;
  if (AsksFirst() && form.Visible && !Writing) Begin(Pass::kWrite);
}

void frm_EEPROM::VerifyEEPROM() {
  if (!FileOpen || Writing || !LoadRecords()) return;
  slave_ = txt_SlaveAddress.Text;
  Begin(Pass::kVerify);
}

void frm_EEPROM::Begin(Pass first) {
  ShowImage();
  was_written_ = first == Pass::kWrite;
  if (host_.GivePort && !host_.GivePort()) {
    AddResult("Not begun: the main window communicates.");
    host_.platform.dialogs().MessageBox({.text = "Stop Communication First",
                                         .title = "Communication Error",
                                         .icon = Icon::kCritical});
    return;
  }
  try {
    line_.Open();
  } catch (const RunTimeError& error) {
    const std::string reason = PortTrouble(error);
    AddResult("Not begun: " + reason);
    return ReportError(reason);
  }
  Writing = true;
  ShowState();
  BeginPass(first);
}

void frm_EEPROM::BeginPass(Pass pass) {
  pass_ = pass;
  LastConfirmed.clear();
  next_ = 0;
  repeats_ = wrong_answers_ = other_acknowledges_ = 0;
  Sent = Answered = 0;
  Busy = is_held_ = is_block_due_ = false;
  prgRun.Max = static_cast<int>(records_.size());
  tim_eewrite->SetEnabled(pass == Pass::kWrite);
  tim_verify->SetEnabled(pass == Pass::kVerify);
  ShowLeft();
}

void frm_EEPROM::Tick() {
  if (!Writing || !line_.IsReady()) return;
  if (is_held_) return EndWait();
  if (Busy) return;
  if (next_ == records_.size()) return EndPass();
  SendNext();
}

void frm_EEPROM::SendNext() {
  ByteInBlock = static_cast<std::uint8_t>(next_ % kEepromBlock);
  const std::uint16_t address = addresses_[next_];
  lblProgress.Caption =
      Record().Address + " : " + Record().HexValue + " (" + Record().Comment + ")";
  picMap.Mark(next_, CellState::kInWork);
  Busy = true;
  wrong_answers_ = answers_with_more_ = acknowledges_ = 0;
  ++Sent;
  if (pass_ == Pass::kWrite) {
    return line_.Send(WriteMessage(slave_, address, Record()), slave_, PrefixOf(address));
  }
  ExpectedValue = Record().DecValue;
  line_.Send(VerifyMessage(slave_, address), slave_, std::string(zolt_frame::kReadMemoryId));
}

bool frm_EEPROM::TakeAnswer(std::string_view frame) {
  return pass_ == Pass::kWrite ? TakeWriteAnswer(frame) : TakeReadAnswer(frame);
}

// The acknowledgement of another byte came late, or twice: ours is still to come. The value is not
// looked at: not every slave sends it back, and it is proved in the verify pass.
bool frm_EEPROM::TakeWriteAnswer(std::string_view frame) {
  if (!IsKind(frame, zolt_frame::kWriteAcknowledge)) return false;
  const std::uint16_t address = addresses_[next_];
  const bool is_ours = zolt_frame::Text(frame, zolt_frame::kId) == PrefixOf(address) &&
                       zolt_frame::Number(frame, zolt_frame::kDataHigh) == (address & 0xFF);
  if (is_ours) other_acknowledges_ = 0;
  if (is_ours || IsManner(frame)) {
    Confirm();
  } else {
    line_.AskAgain("the answer was to another request");
  }
  return true;
}

// Not every slave says which byte it acknowledges. What comes each time, behind a quiet line, is no
// late one; and one that says something else each time has acknowledged all the same.
bool frm_EEPROM::IsManner(std::string_view frame) {
  std::string said{zolt_frame::Text(frame, zolt_frame::kId)};
  said += zolt_frame::Text(frame, zolt_frame::kDataHigh);
  if (said != other_acknowledge_) other_acknowledges_ = 0;
  other_acknowledge_ = std::move(said);
  ++other_acknowledges_;
  ++acknowledges_;
  return other_acknowledges_ >= kMannerAcknowledges || acknowledges_ >= kMostAcknowledges;
}

// The low data byte is that of the address in front. An answer to an earlier request is found out
// by it, now or at the next address.
std::optional<std::uint16_t> frm_EEPROM::WordExpected() const {
  if (next_ == 0 || addresses_[next_ - 1] + 1 != addresses_[next_]) return std::nullopt;
  return static_cast<std::uint16_t>(ExpectedValue << 8 | records_[next_ - 1].DecValue);
}

bool frm_EEPROM::TakeReadAnswer(std::string_view frame) {
  if (!IsKind(frame, zolt_frame::kReadAcknowledge)) return false;
  const auto word = static_cast<std::uint16_t>(zolt_frame::Number(frame, zolt_frame::kData));
  const bool is_right = word >> 8 == ExpectedValue && WordExpected().value_or(word) == word;
  if (is_right) {
    if (IsProvedByNext()) {
      Confirm();
    } else {
      is_held_ = true;
      line_.AwaitQuiet(EepromLine::kAnswerTime);
    }
    return true;
  }
  ++wrong_answers_;
  const bool is_sure = wrong_answers_ > 1 && word == last_wrong_;
  last_wrong_ = word;
  if (is_sure || wrong_answers_ == kMostWrongAnswers) {
    VerifyError(word);
  } else {
    line_.AskAgain("another value came");
  }
  return true;
}

// The answer for the next record holds this one's byte as well.
bool frm_EEPROM::IsProvedByNext() const {
  return next_ + 1 < records_.size() && addresses_[next_] + 1 == addresses_[next_ + 1];
}

// What came behind the answer may be the true one.
void frm_EEPROM::EndWait() {
  is_held_ = false;
  if (!line_.HeardMore() || ++answers_with_more_ == kMostAnswersWithMore) return Confirm();
  line_.AskAgain("more than one answer came");
}

void frm_EEPROM::VerifyError(std::uint16_t word) {
  const bool is_front_right = !WordExpected() || (*WordExpected() & 0xFF) == (word & 0xFF);
  const bool is_own = word >> 8 != ExpectedValue && is_front_right;
  const std::size_t wrong = is_own ? next_ : next_ - 1;
  const EepromRecord& record = records_[wrong];
  picMap.Mark(wrong, CellState::kWrong);
  if (!is_own) LastConfirmed = wrong == 0 ? "" : records_[wrong - 1].Address;
  if (is_own && is_block_due_) AddBlock();
  ReportError("Verify Error on " + Path(),
              record.Address + ": " + TwoDigits(record.DecValue) + " expected, " +
                  TwoDigits(is_own ? word >> 8 : word & 0xFF) + " read. " + ConfirmedText());
}

void frm_EEPROM::Confirm() {
  if (is_block_due_) AddBlock();
  Busy = false;
  ++Answered;
  repeats_ += line_.Repeats();
  LastConfirmed = Record().Address;
  lblTrouble.Caption = "";
  picMap.Mark(next_, pass_ == Pass::kWrite ? CellState::kWritten : CellState::kVerified);
  const bool is_proved = pass_ == Pass::kWrite || !IsProvedByNext();
  ++next_;
  ShowLeft();
  is_block_due_ = ByteInBlock + 1 == kEepromBlock;
  if (is_block_due_ && is_proved) AddBlock();
}

void frm_EEPROM::AddBlock() {
  is_block_due_ = false;
  const std::string repeats = repeats_ == 0 ? "" : ", repeated " + TimesText(repeats_);
  AddResult(records_[next_ - kEepromBlock].Address + " to " + records_[next_ - 1].Address + " " +
            Verb() + repeats);
  repeats_ = 0;
}

void frm_EEPROM::EndPass() {
  if (pass_ == Pass::kWrite) return BeginPass(Pass::kVerify);
  const std::string count = std::to_string(records_.size()) + " bytes ";
  Halt();
  AddResult(count + (was_written_ ? "written and verified." : "verified."));
}

void frm_EEPROM::ShowLeft() {
  prgRun.Value = static_cast<int>(next_);
  const std::string left = std::to_string(records_.size() - next_) + " of " +
                           std::to_string(records_.size()) + " bytes left to be ";
  lblLeft.Caption = left + Verb();
}

// --- Results -------------------------------------------------------------------------------------

void frm_EEPROM::AddResult(const std::string& line) {
  std::vector<std::string> lines = lstResults.List;
  lines.push_back(line);
  lstResults.List = lines;
  if (!Writing) lblLeft.Caption = line;
  ShowState();
}

std::string frm_EEPROM::ResultText() const {
  std::string text;
  for (const std::string& line : lstResults.List.get()) text.append(line).append("\n");
  return text;
}

void frm_EEPROM::SaveResults() {
  SaveListFile(host_.platform, {.title = caption.Caption,
                                .file_name = "Results.txt",
                                .folder = folder_,
                                .text = ResultText()});
}

}  // namespace tarnlink
