// From the start of the program to its first painted window, against an empty Qt window.

#include <spawn.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "measure.h"

namespace {

constexpr int kRounds = 21;

double SecondsToFirstWindow(const char* program) {
  char* arguments[] = {const_cast<char*>(program), nullptr};
  pid_t pid = 0;
  const double begin = bench::WallSeconds();
  if (posix_spawn(&pid, program, nullptr, nullptr, arguments, environ) != 0) return 0;
  int status = 0;
  waitpid(pid, &status, 0);
  return bench::WallSeconds() - begin;
}

}  // namespace

int main() {
  std::string folder = (std::filesystem::temp_directory_path() / "tarnlink-start-XXXXXX").string();
  setenv("XDG_CONFIG_HOME", mkdtemp(folder.data()), 1);
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  setenv("QT_QPA_GENERIC_PLUGINS", "firstwindow", 1);
  setenv("QT_PLUGIN_PATH", FIRST_WINDOW_PATH, 1);
  std::vector<double> ours;
  std::vector<double> empty;
  for (int i = 0; i < kRounds; ++i) {
    empty.push_back(SecondsToFirstWindow(EMPTY_WINDOW_PROGRAM));
    ours.push_back(SecondsToFirstWindow(TARNLINK_PROGRAM));
  }
  std::filesystem::remove_all(folder);
  std::printf("first window %.1f ms, empty window %.1f ms\n", bench::Median(ours) * 1e3,
              bench::Median(empty) * 1e3);
  bench::Report("start to first window / empty Qt window",
                bench::Median(ours) / bench::Median(empty), 3.0, false);
  return bench::AllHeld() ? 0 : 1;
}
