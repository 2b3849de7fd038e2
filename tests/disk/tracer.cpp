#include "disk/tracer.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <sstream>
#include <vector>

#include "disk/bytes_of_file.h"

namespace tarnlink::disk {
namespace {

constexpr int kBound = 20'000;  // ms

// What the far end says up to its first line's end; empty if nothing comes.
std::string FirstLine(int handle) {
  std::string text;
  while (text.find('\n') == std::string::npos) {
    pollfd wanted{handle, POLLIN, 0};
    if (poll(&wanted, 1, kBound) <= 0) break;
    std::array<char, 512> buffer{};
    const ssize_t count = read(handle, buffer.data(), buffer.size());
    if (count <= 0) break;
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
  return text;
}

}  // namespace

bool Tracer::Works() {
  static const bool works =
      std::system(
          "strace -f -qq -o /dev/null -e trace=write -e inject=fsync:error=EIO true "
          ">/dev/null 2>&1") == 0;
  return works;
}

Tracer::Tracer(pid_t process, const std::string& log, const std::string& calls,
               const std::string& fault)
    : log_(log) {
  std::array<int, 2> said{};
  if (pipe2(said.data(), O_CLOEXEC) != 0) return;
  std::vector<std::string> words = {
      "strace", "-f", "-o", log, "-p", std::to_string(process), "-e", "trace=" + calls};
  if (!fault.empty()) words.insert(words.end(), {"-e", "inject=" + calls + ":" + fault});
  std::vector<char*> command;
  for (std::string& word : words) command.push_back(word.data());
  command.push_back(nullptr);
  pid_ = fork();
  if (pid_ == 0) {
    dup2(said[1], STDERR_FILENO);
    execvp(command[0], command.data());
    _exit(127);
  }
  close(said[1]);
  const std::string line = FirstLine(said[0]);
  EXPECT_NE(line.find("attached"), std::string::npos) << line;
  said_ = said[0];
}

Tracer::~Tracer() { Finish(); }

std::string Tracer::Finish() {
  if (pid_ < 0) return {};
  kill(pid_, SIGTERM);
  waitpid(pid_, nullptr, 0);
  pid_ = -1;
  close(said_);
  std::istringstream log(ReadFile(log_));
  std::string failed;
  for (std::string line; std::getline(log, line);) {
    if (line.find("(INJECTED)") != std::string::npos) failed += line + "\n";
    lines_.push_back(line);
  }
  return failed;
}

}  // namespace tarnlink::disk
