#include "platform/qt/qt_settings_store.h"

#include <unistd.h>

#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <atomic>
#include <memory>

#include "common/run_time_error.h"
#include "platform/qt/file_errors.h"
#include "platform/qt/ini_text.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/save_file.h"
#include "platform/qt/waiting_dialog.h"

namespace tarnlink {
namespace {

const QString kName = QStringLiteral("TarnLink2");

// How long another TarnLink may take to write its settings.
constexpr std::chrono::milliseconds kLockBound{500};

QString PathOf(std::string_view section, std::string_view key) {
  return ToQt(section) + QLatin1Char('/') + ToQt(key);
}

// A value that somebody has typed into the file with commas in it is read as a list.
QString TextOf(const QVariant& value) {
  if (value.metaType().id() != QMetaType::QStringList) return value.toString();
  return value.toStringList().join(QLatin1Char(','));
}

// The nearest folder above `path` that exists.
QString ExistingFolder(const QString& path) {
  QFileInfo folder(QFileInfo(path).absolutePath());
  while (!folder.exists() && !folder.isRoot()) folder.setFile(folder.absolutePath());
  return folder.absoluteFilePath();
}

[[noreturn]] void ThrowUnreadable(const std::string& path) {
  ThrowFileError(path, FileAction::kWrite, "its present settings cannot be read.");
}

// Writes the file with these values in it. Another TarnLink may have changed other ones meanwhile,
// and they stay. False if the present ones cannot be read: then it stays as it is.
bool WriteOver(std::map<QString, QString> values, const IsGivenUp& is_given_up) {
  QSettings present(QSettings::IniFormat, QSettings::UserScope, kName, kName);
  present.setFallbacksEnabled(false);
  const QString path = present.fileName();
  QDir().mkpath(QFileInfo(path).absolutePath());
  QLockFile lock(path + ".lock");
  // Who holds it longer than that has ended or hangs.
  [[maybe_unused]] const bool is_mine = lock.tryLock(static_cast<int>(kLockBound.count()));
  present.sync();
  if (present.status() == QSettings::AccessError) return false;
  for (const QString& key : present.allKeys()) {
    if (!key.isEmpty()) values.emplace(key, TextOf(present.value(key)));
  }
  const QByteArray text = IniText(values);
  SaveWholeFile(FromQt(path), {text.data(), static_cast<std::size_t>(text.size())}, is_given_up);
  return true;
}

}  // namespace

// QSettings only reads: what it writes is neither synced nor checked, and on a full disk it
// replaces the good file by a cut one and reports success.
QtSettingsStore::QtSettingsStore()
    : settings_(QSettings::IniFormat, QSettings::UserScope, kName, kName) {
  settings_.setFallbacksEnabled(false);
  is_readable_ = settings_.status() != QSettings::AccessError;
  later_.setSingleShot(true);
  QObject::connect(&later_, &QTimer::timeout, [this] { TryToWrite(); });
}

QtSettingsStore::~QtSettingsStore() { TryToWrite(); }

std::string QtSettingsStore::GetSetting(std::string_view section, std::string_view key,
                                        std::string_view fallback) const {
  const QString path = PathOf(section, key);
  const auto unsaved = unsaved_.find(path);
  if (unsaved != unsaved_.end()) return FromQt(unsaved->second);
  const QVariant value = settings_.value(path);
  return value.isValid() ? FromQt(TextOf(value)) : std::string(fallback);
}

void QtSettingsStore::SaveSetting(std::string_view section, std::string_view key,
                                  std::string_view value) {
  const QString path = PathOf(section, key);
  const QString text = ToQt(value);
  // Most of what is saved is what stands there already, and the disk need not hear of it.
  if (unsaved_.count(path) == 0 && settings_.value(path) == QVariant(text)) return;
  unsaved_[path] = text;
  // With all that comes along with it.
  if (!later_.isActive()) later_.start(0);
}

std::string QtSettingsStore::Failure() {
  if (TryToWrite() || told_) return {};
  told_ = true;
  return "The settings could not be saved in \"" + FromQt(settings_.fileName()) + "\": " + Reason();
}

bool QtSettingsStore::TryToWrite() {
  later_.stop();
  if (unsaved_.empty() || is_writing_) return true;
  is_writing_ = true;
  bool is_written = false;
  try {
    Write();
    is_written = true;
  } catch (const RunTimeError& error) {
    failure_ = error.what();
  }
  is_writing_ = false;
  // What was saved meanwhile.
  if (is_written && is_readable_ && !unsaved_.empty()) later_.start(0);
  return is_written;
}

void QtSettingsStore::Write() {
  const std::string path = FromQt(settings_.fileName());
  // Once it could not be read QSettings takes the file for an empty one.
  if (!is_readable_) ThrowUnreadable(path);
  const Values values = unsaved_;
  const auto could_read = std::make_shared<std::atomic<bool>>(true);
  const auto work = [values, could_read](const IsGivenUp& is_given_up) {
    *could_read = WriteOver(values, is_given_up);
  };
  RunBesideLoop("Waiting for the disk with the settings...", NoAnswerFrom(path, FileAction::kWrite),
                work, left_threads_);
  is_readable_ = *could_read;
  if (!is_readable_) ThrowUnreadable(path);
  settings_.sync();
  is_readable_ = settings_.status() != QSettings::AccessError;
  if (!is_readable_) return;
  std::erase_if(unsaved_, [&](const auto& value) {
    const auto written = values.find(value.first);
    return written != values.end() && written->second == value.second;
  });
}

std::string QtSettingsStore::Reason() const {
  const QFileInfo file(settings_.fileName());
  const QFileInfo folder(ExistingFolder(settings_.fileName()));
  if (file.isDir()) return "it is a folder.";
  if (!folder.isDir()) return "\"" + FromQt(folder.filePath()) + "\" is no folder.";
  if (!MayUse(FromQt(folder.filePath()), W_OK) ||
      (file.exists() && !MayUse(FromQt(file.filePath()), W_OK))) {
    return "you do not have the permission.";
  }
  constexpr std::string_view kBeforeReason = "\" could not be written: ";
  const std::size_t at = failure_.find(kBeforeReason);
  return at == std::string::npos ? failure_ : failure_.substr(at + kBeforeReason.size());
}

}  // namespace tarnlink
