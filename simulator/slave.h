// The controller's side of one protocol: finds requests among the bytes on the line and answers
// them. Knows no clock and no port. Real classes: `TarnlinkSlave`, `ZoltSlave` and `ModbusSlave`;
// each further protocol is a class beside them, made in `MakeSlave`.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "simulator/controller.h"
#include "simulator/fault.h"
#include "simulator/random.h"

namespace boiler {

// A request that is whole and meant for this slave, and that it acts upon.
struct Request {
  std::string bytes;
  bool write = false;
  std::string meaning;  // for the log
};

// Bytes that are no request to this slave, and why.
struct Ignored {
  std::string bytes;
  std::string reason;
};

using Heard = std::variant<Request, Ignored>;

// What a write does to the memory.
enum class WriteEffect {
  kStored,
  kForgotten,  // answered as if stored
  kRejected,   // answered as the protocol says no, or with what the memory keeps
};

class Slave {
 public:
  virtual ~Slave() = default;

  // Takes one byte off the line. Says what ended with it, if anything did.
  virtual std::optional<Heard> Hear(char byte) = 0;
  // The line has been silent for the idle gap: a protocol whose frames end in silence takes what it
  // has, the others give up an incomplete frame.
  virtual std::optional<Heard> Silence() = 0;
  // Bytes wait for more, so that a silence would matter.
  virtual bool Waiting() const = 0;
  // What waits ends with a silence of 3.5 characters. Otherwise the silence that ends it is the
  // idle gap.
  virtual bool EndsInSilence() const { return false; }
  // Forgets what waits: the line was cut, or the controller has rebooted.
  virtual void Forget() = 0;

  // Carries the request out and answers it. A slave that does not answer returns nothing.
  virtual std::string Answer(const Request& request, Controller& controller,
                             WriteEffect effect) = 0;
  // An answer to the request with a valid check that is wrong in the way of this fault, one of the
  // group kContent or kOversize. `answer` is the right one.
  virtual std::string WrongAnswer(const Fault& fault, const Request& request,
                                  const std::string& answer, const Controller& controller,
                                  Random& random) = 0;
  // Whether the answer names the address or ID that was asked for.
  virtual bool NamesId(const Request&) const { return true; }
  // What a busy controller says; nothing for a protocol that cannot say it.
  virtual std::string BusyAnswer(const Request& request) = 0;
  // A request and its answer that are none of this controller's business.
  virtual std::string ForeignTraffic(Random& random) = 0;
  // The answer with another check than the right one in its place.
  virtual std::string WithWrongCheck(const std::string& answer, Random& random) = 0;

  // Whether the check field of the frame agrees with the bytes that it covers. Looks at nothing
  // else, neither at the frame's ends nor at its length.
  virtual bool CheckHolds(std::string_view frame) const = 0;

  // Why this protocol cannot have the fault, as half a sentence; empty when it can.
  virtual std::string_view Misfit(FaultKind kind) const = 0;
};

}  // namespace boiler
