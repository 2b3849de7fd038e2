#include "files/project_file.h"

#include <algorithm>

#include "common/text.h"
#include "common/text_file.h"
#include "fuzz/claim.h"
#include "fuzz/readers/reader_claims.h"
#include "fuzz/readers/readers.h"
#include "support/samples.h"

namespace tarnlink {
namespace {

// Adds what can be added, as the program does with the entries of a file.
void AddEntries(const std::vector<std::string>& entries, ProjectTree& tree) {
  for (const std::string& entry : entries) {
    const auto group = GroupOfEntry(entry);
    if (group) tree.AddFileToProject(*group, entry);
  }
}

void Run(std::string_view input) {
  const std::string text = DecodeText(input);
  const std::vector<std::string> entries = ReadProjectEntries(text);
  for (const std::string& entry : entries) {
    Claim(CharacterCount(entry) >= 4, "an entry is as long as a file's name can be");
    Claim(IsText(entry) && entry.find('\n') == std::string::npos, "an entry is a line of text");
    const auto group = GroupOfEntry(entry);
    const auto& groups = ProjectTree::kGroups;
    Claim(!group || std::find(groups.begin(), groups.end(), *group) != groups.end(),
          "a group exists");
  }
  ProjectTree tree;
  AddEntries(entries, tree);
  const auto written = Tried([&] { return WriteProjectFile(tree); });
  if (!written) return;
  ProjectTree again;
  AddEntries(ReadProjectEntries(*written), again);
  Claim(again.Nodes() == tree.Nodes(), "a project that is written is read again");
}

std::vector<std::string> Seeds() {
  return {SampleText("boiler.prj"), SampleText("modbus.prj"),
          "\"p\"\r\n\"wcr\"\r\n\"C:\\a\\b.wcr\"\r\n\"x.map\",\"y.lst\"\n", "a\"b.par,.ids\n"};
}

}  // namespace

FuzzTarget ProjectFileTarget() { return {"project_file", Run, Seeds}; }

}  // namespace tarnlink
