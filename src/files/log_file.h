// The texts of a run's log, `.log`: a heading of two lines, then a row for each round of the scan,
// its fields separated by tabs. What stands in which row is for the run to say.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarnlink {

struct LogColumn {
  std::string Alias;
  std::string Address;
};

// "log 12.log"
std::string LogName(int MaxId);

// A text as it can stand in a field: what would end the field or its row is a blank.
std::string LogField(std::string_view text);

// The two lines in front of the rows. `date` is the day in the form "5-Mar-2002".
std::string LogHeading(std::string_view date, std::string_view screen_file,
                       const std::vector<LogColumn>& columns);

// How the pieces of one log become bytes. A log grows piece by piece but is read as a whole, so all
// of it is in the encoding that `sample`, its heading and such times as may come, has as a whole.
class LogEncoding {
 public:
  explicit LogEncoding(std::string_view sample = {});

  std::string Bytes(std::string_view piece) const;

 private:
  bool is_utf8_;
};

}  // namespace tarnlink
