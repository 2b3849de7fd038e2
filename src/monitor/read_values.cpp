#include "monitor/read_values.h"

#include <tuple>

namespace tarnlink {

namespace {

// What decides of which value a text is, and how it is shown.
auto Question(const Location& location) {
  return std::tie(location.Specification, location.StorageType, location.Representation,
                  location.Address, location.BitAddress, location.LocSlaveAddress, location.Class,
                  location.SelectByte, location.FunctionCode);
}

}  // namespace

void ReadValues::Note(int index, const Location& location, const std::string& text) {
  values_.insert_or_assign(index, Value{location, text});
}

bool ReadValues::Holds(int index, const Location& location, const std::string& text) const {
  const auto found = values_.find(index);
  return found != values_.end() && found->second.text == text &&
         Question(found->second.location) == Question(location);
}

}  // namespace tarnlink
