#include "platform/qt/qt_simulated_boiler.h"

#include <QCoreApplication>
#include <QFileInfo>

#include "platform/qt/qt_text.h"

namespace tarnlink {
namespace {

constexpr int kPatience = 500;  // ms for an end in good order

QString Shipped() {
  return QCoreApplication::applicationDirPath() + QStringLiteral("/boiler_simulator");
}

}  // namespace

QtSimulatedBoiler::QtSimulatedBoiler(const std::string& program) {
  process_.setProgram(program.empty() ? Shipped() : ToQt(program));
  // The end of its input is the end of this program, for whatever reason.
  process_.setArguments({QStringLiteral("--protocol"), QStringLiteral("any"),
                         QStringLiteral("--slaves"), QStringLiteral("0,3,A"),
                         QStringLiteral("--until-eof"), QStringLiteral("--link"), Link()});
  process_.setStandardOutputFile(QProcess::nullDevice());
  process_.setStandardErrorFile(QProcess::nullDevice());
  if (folder_.isValid()) process_.start();
}

QtSimulatedBoiler::~QtSimulatedBoiler() {
  process_.closeWriteChannel();
  process_.waitForFinished(kPatience);
}

std::string QtSimulatedBoiler::Device() const {
  return QFileInfo(Link()).isSymLink() ? FromQt(Link()) : std::string();
}

bool QtSimulatedBoiler::IsRunning() const { return process_.state() != QProcess::NotRunning; }

}  // namespace tarnlink
