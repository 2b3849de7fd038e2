#include "platform/qt/qt_settings_store.h"

#include <sys/statvfs.h>
#include <unistd.h>

#include <QFileInfo>

#include "platform/qt/file_errors.h"
#include "platform/qt/qt_text.h"

namespace tarnlink {
namespace {

const QString kName = QStringLiteral("TarnLink2");

// On a full disk QSettings replaces the good file by a cut one and reports success, so below this
// nothing is given to it. The store is a few kilobytes.
constexpr fsblkcnt_t kRoomNeeded = 64 * 1024;

QString PathOf(std::string_view section, std::string_view key) {
  return ToQt(section) + QLatin1Char('/') + ToQt(key);
}

// The nearest folder above `path` that exists.
QString ExistingFolder(const QString& path) {
  QFileInfo folder(QFileInfo(path).absolutePath());
  while (!folder.exists() && !folder.isRoot()) folder.setFile(folder.absolutePath());
  return folder.absoluteFilePath();
}

}  // namespace

QtSettingsStore::QtSettingsStore()
    : settings_(QSettings::IniFormat, QSettings::UserScope, kName, kName) {
  settings_.setFallbacksEnabled(false);
}

QtSettingsStore::~QtSettingsStore() { Failure(); }

std::string QtSettingsStore::GetSetting(std::string_view section, std::string_view key,
                                        std::string_view fallback) const {
  const QString path = PathOf(section, key);
  const auto kept = kept_back_.find(path);
  if (kept != kept_back_.end()) return FromQt(kept->second);
  const QVariant value = settings_.value(path);
  if (!value.isValid()) return std::string(fallback);
  // A value that somebody has typed into the file with commas in it is read as a list.
  if (value.metaType().id() == QMetaType::QStringList) {
    return FromQt(value.toStringList().join(QLatin1Char(',')));
  }
  return FromQt(value.toString());
}

void QtSettingsStore::SaveSetting(std::string_view section, std::string_view key,
                                  std::string_view value) {
  const QString path = PathOf(section, key);
  const QString text = ToQt(value);
  // Most of what is saved is what stands there already, and the disk need not hear of it.
  if (kept_back_.count(path) == 0 && settings_.value(path) == QVariant(text)) return;
  if (DiskHasRoom()) {
    kept_back_.erase(path);
    settings_.setValue(path, text);
    unsaved_ = true;
  } else {
    kept_back_[path] = text;
  }
}

std::string QtSettingsStore::Failure() {
  if (!kept_back_.empty() && DiskHasRoom()) {
    for (const auto& [path, value] : kept_back_) settings_.setValue(path, value);
    kept_back_.clear();
    unsaved_ = true;
  }
  if (unsaved_ && DiskHasRoom()) {
    settings_.sync();
    unsaved_ = settings_.status() != QSettings::NoError;
  }
  const bool failed = !kept_back_.empty() || settings_.status() == QSettings::AccessError;
  if (!failed || told_) return {};
  told_ = true;
  return "The settings could not be saved in \"" + FromQt(settings_.fileName()) + "\": " + Reason();
}

bool QtSettingsStore::DiskHasRoom() const {
  struct statvfs disk {};
  if (statvfs(FromQt(ExistingFolder(settings_.fileName())).c_str(), &disk) != 0) return true;
  return disk.f_bavail * disk.f_frsize >= kRoomNeeded;
}

std::string QtSettingsStore::Reason() const {
  if (!kept_back_.empty()) return "the disk is full.";
  const QFileInfo file(settings_.fileName());
  const QFileInfo folder(ExistingFolder(settings_.fileName()));
  if (file.isDir()) return "it is a folder.";
  if (!folder.isDir()) return "\"" + FromQt(folder.filePath()) + "\" is no folder.";
  if (!MayUse(FromQt(folder.filePath()), W_OK) ||
      (file.exists() && !MayUse(FromQt(file.filePath()), W_OK))) {
    return "you do not have the permission.";
  }
  return "the file cannot be written.";
}

}  // namespace tarnlink
