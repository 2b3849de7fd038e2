#include "graph/graph_page.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "graph/frm_graphic.h"
#include "graph/graph_captions.h"
#include "graph/graph_picture.h"

namespace tarnlink {

namespace {

const Font kSmallFont{.name = "Small Fonts", .size = 7.0F};
const Font kHeadingFont{.name = "Verdana", .size = 8.0F};

// The widest texts that the columns are meant to hold, and the places of a row's parts in them.
constexpr const char* kWidestRow = " Temperature : 7000 rpm ";
constexpr const char* kWidestScale = " 7000 ";
constexpr std::array<const char*, 4> kBefore = {"", " Temperature ",
                                                " Temperature : ", " Temperature : 7000 "};

constexpr Colour kFrame = 0x808080;
constexpr float kFrameLine = 15;  // wide, as the grid
constexpr float kDataLine = 29;
constexpr float kStroke = 2;       // back from a sample that stands for itself
constexpr float kLaneStroke = 50;  // what a lane reaches beyond its newest sample
constexpr double kRowSpacing = 1.2;
constexpr float kFirstRow = 50;

constexpr float kLaneGap = 0.1F;
constexpr float kLaneBar = 0.6F;

}  // namespace

GraphPage::GraphPage(DrawingSurface& output, const Graphic& data, const PageContent& content,
                     const Locale& locale)
    : Output(output), data_(data), content_(content), locale_(locale) {}

// A width that the surface is too coarse for is that of one pixel.
int GraphPage::Width(float twips) const {
  return std::max(1, static_cast<int>(twips / Output.TwipsPerPixelX()));
}

void GraphPage::DrawGraph() {
  Output.SetFont(kSmallFont);
  letter_ = Output.TextHeight("S");
  GraphHeight = static_cast<float>(Output.ScaleHeight() - 2 * MarginTop - kRowSpacing * letter_);
  ValueColumn = Output.TextWidth(kWidestRow);
  ScaleColumn = Output.TextWidth(kWidestScale);
  GraphWidth = Output.ScaleWidth() - ValueColumn - 2 * ScaleColumn - 2 * MarginLeft;
  if (GraphWidth <= 0 || GraphHeight <= 0) return;
  DrawFrame();
  DrawValuePanel();
  DrawLeftCaption();
  DrawRightCaption();
  DrawTimeScale();
  DrawHorScale();
  DrawLines();
  DrawCursor();
  DrawHeading();
}

float GraphPage::TimeToX(Date Time) const {
  const Date start = content_.view.StartTime();
  const double along = (Time - start) / (content_.view.BaseTime - start);
  return static_cast<float>(GraphWidth * along) + Left();
}

// Without the one that the screen's picture takes off.
float GraphPage::ValueToY(float Value, int Unit) const {
  double y = 0;
  switch (Unit) {
    case kCelsius:
      y = GraphHeight * kUpperBand / 130 * (120 - Value);
      break;
    case kBar:
      y = GraphHeight * kUpperBand / 6.5 * (6.5 - Value);
      break;
    case kRpm:
      y = GraphHeight - GraphHeight * kLowerBand / 7000 * Value;
      break;
    default:
      y = GraphHeight - GraphHeight * kLowerBand / 140 * Value;
  }
  return static_cast<float>(y + MarginTop);
}

Point GraphPage::PointOf(const MeasureSample& sample, const GraphAttribute& line) const {
  return {TimeToX(FromSeconds(sample.Time)), ValueToY(ValueOfLine(line, sample.Value), line.Unit)};
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
  double upper = kFirstRow;
  double lanes = GraphHeight * kUpperBand;
  double lower = (kUpperBand + kLaneBand) * GraphHeight + kFirstRow;
  for (int i = 0; i <= data_.LastAttribute(); ++i) {
    const GraphAttribute& line = data_.Attributes[static_cast<std::size_t>(i)];
    if (!line.ShowCaption) continue;
    const bool is_upper = line.Unit == kCelsius || line.Unit == kBar;
    double& top = line.Unit == kOnOff ? lanes : is_upper ? upper : lower;
    DrawRow(line, i, static_cast<float>(top) + MarginTop);
    top += line.Unit == kOnOff ? letter_ : kRowSpacing * letter_;
  }
  DrawMoment();
}

void GraphPage::DrawRow(const GraphAttribute& line, int index, float top) {
  const std::array<std::string, 4> texts = {
      line.Alias, ":",
      CaptionValue(data_.GetCursorValue(index, content_.CursorTime), locale_.DecimalSeparator()),
      UnitText(line.Unit)};
  for (std::size_t i = 0; i < texts.size(); ++i) {
    Output.Text({MarginLeft + Output.TextWidth(kBefore.at(i)), top}, texts.at(i), line.LineColor);
  }
}

void GraphPage::DrawMoment() {
  Output.Text({MarginLeft, Bottom()},
              FormatDate(content_.moment, "dd-mmm-yy hh:nn:ss", locale_.Months()), kBlack);
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
                data_.Colors.CaptionColor);
  }
}

void GraphPage::DrawRightCaption() {
  const std::vector<std::string>& texts = RightScale();
  for (std::size_t i = 0; i < texts.size(); ++i) {
    Output.Text({Right(), ScaleTop(static_cast<int>(i))}, " " + texts[i],
                data_.Colors.CaptionColor);
  }
}

