// What a run writes down: its log file and its spreadsheet, side by side.
#pragma once

#include "monitor/round_values.h"
#include "monitor/run_log.h"
#include "monitor/run_recorder.h"
#include "monitor/spreadsheet_link.h"

namespace tarnlink {

class RunRecords final : public RunRecorder {
 public:
  // Both outlive it.
  RunRecords(frm_Main& main, const frm_Options& options)
      : main_(main),
        options_(options),
        values_(main.Locations),
        log_(main, options),
        spreadsheet_(main, options) {}

  void PrepareLog() override { log_.PrepareLog(); }
  void StartSpreadsheet() override { spreadsheet_.Start(); }
  void LogRequest(int index) override;
  void RecordValue(int index) override;
  void LogUnreadable(int index) override;
  void WriteSent() override { values_.ForgetRequest(); }
  void EndRound() override { values_.EndRound(); }
  void EndLogRow() override { log_.EndLogRow(); }
  void CloseLogFile() override;

 private:
  const frm_Main& main_;
  const frm_Options& options_;
  RoundValues values_;
  RunLog log_;
  SpreadsheetLink spreadsheet_;
};

}  // namespace tarnlink
