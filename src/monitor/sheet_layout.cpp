#include "monitor/sheet_layout.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace tarnlink {

namespace {

// Objects of a group that are farther apart than this each go where they stand.
constexpr float kNear = 1440.0F;

// A page has this much room at the least, so that a printer without paper is no trouble.
constexpr float kLeastRoom = 1440.0F;

// What stays together on a page.
struct Unit {
  SheetFrame frame;
  std::vector<std::size_t> objects;
};

using Units = std::vector<Unit>;

// One side of a frame: along a row or down a column.
struct Span {
  float from;
  float to;
};

Span Across(const Unit& unit) { return {unit.frame.left, unit.frame.right()}; }
Span Down(const Unit& unit) { return {unit.frame.top, unit.frame.bottom()}; }

Units UnitsOf(std::span<const SheetObject> objects) {
  Units units;
  std::unordered_map<int, std::size_t> unit_of_group;
  for (std::size_t i = 0; i < objects.size(); ++i) {
    const SheetObject& object = objects[i];
    const auto known = unit_of_group.find(object.group);
    if (known != unit_of_group.end() &&
        units[known->second].frame.Grown(kNear).Meets(object.frame)) {
      Unit& unit = units[known->second];
      unit.frame = unit.frame.With(object.frame);
      unit.objects.push_back(i);
      continue;
    }
    if (object.group > 0) unit_of_group[object.group] = units.size();
    units.push_back({object.frame, {i}});
  }
  return units;
}

SheetFrame FrameAround(std::span<const Unit> units) {
  if (units.empty()) return {};
  SheetFrame frame = units.front().frame;
  for (const Unit& unit : units) frame = frame.With(unit.frame);
  return frame;
}

// Where the part that begins at `begin` ends: before the first unit that does not fit, moved back
// until no unit lies across the break. Where units lie across every place for a break, each of them
// goes whole to the one side or the other.
Units::iterator EndOfPart(Units::iterator begin, Units::iterator end, float room,
                          Span (*side)(const Unit&)) {
  const float limit = side(*begin).from + room;
  const auto full =
      std::find_if(begin + 1, end, [&](const Unit& unit) { return side(unit).to > limit; });
  if (full == end) return end;
  auto at = full;
  while (true) {
    const auto across =
        std::find_if(begin, at, [&](const Unit& unit) { return side(unit).to > side(*at).from; });
    if (across == at) return at;
    if (across == begin) return full;
    at = across;
  }
}

// Splits the units along one side into parts that each fit in `room`.
std::vector<Units> Split(Units units, float room, Span (*side)(const Unit&)) {
  std::stable_sort(units.begin(), units.end(),
                   [side](const Unit& a, const Unit& b) { return side(a).from < side(b).from; });
  std::vector<Units> parts;
  for (auto begin = units.begin(); begin != units.end();) {
    const auto end = EndOfPart(begin, units.end(), room, side);
    parts.emplace_back(begin, end);
    begin = end;
  }
  return parts;
}

SheetPage PageOf(const Units& units, const SheetFrame& column, float most_height) {
  const SheetFrame frame = FrameAround(units).Grown(kSheetMargin);
  SheetPage page{.area = {.left = column.left,
                          .top = frame.top,
                          .width = column.width,
                          .height = std::min(frame.height, most_height)},
                 .objects = {}};
  for (const Unit& unit : units) {
    page.objects.insert(page.objects.end(), unit.objects.begin(), unit.objects.end());
  }
  std::sort(page.objects.begin(), page.objects.end());
  return page;
}

}  // namespace

SheetFrame SheetFrame::With(const SheetFrame& other) const {
  const float new_left = std::min(left, other.left);
  const float new_top = std::min(top, other.top);
  return {new_left, new_top, std::max(right(), other.right()) - new_left,
          std::max(bottom(), other.bottom()) - new_top};
}

SheetFrame SheetFrame::Grown(float strip) const {
  return {left - strip, top - strip, width + 2 * strip, height + 2 * strip};
}

bool SheetFrame::Meets(const SheetFrame& other) const {
  return left <= other.right() && other.left <= right() && top <= other.bottom() &&
         other.top <= bottom();
}

float WidestOnPage(float room_width) {
  return std::max(room_width, kLeastRoom) / kLeastScale - 2 * kSheetMargin;
}

SheetLayout LayOut(std::span<const SheetObject> objects, float room_width, float room_height) {
  SheetLayout layout;
  Units units = UnitsOf(objects);
  if (units.empty()) {
    layout.pages.emplace_back();
    return layout;
  }
  const float width = std::max(room_width, kLeastRoom);
  const float height = std::max(room_height, kLeastRoom);
  const float fitting = width / FrameAround(units).Grown(kSheetMargin).width;
  layout.scale = std::clamp(fitting, kLeastScale, 1.0F);
  const float most_height = height / layout.scale;
  std::vector<Units> columns;
  if (fitting < kLeastScale) {
    columns = Split(std::move(units), WidestOnPage(width), Across);
  } else {
    columns.push_back(std::move(units));
  }
  for (Units& column : columns) {
    const SheetFrame frame = FrameAround(column).Grown(kSheetMargin);
    for (const Units& part : Split(std::move(column), most_height - 2 * kSheetMargin, Down)) {
      layout.pages.push_back(PageOf(part, frame, most_height));
    }
  }
  return layout;
}

}  // namespace tarnlink