// Labels stand under the frame, centred on their times; the lines stand at full times.
void GraphPage::DrawTimeScale() {
  const GraphView& view = content_.view;
  for (const TimeLabel& label : TimeLabels(view.BaseTime, view.TimeScale, GraphWidth)) {
    const float width = Output.TextWidth(label.Caption);
    Output.Text({static_cast<float>(Left() + label.Center - width / 2), Bottom()}, label.Caption,
                data_.Colors.CaptionColor);
  }
  Output.SetPen(data_.Colors.GridColor, DrawStyle::kSolid, Width(kFrameLine));
  GraphView page = view;
  page.ScaleWidth = GraphWidth;
  for (const float x : page.TimeGrid()) {
    Output.Line({Left() + x, MarginTop}, {Left() + x, Bottom()});
  }
}

void GraphPage::DrawHorScale() {
  Output.SetPen(data_.Colors.GridColor, DrawStyle::kSolid, Width(kFrameLine));
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
  Output.SetPen(data_.Colors.CursorColor, DrawStyle::kSolid, Width(kDataLine));
  Output.Line({x, MarginTop}, {x, Bottom()});
}

void GraphPage::DrawHeading() {
  Output.SetFont(kHeadingFont);
  const float width = Output.TextWidth(content_.HeaderText);
  Output.Text({Output.ScaleWidth() / 2 - width / 2, MarginTop / 2}, content_.HeaderText, kBlack);
}

// --- Lines ---------------------------------------------------------------------------------------

void GraphPage::DrawLines() {
  int lane = 0;
  for (int i = 0; i <= data_.LastAttribute(); ++i) {
    const GraphAttribute& line = data_.Attributes[static_cast<std::size_t>(i)];
    if (!line.ShowLine) continue;
    if (i >= data_.LastChannel() || line.Unit == kOnOff) {
      DrawStatusLine(i, lane++, line);
    } else {
      DrawAnalogLine(i, line);
    }
  }
}

// Nothing of it beyond the frame: a page has no picture that would cut it.
bool GraphPage::CutAtFrame(Point& newer, Point& older) const {
  const auto at = [&](float x) {
    return newer.y + (older.y - newer.y) * (x - newer.x) / (older.x - newer.x);
  };
  if (older.x > Right() || newer.x < Left()) return false;
  if (newer.x > Right()) newer = {Right(), at(Right())};
  if (older.x < Left()) older = {Left(), at(Left())};
  return true;
}

void GraphPage::DrawAnalogLine(int Index, const GraphAttribute& Attribute) {
  const MeasureChannel& channel = data_.ChannelOf(Index);
  if (channel.UpperBound() == 0) return;
  Output.SetPen(Attribute.LineColor, StyleOf(Attribute), Width(kDataLine));
  const SamplesShown range = InView(channel);
  Point newer = PointOf(channel[range.newest], Attribute);
  std::vector<Point> joined;
  for (int i = range.newest - 1; i >= range.newest - range.older; --i) {
    const Point older = PointOf(channel[i], Attribute);
    Point from = newer;
    Point to = older;
    newer = older;
    if (!CutAtFrame(from, to)) continue;
    if (content_.MeasOnly) {
      Output.Line(to, {to.x - kStroke, to.y - kStroke});
    } else {
      if (joined.empty() || joined.back() != from) {
        Output.Polyline(joined);
        joined.assign(1, from);
      }
      joined.push_back(to);
    }
  }
  Output.Polyline(joined);
}

void GraphPage::DrawStatusLine(int Index, int Lane, const GraphAttribute& Attribute) {
  const MeasureChannel& channel = data_.ChannelOf(Index);
  if (channel.UpperBound() == 0) return;
  Output.SetPen(Attribute.LineColor, StyleOf(Attribute), Width(kDataLine));
  const SamplesShown range = InView(channel);
  if (channel[range.newest].Time == 0) return;
  const float height = content_.lane_height * GraphHeight;
  const float top = static_cast<float>(GraphHeight * kUpperBand) + MarginTop +
                    height * (static_cast<float>(Lane) + kLaneGap);
  const auto draw = [&](float from, float to, bool is_on) {
    const float left = std::max(from, Left());
    const float right = std::min(to, Right());
    if (left >= right) return;
    const float bottom = top + height * kLaneBar;
    if (is_on) {
      Output.FilledBox({left, bottom}, {right, top});
    } else {
      Output.Line({left, bottom}, {right, bottom});
    }
  };
  const auto is_on = [&](int i) { return ValueOfLine(Attribute, channel[i].Value) != 0; };
  float previous = TimeToX(FromSeconds(channel[range.newest].Time));
  draw(previous - kLaneStroke, previous, is_on(range.newest));
  previous -= kLaneStroke;
  for (int i = range.newest - 1; i >= range.newest - range.older; --i) {
    const float x = TimeToX(FromSeconds(channel[i].Time));
    // The state between two samples is that of the older one.
    if (content_.MeasOnly) {
      draw(x - kLaneStroke, x, is_on(i));
    } else {
      draw(std::min(x, previous), std::max(x, previous), is_on(i));
    }
    previous = x;
  }
}

SamplesShown GraphPage::InView(const MeasureChannel& channel) const {
  return SamplesInView(channel, ToSeconds(content_.view.BaseTime),
                       ToSeconds(content_.view.StartTime()));
}

}  // namespace tarnlink
