// The outside world in one place: what the program's one composition hands to every form model.
// Real class: `QtPlatform`; fake: `FakeWorld`.
#pragma once

#include <memory>

#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/drawing_surface.h"
#include "platform/files.h"
#include "platform/locale.h"
#include "platform/port_devices.h"
#include "platform/serial_port.h"
#include "platform/settings_store.h"
#include "platform/shell.h"
#include "platform/timer.h"
#include "platform/workbook.h"

namespace tarnlink {

class Platform {
 public:
  virtual ~Platform() = default;

  virtual std::unique_ptr<SerialPort> CreatePort() = 0;
  virtual std::unique_ptr<Timer> CreateTimer() = 0;
  // A page on the printer that was picked last; it is printed when the surface is destroyed.
  virtual std::unique_ptr<DrawingSurface> CreatePage(const PageSetup& setup) = 0;
  // An empty workbook at `path`, in place of what is there. Throws RunTimeError 61, 70, 76 or 57.
  virtual std::unique_ptr<Workbook> CreateWorkbook(const std::string& path) = 0;
  virtual Clock& clock() = 0;
  virtual Locale& locale() = 0;
  virtual SettingsStore& settings() = 0;
  virtual Dialogs& dialogs() = 0;
  virtual Shell& shell() = 0;
  virtual Files& files() = 0;
  virtual PortDevices& devices() = 0;
};

}  // namespace tarnlink
