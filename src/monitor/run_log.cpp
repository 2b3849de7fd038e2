#include "monitor/run_log.h"

#include "common/paths.h"
#include "common/text_file.h"
#include "platform/path_resolver.h"

namespace tarnlink {

namespace {

constexpr const char* kNoPlainFile = "C:\\";  // the folder in place of one without a plain file
constexpr Date kHalfADay = 0.5;

}  // namespace

RunLog::RunLog(frm_Main& main, const frm_Options& options)
    : main_(main), options_(options), failures_(main.platform(), "During writing log file ") {}

// --- Start ---------------------------------------------------------------------------------------

void RunLog::PrepareLog() {
  FindColumns();
  if (columns_.empty()) return;
  const std::string proposed = ProposedFile();
  const auto path = main_.platform().dialogs().SaveFile({.title = "Save log file as",
                                                         .filter = "Log File (*.log)|*.log",
                                                         .file_name = proposed,
                                                         .folder = FolderOfPath(proposed),
                                                         .extension = "log",
                                                         .confirm_overwrite = true});
  if (!path) throw RunTimeError(kDialogCancelled);
  if (!path->empty()) return Open(*path);
  Open(JoinPath(UsableFolder(options_.txt_LogPath.Text, main_.platform().files()),
                LogName(main_.MaxId)));
}

void RunLog::FindColumns() {
  columns_.clear();
  column_of_.fill(0);
  for (int i = 1; i <= main_.MaxId; ++i) {
    if (main_.Locations[i].LogEnable != 1 || !main_.IsShown(i)) continue;
    columns_.push_back(i);
    column_of_[static_cast<std::size_t>(i)] = static_cast<int>(columns_.size());
  }
  drops_deleted_ = options_.SelectedProtocol() == kTarnlinkProtocol;
}

std::string RunLog::ProposedFile() const {
  const Files& files = main_.platform().files();
  std::string folder = UsableFolder(options_.txt_LogPath.Text, files);
  if (files.ListFolder(folder).empty()) folder = UsableFolder(kNoPlainFile, files);
  return JoinPath(folder, LogName(main_.MaxId));
}

void RunLog::Open(const std::string& path) {
  const Date now = main_.platform().clock().Now();
  const Locale& locale = main_.platform().locale();
  std::vector<LogColumn> columns;
  columns.reserve(columns_.size());
  for (const int i : columns_) {
    columns.push_back({main_.Locations[i].Alias, main_.Locations[i].Address});
  }
  const std::string heading = LogHeading(FormatDate(now, "d-mmm-yyyy", locale.Months()),
                                         main_.CurrentTarnLinkFile, columns);
  // The other half of the day may be written with other letters.
  encoding_ = LogEncoding(heading, locale.LongTime(now) + locale.LongTime(now + kHalfADay));
  path_ = path;
  rows_ = main_.platform().files().OpenRows(path, false);
  main_.filelogging = true;
  column_ = 0;
  rows_->Append(encoding_.Bytes(heading));
  rows_->Append(encoding_.Bytes(Time()));
}

std::string RunLog::Time() const {
  return LogField(main_.platform().locale().LongTime(main_.platform().clock().Now()));
}

// --- The run -------------------------------------------------------------------------------------

// The tabs that are owed up to `column`: one for each that the scan has passed over, and its own.
// One whose Location was deleted has none under the TarnLink protocol.
std::string RunLog::TabsUpTo(int column) const {
  std::string tabs;
  for (int c = column_ + 1; c <= column; ++c) {
    const int index = columns_[static_cast<std::size_t>(c - 1)];
    if (!drops_deleted_ || main_.IsShown(index)) tabs += '\t';
  }
  return tabs;
}

void RunLog::LogRequest(int index) {
  if (!main_.filelogging) return;
  const int column = column_of_.at(static_cast<std::size_t>(index));
  // A write sends the scan back to its Location, whose field may stand in this row already.
  if (column <= column_) return;
  const std::string tabs = TabsUpTo(column);
  column_ = column;
  Write(tabs);
}

void RunLog::RecordValue(int index) {
  if (!options_.chk_GeneralLogging(0).Value || !main_.RAM_LOC_VAL.Has(index)) return;
  WriteField(index, main_.RAM_LOC_VAL(index).Text.get());
}

void RunLog::LogUnreadable(int index) { WriteField(index, "NA"); }

void RunLog::WriteField(int index, std::string_view text) {
  if (!main_.filelogging || !main_.IsShown(index)) return;
  if (main_.Locations[index].LogEnable != 1) return;
  const int column = column_of_.at(static_cast<std::size_t>(index));
  if (column == 0) return;
  const std::string field = TabsUpTo(column) + LogField(text);
  column_ = column;
  Write(field);
}

void RunLog::EndLogRow() {
  if (!main_.filelogging) return;
  const std::string tabs = TabsUpTo(static_cast<int>(columns_.size()));
  column_ = 0;
  Write(tabs + std::string(kLineEnd));
  Write(Time());
}

void RunLog::CloseLogFile() {
  if (rows_ == nullptr) return;
  main_.filelogging = false;
  rows_.reset();
}

void RunLog::Write(std::string_view piece) {
  if (piece.empty() || rows_ == nullptr) return;
  try {
    rows_->Append(encoding_.Bytes(piece));
  } catch (const RunTimeError& error) {
    CloseLogFile();
    const std::string reason = std::string(error.what()) + " The log ends there; the run goes on.";
    failures_.Tell(RunTimeError(error.code(), reason), path_);
  }
}

}  // namespace tarnlink
