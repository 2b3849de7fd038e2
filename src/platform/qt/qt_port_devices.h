// The machine's serial devices.
#pragma once

#include <QFileSystemWatcher>
#include <QString>
#include <functional>
#include <memory>
#include <vector>

#include "platform/port_devices.h"

namespace tarnlink {

class QtPortDevices final : public PortDevices {
 public:
  // What lists the devices, and the folder with their nodes, which has the by-id links in
  // "serial/by-id" below it.
  using Lister = std::function<std::vector<PortDevice>()>;
  explicit QtPortDevices(Lister lister = SystemPorts, QString folder = QStringLiteral("/dev"));

  std::vector<PortDevice> Present() const override;
  void Watch(std::function<void()> handler) override;

 private:
  // The system's list, without the stable paths.
  static std::vector<PortDevice> SystemPorts();
  void WatchFolders();
  void FolderChanged();

  Lister lister_;
  QString folder_;
  std::function<void()> handler_;
  std::vector<PortDevice> last_seen_;
  // Only while there is a handler.
  std::unique_ptr<QFileSystemWatcher> watcher_;
};

}  // namespace tarnlink
