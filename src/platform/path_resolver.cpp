#include "platform/path_resolver.h"

#include <algorithm>

#include "common/paths.h"
#include "common/run_time_error.h"

namespace tarnlink {

namespace {

std::string WithSystemSeparators(std::string path) {
  std::replace(path.begin(), path.end(), '\\', '/');
  return path;
}

}  // namespace

std::string UsableFolder(const std::string& folder, const Files& files) {
  if (folder.empty() || IsDrivePath(folder)) return files.DocumentsFolder();
  return WithSystemSeparators(folder);
}

std::string FolderOf(const std::string& file, const Files& files) {
  return UsableFolder(FolderOfPath(file), files);
}

std::string UsableFile(const std::string& file, const Files& files) {
  const std::string name = RelativeToProgram(file);
  if (name.empty()) return file;
  if (HasFile(files, name)) return name;
  return JoinPath(files.DataFolder(), name);
}

bool HasFile(const Files& files, const std::string& path) {
  try {
    return files.Exists(path);
  } catch (const RunTimeError&) {
    return false;
  }
}

bool HasFolder(const Files& files, const std::string& path) {
  try {
    return files.IsFolder(path);
  } catch (const RunTimeError&) {
    return false;
  }
}

bool MayHaveFile(const Files& files, const std::string& path) {
  try {
    return files.Exists(path);
  } catch (const RunTimeError&) {
    return true;
  }
}

}  // namespace tarnlink
