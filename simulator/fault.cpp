#include "simulator/fault.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "simulator/problem.h"

namespace boiler {
namespace {

using enum FaultKind;
using enum FaultGroup;

constexpr int kHourMs = 3'600'000;

FaultInfo Plain(FaultKind kind, FaultGroup group, std::string_view name) {
  return {kind, group, name, "", 0, 0, 0};
}

std::vector<FaultInfo> MakeFaults() {
  return {
      Plain(kNoReply, kTime, "no_reply"),
      {kLateReply, kTime, "late_reply", "ms", 1000, 1, kHourMs},
      Plain(kLateReplyAfterNext, kTime, "late_reply_after_next"),
      {kSlowBytes, kTime, "slow_bytes", "ms", 20, 1, 60'000},
      {kPauseMidframe, kTime, "pause_midframe", "ms", 200, 1, kHourMs},
      {kBusyThenOk, kTime, "busy_then_ok", "exchanges", 2, 1, 1000},
      Plain(kWrongAddress, kContent, "wrong_address"),
      Plain(kWrongId, kContent, "wrong_id"),
      Plain(kWrongKind, kContent, "wrong_kind"),
      {kRefused, kContent, "refused", "code", 2, 0, 255},
      Plain(kShortCount, kContent, "short_count"),
      Plain(kLongCount, kContent, "long_count"),
      Plain(kStaleDuplicate, kContent, "stale_duplicate"),
      Plain(kAnswerOfOtherRequest, kContent, "answer_of_other_request"),
      {kBitFlip, kDamage, "bit_flip", "bits", 1, 1, 64},
      {kBurst, kDamage, "burst", "bits", 8, 1, 64},
      Plain(kByteReplace, kDamage, "byte_replace"),
      Plain(kByteDrop, kDamage, "byte_drop"),
      Plain(kByteInsert, kDamage, "byte_insert"),
      Plain(kByteSwap, kDamage, "byte_swap"),
      Plain(kCheckWrong, kDamage, "check_wrong"),
      {kTruncate, kDamage, "truncate", "bytes", 1, 1, 255},
      Plain(kAllZero, kDamage, "all_zero"),
      Plain(kAllFf, kDamage, "all_ff"),
      Plain(kRandomFrame, kDamage, "random_frame"),
      Plain(kHighBitStripped, kDamage, "high_bit_stripped"),
      Plain(kCrlfTranslated, kDamage, "crlf_translated"),
      {kSplit, kStream, "split", "pieces", 2, 2, 64},
      Plain(kMergeTwo, kStream, "merge_two"),
      {kNoiseBefore, kStream, "noise_before", "bytes", 4, 1, 4096},
      {kNoiseAfter, kStream, "noise_after", "bytes", 4, 1, 4096},
      {kNoiseIdle, kStream, "noise_idle", "bytes", 4, 1, 4096},
      Plain(kSelfEcho, kStream, "self_echo"),
      Plain(kForeignTraffic, kStream, "foreign_traffic"),
      {kOversize, kStream, "oversize", "bytes", 16, 1, 65'536},
      {kEndlessStream, kStream, "endless_stream", "ms, 0 for ever", 0, 0, kHourMs},
      Plain(kUnplug, kPort, "unplug"),
      Plain(kUnplugMidframe, kPort, "unplug_midframe"),
      Plain(kUnplugWhileWriting, kPort, "unplug_while_writing"),
      {kReplugSameName, kPort, "replug_same_name", "ms", 500, 0, kHourMs},
      {kReplugOtherName, kPort, "replug_other_name", "ms", 500, 0, kHourMs},
      Plain(kOpenBusy, kPort, "open_busy"),
      Plain(kOpenDenied, kPort, "open_denied"),
      Plain(kOpenMissing, kPort, "open_missing"),
      Plain(kOpenNotATty, kPort, "open_not_a_tty"),
      {kRebootMidsession, kDevice, "reboot_midsession", "ms", 3000, 0, kHourMs},
      Plain(kWriteOkNotStored, kDevice, "write_ok_not_stored"),
      Plain(kWriteStoredAnswerLost, kDevice, "write_stored_answer_lost"),
      {kWriteSlow, kDevice, "write_slow", "ms", 500, 1, kHourMs},
      Plain(kRangeRejected, kDevice, "range_rejected"),
  };
}

template <typename Number>
std::optional<Number> ParseNumber(std::string_view text) {
  Number number{};
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

Problem Refuse(std::string_view text, const std::string& reason) {
  return Problem("Fault \"" + std::string(text) + "\": " + reason);
}

// Takes the number in round brackets off the end of `name`.
std::optional<std::string_view> TakeNumber(std::string_view text, std::string_view& name) {
  const std::size_t open = name.find('(');
  if (open == std::string_view::npos) return std::nullopt;
  if (name.back() != ')') throw Refuse(text, "the round bracket is not closed.");
  const std::string_view number = name.substr(open + 1, name.size() - open - 2);
  name = name.substr(0, open);
  return number;
}

Fault ParseFault(std::string_view text, std::string_view name) {
  const auto number_text = TakeNumber(text, name);
  const auto& all = AllFaults();
  const auto info =
      std::find_if(all.begin(), all.end(), [&](const FaultInfo& one) { return one.name == name; });
  if (info == all.end()) throw Refuse(text, "there is no fault of this name.");
  Fault fault{info->kind, info->number};
  if (!number_text) return fault;
  if (info->unit.empty()) throw Refuse(text, "this fault takes no number.");
  const auto number = ParseNumber<int>(*number_text);
  if (!number || *number < info->lowest || *number > info->highest) {
    throw Refuse(text, "the number must be one of " + std::to_string(info->lowest) + " to " +
                           std::to_string(info->highest) + ".");
  }
  fault.number = *number;
  return fault;
}

}  // namespace

const std::vector<FaultInfo>& AllFaults() {
  static const std::vector<FaultInfo> faults = MakeFaults();
  return faults;
}

const FaultInfo& InfoOf(FaultKind kind) { return AllFaults()[static_cast<std::size_t>(kind)]; }

std::string FaultText(const Fault& fault) {
  const FaultInfo& info = InfoOf(fault.kind);
  std::string text(info.name);
  if (!info.unit.empty()) text += '(' + std::to_string(fault.number) + ')';
  return text;
}

bool NeedsWrite(FaultKind kind) {
  return kind == kWriteOkNotStored || kind == kWriteStoredAnswerLost || kind == kWriteSlow ||
         kind == kRangeRejected;
}

bool BlocksOpening(FaultKind kind) {
  return kind == kOpenBusy || kind == kOpenDenied || kind == kOpenMissing || kind == kOpenNotATty;
}

FaultPlan ParseFaultPlan(std::string_view text) {
  const std::size_t mark = text.find_first_of("@#");
  FaultPlan plan{ParseFault(text, text.substr(0, mark)), 1, 0};
  if (mark == std::string_view::npos) return plan;
  if (BlocksOpening(plan.fault.kind)) {
    throw Refuse(text, "it holds at once and until it is cleared, without a rate or a count.");
  }
  const std::string_view often = text.substr(mark + 1);
  if (text[mark] == '@') {
    const auto rate = ParseNumber<double>(often);
    if (!rate || !(*rate > 0) || *rate > 1) {
      throw Refuse(text, "the rate must be above 0 and at most 1.");
    }
    plan.rate = *rate;
  } else {
    const auto count = ParseNumber<int>(often);
    if (!count || *count < 1) throw Refuse(text, "the count must be a whole number of at least 1.");
    plan.rate = 0;
    plan.count = *count;
  }
  return plan;
}

}  // namespace boiler
