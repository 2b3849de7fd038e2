// Saving a whole file so that, whatever happens, the disk holds the old bytes or the new ones.
#pragma once

#include <QSaveFile>
#include <functional>
#include <string>
#include <string_view>

namespace tarnlink {

// A file that is written beside the one it is to replace. Throws RunTimeError 61, 70, 76 or 57, and
// is of no further use then. Without `Replace` it leaves nothing behind. One thread at a time.
class FileReplacement {
 public:
  // A link is followed: its target is replaced.
  explicit FileReplacement(const std::string& path);

  void Write(std::string_view bytes);
  // All of it is on the disk, beside the old file.
  void Sync();
  // Once, behind `Sync`. When only the folder could not be synced it throws with the new file in
  // place.
  void Replace();

 private:
  [[noreturn]] void Fail();

  std::string path_;
  QString name_;
  qint64 size_ = 0;
  QSaveFile file_;
};

// Throws RunTimeError 61, 70, 76 or 57. A link is followed: its target gets the bytes. Leaves the
// old file if `is_given_up`, asked last of all, says so.
void SaveWholeFile(
    const std::string& path, std::string_view bytes,
    const std::function<bool()>& is_given_up = [] { return false; });

}  // namespace tarnlink
