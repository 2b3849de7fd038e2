// The faults that the simulated boiler can make, by name, and the text that asks for one.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace boiler {

enum class FaultGroup { kTime, kContent, kDamage, kStream, kPort, kDevice };

enum class FaultKind {
  // Time
  kNoReply,
  kLateReply,
  kLateReplyAfterNext,
  kSlowBytes,
  kPauseMidframe,
  kBusyThenOk,
  // Valid check, wrong content
  kWrongAddress,
  kWrongId,
  kWrongKind,
  kRefused,
  kShortCount,
  kLongCount,
  kStaleDuplicate,
  kAnswerOfOtherRequest,
  // Damage
  kBitFlip,
  kBurst,
  kByteReplace,
  kByteDrop,
  kByteInsert,
  kByteSwap,
  kCheckWrong,
  kTruncate,
  kAllZero,
  kAllFf,
  kRandomFrame,
  kHighBitStripped,
  kCrlfTranslated,
  // Stream
  kSplit,
  kMergeTwo,
  kNoiseBefore,
  kNoiseAfter,
  kNoiseIdle,
  kSelfEcho,
  kForeignTraffic,
  kOversize,
  kEndlessStream,
  // Port
  kUnplug,
  kUnplugMidframe,
  kUnplugWhileWriting,
  kReplugSameName,
  kReplugOtherName,
  kOpenBusy,
  kOpenDenied,
  kOpenMissing,
  kOpenNotATty,
  // Device
  kRebootMidsession,
  kWriteOkNotStored,
  kWriteStoredAnswerLost,
  kWriteSlow,
  kRangeRejected,
};

// What a fault is called and what its number means. A fault without a number has `unit` empty.
struct FaultInfo {
  FaultKind kind;
  FaultGroup group;
  std::string_view name;
  std::string_view unit;
  int number;  // when the text gives none
  int lowest;
  int highest;
};

const std::vector<FaultInfo>& AllFaults();
const FaultInfo& InfoOf(FaultKind kind);

struct Fault {
  FaultKind kind;
  int number = 0;

  FaultGroup group() const { return InfoOf(kind).group; }
  bool operator==(const Fault&) const = default;
};

// "bit_flip(2)", "no_reply".
std::string FaultText(const Fault& fault);

// Whether only an exchange that writes can have it.
bool NeedsWrite(FaultKind kind);
// Whether it keeps the port from being opened, at once and until it is cleared, so that neither
// a rate nor a count has a meaning.
bool BlocksOpening(FaultKind kind);

// A fault and how often it strikes: in a share of all exchanges, or in the next `count` to which it
// applies.
struct FaultPlan {
  Fault fault;
  double rate = 0;
  int count = 0;  // 0: by rate

  bool operator==(const FaultPlan&) const = default;
};

// Reads NAME, NAME(NUMBER), either with @RATE (above 0, up to 1) or #COUNT behind it; without both
// the fault strikes in every exchange. Throws Problem with a sentence that quotes the text.
FaultPlan ParseFaultPlan(std::string_view text);

}  // namespace boiler
