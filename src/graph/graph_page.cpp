#include "graph/graph_page.h"

#include <algorithm>
#include <array>

#include "common/readable_shade.h"
#include "graph/frm_graphic.h"
#include "graph/graph_picture.h"
#include "graph/lane_drawing.h"
#include "graph/page_captions.h"

namespace tarnlink {

namespace {

const Font kHeadingFont{.name = "Verdana", .size = 8.0F};

// The widest text that the column of a scale is meant to hold.
constexpr const char* kWidestScale = " 7000 ";

constexpr Colour kFrame = 0x808080;
constexpr float kFrameLine = 15;  // wide, as the grid
constexpr float kDataLine = 29;
constexpr float kLaneStroke = 50;  // back from a lane's newest sample
constexpr double kBelow = 1.2;     // letters, that stand below the graph

// Paper is white, whatever the graph's background: what was chosen for a dark one must be seen
// here.
Colour OnPaper(Colour letters) { return ReadableShade(letters, kWhite); }
Colour LineOnPaper(Colour line) { return ReadableShade(line, kWhite, kVisible); }

}  // namespace

GraphPage::GraphPage(DrawingSurface& output, const PageContent& content)
    : Output(output), content_(content) {}

// A width that the surface is too coarse for is that of one pixel.
int GraphPage::Width(float twips) const {
  return std::max(1, static_cast<int>(twips / Output.TwipsPerPixelX()));
}

void GraphPage::DrawGraph() {
  Output.SetFont(kPageFont);
  letter_ = Output.TextHeight("S");
  GraphHeight = static_cast<float>(Output.ScaleHeight() - 2 * MarginTop - kBelow * letter_);
  ValueColumn = Output.TextWidth(kWidestRow);
  ScaleColumn = Output.TextWidth(kWidestScale);
  GraphWidth = Output.ScaleWidth() - ValueColumn - 2 * ScaleColumn - 2 * MarginLeft;
  const bool has_room = GraphWidth > 0 && GraphHeight > 0;
  if (has_room) DrawFrame();
  DrawValuePanel();
  if (has_room) {
    DrawLeftCaption();
    DrawRightCaption();
    DrawTimeScale();
    DrawHorScale();
    DrawLines();
    DrawCursor();
  }
  DrawHeading();
}

float GraphPage::TimeToX(Date Time) const {
  const Date start = content_.view.StartTime();
  const double along = (Time - start) / (content_.view.BaseTime - start);
  return static_cast<float>(GraphWidth * along) + Left();
}

float GraphPage::ValueToY(float Value, int Unit) const {
  return ValueMap(Unit, GraphHeight, 0)(Value) + MarginTop;
}

// --- Frame and texts -----------------------------------------------------------------------------

void GraphPage::DrawFrame() {
  Output.SetPen(kFrame, DrawStyle::kSolid, Width(kFrameLine));
  const std::array<Point, 5> corners = {{{Left(), MarginTop},
                                         {Right(), MarginTop},
                                         {Right(), Bottom()},
                                         {Left(), Bottom()},
                                         {Left(), MarginTop}}};
  for (std::size_t i = 1; i < corners.size(); ++i) Output.Line(corners[i - 1], corners[i]);
}

void GraphPage::DrawValuePanel() {
  DrawPageCaptions(Output, content_, {MarginLeft, MarginTop}, GraphHeight,
                   content_.decimal_separator);
  Output.Text({MarginLeft, Bottom()}, FormatDate(content_.moment, kStampPattern, content_.months),
              kBlack);
}

float GraphPage::ScaleTop(int item) const {
  constexpr int kFirstLower = kUpperSteps + 1;
  const double y = item < kFirstLower
                       ? GraphHeight * kUpperBand * item / kUpperSteps
                       : GraphHeight * (1 - kLowerBand) +
                             GraphHeight * kLowerBand * (item - kFirstLower) / kLowerSteps;
  return static_cast<float>(y + MarginTop - letter_ / 2);
}

// Against the frame, with a blank behind.
void GraphPage::DrawLeftCaption() {
  const std::vector<std::string>& texts = LeftScale();
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const std::string text = texts[i] + " ";
    Output.Text({Left() - Output.TextWidth(text), ScaleTop(static_cast<int>(i))}, text,
                OnPaper(content_.Colors.CaptionColor));
  }
}

void GraphPage::DrawRightCaption() {
  const std::vector<std::string>& texts = RightScale();
  for (std::size_t i = 0; i < texts.size(); ++i) {
    Output.Text({Right(), ScaleTop(static_cast<int>(i))}, " " + texts[i],
                OnPaper(content_.Colors.CaptionColor));
  }
}

// Labels stand under the frame, centred on their times; the lines stand at full times. Half a
// letter lower they are free of the scales' last numbers.
void GraphPage::DrawTimeScale() {
  const GraphView& view = content_.view;
  const float top = Bottom() + letter_ / 2;
  for (const TimeLabel& label : TimeLabels(view.BaseTime, view.TimeScale, GraphWidth)) {
    const float width = Output.TextWidth(label.Caption);
    Output.Text({static_cast<float>(Left() + label.Center - width / 2), top}, label.Caption,
                OnPaper(content_.Colors.CaptionColor));
  }
  Output.SetPen(LineOnPaper(content_.Colors.GridColor), DrawStyle::kSolid, Width(kFrameLine));
  GraphView page = view;
  page.ScaleWidth = GraphWidth;
  for (const float x : page.TimeGrid()) {
    Output.Line({Left() + x, MarginTop}, {Left() + x, Bottom()});
  }
}

