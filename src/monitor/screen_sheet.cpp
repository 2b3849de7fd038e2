#include "monitor/screen_sheet.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "common/readable_shade.h"
#include "common/text.h"

namespace tarnlink {

namespace {

constexpr Colour kGrey = 0x808080;
constexpr Colour kLightGrey = 0xF0F0F0;

// --- Taking the picture ---

// As far as the screen itself shows objects, whatever a file says.
constexpr float kFurthest = 300'000.0F;    // units
constexpr float kLargestLetters = 300.0F;  // points
constexpr int kLongestText = 500;          // characters

constexpr std::string_view kEllipsis = "\xE2\x80\xA6";

std::string CutAfter(std::string_view text, int count) {
  return std::string(FirstCharacters(text, count)).append(kEllipsis);
}

float Held(float units) { return std::max(-kFurthest, std::min(kFurthest, units)); }

Font HeldFont(Font font) {
  if (font.size <= 0) font.size = Font{}.size;
  font.size = std::min(font.size, kLargestLetters);
  return font;
}

SheetItem ItemOf(const PlacedControl& control, SheetItem::Kind kind, int group,
                 const std::string& text) {
  return {.kind = kind,
          .frame = {Held(control.Left), Held(control.Top), control.Width, control.Height},
          .group = group,
          .text = CharacterCount(text) > kLongestText ? CutAfter(text, kLongestText) : text,
          .font = HeldFont(control.TextFont),
          .back = control.BackColor,
          .fore = control.ForeColor};
}

void TakeLocation(const frm_Main& main, int index, std::vector<SheetItem>& items) {
  const CheckBox& check = main.RAM_LOC_CHECK(index);
  if (check.Visible) {
    items.push_back(ItemOf(check, SheetItem::Kind::kCheck, index, {}));
    items.back().checked = check.Value;
  }
  for (const TextBox* box : {&main.RAM_LOC_TEXT(index), &main.RAM_LOC_VAL(index)}) {
    if (box->Visible) items.push_back(ItemOf(*box, SheetItem::Kind::kBox, index, box->Text));
  }
}

// --- Colours ---

// Colours of the desktop are told by their sign.
bool IsOfDesktop(Colour colour) { return colour < 0; }

Colour PaperBackground(Colour colour) {
  if (!IsOfDesktop(colour)) return colour;
  return colour == kWindowBackground ? kWhite : kLightGrey;
}

Colour PaperText(Colour colour) { return IsOfDesktop(colour) ? kBlack : colour; }

// --- Texts ---

// Sets a font in which the text fits in `room`, as small as need be and can be read, and gives the
// text: cut, with a sign that it is, where no font helps. A number must not look like another one.
std::string Fit(DrawingSurface& surface, Font font, const std::string& text, float room) {
  constexpr float kSmallest = 4.0F;        // points
  constexpr float kMostShrinking = 0.75F;  // of letters that are small already
  constexpr float kStep = 0.25F;           // points
  const float smallest = std::min(kSmallest, font.size * kMostShrinking);
  surface.SetFont(font);
  float width = surface.TextWidth(text);
  while (width > room && font.size > smallest) {
    font.size = std::max(smallest, std::min(font.size * room / width, font.size - kStep));
    surface.SetFont(font);
    width = surface.TextWidth(text);
  }
  if (width <= room) return text;
  int fits = 0;
  int too_many = CharacterCount(text);
  while (too_many - fits > 1) {
    const int middle = (fits + too_many) / 2;
    (surface.TextWidth(CutAfter(text, middle)) <= room ? fits : too_many) = middle;
  }
  return CutAfter(text, fits);
}

// --- Pages ---

// What of a sheet of paper the form may take, between the lines above and below it.
struct Paper {
  float width;
  float height;
  float line;  // the height of the lines

