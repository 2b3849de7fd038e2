// The two histories of the File menu: four entries, the newest first, none twice.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "form/desk_fixture.h"

namespace tarnlink {
namespace {

class HistoryTest : public DeskTest {
 protected:
  HistoryTest() { StartProgram(); }

  using Enter = void (frm_Main::*)(const std::string&);
  struct Kind {
    FixedArray<MenuEntry>& menu;
    Enter enter;
  };
  std::vector<Kind> Both() {
    return {{main().M_fileHist, &frm_Main::LoadShortCuts},
            {main().M_fileHistPrj, &frm_Main::LoadShortCutsPrj}};
  }
  void EnterAll(const Kind& kind, const std::vector<std::string>& files) {
    for (const std::string& file : files) (main().*kind.enter)(file);
  }
  // Four screens on the disk; d.wcr was opened last.
  void OpenFour() {
    for (const char* name : {"a", "b", "c", "d"}) OpenText("255\r\n", Path(name));
  }
  static std::string Path(const std::string& name) {
    return std::string(kFolder) + "/" + name + ".wcr";
  }
};

TEST_F(HistoryTest, FillsFromTheTop) {
  for (const Kind& kind : Both()) {
    EXPECT_EQ(History(kind.menu), "[<Free>]\n[<Free>]\n[<Free>]\n[<Free>]\n");
    EnterAll(kind, {"a"});
    EXPECT_EQ(History(kind.menu), "a\n[<Free>]\n[<Free>]\n[<Free>]\n");
    EnterAll(kind, {"b"});
    EXPECT_EQ(History(kind.menu), "b\na\n[<Free>]\n[<Free>]\n");
    EnterAll(kind, {"c", "d"});
    EXPECT_EQ(History(kind.menu), "d\nc\nb\na\n");
  }
}

TEST_F(HistoryTest, AFileThatIsInItMovesToTheTopAndThoseBelowStay) {
  const std::vector<std::pair<std::string, std::string>> rows = {
      {"d", "d\nc\nb\na\n"}, {"c", "c\nd\nb\na\n"}, {"b", "b\nd\nc\na\n"}, {"a", "a\nd\nc\nb\n"}};
  for (const auto& [again, expected] : rows) {
    StartProgram();
    for (const Kind& kind : Both()) {
      EnterAll(kind, {"a", "b", "c", "d", again});
      EXPECT_EQ(History(kind.menu), expected) << again;
    }
  }
}

TEST_F(HistoryTest, AFileThatIsInAHalfFullOneMovesToTheTop) {
  const std::vector<std::pair<std::string, std::string>> rows = {
      {"b", "b\na\n[<Free>]\n[<Free>]\n"}, {"a", "a\nb\n[<Free>]\n[<Free>]\n"}};
  for (const auto& [again, expected] : rows) {
    StartProgram();
    for (const Kind& kind : Both()) {
      EnterAll(kind, {"a", "b", again});
      EXPECT_EQ(History(kind.menu), expected) << again;
    }
  }
}

TEST_F(HistoryTest, AFifthFilePushesOutTheOldest) {
  for (const Kind& kind : Both()) {
    EnterAll(kind, {"a", "b", "c", "d", "e"});
    EXPECT_EQ(History(kind.menu), "e\nd\nc\nb\n");
  }
}

TEST_F(HistoryTest, AFileCanBeGivenByTheCaptionThatNamesIt) {
  for (const Kind& kind : Both()) {
    EnterAll(kind, {"a", "b", "c", "d"});
    (main().*kind.enter)(kind.menu(3).Caption);
    EXPECT_EQ(History(kind.menu), "a\nd\nc\nb\n");
  }
}

TEST_F(HistoryTest, NamesAreTheSameOnlyLetterByLetter) {
  for (const Kind& kind : Both()) {
    EnterAll(kind, {"/a.wcr", "/A.wcr", "//a.wcr"});
    EXPECT_EQ(History(kind.menu), "//a.wcr\n/A.wcr\n/a.wcr\n[<Free>]\n");
  }
}

TEST_F(HistoryTest, TheTwoAreApart) {
  main().LoadShortCuts("a.wcr");
  EXPECT_EQ(History(main().M_fileHistPrj), "[<Free>]\n[<Free>]\n[<Free>]\n[<Free>]\n");
  main().LoadShortCutsPrj("b.prj");
  EXPECT_EQ(History(main().M_fileHist), "a.wcr\n[<Free>]\n[<Free>]\n[<Free>]\n");
}

TEST_F(HistoryTest, StoredFreeEntriesAreDisabledAndOthersAreNot) {
  Store("FileHistory", "Hist0", "/a.wcr");
  Store("FileHistory", "Hist2", "/c.wcr");
  Store("FileHistoryPrj", "Hist3", "/d.prj");
  StartProgram();
  EXPECT_EQ(History(main().M_fileHist), "/a.wcr\n[<Free>]\n/c.wcr\n[<Free>]\n");
  EXPECT_EQ(History(main().M_fileHistPrj), "[<Free>]\n[<Free>]\n[<Free>]\n/d.prj\n");
}

TEST_F(HistoryTest, AFreeEntryThatMovesDownStaysDisabled) {
  Store("FileHistory", "Hist1", "/b.wcr");
  StartProgram();
  main().LoadShortCuts("/new.wcr");
  EXPECT_EQ(History(main().M_fileHist), "/new.wcr\n[<Free>]\n/b.wcr\n[<Free>]\n");
}

TEST_F(HistoryTest, AFreeEntryOpensNothing) {
  const int before = world.faults().CountOf("Files.ReadWhole");
  main().M_fileHist(0).Press();
  EXPECT_EQ(world.faults().CountOf("Files.ReadWhole"), before);
}

TEST_F(HistoryTest, AnEntryOpensItsScreenAndMovesToTheTop) {
  OpenFour();
  main().M_fileHist(2).Press();
  EXPECT_EQ(main().CurrentTarnLinkFile, Path("b"));
  EXPECT_EQ(History(main().M_fileHist),
            Path("b") + "\n" + Path("d") + "\n" + Path("c") + "\n" + Path("a") + "\n");
}

TEST_F(HistoryTest, EveryEntryOpensItsOwnScreen) {
  for (int index = 0; index < 4; ++index) {
    StartProgram();
    OpenFour();
    const std::string path = main().M_fileHist(index).Caption;
    main().M_fileHist(index).Press();
    EXPECT_EQ(main().CurrentTarnLinkFile, path);
    EXPECT_EQ(main().M_fileHist(0).Caption.get(), path);
  }
}

TEST_F(HistoryTest, AnEntryAsksAboutAChangedScreenFirst) {
  OpenFour();
  ChangeScreen();
  ExpectScreenQuestion().Press(Answer::kNo);
  main().M_fileHist(3).Press();
  EXPECT_EQ(main().CurrentTarnLinkFile, Path("a"));

  main().form.BackColor = 77;
  ChangeScreen();
  ExpectScreenQuestion().Press(Answer::kYes);
  main().M_fileHist(1).Press();
  EXPECT_EQ(main().CurrentTarnLinkFile, Path("d"));
  EXPECT_EQ(world.disk().Get(Path("a")), "77\r\n");
}

TEST_F(HistoryTest, AnEntryOpensNothingWhenTheChangedScreenCouldNotBeSaved) {
  OpenFour();
  ChangeScreen();
  world.disk().Forbid(Path("d"));
  ExpectScreenQuestion().Press(Answer::kYes);
  ExpectSaveFailure(70, Path("d"));
  main().M_fileHist(3).Press();
  EXPECT_EQ(main().CurrentTarnLinkFile, Path("d"));
  EXPECT_TRUE(main().WCRChanged);
  EXPECT_EQ(main().M_fileHist(0).Caption.get(), Path("d"));
}

TEST_F(HistoryTest, AnEntryWhoseFileHasGoneIsTold) {
  OpenFour();
  world.disk().Remove(Path("b"));
  ExpectOpenFailure(53, Path("b"));
  main().M_fileHist(2).Press();
  EXPECT_EQ(main().CurrentTarnLinkFile, "");
}

}  // namespace
}  // namespace tarnlink
