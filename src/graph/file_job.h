// Work on a long file in steps of a few milliseconds, between which the program goes on.
#pragma once

#include <memory>
#include <string>

#include "graph/measure_file_reader.h"
#include "graph/piece_source.h"
#include "platform/big_file.h"

namespace tarnlink {

class FileJob {
 public:
  // Before its end this leaves everything as it was.
  virtual ~FileJob() = default;

  // One step, unless the disk has to be waited for. False once all is done. Throws RunTimeError.
  virtual bool Step() = 0;
  virtual int Percent() const = 0;  // never falls; 100 only when all is done
  // Waits for the disk.
  virtual void Wait() = 0;
};

class WriteJob final : public FileJob {
 public:
  // `first` stands in front of what `source` still has.
  WriteJob(std::string first, std::unique_ptr<PieceSource> source,
           std::unique_ptr<BigWriter> writer);

  bool Step() override;
  int Percent() const override;
  void Wait() override { writer_->Wait(); }

 private:
  std::string first_;  // empty once it is written
  std::string piece_;
  std::unique_ptr<PieceSource> source_;
  std::unique_ptr<BigWriter> writer_;
  bool is_complete_ = false;  // nothing is left to write
  bool is_done_ = false;
};

class ReadJob final : public FileJob {
 public:
  // `file` outlives it.
  ReadJob(std::unique_ptr<BigReader> reader, MeasureFileReader& file);

  bool Step() override;
  int Percent() const override;
  void Wait() override { reader_->Wait(); }

 private:
  std::unique_ptr<BigReader> reader_;
  MeasureFileReader& file_;
  std::int64_t taken_ = 0;  // bytes
};

}  // namespace tarnlink
