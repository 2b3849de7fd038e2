// A walk through the program as its user would take it, for a machine without a display: it presses
// the buttons, notes the values and saves a picture of each stop.
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <deque>
#include <functional>
#include <vector>

#include "app/program.h"
#include "app/tour/value_log.h"

namespace tarnlink {

class Tour final : public QObject {
 public:
  // Opens the project and goes to each screen in turn, which are not empty, with the project of its
  // name if there is one beside it; behind the first one, which is of the ZOLT protocol, to the
  // graph with the samples in its folder. `pictures` is a folder that is there. Ends the event loop
  // with 0 if values came in on every screen and no message box stood in the way.
  Tour(Program& program, const QString& project, const QStringList& screens, QString pictures);

  void Begin();

 private:
  struct Stop {
    int milliseconds;  // after the stop before it
    std::function<void()> act;
  };

  struct Visit {
    QString screen;
    ValueLog values;
  };

  void PlanVisit(Visit& visit);
  void OpenProjectOf(const QString& screen);
  void PlanGraph();
  void PlanDialogs();
  void Then(int milliseconds, std::function<void()> act);

  void Next();
  void CloseMessageBox();
  void Press(const char* action);
  void ChooseFile(const QString& path);
  void ExpectOpen(const QString& screen);
  void Picture(const QString& what);
  void PictureOfOptions(int tab, const QString& what);
  void Finish();

  Program& program_;
  QString pictures_;
  int pictures_taken_ = 0;
  std::deque<Visit> visits_;
  QTimer box_watch_;
  bool is_well_ = true;
  std::vector<Stop> stops_;
  std::size_t next_ = 0;
};

}  // namespace tarnlink
