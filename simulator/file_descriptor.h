// Owns an open file, and reads and writes it without ever waiting.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace boiler {

class FileDescriptor {
 public:
  FileDescriptor() = default;
  // Takes over what open(2) gave; -1 is none.
  explicit FileDescriptor(int number) : number_(number) {}
  FileDescriptor(FileDescriptor&& other) noexcept;
  FileDescriptor& operator=(FileDescriptor&& other) noexcept;
  ~FileDescriptor() { Close(); }

  int number() const { return number_; }
  bool open() const { return number_ >= 0; }
  void Close();

 private:
  int number_ = -1;
};

// What waits to be read from a non-blocking file, which may be nothing; no value when its other end
// is gone.
std::optional<std::string> ReadWaiting(int file);

// Writes as much as fits now. Returns how much that was.
std::size_t WriteFitting(int file, std::string_view bytes);

}  // namespace boiler
