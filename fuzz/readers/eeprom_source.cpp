#include "files/eeprom_source.h"

#include "common/text_file.h"
#include "files/eeprom_output.h"
#include "fuzz/claim.h"
#include "fuzz/readers/reader_claims.h"
#include "fuzz/readers/readers.h"
#include "support/eeprom_text.h"
#include "support/samples.h"

namespace tarnlink {
namespace {

void ClaimBlock(const EepromBlock& block) {
  std::array<std::uint8_t, kEepromBlock> bytes{};
  for (std::size_t i = 0; i < block.size(); ++i) {
    const EepromRecord& record = block[i];
    bytes[i] = record.DecValue;
    Claim(Val("&H" + record.HexValue) == record.DecValue, "both values are the same");
    Claim(IsText(record.Address) && IsText(record.Comment), "its texts are texts");
  }
  // A wrong address is refused, which takes long: one of each block is enough.
  Tried([&] { return AddressOf(block.front()); });
  const int check = bytes[kEepromBlockData] + 256 * bytes[kEepromBlockData + 1];
  Claim(check == EepromCheck(bytes), "the check bytes are those of the data");
}

// Bytes as the image of an EEPROM, written as a source and read again.
void ClaimImage(std::string_view input) {
  std::vector<std::uint8_t> bytes(input.begin(), input.end());
  bytes.resize(bytes.size() / kEepromBlock * kEepromBlock);
  constexpr std::uint16_t kFirst = 0x8000;
  const auto source = Tried([&] { return ReadEepromSource(EepromDefText(kFirst, bytes)); });
  Claim(source.has_value(), "what is written can be read");
  const std::string image = BinBytes(*source);
  Claim(image.size() == bytes.size(), "no byte is lost");
  for (std::size_t i = 0; i < image.size(); ++i) {
    const bool is_data = i % kEepromBlock < kEepromBlockData;
    Claim(!is_data || static_cast<std::uint8_t>(image[i]) == bytes[i], "each byte is as it was");
  }
}

void Run(std::string_view input) {
  constexpr std::size_t kMostImage = 16;
  ClaimImage(input.substr(0, kMostImage));
  const std::string text = DecodeText(input);
  const auto source = Tried([&] { return ReadEepromSource(text); });
  if (!source) return;
  Claim(source->preamble.size() + kEepromBlock * source->blocks.size() <= LineCount(text),
        "each record is a line");
  for (const EepromBlock& block : source->blocks) ClaimBlock(block);
  Claim(BinBytes(*source).size() == kEepromBlock * source->blocks.size(), "a record is a byte");
  const std::string tlk = TlkText(*source);
  Claim(IsText(tlk), "the text file is a text");
  Claim(FileChecksum(EncodeText(tlk)) >= 0, "a sum is not negative");
}

std::vector<std::string> Seeds() {
  const auto zero = [](int) { return 0; };
  return {SampleText("boiler.def").substr(0, 400), "START\n" + DefBlock(0x8000, zero) + "\nEND\n",
          "head\r\nSTART\r\n\r\n" + DefBlock(0x8010, [](int offset) { return offset; }),
          "START\n00,1,0X8000,x\n", "START\n\"00\",0,0X8000,\"a,b\"\n"};
}

}  // namespace

FuzzTarget EepromSourceTarget() { return {"eeprom_source", Run, Seeds}; }

}  // namespace tarnlink
