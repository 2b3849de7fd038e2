// What each answer does to the control panel's controls.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "tools/panel_form.h"

namespace tarnlink {

class PanelAnswers {
 public:
  // `panel` outlives it.
  explicit PanelAnswers(PanelForm& panel);

  // Fills or blanks what shows this ID and clears its pending flag. Of an ID that the panel does
  // not have nothing changes.
  void Apply(std::string_view frame);

 private:
  struct Answer {
    std::uint8_t kind = 0;
    int Hi = 0;
    int Lo = 0;
    std::string digits;  // of the data, as they came

    int Word() const { return Hi * 256 + Lo; }
  };
  struct Rule {
    std::function<void(const Answer&)> fill;
    std::function<void()> blank;  // without it any kind of answer fills
  };
  using Text = std::function<std::string(const Answer&)>;

  void AddStatus();
  void AddCommands();
  void AddVersions();
  void AddOsNumber();
  void AddSafety();
  void AddSensors();
  void AddErrors();
  void AddHistory();
  void AddStatistics();
  // One box, and two of which the first has the high byte.
  void AddText(int id, PanelText& box, Text text);
  void AddPair(int id, PanelText& one, Text text, PanelText& other, Text other_text);
  void AddBits(int id, std::uint8_t& high, std::uint8_t& low, void (PanelForm::*show)());
  void AddOsHalf(int id, std::string& half, Text text);
  int PendingOf(int id) const;
  PanelText& OfEntry(const PanelTexts& column) const;

  PanelForm& panel_;
  std::map<int, Rule> rules_;
};

}  // namespace tarnlink
