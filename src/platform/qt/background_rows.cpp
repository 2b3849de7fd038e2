#include "platform/qt/background_rows.h"

#include <chrono>
#include <exception>
#include <utility>

#include "platform/qt/file_errors.h"

namespace tarnlink {
namespace {

// So long the window stands still for a piece, which nobody sees.
constexpr std::chrono::milliseconds kUnseen{20};
constexpr std::size_t kMostWaiting = 1 << 20;  // bytes

}  // namespace

BackgroundRows::BackgroundRows(const std::string& path, std::unique_ptr<RowWriter> file,
                               LeftThreads& left)
    : path_(path), left_(left), shared_(std::make_shared<Shared>()) {
  thread_ = std::thread([shared = shared_, file = std::move(file)]() mutable {
    Work(*file, *shared);
    file.reset();
    shared->has_ended = true;
  });
}

BackgroundRows::~BackgroundRows() {
  {
    const std::lock_guard lock(shared_->mutex);
    shared_->is_left = true;
  }
  shared_->disk.notify_one();
  left_.Add(std::move(thread_), {shared_, &shared_->has_ended});
}

void BackgroundRows::Append(std::string_view piece) {
  std::unique_lock lock(shared_->mutex);
  const auto tell_failure = [this] {
    if (shared_->failure) throw RunTimeError(*std::exchange(shared_->failure, {}));
  };
  tell_failure();
  if (piece.empty()) return;
  if (shared_->size + piece.size() > kMostWaiting) {
    throw RunTimeError(kDeviceIo, NoAnswerFrom(path_, FileAction::kWrite));
  }
  const bool is_behind = !shared_->pieces.empty();
  shared_->pieces.emplace_back(piece);
  shared_->size += piece.size();
  shared_->disk.notify_one();
  if (is_behind) return;
  shared_->program.wait_for(lock, kUnseen, [this] { return shared_->pieces.empty(); });
  tell_failure();
}

void BackgroundRows::Work(RowWriter& file, Shared& shared) {
  std::unique_lock lock(shared.mutex);
  while (true) {
    shared.disk.wait(lock, [&] { return shared.is_left || !shared.pieces.empty(); });
    if (shared.pieces.empty()) return;
    const std::string& piece = shared.pieces.front();  // others come behind it
    lock.unlock();
    const std::optional<RunTimeError> failure = Write(file, piece);
    lock.lock();
    if (failure) {
      shared.failure = failure;
      shared.pieces.clear();
      shared.size = 0;
    } else {
      shared.size -= piece.size();
      shared.pieces.pop_front();
    }
    shared.program.notify_one();
  }
}

std::optional<RunTimeError> BackgroundRows::Write(RowWriter& file, std::string_view piece) {
  try {
    file.Append(piece);
    return {};
  } catch (const RunTimeError& error) {
    return error;
  } catch (const std::exception& error) {
    return RunTimeError(kDeviceIo, error.what());
  }
}

}  // namespace tarnlink
