#include "files/nec_listing.h"

#include "common/text_file.h"
#include "fuzz/claim.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/readers/reader_claims.h"
#include "fuzz/readers/readers.h"
#include "support/pieces.h"
#include "support/samples.h"

namespace tarnlink {
namespace {

void ClaimSymbol(const std::string& label, std::int32_t address) {
  Claim(IsText(label) && !label.empty() && label.find(' ') == std::string::npos,
        "a label is a word");
  Claim(address >= 0 && address <= 0xFFFF, "an address is four digits");
}

void ClaimListing(const NecListing& listing) {
  for (const NecByte& byte : listing.bytes) ClaimSymbol(byte.Label, byte.address);
  for (const NecBit& bit : listing.bits) {
    ClaimSymbol(bit.Label, bit.address);
    Claim(bit.BitAddress >= 0 && bit.BitAddress <= 9, "a bit is a digit");
  }
  std::int32_t number = -1;
  if (!listing.bytes.empty()) {
    Claim(!GetNECLstByteAddress(listing.bytes, listing.bytes.back().Label).empty(),
          "a byte is found by its label");
  }
  if (listing.bits.empty()) return;
  Claim(
      !GetNECLstBitAddress(listing.bits, listing.bits.back().Label, number).empty() && number >= 0,
      "a bit is found by its label");
}

void Run(std::string_view input) {
  FuzzInput bytes(input);
  const std::size_t piece = 1 + std::size_t{bytes.Byte()};
  const std::string_view text = bytes.Rest();
  const NecListing listing = ReadInPieces(NecListingReader(), text, text.size());
  const NecListing again = ReadInPieces(NecListingReader(), text, piece);
  Claim(again.bytes == listing.bytes && again.bits == listing.bits &&
            again.skipped_lines == listing.skipped_lines,
        "pieces make no difference");
  Claim(listing.bytes.size() + listing.bits.size() +
                static_cast<std::size_t>(listing.skipped_lines) <=
            LineCount(text),
        "a symbol is a line");
  ClaimListing(listing);
}

std::vector<std::string> Seeds() {
  return {
      "\7DATA\r\n           flow                    FE20\r\nBITS\r\n"
      "           fan                     FE21.3\r\n",
      "\1SHRTDAT\n           a                       -E20\nCODE\nBITS\n"
      "           b                       FE21.x\n",
      "\7BITS\n           c                       FE22.9\n",
      "\xFF" + SampleText("nec.lst").substr(0, 600),
      "\xFF" + SampleText("nec.lst").substr(6'000, 600)};
}

}  // namespace

FuzzTarget NecListingTarget() { return {"nec_listing", Run, Seeds}; }

}  // namespace tarnlink
