// The TarnLink protocol in the run: memory of one slave by address, one exchange at a time, and no
// response is ever checked.
#pragma once

#include <string>

#include "protocols/protocol_run.h"

namespace tarnlink {

// Sends the next read request, or skips a Location that is not there.
void Tarnlink_Protocol(ProtocolRun& run);

// Takes the bytes that wait as the answer to the request that is out.
void TarnlinkSlaveResponse(ProtocolRun& run);

// Sends `value`, hexadecimal text, to Location `index`. The scan goes on at that Location, which is
// thereby read back.
void BuildTarnlinkWriteMessage(ProtocolRun& run, int index, const std::string& value);

class TarnlinkProtocol final : public Protocol {
 public:
  void SendNextPoll(ProtocolRun& run) override { Tarnlink_Protocol(run); }
  void TakeResponse(ProtocolRun& run) override { TarnlinkSlaveResponse(run); }
  void SendWrite(ProtocolRun& run, int index, std::string& value) override {
    BuildTarnlinkWriteMessage(run, index, value);
  }
};

}  // namespace tarnlink
