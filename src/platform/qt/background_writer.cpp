#include "platform/qt/background_writer.h"

#include <exception>
#include <utility>

namespace tarnlink {
namespace {

constexpr std::size_t kMostPieces = 8;

}  // namespace

BackgroundWriter::BackgroundWriter(const std::string& path, const MakeSink& make, LeftThreads& left)
    : left_(left), shared_(std::make_shared<Shared>()) {
  thread_ = std::thread([path, make, shared = shared_] { Work(path, make, *shared); });
}

BackgroundWriter::~BackgroundWriter() {
  {
    const std::lock_guard lock(shared_->mutex);
    shared_->is_abandoned = true;
  }
  shared_->disk.notify_one();
  left_.Add(std::move(thread_), {shared_, &shared_->has_ended});
}

bool BackgroundWriter::Shared::HasRoom() const { return pieces.size() < kMostPieces; }

bool BackgroundWriter::HasRoom() {
  const std::lock_guard lock(shared_->mutex);
  if (shared_->failure) throw *shared_->failure;
  return shared_->HasRoom();
}

void BackgroundWriter::Write(std::string& piece) {
  {
    const std::lock_guard lock(shared_->mutex);
    shared_->pieces.push_back(std::move(piece));
    piece.clear();
    if (!shared_->used.empty()) {
      piece = std::move(shared_->used.back());
      shared_->used.pop_back();
    }
  }
  shared_->disk.notify_one();
}

void BackgroundWriter::Finish() {
  {
    const std::lock_guard lock(shared_->mutex);
    shared_->is_complete = true;
  }
  shared_->disk.notify_one();
}

bool BackgroundWriter::IsFinished() {
  const std::lock_guard lock(shared_->mutex);
  if (shared_->failure) throw *shared_->failure;
  return shared_->is_finished;
}

void BackgroundWriter::Wait() {
  std::unique_lock lock(shared_->mutex);
  shared_->program.wait(lock, [this] {
    if (shared_->failure || shared_->is_finished) return true;
    return !shared_->is_complete && shared_->HasRoom();
  });
}

void BackgroundWriter::Work(const std::string& path, const MakeSink& make, Shared& shared) {
  std::optional<RunTimeError> failure;
  try {
    WriteAll(make, shared);
  } catch (const RunTimeError& error) {
    failure = error;
  } catch (const std::exception& error) {
    failure = RunTimeError(kDeviceIo, "\"" + path + "\" could not be written: " + error.what());
  }
  {
    const std::lock_guard lock(shared.mutex);
    shared.failure = failure;
  }
  shared.program.notify_one();
  shared.has_ended = true;
}

void BackgroundWriter::WriteAll(const MakeSink& make, Shared& shared) {
  const std::unique_ptr<FileSink> sink = make();
  const auto is_abandoned = [&shared] {
    const std::lock_guard lock(shared.mutex);
    return shared.is_abandoned;
  };
  std::string piece;
  while (Take(shared, piece)) sink->Write(piece);
  if (is_abandoned()) return;
  sink->Sync();
  if (is_abandoned()) return;
  sink->Replace();
  const std::lock_guard lock(shared.mutex);
  shared.is_finished = true;
}

// Gives back the memory of the piece that was written, and takes the next one. False if there is
// none, or nobody to write on for.
bool BackgroundWriter::Take(Shared& shared, std::string& piece) {
  {
    std::unique_lock lock(shared.mutex);
    if (!piece.empty()) shared.used.push_back(std::move(piece));
    shared.disk.wait(
        lock, [&] { return shared.is_abandoned || shared.is_complete || !shared.pieces.empty(); });
    if (shared.is_abandoned || shared.pieces.empty()) return false;
    piece = std::move(shared.pieces.front());
    shared.pieces.pop_front();
  }
  shared.program.notify_one();
  return true;
}

}  // namespace tarnlink
