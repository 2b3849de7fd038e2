// Another master on the same line: it asks ZOLT slaves for their data IDs, one request behind the
// other, so that whoever listens hears requests and answers. Knows no clock and no port.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace boiler {

// A read that it sends.
struct SecondRequest {
  std::string bytes;
  std::string meaning;  // for the log
};

class SecondMaster {
 public:
  // `addresses` are characters of kZoltSlaves, at least one. `gap_us` is the silence ahead of each
  // request, at least 1.
  SecondMaster(const std::string& addresses, std::int64_t gap_us);

  // How many requests there are until the first one comes again.
  std::size_t Round() const { return requests_.size(); }
  std::int64_t gap_us() const { return gap_us_; }
  // The next request: all data IDs of the first address, each entry of a list by itself, then those
  // of the next address.
  const SecondRequest& Next();

 private:
  std::vector<SecondRequest> requests_;
  std::size_t next_ = 0;
  std::int64_t gap_us_;
};

}  // namespace boiler
