// The user's settings in an INI file: $XDG_CONFIG_HOME/TarnLink2/TarnLink2.ini.
#pragma once

#include <QSettings>
#include <QTimer>
#include <map>
#include <string>
#include <string_view>

#include "platform/qt/left_threads.h"
#include "platform/settings_store.h"

namespace tarnlink {

class QtSettingsStore final : public SettingsStore {
 public:
  QtSettingsStore();
  ~QtSettingsStore() override;

  std::string GetSetting(std::string_view section, std::string_view key,
                         std::string_view fallback) const override;
  void SaveSetting(std::string_view section, std::string_view key, std::string_view value) override;
  std::string Failure() override;

 private:
  using Values = std::map<QString, QString>;

  bool TryToWrite();
  void Write();
  std::string Reason() const;

  QSettings settings_;  // as the file was when it was last read; it is never given a value
  // What the file does not have yet.
  Values unsaved_;
  bool is_writing_ = false;  // the event loop goes on meanwhile
  bool is_readable_ = true;  // or else nothing is written, for the other values would be lost
  QTimer later_;
  std::string failure_;  // why the last attempt failed
  bool told_ = false;
  LeftThreads left_threads_;
};

}  // namespace tarnlink
