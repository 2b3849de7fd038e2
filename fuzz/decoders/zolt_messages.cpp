#include "protocols/zolt_message.h"

#include "fuzz/claim.h"
#include "fuzz/decoders/decoders.h"
#include "fuzz/decoders/line_bytes.h"
#include "protocols/zolt_frame.h"

namespace tarnlink {
namespace {

constexpr std::int32_t kReadMemoryId = 0xFFAB;

void ClaimOfAnswer(std::string_view raw, const ZoltMessages& messages) {
  const ZoltMessage message = ParseZoltMessage(raw);
  const ZoltAddressMessage memory = messages.ParseZoltAddressMessage(raw);
  Claim(IsSoundZolt(raw) || message == ZoltMessage{}, "a frame whose check fails has no value");
  Claim(memory.Ack == message.Ack && memory.Class == message.Class, "both see the same frame");
  Claim(message.Id >= 0 && message.Id <= 0xFFFF, "an ID is two bytes");
  const bool is_of_last = message.Id == kReadMemoryId && memory.Address == messages.LastAddress();
  Claim(is_of_last || (memory.Address >= 0 && memory.Address <= 0xFFFF), "an address is two bytes");
}

void Run(std::string_view bytes) {
  FuzzInput input(bytes);
  const std::uint8_t type = input.Byte();
  const std::int32_t id = input.Word() + (input.Byte() << 16);
  const std::uint8_t high = input.Byte();
  const std::uint8_t low = input.Byte();
  const std::string slave(input.ShortText().substr(0, 2));
  const std::string frame = BuildZoltMessage(type, slave, id, high, low);
  Claim(frame.size() == zolt_frame::kLength && IsSoundZolt(frame), "a message is a sound frame");
  Claim(ParseZoltMessage(frame) == ZoltMessage{zolt_frame::KindOf(type), zolt_frame::ClassOf(type),
                                               id & 0xFFFF, high, low},
        "what was built is read again");

  ZoltMessages messages;
  const std::string asked = messages.BuildZoltAddressMessage(type, slave, id, low);
  Claim(asked.size() == zolt_frame::kLength && IsSoundZolt(asked), "one of memory is one too");
  Claim(messages.LastAddress() == id, "the address is known until the next one");
  const ZoltAddressMessage again = messages.ParseZoltAddressMessage(asked);
  if (type == zolt_frame::kWriteMemory) {
    Claim(ParseZoltMessage(asked).Id == 0 || (again.Address == id && again.DataLo == low),
          "a write to memory says where and what");
  } else {
    Claim(again.Address == id, "a read of memory is of the address that was asked");
  }
  ClaimOfAnswer(OnTheLine(input, frame), messages);
  ClaimOfAnswer(SoundZolt(ZoltBody(input)), messages);
  ClaimOfAnswer(input.Rest(), messages);
}

std::vector<std::string> Seeds() {
  using namespace std::string_literals;
  return {"\x87\x12\x80\0\x01\x02\x01"s + "0", "\x07\x12\x80\0\x01\x02\x01"s + "3",
          "\x15\x6D\x05\0\x3C\0\0"s + "\6" +
              SoundZolt("\x17"
                        "0FFAB1234"),
          "\x87\0\xF3\0\0\0\0"s};
}

}  // namespace

FuzzTarget ZoltMessagesTarget() { return {"zolt_messages", Run, Seeds}; }

}  // namespace tarnlink
