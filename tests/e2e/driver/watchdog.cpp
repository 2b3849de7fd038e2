#include "watchdog.h"

#include <QCoreApplication>
#include <QEvent>
#include <chrono>

namespace tarnlink_driver {
namespace {

using std::chrono::milliseconds;

// A wait that begins just behind an answer is seen from the next question on.
constexpr milliseconds kBetweenQuestions{10};
constexpr milliseconds kLongestSeen = tarnlink::kLongestWait - kBetweenQuestions;

const QEvent::Type kQuestionType = static_cast<QEvent::Type>(QEvent::registerEventType());

}  // namespace

class Watchdog::Question final : public QEvent {
 public:
  explicit Question(const tarnlink::ThreadTime& time)
      : QEvent(kQuestionType), asked(time.Now()), account(time.Account()) {}
  const std::chrono::nanoseconds asked;
  const tarnlink::ThreadAccount account;
};

Watchdog::Watchdog(std::function<void(double, const std::string&)> tell)
    : tell_(std::move(tell)), asker_([this] { Ask(); }) {}

Watchdog::~Watchdog() {
  {
    const std::lock_guard lock(mutex_);
    over_ = true;
  }
  wake_.notify_all();
  asker_.join();
}

void Watchdog::Ask() {
  std::unique_lock lock(mutex_);
  while (!over_) {
    answered_ = false;
    QCoreApplication::postEvent(this, new Question(time_));
    wake_.wait(lock, [this] { return answered_ || over_; });
    wake_.wait_for(lock, kBetweenQuestions, [this] { return over_; });
  }
}

void Watchdog::Judge(const Question& question) const {
  const auto waited = time_.Now() - question.asked;
  if (waited <= kLongestSeen) return;
  const tarnlink::ThreadAccount now = time_.Account();
  const double own = std::chrono::duration<double, std::milli>(waited).count() -
                     (now.stolen - question.account.stolen);
  if (own > kLongestSeen.count()) tell_(own, Between(question.account, now));
}

bool Watchdog::event(QEvent* event) {
  if (event->type() != kQuestionType) return QObject::event(event);
  if (loop_runs_ && tarnlink::kWaitingCounts) Judge(*static_cast<const Question*>(event));
  loop_runs_ = true;
  {
    const std::lock_guard lock(mutex_);
    answered_ = true;
  }
  wake_.notify_all();
  return true;
}

}  // namespace tarnlink_driver
