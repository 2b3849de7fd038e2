#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <optional>

#include "contract/workbook_benches.h"

namespace tarnlink {
namespace {

template <class Bench>
class WorkbookContract : public testing::Test {
 protected:
  void Open(const std::string& name = "book.xlsx") {
    file = bench.path(name);
    book = bench.Make(file);
    book->SetOnFailure([this](const RunTimeError& error) { failures.push_back(error); });
  }
  // What the disk holds once all is saved.
  std::string SavedText() {
    book->Save();
    EXPECT_TRUE(bench.RunUntil([this] { return book->Saved(); }));
    return bench.Read(file);
  }
  int ErrorOfMaking(const std::string& name) {
    return ErrorOf([&] { bench.Make(bench.path(name)); });
  }
  bool WaitForFailures(std::size_t count) {
    return bench.RunUntil([&] { return failures.size() >= count; });
  }

  Bench bench;
  std::string file;
  std::unique_ptr<Workbook> book;
  std::vector<RunTimeError> failures;
};

using Benches = testing::Types<FakeWorkbookBench, XlsxWorkbookBench>;
TYPED_TEST_SUITE(WorkbookContract, Benches, BenchNames);

TYPED_TEST(WorkbookContract, IsOnTheDiskAsSoonAsItIsMade) {
  this->Open();
  EXPECT_EQ(this->bench.Read(this->file), "Sheet1\n");
  EXPECT_EQ(this->book->path(), this->file);
  EXPECT_TRUE(this->book->Saved());
}

TYPED_TEST(WorkbookContract, ReplacesAFileOfThatName) {
  this->bench.Put("book.xlsx", "something else");
  this->Open();
  EXPECT_EQ(this->bench.Read(this->file), "Sheet1\n");
}

TYPED_TEST(WorkbookContract, HoldsTextsAndNumbersWhereTheyWerePut) {
  this->Open();
  this->book->Poke({1, 3}, "Flow");
  this->book->Poke({2, 3}, 42.0);
  this->book->Poke({2, 1}, -128.0);
  this->book->Poke({3, 2}, "00FF");
  this->book->Poke({3, 1}, 0.0);
  EXPECT_EQ(this->SavedText(),
            "Sheet1\nR1C3 text Flow\nR2C1 number -128\nR2C3 number 42\nR3C1 number 0\n"
            "R3C2 text 00FF\n");
}

TYPED_TEST(WorkbookContract, APokeToTheSameCellOverwrites) {
  this->Open();
  this->book->Poke({2, 1}, 1.0);
  this->book->Poke({2, 2}, "one");
  EXPECT_EQ(this->SavedText(), "Sheet1\nR2C1 number 1\nR2C2 text one\n");
  this->book->Poke({2, 1}, "two");
  this->book->Poke({2, 2}, 2.0);
  EXPECT_EQ(this->SavedText(), "Sheet1\nR2C1 text two\nR2C2 number 2\n");
}

TYPED_TEST(WorkbookContract, KeepsEveryTextAsItIs) {
  this->Open();
  this->book->Poke({1, 1}, "=1+1");
  this->book->Poke({1, 2}, "1234");
  this->book->Poke({1, 3}, "<b>\"x\" & 'y'</b>");
  this->book->Poke({1, 4}, "  Größe in °C  ");
  this->book->Poke({1, 5}, "TRUE");
  EXPECT_EQ(this->SavedText(),
            "Sheet1\nR1C1 text =1+1\nR1C2 text 1234\nR1C3 text <b>\"x\" & 'y'</b>\n"
            "R1C4 text   Größe in °C  \nR1C5 text TRUE\n");
}

TYPED_TEST(WorkbookContract, SavesByItselfAndSaysWhen) {
  this->Open();
  this->book->Poke({2, 1}, 7.0);
  EXPECT_FALSE(this->book->Saved());
  EXPECT_TRUE(this->bench.RunUntil([this] { return this->book->Saved(); }));
  EXPECT_EQ(this->bench.Read(this->file), "Sheet1\nR2C1 number 7\n");
  this->book->Poke({3, 1}, 8.0);
  EXPECT_FALSE(this->book->Saved());
  EXPECT_TRUE(this->bench.RunUntil([this] { return this->book->Saved(); }));
  EXPECT_EQ(this->bench.Read(this->file), "Sheet1\nR2C1 number 7\nR3C1 number 8\n");
}

TYPED_TEST(WorkbookContract, SavesWhatIsLeftBeforeItGoes) {
  this->Open();
  this->book->Poke({2, 1}, 7.0);
  this->book.reset();
  EXPECT_EQ(this->bench.Read(this->file), "Sheet1\nR2C1 number 7\n");
}

TYPED_TEST(WorkbookContract, HasRoomUpToTheLastColumn) {
  this->Open();
  this->book->Poke({1, kLastCell.column}, 1.0);
  EXPECT_EQ(this->SavedText(), "Sheet1\nR1C16384 number 1\n");
}

TYPED_TEST(WorkbookContract, HasRoomUpToTheLastRow) {
  this->Open();
  this->book->Poke({kLastCell.row, 1}, 1.0);
  EXPECT_EQ(this->SavedText(), "Sheet1\nR1048576C1 number 1\n");
}

TYPED_TEST(WorkbookContract, TellsOnceOfCellsBeyondTheSheet) {
  this->Open();
  for (const SheetCell cell : {SheetCell{kLastCell.row + 1, 1}, SheetCell{1, kLastCell.column + 1},
                               SheetCell{0, 1}, SheetCell{1, 0}}) {
    this->book->Poke(cell, 1.0);
  }
  this->book->Poke({2, 1}, 2.0);
  EXPECT_TRUE(this->failures.empty()) << "only through the event loop";
  EXPECT_TRUE(this->WaitForFailures(1));
  EXPECT_EQ(this->SavedText(), "Sheet1\nR2C1 number 2\n");
  ASSERT_EQ(this->failures.size(), 1U);
  EXPECT_EQ(this->failures[0].code(), kSubscript);
  EXPECT_EQ(this->failures[0].what(),
            "\"" + this->file + "\" has no room for more; further cells are left out.");
}

TYPED_TEST(WorkbookContract, CannotBeMadeWhereNothingCanBeWritten) {
  this->bench.MakeFolder("folder");
  this->bench.MakeFolder("closed");
  this->bench.Forbid("closed");
  EXPECT_EQ(this->ErrorOfMaking("missing/book.xlsx"), kPathNotFound);
  EXPECT_EQ(this->ErrorOfMaking("folder"), kDeviceIo);
  EXPECT_EQ(this->ErrorOfMaking("closed/book.xlsx"), kPermissionDenied);
  this->bench.Allow("closed");
}

TYPED_TEST(WorkbookContract, CannotBeMadeOnAFullDisk) {
  if (!this->bench.LeaveRoom(0)) GTEST_SKIP() << "A small disk takes root.";
  EXPECT_EQ(this->ErrorOfMaking("book.xlsx"), kDiskFull);
}

TYPED_TEST(WorkbookContract, TellsOfASaveThatFailedAndTriesAgain) {
  this->bench.MakeFolder("stick");
  this->Open("stick/book.xlsx");
  this->book->Poke({2, 1}, 1.0);
  const std::string before = this->SavedText();
  this->bench.Forbid("stick");
  this->book->Poke({3, 1}, 2.0);
  this->book->Save();
  EXPECT_TRUE(this->failures.empty()) << "only through the event loop";
  EXPECT_TRUE(this->WaitForFailures(2)) << "every save that fails is told";
  for (const RunTimeError& failure : this->failures) {
    EXPECT_EQ(failure.code(), kPermissionDenied);
    EXPECT_NE(std::string(failure.what()).find(this->file), std::string::npos) << failure.what();
  }
  EXPECT_FALSE(this->book->Saved());
  this->bench.Allow("stick");
  EXPECT_EQ(before, "Sheet1\nR2C1 number 1\n");
  EXPECT_TRUE(this->bench.RunUntil([this] { return this->book->Saved(); }));
  EXPECT_EQ(this->bench.Read(this->file), "Sheet1\nR2C1 number 1\nR3C1 number 2\n");
}

TYPED_TEST(WorkbookContract, AFullDiskLeavesTheFileWhole) {
  if (!this->bench.LeaveRoom(65'536)) GTEST_SKIP() << "A small disk takes root.";
  this->Open();
  this->book->Poke({1, 1}, "kept");
  EXPECT_EQ(this->SavedText(), "Sheet1\nR1C1 text kept\n");
  // More than the disk takes, in texts that cannot be packed.
  std::string all = "Sheet1\nR1C1 text kept\n";
  unsigned number = 1;
  for (int row = 2; row < 20'000; ++row) {
    number = number * 1'664'525U + 1'013'904'223U;
    this->book->Poke({row, 1}, std::to_string(number));
    all += "R" + std::to_string(row) + "C1 text " + std::to_string(number) + "\n";
  }
  this->book->Save();
  ASSERT_TRUE(this->WaitForFailures(1));
  EXPECT_EQ(this->failures[0].code(), kDiskFull);
  // As it was saved last, which may have been after the first of them.
  const std::string kept = this->bench.Read(this->file);
  EXPECT_TRUE(kept.starts_with("Sheet1\nR1C1 text kept\n")) << kept;
  EXPECT_TRUE(all.starts_with(kept));
  EXPECT_LT(kept.size(), all.size());
}

}  // namespace
}  // namespace tarnlink
