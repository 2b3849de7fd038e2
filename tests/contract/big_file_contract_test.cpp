// Long files that are read ahead and written behind the program's back.

#include <gtest/gtest.h>

#include <filesystem>

#include "common/run_time_error.h"
#include "contract/files_benches.h"
#include "contract/loops.h"
#include "contract/workbook_benches.h"

namespace tarnlink {
namespace {

// Bytes that are unlike wherever they stand.
std::string Bytes(std::size_t size) {
  std::string bytes;
  for (std::size_t i = 0; bytes.size() < size; ++i) bytes += std::to_string(i) + "\r\n";
  bytes.resize(size);
  return bytes;
}

template <class Bench>
class BigFileContract : public testing::Test {
 protected:
  std::string path(const std::string& name) { return bench.path(name); }

  // All of a file, as the pieces come.
  std::string ReadAll(const std::string& name) {
    const auto reader = bench.files().ReadBig(path(name));
    std::string all;
    while (!reader->AtEnd()) {
      std::string_view piece;
      while (reader->Next(piece)) {
        EXPECT_FALSE(piece.empty());
        EXPECT_EQ(reader->Size(), static_cast<std::int64_t>(bench.Get(name).size()));
        all += piece;
      }
      if (!reader->AtEnd()) reader->Wait();
    }
    std::string_view none;
    EXPECT_FALSE(reader->Next(none));
    return all;
  }
  // Writes the bytes as there is room for them.
  static void WriteAll(BigWriter& writer, std::string_view bytes) {
    while (!bytes.empty()) {
      while (!writer.HasRoom()) writer.Wait();
      std::string piece(bytes.substr(0, kPiece));
      bytes.remove_prefix(piece.size());
      writer.Write(piece);
    }
  }
  static void Finish(BigWriter& writer) {
    writer.Finish();
    while (!writer.IsFinished()) writer.Wait();
  }
  void Write(const std::string& name, std::string_view bytes) {
    const auto writer = bench.files().WriteBig(path(name));
    WriteAll(*writer, bytes);
    Finish(*writer);
  }
  void ExpectError(int code, const std::string& name, const std::function<void()>& call) {
    EXPECT_EQ(ErrorOf(call), code) << name;
    EXPECT_NE(ReasonOf(call).find("\"" + path(name) + "\""), std::string::npos) << ReasonOf(call);
  }

