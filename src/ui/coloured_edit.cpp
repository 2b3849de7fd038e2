#include "ui/coloured_edit.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPainter>
#include <QRegularExpression>
#include <algorithm>

#include "platform/qt/qt_colour.h"
#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/palette.h"

namespace tarnlink {

namespace {

constexpr int kLamp = 14;     // pixels across
constexpr int kGap = 6;       // pixels between a lamp and its caption
constexpr int kAir = 4;       // pixels above and below together
constexpr double kRim = 1.5;  // pixels
constexpr int kLine = 40;     // average letters to a line of a caption

const QColor kLit(0, 170, 0);

// At the left of `widget`. One that is out is a ring: it is told from a lit one without colours
// too.
void DrawLamp(QWidget* widget, bool is_lit, const QColor& colour) {
  QPainter painter(widget);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(widget->palette().color(QPalette::PlaceholderText), kRim));
  if (is_lit) painter.setBrush(colour);
  const QRect place(0, (widget->height() - kLamp) / 2, kLamp, kLamp);
  painter.drawEllipse(place.adjusted(1, 1, -1, -1));
}

// What is not set here follows the desktop. A colour that is set means something, and stays what it
// is in a dark one too: white are the slaves that the scan has been at.
void ShowColours(QLineEdit* edit, const TextBox& control) {
  QPalette colours;
  if (control.BackColor != kWindowBackground) {
    const QColor background = ToQColor(control.BackColor);
    colours.setColor(QPalette::Base, background);
    colours.setColor(QPalette::Text, ReadableShade(ToQColor(control.ForeColor), background));
  } else {
    const QPalette desktop = QGuiApplication::palette();
    const QColor ground = desktop.color(control.Locked ? QPalette::Window : QPalette::Base);
    if (control.Locked) colours.setColor(QPalette::Base, ground);
    if (control.ForeColor != kBlack) {
      colours.setColor(QPalette::Text, ReadableShade(ToQColor(control.ForeColor), ground));
    }
  }
  edit->setPalette(colours);
}

void ShowWeight(QLineEdit* edit, const TextBox& control) {
  QFont font = edit->font();
  if (font.bold() == control.TextFont->bold) return;
  font.setBold(control.TextFont->bold);
  edit->setFont(font);
}

// The desktop takes other colours while the box is shown.
class DesktopWatch final : public QObject {
 public:
  DesktopWatch(QLineEdit* edit, const TextBox& control)
      : QObject(edit), edit_(edit), control_(control) {
    edit->installEventFilter(this);
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::PaletteChange) ShowColours(edit_, control_);
    return QObject::eventFilter(watched, event);
  }

 private:
  QLineEdit* edit_;
  const TextBox& control_;
};

}  // namespace

void ShowText(QLineEdit* edit, const TextBox& control) {
  ShowCommon(edit, control);
  edit->setReadOnly(control.Locked);
  const QString text = ToQt(control.Text.get());
  if (edit->text() == text) return;
  edit->setText(text);
  if (control.Locked) edit->setCursorPosition(0);
}

void BindColoured(QLineEdit* edit, TextBox& control) {
  Bind(edit, control);
  edit->setCursorPosition(0);
  if (control.Locked) edit->setFocusPolicy(Qt::ClickFocus);
  const auto show = [edit, &control] {
    if (edit->isReadOnly() != control.Locked.get()) {
      edit->setFocusPolicy(control.Locked ? Qt::ClickFocus : Qt::StrongFocus);
    }
    ShowText(edit, control);
    ShowColours(edit, control);
    ShowWeight(edit, control);
  };
  control.SetView(show);
  show();
  new DesktopWatch(edit, control);
}

Lamp::Lamp(PlacedControl& control, const QString& name, QWidget* parent)
    : QWidget(parent), control_(control) {
  setObjectName(ToQt(control_.name()));
  setAccessibleName(name);
  setToolTip(name);
  control_.SetView([this] { ShowControl(); });
  ShowControl();
}

Lamp::~Lamp() { control_.SetView({}); }

void Lamp::ShowControl() {
  setAccessibleDescription(IsLit() ? tr("on") : tr("off"));
  update();
}

bool Lamp::IsLit() const { return control_.BackColor != kFormBackground; }

QSize Lamp::sizeHint() const { return {kLamp, kLamp}; }

void Lamp::paintEvent(QPaintEvent*) { DrawLamp(this, IsLit(), ToQColor(control_.BackColor)); }

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

// Several blanks part what stands on two lines.
QString BitLamp::ShownCaption() const {
  static const QRegularExpression blanks(QStringLiteral(" {2,}"));
  return ToQt(control_.Caption.get()).replace(blanks, QStringLiteral("\n"));
}

QSize BitLamp::sizeHint() const {
  const QRect room(0, 0, fontMetrics().averageCharWidth() * kLine, 0);
  const QSize caption = fontMetrics().boundingRect(room, Qt::TextWordWrap, ShownCaption()).size();
  return {kLamp + kGap + caption.width() + kGap, std::max(kLamp, caption.height()) + kAir};
}

void BitLamp::paintEvent(QPaintEvent*) {
  DrawLamp(this, control_.Value, kLit);
  QPainter painter(this);
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawText(rect().adjusted(kLamp + kGap, 0, 0, 0),
                   Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap, ShownCaption());
}

}  // namespace tarnlink
