#include "files/avr_map.h"

#include "common/numbers.h"
#include "fuzz/claim.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/readers/reader_claims.h"
#include "fuzz/readers/readers.h"
#include "monitor/location_table.h"
#include "support/pieces.h"
#include "support/samples.h"

namespace tarnlink {
namespace {

void ClaimVariable(const MapVariable& variable) {
  Claim(IsText(variable.Name) && variable.Name.find(' ') == std::string::npos, "a name is a word");
  const std::string& address = variable.address;
  Claim(address.size() == 4 && address[0] == 'F' &&
            address.find_first_not_of("0123456789ABCDEF") == std::string::npos,
        "an address is four digits");
  Claim(variable.StorageType >= kUnsignedByte && variable.StorageType <= kSignedWord,
        "it is a byte or a word");
  Claim(variable.Size >= 0, "variables follow each other");
}

void ClaimLookUp(const AvrMap& map, const MapVariable& variable) {
  for (const char* element : {"", "+1", "+99999999999", "+-70000", "+x"}) {
    const std::string address =
        GetVyroLstByteAddress(map.variables, variable.Name + element, variable.StorageType);
    Claim(address.empty() || address.size() == 4, "an address is four digits");
    Claim(!address.empty() || variable.Name.find('+') != std::string::npos, "a name is found");
  }
}

void Run(std::string_view input) {
  FuzzInput bytes(input);
  const auto micro_type = static_cast<std::int16_t>(bytes.Below(4));
  const std::size_t piece = 1 + std::size_t{bytes.Byte()};
  const std::string_view text = bytes.Rest();
  const AvrMap map = ReadInPieces(AvrMapReader(micro_type), text, text.size());
  const AvrMap again = ReadInPieces(AvrMapReader(micro_type), text, piece);
  Claim(again.variables == map.variables && again.is_cut == map.is_cut &&
            again.has_entry_list == map.has_entry_list && again.skipped_lines == map.skipped_lines,
        "pieces make no difference");
  Claim(map.variables.size() <= kMostMapVariables, "no more variables than there is room for");
  Claim(!map.is_cut || map.variables.size() == kMostMapVariables, "cut only if it is full");
  Claim(map.has_entry_list || map.variables.empty(), "variables are entries of the list");
  for (std::size_t i = 0; i < map.variables.size(); ++i) {
    ClaimVariable(map.variables[i]);
    Claim(i == 0 || map.variables[i - 1].address <= map.variables[i].address, "by address");
  }
  if (!map.variables.empty()) ClaimLookUp(map, map.variables.front());
}

std::vector<std::string> Seeds() {
  const std::string map = "ENTRY LIST\r\nflow DATA 00000060\r\nsw_fan  DATA 00000062\nx DATA 1\n";
  return {std::string("\0\7", 2) + map, "\1\1ENTRY LIST\na DATA 00002000\nuw DATA 00002EFF\n",
          std::string("\0\xFF", 2) + SampleText("atmega.map").substr(8'000, 600),
          "\1\xFF" + SampleText("xmega.map").substr(8'000, 600)};
}

}  // namespace

FuzzTarget AvrMapTarget() { return {"avr_map", Run, Seeds}; }

}  // namespace tarnlink
