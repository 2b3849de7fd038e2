#include "platform/qt/background_reader.h"

#include <exception>
#include <utility>

#include "platform/qt/file_errors.h"
#include "platform/qt/file_for_reading.h"

namespace tarnlink {
namespace {

constexpr std::size_t kPiece = std::size_t{1} << 18;
constexpr std::size_t kMostPieces = 16;

}  // namespace

BackgroundReader::BackgroundReader(std::string path, LeftThreads& left)
    : left_(left), shared_(std::make_shared<Shared>()) {
  thread_ = std::thread([path = std::move(path), shared = shared_] { Work(path, *shared); });
}

BackgroundReader::~BackgroundReader() {
  {
    const std::lock_guard lock(shared_->mutex);
    shared_->is_abandoned = true;
  }
  shared_->disk.notify_one();
  left_.Add(std::move(thread_), {shared_, &shared_->has_ended});
}

bool BackgroundReader::Next(std::string_view& piece) {
  {
    const std::lock_guard lock(shared_->mutex);
    if (!piece_.empty()) shared_->used.push_back(std::move(piece_));
    piece_.clear();
    if (shared_->pieces.empty()) {
      if (shared_->failure) throw *shared_->failure;
      return false;
    }
    piece_ = std::move(shared_->pieces.front());
    shared_->pieces.pop_front();
  }
  shared_->disk.notify_one();
  piece = piece_;
  return true;
}

bool BackgroundReader::AtEnd() const {
  const std::lock_guard lock(shared_->mutex);
  return shared_->is_read && !shared_->failure && shared_->pieces.empty();
}

std::int64_t BackgroundReader::Size() const {
  const std::lock_guard lock(shared_->mutex);
  return shared_->size;
}

void BackgroundReader::Wait() {
  std::unique_lock lock(shared_->mutex);
  shared_->program.wait(lock, [this] { return shared_->is_read || !shared_->pieces.empty(); });
}

void BackgroundReader::Work(const std::string& path, Shared& shared) {
  std::optional<RunTimeError> failure;
  try {
    ReadAll(path, shared);
  } catch (const RunTimeError& error) {
    failure = error;
  } catch (const std::exception& error) {
    failure = RunTimeError(kDeviceIo, "\"" + path + "\" could not be read: " + error.what());
  }
  {
    const std::lock_guard lock(shared.mutex);
    shared.failure = failure;
    shared.is_read = true;
  }
  shared.program.notify_one();
  shared.has_ended = true;
}

void BackgroundReader::ReadAll(const std::string& path, Shared& shared) {
  FileForReading file(path);
  {
    const std::lock_guard lock(shared.mutex);
    shared.size = file.Size();
  }
  std::string piece;
  do {
    piece.resize(kPiece);
    piece.resize(file.Read(piece.data(), piece.size()));
  } while (!piece.empty() && Put(shared, piece));
}

// Leaves other memory in `piece`. False if there is nobody to read on for.
bool BackgroundReader::Put(Shared& shared, std::string& piece) {
  {
    std::unique_lock lock(shared.mutex);
    shared.disk.wait(lock,
                     [&] { return shared.is_abandoned || shared.pieces.size() < kMostPieces; });
    if (shared.is_abandoned) return false;
    shared.pieces.push_back(std::move(piece));
    piece.clear();
    if (!shared.used.empty()) {
      piece = std::move(shared.used.back());
      shared.used.pop_back();
    }
  }
  shared.program.notify_one();
  return true;
}

}  // namespace tarnlink
