// A workbook that a thread of its own keeps and saves, so that no save stops the run.
#pragma once

#include <QObject>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/qt/sheet_cells.h"
#include "platform/workbook.h"

namespace tarnlink {

class XlsxWorkbook final : public Workbook {
 public:
  struct Limits {
    std::chrono::milliseconds pause = std::chrono::seconds(3);  // between two saves, at least
    std::size_t most_cells = SheetCells::kMostCells;
  };

  // Writes the empty workbook. Throws RunTimeError 61, 70, 76 or 57.
  explicit XlsxWorkbook(std::string path);
  XlsxWorkbook(std::string path, Limits limits);
  ~XlsxWorkbook() override;
  XlsxWorkbook(const XlsxWorkbook&) = delete;
  XlsxWorkbook& operator=(const XlsxWorkbook&) = delete;

  const std::string& path() const override { return path_; }
  void Poke(SheetCell cell, const std::string& text) override { Add({cell, text}); }
  void Poke(SheetCell cell, double number) override { Add({cell, number}); }
  void Save() override;
  bool Saved() const override;
  void SetOnFailure(std::function<void(const RunTimeError&)> handler) override;

 private:
  using Time = std::chrono::steady_clock::time_point;
  struct Poked {
    SheetCell cell;
    SheetCells::Value value;
  };

  void Add(Poked poked);

  // The thread's own.
  void Work();
  bool WaitForWork(std::vector<Poked>& pokes);
  void TakeIn(const std::vector<Poked>& pokes);
  bool SaveNow();
  void Report(const RunTimeError& error);

  const std::string path_;
  const Limits limits_;

  mutable std::mutex mutex_;
  std::condition_variable wake_;
  // Between the threads, under the mutex.
  std::vector<Poked> queue_;
  bool save_wanted_ = false;
  bool leaving_ = false;
  bool saved_ = true;

  // The thread's own.
  SheetCells cells_;
  bool changed_ = false;
  bool full_is_told_ = false;
  Time next_save_;

  // The program's own thread; a report that has not been called is dropped with it.
  std::function<void(const RunTimeError&)> on_failure_;
  QObject reports_;

  std::thread thread_;
};

}  // namespace tarnlink
