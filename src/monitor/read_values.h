// What the boxes of the screen showed when their Locations were last read, so that what was
// written, typed or left over is not taken for a value of the controller.
#pragma once

#include <map>
#include <string>

#include "monitor/location_table.h"

namespace tarnlink {

class ReadValues {
 public:
  // Location `index`, as it is now, has been read, and its box shows `text`.
  void Note(int index, const Location& location, const std::string& text);
  // Whether `text` is what was read, and the Location still asks for the same in the same way.
  bool Holds(int index, const Location& location, const std::string& text) const;

 private:
  struct Value {
    Location location;
    std::string text;
  };

  std::map<int, Value> values_;
};

}  // namespace tarnlink
