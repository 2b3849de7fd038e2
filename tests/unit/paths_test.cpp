#include "common/paths.h"

#include <gtest/gtest.h>

#include <string>

namespace tarnlink {
namespace {

TEST(StripFileFromPath, GivesWhatStandsBehindTheLastSeparator) {
  EXPECT_EQ(StripFileFromPath("C:\\Screens\\boiler.wcr"), "boiler.wcr");
  EXPECT_EQ(StripFileFromPath("/home/me/boiler.wcr"), "boiler.wcr");
  EXPECT_EQ(StripFileFromPath("C:\\Screens/mixed\\a.wcr"), "a.wcr");
  EXPECT_EQ(StripFileFromPath("boiler.wcr"), "boiler.wcr");
  EXPECT_EQ(StripFileFromPath("folder/"), "");
  EXPECT_EQ(StripFileFromPath(""), "");
}

TEST(StripExtFromPath, GivesWhatStandsBehindTheLastPoint) {
  EXPECT_EQ(StripExtFromPath("C:\\Screens\\boiler.wcr"), "wcr");
  EXPECT_EQ(StripExtFromPath("a.b.WCR"), "WCR");
  EXPECT_EQ(StripExtFromPath("noextension"), "noextension");
  EXPECT_EQ(StripExtFromPath("a."), "");
  EXPECT_EQ(StripExtFromPath("v1.0/file"), "0/file");
  EXPECT_EQ(StripExtFromPath(""), "");
}

TEST(FolderOfPath, GivesWhatStandsBeforeTheLastSeparator) {
  EXPECT_EQ(FolderOfPath("C:\\Screens\\boiler.wcr"), "C:\\Screens");
  EXPECT_EQ(FolderOfPath("/home/me/boiler.wcr"), "/home/me");
  EXPECT_EQ(FolderOfPath("boiler.wcr"), "");
  EXPECT_EQ(FolderOfPath("folder/"), "folder");
  EXPECT_EQ(FolderOfPath(""), "");
}

TEST(FolderOfPath, KeepsTheRoot) { EXPECT_EQ(FolderOfPath("/boiler.wcr"), "/"); }

TEST(JoinPath, PutsOneSeparatorBetween) {
  EXPECT_EQ(JoinPath("/home/me", "a.wcr"), "/home/me/a.wcr");
  EXPECT_EQ(JoinPath("/home/me/", "a.wcr"), "/home/me/a.wcr");
  EXPECT_EQ(JoinPath("C:\\", "a.wcr"), "C:\\a.wcr");
  EXPECT_EQ(JoinPath("/", "a.wcr"), "/a.wcr");
  EXPECT_EQ(JoinPath("", "a.wcr"), "a.wcr");
}

TEST(JoinPath, UndoesFolderOfPathAndStripFileFromPath) {
  for (const std::string path : {"/a/b/c", "/c", "c", "a/c"}) {
    EXPECT_EQ(JoinPath(FolderOfPath(path), StripFileFromPath(path)), path);
  }
}

TEST(IsDrivePath, KnowsABareDrive) {
  for (const std::string path : {"C:", "C:\\", "c:/", "Z:\\\\"}) {
    EXPECT_TRUE(IsDrivePath(path)) << path;
  }
}

TEST(IsDrivePath, RefusesEverythingElse) {
  for (const std::string path :
       {"", "C", ":", "C\\", "CC:", "1:", "[:", "{:", "C:x", "C:\\Screens", "/", "/C:", " C:"}) {
    EXPECT_FALSE(IsDrivePath(path)) << path;
  }
}

TEST(RelativeToProgram, GivesThePathBehindThePointWithTheSystemsSeparators) {
  EXPECT_EQ(RelativeToProgram(".\\default.ids"), "default.ids");
  EXPECT_EQ(RelativeToProgram("./default.ids"), "default.ids");
  EXPECT_EQ(RelativeToProgram(".\\maps\\a.map"), "maps/a.map");
}

TEST(RelativeToProgram, IsEmptyForEveryOtherPath) {
  for (const std::string path :
       {"", ".", ".\\", "./", "..\\a", "../a", "a", "/a", ".a", "C:\\a", "a\\.\\b"}) {
    EXPECT_EQ(RelativeToProgram(path), "") << path;
  }
}

}  // namespace
}  // namespace tarnlink
