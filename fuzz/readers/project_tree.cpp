#include "files/project_tree.h"

#include <set>

#include "fuzz/claim.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/readers/readers.h"

namespace tarnlink {
namespace {

void ClaimTree(const ProjectTree& tree) {
  const std::vector<ProjectNode> nodes = tree.Nodes();
  Claim(static_cast<int>(nodes.size()) == tree.Count(), "every node hangs on the root");
  std::set<std::string> keys;
  for (const ProjectNode& node : nodes) {
    Claim(node.parent.empty() == (node.key == ProjectTree::kRoot), "only the root has no parent");
    Claim(node.parent.empty() || keys.count(node.parent) == 1, "a parent comes first");
    Claim(keys.insert(node.key).second, "a key is there once");
    const ProjectNode* found = tree.Find(node.key);
    Claim(found != nullptr && *found == node, "a node is found by its key");
  }
  for (const std::string_view group : ProjectTree::kGroups) {
    const auto child = tree.FirstChild(group);
    Claim(!child || tree.Find(*child)->parent == group, "a child belongs to its group");
  }
}

// One change; the first byte says which. Returns whether it has changed anything.
bool Change(FuzzInput& bytes, ProjectTree& tree) {
  const int before = tree.Count();
  const int what = bytes.Below(4);
  const std::string text(bytes.ShortText());
  if (what == 0) {
    const std::string_view group =
        bytes.Below(8) < 6 ? ProjectTree::kGroups.at(text.size() % 6) : std::string_view(text);
    const bool is_added = tree.AddFileToProject(group, text);
    Claim(tree.Count() == before + (is_added ? 1 : 0), "a file that is added is one more");
    Claim(!is_added || tree.HasNode(text), "a file that is added is there");
    return is_added;
  }
  if (what == 1) {
    const bool is_removed = tree.Remove(text);
    Claim(is_removed == (tree.Count() < before), "what is removed is gone");
    Claim(!tree.HasNode(text), "and is not found");
    return is_removed;
  }
  if (what == 2) {
    const bool has_root = tree.HasNode(ProjectTree::kRoot);
    tree.SetRootText(text);
    Claim(tree.RootText() == (has_root ? text : ""), "it has that name");
    return has_root;
  }
  if (text.size() <= 3) return false;
  tree.InitNewProjectTree();
  Claim(tree.Count() == 7, "a new tree has a root and six groups");
  return true;
}

void Run(std::string_view input) {
  constexpr int kMostChanges = 300;
  ProjectTree tree;
  int told = 0;
  tree.Changed = [&told] { ++told; };
  FuzzInput bytes(input);
  for (int i = 0; i < kMostChanges && !bytes.AtEnd(); ++i) {
    const int before = told;
    const bool is_changed = Change(bytes, tree);
    Claim(told - before == (is_changed ? 1 : 0), "a change is told once, and nothing else is");
  }
  ClaimTree(tree);
}

std::vector<std::string> Seeds() {
  return {std::string("\0\5a.wcr\0\0\5b.par\1\1\5a.wcr\2\4name", 29),
          std::string("\1\3wcr\0\3wcr\0\0\1x\7\1\1p\0\1y\0", 20), "\3\4abcd"};
}

}  // namespace

FuzzTarget ProjectTreeTarget() { return {"project_tree", Run, Seeds}; }

}  // namespace tarnlink
