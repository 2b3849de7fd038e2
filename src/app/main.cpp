// TarnLink's start: command line, program, event loop.

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>

#include "app/program.h"
#include "ui/guarded_application.h"

int main(int argc, char** argv) {
  tarnlink::GuardedApplication application(argc, argv);
  QApplication::setApplicationName("TarnLink2");
  QApplication::setOrganizationName("TarnLink2");
  QApplication::setApplicationVersion(TARNLINK_VERSION);

  QCommandLineParser arguments;
  arguments.setApplicationDescription("A service tool for the digital controllers of gas boilers.");
  arguments.addHelpOption();
  arguments.addVersionOption();
  arguments.addPositionalArgument(
      "FILE", "A screen (.wcr) or a project (.prj) to open, or a file to add to a project.",
      "[FILE]");
  arguments.process(application);
  const QStringList files = arguments.positionalArguments();
  if (files.size() > 1) arguments.showHelp(2);

  tarnlink::Program program;
  // Whole, so that the history finds it from any folder.
  const QString file = files.isEmpty() ? QString() : QFileInfo(files.first()).absoluteFilePath();
  program.Start(file.toStdString());
  return QApplication::exec();
}
