#include "plug_watch.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "plug_heap.h"

namespace e2e {

namespace {

constexpr const char* kProgramName = "tarnlink";

// The second word of a process's status, in brackets, and the fourth.
bool IsOurProgram(const std::filesystem::path& process) {
  std::ifstream file(process / "stat");
  std::string number;
  std::string name;
  std::string state;
  pid_t parent = 0;
  file >> number >> name >> state >> parent;
  return parent == getpid() && name == std::string("(") + kProgramName + ")";
}

}  // namespace

PlugWatch::PlugWatch(const TestFolder& folder) {
#ifdef TARNLINK_HEAP_COUNTER
  const std::string path = folder.Write("heap", std::string(sizeof(HeapCount), '\0'));
  const int file = open(path.c_str(), O_RDWR | O_CLOEXEC);
  void* const shared =
      mmap(nullptr, sizeof(HeapCount), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  close(file);
  if (shared == MAP_FAILED) return;
  heap_ = static_cast<HeapCount*>(shared);
  setenv(kHeapFile, path.c_str(), 1);
  setenv("LD_PRELOAD", TARNLINK_HEAP_COUNTER, 1);
#else
  // Sanitizers have a heap of their own.
  static_cast<void>(folder);
#endif
}

PlugWatch::~PlugWatch() {
  if (heap_ == nullptr) return;
  unsetenv("LD_PRELOAD");
  unsetenv(kHeapFile);
  munmap(heap_, sizeof(HeapCount));
}

pid_t PlugWatch::Pid() {
  if (pid_ > 0) return pid_;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    if (IsOurProgram(entry.path())) pid_ = std::stoi(entry.path().filename().string());
  }
  return pid_;
}

std::string PlugWatch::FileNames() {
  std::string names;
  std::error_code error;
  const std::string folder = "/proc/" + std::to_string(Pid()) + "/fd";
  for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
    names += " " + entry.path().filename().string() + " " +
             std::filesystem::read_symlink(entry.path(), error).string();
  }
  return names;
}

int PlugWatch::Files() {
  const std::string folder = "/proc/" + std::to_string(Pid()) + "/fd";
  std::error_code error;
  const std::filesystem::directory_iterator all(folder, error);
  return error ? -1 : static_cast<int>(std::distance(begin(all), end(all)));
}

Holding PlugWatch::Look() {
#ifdef TARNLINK_HEAP_COUNTER
  EXPECT_TRUE(heap_ != nullptr && heap_->blocks.load() > 0) << "The heap is not counted.";
#endif
  std::ifstream file("/proc/" + std::to_string(Pid()) + "/statm");
  std::int64_t size = 0;
  std::int64_t resident = 0;
  file >> size >> resident;
  return {.files = Files(),
          .blocks = heap_ == nullptr ? 0 : heap_->blocks.load(),
          .bytes = heap_ == nullptr ? 0 : heap_->bytes.load(),
          .resident = resident * sysconf(_SC_PAGESIZE)};
}

double Slope(const std::vector<double>& values) {
  const auto count = static_cast<double>(values.size());
  double weighted = 0;
  double squares = 0;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const double place = static_cast<double>(i) - (count - 1) / 2;
    weighted += place * values[i];
    squares += place * place;
  }
  return squares > 0 ? weighted / squares : 0;
}

}  // namespace e2e
