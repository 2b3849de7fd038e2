// The ZOLT protocol in the run: data IDs and memory of up to sixteen slaves, fixed frames with a
// CRC, one exchange at a time.
#pragma once

#include <string>
#include <string_view>

#include "protocols/protocol_run.h"

namespace tarnlink {

// Sends the next read request, or the write of a Location that is written continuously. Skips a
// Location that is not there.
void KEM3_Protocol(ProtocolRun& run);

// Takes the bytes that wait as the answer to the request that is out. An answer of somebody else
// leaves the exchange open, and so does a RunTimeError: the watchdog ends it.
void KEM3SlaveResponse(ProtocolRun& run);

// Sends `value`, two hexadecimal digits for a byte and four for a word, to Location `index`, where
// the scan goes on. Of a memory Location's value only the last two digits go out, and stay. A page
// that may not be written is told and nothing is sent.
void BuildKEM3WriteMessage(ProtocolRun& run, int index, std::string& value);

// True if the frame is bad: its CRC is not that of its body.
bool CheckMessage(std::string_view raw);

class ZoltProtocol final : public Protocol {
 public:
  void SendNextPoll(ProtocolRun& run) override { KEM3_Protocol(run); }
  void TakeResponse(ProtocolRun& run) override { KEM3SlaveResponse(run); }
  void SendWrite(ProtocolRun& run, int index, std::string& value) override {
    BuildKEM3WriteMessage(run, index, value);
  }
};

}  // namespace tarnlink
