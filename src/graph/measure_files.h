// The files of the graph: what was measured with its lines (`.mss`), the lines alone (`.grp`), and
// the table for other programs. A small file is done at once; a long one goes on in steps by a
// timer of its own, with a window that shows how far it is and can stop it.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "common/run_time_error.h"
#include "graph/auto_save.h"
#include "graph/file_job.h"
#include "graph/frm_context_menu.h"
#include "graph/frm_file_progress.h"
#include "graph/frm_graphic.h"
#include "graph/measure_file_reader.h"
#include "graph/piece_source.h"

namespace tarnlink {

class MeasureFiles {
 public:
  // What a command does next; left out when the file failed or the user stopped it.
  using Then = std::function<void()>;

  // Binds automatic saving. All arguments outlive it.
  MeasureFiles(frmGraphic& graph, frmContextMenu& menu, AutoSave& auto_save);
  // As `FinishNow`, but nothing comes behind the files.
  ~MeasureFiles();
  MeasureFiles(const MeasureFiles&) = delete;
  MeasureFiles& operator=(const MeasureFiles&) = delete;

  // The file has what there was when this was called. One that comes while another is under way
  // waits for its end, and takes what there is then. What goes wrong is told; the old file stays.
  void SaveMeasureFile(const std::string& FileName, bool WithMeasurements, bool OnlyNew,
                       Then then = {});
  // Measurements stop acquisition and scrolling, lines alone start both, before the file is opened.
  // What was there is replaced in the end, by as much as could be read; a stopped load leaves it
  // all, and acquisition and scrolling as they were before.
  void LoadMeasureFile(const std::string& FileName, bool WithMeasurements, Then then = {});
  // The file of the day that has passed. After one that failed it begins there, and has that name.
  void AutoSaveMeasurements();
  // The same at once if one has failed; without a word if it fails again.
  void SaveLostDay();
  // A text, or a workbook if the name ends in ".xlsx".
  void ExportMeasureFile(const std::string& FileName, Then then = {});

  // Whether a file could not be written since this was last asked; its samples may be in memory
  // only.
  bool TakeFailedWrite() { return std::exchange(has_failed_write_, false); }

  // A file is being read or written. What comes now waits for it.
  bool IsBusy() const { return job_ != nullptr || at_once_ > 0; }
  // Stops what is under way, as the window's button does; what waits comes next. What was to be
  // written counts as failed, without a word.
  void Cancel();
  // The graph is left: loads are stopped, and nothing becomes of them. All else goes on.
  void StopLoads();
  // Somebody waits for the end: from now on the window comes at once, and takes the focus.
  void AwaitEnd();
  // Calls once nothing is under way, nothing waits and no box of a file stands, which may be at
  // once. Until then everything can be stopped.
  void WhenIdle(std::function<void()> call);
  // As `StopLoads`, but all else is finished here. Waits for the disk.
  void FinishNow();

  frmFileProgress progress;
  std::function<void()> Replaced;  // what there was, by all or a part of a file
  std::function<void()> DrawAgain;

 private:
  enum class Kind { kLoad, kSave, kExport };
  static constexpr std::int64_t kNever = std::numeric_limits<std::int64_t>::max();
  // What is to be done, or under way.
  struct Task {
    Kind kind;
    std::string name;
    bool with_measurements = false;
    Then then = {};
    bool is_asked_for = true;          // by the user, now
    std::int64_t newer_than = kNever;  // of a day
    bool is_told = true;               // if it fails
  };
  // How acquisition and scrolling were before a load.
  struct Link {
    bool communicates = false;
    bool scrolls = false;
    Date cursor = 0;
  };

  void SaveDay(bool is_retry);
  void Save(Task task, std::optional<std::int64_t> newer_than);
  void Write(Task task, std::unique_ptr<PieceSource> source, bool is_sheet);
  void Load(Task task);
  void LoadLong(Task task);
  void Export(Task task);
  bool WaitsForAnother(Kind kind, std::function<void()> call);

  // False if the file is too long for that. What has been made of it then stands in `first`.
  bool WriteAtOnce(const Task& task, PieceSource& source, std::string& first) const;
  bool ReadAtOnce(const Task& task);
  void Begin(Task task, std::unique_ptr<FileJob> job);
  void Step();
  Task EndJob();
  // What comes behind the last byte, or behind an error. Boxes may stand there.
  void Complete(const Task& task);
  void Take(const Task& task);
  void Fail(const Task& task, const RunTimeError& error);
  void Tell(const Task& task, const RunTimeError& error);
  void NoteFailed(const Task& task);
  void StayStopped();
  void HandOver();
  void DropLoads();
  void DoNext();
  void RestoreLink();

  frmGraphic& graph_;
  frmContextMenu& menu_;
  AutoSave& auto_save_;
  std::unique_ptr<MeasureFileReader> reader_;  // of the load that is under way
  Link link_;
  std::optional<Task> task_;
  std::unique_ptr<FileJob> job_;
  int at_once_ = 0;  // under way without a job: while the disk is waited for, timers go on
  bool is_load_dropped_ = false;       // the one that is under way without a job
  std::unique_ptr<Timer> step_timer_;  // a new one each time: in its handler boxes may stand
  std::unique_ptr<Timer> show_timer_;
  std::deque<std::pair<Kind, std::function<void()>>> waiting_;
  bool auto_save_waits_ = false;
  std::int64_t lost_since_ = kNever;  // the beginning of the first day whose file has failed
  bool has_failed_write_ = false;
  int endings_ = 0;  // under way: each may have a box standing, with more files behind it
  std::function<void()> when_idle_;
  bool is_awaited_ = false;
  bool is_left_ = false;  // what the files were for is gone
};

}  // namespace tarnlink
