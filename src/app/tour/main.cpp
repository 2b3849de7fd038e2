// tarnlink_tour FOLDER PROJECT.prj SCREEN.wcr...: opens the project and drives the
// program over the screens, each with the project beside it, and leaves pictures in FOLDER.

#include <QApplication>
#include <QDir>
#include <QStringList>
#include <iostream>

#include "app/tour/tour.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  if (argc < 4) {
    std::cerr << "Usage: tarnlink_tour FOLDER PROJECT.prj SCREEN.wcr..." << std::endl;
    return 2;
  }
  const QString pictures = QString::fromLocal8Bit(argv[1]);
  QStringList screens;
  for (int i = 3; i < argc; ++i) screens << QString::fromLocal8Bit(argv[i]);
  QDir().mkpath(pictures);

  tarnlink::Program program;
  tarnlink::Tour tour(program, QString::fromLocal8Bit(argv[2]), screens, pictures);
  tour.Begin();
  return QApplication::exec();
}
