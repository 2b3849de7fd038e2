// Settings in memory.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "platform/settings_store.h"

namespace tarnlink {

class FakeSettingsStore final : public SettingsStore {
 public:
  std::string GetSetting(std::string_view section, std::string_view key,
                         std::string_view fallback) const override;
  void SaveSetting(std::string_view section, std::string_view key, std::string_view value) override;
  std::string Failure() override;

  // From now on nothing can be written, with this sentence as the reason; empty mends it.
  void BreakWriting(const std::string& reason) {
    broken_ = reason;
    told_ = false;
  }

  bool Has(std::string_view section, std::string_view key) const;
  int saves() const { return saves_; }

  // One line for each setting, sorted: "Communication/Protocol=1".
  std::string Describe() const;

 private:
  std::map<std::pair<std::string, std::string>, std::string> values_;
  int saves_ = 0;
  bool pending_ = false;
  bool told_ = false;
  std::string broken_;
};

}  // namespace tarnlink
