#include "disk/bench.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>

#include "disk/bytes_of_file.h"

namespace tarnlink::disk {
namespace {

namespace fs = std::filesystem;

}  // namespace

bool IsFull() {
  const char* form = std::getenv("TARNLINK_DISK");
  return form != nullptr && std::string(form) == "full";
}

Bench::Bench(const Kind& kind, int size) : kind_(kind), size_(size) {
  Lay(kNone);
  if (IsLog()) return;
  const auto process = Start();
  for (const char version : kVersions) {
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(process->Ask(std::string("save ") + version), std::string("saved ") + version);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    seconds_ = std::max(seconds_, taken.count());
    saved_[version] = ReadFile(path());
    content_[version] = ContentOf(path()).value_or("");
    bytes_ = std::max(bytes_, static_cast<long long>(saved_[version].size()));
    EXPECT_EQ(Look(), version) << kind_.name << " does not differ from version to version";
    EXPECT_FALSE(content_[version].empty()) << kind_.name;
  }
  EXPECT_EQ(LeftOver(), 0) << kind_.name;
}

std::unique_ptr<WriterProcess> Bench::Start(bool with_temporary_files) const {
  return std::make_unique<WriterProcess>(
      std::vector<std::string>{std::string(kind_.name), path(), std::to_string(size_)},
      std::map<std::string, std::string>{
          {"XDG_CONFIG_HOME", folder() + "/config"},
          {"TMPDIR", with_temporary_files ? folder() : folder_.path()},
          {"LC_ALL", "C.UTF-8"}});
}

std::unique_ptr<WriterProcess> Bench::StartBehindASave() const {
  Lay(IsLog() ? kNone : 'A');
  auto process = Start();
  if (!IsLog()) {
    EXPECT_EQ(process->Ask("save A"), "saved A");
  }
  return process;
}

void Bench::Lay(char version) const {
  fs::remove_all(folder());
  fs::create_directories(fs::path(path()).parent_path());
  if (version == kNone) return;
  std::ofstream(path(), std::ios::binary) << saved_.at(version);
}

char Bench::Look(const std::string& root) const {
  const auto content = ContentOf(root + path());
  if (!content) return kNone;
  for (const auto& [version, wanted] : content_) {
    if (*content == wanted) return version;
  }
  return kHalf;
}

namespace {

// The system may end a killed write where a page of its memory ends, and nowhere else.
constexpr std::size_t kPage = 4096;

bool IsCutAtPage(const std::string& text, std::size_t at, const std::string& row) {
  return text.size() % kPage == 0 && row.starts_with(std::string_view(text).substr(at));
}

}  // namespace

int Bench::Rows(const std::string& root) const {
  const std::string text = ReadFile(root + path());
  int rows = 0;
  for (std::size_t at = 0; at < text.size(); ++rows) {
    const std::string row = LogRow(rows + 1);
    if (text.compare(at, row.size(), row) != 0) return IsCutAtPage(text, at, row) ? rows : -1;
    at += row.size();
  }
  return rows;
}

int Bench::LeftOver(const std::string& root) const {
  int count = 0;
  for (const auto& entry : fs::recursive_directory_iterator(root + folder())) {
    const std::string name = entry.path().filename();
    if (!entry.is_regular_file() || entry.path() == root + path() || name == "ballast") continue;
    EXPECT_NE(entry.path().extension(), fs::path(path()).extension()) << name;
    ++count;
  }
  return count;
}

void Bench::Judge(const std::string& answer, const std::string& reason, Figures& figures,
                  const std::string& root, char left_by_failure) const {
  const char found = Look(root);
  figures.half += found == kHalf ? 1 : 0;
  figures.old += found == 'A' ? 1 : 0;
  figures.fresh += found == 'B' ? 1 : 0;
  if (answer == "saved B") {
    ++figures.told_saved;
    EXPECT_EQ(found, 'B') << "told as saved";
  } else if (answer.starts_with("failed ")) {
    ++figures.told_failed;
    // The store keeps what could not be saved, and tries again before it goes.
    if (kind_.name != kSettings || found != 'B') {
      EXPECT_EQ(found, left_by_failure) << answer;
    }
    JudgeFailure(answer, reason);
  } else {
    ADD_FAILURE() << "The answer was \"" << answer << "\".";
  }
  EXPECT_EQ(LeftOver(root), 0) << answer;
}

void Bench::JudgeFailure(const std::string& answer, const std::string& reason) const {
  EXPECT_NE(answer.find("\"" + path() + "\""), std::string::npos) << answer;
  // The library that makes workbooks does not hand on why its own files failed, nor do the settings
  // why they could not be read.
  const bool is_told_why = path().ends_with(".xlsx")
                               ? answer.ends_with(".")
                               : answer.find(reason) != std::string::npos ||
                                     (kind_.name == kSettings && answer.ends_with(" be read."));
  EXPECT_TRUE(is_told_why) << answer << "\n where it was: " << reason;
}

void Figures::Print(const std::string& test) const {
  std::cout << test << ": kills " << kills << ", told as saved " << told_saved
            << ", told as failed " << told_failed << ", old " << old << ", new " << fresh
            << ", none " << none << ", half " << half << ", left over " << left_over << "\n";
}

}  // namespace tarnlink::disk
