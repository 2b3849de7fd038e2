#include "platform/qt/line_errors.h"

#include <linux/serial.h>
#include <sys/ioctl.h>

#include "platform/serial_port.h"

namespace tarnlink {

std::optional<LineCounters> ReadLineCounters(int handle) {
  serial_icounter_struct counted{};
  if (ioctl(handle, TIOCGICOUNT, &counted) != 0) return std::nullopt;
  return LineCounters{counted.frame, counted.overrun, counted.buf_overrun};
}

std::vector<int> LineErrorsBetween(const LineCounters& before, const LineCounters& now) {
  std::vector<int> events;
  // Unequal instead of greater: the counters wrap around.
  if (now.frame != before.frame) events.push_back(kCommFrame);
  if (now.overrun != before.overrun) events.push_back(kCommOverrun);
  if (now.buffer_overrun != before.buffer_overrun) events.push_back(kCommReceiveOver);
  return events;
}

}  // namespace tarnlink
