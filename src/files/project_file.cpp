#include "files/project_file.h"

#include <algorithm>

#include "common/paths.h"
#include "common/run_time_error.h"
#include "common/shown_text.h"
#include "common/text.h"
#include "common/text_file.h"
#include "files/field_stream.h"

namespace tarnlink {
namespace {

constexpr int kShortestEntry = 4;  // characters

// QuotedField would change such a path into that of another file.
void RequireQuotable(const std::string& path) {
  if (path.find_first_of("\"\r\n") == std::string::npos) return;
  throw RunTimeError(kTypeMismatch,
                     "A project file cannot hold a path with a double quote or a line end: " +
                         ShownText(path) + ".");
}

}  // namespace

std::vector<std::string> ReadProjectEntries(std::string_view text) {
  std::vector<std::string> entries;
  FieldStream fields(text);
  while (const std::optional<Field> field = fields.Next()) {
    if (CharacterCount(field->text) >= kShortestEntry) entries.emplace_back(field->text);
  }
  return entries;
}

std::optional<std::string> GroupOfEntry(std::string_view entry) {
  const std::string extension = StripExtFromPath(entry);
  if (extension == "map") return "lst";
  const auto& groups = ProjectTree::kGroups;
  if (std::find(groups.begin(), groups.end(), extension) == groups.end()) return std::nullopt;
  return extension;
}

std::string WriteProjectFile(const ProjectTree& tree) {
  if (tree.Count() > kMostProjectNodes) {
    throw RunTimeError(kOverflow, "A project file holds at most " +
                                      std::to_string(kMostProjectNodes) +
                                      " entries, groups included; this project has " +
                                      std::to_string(tree.Count()) + ".");
  }
  std::string file;
  for (const ProjectNode& node : tree.Nodes()) {
    RequireQuotable(node.key);
    file.append(QuotedField(node.key)).append(kLineEnd);
  }
  return file;
}

}  // namespace tarnlink
