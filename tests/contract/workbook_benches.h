// A workbook, once in memory and once as a file on a real disk, and how a stranger reads it.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "contract/files_benches.h"
#include "contract/loops.h"
#include "platform/qt/xlsx_workbook.h"

namespace tarnlink {

// The lines of `FakeWorkbook`, as another program reads them from an .xlsx file.
std::string ReadXlsx(const std::string& path);

class FakeWorkbookBench : public VirtualLoop {
 public:
  FakeWorkbookBench() { world().disk().MakeFolder("/disk"); }

  std::string path(const std::string& name) const { return "/disk/" + name; }
  std::unique_ptr<Workbook> Make(const std::string& file) { return world().CreateWorkbook(file); }
  std::string Read(const std::string& file) { return world().disk().Get(file); }
  void Put(const std::string& name, const std::string& bytes) {
    world().disk().Put(path(name), bytes);
  }
  void MakeFolder(const std::string& name) { world().disk().MakeFolder(path(name)); }
  void Forbid(const std::string& name) { world().disk().Forbid(path(name)); }
  void Allow(const std::string& name) { world().disk().Allow(path(name)); }
  bool LeaveRoom(std::size_t bytes) {
    world().disk().SetFreeSpace(bytes);
    return true;
  }
};

class XlsxWorkbookBench : public QtLoop {
 public:
  std::string path(const std::string& name) const { return disk_.path(name); }
  std::unique_ptr<Workbook> Make(const std::string& file) {
    return std::make_unique<XlsxWorkbook>(file, XlsxWorkbook::Limits{.pause = 20ms});
  }
  std::string Read(const std::string& file) { return ReadXlsx(file); }
  void Put(const std::string& name, const std::string& bytes) { disk_.Put(name, bytes); }
  void MakeFolder(const std::string& name) { disk_.MakeFolder(name); }
  void Forbid(const std::string& name) { disk_.Forbid(name); }
  void Allow(const std::string& name) {
    std::filesystem::permissions(path(name), std::filesystem::perms::all);
  }
  bool LeaveRoom(std::size_t bytes) { return disk_.LeaveRoom(bytes); }

 private:
  RealDisk disk_;
};

}  // namespace tarnlink
