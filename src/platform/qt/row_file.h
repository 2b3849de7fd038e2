// A file that grows row by row, written without a buffer.
#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>

#include "platform/files.h"

namespace tarnlink {

class RowFile final : public RowWriter {
 public:
  // Throws RunTimeError 61, 70, 76 or 57.
  RowFile(const std::string& path, bool keep);
  ~RowFile() override;
  RowFile(const RowFile&) = delete;
  RowFile& operator=(const RowFile&) = delete;

  void Append(std::string_view piece) override;

 private:
  void RefuseDeletedFile() const;

  std::string path_;
  int handle_;
  off_t whole_pieces_ = 0;  // the size up to the end of the last piece
};

}  // namespace tarnlink
