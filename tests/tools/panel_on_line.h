// The control panel with the simulated boiler at the other end of the line, and a record of that
// line which says what the panel may show.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "form/boiler_on_line.h"
#include "tools/frm_cont_panel.h"

namespace tarnlink {

// One box, or a row of them, and what it makes of the word of an answer.
struct PanelValue {
  int id;
  int entry;  // of the history; 0 for all others
  std::string name;
  std::function<std::string()> shown;
  std::function<std::string(int word)> text;
  std::string blank;  // what is shown without a word
};

class PanelOnLine {
 public:
  explicit PanelOnLine(const boiler::LineOptions& line, std::uint64_t seed = 1,
                       const std::string& slave = "0",
                       const boiler::SecondMasterOptions& other = {});
  ~PanelOnLine();

  // By its own update button.
  void Update(int tab);
  // Nothing is pending and nothing waited for.
  bool IsDone() const;
  bool Finish(Micros at_most);
  // "class id data" of each request that the boiler has heard, in their order.
  std::vector<std::string> heard;
  int asked = 0;   // requests that went out
  int struck = 0;  // by a fault
  // Called when a request has gone out.
  std::function<void()> on_asked;

  // Empty if each box that is not empty shows a word that came in from the panel's slave with its
  // ID and a sound check, and each entry of the history one that was said where this entry was
  // asked for.
  std::string Unfounded() const;
  // Boxes that show a word.
  int ShownValues() const;
  // Empty if each box shows just what the boiler said last for it, and no box is empty.
  std::string Difference() const;
  void ForgetSaid() { said_.clear(); }
  // What the boiler said last under this ID.
  int Said(int id, int entry = 0) const { return said_.at({id, entry}); }
  int Held(std::string_view item) { return boiler.controller().Value(boiler::Item(item)); }

  FakeWorld world;
  bool ignores_errors = true;
  int baudrate = 3;
  ErrorTexts texts;
  ToolHost host;
  frm_ContPanel panel{host};
  BoilerOnLine boiler;

 private:
  std::vector<PanelValue> MakeValues() const;
  void AddMarks(std::vector<PanelValue>& values) const;
  bool IsFounded(const PanelValue& value, const std::string& text) const;
  void Take(const boiler::LogEntry& entry);
  void TakeInput(std::string_view bytes);

  std::vector<PanelValue> values_ = MakeValues();
  std::set<std::pair<int, int>> came_in_;  // ID and word
  std::map<std::pair<int, int>, std::set<int>>
      words_for_;  // of each ID and entry, all that was said
  std::map<std::pair<int, int>, int> said_;
  std::map<int, int> entry_of_exchange_;
  std::string tail_;  // of what came in, too short for a frame
};

}  // namespace tarnlink
