#include "running_program.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include "simulator/bytes.h"

namespace boiler {
namespace {

using Clock = std::chrono::steady_clock;

int MillisecondsUntil(Clock::time_point end) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
  return std::max(0, static_cast<int>(left.count()));
}

// Whether the file has one of the events before `end`.
bool WaitFor(int file, short events, Clock::time_point end) {
  pollfd poll_file{file, events, 0};
  return ::poll(&poll_file, 1, MillisecondsUntil(end)) > 0;
}

struct Pipe {
  Pipe() {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) std::abort();
    read = FileDescriptor(ends[0]);
    write = FileDescriptor(ends[1]);
  }
  FileDescriptor read, write;
};

}  // namespace

RunningProgram::RunningProgram(const std::vector<std::string>& words) {
  Pipe in, out, err;
  std::vector<std::string> all = {BOILER_SIMULATOR_PROGRAM};
  all.insert(all.end(), words.begin(), words.end());
  std::vector<char*> arguments;
  for (std::string& word : all) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  process_ = ::fork();
  if (process_ == 0) {
    ::dup2(in.read.number(), STDIN_FILENO);
    ::dup2(out.write.number(), STDOUT_FILENO);
    ::dup2(err.write.number(), STDERR_FILENO);
    ::execv(arguments[0], arguments.data());
    ::_exit(127);
  }
  input_ = std::move(in.write);
  output_ = std::move(out.read);
  errors_ = std::move(err.read);
}

RunningProgram::RunningProgram(RunningProgram&& other) noexcept
    : process_(std::exchange(other.process_, -1)),
      input_(std::move(other.input_)),
      output_(std::move(other.output_)),
      errors_(std::move(other.errors_)),
      read_ahead_(std::move(other.read_ahead_)) {}

RunningProgram::~RunningProgram() {
  if (process_ <= 0) return;
  ::kill(process_, SIGKILL);
  ::waitpid(process_, nullptr, 0);
}

std::string RunningProgram::Line() {
  const auto end = Clock::now() + kPatience;
  while (read_ahead_.find('\n') == std::string::npos) {
    if (!WaitFor(output_.number(), POLLIN, end)) return "(no line)";
    const auto more = ReadWaiting(output_.number());
    if (!more) return "(no line)";
    read_ahead_ += *more;
  }
  const std::size_t length = read_ahead_.find('\n');
  const std::string line = read_ahead_.substr(0, length);
  read_ahead_.erase(0, length + 1);
  return line;
}

void RunningProgram::Tell(const std::string& command) {
  WriteFitting(input_.number(), command + "\n");
}

void RunningProgram::Signal(int number) { ::kill(process_, number); }

std::optional<int> RunningProgram::Status() {
  int status = 0;
  const bool ended = Eventually([&] { return ::waitpid(process_, &status, WNOHANG) == process_; });
  if (!ended) return std::nullopt;
  process_ = -1;
  if (!WIFEXITED(status)) return -WTERMSIG(status);
  return WEXITSTATUS(status);
}

std::string RunningProgram::Errors() {
  std::string all;
  while (const auto more = ReadWaiting(errors_.number())) all += *more;
  return all;
}

long RunningProgram::Switches() const {
  std::ifstream file("/proc/" + std::to_string(process_) + "/status");
  long sum = 0;
  for (std::string line; std::getline(file, line);) {
    if (line.find("ctxt_switches") == std::string::npos) continue;
    sum += std::stol(line.substr(line.find(':') + 1));
  }
  return sum;
}

long RunningProgram::ProcessorTicks() const {
  std::ifstream file("/proc/" + std::to_string(process_) + "/stat");
  std::string text;
  std::getline(file, text);
  std::istringstream fields(text.substr(text.rfind(')') + 1));
  std::string skipped;
  for (int field = 3; field < 14; ++field) fields >> skipped;
  long user = 0, system = 0;
  fields >> user >> system;
  return user + system;
}

OpenTerminal::OpenTerminal(const std::string& path)
    : file_(::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {}

void OpenTerminal::Send(const std::string& hex) {
  WriteFitting(file_.number(), *ParseHexBytes(hex));
}

std::string OpenTerminal::Receive(std::size_t count) {
  const auto end = Clock::now() + kPatience;
  std::string bytes;
  while (bytes.size() < count && WaitFor(file_.number(), POLLIN, end)) {
    const auto more = ReadWaiting(file_.number());
    if (!more) break;
    bytes += *more;
  }
  return HexText(bytes);
}

bool OpenTerminal::HangsUp() {
  const auto end = Clock::now() + kPatience;
  pollfd poll_file{file_.number(), 0, 0};
  return ::poll(&poll_file, 1, MillisecondsUntil(end)) > 0 && (poll_file.revents & POLLHUP) != 0;
}

bool Eventually(const std::function<bool()>& condition) {
  const auto end = Clock::now() + kPatience;
  while (!condition()) {
    if (Clock::now() >= end) return false;
    ::poll(nullptr, 0, 1);
  }
  return true;
}

}  // namespace boiler
