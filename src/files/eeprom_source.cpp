#include "files/eeprom_source.h"

#include <algorithm>
#include <optional>

#include "common/numbers.h"
#include "common/run_time_error.h"
#include "common/shown_text.h"
#include "common/text.h"
#include "common/text_file.h"
#include "files/field_stream.h"
#include "protocols/zolt_crc.h"

namespace tarnlink {
namespace {

constexpr std::string_view kStartMark = "START";
constexpr std::string_view kEndMark = "END";
constexpr std::string_view kAddressMark = "0X";
constexpr std::string_view kHexadecimalDigits = "0123456789ABCDEF";

bool AreDigits(std::string_view text) {
  return ToUpper(text).find_first_not_of(kHexadecimalDigits) == std::string::npos;
}

class SourceReader {
 public:
  explicit SourceReader(std::string_view text) : lines_(text) {}

  EepromSource Read() {
    while (NextLine()) {
      source_.preamble.emplace_back(line_);
      if (!line_.starts_with(kStartMark)) continue;
      while (FindBlock()) ReadBlock();
      break;
    }
    return std::move(source_);
  }

 private:
  bool NextLine() {
    if (!lines_.Next(line_)) return false;
    ++number_;
    return true;
  }

  // Stops on the first record of the next block.
  bool FindBlock() {
    while (!is_ended_ && NextLine()) {
      if (line_.starts_with(kEndMark)) return false;
      if (!IsBlank(line_)) return true;
    }
    return false;
  }

  void ReadBlock() {
    EepromBlock block;
    std::array<std::uint8_t, kEepromBlock> bytes{};
    for (std::size_t i = 0; i < block.size(); ++i) {
      if (i > 0 && !NextLine()) RefuseShortBlock(i);
      const bool is_data = i < kEepromBlockData;
      block[i] = ReadRecord(is_data);
      if (is_data) bytes[i] = block[i].DecValue;
    }
    const std::uint16_t check = EepromCheck(bytes);
    SetValue(block[kEepromBlockData], static_cast<std::uint8_t>(check & 0xFF));
    SetValue(block[kEepromBlockData + 1], static_cast<std::uint8_t>(check >> 8));
    source_.blocks.push_back(std::move(block));
    is_ended_ = !NextLine() || line_.starts_with(kEndMark);
    if (!is_ended_ && IsRecord()) {
      Refuse("a record where the line between two blocks of 16 should stand.");
    }
  }

  bool IsRecord() {
    try {
      AddressOf(ReadRecord(true));
      return true;
    } catch (const RunTimeError&) {
      return false;
    }
  }

  static void SetValue(EepromRecord& record, std::uint8_t value) {
    record.HexValue = Stuff(Hex(value), 2);
    record.DecValue = value;
  }

  EepromRecord ReadRecord(bool is_data) {
    const std::string text = std::string(line_) + "\n";
    FieldStream fields(text);
    EepromRecord record;
    record.HexValue = Text(fields, "the hexadecimal value");
    const std::string decimal = Text(fields, "the decimal value");
    record.Address = Text(fields, "the address");
    record.Comment = Text(fields, "the comment");
    if (fields.Next()) Refuse("more than four fields.");
    if (is_data) CheckValue(record, decimal);
    return record;
  }

  std::string Text(FieldStream& fields, const std::string& name) {
    const std::optional<Field> field = fields.Next();
    if (!field) Refuse(name + " is missing.");
    return std::string(field->text);
  }

  // Both values are written down so that a slip in one of them is found.
  void CheckValue(EepromRecord& record, const std::string& decimal) {
    try {
      record.DecValue = ToByte(decimal);
    } catch (const RunTimeError& error) {
      Refuse(std::string("the decimal value: ") + error.what());
    }
    const bool is_hex =
        !record.HexValue.empty() && record.HexValue.size() <= 2 && AreDigits(record.HexValue);
    if (is_hex && Val("&H" + record.HexValue) == record.DecValue) return;
    throw RunTimeError(kTypeMismatch, std::string(kValueError) + ShownText(record.Address) + " " +
                                          ShownText(record.Comment));
  }

  [[noreturn]] void Refuse(const std::string& reason) const {
    throw RunTimeError(kTypeMismatch, "Line " + std::to_string(number_) + ": " + reason);
  }
  [[noreturn]] void RefuseShortBlock(std::size_t records) const {
    throw RunTimeError(kPastEndOfFile, "Line " + std::to_string(number_) +
                                           ": the file ends behind record " +
                                           std::to_string(records) + " of a block of 16.");
  }

  LineReader lines_;
  std::string_view line_;
  int number_ = 0;
  bool is_ended_ = false;
  EepromSource source_;
};

}  // namespace

EepromSource ReadEepromSource(std::string_view text) { return SourceReader(text).Read(); }

std::uint16_t EepromCheck(const std::array<std::uint8_t, kEepromBlock>& block) {
  auto bytes = block;
  std::fill(bytes.begin() + kEepromBlockData, bytes.end(), std::uint8_t{0});
  return CRC16(bytes);
}

std::uint16_t AddressOf(const EepromRecord& record) {
  constexpr std::size_t kLength = 6;
  const std::string address = ToUpper(record.Address);
  if (address.size() != kLength || !address.starts_with(kAddressMark) ||
      !AreDigits(address.substr(kAddressMark.size()))) {
    throw RunTimeError(kTypeMismatch, "The address \"" + ShownText(record.Address) +
                                          "\" is not in the form 0X8012. " +
                                          ShownText(record.Comment));
  }
  const double number = Val("&H" + address.substr(kAddressMark.size()) + "&");
  return static_cast<std::uint16_t>(number);
}

std::string EepromDefText(std::uint16_t first, const std::vector<std::uint8_t>& bytes) {
  constexpr unsigned kFirstPage = 0x8000;
  std::string text = std::string(kStartMark) + std::string(kLineEnd);
  unsigned address = first;
  for (const std::uint8_t byte : bytes) {
    if (address % kEepromBlock == 0 && address != kFirstPage) text += " " + std::string(kLineEnd);
    text += Stuff(Hex(byte), 2) + "," + std::to_string(byte) + ",0X" + Stuff(Hex(address), 4) +
            ", " + std::string(kLineEnd);
    ++address;
  }
  return text;
}

}  // namespace tarnlink
