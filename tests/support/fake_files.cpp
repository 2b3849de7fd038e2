#include "support/fake_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <optional>
#include <utility>

#include "common/run_time_error.h"

namespace tarnlink {
namespace {

std::string Parent(const std::string& path) {
  const auto slash = path.rfind('/');
  return slash == 0 ? "/" : path.substr(0, slash);
}

}  // namespace

class FakeFiles::Rows final : public RowWriter {
 public:
  Rows(FakeFiles& files, std::string path) : files_(files), path_(std::move(path)) {}

  void Append(std::string_view piece) override {
    std::string& file = files_.files_[path_];
    const std::size_t whole = file.size();
    if (files_.Grow(file, piece) < piece.size()) {
      file.resize(whole);
      throw RunTimeError(kDiskFull, "\"" + path_ + "\" could not be written: the disk is full.");
    }
  }

 private:
  FakeFiles& files_;
  std::string path_;
};

// Opened, as the real one, only when it is asked for something.
class FakeFiles::FakeBigReader final : public BigReader {
 public:
  FakeBigReader(FakeFiles& files, std::string path) : files_(files), path_(std::move(path)) {}

  bool Next(std::string_view& piece) override {
    is_due_ = !is_due_;
    if (!is_due_) return false;
    Open();
    constexpr std::size_t kPiece = 4099;
    if (place_ == end_ && breaks_) throw RunTimeError(kDeviceIo, Quoted() + " could not be read.");
    piece = std::string_view(bytes_).substr(place_, std::min(kPiece, end_ - place_));
    place_ += piece.size();
    return !piece.empty();
  }
  bool AtEnd() const override { return is_open_ && place_ == end_ && !breaks_; }
  std::int64_t Size() const override { return static_cast<std::int64_t>(bytes_.size()); }
  void Wait() override {}

 private:
  std::string Quoted() const { return "\"" + path_ + "\""; }
  void Open() {
    if (std::exchange(is_open_, true)) return;
    bytes_ = files_.ReadWhole(path_);
    const auto broken = files_.broken_.find(Absolute(path_));
    breaks_ = broken != files_.broken_.end();
    end_ = breaks_ ? std::min(broken->second, bytes_.size()) : bytes_.size();
  }

  FakeFiles& files_;
  std::string path_;
  bool is_due_ = false;
  bool is_open_ = false;
  bool breaks_ = false;
  std::string bytes_;
  std::size_t place_ = 0;
  std::size_t end_ = 0;
};

// Every second question writes one piece that waits.
class FakeFiles::FakeBigWriter final : public BigWriter {
 public:
  FakeBigWriter(FakeFiles& files, std::string path) : files_(files), path_(std::move(path)) {}
  ~FakeBigWriter() override { GiveBack(); }
  FakeBigWriter(const FakeBigWriter&) = delete;
  FakeBigWriter& operator=(const FakeBigWriter&) = delete;

  bool HasRoom() override {
    is_due_ = !is_due_;
    if (is_due_) Work();
    return is_due_ && waiting_.size() < kMostPieces;
  }
  void Write(std::string& piece) override {
    EXPECT_LT(waiting_.size(), kMostPieces) << "There was no room.";
    waiting_.push_back(std::move(piece));
    piece.clear();
  }
  void Finish() override { is_complete_ = true; }
  bool IsFinished() override {
    is_due_ = !is_due_;
    if (is_due_) Work();
    return is_finished_;
  }
  void Wait() override {}

 private:
  static constexpr std::size_t kMostPieces = 2;

  void Work() {
    if (failure_) throw *failure_;
    try {
      files_.CheckTarget(path_);
      if (waiting_.empty()) {
        Replace();
      } else {
        WritePiece();
      }
    } catch (const RunTimeError& error) {
      failure_ = error;
      GiveBack();
      throw;
    }
  }
  void WritePiece() {
    if (files_.Grow(fresh_, waiting_.front()) < waiting_.front().size()) {
      throw RunTimeError(kDiskFull, "\"" + path_ + "\" could not be written: the disk is full.");
    }
    waiting_.pop_front();
  }
  void Replace() {
    if (!is_complete_ || is_finished_) return;
    files_.files_[Absolute(path_)] = fresh_;
    is_finished_ = true;
  }
  void GiveBack() {
    if (!is_finished_) files_.free_ += fresh_.size();
    fresh_.clear();
  }

