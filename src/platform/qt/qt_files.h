// The disk. Whole files are read and written, and questions about it are asked, beside the event
// loop, which goes on if that takes longer than a moment.
#pragma once

#include <sys/types.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"
#include "platform/qt/file_errors.h"
#include "platform/qt/left_threads.h"
#include "platform/qt/waiting_dialog.h"

namespace tarnlink {

class QtFiles final : public Files {
 public:
  // An empty folder for the shipped files means the one beside the program.
  explicit QtFiles(std::string data_folder = {});

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
  std::string DocumentsFolder() const override;
  std::string DataFolder() const override { return data_folder_; }

 private:
  void WaitFor(const std::string& path, FileAction action,
               const std::function<void(const IsGivenUp&)>& work) const;
  // As stat(2) gives it; 0 for what is not there.
  mode_t KindOf(const std::string& path) const;

  std::string data_folder_;
  mutable LeftThreads left_threads_;  // of questions too
};

}  // namespace tarnlink