  float room() const { return height - 2 * line; }
};

Font LineFont() { return {.size = 9.0F}; }

Paper MeasurePaper(DrawingSurface& surface) {
  constexpr float kLineSpacing = 1.5F;
  surface.SetFont(LineFont());
  return {surface.ScaleWidth(), surface.ScaleHeight(), surface.TextHeight("X") * kLineSpacing};
}

void DrawLines(const ScreenSheet& sheet, DrawingSurface& surface, const Paper& paper,
               const std::string& page_number) {
  constexpr float kGap = 200.0F;  // units between name and moment
  surface.SetFont(LineFont());
  const float moment_width = surface.TextWidth(sheet.moment);
  surface.Text({paper.width - moment_width, 0}, sheet.moment, kBlack);
  const float footer_top = paper.height - surface.TextHeight(page_number);
  if (!page_number.empty()) {
    surface.Text({(paper.width - surface.TextWidth(page_number)) / 2, footer_top}, page_number,
                 kBlack);
  }
  const std::string name = Fit(surface, LineFont(), sheet.name, paper.width - moment_width - kGap);
  surface.Text({0, 0}, name, kBlack);
}

// Draws the part of the form that is on one page.
class PagePainter {
 public:
  PagePainter(DrawingSurface& surface, const Paper& paper, const SheetFrame& area, float scale)
      : surface_(surface), paper_(paper), area_(area), scale_(scale) {}

  void Background(Colour colour) {
    surface_.SetClip(Corner(area_), Opposite(area_));
    Fill(area_, colour);
  }

  void Draw(const SheetItem& item, const SheetFrame& frame, Colour form_colour) {
    if (item.kind == SheetItem::Kind::kLabel) {
      Label(item, frame, form_colour);
    } else if (item.kind == SheetItem::Kind::kCheck) {
      Check(item, frame);
    } else {
      Box(item, frame);
    }
  }

 private:
  Point At(float x, float y) const {
    return {(x - area_.left) * scale_, paper_.line + (y - area_.top) * scale_};
  }
  Point Corner(const SheetFrame& frame) const { return At(frame.left, frame.top); }
  Point Opposite(const SheetFrame& frame) const { return At(frame.right(), frame.bottom()); }

  // A pen that is so thick on the form.
  void SetPen(Colour colour, float units) {
    const float pixels = units * scale_ / surface_.TwipsPerPixelX();
    surface_.SetPen(colour, DrawStyle::kSolid, std::max(1, static_cast<int>(std::lround(pixels))));
  }

  void Fill(const SheetFrame& frame, Colour colour) {
    surface_.SetPen(PaperBackground(colour), DrawStyle::kSolid, 1);
    surface_.FilledBox(Corner(frame), Opposite(frame));
  }

  void Outline(const SheetFrame& frame) {
    constexpr float kThickness = 12.0F;  // units
    SetPen(kGrey, kThickness);
    const std::array<Point, 5> corners{Corner(frame), At(frame.right(), frame.top), Opposite(frame),
                                       At(frame.left, frame.bottom()), Corner(frame)};
    surface_.Polyline(corners);
  }

  Font Scaled(Font font) const {
    font.size *= scale_;
    return font;
  }

  void Box(const SheetItem& item, const SheetFrame& frame) {
    constexpr float kIndent = 75.0F;  // units from the frame to the text
    Fill(frame, item.back);
    Outline(frame);
    if (item.text.empty()) return;
    const float room = (frame.width - 2 * kIndent) * scale_;
    const std::string text = Fit(surface_, Scaled(item.font), item.text, room);
    Point at = At(frame.left + kIndent, frame.top);
    at.y += (frame.height * scale_ - surface_.TextHeight(text)) / 2;
    surface_.Text(at, text, ReadableOn(PaperBackground(item.back)));
  }

  void Label(const SheetItem& item, const SheetFrame& frame, Colour form_colour) {
    if (item.text.empty()) return;
    if (item.back != form_colour) Fill(frame, item.back);
    // Only one wider than a page has to be cut; letters that were scaled take a little more or less
    // room than told by the scale.
    const Point at = Corner(frame);
    const float room = (area_.right() - frame.left) * scale_;
    surface_.Text(at, Fit(surface_, Scaled(item.font), item.text, room), PaperText(item.fore));
  }

