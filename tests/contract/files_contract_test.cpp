#include <gtest/gtest.h>

#include "common/run_time_error.h"
#include "contract/files_benches.h"
#include "contract/loops.h"

namespace tarnlink {
namespace {

template <class Bench>
class FilesContract : public testing::Test {
 protected:
  // Each failure names its file.
  void ExpectError(int code, const std::string& path, const std::function<void()>& call) {
    EXPECT_EQ(ErrorOf(call), code) << path;
    EXPECT_NE(ReasonOf(call).find("\"" + path + "\""), std::string::npos) << ReasonOf(call);
  }
  void ReadingFails(int code, const std::string& name) {
    const std::string path = bench.path(name);
    ExpectError(code, path, [&] { bench.files().ReadWhole(path); });
    ExpectError(code, path, [&] { bench.files().ReadPieces(path, TakeAll); });
  }
  static bool TakeAll(std::string_view) { return true; }
  void WritingFails(int code, const std::string& name) {
    const std::string path = bench.path(name);
    ExpectError(code, path, [&] { bench.files().WriteWhole(path, "new"); });
    ExpectError(code, path, [&] { bench.files().OpenRows(path, false); });
    ExpectError(code, path, [&] { bench.files().OpenRows(path, true); });
  }

  Bench bench;
};

using Benches = testing::Types<FakeDisk, RealDisk>;
TYPED_TEST_SUITE(FilesContract, Benches, BenchNames);

std::string EveryByte() {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  return all;
}

TYPED_TEST(FilesContract, ReadsBackWhatWasWritten) {
  for (const std::string& bytes :
       {std::string(), std::string("text\r\n"), EveryByte(), std::string(200'000, 'x')}) {
    this->bench.files().WriteWhole(this->bench.path("file"), bytes);
    EXPECT_EQ(this->bench.Get("file"), bytes);
    EXPECT_EQ(this->bench.files().ReadWhole(this->bench.path("file")), bytes);
  }
}

TYPED_TEST(FilesContract, ReadsInPiecesUntilTheEndOrUntilNoMoreAreTaken) {
  std::string all;
  for (int i = 0; i < 3'000; ++i) all += EveryByte();
  this->bench.Put("long", all);
  std::string read;
  int pieces = 0;
  this->bench.files().ReadPieces(this->bench.path("long"), [&](std::string_view piece) {
    EXPECT_FALSE(piece.empty());
    read += piece;
    return ++pieces > 0;
  });
  EXPECT_EQ(read, all);
  EXPECT_GT(pieces, 1);
  pieces = 0;
  this->bench.files().ReadPieces(this->bench.path("long"),
                                 [&](std::string_view) { return ++pieces < 2; });
  EXPECT_EQ(pieces, 2);
  this->bench.Put("empty", "");
  this->bench.files().ReadPieces(this->bench.path("empty"), [](std::string_view) {
    ADD_FAILURE() << "An empty file has no pieces.";
    return true;
  });
}

TYPED_TEST(FilesContract, ReadingTellsWhatIsWrong) {
  this->bench.Put("closed", "secret");
  this->bench.Forbid("closed");
  this->bench.MakeFolder("folder");
  this->ReadingFails(kFileNotFound, "missing.txt");
  this->ReadingFails(kPathNotFound, "missing/file.txt");
  this->ReadingFails(kPermissionDenied, "closed");
  this->ReadingFails(kDeviceIo, "folder");
  EXPECT_EQ(ErrorOf([&] { this->bench.files().ReadWhole(""); }), kFileNotFound);
}

TYPED_TEST(FilesContract, WritingTellsWhatIsWrongAndChangesNothing) {
  this->bench.Put("closed", "old");
  this->bench.Put("closed folder/file", "old");
  this->bench.Forbid("closed folder");
  this->bench.MakeFolder("folder");
  this->bench.MakeSpecial("pipe");
  this->WritingFails(kPathNotFound, "missing/file.txt");
  this->WritingFails(kPermissionDenied, "closed folder/file");
  this->WritingFails(kPermissionDenied, "closed folder/new");
  this->WritingFails(kDeviceIo, "folder");
  this->WritingFails(kDeviceIo, "pipe");
  this->bench.Forbid("closed");
  this->WritingFails(kPermissionDenied, "closed");
  EXPECT_EQ(ErrorOf([&] { this->bench.files().WriteWhole("", "new"); }), kPathNotFound);
  EXPECT_EQ(ErrorOf([&] { this->bench.files().OpenRows("", false); }), kPathNotFound);
}

TYPED_TEST(FilesContract, RowsAppearAsTheyAreAppended) {
  const auto rows = this->bench.files().OpenRows(this->bench.path("log"), false);
  EXPECT_EQ(this->bench.Get("log"), "");
  rows->Append("first\t");
  EXPECT_EQ(this->bench.Get("log"), "first\t");
  rows->Append("1\r\n");
  rows->Append("");
  EXPECT_EQ(this->bench.Get("log"), "first\t1\r\n");
}

TYPED_TEST(FilesContract, RowsBeginAnewOrGoOnBehindWhatIsThere) {
  this->bench.Put("log", "old\n");
  this->bench.files().OpenRows(this->bench.path("log"), true)->Append("more\n");
  EXPECT_EQ(this->bench.Get("log"), "old\nmore\n");
  this->bench.files().OpenRows(this->bench.path("log"), false)->Append("new\n");
  EXPECT_EQ(this->bench.Get("log"), "new\n");
}

TYPED_TEST(FilesContract, AFullDiskLeavesTheLogAtItsLastWholePiece) {
  constexpr int kRoom = 8192;
  if (!this->bench.LeaveRoom(kRoom)) GTEST_SKIP() << "No small disk can be mounted here.";
  const auto rows = this->bench.files().OpenRows(this->bench.path("log"), false);
  const std::string row(1000, 'r');
  std::string whole;
  for (int i = 0; i < 8; ++i) {
    rows->Append(row.substr(1));
    rows->Append("\n");
    whole += row.substr(1) + "\n";
  }
  rows->Append("half of a row");
  const auto overflow = [&] { rows->Append(row); };
  this->ExpectError(kDiskFull, this->bench.path("log"), overflow);
  EXPECT_EQ(this->bench.Get("log"), whole + "half of a row");
}

TYPED_TEST(FilesContract, AFullDiskLeavesTheOldFileAsItWas) {
  constexpr int kPage = 4096;
  if (!this->bench.LeaveRoom(2 * kPage)) GTEST_SKIP() << "No small disk can be mounted here.";
  const std::string old(kPage, 'o');
  const std::string path = this->bench.path("file");
  this->bench.files().WriteWhole(path, old);
  this->bench.files().WriteWhole(this->bench.path("rest"), old);
  for (const std::size_t size : {10U, 5'000U, 70'000U, 200'000U}) {
    this->ExpectError(kDiskFull, path,
                      [&] { this->bench.files().WriteWhole(path, std::string(size, 'n')); });
    EXPECT_EQ(this->bench.Get("file"), old) << size;
  }
}

TYPED_TEST(FilesContract, TellsFilesFromFolders) {
  this->bench.Put("file", "x");
  this->bench.MakeFolder("folder");
  this->bench.MakeSpecial("pipe");
  const auto exists = [&](const char* name) {
    return this->bench.files().Exists(this->bench.path(name));
  };
  const auto is_folder = [&](const char* name) {
    return this->bench.files().IsFolder(this->bench.path(name));
  };
  EXPECT_TRUE(exists("file"));
  EXPECT_TRUE(exists("pipe"));
  EXPECT_FALSE(exists("folder"));
  EXPECT_FALSE(exists("missing"));
  EXPECT_FALSE(exists("file/below"));
  EXPECT_FALSE(this->bench.files().Exists(""));
  EXPECT_TRUE(is_folder("folder"));
  EXPECT_TRUE(is_folder("folder/"));
  EXPECT_FALSE(is_folder("file"));
  EXPECT_FALSE(is_folder("missing"));
  EXPECT_FALSE(this->bench.files().IsFolder(""));
}

TYPED_TEST(FilesContract, ListsThePlainFilesOfAFolderSorted) {
  for (const char* name : {"b.txt", "a.txt", "B.txt", "sub/c.txt"}) this->bench.Put(name, "x");
  this->bench.MakeSpecial("pipe");
  const auto list = [&](const char* name) {
    return this->bench.files().ListFolder(this->bench.path(name));
  };
  EXPECT_EQ(list(""), (std::vector<std::string>{"B.txt", "a.txt", "b.txt"}));
  EXPECT_EQ(list("sub"), std::vector<std::string>{"c.txt"});
  EXPECT_TRUE(list("missing").empty());
  EXPECT_TRUE(list("a.txt").empty());
  EXPECT_TRUE(this->bench.files().ListFolder("").empty());
}

TYPED_TEST(FilesContract, TakesNamesInAnyLanguage) {
  const std::string name = "Kessel Größe 温度.wcr";
  this->bench.files().WriteWhole(this->bench.path(name), "x");
  EXPECT_TRUE(this->bench.files().Exists(this->bench.path(name)));
  EXPECT_EQ(this->bench.files().ListFolder(this->bench.path("")), std::vector<std::string>{name});
}

TYPED_TEST(FilesContract, KnowsTheFoldersOfDocumentsAndShippedFiles) {
  EXPECT_EQ(this->bench.files().DocumentsFolder().front(), '/');
  EXPECT_EQ(this->bench.files().DataFolder().front(), '/');
}

}  // namespace
}  // namespace tarnlink
