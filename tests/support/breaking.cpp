#include "support/breaking.h"

namespace tarnlink {
namespace {

class BreakingRows final : public RowWriter {
 public:
  BreakingRows(std::unique_ptr<RowWriter> rows, FaultPlan& faults)
      : rows_(std::move(rows)), faults_(faults) {}

  void Append(std::string_view piece) override {
    faults_.Pass("Rows.Append");
    rows_->Append(piece);
  }

 private:
  std::unique_ptr<RowWriter> rows_;
  FaultPlan& faults_;
};

class BreakingReader final : public BigReader {
 public:
  BreakingReader(std::unique_ptr<BigReader> reader, FaultPlan& faults)
      : reader_(std::move(reader)), faults_(faults) {}

  bool Next(std::string_view& piece) override {
    faults_.Pass("BigReader.Next");
    return reader_->Next(piece);
  }
  bool AtEnd() const override { return reader_->AtEnd(); }
  std::int64_t Size() const override { return reader_->Size(); }
  void Wait() override { reader_->Wait(); }

 private:
  std::unique_ptr<BigReader> reader_;
  FaultPlan& faults_;
};

class BreakingWriter final : public BigWriter {
 public:
  BreakingWriter(std::unique_ptr<BigWriter> writer, FaultPlan& faults)
      : writer_(std::move(writer)), faults_(faults) {}

  bool HasRoom() override {
    faults_.Pass("BigWriter.HasRoom");
    return writer_->HasRoom();
  }
  void Write(std::string& piece) override { writer_->Write(piece); }
  void Finish() override { writer_->Finish(); }
  bool IsFinished() override {
    faults_.Pass("BigWriter.IsFinished");
    return writer_->IsFinished();
  }
  void Wait() override { writer_->Wait(); }

 private:
  std::unique_ptr<BigWriter> writer_;
  FaultPlan& faults_;
};

}  // namespace

std::string BreakingFiles::ReadWhole(const std::string& path) {
  faults_.Pass("Files.ReadWhole");
  return files_.ReadWhole(path);
}

void BreakingFiles::ReadPieces(const std::string& path,
                               const std::function<bool(std::string_view)>& take) {
  faults_.Pass("Files.ReadPieces");
  files_.ReadPieces(path, take);
}

void BreakingFiles::WriteWhole(const std::string& path, std::string_view bytes) {
  faults_.Pass("Files.WriteWhole");
  files_.WriteWhole(path, bytes);
}

std::unique_ptr<RowWriter> BreakingFiles::OpenRows(const std::string& path, bool keep) {
  faults_.Pass("Files.OpenRows");
  return std::make_unique<BreakingRows>(files_.OpenRows(path, keep), faults_);
}

std::unique_ptr<BigReader> BreakingFiles::ReadBig(const std::string& path) {
  return std::make_unique<BreakingReader>(files_.ReadBig(path), faults_);
}

std::unique_ptr<BigWriter> BreakingFiles::WriteBig(const std::string& path) {
  return std::make_unique<BreakingWriter>(files_.WriteBig(path), faults_);
}

std::unique_ptr<BigWriter> BreakingFiles::WriteSheet(const std::string& path) {
  return std::make_unique<BreakingWriter>(files_.WriteSheet(path), faults_);
}

bool BreakingFiles::Exists(const std::string& path) const {
  faults_.Pass("Files.Exists");
  return files_.Exists(path);
}

bool BreakingFiles::IsFolder(const std::string& path) const {
  faults_.Pass("Files.IsFolder");
  return files_.IsFolder(path);
}

std::vector<std::string> BreakingFiles::ListFolder(const std::string& folder) const {
  faults_.Pass("Files.ListFolder");
  return files_.ListFolder(folder);
}

void BreakingPort::SetSettings(const std::string& settings) {
  faults_.Pass("Port.Settings");
  port_.SetSettings(settings);
}

void BreakingPort::SetPortOpen(bool open) {
  faults_.Pass(open ? "Port.Open" : "Port.Close");
  port_.SetPortOpen(open);
}

void BreakingPort::Output(std::string_view bytes) {
  faults_.Pass("Port.Output");
  port_.Output(bytes);
}

std::string BreakingPort::Input() {
  faults_.Pass("Port.Input");
  return port_.Input();
}

}  // namespace tarnlink
