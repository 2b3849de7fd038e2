#include "support/fake_settings_store.h"

namespace tarnlink {

std::string FakeSettingsStore::GetSetting(std::string_view section, std::string_view key,
                                          std::string_view fallback) const {
  const auto found = values_.find({std::string(section), std::string(key)});
  return found == values_.end() ? std::string(fallback) : found->second;
}

void FakeSettingsStore::SaveSetting(std::string_view section, std::string_view key,
                                    std::string_view value) {
  values_[{std::string(section), std::string(key)}] = value;
  ++saves_;
  pending_ = true;
}

std::string FakeSettingsStore::Failure() {
  if (broken_.empty() || told_ || !pending_) return {};
  told_ = true;
  return broken_;
}

bool FakeSettingsStore::Has(std::string_view section, std::string_view key) const {
  return values_.contains({std::string(section), std::string(key)});
}

std::string FakeSettingsStore::Describe() const {
  std::string text;
  for (const auto& [name, value] : values_) {
    text += name.first + "/" + name.second + "=" + value + "\n";
  }
  return text;
}

}  // namespace tarnlink
