// The outside world of the real program.
#pragma once

#include <memory>

#include "platform/platform.h"
#include "platform/qt/qt_clock.h"
#include "platform/qt/qt_dialogs.h"
#include "platform/qt/qt_files.h"
#include "platform/qt/qt_locale.h"
#include "platform/qt/qt_port_devices.h"
#include "platform/qt/qt_settings_store.h"
#include "platform/qt/qt_shell.h"

namespace tarnlink {

// Needs a QApplication. Ports and timers are independent of it, but for the settings and devices
// that say which device a port number means.
class QtPlatform final : public Platform {
 public:
  std::unique_ptr<SerialPort> CreatePort() override;
  std::unique_ptr<Timer> CreateTimer() override;
  std::unique_ptr<DrawingSurface> CreatePage(const PageSetup& setup) override;
  std::unique_ptr<Workbook> CreateWorkbook(const std::string& path) override;
  QtClock& clock() override { return clock_; }
  QtLocale& locale() override { return locale_; }
  QtSettingsStore& settings() override { return settings_; }
  QtDialogs& dialogs() override { return dialogs_; }
  QtShell& shell() override { return shell_; }
  QtFiles& files() override { return files_; }
  QtPortDevices& devices() override { return devices_; }

 private:
  QtClock clock_;
  QtLocale locale_;
  QtSettingsStore settings_;
  QtDialogs dialogs_{&settings_};
  QtShell shell_;
  QtFiles files_;
  QtPortDevices devices_;
};

}  // namespace tarnlink
