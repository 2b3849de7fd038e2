// Another outside world, thing by thing: what stands in front of one and changes a little of it
// begins here.
#pragma once

#include "platform/platform.h"

namespace tarnlink {

class ForwardingPlatform : public Platform {
 public:
  // `world` outlives this.
  explicit ForwardingPlatform(Platform& world) : world_(world) {}

  std::unique_ptr<SerialPort> CreatePort() override { return world_.CreatePort(); }
  std::unique_ptr<Timer> CreateTimer() override { return world_.CreateTimer(); }
  std::unique_ptr<DrawingSurface> CreatePage(const PageSetup& setup) override {
    return world_.CreatePage(setup);
  }
  std::unique_ptr<Workbook> CreateWorkbook(const std::string& path) override {
    return world_.CreateWorkbook(path);
  }
  Clock& clock() override { return world_.clock(); }
  Locale& locale() override { return world_.locale(); }
  SettingsStore& settings() override { return world_.settings(); }
  Dialogs& dialogs() override { return world_.dialogs(); }
  Shell& shell() override { return world_.shell(); }
  Files& files() override { return world_.files(); }
  PortDevices& devices() override { return world_.devices(); }

 protected:
  Platform& world() { return world_; }

 private:
  Platform& world_;
};

}  // namespace tarnlink