  void Check(const SheetItem& item, const SheetFrame& frame) {
    constexpr float kThickness = 30.0F;  // units
    Fill(frame, kWhite);
    Outline(frame);
    if (!item.checked) return;
    const auto inside = [&](float right, float down) {
      return At(frame.left + right * frame.width, frame.top + down * frame.height);
    };
    SetPen(kBlack, kThickness);
    const std::array<Point, 3> mark{inside(0.2F, 0.5F), inside(0.45F, 0.75F), inside(0.8F, 0.25F)};
    surface_.Polyline(mark);
  }

  DrawingSurface& surface_;
  const Paper& paper_;
  const SheetFrame& area_;
  float scale_;
};

// The items' places with the labels measured.
std::vector<SheetObject> Measure(const ScreenSheet& sheet, DrawingSurface& surface, float room) {
  std::vector<SheetObject> objects;
  objects.reserve(sheet.items.size());
  for (const SheetItem& item : sheet.items) {
    SheetFrame frame = item.frame;
    if (item.kind == SheetItem::Kind::kLabel) {
      surface.SetFont(item.font);
      frame.width = std::min(surface.TextWidth(item.text), WidestOnPage(room));
      frame.height = surface.TextHeight(item.text);
    }
    objects.push_back({frame, item.group});
  }
  return objects;
}

// About as much as a label takes on any surface.
SheetFrame EstimatedFrame(const SheetItem& item) {
  if (item.kind != SheetItem::Kind::kLabel) return item.frame;
  constexpr float kWidth = 11.0F;  // units of a common letter for each point of its size
  constexpr float kHeight = 24.0F;
  const auto count = static_cast<float>(CharacterCount(item.text));
  return {item.frame.left, item.frame.top, count * item.font.size * kWidth,
          item.font.size * kHeight};
}

}  // namespace

ScreenSheet TakeSheet(const frm_Main& main, const std::string& moment) {
  const std::string& path = main.CurrentTarnLinkFile;
  ScreenSheet sheet{.name = path.empty() ? "New Screen" : path,
                    .moment = moment,
                    .colour = main.form.BackColor,
                    .items = {}};
  // Labels lie above the boxes, and value boxes that were made larger above both, as on a screen
  // that was just opened.
  for (int i = 1; i <= main.MaxId; ++i) TakeLocation(main, i, sheet.items);
  for (int j = 1; j <= main.TextInfoCount; ++j) {
    const Label& label = main.lbl_TextInfo(j);
    if (!label.Visible) continue;
    sheet.items.push_back(ItemOf(label, SheetItem::Kind::kLabel, 0, label.Caption));
  }
  const float normal = main.RAM_LOC_VAL(0).Height;
  std::stable_partition(sheet.items.begin(), sheet.items.end(), [normal](const SheetItem& item) {
    return item.kind != SheetItem::Kind::kBox || item.frame.height <= normal;
  });
  return sheet;
}

bool IsWide(const ScreenSheet& sheet) {
  if (sheet.items.empty()) return false;
  SheetFrame all = EstimatedFrame(sheet.items.front());
  for (const SheetItem& item : sheet.items) all = all.With(EstimatedFrame(item));
  return all.width > all.height;
}

void DrawSheet(const ScreenSheet& sheet, DrawingSurface& surface) {
  const Paper paper = MeasurePaper(surface);
  const std::vector<SheetObject> objects = Measure(sheet, surface, paper.width);
  const SheetLayout layout = LayOut(objects, paper.width, paper.room());
  const std::size_t count = layout.pages.size();
  for (std::size_t n = 0; n < count; ++n) {
    if (n > 0) surface.NewPage();
    const SheetPage& page = layout.pages[n];
    if (!page.objects.empty()) {
      PagePainter painter(surface, paper, page.area, layout.scale);
      painter.Background(sheet.colour);
      for (const std::size_t i : page.objects) {
        painter.Draw(sheet.items[i], objects[i].frame, sheet.colour);
      }
      surface.SetClip({}, {});
    }
    DrawLines(sheet, surface, paper,
              count > 1 ? "Page " + std::to_string(n + 1) + " of " + std::to_string(count) : "");
  }
}

}  // namespace tarnlink
