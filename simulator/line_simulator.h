// The line between a port and the simulated controller, with its speed and its faults. It has no
// clock: every call says what time it is, in microseconds from any start, never going back. So a
// test runs it in virtual time, and the program by its clock:
//
//   line.Hear(now, bytes);               // what the master has sent
//   while (auto due = line.NextDue()) {  // sleep until then
//     Deliver(line.TakeDue(*due));       // what has come back
//   }
//
// TakeDue may have no bytes, where a silence has ended or the port is asked for something. With an
// endless stream or a second master there is always a next time.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/controller.h"
#include "simulator/endless_noise.h"
#include "simulator/fault_injector.h"
#include "simulator/log.h"
#include "simulator/outgoing.h"
#include "simulator/pace.h"
#include "simulator/reply.h"
#include "simulator/second_master.h"
#include "simulator/slave.h"

namespace boiler {

struct LineOptions {
  Pace pace{};                       // of both directions
  std::int64_t answer_delay_us = 0;  // from the request's last byte to the answer's first
  // A silence that ends a frame, where the protocol has none of its own; adapters pass bytes on in
  // handfuls up to 16 ms apart.
  std::int64_t idle_gap_us = 50'000;
};

class LineSimulator {
 public:
  LineSimulator(Controller& controller, Slave& slave, const LineOptions& options,
                std::uint64_t seed, LogSink log);

  // The master has handed over these bytes. They take their time on the line one by one.
  void Hear(std::int64_t now_us, std::string_view bytes);

  // When TakeDue has something to do next; nothing while all is at rest.
  std::optional<std::int64_t> NextDue() const;
  // The bytes that have reached the master by now.
  std::string TakeDue(std::int64_t now_us);
  // What a fault asked of the port in the last TakeDue. All that was under way is lost by then.
  std::optional<PortAction> TakePortAction();

  // See ParseFaultPlan. Throws Problem for text that is no fault, a fault that the protocol cannot
  // have, one that needs a port to be opened, and rates that exceed 1 together.
  void AddFault(std::string_view text);
  // The line is sound again. Answers that are held back are lost.
  void ClearFaults();

  // The controller goes off and on again and is deaf for a while.
  void Reboot(std::int64_t now_us, std::int64_t deaf_us);
  // The cable is out: what is under way in either direction is lost.
  void Cut(std::int64_t now_us);

  // From now on this master is on the line too: its requests reach whoever listens, and the answers
  // to them.
  void Join(SecondMaster master);

  int Exchanges() const { return exchanges_; }

 private:
  // What the second master does at `due_us`: a request begins, or has been heard by the slave.
  struct Polling {
    SecondMaster master;
    std::int64_t due_us = 0;
    std::string asked;  // empty between two requests
  };

  struct Held {
    Piece piece;
    Hold hold;
  };

  // When the silence since the last byte ends what waits.
  std::int64_t SilentAt() const;
  void EndSilence(std::int64_t now_us);
  void Handle(const Heard& heard, std::int64_t time_us);
  void Exchange(const Request& request, std::int64_t time_us);
  void Send(const Request& request, const Reply& reply, const std::string& meaning,
            std::int64_t time_us);
  // The bytes that are out by then, and what a fault asks of the port behind them.
  std::string TakeOutgoing(std::int64_t now_us);
  void Poll();
  // Whether anything was held so.
  bool Release(Hold hold, std::int64_t start_us);

  Controller& controller_;
  Slave& slave_;
  LineOptions options_;
  LogSink log_;
  FaultInjector injector_;
  ReplyMaker maker_;
  Outgoing outgoing_;
  EndlessNoise endless_;
  std::vector<Held> held_;
  std::optional<PortAction> port_action_;
  std::optional<Polling> polling_;
  std::int64_t heard_until_us_ = 0;
  std::int64_t deaf_until_us_ = 0;
  int exchanges_ = 0;
};

}  // namespace boiler
