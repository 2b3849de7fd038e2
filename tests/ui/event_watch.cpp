#include "ui/event_watch.h"

#include <QAbstractEventDispatcher>
#include <QMetaEnum>
#include <QThread>
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
  if (span > longest_) span -= in_milliseconds(time_.Stolen() - stolen_);
  if (span <= longest_) return;
  longest_ = span;
  const char* name = QMetaEnum::fromType<QEvent::Type>().valueToKey(measured_.type);
  what_ = std::string(name == nullptr ? "an event" : name) + " to " + measured_.receiver;
}

bool EventWatch::notify(QObject* receiver, QEvent* event) {
  const int loop = QThread::currentThread()->loopLevel();
  // One that another event sends is a part of that.
  if (loop == measured_.loop) return GuardedApplication::notify(receiver, event);
  if (!is_idle_ && measured_.loop >= 0) End();
  const bool was_idle = std::exchange(is_idle_, false);
  const std::string name = receiver->objectName().toStdString();
  const Measured outer = std::exchange(
      measured_, {loop, event->type(), receiver->metaObject()->className() + (" " + name)});
  Begin();
  const bool taken = GuardedApplication::notify(receiver, event);
  End();
  measured_ = outer;
  is_idle_ = was_idle;
  Begin();
  return taken;
}

void EventWatch::Forget() {
  longest_ = 0;
  what_.clear();
}

}  // namespace tarnlink
