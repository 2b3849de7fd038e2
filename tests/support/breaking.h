// Wrappers that carry every call on to a fake, unless the fault plan says that it is to break.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"
#include "platform/serial_port.h"
#include "support/fake_serial_port.h"
#include "support/fault_plan.h"

namespace tarnlink {

// Calls: "Files.ReadWhole", "Files.ReadPieces", "Files.WriteWhole", "Files.OpenRows",
// "Files.Exists", "Files.IsFolder", "Files.ListFolder", "Rows.Append", "BigReader.Next",
// "BigWriter.HasRoom", "BigWriter.IsFinished".
class BreakingFiles final : public Files {
 public:
  BreakingFiles(Files& files, FaultPlan& faults) : files_(files), faults_(faults) {}

  std::string ReadWhole(const std::string& path) override;
  void ReadPieces(const std::string& path,
                  const std::function<bool(std::string_view)>& take) override;
  void WriteWhole(const std::string& path, std::string_view bytes) override;
  std::unique_ptr<RowWriter> OpenRows(const std::string& path, bool keep) override;
  std::unique_ptr<BigReader> ReadBig(const std::string& path) override;
  std::unique_ptr<BigWriter> WriteBig(const std::string& path) override;
  std::unique_ptr<BigWriter> WriteSheet(const std::string& path) override;
  bool Exists(const std::string& path) const override;
  bool IsFolder(const std::string& path) const override;
  std::vector<std::string> ListFolder(const std::string& folder) const override;
  std::string DocumentsFolder() const override { return files_.DocumentsFolder(); }
  std::string DataFolder() const override { return files_.DataFolder(); }

 private:
  Files& files_;
  FaultPlan& faults_;
};

// Calls: "Port.Open", "Port.Close", "Port.Output", "Port.Input", "Port.Settings". The fake outlives
// this and can be asked afterwards.
class BreakingPort final : public SerialPort {
 public:
  BreakingPort(FakeSerialPort& port, FaultPlan& faults) : port_(port), faults_(faults) {}
  ~BreakingPort() override { port_.LetGo(); }

  int CommPort() const override { return port_.CommPort(); }
  void SetCommPort(int number) override { port_.SetCommPort(number); }
  const std::string& Settings() const override { return port_.Settings(); }
  void SetSettings(const std::string& settings) override;
  bool PortOpen() const override { return port_.PortOpen(); }
  void SetPortOpen(bool open) override;
  void Output(std::string_view bytes) override;
  std::string Input() override;
  int InBufferCount() const override { return port_.InBufferCount(); }
  void ClearInBuffer() override { port_.ClearInBuffer(); }
  int RThreshold() const override { return port_.RThreshold(); }
  void SetRThreshold(int bytes) override { port_.SetRThreshold(bytes); }
  void SetOnComm(std::function<void(int)> handler) override { port_.SetOnComm(std::move(handler)); }
  void SetWatcher(LineWatcher* watcher) override { port_.SetWatcher(watcher); }
  std::string LossReason() const override { return port_.LossReason(); }

 private:
  FakeSerialPort& port_;
  FaultPlan& faults_;
};

}  // namespace tarnlink