  FakeFiles& files_;
  std::string path_;
  bool is_due_ = false;
  std::deque<std::string> waiting_;
  std::string fresh_;
  bool is_complete_ = false;
  bool is_finished_ = false;
  std::optional<RunTimeError> failure_;
};

FakeFiles::FakeFiles() {
  MakeFolder(std::string(kWorkingFolder));
  MakeFolder(std::string(kDocuments));
  MakeFolder(std::string(kData));
}

std::string FakeFiles::Absolute(const std::string& path) {
  std::string from = path.starts_with('/') ? path : std::string(kWorkingFolder) + "/" + path;
  from += '/';
  std::string result;
  std::size_t start = 1;
  for (std::size_t end = from.find('/', start); end != std::string::npos;
       start = end + 1, end = from.find('/', start)) {
    const std::string part = from.substr(start, end - start);
    if (part == "..") {
      result = result.substr(0, result.find_last_of('/'));
    } else if (!part.empty() && part != ".") {
      result += "/" + part;
    }
  }
  return result.empty() ? "/" : result;
}

std::string FakeFiles::ReadWhole(const std::string& path) {
  const std::string full = Absolute(path);
  const auto fail = [&](int code, const std::string& why) {
    throw RunTimeError(code, "\"" + path + "\" could not be read: " + why);
  };
  if (path.empty()) fail(kFileNotFound, "there is no such file.");
  if (IsFolder(path)) fail(kDeviceIo, "it is a folder.");
  if (!folders_.contains(Parent(full))) fail(kPathNotFound, "there is no such folder.");
  if (!files_.contains(full)) fail(kFileNotFound, "there is no such file.");
  if (forbidden_.contains(full)) fail(kPermissionDenied, "you do not have the permission.");
  return files_.at(full);
}

void FakeFiles::ReadPieces(const std::string& path,
                           const std::function<bool(std::string_view)>& take) {
  constexpr std::size_t kPiece = 7;
  const std::string bytes = ReadWhole(path);
  Work();
  const auto broken = broken_.find(Absolute(path));
  const std::size_t end = broken == broken_.end() ? bytes.size() : broken->second;
  for (std::size_t i = 0; i < end; i += kPiece) {
    if (!take(std::string_view(bytes).substr(i, std::min(kPiece, end - i)))) return;
  }
  if (broken != broken_.end()) throw RunTimeError(kDeviceIo, "\"" + path + "\" could not be read.");
}

void FakeFiles::CheckTarget(const std::string& path) const {
  const std::string full = Absolute(path);
  const auto fail = [&](int code, const std::string& why) {
    throw RunTimeError(code, "\"" + path + "\" could not be written: " + why);
  };
  if (path.empty()) fail(kPathNotFound, "there is no such folder.");
  if (IsFolder(path)) fail(kDeviceIo, "it is a folder.");
  if (!folders_.contains(Parent(full))) fail(kPathNotFound, "there is no such folder.");
  if (special_.contains(full)) fail(kDeviceIo, "it is no regular file.");
  if (forbidden_.contains(full) || forbidden_.contains(Parent(full))) {
    fail(kPermissionDenied, "you do not have the permission.");
  }
}

std::size_t FakeFiles::Grow(std::string& file, std::string_view piece) {
  const std::size_t taken = std::min(piece.size(), free_);
  file += piece.substr(0, taken);
  free_ -= taken;
  return taken;
}

void FakeFiles::Work() {
  if (const auto call = std::exchange(WhileItWorks, {})) call();
}

void FakeFiles::WriteWhole(const std::string& path, std::string_view bytes) {
  CheckTarget(path);
  Work();
  std::string fresh;
  const std::size_t free_before = free_;
  if (Grow(fresh, bytes) < bytes.size()) {
    free_ = free_before;
    throw RunTimeError(kDiskFull, "\"" + path + "\" could not be written: the disk is full.");
  }
  files_[Absolute(path)] = fresh;
}

std::unique_ptr<RowWriter> FakeFiles::OpenRows(const std::string& path, bool keep) {
  CheckTarget(path);
  std::string& file = files_[Absolute(path)];
  if (!keep) file.clear();
  return std::make_unique<Rows>(*this, Absolute(path));
}

std::unique_ptr<BigReader> FakeFiles::ReadBig(const std::string& path) {
  return std::make_unique<FakeBigReader>(*this, path);
}

std::unique_ptr<BigWriter> FakeFiles::WriteBig(const std::string& path) {
  return std::make_unique<FakeBigWriter>(*this, path);
}

bool FakeFiles::Exists(const std::string& path) const {
  const std::string full = Absolute(path);
  return !path.empty() && (files_.contains(full) || special_.contains(full));
}

bool FakeFiles::IsFolder(const std::string& path) const {
  return !path.empty() && folders_.contains(Absolute(path));
}

std::vector<std::string> FakeFiles::ListFolder(const std::string& folder) const {
  std::vector<std::string> names;
  if (!IsFolder(folder)) return names;
  const std::string full = Absolute(folder);
  for (const auto& [path, bytes] : files_) {
    if (Parent(path) == full) names.push_back(path.substr(path.rfind('/') + 1));
  }
  return names;
}

void FakeFiles::Put(const std::string& path, std::string_view bytes) {
  MakeFolder(Parent(Absolute(path)));
  files_[Absolute(path)] = bytes;
}

std::string FakeFiles::Get(const std::string& path) const {
  const auto found = files_.find(Absolute(path));
  if (found != files_.end()) return found->second;
  ADD_FAILURE() << "There is no file " << path << "; there are:\n" << Describe();
  return {};
}

void FakeFiles::MakeFolder(const std::string& path) {
  std::string full = Absolute(path);
  while (folders_.insert(full).second && full != "/") full = Parent(full);
}

void FakeFiles::RemoveFolder(const std::string& path) {
  const std::string full = Absolute(path);
  const auto is_inside = [&](const std::string& name) {
    return name == full || name.starts_with(full + "/");
  };
  std::erase_if(files_, [&](const auto& file) { return is_inside(file.first); });
  std::erase_if(folders_, is_inside);
}

std::string FakeFiles::Describe() const {
  std::string text;
  for (const auto& [path, bytes] : files_) {
    text += path + " " + std::to_string(bytes.size()) + "\n";
  }
  return text;
}

}  // namespace tarnlink
