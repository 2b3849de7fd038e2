// The sniffer's log file: a heading, then a row for each frame that goes by.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "files/log_file.h"
#include "platform/platform.h"

namespace tarnlink {

class SnifferLog {
 public:
  // `platform` outlives the log.
  explicit SnifferLog(Platform& platform) : platform_(platform) {}

  // Asks where the log is to stand; it is proposed in `folder`. Empty for a cancel.
  std::string AskPath(const std::string& folder);
  // Goes on behind what the file holds. Throws RunTimeError for one that cannot be had.
  void Open(const std::string& path, Date now);
  bool IsOpen() const { return rows_ != nullptr; }
  // Nothing while it is closed. A log that cannot be written any more closes itself and throws.
  void Write(std::string_view row);
  void Close() { rows_.reset(); }

  // Of a log that could not be had or written.
  void Tell(const RunTimeError& error);

 private:
  Platform& platform_;
  std::string path_;
  LogEncoding encoding_;
  std::unique_ptr<RowWriter> rows_;
};

}  // namespace tarnlink
