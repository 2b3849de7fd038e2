#include "graph/file_job.h"

#include <algorithm>
#include <utility>

namespace tarnlink {

namespace {

constexpr std::size_t kStep = 16 * PieceSource::kPiece;  // bytes

constexpr int kAll = 100;  // percent

int PercentOf(double share) { return std::clamp(static_cast<int>(share * kAll), 0, kAll - 1); }

}  // namespace

WriteJob::WriteJob(std::string first, std::unique_ptr<PieceSource> source,
                   std::unique_ptr<BigWriter> writer)
    : first_(std::move(first)), source_(std::move(source)), writer_(std::move(writer)) {}

bool WriteJob::Step() {
  std::size_t made = 0;
  while (!is_complete_) {
    if (made >= kStep || !writer_->HasRoom()) return true;
    if (!first_.empty()) {
      writer_->Write(first_);
      first_.clear();
    } else if (source_->Next(piece_)) {
      made += piece_.size();
      writer_->Write(piece_);
    } else {
      writer_->Finish();
      is_complete_ = true;
    }
  }
  is_done_ = writer_->IsFinished();
  return !is_done_;
}

int WriteJob::Percent() const { return is_done_ ? kAll : PercentOf(source_->Share()); }

ReadJob::ReadJob(std::unique_ptr<BigReader> reader, MeasureFileReader& file)
    : reader_(std::move(reader)), file_(file) {}

bool ReadJob::Step() {
  std::size_t taken = 0;
  std::string_view piece;
  while (taken < kStep && reader_->Next(piece)) {
    taken += piece.size();
    taken_ += static_cast<std::int64_t>(piece.size());
    if (!file_.Take(piece)) return false;
  }
  if (!reader_->AtEnd()) return true;
  file_.Finish();
  return false;
}

int ReadJob::Percent() const {
  if (file_.IsDone()) return kAll;
  const auto size = static_cast<double>(std::max<std::int64_t>(reader_->Size(), 1));
  return PercentOf(static_cast<double>(taken_) / size);
}

}  // namespace tarnlink
