#include "files/project_tree.h"

#include <algorithm>
#include <utility>

#include "common/paths.h"
#include "common/text.h"

namespace tarnlink {

namespace {

constexpr std::array<const char*, ProjectTree::kGroups.size()> kGroupTexts = {
    "Tarnlink Files",    "Parameter Files", "Graphic Files",
    "Error Description", "ID Description",  "Memory Map"};

}  // namespace

void ProjectTree::InitNewProjectTree() {
  entries_.clear();
  const std::string root(kRoot);
  Insert({root, "Unnamed Project", ""});
  for (std::size_t i = 0; i < kGroups.size(); ++i) {
    Insert({std::string(kGroups[i]), kGroupTexts[i], root});
  }
  TellChanged();
}

bool ProjectTree::AddFileToProject(std::string_view ParentKey, const std::string& FileName) {
  const ProjectNode* group = Find(ToLower(ParentKey));
  if (group == nullptr || group->parent != kRoot) return false;
  if (FileName.empty() || HasNode(FileName)) return false;
  Insert({FileName, StripFileFromPath(FileName), group->key});
  TellChanged();
  return true;
}

bool ProjectTree::Remove(std::string_view key) {
  const ProjectNode* node = Find(key);
  if (node == nullptr) return false;
  const std::string removed = node->key;  // `key` may be a part of the node
  const auto parent = entries_.find(node->parent);
  if (parent != entries_.end()) std::erase(parent->second.children, removed);
  Erase(removed);
  TellChanged();
  return true;
}

bool ProjectTree::HasNode(std::string_view key) const { return Find(key) != nullptr; }

const ProjectNode* ProjectTree::Find(std::string_view key) const {
  const auto found = entries_.find(key);
  return found == entries_.end() ? nullptr : &found->second.node;
}

std::optional<std::string> ProjectTree::FirstChild(std::string_view group) const {
  const auto found = entries_.find(group);
  if (found == entries_.end() || found->second.children.empty()) return std::nullopt;
  return found->second.children.front();
}

std::string ProjectTree::RootText() const {
  const ProjectNode* root = Find(kRoot);
  return root == nullptr ? std::string() : root->text;
}

void ProjectTree::SetRootText(const std::string& text) {
  const auto root = entries_.find(kRoot);
  if (root == entries_.end()) return;
  root->second.node.text = text;
  TellChanged();
}

std::vector<ProjectNode> ProjectTree::Nodes() const {
  std::vector<ProjectNode> nodes;
  nodes.reserve(entries_.size());
  if (HasNode(kRoot)) AppendTo(nodes, kRoot);
  return nodes;
}

void ProjectTree::Insert(ProjectNode node) {
  const auto parent = entries_.find(node.parent);
  if (parent != entries_.end()) parent->second.children.push_back(node.key);
  std::string key = node.key;
  entries_.emplace(std::move(key), Entry{std::move(node), {}});
}

void ProjectTree::Erase(const std::string& key) {
  const auto found = entries_.find(key);
  const std::vector<std::string> children = std::move(found->second.children);
  entries_.erase(found);
  for (const std::string& child : children) Erase(child);
}

void ProjectTree::AppendTo(std::vector<ProjectNode>& nodes, std::string_view key) const {
  const Entry& entry = entries_.find(key)->second;
  nodes.push_back(entry.node);
  for (const std::string& child : entry.children) AppendTo(nodes, child);
}

void ProjectTree::TellChanged() const {
  if (Changed) Changed();
}

}  // namespace tarnlink
