// What goes out for one request, as a fault shapes it. Content and form; times are only as long as
// the fault says and start to run in `LineSimulator`.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "simulator/fault.h"
#include "simulator/log.h"
#include "simulator/port_action.h"
#include "simulator/random.h"
#include "simulator/slave.h"

namespace boiler {

// When an answer goes out.
enum class Hold {
  kNone,
  kUntilNextRequest,  // at once when the next request has been heard, ahead of its answer
  kIntoNextAnswer,    // in one piece with the next answer
};

struct Reply {
  std::string lead;    // ahead of the answer, in a piece of its own
  std::string before;  // in one piece with the answer
  std::string frame;   // the answer, sound or not; empty for silence
  std::string after;   // in one piece with the answer
  std::string tail;    // behind the answer, `tail_gap_us` later
  std::int64_t tail_gap_us = 0;

  std::int64_t late_us = 0;                       // on top of the usual delay
  std::map<std::size_t, std::int64_t> pauses_us;  // ahead of this byte of before + frame + after
  Hold hold = Hold::kNone;

  bool endless = false;
  std::int64_t endless_us = 0;  // 0: for ever
  std::optional<std::int64_t> reboot_us;
  std::optional<PortAction> port;  // once all has gone out
  Check check = Check::kNone;      // of the frame

  std::string Piece() const { return before + frame + after; }
  std::string AllBytes() const { return lead + Piece() + tail; }
};

class ReplyMaker {
 public:
  ReplyMaker(Controller& controller, Slave& slave, std::uint64_t seed)
      : controller_(controller), slave_(slave), random_(seed) {}

  // Lets the slave carry the request out, unless the fault keeps it from that, and shapes what goes
  // out for it.
  Reply Make(const Request& request, const std::optional<Fault>& fault);

  // Whether an answer has been made that can come a second time.
  bool AnsweredBefore() const { return !previous_answer_.empty(); }

 private:
  Reply Unanswered(const Request& request, const Fault& fault);
  void Shape(const Request& request, const Fault& fault, Reply& reply);
  void ShapeTime(const Fault& fault, Reply& reply);
  void ShapeContent(const Request& request, const Fault& fault, Reply& reply);
  void ShapeDamage(const Fault& fault, Reply& reply);
  void ShapeStream(const Request& request, const Fault& fault, Reply& reply);
  void ShapePort(const Fault& fault, Reply& reply);
  void Split(int pieces, Reply& reply);

  Controller& controller_;
  Slave& slave_;
  Random random_;
  std::string previous_answer_;
};

}  // namespace boiler
