#include "monitor/memory_map.h"

#include "fuzz/claim.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/readers/reader_claims.h"
#include "fuzz/readers/readers.h"
#include "fuzz/readers/small_desk.h"
#include "support/samples.h"

namespace tarnlink {
namespace {

void ClaimLookUps(const MemoryMap& map, const std::string& name, std::int32_t storage_type) {
  Location location;
  location.Specification = 0;
  location.StorageType = storage_type;
  location.ActualVariable = name;
  const std::string address = map.AddressOf(location);
  Claim(address.empty() || address.size() == 4, "an address is four digits");
  Claim(!map.IsMoved(location) || !address.empty(), "what has no address has not moved");
  location.Address = FixedAddress(address);
  Claim(!map.IsMoved(location), "what is where the map says has not moved");
}

void Run(std::string_view input) {
  SmallDesk& desk = CleanDesk();
  FuzzInput bytes(input);
  desk.options.MicroSelect.Select(bytes.Below(4));
  const bool is_listing = bytes.Coin();
  const bool is_of_project = bytes.Coin();
  const std::string path = is_listing ? "/jobs/a.lst" : "/jobs/a.map";
  desk.world.disk().Put(path, bytes.Rest());
  MemoryMap map(desk.main, desk.options);
  if (is_of_project) {
    map.Load(path);
  } else {
    map.LoadClass7(path);
  }
  Claim(map.variables().size() <= kMostMapVariables, "no more variables than there is room for");
  Claim(desk.main.MicroType >= 0 && desk.main.MicroType < desk.options.MicroSelect.count(),
        "the microprocessor exists");
  const std::string& notice = desk.main.lbl_MapNotice.Caption;
  Claim(IsText(notice) && notice.size() < 400, "the notice is a line");
  desk.world.disk().Remove(path);
  if (!map.variables().empty()) ClaimLookUps(map, map.variables().front().Name, kUnsignedWord);
  if (!map.bytes().empty()) ClaimLookUps(map, map.bytes().back().Label, kUnsignedByte);
  if (!map.bits().empty()) ClaimLookUps(map, map.bits().back().Label, kBit);
}

std::vector<std::string> Seeds() {
  const std::string listing =
      "Target CPU\r\nDATA\r\n           flow                    FE20\r\nBITS\r\n"
      "           fan                     FE21.3\r\n";
  using namespace std::string_literals;
  return {"\0\0\0"s + "__cpu_name = ATmega64\r\nENTRY LIST\r\nflow DATA 00000060\r\n",
          "\1\0\0"s + "__cpu_name = ATxmega64\nENTRY LIST\nswfan DATA 00002062\na DATA 00002000\n",
          "\2\1\0"s + listing, "\2\1\1"s + listing, "\0\0\1x"s};
}

}  // namespace

FuzzTarget MemoryMapTarget() { return {"memory_map", Run, Seeds}; }

}  // namespace tarnlink
