#include "tools/sniffer_log.h"

#include "common/paths.h"
#include "platform/path_resolver.h"
#include "tools/sniffer_text.h"

namespace tarnlink {
namespace {

constexpr const char* kName = "Sniffer.log";
constexpr const char* kNoFolder = "C:\\";  // in place of one that is not there

}  // namespace

std::string SnifferLog::AskPath(const std::string& folder) {
  const Files& files = platform_.files();
  std::string usable = UsableFolder(folder, files);
  if (!HasFolder(files, usable)) usable = UsableFolder(kNoFolder, files);
  return platform_.dialogs()
      .SaveFile({.title = "Save log file as",
                 .filter = "Log File (*.log)|*.log",
                 .file_name = JoinPath(usable, kName),
                 .folder = usable,
                 .extension = "log"})
      .value_or("");
}

void SnifferLog::Open(const std::string& path, Date now) {
  constexpr Date kHalfADay = 0.5;
  const Locale& locale = platform_.locale();
  const std::string heading = SnifferLogHeading(now, locale);
  // The other half of the day may be written with other letters.
  encoding_ = LogEncoding(heading, locale.LongTime(now + kHalfADay));
  path_ = path;
  rows_ = platform_.files().OpenRows(path, true);
  Write(heading);
}

void SnifferLog::Write(std::string_view row) {
  if (!IsOpen()) return;
  try {
    rows_->Append(encoding_.Bytes(row));
  } catch (const RunTimeError&) {
    Close();
    throw;
  }
}

void SnifferLog::Tell(const RunTimeError& error) {
  platform_.dialogs().MessageBox(
      {.text = SystemErrorText(error.code()) + "\r\nDuring writing log file " + path_,
       .title = "Internal System Error",
       .icon = Icon::kCritical,
       .detail = error.what()});
}

}  // namespace tarnlink
