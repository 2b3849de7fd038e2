// A file that a thread of its own reads ahead.
#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "common/run_time_error.h"
#include "platform/big_file.h"
#include "platform/qt/left_threads.h"

namespace tarnlink {

class BackgroundReader final : public BigReader {
 public:
  // `left` outlives it.
  BackgroundReader(std::string path, LeftThreads& left);
  ~BackgroundReader() override;
  BackgroundReader(const BackgroundReader&) = delete;
  BackgroundReader& operator=(const BackgroundReader&) = delete;

  bool Next(std::string_view& piece) override;
  bool AtEnd() const override;
  std::int64_t Size() const override;
  void Wait() override;

 private:
  // Between the threads, under the mutex; kept by both, since the reader may go first.
  struct Shared {
    std::mutex mutex;
    std::condition_variable program;  // is woken when a piece has come in, and at the end
    std::condition_variable disk;     // when one has been taken
    std::deque<std::string> pieces;
    std::vector<std::string> used;  // memory of pieces that have been taken
    bool is_abandoned = false;
    bool is_read = false;  // to its end, or as far as it goes
    std::int64_t size = 0;
    std::optional<RunTimeError> failure;
    std::atomic<bool> has_ended = false;
  };

  // The thread's own.
  static void Work(const std::string& path, Shared& shared);
  static void ReadAll(const std::string& path, Shared& shared);
  static bool Put(Shared& shared, std::string& piece);

  LeftThreads& left_;
  std::shared_ptr<Shared> shared_;
  std::string piece_;  // that the program looks at
  std::thread thread_;
};

}  // namespace tarnlink
