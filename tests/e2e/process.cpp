#include "process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <sstream>

namespace e2e {

namespace {

using SteadyClock = std::chrono::steady_clock;

int MillisecondsUntil(SteadyClock::time_point end) {
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - SteadyClock::now());
  return static_cast<int>(std::max<std::int64_t>(left.count(), 0));
}

}  // namespace

Process::Process(const std::vector<std::string>& command,
                 const std::map<std::string, std::string>& environment) {
  int to[2];
  int from[2];
  if (pipe2(to, O_CLOEXEC) != 0 || pipe2(from, O_CLOEXEC) != 0) return;
  // Writing to a child that has ended is a failure of the test, not its end.
  signal(SIGPIPE, SIG_IGN);
  std::vector<char*> arguments;
  for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  pid_ = fork();
  if (pid_ == 0) {
    // Whoever runs the tests may have had some ignored.
    for (const int number : {SIGPIPE, SIGINT, SIGTERM, SIGHUP}) signal(number, SIG_DFL);
    dup2(to[0], STDIN_FILENO);
    dup2(from[1], STDOUT_FILENO);
    for (const auto& [name, value] : environment) setenv(name.c_str(), value.c_str(), 1);
    execvp(arguments[0], arguments.data());
    _exit(127);
  }
  close(to[0]);
  close(from[1]);
  to_ = to[1];
  from_ = from[0];
}

Process::~Process() {
  Kill();
  if (to_ >= 0) close(to_);
  if (from_ >= 0) close(from_);
}

void Process::Write(const std::string& line) {
  const std::string whole = line + "\n";
  if (write(to_, whole.data(), whole.size()) < 0) pending_.clear();
}

std::string Process::ReadLine(int milliseconds) {
  const auto end = SteadyClock::now() + std::chrono::milliseconds(milliseconds);
  for (;;) {
    const std::size_t at = pending_.find('\n');
    if (at != std::string::npos) {
      const std::string line = pending_.substr(0, at);
      pending_.erase(0, at + 1);
      return line;
    }
    pollfd wanted{from_, POLLIN, 0};
    if (poll(&wanted, 1, MillisecondsUntil(end)) <= 0) return {};
    char buffer[4096];
    const ssize_t count = read(from_, buffer, sizeof buffer);
    if (count <= 0) return {};
    pending_.append(buffer, static_cast<std::size_t>(count));
  }
}

int Process::WaitForEnd(int milliseconds) {
  if (pid_ < 0) return status_;
  // The far end of its standard output closes when it ends.
  const auto end = SteadyClock::now() + std::chrono::milliseconds(milliseconds);
  char buffer[4096];
  for (;;) {
    pollfd wanted{from_, POLLIN, 0};
    if (poll(&wanted, 1, MillisecondsUntil(end)) <= 0) return -1;
    const ssize_t count = read(from_, buffer, sizeof buffer);
    if (count <= 0) break;
    pending_.append(buffer, static_cast<std::size_t>(count));
  }
  int status = 0;
  waitpid(pid_, &status, 0);
  pid_ = -1;
  status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return status_;
}

void Process::Kill() {
  if (pid_ < 0) return;
  kill(pid_, SIGKILL);
  waitpid(pid_, nullptr, 0);
  pid_ = -1;
}

void Process::Signal(int number) const {
  if (pid_ >= 0) kill(pid_, number);
}

std::vector<std::string> Process::RestOfLines() {
  std::vector<std::string> lines;
  for (;;) {
    const std::string line = ReadLine(0);
    if (!line.empty()) lines.push_back(line);
    if (line.empty() && pending_.find('\n') == std::string::npos) return lines;
  }
}

double Process::ProcessorSeconds() const {
  std::ifstream file("/proc/" + std::to_string(pid_) + "/stat");
  std::stringstream text;
  text << file.rdbuf();
  // Behind the name in brackets come the state and ten numbers, then user and system ticks.
  std::istringstream fields(text.str().substr(text.str().rfind(')') + 1));
  std::string skipped;
  for (int i = 0; i < 11; ++i) fields >> skipped;
  double user = 0;
  double system = 0;
  fields >> user >> system;
  return (user + system) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

}  // namespace e2e
