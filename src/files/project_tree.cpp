#include "files/project_tree.h"

#include <algorithm>

#include "common/paths.h"
#include "common/text.h"

namespace tarnlink {

namespace {

constexpr std::string_view kRootKey = "p";

}  // namespace

void ProjectTree::InitNewProjectTree() {
  nodes_ = {{std::string(kRootKey), "Unnamed Project", ""},
            {"wcr", "Tarnlink Files", "p"},
            {"par", "Parameter Files", "p"},
            {"grp", "Graphic Files", "p"},
            {"erc", "Error Description", "p"},
            {"ids", "ID Description", "p"},
            {"lst", "Memory Map", "p"}};
  if (Changed) Changed();
}

bool ProjectTree::AddFileToProject(std::string_view ParentKey, const std::string& FileName) {
  const std::string group = ToLower(ParentKey);
  if (FileName.empty() || !HasNode(group) || HasNode(FileName)) return false;
  nodes_.push_back({FileName, StripFileFromPath(FileName), group});
  if (Changed) Changed();
  return true;
}

bool ProjectTree::HasNode(std::string_view key) const {
  return std::any_of(nodes_.begin(), nodes_.end(),
                     [key](const ProjectNode& node) { return node.key == key; });
}

std::optional<std::string> ProjectTree::FirstChild(std::string_view group) const {
  for (const ProjectNode& node : nodes_) {
    if (node.parent == group) return node.key;
  }
  return std::nullopt;
}

const std::string& ProjectTree::RootText() const { return nodes_.front().text; }

void ProjectTree::SetRootText(const std::string& text) {
  nodes_.front().text = text;
  if (Changed) Changed();
}

std::vector<ProjectNode> ProjectTree::Nodes() const {
  std::vector<ProjectNode> ordered;
  const std::function<void(std::string_view)> visit = [&](std::string_view parent) {
    for (const ProjectNode& node : nodes_) {
      if (node.parent != parent) continue;
      ordered.push_back(node);
      visit(node.key);
    }
  };
  visit("");
  return ordered;
}

}  // namespace tarnlink
