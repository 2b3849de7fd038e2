#include "monitor/project_paths.h"

#include <algorithm>

#include "common/paths.h"
#include "platform/path_resolver.h"

namespace tarnlink {

std::string FoundFile(const frm_Main& main, const std::string& key) {
  const Files& files = main.platform().files();
  const std::string path = UsableFile(key, files);
  const std::string name = StripFileFromPath(key);
  // One that is gone from a folder that is there is missing: another of its name is not it.
  const bool may_be_beside = !HasFolder(files, FolderOfPath(path));
  if (main.CurrentProjectFile.empty() || !may_be_beside) return path;
  const std::string beside = JoinPath(FolderOfPath(main.CurrentProjectFile), name);
  return HasFile(files, beside) ? beside : path;
}

std::string FileOfGroup(const frm_Main& main, const std::string& group,
                        const std::string& setting) {
  const auto key = main.trvProject.FirstChild(group);
  return key ? FoundFile(main, *key) : setting;
}

bool HoldsFile(const frm_Main& main, const std::string& path) {
  const auto& nodes = main.trvProject.Nodes();
  return std::any_of(nodes.begin(), nodes.end(), [&](const ProjectNode& node) {
    return node.key == path || FoundFile(main, node.key) == path;
  });
}

void AddSavedFile(frm_Main& main, const std::string& group, const std::string& path) {
  if (main.trvProject.AddFileToProject(group, path)) {
    main.ProjectChanged = true;
    return;
  }
  main.platform().dialogs().MessageBox(
      {.text = "\"" + StripFileFromPath(path) + "\" has no group in this project.",
       .title = std::string(kProgramTitle),
       .icon = Icon::kExclamation});
}

}  // namespace tarnlink
