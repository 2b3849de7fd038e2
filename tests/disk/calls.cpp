#include "disk/calls.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "disk/tracer.h"

namespace tarnlink::disk {
namespace {

std::string Joined(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ",") + name;
  return text;
}

// Of "1234 fsync(4) = 0"; empty for a signal, an end, and the second half of a call.
std::string NameIn(const std::string& line) {
  const std::size_t begin = line.find_first_not_of(' ', line.find(' '));
  const std::size_t end = line.find('(');
  if (begin == std::string::npos || end == std::string::npos || end < begin) return {};
  const std::string name = line.substr(begin, end - begin);
  return name.find(' ') == std::string::npos ? name : "";
}

std::vector<std::string> LinesOfASave(const Bench& bench) {
  const auto process = bench.StartBehindASave();
  Tracer tracer(process->pid(), bench.folder() + ".trace", Joined(CallsOfASave()) + ",writev");
  EXPECT_EQ(process->Ask("save B"), "saved B");
  tracer.Finish();
  return tracer.lines();
}

}  // namespace

const std::vector<std::string>& CallsOfASave() {
  static const std::vector<std::string> kCalls = {"write",     "fsync",  "fdatasync", "rename",
                                                  "linkat",    "openat", "fchmod",    "close",
                                                  "ftruncate", "mkdir",  "unlink",    "flock"};
  return kCalls;
}

std::vector<CallOfASave> WatchSave(const Bench& bench) {
  std::vector<CallOfASave> calls;
  for (const std::string& line : LinesOfASave(bench)) {
    const std::string name = NameIn(line);
    if (name.empty()) continue;
    calls.push_back({name == "writev" ? "saved" : name, line});
  }
  return calls;
}

std::map<std::string, int> CountCalls(const Bench& bench) {
  std::map<std::string, std::map<std::string, int>> of_thread;
  std::map<std::string, int> most;
  for (const std::string& line : LinesOfASave(bench)) {
    const std::string name = NameIn(line);
    if (name.empty() || name == "writev") continue;
    const int count = ++of_thread[line.substr(0, line.find(' '))][name];
    most[name] = std::max(most[name], count);
  }
  return most;
}

}  // namespace tarnlink::disk
