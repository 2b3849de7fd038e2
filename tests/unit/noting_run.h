// The run as a protocol sees it, for tests of the protocols' routines.
#pragma once

#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "protocols/protocol_run.h"
#include "support/byte_text.h"
#include "support/fake_world.h"

namespace tarnlink {

// A run that does nothing of itself and writes down what a protocol does to it.
class NotingRun final : public ProtocolRun {
 public:
  NotingRun() {
    comm_->SetPortOpen(true);
    world.on_output = [this](FakeSerialPort&, std::string_view bytes) {
      Note("output " + HexText(bytes) + (tmr_MsgTimeout().Enabled() ? " (timer on)" : ""));
    };
  }

  RunFields& fields() override { return fields_; }
  LocationTable& locations() override { return locations_; }
  SerialPort& Comm() override { return *comm_; }
  Timer& Comm_Timer() override { return *comm_timer_; }
  Timer& tmr_noresponse() override { return *noresponse_; }
  Timer& tmr_MsgTimeout() override { return *msg_timeout_; }
  int MessageTimeout() const override { return 2000; }
  bool NameVisible(int index) const override { return visible.contains(index); }
  std::string NameText(int index) const override { return locations_[index].Alias; }
  void ShowValue(int index, const std::string& text) override {
    Note("value " + std::to_string(index) + ": " + text);
  }
  void ShowPanel(StatusPanelIndex panel, const std::string& text) override {
    Note("panel " + std::to_string(panel) + ": " + text);
  }
  void LogRequest(int index) override {
    Note("log request " + std::to_string(index) +
         (tmr_MsgTimeout().Enabled() ? " (timer on)" : ""));
  }
  void RecordValue(int index) override { Note("record " + std::to_string(index)); }
  void LogUnreadable(int index) override { Note("unreadable " + std::to_string(index)); }
  void EndLogRow() override { Note("end of row"); }
  void TellProtectedArea() override { Note("protected area"); }
  void StopZOLTCommunication() override { Note("stop"); }
  void DoubtTheLine() override { ++doubts; }

  std::string TakeNotes() { return std::exchange(notes_, {}); }

  FakeWorld world;
  std::set<int> visible = {1, 2};
  int doubts = 0;

 private:
  void Note(const std::string& line) { notes_ += line + "\n"; }

  RunFields fields_;
  LocationTable locations_;
  std::unique_ptr<SerialPort> comm_ = world.CreatePort();
  std::unique_ptr<Timer> comm_timer_ = world.CreateTimer();
  std::unique_ptr<Timer> noresponse_ = world.CreateTimer();
  std::unique_ptr<Timer> msg_timeout_ = world.CreateTimer();
  std::string notes_;
};

}  // namespace tarnlink
