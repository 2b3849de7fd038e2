#include <QGenericPlugin>

#include "driver.h"

class DriverPlugin final : public QGenericPlugin {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "driver.json")

 public:
  QObject* create(const QString& name, const QString&) override {
    return name == "tarnlinkdriver" ? new tarnlink_driver::Driver : nullptr;
  }
};

#include "driver_plugin.moc"
