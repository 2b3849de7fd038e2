#include "monitor/project_paths.h"

#include "common/paths.h"
#include "platform/path_resolver.h"

namespace tarnlink {

std::string FoundFile(const frm_Main& main, const std::string& key) {
  const Files& files = main.platform().files();
  const std::string path = UsableFile(key, files);
  if (files.Exists(path) || main.CurrentProjectFile.empty()) return path;
  const std::string beside =
      JoinPath(FolderOfPath(main.CurrentProjectFile), StripFileFromPath(key));
  return files.Exists(beside) ? beside : path;
}

}  // namespace tarnlink
