#include "monitor/spreadsheet_link.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "common/dates.h"
#include "common/paths.h"
#include "common/shown_text.h"
#include "common/text.h"
#include "platform/path_resolver.h"

namespace tarnlink {
namespace {

constexpr int kNameRow = 1;
constexpr std::size_t kMostDigits = 15;  // that a cell keeps of a number

// A whole number from the front of `text`, which is cut off; 0 for none.
int TakeNumber(std::string_view& text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return error == std::errc() ? number : 0;
}

bool TakeLetter(std::string_view& text, char letter) {
  if (!text.starts_with(letter)) return false;
  text.remove_prefix(1);
  return true;
}

// A number as a decimal value box shows it. One with zeros in front is a text.
bool IsWholeNumber(std::string_view text) {
  if (text.starts_with('-')) text.remove_prefix(1);
  if (text.empty() || text.size() > kMostDigits) return false;
  if (text.starts_with('0') && text.size() > 1) return false;
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// Digits of another base are texts, all of them: "10" must not become a ten among texts.
bool IsDecimal(const Location& location) {
  return location.Representation != kHexadecimal && location.Representation != kBinary &&
         location.Representation != kOctal;
}

}  // namespace

void BoxLink::LinkPoke(const std::string& text, bool is_number) {
  if (LinkTopic != kTopic || LinkMode != kManual) {
    throw RunTimeError(kDeviceIo, "There is no spreadsheet \"" + LinkTopic + "\".");
  }
  const SheetCell cell = Cell();
  if (!is_number) return workbook_.Poke(cell, text);
  double number = 0.0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  workbook_.Poke(cell, number);
}

SheetCell BoxLink::Cell() const {
  std::string_view rest = LinkItem;
  SheetCell cell;
  if (TakeLetter(rest, 'R')) cell.row = TakeNumber(rest);
  if (TakeLetter(rest, 'C')) cell.column = TakeNumber(rest);
  if (!rest.empty() || cell.row < 1 || cell.column < 1 || cell.column > kLastCell.column) {
    throw RunTimeError(kSubscript, "A spreadsheet has no cell \"" + ShownText(LinkItem) + "\".");
  }
  return cell;
}

SpreadsheetLink::SpreadsheetLink(frm_Main& main, const frm_Options& options)
    : main_(main), options_(options), failures_(main.platform(), "During writing spreadsheet ") {}

void SpreadsheetLink::Start() {
  left_out_.clear();
  gave_up_ = false;
  Retire();
  // The workbooks of earlier runs keep theirs: they do not tell again, nor in this one's stead.
  told_ = std::make_shared<std::set<int>>();
  if (workbook_) BindFailures();
  if (!AnyLinked()) return;
  try {
    Open();
    StartProgram();
  } catch (const RunTimeError& error) {
    main_.platform().dialogs().MessageBox(
        {.text = "Error in starting Excel Application, remove all DDE enables !",
         .title = "Program Error",
         .icon = Icon::kCritical,
         .detail = error.what()});
    throw RunTimeError(kDialogCancelled);
  }
}

void SpreadsheetLink::Poke(int index) {
  if (!options_.chk_GeneralLogging(1).Value || !IsLinked(index) || gave_up_) return;
  try {
    // None of the Locations was linked at Start.
    if (!workbook_) Open();
  } catch (const RunTimeError& error) {
    gave_up_ = true;
    return TellOnce(error, Folder());
  }
  try {
    PokeBoxes(index);
  } catch (const RunTimeError& error) {
    if (!left_out_.insert(index).second) return;
    const std::string reason =
        main_.RAM_LOC_TEXT(index).Text.get() + ": " + error.what() + " Its values are left out.";
    failures_.Tell(RunTimeError(error.code(), reason), workbook_->path());
  }
}

void SpreadsheetLink::Save() {
  if (workbook_) workbook_->Save();
}

bool SpreadsheetLink::IsLinked(int index) const {
  return main_.IsShown(index) && main_.Locations[index].DDEEnable == 1;
}

bool SpreadsheetLink::AnyLinked() const {
  for (int i = 1; i <= main_.MaxId; ++i) {
    if (IsLinked(i)) return true;
  }
  return false;
}

// The last run's workbook stays as it is. It is not waited for if it still has to be saved; one
// that got nothing serves again, for the same screen on the same day.
void SpreadsheetLink::Retire() {
  std::erase_if(leaving_, [](const auto& workbook) { return workbook->Saved(); });
  if (!workbook_ || (!poked_ && workbook_->path().starts_with(PathOfDay()))) return;
  if (workbook_->Saved()) {
    workbook_.reset();
  } else {
    leaving_.push_back(std::move(workbook_));
  }
}

void SpreadsheetLink::Open() {
  if (workbook_) return;
  workbook_ = main_.platform().CreateWorkbook(NewPath());
  poked_ = false;
  BindFailures();
}

void SpreadsheetLink::BindFailures() {
  workbook_->SetOnFailure(
      [this, told = told_, path = workbook_->path()](const RunTimeError& error) {
        if (told->insert(error.code()).second) failures_.Tell(error, path);
      });
}

void SpreadsheetLink::StartProgram() {
  Platform& platform = main_.platform();
  const std::string program = UsableFile(options_.txt_PathToExcel.Text, platform.files());
  if (!HasFile(platform.files(), program)) return;
  if (platform.shell().StartProgram(program, workbook_->path())) return;
  throw RunTimeError(kFileNotFound, "\"" + program + "\" could not be started.");
}

std::string SpreadsheetLink::Folder() const {
  const Files& files = main_.platform().files();
  const std::string folder = UsableFolder(options_.txt_LogPath.Text, files);
  return HasFolder(files, folder) ? folder : files.DocumentsFolder();
}

// Screen and date: how the path of each workbook of the present screen begins.
std::string SpreadsheetLink::PathOfDay() const {
  std::string name = StripFileFromPath(main_.CurrentTarnLinkFile);
  if (const std::size_t dot = name.rfind('.'); dot != std::string::npos) name.resize(dot);
  if (name.empty()) name = kProgramTitle;
  name += FormatDate(main_.platform().clock().Now(), " yyyy-mm-dd", EnglishMonthNames());
  return JoinPath(Folder(), name);
}

std::string SpreadsheetLink::NewPath() const {
  Platform& platform = main_.platform();
  const std::string start =
      PathOfDay() + FormatDate(platform.clock().Now(), " hh-nn-ss", EnglishMonthNames());
  std::string path = start + ".xlsx";
  for (int i = 2; platform.files().Exists(path); ++i) {
    path = start + " (" + std::to_string(i) + ").xlsx";
  }
  return path;
}

void SpreadsheetLink::PokeBoxes(int index) {
  const Location& location = main_.Locations[index];
  const std::string column = "C" + Trim(location.ExcelColumn);
  const auto poke = [&](const TextBox& box, int row, bool is_number) {
    BoxLink link(*workbook_);
    link.LinkTopic = BoxLink::kTopic;
    link.LinkMode = BoxLink::kManual;
    link.LinkItem = "R" + std::to_string(row) + column;
    link.LinkPoke(box.Text, is_number);
  };
  const TextBox& value = main_.RAM_LOC_VAL(index);
  poke(main_.RAM_LOC_TEXT(index), kNameRow, false);
  poke(value, main_.DDERowCounter, IsDecimal(location) && IsWholeNumber(value.Text.get()));
  poked_ = true;
}

void SpreadsheetLink::TellOnce(const RunTimeError& error, const std::string& path) {
  if (told_->insert(error.code()).second) failures_.Tell(error, path);
}

}  // namespace tarnlink
