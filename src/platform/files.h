// Files and folders. Every failure is a RunTimeError whose reason names the file. Real class:
// `QtFiles`; fake: `FakeFiles`.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/big_file.h"

namespace tarnlink {

// A file that grows row by row, such as a log. Each piece is on its way to the disk when `Append`
// returns; nothing is buffered here, but for what a disk that takes its time is behind.
class RowWriter {
 public:
  // What the disk is behind it still gets.
  virtual ~RowWriter() = default;

  // Appends one piece of a row. When the disk takes less than all of it, the file is as it was
  // before this piece and RunTimeError 61 or 57 is thrown; 53 is thrown when the file has been
  // deleted. While the disk is behind, that is thrown for a piece before this one; neither then
  // goes into the file.
  virtual void Append(std::string_view piece) = 0;
};

class Files {
 public:
  virtual ~Files() = default;

  // Throws 53 (no such file), 76 (no such folder), 70 (not permitted), 57 (anything else).
  virtual std::string ReadWhole(const std::string& path) = 0;

  // Hands a file on in pieces of any size, in order and none of them kept, until its end or until
  // `take` returns false. For files that are too long to be held. Throws as ReadWhole does.
  virtual void ReadPieces(const std::string& path,
                          const std::function<bool(std::string_view)>& take) = 0;

  // Replaces the whole file or leaves the old one as it was: written beside it, checked, synced,
  // renamed. Throws 61 (disk full), 70, 76 or 57; a target that is no regular file is refused
  // with 57.
  virtual void WriteWhole(const std::string& path, std::string_view bytes) = 0;

  // Opens `path` for rows, emptied first unless `keep` is set. Throws as WriteWhole does.
  virtual std::unique_ptr<RowWriter> OpenRows(const std::string& path, bool keep) = 0;

  // For long files: read ahead and written behind the program's back. What goes wrong is told by
  // the reader and the writer.
  virtual std::unique_ptr<BigReader> ReadBig(const std::string& path) = 0;
  virtual std::unique_ptr<BigWriter> WriteBig(const std::string& path) = 0;
  // The same for an .xlsx file: its one sheet, "Sheet1", gets the fields of the lines that are
  // written as UTF-8, which tabs separate. One that is a number with a decimal point becomes a
  // number, but for those of the first line. RunTimeError 9: the sheet has no room for more.
  virtual std::unique_ptr<BigWriter> WriteSheet(const std::string& path) = 0;

  // True for a file of any kind; a folder is none. These three throw 57 when the user has stopped
  // waiting for the disk.
  virtual bool Exists(const std::string& path) const = 0;
  virtual bool IsFolder(const std::string& path) const = 0;
  // The names of the plain files in a folder, sorted; empty when there is no such folder.
  virtual std::vector<std::string> ListFolder(const std::string& folder) const = 0;

  // The folder that stands for "C:" and the like, and the folder with the files that were shipped
  // with the program.
  virtual std::string DocumentsFolder() const = 0;
  virtual std::string DataFolder() const = 0;
};

}  // namespace tarnlink
