// The graph's own conversation with the slave: one read request at a time, line after line, always
// under ZOLT. Each answer becomes a sample and sends the next request.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "graph/frm_context_menu.h"
#include "graph/frm_graphic.h"
#include "protocols/line_doubt.h"
#include "protocols/service_line.h"
#include "protocols/zolt_message.h"

namespace tarnlink {

class GraphAcquisition {
 public:
  // Both forms outlive this; it binds the port, the watch timer and the menu's entry.
  GraphAcquisition(frmGraphic& graph, frmContextMenu& menu, ServiceLine options);

  // Begins anew with the first line; without a port it says so, and nothing is sent.
  void InitCom();
  // Sends the test mode command if it is wanted, otherwise the request of the next line that is
  // shown. Opens the port. Throws RunTimeError 8005 or 57.
  void SendMsgToZOLT();
  // The port is closed afterwards.
  bool IsPortFree();

  // The mouse on `lblTest`: left sends the command, any other button asks for its settings.
  void TestMouseDown(MouseButton button);
  void TestMouseUp();
  std::function<void()> ShowTestMode;

 private:
  // What an answer is known by.
  struct Key {
    std::int32_t id = 0;
    std::uint8_t data_class = 0;
    char slave = '0';

    bool operator==(const Key&) const = default;
  };

  void Received(int event);
  bool TakeFrame(std::string_view frame);
  void AwaitRest(std::string rest);
  void Store(const ZoltMessage& answer);
  bool IsLate(const Key& answer);
  bool MayBeOneTooMany() const;
  bool IsTooEarly() const;
  void GiveUpRequest();
  double Milliseconds() const;
  static Key KeyOf(std::string_view frame);
  void AwaitQuiet();
  void QuietTick();
  void DropWhatComes();
  void SayBusy();
  void WatchExpired();
  void mnuZOLTCom();
  void AskAndSwitch();
  void Switch(bool on);
  bool IsPolled(int index) const;
  std::string NextFrame();
  void SendOrRetry();

  frmGraphic& graph_;
  frmContextMenu& menu_;
  ServiceLine options_;
  std::optional<Key> request_;  // the request that is out, or the last one
  int repeated_ = 0;            // how often it went out before, one time after the other
  int trusted_ = 0;             // answers that may be sooner than the line can bring them
  bool is_heard_ = false;       // something came while the line was to be quiet
  double sent_ = 0;             // when, in ms
  std::vector<Key> given_up_;   // requests without an answer: that may still come
  std::string rest_;            // the beginning of an answer that came behind a late one
  LineDoubt doubt_;
  std::unique_ptr<Timer> quiet_watch_;  // runs while the next request waits for a quiet line
};

}  // namespace tarnlink
