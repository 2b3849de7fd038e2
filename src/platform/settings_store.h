// The user's settings: texts by section and key. Real class: `QtSettingsStore`; fake:
// `FakeSettingsStore`.
#pragma once

#include <string>
#include <string_view>

namespace tarnlink {

class SettingsStore {
 public:
  virtual ~SettingsStore() = default;

  // The stored text, or `fallback` when there is none.
  virtual std::string GetSetting(std::string_view section, std::string_view key,
                                 std::string_view fallback) const = 0;

  // Never throws: a store that cannot be written keeps the value for this run, and `Failure` tells.
  virtual void SaveSetting(std::string_view section, std::string_view key,
                           std::string_view value) = 0;

  // Writes out what is pending. Empty while all is well; the first time that the store could not be
  // written, one sentence with the file and the reason, and empty again afterwards.
  virtual std::string Failure() = 0;
};

}  // namespace tarnlink
