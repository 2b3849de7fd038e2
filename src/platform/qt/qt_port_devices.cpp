#include "platform/qt/qt_port_devices.h"

#include <QDir>
#include <QFileInfo>
#include <QSerialPortInfo>
#include <map>
#include <utility>

#include "platform/qt/qt_text.h"

namespace tarnlink {
namespace {

// Each link's target and the link.
std::map<QString, QString> StableLinks(const QString& folder) {
  std::map<QString, QString> links;
  for (const QFileInfo& link : QDir(folder).entryInfoList(QDir::System | QDir::Files, QDir::Name)) {
    links.emplace(link.canonicalFilePath(), link.absoluteFilePath());
  }
  return links;
}

}  // namespace

QtPortDevices::QtPortDevices(Lister lister, QString folder)
    : lister_(std::move(lister)), folder_(std::move(folder)) {}

std::vector<PortDevice> QtPortDevices::SystemPorts() {
  std::vector<PortDevice> devices;
  for (const QSerialPortInfo& port : QSerialPortInfo::availablePorts()) {
    devices.push_back({FromQt(port.systemLocation()),
                       {},
                       FromQt(port.description()),
                       FromQt(port.manufacturer())});
  }
  return devices;
}

std::vector<PortDevice> QtPortDevices::Present() const {
  const std::map<QString, QString> links = StableLinks(folder_ + QStringLiteral("/serial/by-id"));
  std::vector<PortDevice> devices = lister_();
  for (PortDevice& device : devices) {
    const auto link = links.find(QFileInfo(ToQt(device.path)).canonicalFilePath());
    if (link != links.end()) device.stable_path = FromQt(link->second);
  }
  return devices;
}

void QtPortDevices::Watch(std::function<void()> handler) {
  handler_ = std::move(handler);
  if (!handler_) {
    // The handler itself may stop the watch, from inside the watcher's signal.
    if (watcher_) watcher_.release()->deleteLater();
    return;
  }
  last_seen_ = Present();
  if (watcher_) return;
  watcher_ = std::make_unique<QFileSystemWatcher>();
  QObject::connect(watcher_.get(), &QFileSystemWatcher::directoryChanged, watcher_.get(),
                   [this] { FolderChanged(); });
  WatchFolders();
}

// The link folders come and go with the first and the last adapter.
void QtPortDevices::WatchFolders() {
  for (const char* folder : {"", "/serial", "/serial/by-id"}) {
    const QString path = folder_ + QLatin1String(folder);
    if (QFileInfo::exists(path) && !watcher_->directories().contains(path)) {
      watcher_->addPath(path);
    }
  }
}

void QtPortDevices::FolderChanged() {
  if (!handler_) return;
  WatchFolders();
  // Most changes among the device nodes are not about serial devices.
  std::vector<PortDevice> present = Present();
  if (present == last_seen_) return;
  last_seen_ = std::move(present);
  const auto handler = handler_;
  handler();
}

}  // namespace tarnlink
