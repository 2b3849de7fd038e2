#include "files/project_tree.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarnlink {
namespace {

constexpr const char* kEmpty = "p wcr par grp erc ids lst ";

// The keys in tree order.
std::string Keys(const ProjectTree& tree) {
  std::string keys;
  for (const ProjectNode& node : tree.Nodes()) keys += node.key + " ";
  return keys;
}

class ProjectTreeTest : public testing::Test {
 protected:
  ProjectTreeTest() {
    tree.Changed = [this] { ++changes; };
  }

  ProjectTree tree;
  int changes = 0;
};

TEST_F(ProjectTreeTest, BeginsWithRootAndSixGroups) {
  const std::vector<ProjectNode> expected = {
      {"p", "Unnamed Project", ""},      {"wcr", "Tarnlink Files", "p"},
      {"par", "Parameter Files", "p"},   {"grp", "Graphic Files", "p"},
      {"erc", "Error Description", "p"}, {"ids", "ID Description", "p"},
      {"lst", "Memory Map", "p"}};
  EXPECT_EQ(tree.Nodes(), expected);
  EXPECT_EQ(tree.Count(), 7);
  EXPECT_EQ(tree.RootText(), "Unnamed Project");
}

TEST_F(ProjectTreeTest, BeginsAnewWithoutFilesAndName) {
  tree.AddFileToProject("wcr", "/a.wcr");
  tree.SetRootText("job.prj");
  tree.InitNewProjectTree();
  EXPECT_EQ(Keys(tree), kEmpty);
  EXPECT_EQ(tree.RootText(), "Unnamed Project");
  EXPECT_EQ(tree.Count(), 7);
  EXPECT_FALSE(tree.FirstChild("wcr"));
  EXPECT_TRUE(tree.AddFileToProject("wcr", "/a.wcr"));
}

TEST_F(ProjectTreeTest, ShowsAFileByItsNameUnderItsGroup) {
  EXPECT_TRUE(tree.AddFileToProject("wcr", "C:\\jobs\\main.wcr"));
  const ProjectNode* node = tree.Find("C:\\jobs\\main.wcr");
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(*node, (ProjectNode{"C:\\jobs\\main.wcr", "main.wcr", "wcr"}));
  EXPECT_EQ(tree.Count(), 8);
}

TEST_F(ProjectTreeTest, KeepsTheOrderOfAddingWithinAGroupAndItsOwnOrderOfGroups) {
  for (const std::string path : {"/z.lst", "/b.wcr", "/n.par", "/a.wcr", "/c.wcr"}) {
    EXPECT_TRUE(tree.AddFileToProject(path.substr(path.size() - 3), path));
  }
  EXPECT_EQ(Keys(tree), "p wcr /b.wcr /a.wcr /c.wcr par /n.par grp erc ids lst /z.lst ");
  EXPECT_EQ(tree.FirstChild("wcr"), "/b.wcr");
  EXPECT_EQ(tree.FirstChild("p"), "wcr");
  EXPECT_FALSE(tree.FirstChild("grp"));
  EXPECT_FALSE(tree.FirstChild("/b.wcr"));
  EXPECT_FALSE(tree.FirstChild("none"));
}

TEST_F(ProjectTreeTest, DoesNotMindTheCaseOfTheGroup) {
  EXPECT_TRUE(tree.AddFileToProject("WCR", "/A.WCR"));
  EXPECT_TRUE(tree.AddFileToProject("Lst", "/a.map"));
  EXPECT_EQ(Keys(tree), "p wcr /A.WCR par grp erc ids lst /a.map ");
}

TEST_F(ProjectTreeTest, TakesAFileOnceOnly) {
  EXPECT_TRUE(tree.AddFileToProject("wcr", "/a.wcr"));
  EXPECT_FALSE(tree.AddFileToProject("wcr", "/a.wcr"));
  EXPECT_FALSE(tree.AddFileToProject("par", "/a.wcr"));
  EXPECT_TRUE(tree.AddFileToProject("wcr", "/A.wcr"));
  EXPECT_EQ(Keys(tree), "p wcr /a.wcr /A.wcr par grp erc ids lst ");
}

TEST_F(ProjectTreeTest, RefusesAFileThatHasNoGroup) {
  tree.AddFileToProject("wcr", "/a.wcr");
  changes = 0;
  for (const std::string parent :
       {"txt", "map", "prj", "", "p", "P", "/a.wcr", "wc", "wcr ", " wcr"}) {
    EXPECT_FALSE(tree.AddFileToProject(parent, "/b.wcr")) << parent;
  }
  EXPECT_EQ(Keys(tree), "p wcr /a.wcr par grp erc ids lst ");
  EXPECT_EQ(changes, 0);
}

TEST_F(ProjectTreeTest, RefusesAPathThatIsNoneOrTheKeyOfAnotherNode) {
  for (const std::string path : {"", "p", "wcr", "lst"}) {
    EXPECT_FALSE(tree.AddFileToProject("wcr", path)) << path;
  }
  EXPECT_EQ(Keys(tree), kEmpty);
  EXPECT_EQ(changes, 0);
}

TEST_F(ProjectTreeTest, FindsNodesByTheirKeys) {
  tree.AddFileToProject("wcr", "/a.wcr");
  for (const std::string key : {"p", "wcr", "lst", "/a.wcr"}) {
    ASSERT_NE(tree.Find(key), nullptr) << key;
    EXPECT_EQ(tree.Find(key)->key, key);
    EXPECT_TRUE(tree.HasNode(key));
  }
  for (const std::string key : {"", "P", "map", "a.wcr", "/a.wc", "/A.wcr", "/a.wcr "}) {
    EXPECT_EQ(tree.Find(key), nullptr) << key;
    EXPECT_FALSE(tree.HasNode(key));
  }
}

TEST_F(ProjectTreeTest, RemovesAFile) {
  for (const std::string path : {"/a.wcr", "/b.wcr", "/c.wcr"}) tree.AddFileToProject("wcr", path);
  EXPECT_TRUE(tree.Remove("/a.wcr"));
  EXPECT_EQ(Keys(tree), "p wcr /b.wcr /c.wcr par grp erc ids lst ");
  EXPECT_EQ(tree.FirstChild("wcr"), "/b.wcr");
  EXPECT_EQ(tree.Count(), 9);
  EXPECT_TRUE(tree.AddFileToProject("wcr", "/a.wcr"));
  EXPECT_EQ(Keys(tree), "p wcr /b.wcr /c.wcr /a.wcr par grp erc ids lst ");
}

TEST_F(ProjectTreeTest, RemovesAFileByItsOwnKey) {
  tree.AddFileToProject("wcr", "/a/path/longer/than/what/a/text/holds/in/itself.wcr");
  EXPECT_TRUE(tree.Remove(tree.Find(*tree.FirstChild("wcr"))->key));
  EXPECT_EQ(Keys(tree), kEmpty);
}

TEST_F(ProjectTreeTest, RemovesAGroupWithItsFilesAndTakesNoneForItAfterwards) {
  tree.AddFileToProject("wcr", "/a.wcr");
  tree.AddFileToProject("wcr", "/b.wcr");
  tree.AddFileToProject("par", "/a.par");
  EXPECT_TRUE(tree.Remove("wcr"));
  EXPECT_EQ(Keys(tree), "p par /a.par grp erc ids lst ");
  EXPECT_EQ(tree.Count(), 7);
  EXPECT_FALSE(tree.HasNode("/a.wcr"));
  EXPECT_FALSE(tree.FirstChild("wcr"));
  EXPECT_FALSE(tree.AddFileToProject("wcr", "/a.wcr"));
  EXPECT_TRUE(tree.AddFileToProject("par", "/a.wcr"));
}

TEST_F(ProjectTreeTest, HasNothingLeftWithoutItsRootUntilItBeginsAnew) {
  tree.AddFileToProject("wcr", "/a.wcr");
  EXPECT_TRUE(tree.Remove("p"));
  EXPECT_EQ(Keys(tree), "");
  EXPECT_EQ(tree.Count(), 0);
  EXPECT_EQ(tree.RootText(), "");
  tree.SetRootText("job.prj");
  EXPECT_EQ(tree.RootText(), "");
  EXPECT_FALSE(tree.AddFileToProject("wcr", "/a.wcr"));
  EXPECT_FALSE(tree.AddFileToProject("", "/a.wcr"));
  EXPECT_FALSE(tree.FirstChild("wcr"));
  EXPECT_FALSE(tree.Remove("p"));
  tree.InitNewProjectTree();
  EXPECT_EQ(Keys(tree), kEmpty);
  EXPECT_TRUE(tree.AddFileToProject("wcr", "/a.wcr"));
}

TEST_F(ProjectTreeTest, RemovesNothingForAKeyThatItDoesNotHave) {
  for (const std::string key : {"", "P", "map", "/a.wcr"}) EXPECT_FALSE(tree.Remove(key)) << key;
  EXPECT_EQ(Keys(tree), kEmpty);
  EXPECT_EQ(changes, 0);
}

TEST_F(ProjectTreeTest, TellsItsViewOnceOfEachChange) {
  tree.AddFileToProject("wcr", "/a.wcr");
  EXPECT_EQ(changes, 1);
  tree.SetRootText("job.prj");
  EXPECT_EQ(changes, 2);
  tree.Remove("wcr");
  EXPECT_EQ(changes, 3);
  tree.InitNewProjectTree();
  EXPECT_EQ(changes, 4);
  tree.Remove("p");
  EXPECT_EQ(changes, 5);
  tree.SetRootText("job.prj");
  EXPECT_EQ(changes, 5);
}

TEST_F(ProjectTreeTest, LetsItsViewReadItWhileItTells) {
  std::string seen;
  tree.Changed = [&] { seen = Keys(tree); };
  tree.AddFileToProject("ids", "/a.ids");
  EXPECT_EQ(seen, "p wcr par grp erc ids /a.ids lst ");
  tree.Remove("ids");
  EXPECT_EQ(seen, "p wcr par grp erc lst ");
}

TEST_F(ProjectTreeTest, HoldsManyFilesInOrder) {
  constexpr int kMany = 100'000;
  for (int i = 0; i < kMany; ++i) {
    ASSERT_TRUE(tree.AddFileToProject("wcr", "/" + std::to_string(i) + ".wcr"));
  }
  const std::vector<ProjectNode> nodes = tree.Nodes();
  ASSERT_EQ(nodes.size(), std::size_t{kMany} + 7);
  EXPECT_EQ(tree.Count(), kMany + 7);
  for (int i = 0; i < kMany; ++i) {
    ASSERT_EQ(nodes[static_cast<std::size_t>(i) + 2].text, std::to_string(i) + ".wcr");
  }
}

}  // namespace
}  // namespace tarnlink
