// Small steps with port and timer that every service tool takes.
#pragma once

#include <string>

#include "common/run_time_error.h"
#include "platform/serial_port.h"
#include "platform/timer.h"

namespace tarnlink {

// Whatever the device says of it.
void CloseQuietly(SerialPort& port);

// Its interval begins now, whether it ran before or not.
void Restart(Timer& timer);

// Why the port cannot be used, as a sentence.
std::string PortTrouble(const RunTimeError& error);

}  // namespace tarnlink
