// Protocols of the tests' own, made to show what the run does around a protocol.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "protocols/protocol_run.h"
#include "protocols/scan_order.h"

namespace tarnlink {

// Fixed frames of 16 bytes. Passes over Locations that are not to be scanned, and never starts
// `tmr_MsgTimeout`: only the watchdog ends a silence. Shows a response as it is.
class FrameProtocol final : public Protocol {
 public:
  struct Traits {
    int threshold = 16;
    bool skip_followers = false;
    // The pause behind a receive event by the index of the speed; none for a protocol that
    // receives whole frames.
    std::vector<int> pauses = {};
    bool response_fails = false;
  };

  FrameProtocol() = default;
  explicit FrameProtocol(Traits traits) : traits_(std::move(traits)) {}

  // The request for a Location, such as "\rread 0012 0123\n".
  static std::string Request(const std::string& address) { return "\rread " + address + " 0123\n"; }

  void SendNextPoll(ProtocolRun& run) override {
    RunFields& fields = run.fields();
    run.Comm().SetRThreshold(traits_.threshold);
    StepToNextScannedLocation(run, traits_.skip_followers);
    const int index = fields.MsgPointer;
    if (!run.NameVisible(index)) {
      fields.message_received = true;
      return;
    }
    if (!fields.CommRunning) return;
    run.LogRequest(index);
    run.Comm().Output(Request(run.locations()[index].Address));
    run.tmr_MsgTimeout().SetInterval(run.MessageTimeout());
  }

  void TakeResponse(ProtocolRun& run) override {
    if (traits_.response_fails) throw RunTimeError(kOverflow, "A number was too great.");
    run.tmr_noresponse().SetEnabled(false);
    run.tmr_MsgTimeout().SetEnabled(false);
    const int index = run.fields().MsgPointer;
    run.ShowValue(index, run.Comm().Input());
    run.RecordValue(index);
    FinishLocation(run, index);
    run.fields().message_received = true;
  }

  void SendWrite(ProtocolRun& run, int, std::string& value) override { run.Comm().Output(value); }

  int ReceivePause(int baud_index) const override {
    ++pauses_asked_;
    return traits_.pauses.empty() ? 0 : traits_.pauses.at(static_cast<std::size_t>(baud_index));
  }

  // How often a receive event has asked for the pause.
  int pauses_asked() const { return pauses_asked_; }

 private:
  Traits traits_;
  mutable int pauses_asked_ = 0;
};

}  // namespace tarnlink
