#include "simulator/second_master.h"

#include <algorithm>

#include "simulator/bytes.h"
#include "simulator/data_ids.h"
#include "simulator/zolt_frames.h"

namespace boiler {
namespace {

SecondRequest ReadOf(const DataId& id, int position, char address) {
  const std::string digits = HexDigits(id.id, 4);
  const std::string data = HexDigits(static_cast<unsigned>(position) << 8, 4);
  return {BuildZoltFrame(static_cast<char>(id.data_class), address, digits, data),
          "second master reads class " + std::to_string(id.data_class) + " ID " + digits};
}

}  // namespace

SecondMaster::SecondMaster(const std::string& addresses, std::int64_t gap_us) : gap_us_(gap_us) {
  for (const char address : addresses) {
    for (const DataId& id : DataIds()) {
      for (int position = 0; position < std::max(1, id.positions); ++position) {
        requests_.push_back(ReadOf(id, position, address));
      }
    }
  }
}

const SecondRequest& SecondMaster::Next() {
  const SecondRequest& request = requests_[next_];
  next_ = (next_ + 1) % requests_.size();
  return request;
}

}  // namespace boiler
