#include "ui/eeprom_map_view.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QHelpEvent>
#include <QLabel>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>
#include <algorithm>
#include <array>

#include "platform/qt/qt_text.h"

namespace tarnlink {

namespace {

constexpr int kColumns = 16;
constexpr int kSquare = 10;  // pixels, with the gap behind it
constexpr int kGap = 2;
constexpr int kLabelledRows = 2;  // every second row has its address
constexpr int kUsualRows = 32;
constexpr int kOutline = 90;  // of 255: it is there, and no more
constexpr QColor kGood(40, 150, 70);
constexpr QColor kHalfWay(60, 120, 220);
constexpr QColor kBad(205, 40, 40);
// Of the states, in their order.
constexpr std::array kNames = {"open", "in work", "written", "verified", "wrong"};

// No two states differ by their colour alone.
void DrawCell(QPainter& painter, const QRect& place, CellState state, const QPalette& colours) {
  const QRect half(place.left(), place.center().y(), place.width(),
                   place.bottom() - place.center().y() + 1);
  QColor outline = colours.color(QPalette::WindowText);
  outline.setAlpha(kOutline);
  painter.setPen(outline);
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(place.adjusted(0, 0, -1, -1));
  switch (state) {
    case CellState::kOpen:
      break;
    case CellState::kInWork:
      painter.setPen(QPen(colours.color(QPalette::WindowText), 2));
      painter.drawRect(place.adjusted(1, 1, -1, -1));
      break;
    case CellState::kWritten:
      painter.fillRect(half, kHalfWay);
      break;
    case CellState::kVerified:
      painter.fillRect(place, kGood);
      break;
    case CellState::kWrong:
      painter.fillRect(place, kBad);
      painter.setPen(QPen(Qt::white, 2));
      painter.drawLine(place.topLeft() + QPoint(2, 2), place.bottomRight() - QPoint(2, 2));
      painter.drawLine(place.topRight() + QPoint(-2, 2), place.bottomLeft() + QPoint(2, -2));
      break;
  }
}

QString NameOf(CellState state) { return QObject::tr(kNames.at(static_cast<std::size_t>(state))); }

}  // namespace

// --- The squares ---------------------------------------------------------------------------------

class EepromMapView::Page final : public QWidget {
 public:
  explicit Page(EepromMap& map) : map_(map) {}

  QSize sizeHint() const override {
    const int rows = (static_cast<int>(map_.Cells().size()) + kColumns - 1) / kColumns;
    return {LabelWidth() + kColumns * kSquare, std::max(rows, kUsualRows) * kSquare};
  }
  QRect Place(std::size_t cell) const {
    const int at = static_cast<int>(cell);
    return {LabelWidth() + at % kColumns * kSquare, at / kColumns * kSquare, kSquare - kGap,
            kSquare - kGap};
  }

 protected:
  void paintEvent(QPaintEvent* event) override {
    QPainter painter(this);
    const auto& cells = map_.Cells();
    const auto first = static_cast<std::size_t>(event->rect().top() / kSquare) * kColumns;
    const auto behind = static_cast<std::size_t>(event->rect().bottom() / kSquare + 1) * kColumns;
    for (std::size_t i = first; i < std::min(behind, cells.size()); ++i) {
      const int row = static_cast<int>(i) / kColumns;
      if (i % kColumns == 0 && row % kLabelledRows == 0) {
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(QPoint(0, row * kSquare + fontMetrics().capHeight()),
                         ToQt(cells[i].Address));
      }
      DrawCell(painter, Place(i), cells[i].State, palette());
    }
  }
  bool event(QEvent* event) override {
    if (event->type() != QEvent::ToolTip) return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    QToolTip::showText(help->globalPos(), TextAt(help->pos()), this);
    return true;
  }

 private:
  int LabelWidth() const { return fontMetrics().horizontalAdvance(QStringLiteral("0XDDDD ")); }
  QString TextAt(const QPoint& at) const {
    const int column = (at.x() - LabelWidth()) / kSquare;
    const int cell = at.y() / kSquare * kColumns + column;
    const auto count = static_cast<int>(map_.Cells().size());
    if (at.x() < LabelWidth() || column >= kColumns || cell >= count) return {};
    const EepromMap::Cell& told = map_.Cells()[static_cast<std::size_t>(cell)];
    return ToQt(told.Address + ": " + told.Text).toHtmlEscaped() + ", " + NameOf(told.State);
  }

  EepromMap& map_;
};

EepromMapView::EepromMapView(EepromMap& map, QWidget* parent)
    : QScrollArea(parent), map_(map), page_(new Page(map)) {
  setObjectName(ToQt(map_.name()));
  setAccessibleName(tr("Image, sixteen bytes a row"));
  setFrameShape(QFrame::NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setWidget(page_);
  setFocusPolicy(Qt::NoFocus);
  viewport()->setAutoFillBackground(false);
  page_->setAutoFillBackground(false);
  map_.SetView([this] { ShowMap(); });
  ShowMap();
}

EepromMapView::~EepromMapView() { map_.SetView({}); }

QSize EepromMapView::sizeHint() const {
  const QSize usual(page_->sizeHint().width(), kUsualRows * kSquare);
  return usual + QSize(verticalScrollBar()->sizeHint().width(), 0);
}

void EepromMapView::ShowMap() {
  if (page_->size() != page_->sizeHint()) page_->resize(page_->sizeHint());
  if (map_.InWork() == 0) {
    page_->update();  // it may be another image
  } else {
    page_->update(page_->Place(map_.InWork()));
  }
  const int at = page_->Place(map_.InWork()).center().y();
  // Whoever has scrolled elsewhere looks there.
  const bool follows = map_.InWork() == 0 ||
                       !page_->visibleRegion().intersected(QRect(0, shown_, width(), 1)).isEmpty();
  if (follows) ensureVisible(0, at, 0, 2 * kSquare);
  shown_ = at;
}

// --- What they mean ------------------------------------------------------------------------------

namespace {

class Square final : public QWidget {
 public:
  Square(CellState state, QWidget* parent) : QWidget(parent), state_(state) {
    setFixedSize(kSquare, kSquare);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    DrawCell(painter, rect(), state_, palette());
  }

 private:
  CellState state_;
};

}  // namespace

QWidget* MakeMapLegend(QWidget* parent) {
  constexpr int kInRow = 3;
  auto* legend = new QWidget(parent);
  auto* rows = new QGridLayout(legend);
  rows->setContentsMargins(0, 0, 0, 0);
  for (int i = 0; i < static_cast<int>(kNames.size()); ++i) {
    const auto state = static_cast<CellState>(i);
    auto* entry = new QHBoxLayout;
    entry->addWidget(new Square(state, legend));
    entry->addWidget(new QLabel(NameOf(state), legend), 1);
    rows->addLayout(entry, i / kInRow, i % kInRow);
  }
  return legend;
}

}  // namespace tarnlink
