#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QScopeGuard>
#include <filesystem>
#include <fstream>

#include "common/run_time_error.h"
#include "contract/file_size_limit.h"
#include "contract/files_benches.h"
#include "contract/loops.h"

namespace tarnlink {
namespace {

namespace fs = std::filesystem;

int FilesIn(const std::string& folder) {
  int count = 0;
  for (const auto& entry : fs::directory_iterator(folder)) count += entry.exists() ? 1 : 0;
  return count;
}

TEST(QtFiles, SaysInWordsWhatIsWrong) {
  RealDisk disk;
  disk.MakeFolder("folder");
  disk.MakeSpecial("pipe");
  const auto reading = [&](const char* name) {
    return ReasonOf([&] { disk.files().ReadWhole(disk.path(name)); });
  };
  const auto writing = [&](const char* name) {
    return ReasonOf([&] { disk.files().WriteWhole(disk.path(name), "x"); });
  };
  EXPECT_EQ(reading("a"), "\"" + disk.path("a") + "\" could not be read: there is no such file.");
  EXPECT_EQ(reading("b/a"),
            "\"" + disk.path("b/a") + "\" could not be read: there is no such folder.");
  EXPECT_EQ(reading("folder"),
            "\"" + disk.path("folder") + "\" could not be read: it is a folder.");
  EXPECT_EQ(reading("pipe"),
            "\"" + disk.path("pipe") + "\" could not be read: it is no regular file.");
  EXPECT_EQ(writing("b/a"),
            "\"" + disk.path("b/a") + "\" could not be written: there is no such folder.");
  EXPECT_EQ(ReasonOf([&] { disk.files().ReadWhole(""); }),
            "A file without a name could not be read: there is no such file.");
}

TEST(QtFiles, RefusesToReplaceADevice) {
  RealDisk disk;
  for (const char* device : {"/dev/full", "/dev/null"}) {
    EXPECT_EQ(ErrorOf([&] { disk.files().WriteWhole(device, "x"); }), kDeviceIo) << device;
    EXPECT_EQ(ErrorOf([&] { disk.files().OpenRows(device, true); }), kDeviceIo) << device;
    EXPECT_EQ(ErrorOf([&] { disk.files().ReadWhole(device); }), kDeviceIo) << device;
    EXPECT_TRUE(fs::is_character_file(device));
  }
}

TEST(QtFiles, WritesThroughALinkAndKeepsTheLink) {
  RealDisk disk;
  disk.Put("target/real", "old");
  fs::create_symlink("target/real", disk.path("link"));
  fs::create_symlink("link", disk.path("link to link"));
  disk.files().WriteWhole(disk.path("link to link"), "new");
  EXPECT_EQ(disk.Get("target/real"), "new");
  EXPECT_TRUE(fs::is_symlink(disk.path("link")));
  EXPECT_TRUE(fs::is_symlink(disk.path("link to link")));
}

TEST(QtFiles, WritesWhereADanglingLinkLeads) {
  RealDisk disk;
  fs::create_symlink("later", disk.path("link"));
  disk.files().WriteWhole(disk.path("link"), "new");
  EXPECT_EQ(disk.Get("later"), "new");
  EXPECT_TRUE(fs::is_symlink(disk.path("link")));
}

TEST(QtFiles, RefusesALinkThatLeadsToItself) {
  RealDisk disk;
  fs::create_symlink("ring", disk.path("ring"));
  EXPECT_EQ(ErrorOf([&] { disk.files().WriteWhole(disk.path("ring"), "x"); }), kDeviceIo);
}

TEST(QtFiles, KeepsThePermissionsOfTheFileThatItReplaces) {
  RealDisk disk;
  disk.Put("file", "old");
  fs::permissions(disk.path("file"), fs::perms(0640));
  disk.files().WriteWhole(disk.path("file"), "new");
  EXPECT_EQ(fs::status(disk.path("file")).permissions(), fs::perms(0640));
}

TEST(QtFiles, AShortWriteLeavesTheOldFileAndNothingBesideIt) {
  RealDisk disk;
  disk.Put("file", "old");
  for (const std::size_t size : {5'000U, 70'000U, 200'000U}) {
    const FileSizeLimit limit(4096);
    EXPECT_EQ(ErrorOf([&] { disk.files().WriteWhole(disk.path("file"), std::string(size, 'n')); }),
              kDeviceIo);
    EXPECT_EQ(disk.Get("file"), "old");
    EXPECT_EQ(FilesIn(disk.path("")), 1);
  }
  disk.files().WriteWhole(disk.path("file"), "new");
  EXPECT_EQ(disk.Get("file"), "new");
}

TEST(QtFiles, AFullDiskLeavesNothingBesideTheFile) {
  RealDisk disk;
  if (!disk.LeaveRoom(8192)) GTEST_SKIP() << "No small disk can be mounted here.";
  EXPECT_EQ(ErrorOf([&] { disk.files().WriteWhole(disk.path("new"), std::string(70'000, 'n')); }),
            kDiskFull);
  EXPECT_EQ(FilesIn(disk.path("")), 1) << "the ballast only";
  disk.files().WriteWhole(disk.path("new"), "fits");
  EXPECT_EQ(disk.Get("new"), "fits");
}

TEST(QtFiles, AShortWriteGoesBackToTheEndOfThePieceBefore) {
  RealDisk disk;
  const auto rows = disk.files().OpenRows(disk.path("log"), false);
  rows->Append("whole row\n");
  {
    const FileSizeLimit limit(25);
    rows->Append("half ");
    EXPECT_EQ(ErrorOf([&] { rows->Append("that does not fit\n"); }), kDeviceIo);
    EXPECT_EQ(disk.Get("log"), "whole row\nhalf ");
  }
  rows->Append("row\n");
  EXPECT_EQ(disk.Get("log"), "whole row\nhalf row\n");
}

TEST(QtFiles, RowsOfADeletedFileAreRefused) {
  RealDisk disk;
  fs::create_directory(disk.path("logs"));
  const auto rows = disk.files().OpenRows(disk.path("logs/log"), false);
  rows->Append("row\n");
  fs::remove_all(disk.path("logs"));
  try {
    rows->Append("row\n");
    FAIL() << "Nobody will find this row.";
  } catch (const RunTimeError& error) {
    EXPECT_EQ(error.code(), kFileNotFound);
    EXPECT_EQ(std::string(error.what()),
              "\"" + disk.path("logs/log") + "\" could not be written: it has been deleted.");
  }
}

TEST(QtFiles, RowsGoBackNoFurtherThanWhatWasThereBefore) {
  RealDisk disk;
  disk.Put("log", "old row without end");
  const auto rows = disk.files().OpenRows(disk.path("log"), true);
  const FileSizeLimit limit(25);
  EXPECT_NE(ErrorOf([&] { rows->Append(std::string(100, 'x')); }), 0);
  EXPECT_EQ(disk.Get("log"), "old row without end");
}

TEST(QtFiles, WithoutADocumentsFolderItIsTheUsersOwn) {
  const RealDisk disk;
  const QByteArray home = qgetenv("HOME");
  const auto restore = qScopeGuard([&] { qputenv("HOME", home); });
  qputenv("HOME", QByteArray::fromStdString(disk.path("user")));
  fs::create_directory(disk.path("user"));
  EXPECT_EQ(QtFiles().DocumentsFolder(), disk.path("user"));
  fs::create_directory(disk.path("user/Documents"));
  EXPECT_EQ(QtFiles().DocumentsFolder(), disk.path("user/Documents"));
}

TEST(QtFiles, ReadsFilesWhoseSizeTheSystemDoesNotTell) {
  RealDisk disk;
  EXPECT_NE(disk.files().ReadWhole("/proc/self/status").find("Name:"), std::string::npos);
}

TEST(QtFiles, RefusesAFileThatIsTooLargeToBeOneOfOurs) {
  RealDisk disk;
  disk.Put("huge", "x");
  fs::resize_file(disk.path("huge"), std::uintmax_t{1} << 40);
  EXPECT_EQ(ReasonOf([&] { disk.files().ReadWhole(disk.path("huge")); }),
            "\"" + disk.path("huge") + "\" could not be read: it is too large.");
}

TEST(QtFiles, ShippedFilesAreBesideTheProgramUnlessToldOtherwise) {
  EXPECT_EQ(QtFiles("/elsewhere").DataFolder(), "/elsewhere");
  const std::string program = fs::read_symlink("/proc/self/exe").parent_path().string();
  EXPECT_EQ(QtFiles().DataFolder(), program);
}

}  // namespace
}  // namespace tarnlink
