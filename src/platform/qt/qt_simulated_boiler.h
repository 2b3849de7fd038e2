// A simulated boiler that runs beside this program, and ends with it however that ends.
#pragma once

#include <QProcess>
#include <QTemporaryDir>
#include <string>

#include "platform/simulated_boiler.h"

namespace tarnlink {

class QtSimulatedBoiler final : public SimulatedBoiler {
 public:
  // Starts the one that stands beside this program, or `program`. It takes every protocol, and the
  // ZOLT addresses 0, 3 and A.
  explicit QtSimulatedBoiler(const std::string& program = {});
  ~QtSimulatedBoiler() override;

  std::string Device() const override;
  bool IsRunning() const override;

 private:
  QString Link() const { return folder_.filePath(QStringLiteral("simulated-boiler")); }

  QTemporaryDir folder_;
  QProcess process_;
};

}  // namespace tarnlink
