#include "ui/event_watch.h"

#include <QAbstractEventDispatcher>
#include <QMetaEnum>
#include <QThread>
#include <cstdio>
#include <utility>

namespace tarnlink {
namespace {

constexpr std::chrono::milliseconds kBetweenLooks{10};

}  // namespace

EventWatch::EventWatch(int& count, char** words) : GuardedApplication(count, words) {
  const auto* loops = QAbstractEventDispatcher::instance();
  connect(loops, &QAbstractEventDispatcher::aboutToBlock, this, [this] { BeginIdle(); });
  connect(loops, &QAbstractEventDispatcher::awake, this, [this] { EndIdle(); });
}

void EventWatch::BeginIdle() {
  if (!is_idle_ && measured_.loop >= 0) End();
  is_idle_ = true;
}

void EventWatch::EndIdle() {
  is_idle_ = false;
  Begin();
}

void EventWatch::Begin() {
  begin_ = time_.Now();
  if (begin_ - looked_ < kBetweenLooks) return;
  looked_ = begin_;
  stolen_ = time_.Stolen();
}

void EventWatch::End() {
  const auto in_milliseconds = [](std::chrono::nanoseconds span) {
    return std::chrono::duration<double, std::milli>(span).count();
  };
  double span = in_milliseconds(time_.Now() - begin_);
  if (span > longest_.milliseconds) span -= in_milliseconds(time_.Stolen() - stolen_);
  for (Wait* wait : {&longest_, &longest_of_test_}) {
    if (span > wait->milliseconds) *wait = {span, measured_.what};
  }
}

void EventWatch::Measure(Measured measured, const std::function<void()>& call) {
  if (!is_idle_ && measured_.loop >= 0) End();
  // Comes back to what was measured, also where the call throws.
  struct Return {
    ~Return() {
      watch.End();
      watch.measured_ = outer;
      watch.is_idle_ = was_idle;
      watch.Begin();
    }
    EventWatch& watch;
    const Measured outer;
    const bool was_idle;
  };
  const Return return_behind{*this, std::exchange(measured_, std::move(measured)),
                             std::exchange(is_idle_, false)};
  Begin();
  call();
}

bool EventWatch::notify(QObject* receiver, QEvent* event) {
  const int loop = QThread::currentThread()->loopLevel();
  // One that another event sends is a part of that.
  if (QThread::currentThread() != thread() || loop == measured_.loop)
    return GuardedApplication::notify(receiver, event);
  const char* name = QMetaEnum::fromType<QEvent::Type>().valueToKey(event->type());
  std::string what = std::string(name == nullptr ? "an event" : name) + " to " +
                     receiver->metaObject()->className() + " " +
                     receiver->objectName().toStdString();
  bool taken = false;
  Measure({loop, std::move(what)}, [&] { taken = GuardedApplication::notify(receiver, event); });
  return taken;
}

void EventWatch::Print(const char* doing) const {
  std::printf("%s: longest event %.1f ms (%s)\n", doing, longest_.milliseconds,
              longest_.what.c_str());
}

void EventWatch::RunDue(const std::function<void()>& call) {
  Measure({QThread::currentThread()->loopLevel(), "a call of virtual time"}, call);
}

}  // namespace tarnlink
