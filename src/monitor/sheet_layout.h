// How a screen falls on sheets of paper: its scale, its pages, and which object stands on which.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace tarnlink {

// A rectangle on the form, in units of 1440 to the inch.
struct SheetFrame {
  float left = 0.0F;
  float top = 0.0F;
  float width = 0.0F;
  float height = 0.0F;

  float right() const { return left + width; }
  float bottom() const { return top + height; }
  // The smallest frame around both.
  SheetFrame With(const SheetFrame& other) const;
  // With a strip of this width on each side.
  SheetFrame Grown(float strip) const;
  bool Meets(const SheetFrame& other) const;

  bool operator==(const SheetFrame&) const = default;
};

// Kept free around the objects, in units of the form.
inline constexpr float kSheetMargin = 150.0F;

// A screen that had to be smaller to fit the page's width goes on several pages side by side: what
// is smaller cannot be read.
inline constexpr float kLeastScale = 0.5F;

// The widest object that stands whole on a page with this room.
float WidestOnPage(float room_width);

struct SheetObject {
  SheetFrame frame;
  // Objects with the same number above 0 that stand close by each other stay on one page.
  int group = 0;
};

struct SheetPage {
  SheetFrame area;                   // the part of the form that is on it
  std::vector<std::size_t> objects;  // in the order in which they were given
};

struct SheetLayout {
  float scale = 1.0F;  // never above 1
  std::vector<SheetPage> pages;
};

// Places the objects on pages with this room for the form. Every object stands whole on exactly one
// page, unless it is larger than a page. Free parts of the form take no page, and a form without
// objects takes one. Pages side by side follow each other column by column.
SheetLayout LayOut(std::span<const SheetObject> objects, float room_width, float room_height);

}  // namespace tarnlink
