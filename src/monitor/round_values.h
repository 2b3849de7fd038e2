// Which of the values that come in are recorded: of each round the first one that answers what was
// asked for, in the order of the scan. So the log and the spreadsheet hold the same, also where a
// write sends the scan back to a Location that stands in this round already.
#pragma once

#include "monitor/location_table.h"

namespace tarnlink {

class RoundValues {
 public:
  // `locations` outlives it.
  explicit RoundValues(const LocationTable& locations) : locations_(locations) {}

  // The request for Location `index` goes out.
  void Ask(int index);
  // A write goes out in its place.
  void ForgetRequest() { requested_ = 0; }
  // A value of Location `index` has come in: true if it is to be recorded.
  bool Take(int index);
  void EndRound();

 private:
  bool IsAnswered(int index) const;

  const LocationTable& locations_;
  int requested_ = 0;   // the Location whose answer is awaited, 0 for none
  int furthest_ = 0;    // the last one that was asked or taken in this round
  bool taken_ = false;  // that one's value
};

}  // namespace tarnlink
