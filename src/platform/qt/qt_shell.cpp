#include "platform/qt/qt_shell.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>

#include "platform/qt/qt_text.h"

namespace tarnlink {

bool QtShell::StartProgram(const std::string& program, const std::string& argument) {
  QStringList arguments;
  if (!argument.empty()) arguments << ToQt(argument);
  return QProcess::startDetached(ToQt(program), arguments);
}

bool QtShell::OpenFile(const std::string& path) {
  const QFileInfo file(ToQt(path));
  return file.exists() && QDesktopServices::openUrl(QUrl::fromLocalFile(file.absoluteFilePath()));
}

void QtShell::Beep() { QApplication::beep(); }

}  // namespace tarnlink
