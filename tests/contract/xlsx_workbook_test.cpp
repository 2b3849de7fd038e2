// What only the workbook on the disk can get wrong.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "contract/workbook_benches.h"

namespace tarnlink {
namespace {

class XlsxWorkbookTest : public testing::Test {
 protected:
  void Open(std::size_t most_cells = SheetCells::kMostCells) {
    file = disk.path("book.xlsx");
    book = std::make_unique<XlsxWorkbook>(
        file, XlsxWorkbook::Limits{.pause = 20ms, .most_cells = most_cells});
    book->SetOnFailure([this](const RunTimeError& error) { failures.push_back(error); });
  }
  bool Save() {
    book->Save();
    return loop.RunUntil([this] { return book->Saved(); });
  }

  QtLoop loop;
  RealDisk disk;
  std::string file;
  std::unique_ptr<XlsxWorkbook> book;
  std::vector<RunTimeError> failures;
};

TEST_F(XlsxWorkbookTest, MakesBytesThatAreNoTextReadable) {
  Open();
  book->Poke({1, 1},
             "a\xFF"
             "b");
  book->Poke({1, 2},
             "a\x01"
             "b");
  book->Poke({1, 3}, std::string("a\0b", 3));
  book->Poke({1, 4},
             "a\xEF\xBF\xBF"
             "b");
  EXPECT_TRUE(Save());
  EXPECT_EQ(ReadXlsx(file),
            "Sheet1\nR1C1 text a\uFFFDb\nR1C2 text a\uFFFDb\nR1C3 text a\uFFFDb\nR1C4 text "
            "a\uFFFDb\n");
}

TEST_F(XlsxWorkbookTest, CutsATextThatNoCellHasRoomFor) {
  const std::string longest(32'767, 'x');
  std::string too_long = longest + "x";
  Open();
  book->Poke({1, 1}, too_long);
  // A character that counts as two, of which one has room.
  too_long.replace(longest.size() - 1, std::string::npos, "\U0001F525");
  book->Poke({1, 2}, too_long);
  EXPECT_TRUE(Save());
  EXPECT_EQ(ReadXlsx(file),
            "Sheet1\nR1C1 text " + longest + "\nR1C2 text " + longest.substr(1) + "\n");
}

TEST_F(XlsxWorkbookTest, IsFullWithItsLastCellAndStillTakesThoseItHas) {
  Open(3);
  for (int row = 1; row <= 5; ++row) book->Poke({row, 1}, row);
  book->Poke({3, 1}, 33.0);
  EXPECT_TRUE(Save());
  EXPECT_TRUE(loop.RunUntil([this] { return !failures.empty(); }));
  ASSERT_EQ(failures.size(), 1U);
  EXPECT_EQ(failures[0].code(), kSubscript);
  EXPECT_EQ(ReadXlsx(file), "Sheet1\nR1C1 number 1\nR2C1 number 2\nR3C1 number 33\n");
}

TEST_F(XlsxWorkbookTest, NamesTheFolderForTemporaryFilesIfThatIsMissing) {
  setenv("TMPDIR", "/no/such/folder", 1);
  const std::string reason = ReasonOf([this] { Open(); });
  EXPECT_EQ(reason, "\"" + file +
                        "\" could not be written: the folder \"/no/such/folder\" for temporary "
                        "files is missing.");
  unsetenv("TMPDIR");
}

TEST_F(XlsxWorkbookTest, LeavesNothingBesideTheFile) {
  Open();
  book->Poke({1, 1}, 1.0);
  EXPECT_TRUE(Save());
  book.reset();
  int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(disk.path(""))) {
    ++files;
    EXPECT_EQ(entry.path(), file);
  }
  EXPECT_EQ(files, 1);
}

TEST_F(XlsxWorkbookTest, HoldsThousandsOfCellsOneByOne) {
  constexpr int kRows = 2'000;
  constexpr int kColumns = 20;
  Open();
  std::string expected = "Sheet1\n";
  for (int row = 1; row <= kRows; ++row) {
    // Not in the sheet's order, as columns are given to Locations freely.
    for (int column = kColumns; column >= 1; --column) book->Poke({row, column}, row * column);
    for (int column = 1; column <= kColumns; ++column) {
      expected += "R" + std::to_string(row) + "C" + std::to_string(column) + " number " +
                  std::to_string(row * column) + "\n";
    }
  }
  EXPECT_TRUE(Save());
  EXPECT_EQ(ReadXlsx(file), expected);
}

}  // namespace
}  // namespace tarnlink