void GraphPage::DrawHorScale() {
  Output.SetPen(LineOnPaper(content_.Colors.GridColor), DrawStyle::kSolid, Width(kFrameLine));
  GraphView page = content_.view;
  page.ScaleHeight = GraphHeight;
  for (const float y : page.UpperGrid()) {
    Output.Line({Left(), y + MarginTop}, {Right(), y + MarginTop});
  }
  for (const float y : page.LowerGrid()) {
    Output.Line({Left(), y + MarginTop}, {Right(), y + MarginTop});
  }
}

void GraphPage::DrawCursor() {
  if (content_.AutoScroll || content_.CursorTime == 0) return;
  const float x = TimeToX(content_.CursorTime);
  if (x <= Left() || x >= Right()) return;
  Output.SetPen(LineOnPaper(content_.Colors.CursorColor), DrawStyle::kSolid, Width(kDataLine));
  Output.Line({x, MarginTop}, {x, Bottom()});
}

void GraphPage::DrawHeading() {
  Output.SetFont(kHeadingFont);
  const float width = Output.TextWidth(content_.HeaderText);
  Output.Text({Output.ScaleWidth() / 2 - width / 2, MarginTop / 2}, content_.HeaderText, kBlack);
}

// --- Lines ---------------------------------------------------------------------------------------

void GraphPage::DrawLines() {
  Output.SetClip({Left(), MarginTop}, {Right(), Bottom()});
  int lane = 0;
  for (const PageLine& shown : content_.lines) {
    if (!shown.line.ShowLine) continue;
    if (shown.is_lane) {
      DrawStatusLine(shown, lane++);
    } else {
      DrawAnalogLine(shown);
    }
  }
  Output.SetClip({}, {});
}

void GraphPage::SetLinePen(const GraphAttribute& line) {
  Output.SetPen(LineOnPaper(line.LineColor), StyleOf(line), Width(kDataLine));
}

// False if nothing of it lies inside. Times may fall: either end can be the left one.
bool GraphPage::CutAtFrame(Point& from, Point& to) const {
  if (std::max(from.x, to.x) < Left() || std::min(from.x, to.x) > Right()) return false;
  const auto cut = [&, a = from, b = to](Point& end, float x) {
    end = {x, a.y + (b.y - a.y) * (x - a.x) / (b.x - a.x)};
  };
  for (Point* end : {&from, &to}) {
    if (end->x > Right()) cut(*end, Right());
    if (end->x < Left()) cut(*end, Left());
  }
  return true;
}

void GraphPage::DrawAnalogLine(const PageLine& shown) {
  if (shown.samples.empty()) return;
  SetLinePen(shown.line);
  std::vector<Point> joined;
  const auto place = [&](const MeasureSample& sample) {
    return Point{TimeToX(FromSeconds(sample.Time)),
                 ValueToY(ValueOfLine(shown.line, sample.Value), shown.line.Unit)};
  };
  for (std::size_t i = 1; i < shown.samples.size(); ++i) {
    Point from = place(shown.samples[i - 1]);
    Point to = place(shown.samples[i]);
    if (!CutAtFrame(from, to)) continue;
    if (content_.MeasOnly) {
      // Also where the line is cut: users know the page that way.
      Output.Line(to, {to.x - kSampleStroke, to.y - kSampleStroke});
      continue;
    }
    if (joined.empty() || joined.back() != from) {
      Output.Polyline(joined);
      joined.assign(1, from);
    }
    joined.push_back(to);
  }
  Output.Polyline(joined);
}

void GraphPage::DrawStatusLine(const PageLine& shown, int Lane) {
  if (shown.samples.empty()) return;
  SetLinePen(shown.line);
  const float height = content_.lane_height * GraphHeight;
  const float top = static_cast<float>(GraphHeight * kUpperBand) + MarginTop +
                    height * (static_cast<float>(Lane) + kLaneGap);
  LaneDrawing drawing(Output, top, top + height * kLaneBar);
  const auto add = [&](float x, float other, const MeasureSample& sample) {
    const float left = std::max(std::min(x, other), Left());
    const float right = std::min(std::max(x, other), Right());
    if (left <= right) drawing.Add(left, right, ValueOfLine(shown.line, sample.Value) != 0);
  };
  const auto place = [&](const MeasureSample& sample) { return TimeToX(FromSeconds(sample.Time)); };
  const float newest = place(shown.samples.front());
  add(newest - kLaneStroke, newest, shown.samples.front());
  float previous = newest - kLaneStroke;
  for (std::size_t i = 1; i < shown.samples.size(); ++i) {
    const float x = place(shown.samples[i]);
    // The state between two samples is that of the older one.
    add(x, content_.MeasOnly ? x - kLaneStroke : previous, shown.samples[i]);
    previous = x;
  }
  drawing.Finish();
}

}  // namespace tarnlink
