// tarnlink_tour SCREEN.wcr FOLDER: drives the program over a screen and leaves pictures in FOLDER.

#include <QApplication>
#include <QDir>
#include <iostream>

#include "app/tour/tour.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  if (argc != 3) {
    std::cerr << "Usage: tarnlink_tour SCREEN.wcr FOLDER" << std::endl;
    return 2;
  }
  const QString pictures = QString::fromLocal8Bit(argv[2]);
  QDir().mkpath(pictures);

  tarnlink::Program program;
  tarnlink::Tour tour(program, argv[1], pictures);
  tour.Begin();
  return QApplication::exec();
}
