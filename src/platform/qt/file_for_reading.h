// A file that is open for reading.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace tarnlink {

// All of it throws RunTimeError 53, 76, 70 or 57; what is no regular file is refused.
class FileForReading {
 public:
  explicit FileForReading(const std::string& path);
  ~FileForReading();
  FileForReading(const FileForReading&) = delete;
  FileForReading& operator=(const FileForReading&) = delete;

  // As the system says; some files have more.
  std::int64_t Size() const;
  // The number of bytes that have been read into `room`, 0 at the file's end.
  std::size_t Read(char* room, std::size_t size);

 private:
  std::string path_;
  int handle_;
};

}  // namespace tarnlink
