// What a user asked for and cannot have, as a whole sentence to show.
#pragma once

#include <stdexcept>

namespace boiler {

class Problem : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace boiler
