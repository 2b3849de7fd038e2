#include "monitor/memory_map.h"

#include "common/paths.h"
#include "common/run_time_error.h"
#include "common/text.h"
#include "monitor/project_paths.h"
#include "platform/path_resolver.h"

namespace tarnlink {

namespace {

constexpr std::int16_t kAddressDigits = 4;
constexpr int kFirstDecided = 0;  // buttons of `MicroSelect` that a map decides among
constexpr int kLastDecided = 2;

// "1 line", "2 lines".
std::string Counted(int number, const std::string& what) {
  return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
}

// What is to be done where a map was read through the window of the other family.
std::string WindowHint(std::int16_t window, std::int16_t type) {
  const bool as_atmega = window == kAtmegaMap;
  if (as_atmega == (type == kAtmegaMap)) return {};
  return as_atmega ? ", as an ATMega's: press Ok in the options to read it as an XMega's"
                   : ", as an XMega's: press Ok in the options to read it as an ATMega's";
}

}  // namespace

std::int16_t CheckMapFileType(Files& files, const std::string& FileName) {
  MapFileType type(FileName);
  try {
    files.ReadPieces(FileName, [&](std::string_view piece) { return type.Take(piece); });
  } catch (const RunTimeError&) {
    return kUnknownMap;
  }
  return type.Finish();
}

MemoryMap::MemoryMap(frm_Main& main, frm_Options& options) : main_(main), options_(options) {
  main_.LoadClass7 = [this](const std::string& path) { LoadClass7(path); };
}

void MemoryMap::LoadClass7(const std::string& FileName) {
  const std::string path = UsableFile(FileName, main_.platform().files());
  frm_Main::ShowNotice(main_.lbl_MapNotice, "");
  MapDecides(true);
  const std::int16_t type = CheckMapFileType(main_.platform().files(), path);
  if (type == kUnknownMap) {
    map_ = {};
    listing_ = {};
    MapDecides(false);
    return ShowUnknown(path);
  }
  // The window of the memory goes by the microprocessor before this map: a map of the other family
  // is read right the second time.
  const std::int16_t window = main_.MicroType;
  if (type == kNecListing) {
    ReadNECLstFile(path);
  } else if (!ReadAtmelMapFile(path)) {
    MapDecides(false);
  }
  options_.MicroSelect.Select(type);
  main_.MicroType = type;
  ShowNotice(path, type == kNecListing ? "" : WindowHint(window, type));
}

void MemoryMap::LoadListing(const std::string& path) {
  ReadNECLstFile(path);
  main_.MicroType = kNecListing;
  ShowNotice(path, "");
}

void MemoryMap::Load(const std::string& path) {
  if (ToLower(Right(path, 3)) == "map") {
    LoadClass7(path);
  } else {
    LoadListing(path);
  }
}

void MemoryMap::MapDecides(bool decides) {
  main_.Toolbar1(6).Enabled = decides;
  options_.frmMicro.Enabled = !decides;
  for (int i = kFirstDecided; i <= kLastDecided; ++i) options_.MicroSelect(i).Enabled = !decides;
}

// What was read before a failure counts.
bool MemoryMap::ReadAtmelMapFile(const std::string& FileName) {
  AvrMapReader reader(main_.MicroType);
  const bool is_whole =
      ReadToItsEnd(FileName, [&](std::string_view piece) { return reader.Take(piece); });
  map_ = reader.Finish(is_whole);
  return map_.has_entry_list;
}

void MemoryMap::ReadNECLstFile(const std::string& FileName) {
  NecListingReader reader;
  const bool is_whole = ReadToItsEnd(FileName, [&](std::string_view piece) {
    reader.Take(piece);
    return true;
  });
  listing_ = reader.Finish(is_whole);
}

// False if the reading failed on its way.
bool MemoryMap::ReadToItsEnd(const std::string& FileName,
                             const std::function<bool(std::string_view)>& take) {
  try {
    main_.platform().files().ReadPieces(FileName, take);
    return true;
  } catch (const RunTimeError&) {
    return false;
  }
}

std::string MemoryMap::AddressOf(const Location& location) const {
  if (IsAvr(main_.MicroType)) {
    return GetVyroLstByteAddress(variables(), location.ActualVariable, location.StorageType);
  }
  if (main_.MicroType != kNecListing) return {};
  std::int32_t bit = 0;
  const std::string address = location.StorageType == kBit
                                  ? GetNECLstBitAddress(bits(), location.ActualVariable, bit)
                                  : GetNECLstByteAddress(bytes(), location.ActualVariable);
  return address.empty() ? address : FormatHex(address, kAddressDigits);
}

// A bit stays where it is, whatever the map says.
bool MemoryMap::IsMoved(const Location& location) const {
  if (location.StorageType == kBit) return false;
  const std::string address = AddressOf(location);
  return !address.empty() && FixedAddress(address) != location.Address;
}

void MemoryMap::ShowNotice(const std::string& path, const std::string& hint) {
  const bool is_listing = main_.MicroType == kNecListing;
  const std::size_t read = is_listing ? bytes().size() + bits().size() : variables().size();
  const int skipped = is_listing ? listing_.skipped_lines : map_.skipped_lines;
  std::string text = StripFileFromPath(path) + ": " + Counted(static_cast<int>(read), "variable") +
                     " read, " + Counted(skipped, "line") + " skipped";
  if (!is_listing && map_.is_cut) text += ", the rest left out: the list is full";
  if (!is_listing && !map_.has_entry_list) text += ", no entry list found";
  frm_Main::ShowNotice(main_.lbl_MapNotice, text + hint + Moves());
}

// Of a map that the project names; the options may name one that is not there.
void MemoryMap::ShowUnknown(const std::string& path) {
  if (path.empty() || path != FileOfGroup(main_, "lst", "")) return;
  const bool is_there = HasFile(main_.platform().files(), path);
  frm_Main::ShowNotice(main_.lbl_MapNotice,
                       StripFileFromPath(path) + ": " +
                           (is_there ? "no memory map of a known kind" : "there is no such file") +
                           ", so there are no names");
}

// What the map means for the screen as it stands: a screen takes the new addresses when it is
// opened again.
std::string MemoryMap::Moves() const {
  int moved = 0;
  int lost = 0;
  for (int i = 1; i <= main_.MaxId; ++i) {
    const Location& location = main_.Locations[i];
    if (location.Specification != 0 || !main_.IsShown(i)) continue;
    if (location.ActualVariable.empty() || location.ActualVariable == Location().ActualVariable) {
      continue;
    }
    const std::string address = AddressOf(location);
    if (address.empty()) ++lost;
    if (IsMoved(location)) ++moved;
  }
  std::string text;
  if (moved > 0) text += "; " + Counted(moved, "location") + " moved";
  if (lost > 0) {
    text +=
        "; " + Counted(lost, "location") + " without " + (lost == 1 ? "its" : "their") + " name";
  }
  return text;
}

}  // namespace tarnlink
