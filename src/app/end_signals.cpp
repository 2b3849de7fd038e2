#include "app/end_signals.h"

#include <fcntl.h>
#include <unistd.h>

#include <QTimer>
#include <atomic>
#include <csignal>
#include <utility>

namespace tarnlink {
namespace {

constexpr std::array<int, 3> kSignals = {SIGTERM, SIGINT, SIGHUP};

// All that a signal may touch.
std::atomic<int> told_end = -1;
std::atomic<bool> is_leaving = false;
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);

void Note(int number) {
  const char byte = 0;
  if (!is_leaving.exchange(true) && write(told_end, &byte, 1) == 1) return;
  signal(number, SIG_DFL);
  raise(number);
}

void Handle(int number, void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  sigaction(number, &action, nullptr);
}

bool IsIgnored(int number) {
  struct sigaction action {};
  return sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

EndSignals::EndSignals(std::function<void()> leave) : leave_(std::move(leave)) {
  if (pipe2(pipe_.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
  notifier_ = std::make_unique<QSocketNotifier>(pipe_[0], QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { Take(); });
  told_end = pipe_[1];
  is_leaving = false;
  for (const int number : kSignals) {
    if (!IsIgnored(number)) Handle(number, Note);
  }
}

EndSignals::~EndSignals() {
  for (const int number : kSignals) {
    if (!IsIgnored(number)) Handle(number, SIG_DFL);
  }
  for (const int end : pipe_) {
    if (end >= 0) close(end);
  }
}

void EndSignals::Take() {
  char byte = 0;
  if (read(pipe_[0], &byte, 1) != 1) return;
  // Not from here: while a question stood, no other notifier would be served, a port's neither.
  QTimer::singleShot(0, notifier_.get(), [this] { Leave(); });
}

// Who stays with the program by what he answers to its questions is asked anew the next time.
void EndSignals::Leave() {
  leave_();
  is_leaving = false;
}

}  // namespace tarnlink
