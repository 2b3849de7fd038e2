// The screen file, extension ".wcr": the form's colour, the Locations with the places of their
// boxes, and the text labels. The format is told in docs/formats/wcr.md.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "common/controls.h"
#include "files/field_stream.h"
#include "monitor/location_table.h"

namespace tarnlink {

inline constexpr char kMemoryTag = 'L';  // Specification 0
inline constexpr char kIdTag = 'I';      // class and ID
inline constexpr char kModbusTag = 'M';  // the same while Modbus is selected
inline constexpr char kLabelTag = 'T';

// A Location with the places of its value box and its name box. Fields that the record's tag does
// not store have the defaults of `Location`.
struct LocationRecord {
  char tag = kMemoryTag;  // or kIdTag, kModbusTag
  Location location;
  float value_top = 0;
  float value_left = 0;
  float name_top = 0;
  float name_left = 0;

  bool operator==(const LocationRecord&) const = default;
};

struct LabelRecord {
  std::string caption;
  float top = 0;
  float left = 0;
  Font font;
  Colour colour = kBlack;

  bool operator==(const LabelRecord&) const = default;
};

using ScreenRecord = std::variant<LocationRecord, LabelRecord>;

// Hands out the records one by one, so that what was built before a bad field can stay. First
// `ReadColour`, then `Next` until it is empty. The text must outlive the reader.
//
// All errors are RunTimeErrors: 13 for a field of the wrong kind, 6 for a number out of its type's
// range, 62 for the end of the text inside a record, 9 for a Location beyond the last of the table.
class ScreenFileReader {
 public:
  explicit ScreenFileReader(std::string_view text) : fields_(text) {}

  // The protocol's index by the tags: 1 for "I", 2 for "M", the last one wins, 0 without either.
  // Every field counts, so a Location whose Alias is exactly "M" makes the screen a Modbus screen.
  static int InferProtocol(std::string_view text);

  Colour ReadColour() { return fields_.ReadLong("the form's colour"); }

  // Passes over fields that are no tag.
  std::optional<ScreenRecord> Next();

 private:
  LocationRecord ReadLocation(char tag);
  LabelRecord ReadLabel();

  FieldStream fields_;
  int location_count_ = 0;
};

// The tag under which a Location is saved.
char LocationTag(const Location& location, bool modbus_selected);

// For a Location of an "I" or "M" record: one that shows both bytes is a word, signed or not.
void MakeWordIfBothBytes(Location& location);

// The whole file: one line for the colour, then one for each record in the given order.
std::string WriteScreenFile(Colour form_colour, std::span<const ScreenRecord> records);

}  // namespace tarnlink
