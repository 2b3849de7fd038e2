// A run as its protocol sees it, without forms: answers go in, and what they do is looked at.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/run_time_error.h"
#include "fuzz/claim.h"
#include "fuzz/fuzz_input.h"
#include "protocols/protocol_run.h"

namespace tarnlink {

class LinePort final : public SerialPort {
 public:
  int CommPort() const override { return 1; }
  void SetCommPort(int) override {}
  const std::string& Settings() const override { return settings_; }
  void SetSettings(const std::string& settings) override { settings_ = settings; }
  bool PortOpen() const override { return true; }
  void SetPortOpen(bool) override {}
  void Output(std::string_view bytes) override { sent.assign(bytes); }
  std::string Input() override { return std::exchange(waits, {}); }
  int InBufferCount() const override { return static_cast<int>(waits.size()); }
  void ClearInBuffer() override { waits.clear(); }
  int RThreshold() const override { return threshold_; }
  void SetRThreshold(int bytes) override { threshold_ = bytes; }
  void SetOnComm(std::function<void(int)>) override {}
  void SetWatcher(LineWatcher*) override {}
  std::string LossReason() const override { return {}; }

  std::string waits;
  std::string sent;  // last

 private:
  std::string settings_;
  int threshold_ = 0;
};

class RestingTimer final : public Timer {
 public:
  int Interval() const override { return interval_; }
  void SetInterval(int milliseconds) override { interval_ = milliseconds; }
  bool Enabled() const override { return enabled_; }
  void SetEnabled(bool enabled) override { enabled_ = enabled; }
  void SetOnTimer(std::function<void()>) override {}

 private:
  int interval_ = 0;
  bool enabled_ = false;
};

class LineRun final : public ProtocolRun {
 public:
  static constexpr int kMostLocations = 8;
  static constexpr int kMostRegisters = 20;

  // A screen of 1 to `kMostLocations` Locations of the kind that `protocol` has, with a run on it.
  LineRun(FuzzInput& input, int protocol);

  RunFields& fields() override { return fields_; }
  LocationTable& locations() override { return table_; }
  SerialPort& Comm() override { return port; }
  Timer& Comm_Timer() override { return poll_; }
  Timer& tmr_noresponse() override { return watchdog_; }
  Timer& tmr_MsgTimeout() override { return timeout_; }
  int MessageTimeout() const override { return 3000; }
  bool NameVisible(int index) const override { return index > 0 && index <= fields_.MaxId; }
  std::string NameText(int) const override { return "name"; }
  void ShowValue(int index, const std::string& text) override;
  void ShowPanel(StatusPanelIndex, const std::string& text) override { ClaimOfText(text); }
  void LogRequest(int) override {}
  void RecordValue(int) override { ++recorded; }
  void LogUnreadable(int) override {}
  void EndLogRow() override {}
  void TellProtectedArea() override {}
  void StopZOLTCommunication() override { fields_.CommRunning = false; }
  void DoubtTheLine() override { ++doubts; }

  // Calls `step` as the run does: a RunTimeError ends it. What must hold behind each step is
  // claimed.
  template <class Step>
  void Do(Step step) {
    try {
      step();
    } catch (const RunTimeError&) {
      // The watchdog goes on from here.
    }
    Claim(fields_.MsgPointer >= 0 && fields_.MsgPointer <= fields_.MaxId,
          "the scan stands on a Location, or before the first");
  }
  // The bytes wait with the port, and the protocol takes them.
  void Answer(Protocol& protocol, std::string bytes) {
    port.waits = std::move(bytes);
    Do([&] { protocol.TakeResponse(*this); });
  }
  // What was shown, recorded and doubted so far no longer counts.
  void Forget() {
    shown.clear();
    texts.clear();
    recorded = doubts = 0;
  }
  // Sends the next poll; the watchdog ended the last one.
  void Poll(Protocol& protocol) {
    fields_.message_received = false;
    Do([&] { protocol.SendNextPoll(*this); });
  }

  LinePort port;
  std::vector<int> shown;          // the Locations whose value was set, in order
  std::vector<std::string> texts;  // what they show
  int recorded = 0;
  int doubts = 0;

 private:
  static void ClaimOfText(const std::string& text);

  RunFields fields_;
  LocationTable table_;
  RestingTimer poll_;
  RestingTimer watchdog_;
  RestingTimer timeout_;
};

}  // namespace tarnlink
