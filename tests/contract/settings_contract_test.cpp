#include <gtest/gtest.h>
#include <sys/mount.h>

#include <QSettings>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>

#include "contract/file_size_limit.h"
#include "contract/loops.h"
#include "contract/machine.h"
#include "platform/qt/qt_settings_store.h"
#include "support/fake_settings_store.h"
#include "support/temporary_folder.h"

namespace tarnlink {
namespace {

class FakeStoreBench {
 public:
  SettingsStore& store() { return store_; }
  void Reopen() {}
  void BreakWriting() { store_.BreakWriting("The settings could not be saved."); }

 private:
  FakeSettingsStore store_;
};

class QtStoreBench {
 public:
  QtStoreBench() { Start(folder_ / "config"); }

  SettingsStore& store() { return *store_; }
  void Reopen() { Start(config_); }
  // A plain file stands where the folder of the store would have to be.
  void BreakWriting() {
    std::ofstream(folder_ / "blocked") << "x";
    Start(folder_ / "blocked");
  }
  std::string file() const { return config_ + "/TarnLink2/TarnLink2.ini"; }
  std::string FileText() const {
    std::ifstream text(file(), std::ios::binary);
    return {std::istreambuf_iterator<char>(text), {}};
  }
  const TemporaryFolder& folder() const { return folder_; }
  void Start(const std::string& config) {
    config_ = config;
    store_.reset();
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, QString::fromStdString(config_));
    store_ = std::make_unique<QtSettingsStore>();
  }

 private:
  TemporaryFolder folder_;
  std::string config_;
  std::unique_ptr<QtSettingsStore> store_;
};

template <class Bench>
class SettingsContract : public testing::Test {
 protected:
  std::string Get(std::string_view section, std::string_view key) {
    return bench.store().GetSetting(section, key, "fallback");
  }

