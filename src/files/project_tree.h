// The project in memory: a tree of keyed nodes. A file's key is its path; a group's key is also the
// extension of the files that belong under it.
#pragma once

#include <array>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnlink {

struct ProjectNode {
  std::string key;
  std::string text;
  std::string parent;  // key of the parent, empty for the root

  bool operator==(const ProjectNode&) const = default;
};

class ProjectTree {
 public:
  static constexpr std::string_view kRoot = "p";
  // In their order.
  static constexpr std::array<std::string_view, 6> kGroups = {"wcr", "par", "grp",
                                                              "erc", "ids", "lst"};

  ProjectTree() { InitNewProjectTree(); }

  // Root and six groups, in their fixed order.
  void InitNewProjectTree();

  // Adds a file under the group of `ParentKey`, whose case does not count. False if there is no
  // such group or the file stands in the tree already.
  bool AddFileToProject(std::string_view ParentKey, const std::string& FileName);

  // Takes a node out, with all that stands below it; false if there is no such node. A group that
  // was taken out takes no files, and without the root nothing is left, until InitNewProjectTree.
  bool Remove(std::string_view key);

  bool HasNode(std::string_view key) const;
  // Null if there is no such node; valid until the next change.
  const ProjectNode* Find(std::string_view key) const;
  // The key of the first file under a group.
  std::optional<std::string> FirstChild(std::string_view group) const;

  // The project's name, shown at the root; empty while there is none.
  std::string RootText() const;
  void SetRootText(const std::string& text);

  int Count() const { return static_cast<int>(entries_.size()); }
  // Depth first, in the order in which a project file lists them.
  std::vector<ProjectNode> Nodes() const;

  // Called after each change, for the view.
  std::function<void()> Changed;

 private:
  struct Entry {
    ProjectNode node;
    std::vector<std::string> children;  // their keys, in the order in which they were added
  };

  void Insert(ProjectNode node);
  void Erase(const std::string& key);
  void AppendTo(std::vector<ProjectNode>& nodes, std::string_view key) const;
  void TellChanged() const;

  std::map<std::string, Entry, std::less<>> entries_;
};

}  // namespace tarnlink
