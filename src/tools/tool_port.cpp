#include "tools/tool_port.h"

namespace tarnlink {

void CloseQuietly(SerialPort& port) {
  try {
    if (port.PortOpen()) port.SetPortOpen(false);
  } catch (const RunTimeError&) {
    // It is done with.
  }
}

void Restart(Timer& timer) {
  timer.SetEnabled(false);
  timer.SetEnabled(true);
}

std::string PortTrouble(const RunTimeError& error) {
  const std::string reason = error.what();
  return reason.empty() ? "The communication port can not be used." : reason;
}

}  // namespace tarnlink
