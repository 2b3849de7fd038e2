// The names of the controller's variables, read from the map or the listing of its build, with
// their addresses.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "files/avr_map.h"
#include "files/map_file_type.h"
#include "files/nec_listing.h"
#include "monitor/frm_main.h"
#include "monitor/frm_options.h"

namespace tarnlink {

// Which build output a file is; kUnknownMap also for one that cannot be read.
std::int16_t CheckMapFileType(Files& files, const std::string& FileName);

class MemoryMap {
 public:
  // Becomes `LoadClass7` of the main form. Both outlive it.
  MemoryMap(frm_Main& main, frm_Options& options);

  // Reads a map or listing of any kind and has it decide the microprocessor. `lbl_MapNotice` says
  // what was read. Without one, or with a file of no kind, the options decide again, in silence.
  // Never throws.
  void LoadClass7(const std::string& FileName);
  // The same with a listing, which is taken as it is: the options stay as they are, but the
  // microprocessor is a NEC from now on. Never throws.
  void LoadListing(const std::string& path);

  // A file of a project or from the desktop, by its last three letters.
  void Load(const std::string& path);

  // By address; the listing's in the order of the file.
  const std::vector<MapVariable>& variables() const { return map_.variables; }
  const std::vector<NecByte>& bytes() const { return listing_.bytes; }
  const std::vector<NecBit>& bits() const { return listing_.bits; }

  // The address that the present map has for the name of a Location of memory, or nothing.
  std::string AddressOf(const Location& location) const;
  // Whether that is another one than the Location has, which is then to follow the map.
  bool IsMoved(const Location& location) const;

 private:
  bool ReadAtmelMapFile(const std::string& FileName);
  void ReadNECLstFile(const std::string& FileName);
  bool ReadToItsEnd(const std::string& FileName, const std::function<bool(std::string_view)>& take);
  // The map decides the microprocessor, or the options do.
  void MapDecides(bool decides);
  void ShowUnknown(const std::string& path);
  void ShowNotice(const std::string& path, const std::string& hint);
  std::string Moves() const;

  frm_Main& main_;
  frm_Options& options_;
  AvrMap map_;
  NecListing listing_;
};

}  // namespace tarnlink
