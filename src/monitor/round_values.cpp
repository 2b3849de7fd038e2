#include "monitor/round_values.h"

namespace tarnlink {

void RoundValues::Ask(int index) {
  requested_ = index;
  if (index <= furthest_) return;
  furthest_ = index;
  taken_ = false;
}

bool RoundValues::Take(int index) {
  if (!IsAnswered(index) || index < furthest_ || (index == furthest_ && taken_)) return false;
  furthest_ = index;
  taken_ = true;
  return true;
}

void RoundValues::EndRound() {
  requested_ = 0;
  furthest_ = 0;
  taken_ = false;
}

// Whether a value of Location `index` answers the request that is out: for that Location, or for
// one of its register block. The answer to a write is taken as a value of another Location, and a
// block that goes beyond the last one as values of the first.
bool RoundValues::IsAnswered(int index) const {
  if (requested_ == 0) return false;
  const int registers = locations_[requested_].NumReg;
  return index == requested_ || (index > requested_ && (index < requested_ + registers ||
                                                        locations_[index].RegisterFollower));
}

}  // namespace tarnlink
