// The steps by which the configuration check proves the limits of one item, and what an answer
// means in each of them. No port and no clock.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "files/config_file.h"
#include "protocols/zolt_message.h"

namespace tarnlink {

inline constexpr std::uint8_t kParameterClass = 5;

enum CfgStage : int {
  kReadDefault = 0,
  kWriteMinimum = 1,
  kReadMinimum = 2,
  kWriteBelow = 3,
  kWriteMaximum = 4,
  kReadMaximum = 5,
  kWriteAbove = 6,
};
inline constexpr int kCfgStages = 7;

// Results that are no limit's fault.
inline constexpr const char* kCfgGood = "OK";
inline constexpr const char* kCfgUnknownId = "Unknown Data ID";
inline constexpr const char* kCfgNotChecked = "ID has not been checked";

// What a result says about the item, at a glance.
enum class CfgVerdict { kNone, kGood, kWrong, kUnknown };
CfgVerdict VerdictOf(const ConfigItem& item);

// What goes out in this stage.
std::string CfgMessage(const ConfigItem& item, int stage, const std::string& slave);

// A value that was written, and what the slave said to it.
struct CfgWrite {
  std::int32_t id = 0;
  int value = 0;
  std::uint8_t ack = 0;

  bool operator==(const CfgWrite&) const = default;
};

// Whether this stage writes, and then what.
bool IsWrite(int stage);
int WrittenValue(const ConfigItem& item, int stage);

// Whether the answer is one to a message before this stage's, late or once more: one to a read
// where this stage writes, or the other way round, or one of `before` whose value is not this
// stage's.
bool IsStale(const ConfigItem& item, int stage, const ZoltMessage& answer,
             const std::vector<CfgWrite>& before);

// The stage behind this one, past those for which there is no byte value; empty behind the last.
std::optional<int> NextStage(const ConfigItem& item, int stage);

// What ends the test of the item: the text for its result. Empty when the stage has passed.
std::string CfgFailure(const ConfigItem& item, int stage, const ZoltMessage& answer);

// "reading the default", for people who watch.
std::string CfgStageText(const ConfigItem& item, int stage);

}  // namespace tarnlink
