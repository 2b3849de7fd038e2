// The looks of single objects of the screen, taken at one moment and given back later: what undoing
// an edit is made of. Values that the run shows are no part of it.
#pragma once

#include <map>
#include <string>

#include "monitor/frm_main.h"

namespace tarnlink {

// What the boxes of a Location that was just added say. They count from 0, unlike the value box of
// one that was read from a file.
std::string AddedNameText(int index);
std::string AddedValueText(int index);

// Place, size, colours and font of one control, and whether it shows.
struct ControlLook {
  float Top = 0.0F;
  float Left = 0.0F;
  float Width = 0.0F;
  float Height = 0.0F;
  bool Visible = false;
  Colour BackColor = kWhite;
  Colour ForeColor = kBlack;
  Font TextFont;
  std::string ToolTipText;

  bool operator==(const ControlLook&) const = default;
};

struct LocationState {
  bool exists = false;
  Location location;
  ControlLook name;
  ControlLook value;
  ControlLook check;
  std::string name_text;

  bool operator==(const LocationState&) const = default;
};

struct LabelState {
  bool exists = false;
  ControlLook look;
  std::string caption;

  bool operator==(const LabelState&) const = default;
};

// What is captured: the form, and the Locations and labels that were named.
class ScreenState {
 public:
  explicit ScreenState(const frm_Main& main);

  // An object that is captured already keeps its first state.
  void AddLocation(const frm_Main& main, int index);
  void AddLabel(const frm_Main& main, int index);

  // The same objects as they are now.
  ScreenState Now(const frm_Main& main) const;

  // The first of its objects that is not as it is in `other` and can be seen now: where the eye
  // goes after a change from one to the other. Null if there is none.
  const PlacedControl* Changed(const ScreenState& other, const frm_Main& main) const;

  // Makes every captured object what it was: objects that did not exist are destroyed, those that
  // have been destroyed meanwhile are made anew. What a value box says stays.
  void Restore(frm_Main& main) const;

  bool operator==(const ScreenState&) const = default;

 private:
  std::map<int, LocationState> locations_;
  std::map<int, LabelState> labels_;
  Colour form_colour_ = 0;
  int max_id_ = 0;
  int location_count_ = 0;
  int text_info_count_ = 0;
};

}  // namespace tarnlink
