// The real program on a simulated boiler whose cable is pulled and put back, again and again.
// TARNLINK_PLUGS says how often, once in each way when it is not there.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "plug_watch.h"
#include "tools_line.h"

namespace e2e {

// How the cable is pulled.
enum class Pull {
  kAnyTime,  // whatever is under way
  kBehindAnswer,
  kInAnswer,
  kInRequest,
  kLooseContact,  // and back before anybody has noticed
};

struct PlugSubject {
  std::string name;
  // Puts it to work on a line that is there, and sees that it works.
  std::function<void(int cycle)> start;
  // Sees that it tells of the loss and takes its box away. Returns what is to be in front then,
  // with nothing more to come.
  std::function<std::string(int cycle, Pull pull)> told;
  // What a cycle may add to the blocks of the heap: nothing, in the mean.
  double most_blocks = 0.2;
};

class PlugLine : public ToolsOnALine {
 protected:
  // The boiler with these options, and the program with a file of this text open; none if empty.
  void StartOn(const std::string& protocol, const std::vector<std::string>& options = {},
               const std::string& screen = "");

  // So many cycles of work, pulling, telling and putting back. After each of them there is nothing
  // in front but what belongs there, no descriptor more than before, and the heap has stopped
  // growing.
  void Endure(const PlugSubject& subject);

  static int Plugs();
  static bool IsLong() { return Plugs() > kShort; }

  // How many bytes the boiler has noted of what it hears and says, and of its port.
  std::size_t Noted() const;
  // True once these are more by so many.
  bool IsBusy(std::size_t bytes = 500) { return HasNoted(Noted() + bytes); }
  bool HasNoted(std::size_t bytes) const;
  // Sees that box, which there is once, and answers it; behind it there is `front`.
  void TakeBox(const std::string& box, const std::string& button, const std::string& front);
  // The descriptors that are open when no more come are those of a program that has no port open.
  void Rest();
  // True once it has no more of them.
  bool HasLetGo();
  // The share of a processor that the program takes in the next seconds.
  double ShareOfProcessor(double seconds);
  // The least of some of these, if the first is too high.
  double CalmestShare();
  // Looks at that in a cycle in which it is to be looked at. What it was is in the report.
  void SeeThatItIsCalm(int cycle);

  static constexpr int kShort = 20;  // cycles, at most

 private:
  Pull PullOf(int cycle) const;
  void PullOut(Pull pull);
  void Cycle(const PlugSubject& subject, int cycle);
  void LookBack(const PlugSubject& subject) const;

  std::unique_ptr<PlugWatch> watch_;
  int files_at_rest_ = 0;
  double highest_share_ = 0;
  std::vector<Holding> held_;
};

}  // namespace e2e
