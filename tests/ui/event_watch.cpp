#include "ui/event_watch.h"

#include <QMetaEnum>

namespace tarnlink {
namespace {

constexpr std::chrono::milliseconds kBetweenLooks{10};

}  // namespace

bool EventWatch::notify(QObject* receiver, QEvent* event) {
  if (depth_ > 0) return GuardedApplication::notify(receiver, event);
  // Both may be gone afterwards.
  const QEvent::Type type = event->type();
  const std::string name = receiver->objectName().toStdString();
  const std::string kind = receiver->metaObject()->className();
  const auto begin = time_.Now();
  if (begin - looked_ > kBetweenLooks) {
    looked_ = begin;
    stolen_ = time_.Stolen();
  }
  ++depth_;
  const bool taken = GuardedApplication::notify(receiver, event);
  --depth_;
  const auto in_milliseconds = [](std::chrono::nanoseconds span) {
    return std::chrono::duration<double, std::milli>(span).count();
  };
  double span = in_milliseconds(time_.Now() - begin);
  if (span > longest_) span -= in_milliseconds(time_.Stolen() - stolen_);
  if (span > longest_) {
    longest_ = span;
    const char* type_name = QMetaEnum::fromType<QEvent::Type>().valueToKey(type);
    what_ = std::string(type_name == nullptr ? "an event" : type_name) + " to " + kind + " " + name;
  }
  return taken;
}

void EventWatch::Forget() {
  longest_ = 0;
  what_.clear();
}

}  // namespace tarnlink
