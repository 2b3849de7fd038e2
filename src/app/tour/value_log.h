// What the value boxes of a screen showed over time, as a table for people.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "monitor/frm_main.h"

namespace tarnlink {

class ValueLog {
 public:
  // Notes what every value box shows now.
  void Note(frm_Main& main);

  void Print(std::ostream& out) const;

  // How many boxes showed a value that came in, and how many of these changed.
  int live() const;
  int changing() const;

 private:
  struct Row {
    std::string name;
    std::string place_holder;
    std::vector<std::string> texts;  // each text that differs from the one before it
  };

  std::vector<Row> rows_;
};

}  // namespace tarnlink
