// TarnLink's start: command line, program, event loop.

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <string>
#include <vector>

#include "app/end_signals.h"
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
      "FILE", "A screen (.wcr) or a project (.prj) to open, or a file to add to the project.",
      "[FILE...]");
  arguments.process(application);
  std::vector<std::string> files;
  for (const QString& file : arguments.positionalArguments()) {
    // Whole, so that the history finds it from any folder.
    files.push_back(QFileInfo(file).absoluteFilePath().toStdString());
  }

  tarnlink::Program program;
  const tarnlink::EndSignals end_signals([&program] { program.Leave(); });
  program.Start(files);
  return QApplication::exec();
}
