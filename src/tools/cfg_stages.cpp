#include "tools/cfg_stages.h"

#include <algorithm>
#include <array>

#include "protocols/zolt_frame.h"

namespace tarnlink {

namespace {

constexpr int kHighestByte = 255;

constexpr std::array<const char*, kCfgStages> kFailures = {
    "Wrong default value",     "Minimum is not written", "Minimum was not written",
    "Minimum limit incorrect", "Maximum is not written", "Maximum was not written",
    "Maximum limit incorrect"};

bool IsRead(int stage) {
  return stage == kReadDefault || stage == kReadMinimum || stage == kReadMaximum;
}

// What is written, or what a read has to give.
int ValueOf(const ConfigItem& item, int stage) {
  switch (stage) {
    case kWriteMinimum:
    case kReadMinimum:
      return item.Minimum;
    case kWriteBelow:
      return item.Minimum - 1;
    case kWriteMaximum:
    case kReadMaximum:
      return item.Maximum;
    case kWriteAbove:
      return item.Maximum + 1;
    default:
      return item.DefaultValue;
  }
}

// In the data of the message, and of the answer of a slave that gives them back.
int SentValue(const ConfigItem& item, int stage) {
  return IsRead(stage) ? 0 : ValueOf(item, stage);
}

bool IsPossible(const ConfigItem& item, int stage) {
  const int value = ValueOf(item, stage);
  return value >= 0 && value <= kHighestByte;
}

bool HasPassed(const ConfigItem& item, int stage, const ZoltMessage& answer) {
  if (IsRead(stage)) {
    if (stage == kReadDefault && !item.HasDefault()) return true;
    return answer.Ack == zolt_frame::kReadAcknowledge && answer.DataHi == ValueOf(item, stage);
  }
  const bool is_outside = stage == kWriteBelow || stage == kWriteAbove;
  return answer.Ack == (is_outside ? zolt_frame::kOutsideRange : zolt_frame::kWriteAcknowledge);
}

}  // namespace

CfgVerdict VerdictOf(const ConfigItem& item) {
  if (item.Result == ConfigItem::kNoResult) return CfgVerdict::kNone;
  if (item.Result == kCfgGood) return CfgVerdict::kGood;
  const bool is_unknown = item.Result == kCfgUnknownId || item.Result == kCfgNotChecked;
  return is_unknown ? CfgVerdict::kUnknown : CfgVerdict::kWrong;
}

std::string CfgMessage(const ConfigItem& item, int stage, const std::string& slave) {
  const std::uint8_t kind = IsRead(stage) ? zolt_frame::kRead : zolt_frame::kWrite;
  return BuildZoltMessage(static_cast<std::uint8_t>(kind + kParameterClass), slave, item.ID,
                          static_cast<std::uint8_t>(SentValue(item, stage)), 0);
}

bool IsWrite(int stage) { return !IsRead(stage); }

int WrittenValue(const ConfigItem& item, int stage) { return ValueOf(item, stage); }

bool IsStale(const ConfigItem& item, int stage, const ZoltMessage& answer,
             const std::vector<CfgWrite>& before) {
  if (answer.Ack == zolt_frame::kWriteAcknowledge && IsRead(stage)) return true;
  if (answer.Ack == zolt_frame::kReadAcknowledge) return IsWrite(stage);
  if (answer.DataHi == SentValue(item, stage)) return false;
  const CfgWrite answered{item.ID, answer.DataHi, answer.Ack};
  return std::find(before.begin(), before.end(), answered) != before.end();
}

std::optional<int> NextStage(const ConfigItem& item, int stage) {
  for (int next = stage + 1; next < kCfgStages; ++next) {
    if (IsPossible(item, next)) return next;
  }
  return std::nullopt;
}

std::string CfgFailure(const ConfigItem& item, int stage, const ZoltMessage& answer) {
  if (answer.Ack == zolt_frame::kUnknownDataId) return kCfgUnknownId;
  if (HasPassed(item, stage, answer)) return "";
  return kFailures.at(static_cast<std::size_t>(stage));
}

std::string CfgStageText(const ConfigItem& item, int stage) {
  const std::string value = std::to_string(ValueOf(item, stage));
  if (stage == kReadDefault) return "reading the default";
  if (IsRead(stage)) return "reading " + value + " back";
  return (stage == kWriteBelow || stage == kWriteAbove ? "trying " : "writing ") + value;
}

}  // namespace tarnlink
