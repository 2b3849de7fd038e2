// The two event loops that the contract tests run on: virtual time, and Qt's own.
#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QTimer>
#include <chrono>
#include <functional>
#include <string>

#include "support/fake_world.h"

namespace tarnlink {

using namespace std::chrono_literals;

class VirtualLoop {
 public:
  bool RunUntil(const std::function<bool()>& condition, std::chrono::milliseconds bound = 5s) {
    return world_.RunUntil(condition, bound);
  }
  void RunFor(std::chrono::milliseconds span) { world_.Advance(span); }
  FakeWorld& world() { return world_; }

 private:
  FakeWorld world_;
};

class QtLoop {
 public:
  ~QtLoop() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

  bool RunUntil(const std::function<bool()>& condition, std::chrono::milliseconds bound = 5s) {
    QTimer waker;
    waker.start(1);
    QElapsedTimer elapsed;
    elapsed.start();
    while (!condition()) {
      if (elapsed.hasExpired(bound.count())) return false;
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
  }
  void RunFor(std::chrono::milliseconds span) {
    RunUntil([] { return false; }, span);
  }
};

// Each contract runs on the fake first and on the Qt class second.
struct BenchNames {
  template <class>
  static std::string GetName(int index) {
    return index == 0 ? "Fake" : "Qt";
  }
};

// Runs `call` and gives the code of the RunTimeError that it throws, 0 for none.
int ErrorOf(const std::function<void()>& call);
// The sentence of the RunTimeError that `call` throws.
std::string ReasonOf(const std::function<void()>& call);

}  // namespace tarnlink
