// TarnLink's start: command line, program, event loop.

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QIcon>
#include <algorithm>
#include <string>
#include <vector>

#include "app/end_signals.h"
#include "app/program.h"
#include "ui/guarded_application.h"

namespace {

void Name() {
  QCoreApplication::setApplicationName("TarnLink2");
  QCoreApplication::setOrganizationName("TarnLink2");
  QCoreApplication::setApplicationVersion(TARNLINK_VERSION);
}

// What needs no window is told where there is no display, too.
bool OnlyTells(int argc, char** argv) {
  const std::vector<std::string> telling = {"-h", "--help", "--help-all", "-v", "--version"};
  return std::any_of(argv + 1, argv + argc, [&](const char* argument) {
    return std::find(telling.begin(), telling.end(), argument) != telling.end();
  });
}

// The files of the command line. Does not return where the arguments are wrong or only ask.
std::vector<std::string> FilesToOpen(const QCoreApplication& application) {
  QCommandLineParser arguments;
  arguments.setApplicationDescription("A service tool for the digital controllers of gas boilers.");
  arguments.addHelpOption();
  arguments.addVersionOption();
  arguments.addPositionalArgument(
      "FILE",
      "A screen (.wcr) or a project (.prj) to open, or a file to add to the project (.map, .lst, "
      ".ids, .erc, .par, .grp).",
      "[FILE...]");
  arguments.process(application);
  std::vector<std::string> files;
  for (const QString& file : arguments.positionalArguments()) {
    // Whole, so that the history finds it from any folder.
    files.push_back(QFileInfo(file).absoluteFilePath().toStdString());
  }
  return files;
}

// The desktop finds the entry of this program's windows by that name, and there their icon; the
// program's own stand in where it is not installed.
void ShowIcon() {
  const QString name = "org.tarnlink.TarnLink";
  QGuiApplication::setDesktopFileName(name);
  QIcon own;
  for (const char* const size : {"32", "128"}) own.addFile(":/" + name + "-" + size + ".png");
  QApplication::setWindowIcon(QIcon::fromTheme(name, own));
}

}  // namespace

int main(int argc, char** argv) {
  Name();
  if (OnlyTells(argc, argv)) {
    const QCoreApplication application(argc, argv);
    FilesToOpen(application);  // tells, and ends
  }
  const tarnlink::GuardedApplication application(argc, argv);
  ShowIcon();
  const std::vector<std::string> files = FilesToOpen(application);

  tarnlink::Program program;
  const tarnlink::EndSignals end_signals([&program] { program.Leave(); });
  program.Start(files);
  return QApplication::exec();
}
