#include "files/project_file.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "common/run_time_error.h"
#include "common/shown_text.h"
#include "common/text_file.h"
#include "support/prefixes.h"
#include "support/samples.h"

namespace tarnlink {
namespace {

constexpr const char* kEmptyProject =
    "\"p\"\r\n\"wcr\"\r\n\"par\"\r\n\"grp\"\r\n\"erc\"\r\n\"ids\"\r\n\"lst\"\r\n";

constexpr const char* kExample =
    "\"p\"\r\n\"wcr\"\r\n\"C:\\jobs\\main.wcr\"\r\n\"/jobs/a, b.wcr\"\r\n\"par\"\r\n\"grp\"\r\n"
    "\"erc\"\r\n\"ids\"\r\n\"/jobs/boiler.ids\"\r\n\"lst\"\r\n\"/jobs/boiler.map\"\r\n";

// The entries in square brackets.
std::string Entries(std::string_view text) {
  std::string shown;
  for (const std::string& entry : ReadProjectEntries(text)) shown += "[" + entry + "]";
  return shown;
}

// The tree that a project file makes; nothing if one of its entries has no place there.
std::optional<ProjectTree> Load(std::string_view text) {
  ProjectTree tree;
  for (const std::string& entry : ReadProjectEntries(text)) {
    const std::optional<std::string> group = GroupOfEntry(entry);
    if (!group || !tree.AddFileToProject(*group, entry)) return std::nullopt;
  }
  return tree;
}

// "code reason" of the error that writing ends in, empty for none.
std::string WriteError(const ProjectTree& tree) {
  try {
    WriteProjectFile(tree);
    return "";
  } catch (const RunTimeError& error) {
    return std::to_string(error.code()) + " " + error.what();
  }
}

ProjectTree TreeOf(int nodes) {
  ProjectTree tree;
  while (tree.Count() < nodes) {
    tree.AddFileToProject("wcr", "/" + std::to_string(tree.Count()) + ".wcr");
  }
  return tree;
}

TEST(ReadProjectEntries, GivesTheFilesInTheirOrder) {
  EXPECT_EQ(Entries(kExample),
            "[C:\\jobs\\main.wcr][/jobs/a, b.wcr][/jobs/boiler.ids][/jobs/boiler.map]");
  EXPECT_EQ(Entries("\"/b.par\"\r\n\"/a.wcr\"\r\n\"/b.par\"\r\n"), "[/b.par][/a.wcr][/b.par]");
  EXPECT_EQ(Entries("\"/a.wcr\"\n\"/b.wcr\""), "[/a.wcr][/b.wcr]");
}

TEST(ReadProjectEntries, PassesOverWhatIsShorterThanFourCharacters) {
  EXPECT_EQ(Entries(kEmptyProject), "");
  EXPECT_EQ(Entries("\"a.b\"\r\n\"\"\r\n\r\n\"   \"\r\n\"ab.c\"\r\n"), "[ab.c]");
  EXPECT_EQ(Entries("\"    \""), "[    ]");
  EXPECT_EQ(Entries(""), "");
}

TEST(ReadProjectEntries, CountsCharactersNotBytes) {
  EXPECT_EQ(Entries("\"\xC3\xBC.b\"\r\n\"\xC3\xBC.bc\"\r\n"), "[\xC3\xBC.bc]");
  EXPECT_EQ(Entries(DecodeText("\"\xFC.b\"\r\n\"\xFC.bc\"\r\n")), "[\xC3\xBC.bc]");
}

TEST(ReadProjectEntries, EndsAnEntryThatIsNotClosedWithItsLine) {
  EXPECT_EQ(Entries("\"/a.wcr\r\n\"/b.wcr\"\r\n"), "[/a.wcr][/b.wcr]");
  EXPECT_EQ(Entries("\"/a.wcr"), "[/a.wcr]");
}

TEST(ReadProjectEntries, PassesOverWhatStandsBehindAClosingQuote) {
  EXPECT_EQ(Entries("\"/a.wcr\" and more\r\n\"/b.wcr\"\r\n"), "[/a.wcr][/b.wcr]");
  EXPECT_EQ(Entries("\"/a\"b\".wcr\"\r\n\"/b.wcr\"\r\n"), "[/b.wcr]");
}

TEST(ReadProjectEntries, TakesATextWithoutQuotesAsAnEntry) {
  EXPECT_EQ(Entries("p\r\nwcr\r\n  /jobs/main.wcr  \r\n"), "[/jobs/main.wcr]");
  EXPECT_EQ(Entries("/jobs/5\".wcr\r\n"), "[/jobs/5\".wcr]");
}

TEST(ReadProjectEntries, BeginsAFurtherEntryAtACommaOutsideQuotes) {
  EXPECT_EQ(Entries("\"/a.wcr\",\"/b.wcr\"\r\n/c.wcr,/d.wcr\r\n"),
            "[/a.wcr][/b.wcr][/c.wcr][/d.wcr]");
  EXPECT_EQ(Entries("\"/a,b.wcr\"\r\n"), "[/a,b.wcr]");
}

TEST(GroupOfEntry, GoesByTheExtension) {
  for (const std::string group : {"wcr", "par", "grp", "erc", "ids", "lst"}) {
    EXPECT_EQ(GroupOfEntry("C:\\jobs\\a.b." + group), group);
  }
  EXPECT_EQ(GroupOfEntry("/jobs/a.map"), "lst");
}

TEST(GroupOfEntry, KnowsNoOtherExtension) {
  for (const std::string entry :
       {"x.txt", "X.WCR", "x.Wcr", "x.MAP", "x.prj", "x.p", "x.", "x.wcr ", "x.wcr.bak",
        "/jobs/wcr", "/jobs.wcr/x", "x.wcrs", "x.wc", ""}) {
    EXPECT_FALSE(GroupOfEntry(entry)) << entry;
  }
}

TEST(WriteProjectFile, WritesEveryNodeInTreeOrder) {
  EXPECT_EQ(WriteProjectFile(ProjectTree()), kEmptyProject);
  ProjectTree tree;
  tree.AddFileToProject("lst", "/jobs/boiler.map");
  tree.AddFileToProject("wcr", "C:\\jobs\\main.wcr");
  tree.AddFileToProject("ids", "/jobs/boiler.ids");
  tree.AddFileToProject("wcr", "/jobs/a, b.wcr");
  EXPECT_EQ(WriteProjectFile(tree), kExample);
}

TEST(WriteProjectFile, WritesWhatIsLeftOfATreeWithoutItsGroupsOrRoot) {
  ProjectTree tree;
  tree.Remove("par");
  EXPECT_EQ(WriteProjectFile(tree),
            "\"p\"\r\n\"wcr\"\r\n\"grp\"\r\n\"erc\"\r\n\"ids\"\r\n\"lst\"\r\n");
  tree.Remove("p");
  EXPECT_EQ(WriteProjectFile(tree), "");
}

TEST(WriteProjectFile, Writes255NodesAndRefusesOneMore) {
  const std::string file = WriteProjectFile(TreeOf(255));
  EXPECT_EQ(ReadProjectEntries(file).size(), 248U);
  EXPECT_EQ(WriteError(TreeOf(256)),
            "6 A project file holds at most 255 entries, groups included; this project has 256.");
}

TEST(WriteProjectFile, RefusesAPathThatItCannotHold) {
  for (const std::string path : {"/5\" pipe.wcr", "\"/a.wcr\"", "/a\nb.wcr", "/a\rb.wcr"}) {
    ProjectTree tree;
    tree.AddFileToProject("wcr", path);
    EXPECT_EQ(WriteError(tree),
              "13 A project file cannot hold a path with a double quote or a line end: " +
                  ShownText(path) + ".");
  }
}

TEST(ProjectFile, KeepsTheOrderWithinAGroupFromSaveToLoad) {
  ProjectTree tree;
  for (const std::string path :
       {"/z.wcr", "/a.wcr", "/M\xC3\xBCller, m.wcr", "/ x.wcr ", "/k'.wcr"}) {
    tree.AddFileToProject("wcr", path);
  }
  tree.AddFileToProject("par", "/z.par");
  tree.Remove("/ x.wcr ");
  const std::optional<ProjectTree> loaded = Load(DecodeText(EncodeText(WriteProjectFile(tree))));
  ASSERT_TRUE(loaded);
  EXPECT_EQ(loaded->Nodes(), tree.Nodes());
}

TEST(ProjectFile, LoadsFilesInAnyOrderUnderTheirGroups) {
  const std::optional<ProjectTree> loaded = Load("\"/a.map\"\r\n\"/b.wcr\"\r\n\"p\"\r\n\"/a.wcr\"");
  ASSERT_TRUE(loaded);
  EXPECT_EQ(WriteProjectFile(*loaded),
            "\"p\"\r\n\"wcr\"\r\n\"/b.wcr\"\r\n\"/a.wcr\"\r\n\"par\"\r\n\"grp\"\r\n\"erc\"\r\n"
            "\"ids\"\r\n\"lst\"\r\n\"/a.map\"\r\n");
}

TEST(ProjectFile, CannotBeLoadedWithAnEntryThatHasNoPlace) {
  for (const std::string entry :
       {"\"/jobs/main.wcr\"", "\"x.txt\"", "\"X.WCR\"", "\"x.MAP\"", "\"job.prj\"", "\"    \"",
        "\"/jobs/readme\"", "\"unnamed project\"", "x.wcr x.wcr x"}) {
    EXPECT_FALSE(Load("\"p\"\r\n\"/jobs/main.wcr\"\r\n" + entry + "\r\n")) << entry;
  }
}

TEST(ProjectFile, LoadsAnEmptyFileAsAnEmptyProject) {
  const std::optional<ProjectTree> loaded = Load("");
  ASSERT_TRUE(loaded);
  EXPECT_EQ(WriteProjectFile(*loaded), kEmptyProject);
}

TEST(ReadProjectEntries, EndsOnEveryPrefix) {
  for (const std::string& text :
       {std::string(kExample), SampleText("boiler.prj"), SampleText("modbus.prj")}) {
    const std::vector<std::string> whole = ReadProjectEntries(text);
    ForEveryPrefix(text, [&](std::string_view prefix) {
      const std::vector<std::string> entries = ReadProjectEntries(prefix);
      ASSERT_LE(entries.size(), whole.size());
      for (std::size_t i = 0; i < entries.size(); ++i) {
        // Only the last one may be cut short.
        EXPECT_TRUE(i + 1 < entries.size() ? entries[i] == whole[i]
                                           : whole[i].starts_with(entries[i]));
      }
    });
  }
}

TEST(ProjectFile, LoadsTheSamples) {
  for (const auto& [name, files] :
       {std::pair<std::string, int>{"boiler.prj", 7}, {"modbus.prj", 3}}) {
    const std::optional<ProjectTree> loaded = Load(SampleText(name));
    ASSERT_TRUE(loaded) << name;
    EXPECT_EQ(loaded->Count(), ProjectTree().Count() + files) << name;
    for (const std::string& entry : ReadProjectEntries(SampleText(name))) {
      EXPECT_NE(SampleBytes(entry), "") << entry << " is shipped with its project.";
    }
  }
}

TEST(ReadProjectEntries, EndsOnBytesThatAreNoText) {
  EXPECT_EQ(Entries(std::string_view("\"/a\0b.wcr\"", 10)), std::string("[/a\0b.wcr]", 10));
  EXPECT_EQ(ReadProjectEntries(std::string(std::size_t{1} << 20, ',')).size(), 0U);
  EXPECT_EQ(ReadProjectEntries(std::string(std::size_t{1} << 20, '"')).size(), 0U);
}

}  // namespace
}  // namespace tarnlink
