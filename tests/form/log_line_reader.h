// What the frames on the line mean for a log, read by the simulated boiler's own units, which share
// nothing with the program's. Locations show decimal or hexadecimal numbers; under ZOLT and Modbus
// they have no sign.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "monitor/location_table.h"

namespace tarnlink {

class LogLineReader {
 public:
  struct Request {
    int index = 0;  // the Location that is asked for; of a write only where it says it
    bool writes = false;
  };

  virtual ~LogLineReader() = default;

  virtual Request RequestOf(std::string_view frame) const = 0;
  // What the log holds of the Location that was asked for, and of those that are read with it;
  // nothing where the answer is none.
  virtual std::vector<std::string> TextsOf(int index, std::string_view answer) const = 0;
};

// Of the protocol with that index, for a screen of these Locations, 1 and up.
std::unique_ptr<LogLineReader> MakeLogLineReader(int protocol,
                                                 const std::vector<Location>& locations);

}  // namespace tarnlink
