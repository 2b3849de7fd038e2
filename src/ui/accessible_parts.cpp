#include "ui/accessible_parts.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QCoreApplication>
#include <QKeyEvent>

#include "ui/click_label.h"
#include "ui/coloured_edit.h"
#include "ui/graph_canvas.h"
#include "ui/label_panel.h"
#include "ui/line_rows.h"
#include "ui/screen_box.h"
#include "ui/sensor_plot.h"
#include "ui/text_plate.h"

namespace tarnlink {

namespace {

// Something whose value is a text.
class Shown : public QAccessibleWidget {
 public:
  using Text = QString (*)(const QWidget*);

  Shown(QWidget* widget, QAccessible::Role role, Text value)
      : QAccessibleWidget(widget, role), value_(value) {}

  QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Value && value_ != nullptr) return value_(widget());
    return QAccessibleWidget::text(kind);
  }
  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.readOnly = true;
    return state;
  }

 private:
  Text value_;
};

// Labels that are one widget are read one behind the other.
class Labels final : public QAccessibleWidget {
 public:
  explicit Labels(LabelPanel* panel)
      : QAccessibleWidget(panel, QAccessible::StaticText), panel_(panel) {}

  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Name ? panel_->ShownText() : QAccessibleWidget::text(kind);
  }

 private:
  LabelPanel* panel_;
};

// Pressed with Space, as by the keyboard.
class Pressed final : public QAccessibleWidget {
 public:
  using QAccessibleWidget::QAccessibleWidget;

  QStringList actionNames() const override {
    return QStringList(pressAction()) + QAccessibleWidget::actionNames();
  }
  void doAction(const QString& action) override {
    if (action != pressAction()) return QAccessibleWidget::doAction(action);
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
      QKeyEvent space(type, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "));
      QCoreApplication::sendEvent(widget(), &space);
    }
  }
};

QString TextOf(const QWidget* plate) { return static_cast<const TextPlate*>(plate)->text(); }
QString Description(const QWidget* widget) { return widget->accessibleDescription(); }

QAccessibleInterface* MakePart(const QString&, QObject* object) {
  if (auto* plate = dynamic_cast<TextPlate*>(object)) {
    return new Shown(plate, QAccessible::StaticText, TextOf);
  }
  if (auto* lamp = dynamic_cast<Lamp*>(object)) {
    return new Shown(lamp, QAccessible::Indicator, Description);
  }
  if (auto* lamp = dynamic_cast<BitLamp*>(object)) {
    return new Shown(lamp, QAccessible::Indicator, Description);
  }
  if (auto* panel = dynamic_cast<LabelPanel*>(object)) return new Labels(panel);
  if (auto* label = dynamic_cast<ClickLabel*>(object)) {
    return new Pressed(label, QAccessible::Button);
  }
  if (auto* name = dynamic_cast<RowName*>(object)) return new Pressed(name, QAccessible::ListItem);
  if (auto* canvas = dynamic_cast<GraphCanvas*>(object)) {
    return new Shown(canvas, QAccessible::Graphic, nullptr);
  }
  if (auto* plot = dynamic_cast<SensorPlot*>(object)) {
    return new Shown(plot, QAccessible::Graphic, nullptr);
  }
  return nullptr;
}

}  // namespace

void InstallAccessibleParts() { QAccessible::installFactory(MakePart); }

}  // namespace tarnlink