  Bench bench;
};

using Benches = testing::Types<FakeStoreBench, QtStoreBench>;
TYPED_TEST_SUITE(SettingsContract, Benches, BenchNames);

TYPED_TEST(SettingsContract, AnEmptyStoreGivesTheFallback) {
  EXPECT_EQ(this->Get("Communication", "Protocol"), "fallback");
  EXPECT_EQ(this->bench.store().GetSetting("Paths", "LogPath", "C:"), "C:");
  EXPECT_EQ(this->bench.store().GetSetting("Paths", "LogPath", ""), "");
}

TYPED_TEST(SettingsContract, AnEmptyTextIsAValue) {
  this->bench.store().SaveSetting("Paths", "LogPath", "");
  this->bench.store().Failure();
  this->bench.Reopen();
  EXPECT_EQ(this->Get("Paths", "LogPath"), "");
}

TYPED_TEST(SettingsContract, TheLastValueWins) {
  this->bench.store().SaveSetting("Communication", "Protocol", "1");
  this->bench.store().SaveSetting("Communication", "Protocol", "2");
  EXPECT_EQ(this->Get("Communication", "Protocol"), "2");
  EXPECT_EQ(this->Get("Communication", "Baudrate"), "fallback");
  EXPECT_EQ(this->Get("Paths", "Protocol"), "fallback");
}

TYPED_TEST(SettingsContract, EveryTextComesBackAsItWasAlsoFromTheFile) {
  const std::vector<std::string> texts{"plain",
                                       "C:",
                                       "C:\\",
                                       ".\\default.map",
                                       "D:\\x41\\new\\tab\\EXCEL.EXE",
                                       "a,b",
                                       "a, b,",
                                       ",",
                                       ", ,",
                                       " leading blank",
                                       "trailing blank ",
                                       "   ",
                                       "\ttab",
                                       "say \"so\"",
                                       "\"quoted\"",
                                       "semi;colon = equals # hash",
                                       "[section]",
                                       "@Invalid()",
                                       "@Variant(x)",
                                       "@ByteArray(x)",
                                       "@@",
                                       "@",
                                       "%20 100%",
                                       "true",
                                       "0010",
                                       "1e5",
                                       "two\r\nlines",
                                       "/home/user/Größe/温度 🔥.wcr",
                                       "\x01\x02\x7F",
                                       "<Free>",
                                       std::string(5000, 'x')};
  for (std::size_t i = 0; i < texts.size(); ++i) {
    this->bench.store().SaveSetting("Texts", "Key" + std::to_string(i), texts[i]);
  }
  EXPECT_EQ(this->bench.store().Failure(), "");
  for (int round = 0; round < 2; ++round) {
    for (std::size_t i = 0; i < texts.size(); ++i) {
      EXPECT_EQ(this->Get("Texts", "Key" + std::to_string(i)), texts[i]);
    }
    this->bench.Reopen();
  }
}

TYPED_TEST(SettingsContract, SectionsAndKeysOfAnyName) {
  for (const char* section : {"General", "Ports", "My Section", "%General", "Größe"}) {
    for (const char* key : {"COM1", "with blank", "Hist0", "ключ"}) {
      this->bench.store().SaveSetting(section, key, std::string(section) + "-" + key);
    }
  }
  EXPECT_EQ(this->bench.store().Failure(), "");
  this->bench.Reopen();
  for (const char* section : {"General", "Ports", "My Section", "%General", "Größe"}) {
    for (const char* key : {"COM1", "with blank", "Hist0", "ключ"}) {
      EXPECT_EQ(this->Get(section, key), std::string(section) + "-" + key);
    }
  }
}

TYPED_TEST(SettingsContract, AStoreThatCannotBeWrittenKeepsTheValuesAndTellsOnce) {
  this->bench.BreakWriting();
  EXPECT_EQ(this->bench.store().Failure(), "") << "nothing to be written yet";
  this->bench.store().SaveSetting("Communication", "Protocol", "2");
  EXPECT_EQ(this->Get("Communication", "Protocol"), "2");
  EXPECT_NE(this->bench.store().Failure(), "");
  this->bench.store().SaveSetting("Communication", "Protocol", "0");
  EXPECT_EQ(this->bench.store().Failure(), "");
  EXPECT_EQ(this->Get("Communication", "Protocol"), "0");
}

TEST(QtSettingsStore, IsAnIniFileOfTheUser) {
  QtStoreBench bench;
  bench.store().SaveSetting("Communication", "Protocol", "1");
  bench.store().SaveSetting("Ports", "COM3", "/dev/ttyUSB0");
  EXPECT_EQ(bench.store().Failure(), "");
  EXPECT_EQ(bench.FileText(), "[Communication]\nProtocol=1\n\n[Ports]\nCOM3=/dev/ttyUSB0\n");
}

TEST(QtSettingsStore, WritesAtTheEndWhatNobodyAskedAbout) {
  QtStoreBench bench;
  bench.store().SaveSetting("Communication", "Protocol", "1");
  bench.Reopen();
  EXPECT_EQ(bench.store().GetSetting("Communication", "Protocol", ""), "1");
}

TEST(QtSettingsStore, ReadsWhatAPersonTypedIntoTheFile) {
  QtStoreBench bench;
  std::filesystem::create_directories(bench.folder() / "other/TarnLink2");
  std::ofstream(bench.folder() / "other/TarnLink2/TarnLink2.ini")
      << "[Paths]\nLogPath=/home/a,b/c\nOther = spaced \n";
  bench.Start(bench.folder() / "other");
  EXPECT_EQ(bench.store().GetSetting("Paths", "LogPath", ""), "/home/a,b/c");
  EXPECT_EQ(bench.store().GetSetting("Paths", "Other", ""), "spaced");
}

TEST(QtSettingsStore, TakesTheFallbacksOfANonsenseFileAndWorksOn) {
  QtStoreBench bench;
  std::filesystem::create_directories(bench.folder() / "other/TarnLink2");
  std::ofstream(bench.folder() / "other/TarnLink2/TarnLink2.ini", std::ios::binary)
      << std::string("\x00\xFF]][[==\n\n===[Communication\nProtocol\n\x1A\xC3\x28", 40);
  bench.Start(bench.folder() / "other");
  EXPECT_EQ(bench.store().GetSetting("Communication", "Protocol", "1"), "1");
  bench.store().SaveSetting("Communication", "Protocol", "2");
  EXPECT_EQ(bench.store().Failure(), "");
  bench.Reopen();
  EXPECT_EQ(bench.store().GetSetting("Communication", "Protocol", "1"), "2");
}

TEST(QtSettingsStore, SaysWhichFileCannotBeWrittenAndWhy) {
  QtStoreBench bench;
  bench.BreakWriting();
  bench.store().SaveSetting("Communication", "Protocol", "2");
  EXPECT_EQ(bench.store().Failure(), "The settings could not be saved in \"" + bench.file() +
                                         "\": \"" + (bench.folder() / "blocked") +
                                         "\" is no folder.");
}

TEST(QtSettingsStore, SaysThatTheUserHasNoPermission) {
  QtStoreBench bench;
  std::filesystem::create_directory(bench.folder() / "readonly");
  std::filesystem::permissions(bench.folder() / "readonly", std::filesystem::perms(0555));
  const OrdinaryUser rights;
  bench.Start(bench.folder() / "readonly");
  bench.store().SaveSetting("Communication", "Protocol", "2");
  EXPECT_EQ(bench.store().Failure(), "The settings could not be saved in \"" + bench.file() +
                                         "\": you do not have the permission.");
}

TEST(QtSettingsStore, AFullDiskLeavesTheOldFileWholeAndTheValuesComeLater) {
  QtStoreBench bench;
  const std::string disk = bench.folder() / "disk";
  std::filesystem::create_directory(disk);
  if (mount("tmpfs", disk.c_str(), "tmpfs", 0, "size=512k,mode=0777") != 0) {
    GTEST_SKIP() << "No small disk can be mounted here.";
  }
  bench.Start(disk);
  bench.store().SaveSetting("Communication", "Protocol", "1");
  EXPECT_EQ(bench.store().Failure(), "");
  const std::string old = bench.FileText();
  std::ofstream(disk + "/ballast") << std::string(600'000, 'x');
  bench.store().SaveSetting("Communication", "Protocol", "2");
  EXPECT_EQ(bench.store().GetSetting("Communication", "Protocol", ""), "2");
  EXPECT_EQ(bench.store().Failure(),
            "The settings could not be saved in \"" + bench.file() + "\": the disk is full.");
  EXPECT_EQ(bench.FileText(), old);
  std::filesystem::remove(disk + "/ballast");
  EXPECT_EQ(bench.store().Failure(), "");
  EXPECT_EQ(bench.FileText(), "[Communication]\nProtocol=2\n");
  bench.Start(bench.folder() / "elsewhere");
  umount2(disk.c_str(), MNT_DETACH);
}

TEST(QtSettingsStore, AShortWriteLeavesTheOldFileWholeAndTheValuesComeLater) {
  QtStoreBench bench;
  bench.store().SaveSetting("Communication", "Protocol", "1");
  EXPECT_EQ(bench.store().Failure(), "");
  const std::string old = bench.FileText();
  {
    const FileSizeLimit limit(1000);
    bench.store().SaveSetting("Texts", "Long", std::string(3000, 'x'));
    EXPECT_EQ(bench.store().Failure(), "The settings could not be saved in \"" + bench.file() +
                                           "\": the file would become too large.");
    EXPECT_EQ(bench.FileText(), old);
  }
  EXPECT_EQ(bench.store().Failure(), "");
  EXPECT_EQ(bench.FileText(), old + "\n[Texts]\nLong=" + std::string(3000, 'x') + "\n");
}

TEST(QtSettingsStore, KeepsWhatAnotherProgramHasSavedMeanwhile) {
  QtStoreBench bench;
  QtSettingsStore other;
  bench.store().SaveSetting("Communication", "Protocol", "1");
  EXPECT_EQ(bench.store().Failure(), "");
  other.SaveSetting("Communication", "Baudrate", "3");
  EXPECT_EQ(other.Failure(), "");
  bench.store().SaveSetting("Ports", "COM1", "/dev/ttyS0");
  EXPECT_EQ(bench.store().Failure(), "");
  EXPECT_EQ(bench.FileText(),
            "[Communication]\nBaudrate=3\nProtocol=1\n\n[Ports]\nCOM1=/dev/ttyS0\n");
}

TEST(QtSettingsStore, WritesNothingOverAFileThatItCouldNotRead) {
  QtStoreBench bench;
  const std::string folder = bench.folder() / "other/TarnLink2";
  const std::string file = folder + "/TarnLink2.ini";
  std::filesystem::create_directories(folder);
  std::filesystem::permissions(folder, std::filesystem::perms::all);
  std::ofstream(file) << "[Ports]\nCOM1=/dev/ttyS0\n";
  std::filesystem::permissions(file, std::filesystem::perms(0222));
  {
    const OrdinaryUser rights;
    bench.Start(bench.folder() / "other");
    bench.store().SaveSetting("Communication", "Protocol", "1");
    EXPECT_EQ(bench.store().Failure(), "The settings could not be saved in \"" + bench.file() +
                                           "\": its present settings cannot be read.");
    EXPECT_EQ(bench.store().GetSetting("Communication", "Protocol", ""), "1");
    bench.Start(bench.folder() / "elsewhere");
  }
  EXPECT_EQ(std::filesystem::file_size(file), 24U);
}

}  // namespace
}  // namespace tarnlink
