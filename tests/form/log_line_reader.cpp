#include "form/log_line_reader.h"

#include <array>
#include <cstdint>
#include <cstdio>

#include "simulator/bytes.h"
#include "simulator/modbus_frames.h"
#include "simulator/tarnlink_frames.h"
#include "simulator/zolt_frames.h"

namespace tarnlink {
namespace {

// The Locations by what a request says of them.
class LocationFinder : public LogLineReader {
 protected:
  explicit LocationFinder(const std::vector<Location>& locations) : locations_(locations) {}

  void Add(const std::string& key, int index) { index_of_.emplace(key, index); }
  int IndexOf(const std::string& key) const {
    const auto found = index_of_.find(key);
    return found == index_of_.end() ? 0 : found->second;
  }
  const Location& At(int index) const { return locations_.at(static_cast<std::size_t>(index - 1)); }
  int count() const { return static_cast<int>(locations_.size()); }

 private:
  const std::vector<Location> locations_;
  std::map<std::string, int> index_of_;
};

class TarnlinkLine final : public LocationFinder {
 public:
  explicit TarnlinkLine(const std::vector<Location>& locations) : LocationFinder(locations) {
    for (int i = 1; i <= count(); ++i) Add(At(i).Address, i);
  }

  Request RequestOf(std::string_view frame) const override {
    const bool writes = frame[1] == boiler::kWrite || frame[1] == boiler::kWriteWord;
    return {IndexOf(std::string(frame.substr(2, 4))), writes};
  }

  // The sum is not looked at: this protocol takes all that is long enough.
  std::vector<std::string> TextsOf(int index, std::string_view answer) const override {
    constexpr std::size_t kAround = 9;  // start, command, address, sum, end
    const std::size_t digits = At(index).StorageType < kUnsignedWord ? 2 : 4;
    if (answer.size() != kAround + digits) return {};
    const unsigned held = boiler::ParseHex(answer.substr(6, digits)).value_or(0);
    // A word has its sign, in hexadecimal digits too.
    const int number = digits == 2 ? static_cast<int>(held) : static_cast<std::int16_t>(held);
    if (At(index).Representation == kDecimal) return {std::to_string(number)};
    std::array<char, 9> text;
    std::snprintf(text.data(), text.size(), "%X", static_cast<unsigned>(number));
    return {text.data()};
  }
};

class ZoltLine final : public LocationFinder {
 public:
  explicit ZoltLine(const std::vector<Location>& locations) : LocationFinder(locations) {
    for (int i = 1; i <= count(); ++i) {
      const int data_class = IsMemory(i) ? boiler::kZoltMemoryClass : At(i).Class;
      Add(At(i).LocSlaveAddress + std::to_string(data_class) + At(i).Address, i);
    }
  }

  // A write of memory names its address in another way.
  Request RequestOf(std::string_view frame) const override {
    constexpr int kWrites = 0x80;
    const int type = static_cast<unsigned char>(frame[1]);
    const int data_class = type & 7;
    const bool reads_memory = type == boiler::kZoltMemoryClass;
    return {IndexOf(std::string(frame.substr(2, 1)) + std::to_string(data_class) +
                    std::string(frame.substr(reads_memory ? 7 : 3, 4))),
            (type & kWrites) != 0};
  }

  std::vector<std::string> TextsOf(int index, std::string_view answer) const override {
    const auto kind = static_cast<boiler::ZoltKind>(static_cast<unsigned char>(answer[1]) >> 4);
    // A refusal is taken whether its check holds or not.
    if (kind == boiler::ZoltKind::kUnknownId) return {"NA"};
    if (kind != boiler::ZoltKind::kReadDone || !boiler::ZoltCheckHolds(answer)) return {};
    unsigned number = boiler::ParseHex(answer.substr(7, 4)).value_or(0);
    const bool is_word =
        IsMemory(index) ? At(index).StorageType == kUnsignedWord : At(index).SelectByte == kBoth;
    if (!is_word) number &= 0xFFU;
    if (At(index).Representation == kDecimal) return {std::to_string(number)};
    return {boiler::HexDigits(number, is_word ? 4 : 2)};
  }

 private:
  bool IsMemory(int index) const { return At(index).Specification == 0; }
};

// Registers are whole words here.
class ModbusLine final : public LocationFinder {
 public:
  explicit ModbusLine(const std::vector<Location>& locations) : LocationFinder(locations) {
    for (int i = 1; i <= count(); ++i) {
      if (!At(i).RegisterFollower) Add(At(i).LocSlaveAddress + "/" + At(i).Address, i);
    }
  }

  Request RequestOf(std::string_view frame) const override {
    const boiler::ModbusRequest request = boiler::ParseModbusRequest(frame);
    return {IndexOf(std::to_string(request.slave) + "/" + boiler::HexDigits(request.first, 4)),
            request.Write()};
  }

  std::vector<std::string> TextsOf(int index, std::string_view answer) const override {
    constexpr std::size_t kHead = 3;  // slave, function, bytes
    constexpr std::size_t kCheck = 2;
    const auto registers = static_cast<std::size_t>(At(index).NumReg);
    if (answer.size() != kHead + 2 * registers + kCheck || answer[1] != boiler::kReadHolding ||
        !boiler::ModbusCheckHolds(answer)) {
      return {};
    }
    std::vector<std::string> texts;
    for (std::size_t r = 0; r < registers; ++r) {
      const std::size_t at = kHead + 2 * r;
      const unsigned number =
          static_cast<unsigned char>(answer[at]) << 8U | static_cast<unsigned char>(answer[at + 1]);
      texts.push_back(At(index + static_cast<int>(r)).Representation == kDecimal
                          ? std::to_string(number)
                          : boiler::HexDigits(number, 4));
    }
    return texts;
  }
};

}  // namespace

std::unique_ptr<LogLineReader> MakeLogLineReader(int protocol,
                                                 const std::vector<Location>& locations) {
  if (protocol == kZoltProtocol) return std::make_unique<ZoltLine>(locations);
  if (protocol == kModbusProtocol) return std::make_unique<ModbusLine>(locations);
  return std::make_unique<TarnlinkLine>(locations);
}

}  // namespace tarnlink
