// The user's settings in an INI file: $XDG_CONFIG_HOME/TarnLink2/TarnLink2.ini.
#pragma once

#include <QSettings>
#include <map>
#include <string>
#include <string_view>

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
  bool DiskHasRoom() const;
  std::string Reason() const;

  QSettings settings_;
  // What is kept back from a disk that is nearly full.
  std::map<QString, QString> kept_back_;
  bool unsaved_ = false;
  bool told_ = false;
};

}  // namespace tarnlink
