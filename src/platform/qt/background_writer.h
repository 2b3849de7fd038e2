// A file that a thread of its own writes, beside the one that it replaces in the end.
#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "common/run_time_error.h"
#include "platform/big_file.h"
#include "platform/qt/left_threads.h"
#include "platform/qt/save_file.h"

namespace tarnlink {

// What becomes of the bytes. Made, used and destroyed by the thread; all of it may throw
// RunTimeError 61, 70, 76 or 57. Destroyed before `Replace` it leaves everything as it was.
class FileSink {
 public:
  virtual ~FileSink() = default;
  virtual void Write(std::string_view bytes) = 0;
  virtual void Sync() = 0;
  virtual void Replace() = 0;
};

// The bytes become the file.
class ReplacingSink final : public FileSink {
 public:
  explicit ReplacingSink(const std::string& path) : file_(path) {}
  void Write(std::string_view bytes) override { file_.Write(bytes); }
  void Sync() override { file_.Sync(); }
  void Replace() override { file_.Replace(); }

 private:
  FileReplacement file_;
};

class BackgroundWriter final : public BigWriter {
 public:
  using MakeSink = std::function<std::unique_ptr<FileSink>()>;

  // `left` outlives it.
  BackgroundWriter(const std::string& path, const MakeSink& make, LeftThreads& left);
  ~BackgroundWriter() override;
  BackgroundWriter(const BackgroundWriter&) = delete;
  BackgroundWriter& operator=(const BackgroundWriter&) = delete;

  bool HasRoom() override;
  void Write(std::string& piece) override;
  void Finish() override;
  bool IsFinished() override;
  void Wait() override;

 private:
  // Between the threads, under the mutex; kept by both, since the writer may go first.
  struct Shared {
    bool HasRoom() const;

    std::mutex mutex;
    std::condition_variable program;  // is woken when a piece has been written, and at the end
    std::condition_variable disk;     // when there is something to do
    std::deque<std::string> pieces;
    std::vector<std::string> used;  // memory of pieces that have been written
    bool is_abandoned = false;
    bool is_complete = false;  // no more pieces come
    bool is_finished = false;
    std::optional<RunTimeError> failure;
    std::atomic<bool> has_ended = false;
  };

  // The thread's own.
  static void Work(const std::string& path, const MakeSink& make, Shared& shared);
  static void WriteAll(const MakeSink& make, Shared& shared);
  static bool Take(Shared& shared, std::string& piece);

  LeftThreads& left_;
  std::shared_ptr<Shared> shared_;
  std::thread thread_;
};

}  // namespace tarnlink
