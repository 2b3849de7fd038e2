// The log file of a run: a row for each round of the scan, a column for each Location that was
// there and had `LogEnable` 1 at Start. The columns keep their places, whatever the scan passes
// over and whoever does not answer.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "files/log_file.h"
#include "monitor/frm_main.h"
#include "monitor/frm_options.h"
#include "monitor/later_file_errors.h"

namespace tarnlink {

class RunLog {
 public:
  // Both outlive it.
  RunLog(frm_Main& main, const frm_Options& options);

  // Asks where the log is to stand, opens it and sets `filelogging`. Without a Location to log
  // nothing happens. RunTimeError 32755 for a cancelled dialog, others for a file that cannot be
  // had.
  void PrepareLog();

  // Values come in the order of the scan, one of each Location in a round (`RoundValues`). None of
  // these throws. A log that cannot be written any more is closed with all that it has,
  // the user is told once, and the run goes on.
  void LogRequest(int index);
  void RecordValue(int index);
  void LogUnreadable(int index);
  void EndLogRow();
  void CloseLogFile();

 private:
  void FindColumns();
  std::string ProposedFile() const;
  void Open(const std::string& path);
  std::string Time() const;

  std::string TabsUpTo(int column) const;
  void WriteField(int index, std::string_view text);
  void Write(std::string_view piece);

  frm_Main& main_;
  const frm_Options& options_;

  std::vector<int> columns_;                        // the Locations, from left to right
  std::array<int, kLastLocation + 1> column_of_{};  // counted from 1; 0 for none
  bool drops_deleted_ = false;

  std::string path_;
  std::unique_ptr<RowWriter> rows_;
  LogEncoding encoding_;

  int column_ = 0;  // the last one that stands in this row, counted from 1

  LaterFileErrors failures_;
};

}  // namespace tarnlink
