#include "ui/label_panel.h"

#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include "platform/qt/qt_colour.h"
#include "platform/qt/qt_font.h"
#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/mouse_button.h"
#include "ui/palette.h"
#include "ui/report.h"
#include "ui/units.h"

namespace tarnlink {

QFont GraphFont() {
  constexpr int kNarrow = 85;  // percent
  QFont font = ToScreenFont({});
  font.setStretch(kNarrow);
  return font;
}

LabelPanel::LabelPanel(PlacedControl& panel, std::vector<Label*> labels, Qt::Alignment alignment,
                       QWidget* parent, int overhang)
    : QWidget(parent),
      panel_(panel),
      labels_(std::move(labels)),
      alignment_(alignment),
      overhang_(overhang) {
  setObjectName(ToQt(panel_.name()));
  setFont(GraphFont());
  panel_.SetView([this] { ShowControl(); });
  for (Label* label : labels_) label->SetView([this] { update(); });
  ShowControl();
}

LabelPanel::~LabelPanel() {
  panel_.SetView({});
  for (Label* label : labels_) label->SetView({});
}

void LabelPanel::ShowControl() {
  const QRect place = PlaceOf(panel_).adjusted(-overhang_, 0, overhang_, 0);
  if (place != geometry()) setGeometry(place);
  update();
}

QRect LabelPanel::PlaceOfLabel(std::size_t index) const {
  const Label& label = *labels_[index];
  const float drop = Drop ? Drop(index) : 0;
  const QPoint corner(ToPixels(label.Left) + overhang_, ToPixels(label.Top + drop));
  const int width = label.Width > 0 ? ToPixels(label.Width) : this->width() - corner.x();
  return {corner, QSize(width, ToPixels(label.Height))};
}

void LabelPanel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QColor background = ToQColor(panel_.BackColor);
  painter.fillRect(rect(), background);
  for (std::size_t i = 0; i < labels_.size(); ++i) {
    const Label* label = labels_[i];
    if (!label->Visible) continue;
    painter.setPen(ReadableShade(ToQColor(label->ForeColor), background));
    const QRect place = PlaceOfLabel(i);
    const QString text = ToQt(label->Caption.get());
    const bool fits = label->Width <= 0 || fontMetrics().horizontalAdvance(text) <= place.width();
    painter.drawText(
        place,
        static_cast<int>(alignment_ | Qt::AlignVCenter) | Qt::TextSingleLine | Qt::TextDontClip,
        fits ? text : fontMetrics().elidedText(text, Qt::ElideRight, place.width()));
  }
}

std::vector<LabelPanel::Shown> LabelPanel::ShownLabels() const {
  std::vector<Shown> shown;
  for (std::size_t i = 0; i < labels_.size(); ++i) {
    const Label* label = labels_[i];
    if (!label->Visible || label->Caption->empty()) continue;
    shown.push_back({ToQt(label->Caption.get()), PlaceOfLabel(i)});
  }
  return shown;
}

QString LabelPanel::ShownText() const {
  QStringList texts;
  for (const Shown& label : ShownLabels()) texts << label.text;
  return texts.join(QStringLiteral(", "));
}

void LabelPanel::mousePressEvent(QMouseEvent* event) { Report(Down, ToMouseButton(*event)); }

// The mouse asked for the menu with its button already.
void LabelPanel::contextMenuEvent(QContextMenuEvent* event) { event->accept(); }

bool LabelPanel::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  for (std::size_t i = 0; i < labels_.size(); ++i) {
    const Label* label = labels_[i];
    if (!label->Visible || label->ToolTipText->empty()) continue;
    if (!PlaceOfLabel(i).contains(help->pos())) continue;
    QToolTip::showText(help->globalPos(), PlainToolTip(label->ToolTipText), this);
    return true;
  }
  QToolTip::hideText();
  return true;
}

}  // namespace tarnlink
