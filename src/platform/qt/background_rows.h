// A file of rows that a thread of its own writes: a disk that takes its time for a row does not
// hold up the window.
#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

#include "common/run_time_error.h"
#include "platform/files.h"
#include "platform/qt/left_threads.h"

namespace tarnlink {

class BackgroundRows final : public RowWriter {
 public:
  // `left` outlives it.
  BackgroundRows(const std::string& path, std::unique_ptr<RowWriter> file, LeftThreads& left);
  // The thread writes what waits, and closes the file. What fails then nobody is told.
  ~BackgroundRows() override;
  BackgroundRows(const BackgroundRows&) = delete;
  BackgroundRows& operator=(const BackgroundRows&) = delete;

  // Comes back when the piece has been written, or after a moment that nobody notices; at once
  // while the disk is behind. RunTimeError 57 too when a mebibyte waits for it.
  void Append(std::string_view piece) override;

 private:
  // Between the threads, under the mutex; kept by both, since the writer may go first.
  struct Shared {
    std::mutex mutex;
    std::condition_variable program;  // is woken when a piece has been written or has failed
    std::condition_variable disk;     // when there is something to do
    std::deque<std::string> pieces;   // the first one is being written
    std::size_t size = 0;             // of all pieces
    bool is_left = false;             // no more pieces come
    std::optional<RunTimeError> failure;
    std::atomic<bool> has_ended = false;
  };

  // The thread's own.
  static void Work(RowWriter& file, Shared& shared);
  static std::optional<RunTimeError> Write(RowWriter& file, std::string_view piece);

  std::string path_;
  LeftThreads& left_;
  std::shared_ptr<Shared> shared_;
  std::thread thread_;
};

}  // namespace tarnlink
