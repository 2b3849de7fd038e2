#include "platform/qt/xlsx_workbook.h"

#include <sys/resource.h>
#include <unistd.h>

#include <QtGlobal>
#include <algorithm>
#include <exception>
#include <utility>

#include "platform/qt/xlsx_file.h"

namespace tarnlink {
namespace {

using Steady = std::chrono::steady_clock;

// A save every ten times as long as a save takes: a tenth of a processor at most.
constexpr int kPauseOfSaves = 9;
constexpr int kNice = 10;

}  // namespace

XlsxWorkbook::XlsxWorkbook(std::string path) : XlsxWorkbook(std::move(path), Limits()) {}

XlsxWorkbook::XlsxWorkbook(std::string path, Limits limits)
    : path_(std::move(path)),
      limits_(limits),
      cells_(limits.most_cells),
      next_save_(Steady::now() + limits.pause) {
  SaveXlsx(path_, cells_);
  thread_ = std::thread([this] { Work(); });
}

XlsxWorkbook::~XlsxWorkbook() {
  {
    const std::lock_guard lock(mutex_);
    leaving_ = true;
  }
  wake_.notify_one();
  thread_.join();
  // Nobody is left who could ask.
  if (changed_) qWarning("\"%s\" lacks the last values.", path_.c_str());
}

void XlsxWorkbook::Save() {
  {
    const std::lock_guard lock(mutex_);
    save_wanted_ = !saved_;
  }
  wake_.notify_one();
}

bool XlsxWorkbook::Saved() const {
  const std::lock_guard lock(mutex_);
  return saved_;
}

void XlsxWorkbook::SetOnFailure(std::function<void(const RunTimeError&)> handler) {
  on_failure_ = std::move(handler);
}

void XlsxWorkbook::Add(Poked poked) {
  bool is_first = false;
  {
    const std::lock_guard lock(mutex_);
    is_first = queue_.empty();
    queue_.push_back(std::move(poked));
    saved_ = false;
  }
  if (is_first) wake_.notify_one();
}

void XlsxWorkbook::Work() {
  // Less than the run: of Linux's threads each has a niceness of its own.
  setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), kNice);
  std::vector<Poked> pokes;
  bool goes_on = true;
  while (goes_on) {
    goes_on = WaitForWork(pokes);
    TakeIn(pokes);
    pokes.clear();
    if (!changed_) continue;
    const auto begun = Steady::now();
    changed_ = !SaveNow();
    const auto took = Steady::now() - begun;
    next_save_ = Steady::now() + std::max<Steady::duration>(limits_.pause, kPauseOfSaves * took);
  }
}

// Returns when there is something to save and the time for it has come, or at the end: then false.
bool XlsxWorkbook::WaitForWork(std::vector<Poked>& pokes) {
  std::unique_lock lock(mutex_);
  saved_ = queue_.empty() && !changed_;
  if (saved_) save_wanted_ = false;
  wake_.wait(lock, [this] { return leaving_ || changed_ || !queue_.empty(); });
  wake_.wait_until(lock, next_save_, [this] { return leaving_ || save_wanted_; });
  save_wanted_ = false;
  pokes.swap(queue_);
  return !leaving_;
}

void XlsxWorkbook::TakeIn(const std::vector<Poked>& pokes) {
  for (const Poked& poked : pokes) {
    if (cells_.Put(poked.cell, poked.value)) {
      changed_ = true;
    } else if (!std::exchange(full_is_told_, true)) {
      Report(SheetIsFull(path_));
    }
  }
}

bool XlsxWorkbook::SaveNow() {
  try {
    SaveXlsx(path_, cells_);
    return true;
  } catch (const RunTimeError& error) {
    Report(error);
  } catch (const std::exception& error) {
    Report(RunTimeError(kDeviceIo, "\"" + path_ + "\" could not be written: " + error.what()));
  }
  return false;
}

// Hands it to the program's own thread.
void XlsxWorkbook::Report(const RunTimeError& error) {
  QMetaObject::invokeMethod(
      &reports_,
      [this, error] {
        if (on_failure_) on_failure_(error);
      },
      Qt::QueuedConnection);
}

}  // namespace tarnlink
