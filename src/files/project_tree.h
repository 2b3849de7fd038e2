// The project in memory: a tree of keyed nodes. A file's key is its path; a group's key is also the
// extension of the files that belong under it.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnlink {

struct ProjectNode {
  std::string key;
  std::string text;
  std::string parent;  // key of the parent, empty for the root
};

class ProjectTree {
 public:
  ProjectTree() { InitNewProjectTree(); }

  // Root and six groups, in their fixed order.
  void InitNewProjectTree();

  // Adds a file under the group of `ParentKey`, whose case does not count. False if there is no
  // such group or the file stands in the tree already.
  bool AddFileToProject(std::string_view ParentKey, const std::string& FileName);

  bool HasNode(std::string_view key) const;
  // The key of the first file under a group.
  std::optional<std::string> FirstChild(std::string_view group) const;

  // The project's name, shown at the root.
  const std::string& RootText() const;
  void SetRootText(const std::string& text);

  // Depth first, in the order in which a project file lists them.
  std::vector<ProjectNode> Nodes() const;

  // Called after each change, for the view.
  std::function<void()> Changed;

 private:
  std::vector<ProjectNode> nodes_;  // in the order in which they were added
};

}  // namespace tarnlink
