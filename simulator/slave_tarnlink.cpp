#include "simulator/slave_tarnlink.h"

#include <utility>

#include "simulator/bytes.h"
#include "simulator/damage.h"

namespace boiler {
namespace {

using enum FaultKind;

FrameState LookAtFrame(std::string_view begun) {
  if (begun.back() == kTarnlinkEnd) return FrameState::kWhole;
  return begun.size() == kTarnlinkLongest ? FrameState::kTooLong : FrameState::kGoesOn;
}

TarnlinkRequest Parsed(const Request& request) {
  return *ParseTarnlinkRequest(request.bytes).request;
}

std::string ReadData(char command, std::uint16_t address, const Memory& memory) {
  if (command == kReadWord) return HexDigits(memory.Word(address), 4);
  return HexDigits(memory.Byte(address), 2);
}

std::uint16_t OtherAddress(std::uint16_t address, Random& random) {
  return static_cast<std::uint16_t>(address ^ (1 + random.Below(0xFFFF)));
}

char OtherCommand(char command, Random& random) {
  constexpr std::string_view kAll = {"\x01\x02\x05\x06", 4};
  const std::size_t at = kAll.find(command);
  return kAll[(at + 1 + static_cast<std::size_t>(random.Below(3))) % kAll.size()];
}

std::string WriteMeaning(const TarnlinkRequest& request) {
  return "write " + request.data + " to " + request.address_digits;
}

std::string Meaning(const TarnlinkRequest& request) {
  if (request.write()) return WriteMeaning(request);
  return (request.command == kReadWord ? "read word " : "read byte ") + request.address_digits;
}

void Store(const TarnlinkRequest& request, Controller& controller) {
  const unsigned value = *ParseHex(request.data);
  if (request.data.size() == 2) {
    controller.WriteByte(request.address, static_cast<std::uint8_t>(value));
  } else {
    controller.WriteWord(request.address, static_cast<std::uint16_t>(value));
  }
}

// The acknowledgement of command 06 is as long as the answer to a byte read and carries the low two
// digits; that of command 02 is as long as the answer to a word read.
std::string Acknowledged(const TarnlinkRequest& request, const std::string& data) {
  std::string digits = data;
  if (request.command == kWrite) digits = data.substr(data.size() - 2);
  if (request.command == kWriteWord) digits.insert(0, 4 - data.size(), '0');
  return BuildTarnlinkAnswer(request.command, request.address_digits, digits);
}

}  // namespace

TarnlinkSlave::TarnlinkSlave() : collector_(kTarnlinkStart, LookAtFrame) {}

std::optional<Heard> TarnlinkSlave::Hear(char byte) {
  auto found = collector_.Hear(byte);
  if (!found) return std::nullopt;
  if (auto* ignored = std::get_if<Ignored>(&*found)) return std::move(*ignored);
  std::string& frame = std::get<std::string>(*found);
  const TarnlinkParsed parsed = ParseTarnlinkRequest(frame);
  if (!parsed.request) return Ignored{std::move(frame), parsed.refusal};
  return Request{std::move(frame), parsed.request->write(), Meaning(*parsed.request)};
}

std::string TarnlinkSlave::Answer(const Request& request, Controller& controller,
                                  WriteEffect effect) {
  const TarnlinkRequest asked = Parsed(request);
  if (!asked.write()) {
    return BuildTarnlinkAnswer(asked.command, asked.address_digits,
                               ReadData(asked.command, asked.address, controller.memory()));
  }
  if (effect == WriteEffect::kStored) Store(asked, controller);
  if (effect == WriteEffect::kRejected) {
    const char read = asked.data.size() == 4 ? kReadWord : kReadByte;
    return Acknowledged(asked, ReadData(read, asked.address, controller.memory()));
  }
  return Acknowledged(asked, asked.data);
}

std::string TarnlinkSlave::WrongAnswer(const Fault& fault, const Request& request,
                                       const std::string& answer, const Controller& controller,
                                       Random& random) {
  const TarnlinkRequest asked = Parsed(request);
  const std::string data = answer.substr(6, answer.size() - 9);
  const auto answered = [&](const std::string& digits) {
    return BuildTarnlinkAnswer(asked.command, asked.address_digits, digits);
  };
  switch (fault.kind) {
    case kWrongId:
      return BuildTarnlinkAnswer(asked.command, HexDigits(OtherAddress(asked.address, random), 4),
                                 data);
    case kWrongKind:
      return BuildTarnlinkAnswer(OtherCommand(asked.command, random), asked.address_digits, data);
    case kShortCount:
      return answered(data.substr(data.size() / 2));
    case kLongCount:
      return answered(data + RandomDigits(2, random));
    case kOversize:
      return answered(data + RandomDigits(fault.number, random));
    case kAnswerOfOtherRequest: {
      const char command = random.Below(2) == 0 ? kReadByte : kReadWord;
      const std::uint16_t address = OtherAddress(asked.address, random);
      return BuildTarnlinkAnswer(command, HexDigits(address, 4),
                                 ReadData(command, address, controller.memory()));
    }
    default:
      return answer;
  }
}

std::string TarnlinkSlave::BusyAnswer(const Request&) { return ""; }

std::string TarnlinkSlave::ForeignTraffic(Random& random) {
  const std::string address = RandomDigits(4, random);
  return BuildTarnlinkRead(kReadByte, address) +
         BuildTarnlinkAnswer(kReadByte, address, RandomDigits(2, random));
}

std::string TarnlinkSlave::WithWrongCheck(const std::string& answer, Random& random) {
  const std::size_t sum_at = answer.size() - 3;
  const unsigned right = *ParseHex(answer.substr(sum_at, 2));
  const unsigned wrong = (right + 1 + static_cast<unsigned>(random.Below(255))) % 256;
  return answer.substr(0, sum_at) + HexDigits(wrong, 2) + kTarnlinkEnd;
}

std::string_view TarnlinkSlave::Misfit(FaultKind kind) const {
  switch (kind) {
    case kWrongAddress:
      return "a TarnLink frame carries no slave address";
    case kRefused:
      return "a TarnLink slave has no answer that says no";
    case kHighBitStripped:
      return "a TarnLink frame has no byte with its high bit set";
    case kCrlfTranslated:
      return "a TarnLink frame has no carriage return or line feed";
    default:
      return "";
  }
}

}  // namespace boiler
