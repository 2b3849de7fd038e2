// What a run writes down: its log file and its spreadsheet, side by side.
#pragma once

#include "monitor/run_log.h"
#include "monitor/run_recorder.h"
#include "monitor/spreadsheet_link.h"

namespace tarnlink {

class RunRecords final : public RunRecorder {
 public:
  // Both outlive it.
  RunRecords(frm_Main& main, const frm_Options& options)
      : log_(main, options), spreadsheet_(main, options) {}

  void PrepareLog() override { log_.PrepareLog(); }
  void StartSpreadsheet() override { spreadsheet_.Start(); }
  void LogRequest(int index) override { log_.LogRequest(index); }
  void RecordValue(int index) override;
  void LogUnreadable(int index) override { log_.LogUnreadable(index); }
  void WriteSent() override { log_.WriteSent(); }
  void EndLogRow() override { log_.EndLogRow(); }
  void CloseLogFile() override;

 private:
  RunLog log_;
  SpreadsheetLink spreadsheet_;
};

}  // namespace tarnlink
