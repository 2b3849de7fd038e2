#include "tools/parameter_answer.h"

#include "protocols/frame_bytes.h"
#include "protocols/zolt_frame.h"

namespace tarnlink {

namespace {

constexpr int kByteBits = 8;
constexpr std::int32_t kByte = 0xFF;
constexpr std::int32_t kNoAddress = -1;

std::uint8_t Low(std::int32_t number) { return static_cast<std::uint8_t>(number & kByte); }
std::uint8_t High(std::int32_t number) { return Low(number >> kByteBits); }

// An answer with the ID that it is about, an address in class 7.
ZoltMessage Parse(std::string_view answer, const ZoltMessages& messages) {
  const ZoltMessage message = ParseZoltMessage(answer);
  if (message.Class != kMemoryParameterClass) return message;
  const ZoltAddressMessage memory = messages.ParseZoltAddressMessage(answer);
  const bool is_of_read =
      message.Id == static_cast<std::int32_t>(HexNumber(zolt_frame::kReadMemoryId));
  // Address 0 stands for an ID that is none of memory, and has no alias itself.
  if (memory.Address == 0 && !is_of_read) return {memory.Ack, memory.Class, kNoAddress, 0, 0};
  return {memory.Ack, memory.Class, memory.Address, 0, memory.DataLo};
}

}  // namespace

bool CanBeWritten(const ParameterItem& item) {
  if (item.Class != kMemoryParameterClass) return true;
  const std::string frame =
      ZoltMessages().BuildZoltAddressMessage(zolt_frame::kWriteMemory, "0", item.ID, 0);
  return ParseZoltMessage(frame).Id != 0;
}

ParameterRequest MakeParameterRequest(const ParameterItem& item, bool is_write,
                                      std::string_view slave, ZoltMessages& messages) {
  ParameterRequest request{item, is_write, {}};
  const std::int32_t value = is_write ? item.Value : 0;
  const auto type = static_cast<std::uint8_t>(item.Class + (is_write ? zolt_frame::kWrite : 0));
  if (item.Class != kMemoryParameterClass) {
    request.frame = BuildZoltMessage(type, slave, item.ID, High(value), Low(value));
    return request;
  }
  if (is_write && !CanBeWritten(item)) return request;
  request.frame = messages.BuildZoltAddressMessage(type, slave, item.ID, Low(value));
  return request;
}

ParameterItem ItemOf(std::string_view answer, const ZoltMessages& messages) {
  const ZoltMessage message = Parse(answer, messages);
  return {.Class = message.Class, .ID = message.Id};
}

bool IsSameItem(const ParameterItem& one, const ParameterItem& other) {
  return one.Class == other.Class && one.ID == other.ID;
}

bool IsAbout(std::string_view answer, const ParameterRequest& request,
             const ZoltMessages& messages) {
  const ZoltMessage message = ParseZoltMessage(answer);
  switch (message.Ack) {
    case zolt_frame::kCorruptedMessage:
      return true;
    case zolt_frame::kReadAcknowledge:
    case zolt_frame::kWriteAcknowledge:
      return (message.Ack == zolt_frame::kWriteAcknowledge) == request.is_write &&
             IsSameItem(ItemOf(answer, messages), request.item);
    default: {
      // A refusal need not bear the address.
      const ZoltMessage asked = ParseZoltMessage(request.frame);
      return message.Class == asked.Class && message.Id == asked.Id;
    }
  }
}

ParameterVerdict JudgeAnswer(std::string_view answer, const ParameterRequest& request,
                             const ZoltMessages& messages) {
  if (!IsAbout(answer, request, messages)) return kUnusableAnswer;
  const ZoltMessage message = Parse(answer, messages);
  switch (message.Ack) {
    case zolt_frame::kWriteAcknowledge:
      return {"OK", ParameterOutcome::kNext};
    case zolt_frame::kReadAcknowledge:
      if ((message.DataHi << kByteBits | message.DataLo) == request.item.Value) {
        return {"OK", ParameterOutcome::kVerified};
      }
      return {"FAULT", ParameterOutcome::kNext};
    case zolt_frame::kCorruptedMessage:
      return {"corrupt msg", ParameterOutcome::kRetry};
    case zolt_frame::kUnknownDataId:
      return {"unknown ID", ParameterOutcome::kGiveUp};
    case zolt_frame::kOutsideRange:
      return {"out range", ParameterOutcome::kGiveUp};
    default:
      return kUnusableAnswer;
  }
}

}  // namespace tarnlink
