#include "simulator/slave_modbus.h"

#include <algorithm>
#include <utility>

#include "simulator/bytes.h"
#include "simulator/damage.h"
#include "simulator/modbus_registers.h"

namespace boiler {
namespace {

using enum FaultKind;

constexpr std::size_t kMostGarbage = 64;  // bytes in one line of the log
constexpr int kMostRead = 125;            // registers that fit into a frame
constexpr int kMostWritten = 123;
constexpr std::size_t kCheckBytes = 2;
constexpr std::size_t kByteCountAt = 2;
constexpr std::size_t kDataAt = 3;

char Char(int byte) { return static_cast<char>(byte); }

std::string Refusal(const ModbusRequest& asked, int code) {
  return WithModbusCheck({Char(asked.slave), Char(asked.function | kExceptionBit), Char(code)});
}

std::string Refusal(const ModbusRequest& asked, ModbusException exception) {
  return Refusal(asked, static_cast<int>(exception));
}

std::string AnswerRead(const ModbusRequest& asked, const Controller& controller) {
  if (asked.count < 1 || asked.count > kMostRead) return Refusal(asked, ModbusException::kValue);
  const auto value = asked.function == kReadInput ? InputRegister : HoldingRegister;
  std::string body = {Char(asked.slave), Char(asked.function), Char(2 * asked.count)};
  for (int i = 0; i < asked.count; ++i) {
    const int number = asked.first + i;
    const auto word =
        number > 0xFFFF ? std::nullopt : value(controller, static_cast<std::uint16_t>(number));
    if (!word) return Refusal(asked, ModbusException::kAddress);
    body += ModbusWord(*word);
  }
  return WithModbusCheck(std::move(body));
}

// Why the slave does not carry out a write.
std::optional<ModbusException> Objection(const ModbusRequest& asked) {
  const bool counts_fit = asked.counts_agree && asked.count >= 1 && asked.count <= kMostWritten;
  if (!counts_fit) return ModbusException::kValue;
  bool values_fit = true;
  for (int i = 0; i < asked.count; ++i) {
    const int number = asked.first + i;
    const auto at = static_cast<std::uint16_t>(number);
    if (number > 0xFFFF || !CanWriteRegister(at)) return ModbusException::kAddress;
    values_fit = values_fit && RegisterTakes(at, asked.values[static_cast<std::size_t>(i)]);
  }
  if (!values_fit) return ModbusException::kValue;
  return std::nullopt;
}

std::string AnswerWrite(const ModbusRequest& asked, Controller& controller, WriteEffect effect) {
  if (const auto objection = Objection(asked)) return Refusal(asked, *objection);
  if (effect == WriteEffect::kRejected) return Refusal(asked, ModbusException::kValue);
  if (effect == WriteEffect::kStored) {
    std::uint16_t number = asked.first;
    for (const std::uint16_t value : asked.values) WriteRegister(controller, number++, value);
  }
  const bool one = asked.function == kWriteOne;
  return WithModbusCheck(std::string{Char(asked.slave), Char(asked.function)} +
                         ModbusWord(asked.first) +
                         ModbusWord(one ? asked.values.front() : asked.count));
}

std::string AnswerTo(const ModbusRequest& asked, Controller& controller, WriteEffect effect) {
  if (!IsModbusFunction(asked.function)) return Refusal(asked, ModbusException::kFunction);
  return asked.Write() ? AnswerWrite(asked, controller, effect) : AnswerRead(asked, controller);
}

// One of `count` that is not the one at `at`.
int Another(int at, int count, Random& random) {
  return (at + 1 + random.Below(count - 1)) % count;
}

std::uint8_t OtherFunction(std::uint8_t function, Random& random) {
  std::vector<std::uint8_t> others = {kReadHolding, kReadInput, kWriteOne, kWriteSeveral};
  std::erase(others, function);
  return others[static_cast<std::size_t>(random.Below(static_cast<int>(others.size())))];
}

bool IsReadAnswer(const std::string& body) {
  if (body.size() < 2) return false;
  const auto function = static_cast<std::uint8_t>(body[1]);
  return function == kReadHolding || function == kReadInput;
}

// One register less in an answer to a read, one byte less in any other.
std::string Shortened(const std::string& body) {
  if (!IsReadAnswer(body)) return body.substr(0, body.size() - 1);
  std::string less = body.substr(0, body.size() - 2);
  less[kByteCountAt] = Char(static_cast<int>(less.size() - kDataAt));
  return less;
}

// So many bytes more; the byte count tells of them as far as it can.
std::string Lengthened(std::string body, int bytes, Random& random) {
  body += NoiseBytes(bytes, random);
  if (IsReadAnswer(body)) body[kByteCountAt] = Char(static_cast<int>(body.size() - kDataAt));
  return body;
}

// The right answer to another read of one to four registers.
std::string AnswerOfOther(const ModbusRequest& asked, const Controller& controller,
                          Random& random) {
  const auto registers = ModbusRegisters();
  ModbusRequest other;
  std::string answer;
  do {
    const int at = random.Below(static_cast<int>(registers.size()));
    other.slave = asked.slave;
    other.function = random.Below(2) == 0 ? kReadHolding : kReadInput;
    other.first = registers[static_cast<std::size_t>(at)].number;
    other.count = static_cast<std::uint16_t>(1 + random.Below(4));
    answer = AnswerRead(other, controller);
  } while (other.first == asked.first || !IsReadAnswer(answer));
  return answer;
}

}  // namespace

ModbusSlave::ModbusSlave(std::vector<int> addresses) : addresses_(std::move(addresses)) {}

std::optional<Heard> ModbusSlave::Hear(char byte) {
  waiting_ += byte;
  if (!lost_.empty()) {
    if (waiting_.size() < kMostGarbage) return std::nullopt;
    return Ignore(lost_);
  }
  if (waiting_.size() == ModbusRequestLength(waiting_)) {
    if (ModbusCheckHolds(waiting_)) return Complete();
    lost_ = "the check is wrong";
  } else if (waiting_.size() > kModbusLongest && !ModbusRequestLength(waiting_)) {
    lost_ = "no end in sight";
  }
  return std::nullopt;
}

std::optional<Heard> ModbusSlave::Silence() {
  const std::string lost = std::exchange(lost_, "");
  if (waiting_.empty()) return std::nullopt;
  if (!lost.empty()) return Ignore(lost);
  const bool whole = waiting_.size() >= kModbusShortest && EndsInSilence();
  if (!whole) return Ignore("incomplete");
  if (!ModbusCheckHolds(waiting_)) return Ignore("the check is wrong");
  return Complete();
}

bool ModbusSlave::EndsInSilence() const {
  if (!lost_.empty()) return true;
  return waiting_.size() >= 2 && !IsModbusFunction(static_cast<std::uint8_t>(waiting_[1]));
}

void ModbusSlave::Forget() {
  waiting_.clear();
  lost_.clear();
}

Heard ModbusSlave::Complete() {
  const ModbusRequest asked = ParseModbusRequest(waiting_);
  if (asked.slave == kBroadcast && !asked.Write()) return Ignore("nobody answers all slaves");
  if (asked.slave != kBroadcast && !IsOurs(asked.slave)) return Ignore("for another slave");
  return Request{std::exchange(waiting_, ""), asked.Write(), ModbusMeaning(asked)};
}

Ignored ModbusSlave::Ignore(std::string_view reason) {
  return {std::exchange(waiting_, ""), std::string(reason)};
}

bool ModbusSlave::IsOurs(int slave) const {
  return std::find(addresses_.begin(), addresses_.end(), slave) != addresses_.end();
}

std::string ModbusSlave::Answer(const Request& request, Controller& controller,
                                WriteEffect effect) {
  const ModbusRequest asked = ParseModbusRequest(request.bytes);
  std::string answer = AnswerTo(asked, controller, effect);
  return asked.slave == kBroadcast ? "" : answer;
}

std::string ModbusSlave::WrongAnswer(const Fault& fault, const Request& request,
                                     const std::string& answer, const Controller& controller,
                                     Random& random) {
  const ModbusRequest asked = ParseModbusRequest(request.bytes);
  std::string body = answer.substr(0, answer.size() - kCheckBytes);
  switch (fault.kind) {
    case kWrongAddress:
      body[0] = Char(1 + Another(asked.slave - 1, kModbusLastSlave, random));
      break;
    case kWrongId:
      if (body.size() > kDataAt) {
        const int other = asked.first ^ (1 + random.Below(0xFFFF));
        body.replace(2, 2, ModbusWord(static_cast<std::uint16_t>(other)));
      }
      break;
    case kWrongKind:
      body[1] = Char(OtherFunction(asked.function, random));
      break;
    case kRefused:
      return Refusal(asked, fault.number);
    case kShortCount:
      body = Shortened(body);
      break;
    case kLongCount:
      body = Lengthened(std::move(body), 2, random);
      break;
    case kOversize:
      body = Lengthened(std::move(body), fault.number, random);
      break;
    case kAnswerOfOtherRequest:
      return AnswerOfOther(asked, controller, random);
    default:
      return answer;
  }
  return WithModbusCheck(std::move(body));
}

std::string ModbusSlave::BusyAnswer(const Request& request) {
  const ModbusRequest asked = ParseModbusRequest(request.bytes);
  return asked.slave == kBroadcast ? "" : Refusal(asked, ModbusException::kBusy);
}

std::string ModbusSlave::ForeignTraffic(Random& random) {
  int slave = kModbusLastSlave;
  while (slave > kModbusFirstSlave && IsOurs(slave)) --slave;
  const std::string head = {Char(slave), Char(kReadHolding)};
  const auto first = static_cast<std::uint16_t>(random.Below(0x10000));
  return WithModbusCheck(head + ModbusWord(first) + ModbusWord(1)) +
         WithModbusCheck(head + Char(2) + NoiseBytes(2, random));
}

std::string ModbusSlave::WithWrongCheck(const std::string& answer, Random& random) {
  const std::size_t at = answer.size() - kCheckBytes;
  const std::string body = answer.substr(0, at);
  std::string wrong = ModbusCheck(body);
  const int flips = 1 + random.Below(0xFFFF);
  wrong[0] = Char(wrong[0] ^ flips);
  wrong[1] = Char(wrong[1] ^ flips >> 8);
  return body + wrong;
}

}  // namespace boiler
