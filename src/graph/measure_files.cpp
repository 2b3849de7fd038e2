#include "graph/measure_files.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <utility>

#include "common/text.h"
#include "graph/measure_export.h"
#include "graph/measure_file_writer.h"

namespace tarnlink {

namespace {

constexpr int kStepInterval = 1;    // ms
constexpr int kShowInterval = 500;  // ms until the window appears

struct Texts {
  const char* error;
  const char* title;    // of its box
  const char* caption;  // of the window
};

// In the order of the kinds.
constexpr std::array<Texts, 3> kTexts = {{
    {"Error reading file", "Reading file", "Reading file"},
    {"Error saving file", "Saving file", "Saving file"},
    {"Error exporting file", "exporting file", "Exporting file"},
}};

// One more of something while it lives.
class Counted {
 public:
  explicit Counted(int& count) : count_(count) { ++count_; }
  ~Counted() { --count_; }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

 private:
  int& count_;
};

bool IsSheet(const std::string& name) {
  constexpr std::string_view kExtension = ".xlsx";
  return ToLower(Right(name, static_cast<int>(kExtension.size()))) == kExtension;
}

}  // namespace

MeasureFiles::MeasureFiles(frmGraphic& graph, frmContextMenu& menu, AutoSave& auto_save)
    : graph_(graph),
      menu_(menu),
      auto_save_(auto_save),
      show_timer_(graph.platform().CreateTimer()) {
  auto_save_.AutoSaveMeasurements = [this] { AutoSaveMeasurements(); };
  auto_save_.SaveLostDay = [this] { SaveLostDay(); };
  progress.cmdCancel.Click = [this] { Cancel(); };
  show_timer_->SetInterval(kShowInterval);
  show_timer_->SetOnTimer([this] {
    show_timer_->SetEnabled(false);
    progress.form.Visible = true;
  });
}

MeasureFiles::~MeasureFiles() {
  is_left_ = true;
  when_idle_ = {};
  FinishNow();
}

// --- What users know -----------------------------------------------------------------------------

void MeasureFiles::SaveMeasureFile(const std::string& FileName, bool WithMeasurements, bool OnlyNew,
                                   Then then) {
  const auto call = [=, this] { SaveMeasureFile(FileName, WithMeasurements, OnlyNew, then); };
  if (WaitsForAnother(Kind::kSave, call)) return;
  std::optional<std::int64_t> newer_than;
  if (OnlyNew) newer_than = ToSeconds(graph_.Data.AutoSaveDay);
  Save({Kind::kSave, FileName, WithMeasurements, std::move(then)}, newer_than);
}

void MeasureFiles::LoadMeasureFile(const std::string& FileName, bool WithMeasurements, Then then) {
  const auto call = [=, this] { LoadMeasureFile(FileName, WithMeasurements, then); };
  if (WaitsForAnother(Kind::kLoad, call)) return;
  link_ = {graph_.ZOLTCommunication, graph_.AutoScroll, graph_.CursorTime};
  menu_.SetTimeScroll(!WithMeasurements);
  menu_.SetCommunication(!WithMeasurements);
  // A box of the port may have stood there, and a file may have begun behind it.
  Task task{Kind::kLoad, FileName, WithMeasurements, std::move(then)};
  if (WaitsForAnother(Kind::kLoad, [this, task] { Load(task); })) return;
  Load(std::move(task));
}

void MeasureFiles::AutoSaveMeasurements() {
  if (auto_save_waits_) return;
  auto_save_waits_ = WaitsForAnother(Kind::kSave, [this] {
    auto_save_waits_ = false;
    AutoSaveMeasurements();
  });
  if (!auto_save_waits_) SaveDay(false);
}

void MeasureFiles::SaveLostDay() {
  if (lost_since_ != kNever && !IsBusy()) SaveDay(true);
}

// The day is the next one before anything can go wrong: its box may stand for days.
void MeasureFiles::SaveDay(bool is_retry) {
  Graphic& data = graph_.Data;
  const std::int64_t newer_than =
      std::min(ToSeconds(data.AutoSaveDay), std::exchange(lost_since_, kNever));
  const Date day = FromSeconds(newer_than);
  if (!is_retry) data.AutoSaveDay = std::floor(graph_.Now());
  Task task{.kind = Kind::kSave,
            .name = data.AutoSaveDir,
            .with_measurements = true,
            .is_asked_for = false,
            .newer_than = newer_than,
            .is_told = !is_retry};
  try {
    const Counted now(at_once_);
    task.name = auto_save_.GetNewFileName(data.AutoSaveDir, day);
  } catch (const RunTimeError& error) {
    Fail(task, error);
    return;
  }
  Save(std::move(task), newer_than);
}

void MeasureFiles::ExportMeasureFile(const std::string& FileName, Then then) {
  const auto call = [=, this] { ExportMeasureFile(FileName, then); };
  if (WaitsForAnother(Kind::kExport, call)) return;
  Export({Kind::kExport, FileName, true, std::move(then)});
}

// --- Beginning -----------------------------------------------------------------------------------

bool MeasureFiles::WaitsForAnother(Kind kind, std::function<void()> call) {
  if (!IsBusy()) return false;
  waiting_.emplace_back(kind, std::move(call));
  return true;
}

void MeasureFiles::Save(Task task, std::optional<std::int64_t> newer_than) {
  auto source = std::make_unique<MeasureFileWriter>(
      graph_.Data, MeasureFileWriter::Content{
                       .with_measurements = task.with_measurements,
                       .newer_than = newer_than,
                       .decimal_separator = graph_.platform().locale().DecimalSeparator()});
  Write(std::move(task), std::move(source), false);
}

void MeasureFiles::Export(Task task) {
  const bool is_sheet = IsSheet(task.name);
  const auto form = is_sheet ? MeasureExport::Form::kSheet : MeasureExport::Form::kFile;
  auto source = std::make_unique<MeasureExport>(graph_.Data, graph_.platform().locale(), form);
  Write(std::move(task), std::move(source), is_sheet);
}

void MeasureFiles::Write(Task task, std::unique_ptr<PieceSource> source, bool is_sheet) {
  Files& files = graph_.platform().files();
  std::string first;
  bool is_written = false;
  try {
    const Counted now(at_once_);
    is_written = !is_sheet && WriteAtOnce(task, *source, first);
  } catch (const RunTimeError& error) {
    Fail(task, error);
    return;
  }
  if (is_written) {
    Complete(task);
    return;
  }
  auto writer = is_sheet ? files.WriteSheet(task.name) : files.WriteBig(task.name);
  Begin(std::move(task),
        std::make_unique<WriteJob>(std::move(first), std::move(source), std::move(writer)));
}

bool MeasureFiles::WriteAtOnce(const Task& task, PieceSource& source, std::string& first) const {
  source.Next(first);
  std::string second;
  if (source.Next(second)) {
    first += second;
    return false;
  }
  graph_.platform().files().WriteWhole(task.name, first);
  return true;
}

void MeasureFiles::Load(Task task) {
  bool is_read = false;
  std::optional<RunTimeError> failure;
  try {
    const Counted now(at_once_);
    is_read = ReadAtOnce(task);
  } catch (const RunTimeError& error) {
    failure = error;
  }
  if (std::exchange(is_load_dropped_, false)) {
    reader_.reset();
    DoNext();
  } else if (failure) {
    Fail(task, *failure);
  } else if (is_read) {
    Complete(task);
  } else {
    LoadLong(std::move(task));
  }
}

// Once more, from the beginning: it was little.
void MeasureFiles::LoadLong(Task task) {
  reader_ = std::make_unique<MeasureFileReader>(task.name, task.with_measurements);
  auto job = std::make_unique<ReadJob>(graph_.platform().files().ReadBig(task.name), *reader_);
  Begin(std::move(task), std::move(job));
}

bool MeasureFiles::ReadAtOnce(const Task& task) {
  reader_ = std::make_unique<MeasureFileReader>(task.name, task.with_measurements);
  std::size_t taken = 0;
  bool is_long = false;
  graph_.platform().files().ReadPieces(task.name, [&](std::string_view piece) {
    is_long = taken >= PieceSource::kPiece;
    taken += piece.size();
    return !is_long && reader_->Take(piece);
  });
  if (!is_long) reader_->Finish();
  return !is_long;
}

// --- Under way -----------------------------------------------------------------------------------

void MeasureFiles::Begin(Task task, std::unique_ptr<FileJob> job) {
  progress.caption.Caption = kTexts.at(static_cast<std::size_t>(task.kind)).caption;
  progress.lblFile.Caption = task.name;
  progress.prgShare.Value = 0;
  progress.TakesFocus = task.is_asked_for || is_awaited_;
  // A day that is stopped would be missing. But a disk that does not answer must not keep a graph
  // that was left.
  progress.cmdCancel.Enabled = task.is_asked_for || when_idle_;
  task_ = std::move(task);
  job_ = std::move(job);
  step_timer_ = graph_.platform().CreateTimer();
  step_timer_->SetInterval(kStepInterval);
  step_timer_->SetOnTimer([this] { Step(); });
  step_timer_->SetEnabled(true);
  show_timer_->SetEnabled(true);
  if (is_awaited_) progress.form.Visible = true;
}

void MeasureFiles::Step() {
  std::optional<RunTimeError> failure;
  try {
    if (job_->Step()) {
      progress.prgShare.Value = job_->Percent();
      return;
    }
  } catch (const RunTimeError& error) {
    failure = error;
  }
  const Task task = EndJob();
  if (failure) {
    Fail(task, *failure);
  } else {
    Complete(task);
  }
}

MeasureFiles::Task MeasureFiles::EndJob() {
  const Task task = std::move(*task_);
  task_.reset();
  job_.reset();
  step_timer_.reset();
  show_timer_->SetEnabled(false);
  progress.form.Visible = false;
  return task;
}

void MeasureFiles::Cancel() {
  if (job_ == nullptr) return;
  const Task task = EndJob();
  if (task.kind == Kind::kLoad) {
    RestoreLink();
  } else {
    NoteFailed(task);
  }
  DoNext();
}

void MeasureFiles::RestoreLink() {
  reader_.reset();
  menu_.SetTimeScroll(link_.scrolls);
  graph_.CursorTime = link_.cursor;
  menu_.SetCommunication(link_.communicates);
}

void MeasureFiles::StopLoads() {
  DropLoads();
  if (at_once_ > 0 && reader_ != nullptr) is_load_dropped_ = true;
  if (job_ == nullptr || task_->kind != Kind::kLoad) return;
  EndJob();
  reader_.reset();
  DoNext();
}

void MeasureFiles::DropLoads() {
  std::erase_if(waiting_, [](const auto& each) { return each.first == Kind::kLoad; });
}

void MeasureFiles::AwaitEnd() {
  is_awaited_ = true;
  if (job_ == nullptr) return;
  progress.form.Visible = false;  // modal windows are so from the beginning
  progress.TakesFocus = true;
  progress.form.Visible = true;
}

void MeasureFiles::WhenIdle(std::function<void()> call) {
  when_idle_ = std::move(call);
  progress.cmdCancel.Enabled = true;
  DoNext();
}

void MeasureFiles::FinishNow() {
  StopLoads();
  DoNext();
  while (job_ != nullptr) {
    job_->Wait();
    Step();
  }
}

// --- The end -------------------------------------------------------------------------------------

void MeasureFiles::Complete(const Task& task) {
  {
    const Counted ending(endings_);
    Take(task);
  }
  DoNext();
}

void MeasureFiles::Take(const Task& task) {
  if (task.kind == Kind::kLoad) {
    if (task.with_measurements) StayStopped();
    HandOver();
    lost_since_ = kNever;
    if (task.with_measurements) graph_.BaseTime = graph_.CursorTime = graph_.Data.LastTime;
    if (DrawAgain) DrawAgain();
  }
  if (task.then && !is_left_) task.then();
}

void MeasureFiles::Fail(const Task& task, const RunTimeError& error) {
  {
    const Counted ending(endings_);
    Tell(task, error);
  }
  DoNext();
}

void MeasureFiles::Tell(const Task& task, const RunTimeError& error) {
  if (task.kind == Kind::kLoad) {
    HandOver();
  } else {
    NoteFailed(task);
  }
  if (!task.is_told) return;
  const Texts& texts = kTexts.at(static_cast<std::size_t>(task.kind));
  graph_.platform().dialogs().MessageBox(
      {.text = texts.error, .title = texts.title, .icon = Icon::kCritical, .detail = error.what()});
  if (task.kind != Kind::kLoad) DropLoads();
}

// A load that was to come behind it would replace what is in memory only.
void MeasureFiles::NoteFailed(const Task& task) {
  has_failed_write_ = true;
  lost_since_ = std::min(lost_since_, task.newer_than);
  DropLoads();
}

// They may have been started again while the file was read.
void MeasureFiles::StayStopped() {
  if (graph_.AutoScroll) menu_.SetTimeScroll(false);
  if (graph_.ZOLTCommunication) menu_.SetCommunication(false);
}

void MeasureFiles::HandOver() {
  reader_->HandOver(graph_.Data);
  reader_.reset();
  if (Replaced && !is_left_) Replaced();
}

void MeasureFiles::DoNext() {
  while (!IsBusy() && !waiting_.empty()) {
    const std::function<void()> next = std::move(waiting_.front().second);
    waiting_.pop_front();
    next();
  }
  if (IsBusy() || endings_ > 0 || !when_idle_) return;
  is_awaited_ = false;
  const std::function<void()> call = std::exchange(when_idle_, {});
  call();
}

}  // namespace tarnlink