  static constexpr std::size_t kPiece = 50'000;
  Bench bench;
};

using Benches = testing::Types<FakeDisk, RealDisk>;
TYPED_TEST_SUITE(BigFileContract, Benches, BenchNames);

// --- Reading -------------------------------------------------------------------------------------

TYPED_TEST(BigFileContract, ReadsAFileOfAnySizeInItsOrder) {
  for (const std::size_t size : {0U, 1U, 5'000U, 262'144U, 10'000'000U}) {
    this->bench.Put("file", Bytes(size));
    EXPECT_EQ(this->ReadAll("file"), Bytes(size)) << size;
  }
}

TYPED_TEST(BigFileContract, AReaderMayBeLeftAnywhere) {
  this->bench.Put("file", Bytes(10'000'000));
  for (int pieces = 0; pieces < 5; ++pieces) {
    const auto reader = this->bench.files().ReadBig(this->path("file"));
    std::string_view piece;
    for (int taken = 0; taken < pieces; taken += reader->Next(piece) ? 1 : 0) reader->Wait();
  }
}

TYPED_TEST(BigFileContract, ReadingTellsWhatIsWrong) {
  this->bench.Put("closed", "secret");
  this->bench.Forbid("closed");
  this->bench.MakeFolder("folder");
  const auto fails = [this](int code, const std::string& name) {
    this->ExpectError(code, name, [this, &name] { this->ReadAll(name); });
  };
  fails(kFileNotFound, "missing.txt");
  fails(kPathNotFound, "missing/file.txt");
  fails(kPermissionDenied, "closed");
  fails(kDeviceIo, "folder");
}

// --- Writing -------------------------------------------------------------------------------------

TYPED_TEST(BigFileContract, ReplacesTheFileByAllThatWasWritten) {
  for (const std::size_t size : {0U, 1U, 50'000U, 50'001U, 5'000'000U}) {
    this->bench.Put("file", "old");
    this->Write("file", Bytes(size));
    EXPECT_EQ(this->bench.Get("file"), Bytes(size)) << size;
    EXPECT_EQ(this->bench.Names(""), std::vector<std::string>{"file"});
  }
  this->Write("new", "x");
  EXPECT_EQ(this->bench.Get("new"), "x");
}

TYPED_TEST(BigFileContract, UntilItIsFinishedTheOldFileStays) {
  this->bench.Put("file", "old");
  const auto writer = this->bench.files().WriteBig(this->path("file"));
  this->WriteAll(*writer, Bytes(2'000'000));
  EXPECT_FALSE(writer->IsFinished());
  EXPECT_EQ(this->bench.Get("file"), "old");
  this->Finish(*writer);
  EXPECT_EQ(this->bench.Get("file"), Bytes(2'000'000));
}

TYPED_TEST(BigFileContract, OnlyAFewPiecesWaitForTheDisk) {
  const auto writer = this->bench.files().WriteBig(this->path("file"));
  // However slow the disk is, the queue ends somewhere; on a quick one this ends with the bytes.
  std::size_t waiting = 0;
  for (; waiting < 1'000 && writer->HasRoom(); ++waiting) {
    std::string piece(1'000'000, 'x');
    writer->Write(piece);
  }
  EXPECT_GT(waiting, 0U);
  EXPECT_LT(waiting, 1'000U);
}

TYPED_TEST(BigFileContract, AWriterThatIsLeftChangesNothing) {
  this->bench.Put("file", "old");
  for (const std::size_t size : {0U, 50'000U, 3'000'000U}) {
    const auto writer = this->bench.files().WriteBig(this->path("file"));
    this->WriteAll(*writer, Bytes(size));
  }
  // What was under way has come to its end when the next one has.
  this->Write("other", Bytes(3'000'000));
  EXPECT_EQ(this->bench.Get("file"), "old");
}

TYPED_TEST(BigFileContract, WritingTellsWhatIsWrongAndChangesNothing) {
  this->bench.Put("closed", "old");
  this->bench.Put("closed folder/file", "old");
  this->bench.Forbid("closed folder");
  this->bench.MakeFolder("folder");
  this->bench.MakeSpecial("pipe");
  this->bench.Forbid("closed");
  const auto fails = [this](int code, const std::string& name) {
    this->ExpectError(code, name, [this, &name] { this->Write(name, Bytes(200'000)); });
    this->ExpectError(code, name, [this, &name] { this->Write(name, ""); });
  };
  fails(kPathNotFound, "missing/file.txt");
  fails(kPermissionDenied, "closed");
  fails(kPermissionDenied, "closed folder/file");
  fails(kDeviceIo, "folder");
  fails(kDeviceIo, "pipe");
}

TYPED_TEST(BigFileContract, ADiskThatFillsUpLeavesTheOldFileAndNothingBesideIt) {
  if (!this->bench.LeaveRoom(200'000)) GTEST_SKIP() << "No small disk can be mounted here.";
  this->bench.files().WriteWhole(this->path("file"), "old");
  const std::vector<std::string> before = this->bench.Names("");
  for (const std::size_t size : {200'000U, 5'000'000U}) {
    this->ExpectError(kDiskFull, "file", [&] { this->Write("file", Bytes(size)); });
    EXPECT_EQ(this->bench.Get("file"), "old") << size;
    EXPECT_EQ(this->bench.Names(""), before);
  }
  this->Write("file", Bytes(100'000));
  EXPECT_EQ(this->bench.Get("file"), Bytes(100'000));
}

TYPED_TEST(BigFileContract, AFolderThatVanishesMeanwhileIsTold) {
  this->bench.MakeFolder("folder");
  const auto writer = this->bench.files().WriteBig(this->path("folder/file"));
  this->WriteAll(*writer, Bytes(2'000'000));
  this->bench.RemoveFolder("folder");
  this->ExpectError(kPathNotFound, "folder/file", [&] { this->Finish(*writer); });
}

// --- Sheets --------------------------------------------------------------------------------------

TYPED_TEST(BigFileContract, SheetsBehaveAsOtherFilesDo) {
  this->bench.Put("file.xlsx", "old");
  {
    const auto writer = this->bench.files().WriteSheet(this->path("file.xlsx"));
    this->WriteAll(*writer, "Time\tFlow\r\n1\t2\r\n");
    EXPECT_FALSE(writer->IsFinished());
  }
  EXPECT_EQ(this->bench.Get("file.xlsx"), "old");
  const auto writer = this->bench.files().WriteSheet(this->path("file.xlsx"));
  this->WriteAll(*writer, "Time\tFlow\r\n1\t2\r\n");
  this->Finish(*writer);
  EXPECT_NE(this->bench.Get("file.xlsx"), "old");
  const auto lost = this->bench.files().WriteSheet(this->path("missing/file.xlsx"));
  this->ExpectError(kPathNotFound, "missing/file.xlsx", [&] { this->Finish(*lost); });
}

class SheetTest : public testing::Test {
 protected:
  void Write(const std::string& text, std::size_t piece_size) {
    const auto writer = disk.files().WriteSheet(disk.path("book.xlsx"));
    for (std::size_t at = 0; at < text.size(); at += piece_size) {
      while (!writer->HasRoom()) writer->Wait();
      std::string piece = text.substr(at, piece_size);
      writer->Write(piece);
    }
    writer->Finish();
    while (!writer->IsFinished()) writer->Wait();
  }
  int OpenFiles() {
    const std::filesystem::directory_iterator handles("/proc/self/fd");
    return static_cast<int>(std::distance(begin(handles), end(handles)));
  }

  RealDisk disk;
};

TEST_F(SheetTest, HasTheFieldsOfTheLinesAsNumbersAndTexts) {
  for (const std::size_t piece_size : {1U, 7U, 1'000U}) {
    Write("Time\t5\tGröße\r\n05/03/2024 14:07:09\t12.5\t-3\r\n\tnan\tinf\r\n0x1\t1,5\t.5\t\r\n7",
          piece_size);
    EXPECT_EQ(ReadXlsx(disk.path("book.xlsx")),
              "Sheet1\nR1C1 text Time\nR1C2 text 5\nR1C3 text Größe\n"
              "R2C1 text 05/03/2024 14:07:09\nR2C2 number 12.5\nR2C3 number -3\n"
              "R3C2 text nan\nR3C3 text inf\nR4C1 text 0x1\nR4C2 text 1,5\nR4C3 number 0.5\n"
              "R5C1 number 7\n")
        << piece_size;
  }
}

TEST_F(SheetTest, IsFullWithItsLastRowAndThenTheOldFileStays) {
  disk.Put("book.xlsx", "old");
  std::string text;
  for (int row = 0; row < 1'048'577; ++row) text += "1\r\n";
  EXPECT_EQ(ErrorOf([&] { Write(text, 1'000'000); }), kSubscript);
  EXPECT_EQ(disk.Get("book.xlsx"), "old");
}

TEST_F(SheetTest, LeavesNothingOpenWhenItIsStopped) {
  Write("1\r\n", 10);
  const int before = OpenFiles();
  for (int i = 0; i < 10; ++i) {
    const auto writer = disk.files().WriteSheet(disk.path("book.xlsx"));
    std::string piece = "1\t2\r\n3\t4\r\n";
    while (!writer->HasRoom()) writer->Wait();
    writer->Write(piece);
    while (!writer->HasRoom()) writer->Wait();
  }
  // They end when they can.
  EXPECT_TRUE(QtLoop().RunUntil([&] { return OpenFiles() <= before; })) << OpenFiles();
}

}  // namespace
}  // namespace tarnlink
