// The spreadsheet of a run: a workbook beside the log, one row for each round.
#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "common/run_time_error.h"
#include "monitor/frm_main.h"
#include "monitor/frm_options.h"
#include "monitor/later_file_errors.h"
#include "platform/workbook.h"

namespace tarnlink {

// The link of one box to one cell, as the box once had it to a running spreadsheet program.
class BoxLink {
 public:
  static constexpr std::string_view kTopic = "Excel|Sheet1";
  static constexpr int kManual = 2;

  explicit BoxLink(Workbook& workbook) : workbook_(workbook) {}

  std::string LinkTopic;
  int LinkMode = 0;
  std::string LinkItem;  // "R2C3"

  // Sends the box's text to the cell. Throws RunTimeError 9 if there is no such cell.
  void LinkPoke(const std::string& text, bool is_number);

 private:
  SheetCell Cell() const;

  Workbook& workbook_;
};

// Every run that has something to send gets a workbook of its own, in the log's folder, named by
// screen, date and time, so that nothing is overwritten. What cannot be written is told once in a
// run, for each Location whose column is none and for each reason besides, outside the exchange
// that met it; the run goes on, and the saving is tried again.
class SpreadsheetLink {
 public:
  // Both outlive it.
  SpreadsheetLink(frm_Main& main, const frm_Options& options);

  // At Start, with the option set: makes the workbook if any Location is linked, and starts the
  // program of the options on it if there is such a program. Throws RunTimeError 32755 after
  // telling the user that it could not.
  void Start();
  // Sends name and value of Location `index`, if it is linked. Never throws.
  void Poke(int index);
  // At the end of a run. Does not wait. Never throws.
  void Save();

 private:
  bool IsLinked(int index) const;
  bool AnyLinked() const;
  void Retire();
  void Open();
  void BindFailures();
  void StartProgram();
  std::string Folder() const;
  std::string PathOfDay() const;
  std::string NewPath() const;
  void PokeBoxes(int index);
  void TellOnce(const RunTimeError& error, const std::string& path);

  frm_Main& main_;
  const frm_Options& options_;
  LaterFileErrors failures_;
  // The codes that this run's workbook has told.
  std::shared_ptr<std::set<int>> told_ = std::make_shared<std::set<int>>();
  std::set<int> left_out_;  // the Locations whose column is none, each of them told
  bool gave_up_ = false;    // on a workbook that could not even be made
  bool poked_ = false;
  // Those of earlier runs that still have something to save.
  std::vector<std::unique_ptr<Workbook>> leaving_;
  std::unique_ptr<Workbook> workbook_;
};

}  // namespace tarnlink
