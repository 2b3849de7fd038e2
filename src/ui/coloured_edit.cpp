#include "ui/coloured_edit.h"

#include <QApplication>
#include <QPainter>
#include <algorithm>

#include "platform/qt/qt_colour.h"
#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/palette.h"

namespace tarnlink {

namespace {

constexpr int kLamp = 14;  // pixels across
constexpr int kGap = 6;    // pixels between a lamp and its caption
constexpr int kAir = 4;    // pixels above and below together

const QColor kLit(0, 170, 0);

void DrawLamp(QPainter& painter, const QRect& place, const QColor& colour, const QColor& rim) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(rim);
  painter.setBrush(colour);
  painter.drawEllipse(place.adjusted(1, 1, -1, -1));
}

void ShowColours(QLineEdit* edit, const TextBox& control) {
  if (control.BackColor == kWindowBackground) {
    edit->setPalette(QApplication::palette(edit));
    return;
  }
  const QColor background = ToQColor(control.BackColor);
  QPalette colours = edit->palette();
  colours.setColor(QPalette::Base, background);
  colours.setColor(QPalette::Text, ReadableShade(ToQColor(control.ForeColor), background));
  edit->setPalette(colours);
}

}  // namespace

void BindColoured(QLineEdit* edit, TextBox& control) {
  Bind(edit, control);
  const auto show = [edit, &control] {
    ShowCommon(edit, control);
    edit->setReadOnly(control.Locked);
    const QString text = ToQt(control.Text.get());
    if (edit->text() != text) edit->setText(text);
    ShowColours(edit, control);
  };
  control.SetView(show);
  show();
}

Lamp::Lamp(PlacedControl& control, const QString& name, QWidget* parent)
    : QWidget(parent), control_(control) {
  setObjectName(ToQt(control_.name()));
  setAccessibleName(name);
  setToolTip(name);
  control_.SetView([this] { update(); });
}

Lamp::~Lamp() { control_.SetView({}); }

QSize Lamp::sizeHint() const { return {kLamp, kLamp}; }

void Lamp::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  DrawLamp(painter, QRect(0, (height() - kLamp) / 2, kLamp, kLamp), ToQColor(control_.BackColor),
           palette().color(QPalette::Dark));
}

BitLamp::BitLamp(CheckBox& control, QWidget* parent) : QWidget(parent), control_(control) {
  setObjectName(ToQt(control_.name()));
  control_.SetView([this] { ShowControl(); });
  ShowControl();
}

BitLamp::~BitLamp() { control_.SetView({}); }

void BitLamp::ShowControl() {
  ShowCommon(this, control_);
  setAccessibleName(ToQt(control_.Caption.get()));
  setAccessibleDescription(control_.Value ? tr("on") : tr("off"));
  update();
}

QSize BitLamp::sizeHint() const {
  return {kLamp + kGap + fontMetrics().horizontalAdvance(accessibleName()) + kGap,
          std::max(kLamp, fontMetrics().height()) + kAir};
}

void BitLamp::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  DrawLamp(painter, QRect(0, (height() - kLamp) / 2, kLamp, kLamp),
           control_.Value ? kLit : palette().color(QPalette::Mid), palette().color(QPalette::Dark));
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawText(rect().adjusted(kLamp + kGap, 0, 0, 0),
                   Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, accessibleName());
}

}  // namespace tarnlink
