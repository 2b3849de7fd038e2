#include "ui/cfg_result_delegate.h"

#include <QPainter>
#include <QPixmap>

#include "tools/cfg_stages.h"
#include "ui/palette.h"

namespace tarnlink {

namespace {

constexpr int kSign = 12;       // pixels across
constexpr double kPen = 2.0;    // pixels
constexpr double kTint = 0.25;  // of the row in work

struct Shades {
  QColor on_light;
  QColor on_dark;
};

constexpr Shades kGreen = {{0, 130, 0}, {90, 210, 100}};
constexpr Shades kRed = {{200, 0, 0}, {255, 110, 110}};
constexpr Shades kAmber = {{150, 95, 0}, {235, 180, 70}};
constexpr int kHalfLight = 128;

QColor ColourOf(CfgVerdict verdict, const QColor& ground) {
  const Shades& shades = verdict == CfgVerdict::kGood    ? kGreen
                         : verdict == CfgVerdict::kWrong ? kRed
                                                         : kAmber;
  return ReadableShade(ground.lightness() < kHalfLight ? shades.on_dark : shades.on_light, ground);
}

void DrawArrow(QPainter& painter) {
  painter.setBrush(painter.pen().color());
  painter.drawPolygon(QPolygonF({{3, 2}, {9, 6}, {3, 10}}));
}

void DrawQuestionMark(QPainter& painter) {
  QFont font = painter.font();
  font.setPixelSize(kSign);
  font.setBold(true);
  painter.setFont(font);
  painter.drawText(QRect(0, 0, kSign, kSign), Qt::AlignCenter, QStringLiteral("?"));
}

QColor Mixed(const QColor& one, const QColor& other, double share) {
  const auto mix = [share](int a, int b) { return static_cast<int>(a + (b - a) * share); };
  return {mix(one.red(), other.red()), mix(one.green(), other.green()),
          mix(one.blue(), other.blue())};
}

}  // namespace

CfgResultDelegate::Shape CfgResultDelegate::ShapeOf(const QModelIndex& index) {
  if (index.column() == 0) return index.data(kInWork).toBool() ? Shape::kArrow : Shape::kNothing;
  switch (static_cast<CfgVerdict>(index.data(kVerdict).toInt())) {
    case CfgVerdict::kNone:
      return Shape::kNothing;
    case CfgVerdict::kGood:
      return Shape::kGood;
    case CfgVerdict::kWrong:
      return Shape::kWrong;
    case CfgVerdict::kUnknown:
      return Shape::kUnknown;
  }
  return Shape::kNothing;
}

// A new picture at each painting would be kept in Qt's cache, megabytes of them.
const QIcon& CfgResultDelegate::Sign(const QStyleOptionViewItem& option, Shape shape,
                                     const QColor& colour) const {
  const double scale = option.widget == nullptr ? 1.0 : option.widget->devicePixelRatioF();
  QIcon& icon = signs_[{shape, colour.rgb(), scale}];
  if (!icon.isNull()) return icon;
  QPixmap picture(QSize(kSign, kSign) * scale);
  picture.setDevicePixelRatio(scale);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(colour, kPen));
  switch (shape) {
    case Shape::kNothing:
      break;
    case Shape::kArrow:
      DrawArrow(painter);
      break;
    case Shape::kGood:
      painter.drawPolyline(QPolygonF({{1.5, 6.5}, {4.5, 9.5}, {10.5, 2.5}}));
      break;
    case Shape::kWrong:
      painter.drawLine(2, 2, 10, 10);
      painter.drawLine(2, 10, 10, 2);
      break;
    case Shape::kUnknown:
      DrawQuestionMark(painter);
  }
  painter.end();
  // The same in a row that is picked.
  for (const auto mode : {QIcon::Normal, QIcon::Selected}) icon.addPixmap(picture, mode);
  return icon;
}

void CfgResultDelegate::initStyleOption(QStyleOptionViewItem* option,
                                        const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(option, index);
  const bool is_picked = option->state.testFlag(QStyle::State_Selected);
  const bool is_in_work = index.data(kInWork).toBool();
  QColor ground = option->palette.color(is_picked ? QPalette::Highlight : QPalette::Base);
  if (is_in_work && !is_picked) {
    ground = Mixed(ground, option->palette.color(QPalette::Highlight), kTint);
    option->backgroundBrush = ground;
  }
  option->font.setBold(is_in_work);
  const QVariant data = index.data(kVerdict);
  const bool has_sign = data.isValid() || index.column() == 0;
  if (!has_sign) return;
  option->features |= QStyleOptionViewItem::HasDecoration;
  option->decorationSize = QSize(kSign, kSign);
  if (index.column() == 0) {
    const QPalette::ColorRole role = is_picked ? QPalette::HighlightedText : QPalette::Text;
    option->icon = Sign(*option, ShapeOf(index), option->palette.color(role));
    return;
  }
  const QColor colour = ColourOf(static_cast<CfgVerdict>(data.toInt()), ground);
  option->icon = Sign(*option, ShapeOf(index), colour);
  option->palette.setColor(QPalette::Text, colour);
  option->palette.setColor(QPalette::HighlightedText, colour);
}

}  // namespace tarnlink
