#include "disk/writer_process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>

namespace tarnlink::disk {
namespace {

constexpr int kBound = 60'000;  // ms, for a disk that is busy with others

}  // namespace

WriterProcess::WriterProcess(const std::vector<std::string>& arguments,
                             const std::map<std::string, std::string>& environment) {
  std::array<int, 2> to{};
  std::array<int, 2> from{};
  if (pipe2(to.data(), O_CLOEXEC) != 0 || pipe2(from.data(), O_CLOEXEC) != 0) return;
  // Writing to a child that has ended is a failure of the test, not its end.
  signal(SIGPIPE, SIG_IGN);
  std::string program = TARNLINK_DISK_WRITER;
  std::vector<std::string> words = arguments;
  std::vector<char*> command = {program.data()};
  for (std::string& word : words) command.push_back(word.data());
  command.push_back(nullptr);
  pid_ = fork();
  if (pid_ == 0) {
    dup2(to[0], STDIN_FILENO);
    dup2(from[1], STDOUT_FILENO);
    for (const auto& [name, value] : environment) setenv(name.c_str(), value.c_str(), 1);
    execv(command[0], command.data());
    _exit(127);
  }
  close(to[0]);
  close(from[1]);
  to_ = to[1];
  from_ = from[0];
  EXPECT_EQ(Answer(), "ready");
}

WriterProcess::~WriterProcess() {
  Kill();
  if (to_ >= 0) close(to_);
  if (from_ >= 0) close(from_);
}

void WriterProcess::Send(const std::string& command) const {
  const std::string line = command + "\n";
  EXPECT_EQ(write(to_, line.data(), line.size()), static_cast<ssize_t>(line.size())) << command;
}

std::string WriterProcess::Answer() {
  for (;;) {
    const std::size_t end = pending_.find('\n');
    if (end != std::string::npos) {
      const std::string line = pending_.substr(0, end);
      pending_.erase(0, end + 1);
      return line;
    }
    pollfd wanted{from_, POLLIN, 0};
    if (poll(&wanted, 1, kBound) <= 0) return {};
    std::array<char, 4096> buffer{};
    const ssize_t count = read(from_, buffer.data(), buffer.size());
    // Its output closes with its end.
    has_closed_ = count == 0;
    if (count <= 0) return {};
    pending_.append(buffer.data(), static_cast<std::size_t>(count));
  }
}

std::string WriterProcess::Ask(const std::string& command) {
  Send(command);
  return Answer();
}

void WriterProcess::Kill() {
  if (pid_ < 0) return;
  kill(pid_, SIGKILL);
  waitpid(pid_, &status_, 0);
  pid_ = -1;
}

bool WriterProcess::WasKilled() {
  if (pid_ >= 0) {
    while (!Answer().empty()) continue;
    if (!has_closed_) {
      Kill();
      return false;
    }
    waitpid(pid_, &status_, 0);
    pid_ = -1;
  }
  return WIFSIGNALED(status_) && WTERMSIG(status_) == SIGKILL;
}

}  // namespace tarnlink::disk
