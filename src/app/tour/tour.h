// A walk through the program as its user would take it, for a machine without a display: it presses
// the buttons, notes the values and saves a picture of each stop.
#pragma once

#include <QObject>
#include <QString>
#include <QTimer>
#include <functional>
#include <vector>

#include "app/program.h"
#include "app/tour/value_log.h"

namespace tarnlink {

class Tour final : public QObject {
 public:
  // `pictures` is a folder that is there. Ends the event loop with 0 if values came in and no
  // message box stood in the way.
  Tour(Program& program, QString screen, QString pictures);

  void Begin();

 private:
  struct Stop {
    int milliseconds;  // after the stop before it
    std::function<void()> act;
  };

  void Next();
  void CloseMessageBox();
  void Press(const char* action);
  void Picture(const char* name);
  void PictureOfOptions(int tab, const char* name);
  void Finish();

  Program& program_;
  QString screen_;
  QString pictures_;
  ValueLog values_;
  QTimer box_watch_;
  bool box_came_ = false;
  std::vector<Stop> stops_;
  std::size_t next_ = 0;
};

}  // namespace tarnlink
