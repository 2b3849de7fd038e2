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
