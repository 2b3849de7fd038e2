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

// How the pieces of one file become bytes. It grows piece by piece but is read as a whole, so all
// of it is in one encoding, and `DecodeText` gives back what was written. That is Windows-1252 only
// if the heading, which is written first, has a character that is not ASCII, and if it and such
// texts as `may_come` fit; what does not fit later is "?" then. All else is UTF-8.
class LogEncoding {
 public:
  explicit LogEncoding(std::string_view heading = {}, std::string_view may_come = {});
  bool is_utf8() const { return is_utf8_; }

  std::string Bytes(std::string_view piece) const;

 private:
  bool is_utf8_;
};

}  // namespace tarnlink
