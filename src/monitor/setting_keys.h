// The settings by section, key and default: the system's vocabulary.
#pragma once

#include <string>
#include <string_view>

#include "platform/settings_store.h"

namespace tarnlink {

struct SettingKey {
  std::string_view section;
  std::string_view key;
  std::string_view fallback;
};

namespace setting {

inline constexpr SettingKey kProtocol{"Communication", "Protocol", "1"};
inline constexpr SettingKey kBaudrate{"Communication", "Baudrate", "1"};
inline constexpr SettingKey kCommport{"Communication", "Commport", "1"};
inline constexpr SettingKey kStopBits{"Communication", "StopBits", "1"};
inline constexpr SettingKey kParity{"Communication", "Parity", "1"};
inline constexpr SettingKey kExcelPath{"Communication", "ExcelPath", "D:\\EXCEL.EXE"};
inline constexpr SettingKey kIgnoreErrors{"Communication", "IgnoreErrors", "1"};
inline constexpr SettingKey kFileLogging{"Communication", "FileLogging", "0"};
inline constexpr SettingKey kDdeLogging{"Communication", "DDELogging", "0"};
inline constexpr SettingKey kMsgTimeout{"Communication", "MsgTimeout", "3"};
inline constexpr SettingKey kScanning{"Communication", "Scanning", "0"};
inline constexpr SettingKey kMicroprocessor{"Communication", "Microprocessor", "0"};

inline constexpr SettingKey kLogPath{"Paths", "LogPath", "C:"};
inline constexpr SettingKey kIdDefinition{"Paths", "ZOLTIDDefPath", ".\\default.ids"};
inline constexpr SettingKey kDatabaseFiles{"Paths", "DatabaseFiles", "."};
inline constexpr SettingKey kMemoryMap{"Paths", "MemoryDefPath", ".\\default.map"};

inline constexpr SettingKey kLeft{"Startup", "Left", "0"};
inline constexpr SettingKey kTop{"Startup", "Top", "0"};
inline constexpr SettingKey kWidth{"Startup", "Width", "4000"};
inline constexpr SettingKey kHeight{"Startup", "Height", "3000"};

inline constexpr std::string_view kFileHistory = "FileHistory";
inline constexpr std::string_view kProjectHistory = "FileHistoryPrj";

inline constexpr SettingKey kWcrFolder{"WcrCmnDlg", "InitDir", "C:\\"};
inline constexpr SettingKey kPrjFolder{"PrjCmnDlg", "InitDir", "C:\\"};
inline constexpr SettingKey kParFolder{"ParCmnDlg", "InitDir", "C:\\"};
inline constexpr SettingKey kGrpFolder{"GrpCmnDlg", "InitDir", "C:\\"};
inline constexpr SettingKey kMssFolder{"MssCmnDlg", "InitDir", "C:\\"};

inline constexpr SettingKey kProjectWindow{"Project", "ProjectWindow", "True"};

}  // namespace setting

inline std::string ReadSetting(const SettingsStore& store, const SettingKey& key) {
  return store.GetSetting(key.section, key.key, key.fallback);
}

inline void WriteSetting(SettingsStore& store, const SettingKey& key, std::string_view value) {
  store.SaveSetting(key.section, key.key, value);
}

}  // namespace tarnlink
