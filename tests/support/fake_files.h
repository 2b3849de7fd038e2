// A small disk in memory: folders, files, things that are no files, rights and free space.
#pragma once

#include <cstddef>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"

namespace tarnlink {

class FakeFiles final : public Files {
 public:
  // The folder that relative paths start from.
  static constexpr std::string_view kWorkingFolder = "/home/user/work";
  static constexpr std::string_view kDocuments = "/home/user/Documents";
  static constexpr std::string_view kData = "/usr/share/tarnlink";

  FakeFiles();

  std::string ReadWhole(const std::string& path) override;
  // In pieces so small that no line of a test fits one.
  void ReadPieces(const std::string& path,
                  const std::function<bool(std::string_view)>& take) override;
  void WriteWhole(const std::string& path, std::string_view bytes) override;
  std::unique_ptr<RowWriter> OpenRows(const std::string& path, bool keep) override;
  // Every second question to them is too early.
  std::unique_ptr<BigReader> ReadBig(const std::string& path) override;
  std::unique_ptr<BigWriter> WriteBig(const std::string& path) override;
  // The lines stay as they are.
  std::unique_ptr<BigWriter> WriteSheet(const std::string& path) override { return WriteBig(path); }
  bool Exists(const std::string& path) const override;
  bool IsFolder(const std::string& path) const override;
  std::vector<std::string> ListFolder(const std::string& folder) const override;
  std::string DocumentsFolder() const override { return std::string(kDocuments); }
  std::string DataFolder() const override { return std::string(kData); }

  // Puts a file there, with the folders above it.
  void Put(const std::string& path, std::string_view bytes);
  // The bytes of a file; one that is not there fails the test.
  std::string Get(const std::string& path) const;
  void Remove(const std::string& path) { files_.erase(Absolute(path)); }
  void MakeFolder(const std::string& path);
  // With what is in it.
  void RemoveFolder(const std::string& path);
  // A device, socket or the like.
  void MakeSpecial(const std::string& path) { special_.insert(Absolute(path)); }
  // Neither readable nor writable; in a forbidden folder nothing can be made.
  void Forbid(const std::string& path) { forbidden_.insert(Absolute(path)); }
  void Allow(const std::string& path) { forbidden_.erase(Absolute(path)); }
  // Reading the file in pieces fails behind this many bytes.
  void BreakReading(const std::string& path, std::size_t bytes) { broken_[Absolute(path)] = bytes; }
  // Called once, when a file is next read in pieces or written whole: the real disk lets timers and
  // ports go on meanwhile.
  std::function<void()> WhileItWorks;
  // Bytes that the disk still takes.
  void SetFreeSpace(std::size_t bytes) { free_ = bytes; }

  // One line for each file, sorted: "/home/user/work/a.txt 12".
  std::string Describe() const;

 private:
  class Rows;
  class FakeBigReader;
  class FakeBigWriter;

  static std::string Absolute(const std::string& path);
  void CheckTarget(const std::string& path) const;
  std::size_t Grow(std::string& file, std::string_view piece);
  void Work();

  std::map<std::string, std::string> files_;
  std::map<std::string, std::size_t> broken_;
  std::set<std::string> folders_;
  std::set<std::string> special_;
  std::set<std::string> forbidden_;
  std::size_t free_ = std::numeric_limits<std::size_t>::max();
};

}  // namespace tarnlink
