// The application object, with the last net under every handler: a run-time error that nobody
// caught is told and the program goes on, and the bounds that hold for all of the program.
#pragma once

#include <QApplication>

namespace tarnlink {

class GuardedApplication : public QApplication {
 public:
  GuardedApplication(int& count, char** words);

  bool notify(QObject* receiver, QEvent* event) override;
};

}  // namespace tarnlink
