// The application object, with the last net under every handler: a run-time error that nobody
// caught is told and the program goes on.
#pragma once

#include <QApplication>

namespace tarnlink {

class GuardedApplication : public QApplication {
 public:
  using QApplication::QApplication;

  bool notify(QObject* receiver, QEvent* event) override;
};

}  // namespace tarnlink
