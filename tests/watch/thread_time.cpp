#include "watch/thread_time.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <sstream>
#include <vector>

namespace tarnlink {
namespace {

constexpr double kNanosecondsPerMillisecond = 1e6;

int Open(const char* name) {
  return open(("/proc/self/task/" + std::to_string(gettid()) + "/" + name).c_str(),
              O_RDONLY | O_CLOEXEC);
}

// The numbers that an open file begins with, behind the last word in brackets or letters.
std::vector<double> Numbers(int file) {
  char text[512];
  const ssize_t length = file < 0 ? -1 : pread(file, text, sizeof text, 0);
  if (length <= 0) return {};
  const std::string line(text, static_cast<std::size_t>(length));
  std::istringstream words(
      line.substr(line.rfind(')') == std::string::npos ? 0 : line.rfind(')') + 2));
  std::vector<double> numbers;
  for (std::string word; words >> word;) numbers.push_back(std::atof(word.c_str()));
  return numbers;
}

double At(const std::vector<double>& numbers, std::size_t place) {
  return place < numbers.size() ? numbers[place] : 0;
}

}  // namespace

ThreadTime::ThreadTime()
    : schedule_(Open("schedstat")),
      state_(Open("stat")),
      machine_(open("/proc/stat", O_RDONLY | O_CLOEXEC)) {}

ThreadTime::~ThreadTime() {
  for (const int file : {schedule_, state_, machine_}) {
    if (file >= 0) close(file);
  }
}

std::chrono::nanoseconds ThreadTime::Now() const {
  constexpr std::size_t kWaited = 1;
  const auto waited = static_cast<std::int64_t>(At(Numbers(schedule_), kWaited));
  return std::chrono::steady_clock::now().time_since_epoch() - std::chrono::nanoseconds(waited);
}

std::chrono::nanoseconds ThreadTime::Stolen() const {
  constexpr std::size_t kStolen = 8;  // behind "cpu"
  const double ticks = At(Numbers(machine_), kStolen);
  return std::chrono::nanoseconds(std::chrono::seconds(1)) / sysconf(_SC_CLK_TCK) *
         static_cast<std::int64_t>(ticks);
}

ThreadAccount ThreadTime::Account() const {
  constexpr std::size_t kPagesRead = 9;  // behind the thread's name
  const std::vector<double> schedule = Numbers(schedule_);
  return {.ran = At(schedule, 0) / kNanosecondsPerMillisecond,
          .waited = At(schedule, 1) / kNanosecondsPerMillisecond,
          .stolen = std::chrono::duration<double, std::milli>(Stolen()).count(),
          .pages = At(Numbers(state_), kPagesRead)};
}

std::string Between(const ThreadAccount& begin, const ThreadAccount& end) {
  char text[200];
  std::snprintf(text, sizeof text,
                "ran for %.0f ms, waited %.0f ms for a processor, %.0f pages came from the disk, "
                "%.0f ms went to the machine's host",
                end.ran - begin.ran, end.waited - begin.waited, end.pages - begin.pages,
                end.stolen - begin.stolen);
  return text;
}

}  // namespace tarnlink
