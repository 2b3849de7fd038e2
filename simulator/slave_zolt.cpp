#include "simulator/slave_zolt.h"

#include <utility>

#include "simulator/bytes.h"
#include "simulator/damage.h"
#include "simulator/data_ids.h"

namespace boiler {
namespace {

using enum FaultKind;

FrameState LookAtFrame(std::string_view begun) {
  return begun.size() == kZoltLength ? FrameState::kWhole : FrameState::kGoesOn;
}

std::string As(ZoltKind kind, std::string_view frame) {
  return ZoltFrameAs(static_cast<int>(kind), frame);
}

int SlaveNumber(char slave) { return static_cast<int>(kZoltSlaves.find(slave)); }

// An answer's fields, as they stand in the frame.
struct Fields {
  explicit Fields(const std::string& frame)
      : type(frame[1]), slave(frame[2]), id(frame.substr(3, 4)), data(frame.substr(7, 4)) {}

  std::string Build() const { return BuildZoltFrame(type, slave, id, data); }

  char type;
  char slave;
  std::string id;
  std::string data;
};

std::string ReadDone(const std::string& frame, std::uint16_t word) {
  Fields fields(As(ZoltKind::kReadDone, frame));
  fields.data = HexDigits(word, 4);
  return fields.Build();
}

std::string AnswerRead(const std::string& frame, const ZoltRequest& asked,
                       const Controller& controller) {
  const ZoltData& data = *asked.data;
  if (asked.data_class == kZoltMemoryClass) {
    if (data.id != kZoltMemoryRead) return As(ZoltKind::kUnknownId, frame);
    return ReadDone(frame, controller.memory().Word(data.Word()));
  }
  const DataId* id = FindDataId(asked.data_class, data.id);
  if (id == nullptr || !id->read) return As(ZoltKind::kUnknownId, frame);
  if (id->positions > 0 && data.high >= id->positions) return As(ZoltKind::kOutOfRange, frame);
  return ReadDone(frame, id->read({controller, SlaveNumber(asked.slave), data.high}));
}

std::string AnswerMemoryWrite(const std::string& frame, const ZoltData& data,
                              Controller& controller, WriteEffect effect) {
  const auto page = ZoltPage(data.id);
  if (!page) return As(ZoltKind::kUnknownId, frame);
  if (effect == WriteEffect::kRejected) return As(ZoltKind::kOutOfRange, frame);
  if (effect == WriteEffect::kStored) {
    controller.WriteByte(static_cast<std::uint16_t>(*page << 8 | data.high), data.low);
  }
  return As(ZoltKind::kWriteDone, frame);
}

bool Takes(const DataId& id, const ZoltData& data, bool has_wrong_limits) {
  if (!has_wrong_limits || !id.wrong_limits) return id.takes(data.high, data.low);
  return data.high >= id.wrong_limits->lowest && data.high <= id.wrong_limits->highest;
}

std::string AnswerWrite(const std::string& frame, const ZoltRequest& asked, Controller& controller,
                        WriteEffect effect, bool has_wrong_limits) {
  const ZoltData& data = *asked.data;
  if (asked.data_class == kZoltMemoryClass) {
    return AnswerMemoryWrite(frame, data, controller, effect);
  }
  const DataId* id = FindDataId(asked.data_class, data.id);
  if (id == nullptr || !id->store) return As(ZoltKind::kUnknownId, frame);
  if (!Takes(*id, data, has_wrong_limits) || effect == WriteEffect::kRejected) {
    return As(ZoltKind::kOutOfRange, frame);
  }
  if (effect == WriteEffect::kStored) id->store(controller, data.high, data.low);
  return As(ZoltKind::kWriteDone, frame);
}

std::string What(const std::string& frame, const ZoltRequest& asked) {
  const Fields fields(frame);
  const std::string data_id = "class " + std::to_string(asked.data_class) + " ID " + fields.id;
  const bool memory = asked.data_class == kZoltMemoryClass;
  if (!asked.write) return "read " + (memory ? "memory " + fields.data : data_id);
  const auto page = memory ? ZoltPage(asked.data->id) : std::nullopt;
  if (!page) return "write " + fields.data + " to " + data_id;
  return "write " + HexDigits(asked.data->low, 2) + " to memory " + HexDigits(*page, 2) +
         HexDigits(asked.data->high, 2);
}

std::string Meaning(const std::string& frame, const ZoltRequest& asked) {
  const std::string slave = std::string(", slave ") + asked.slave;
  return (asked.data ? What(frame, asked) : "corrupted, no digits") + slave;
}

char OtherSlave(char slave, Random& random) {
  const int count = static_cast<int>(kZoltSlaves.size());
  const int at = (SlaveNumber(slave) + 1 + random.Below(count - 1)) % count;
  return kZoltSlaves[static_cast<std::size_t>(at)];
}

std::uint16_t OtherWord(std::uint16_t word, Random& random) {
  return static_cast<std::uint16_t>(word ^ (1 + random.Below(0xFFFF)));
}

// Another of the acknowledgements: of a read or a write, of any class.
char OtherType(char type, Random& random) {
  std::string others;
  for (const ZoltKind kind : {ZoltKind::kReadDone, ZoltKind::kWriteDone}) {
    for (int data_class = 1; data_class <= kZoltMemoryClass; ++data_class) {
      const char other = static_cast<char>(static_cast<int>(kind) << 4 | data_class);
      if (other != type) others += other;
    }
  }
  return others[static_cast<std::size_t>(random.Below(static_cast<int>(others.size())))];
}

// Another data ID that can be read.
const DataId& OtherId(std::uint16_t asked, Random& random) {
  const auto& ids = DataIds();
  while (true) {
    const DataId& id = ids[static_cast<std::size_t>(random.Below(static_cast<int>(ids.size())))];
    if (id.read && id.id != asked) return id;
  }
}

// Of another address where the memory was asked, of another ID otherwise.
std::string AnswerOfOther(const std::string& frame, const Controller& controller, Random& random) {
  const auto asked = ParseZoltRequest(frame).request;
  const ZoltData data = asked && asked->data ? *asked->data : ZoltData{};
  Fields other(frame);
  if (asked && asked->data_class == kZoltMemoryClass) {
    other.type = static_cast<char>(kZoltMemoryClass);
    other.id = HexDigits(kZoltMemoryRead, 4);
    other.data = HexDigits(OtherWord(data.Word(), random), 4);
  } else {
    const DataId& id = OtherId(data.id, random);
    other.type = static_cast<char>(id.data_class);
    other.id = HexDigits(id.id, 4);
    other.data = "0000";
  }
  const std::string request = other.Build();
  return AnswerRead(request, *ParseZoltRequest(request).request, controller);
}

}  // namespace

ZoltSlave::ZoltSlave(std::string addresses, bool answers_corrupted, bool has_wrong_limits,
                     WriteOnceCells write_once)
    : addresses_(std::move(addresses)),
      answers_corrupted_(answers_corrupted),
      has_wrong_limits_(has_wrong_limits),
      write_once_(std::move(write_once)),
      collector_(kZoltStart, LookAtFrame) {}

std::optional<Heard> ZoltSlave::Hear(char byte) {
  auto found = collector_.Hear(byte);
  if (!found) return std::nullopt;
  if (auto* ignored = std::get_if<Ignored>(&*found)) return std::move(*ignored);
  return Complete(std::move(std::get<std::string>(*found)));
}

Heard ZoltSlave::Complete(std::string frame) const {
  const ZoltParsed parsed = ParseZoltRequest(frame);
  if (!parsed.request) {
    const bool answers = parsed.corrupted && answers_corrupted_ && IsOurs(Fields(frame).slave);
    if (answers) return Request{std::move(frame), false, "corrupted, " + parsed.refusal};
    return Ignored{std::move(frame), parsed.refusal};
  }
  if (!IsOurs(parsed.request->slave)) return Ignored{std::move(frame), "for another slave"};
  std::string meaning = Meaning(frame, *parsed.request);
  return Request{std::move(frame), parsed.request->write, std::move(meaning)};
}

WriteEffect ZoltSlave::EffectAt(const ZoltRequest& asked, WriteEffect effect) {
  if (effect == WriteEffect::kRejected) return effect;
  const auto page = ZoltPage(asked.data->id);
  if (asked.data_class != kZoltMemoryClass || !page) return effect;
  const auto address = static_cast<std::uint16_t>(*page << 8 | asked.data->high);
  const bool refuses = write_once_.refusing.contains(address);
  if (!refuses && !write_once_.forgetful.contains(address)) return effect;
  if (written_.contains(address)) return refuses ? WriteEffect::kRejected : WriteEffect::kForgotten;
  if (effect == WriteEffect::kStored) written_.insert(address);
  return effect;
}

std::string ZoltSlave::Answer(const Request& request, Controller& controller, WriteEffect effect) {
  const ZoltParsed parsed = ParseZoltRequest(request.bytes);
  if (!parsed.request || !parsed.request->data) return As(ZoltKind::kCorrupted, request.bytes);
  if (parsed.request->write) {
    return AnswerWrite(request.bytes, *parsed.request, controller,
                       EffectAt(*parsed.request, effect), has_wrong_limits_);
  }
  return AnswerRead(request.bytes, *parsed.request, controller);
}

std::string ZoltSlave::WrongAnswer(const Fault& fault, const Request& request,
                                   const std::string& answer, const Controller& controller,
                                   Random& random) {
  Fields fields(answer);
  switch (fault.kind) {
    case kWrongAddress:
      fields.slave = OtherSlave(fields.slave, random);
      break;
    case kWrongId:
      fields.id = HexDigits(OtherWord(ParseAddress(fields.id).value_or(0), random), 4);
      break;
    case kWrongKind:
      fields.type = OtherType(fields.type, random);
      break;
    case kShortCount:
      fields.data.erase(0, fields.data.size() / 2);
      break;
    case kLongCount:
      fields.data += RandomDigits(2, random);
      break;
    case kOversize:
      fields.data += RandomDigits(fault.number, random);
      break;
    case kRefused:
      return ZoltFrameAs(fault.number, request.bytes);
    case kAnswerOfOtherRequest:
      return AnswerOfOther(request.bytes, controller, random);
    default:
      return answer;
  }
  return fields.Build();
}

std::string ZoltSlave::ForeignTraffic(Random& random) {
  char slave = kZoltSlaves.front();
  for (const char one : kZoltSlaves) {
    if (!IsOurs(one)) slave = one;
  }
  const DataId& id = DataIds().front();
  Fields request(
      BuildZoltFrame(static_cast<char>(id.data_class), slave, HexDigits(id.id, 4), "0000"));
  Fields answer(As(ZoltKind::kReadDone, request.Build()));
  answer.data = RandomDigits(4, random);
  return request.Build() + answer.Build();
}

std::string ZoltSlave::WithWrongCheck(const std::string& answer, Random& random) {
  const std::size_t at = answer.size() - 5;
  const auto right = static_cast<std::uint16_t>(*ParseHex(answer.substr(at, 4)));
  return answer.substr(0, at) + HexDigits(OtherWord(right, random), 4) + kZoltEnd;
}

}  // namespace boiler
