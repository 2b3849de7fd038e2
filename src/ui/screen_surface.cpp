#include "ui/screen_surface.h"

#include <QApplication>
#include <QMouseEvent>
#include <QTimer>
#include <utility>

#include "platform/qt/qt_colour.h"
#include "platform/qt/qt_font.h"
#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/mouse_button.h"
#include "ui/palette.h"
#include "ui/screen_box.h"
#include "ui/screen_check.h"
#include "ui/screen_label.h"
#include "ui/units.h"

namespace tarnlink {

namespace {

constexpr int kMargin = 16;  // pixels kept free right of and below the outermost object

// How much room an object takes of the surface's size.
QSize Corner(const QWidget* widget) {
  const QRect place = widget->geometry();
  return {place.right() + 1 + kMargin, place.bottom() + 1 + kMargin};
}

}  // namespace

ScreenSurface::ScreenSurface(frm_Main& main, QWidget* parent) : QWidget(parent), main_(main) {
  setObjectName("screen");
  setAutoFillBackground(true);
  setFont(ToScreenFont(Font{}));
  setFocusPolicy(Qt::StrongFocus);
  Follow(main_.RAM_LOC_VAL, ItemKind::kValue, [this](int index) { return MakeValue(index); });
  Follow(main_.RAM_LOC_TEXT, ItemKind::kName, [this](int index) { return MakeName(index); });
  Follow(main_.RAM_LOC_CHECK, ItemKind::kCheck, [this](int index) { return MakeCheck(index); });
  Follow(main_.lbl_TextInfo, ItemKind::kLabel, [this](int index) { return MakeLabel(index); });
  main_.form.SetFocus = [this](const PlacedControl& control) { GiveFocus(control); };
  ShowColour();
}

ScreenSurface::~ScreenSurface() {
  const auto release = [this](auto& array, ItemKind kind) {
    array.Loaded = {};
    array.Unloading = {};
    for (const auto& [index, widget] : WidgetsOf(kind)) array(index).SetView({});
  };
  main_.form.SetFocus = {};
  release(main_.RAM_LOC_VAL, ItemKind::kValue);
  release(main_.RAM_LOC_TEXT, ItemKind::kName);
  release(main_.RAM_LOC_CHECK, ItemKind::kCheck);
  release(main_.lbl_TextInfo, ItemKind::kLabel);
}

template <class Array, class Make>
void ScreenSurface::Follow(Array& array, ItemKind kind, Make make) {
  Widgets& widgets = WidgetsOf(kind);
  array.Loaded = [this, &array, &widgets, kind, make](int index) {
    auto& control = array(index);
    auto& widget = widgets[index];
    control.SetView([this, &control, &widget, kind, make, index] {
      if (!control.Visible) return;
      // The widget sets a view of its own in place of this function, which must outlive that.
      auto& made = widget;
      auto& items = items_;
      const ScreenItem item{kind, index};
      const auto keep = make;
      made = keep(index);
      items[made] = item;
    });
  };
  array.Unloading = [this, &array, &widgets](int index) {
    array(index).SetView({});
    const auto widget = widgets.find(index);
    if (widget == widgets.end()) return;
    LetGo(widget->second);
    widgets.erase(widget);
    FitSoon();
  };
}

void ScreenSurface::LetGo(QWidget* widget) {
  if (widget == nullptr) return;
  mouse_.Forget(widget);
  if (window()->focusWidget() == widget) setFocus(Qt::OtherFocusReason);
  items_.erase(widget);
  delete widget;
}

QSize ScreenSurface::sizeHint() const { return needed_; }

void ScreenSurface::ShowColour() { SetColours(this, ToQColor(main_.form.BackColor), Qt::black); }

// --- Its objects ---------------------------------------------------------------------------------

ScreenItem ScreenSurface::ItemOf(const QWidget* widget) const {
  const auto item = items_.find(widget);
  return item == items_.end() ? ScreenItem{} : item->second;
}

QWidget* ScreenSurface::WidgetOf(const ScreenItem& item) const {
  const Widgets& widgets = WidgetsOf(item.kind);
  const auto widget = widgets.find(item.index);
  return widget == widgets.end() ? nullptr : widget->second;
}

PlacedControl& ScreenSurface::ControlOf(const ScreenItem& item) const {
  switch (item.kind) {
    case ItemKind::kName:
      return main_.RAM_LOC_TEXT(item.index);
    case ItemKind::kValue:
      return main_.RAM_LOC_VAL(item.index);
    case ItemKind::kCheck:
      return main_.RAM_LOC_CHECK(item.index);
    default:
      return main_.lbl_TextInfo(item.index);
  }
}

std::vector<QWidget*> ScreenSurface::VisibleWidgets() const {
  std::vector<QWidget*> visible;
  for (const Widgets& widgets : widgets_) {
    for (const auto& [index, widget] : widgets) {
      if (widget != nullptr && !widget->isHidden()) visible.push_back(widget);
    }
  }
  return visible;
}

// --- Size and scrolling --------------------------------------------------------------------------

// While objects are shown and moved the surface only grows, so that none waits for its room.
void ScreenSurface::Grow(const QWidget* widget) {
  if (!widget->isHidden()) NeedSize(needed_.expandedTo(Corner(widget)));
  FitSoon();
}

// What is being dragged is hidden and needs its room all the same.
void ScreenSurface::FitSoon() {
  if (fits_soon_) return;
  fits_soon_ = true;
  QTimer::singleShot(0, this, [this] {
    fits_soon_ = false;
    if (main_.DragSource == nullptr) Fit();
    for (const int index : std::exchange(undescribed_, {})) DescribeBoxes(index);
  });
}

void ScreenSurface::Fit() {
  QSize wanted(0, 0);
  for (const QWidget* widget : VisibleWidgets()) wanted = wanted.expandedTo(Corner(widget));
  NeedSize(wanted);
}

void ScreenSurface::NeedSize(const QSize& size) {
  if (size == needed_) return;
  needed_ = size;
  setMinimumSize(needed_);
}

QScrollArea* ScreenSurface::Scroller() const {
  QWidget* viewport = parentWidget();
  return viewport == nullptr ? nullptr : qobject_cast<QScrollArea*>(viewport->parentWidget());
}

void ScreenSurface::Reveal(QWidget* widget) {
  QScrollArea* area = Scroller();
  if (area == nullptr) return;
  const auto scroll = [area, widget] { area->ensureWidgetVisible(widget, kMargin, kMargin); };
  scroll();
  // A scroll bar that the place brings up comes later, and takes some of the room.
  QTimer::singleShot(0, widget, scroll);
}

void ScreenSurface::LeadKeyboardTo(QWidget* widget, Qt::FocusReason reason) {
  widget->setFocus(reason);
  Reveal(widget);
}

void ScreenSurface::GiveFocus(const PlacedControl& control) {
  auto* widget = findChild<QWidget*>(ToQt(control.name()), Qt::FindDirectChildrenOnly);
  if (widget != nullptr) LeadKeyboardTo(widget, Qt::OtherFocusReason);
}

// --- What the user does --------------------------------------------------------------------------

// Boxes and labels leave what they get to the surface, which knows what stands where.
void ScreenSurface::mousePressEvent(QMouseEvent* event) {
  const bool shift = event->modifiers().testFlag(Qt::ShiftModifier);
  const MouseButton button = ToMouseButton(*event);
  mouse_.Press(event->position().toPoint(), button, shift);
}

// Only the plain left button knows double clicks; the second press of any other is one more press.
void ScreenSurface::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && !event->modifiers().testFlag(Qt::ShiftModifier)) {
    mouse_.DoubleClick(event->position().toPoint());
  } else {
    mousePressEvent(event);
  }
}

void ScreenSurface::keyPressEvent(QKeyEvent* event) {
  if (!keys_.Press(*event)) QWidget::keyPressEvent(event);
}

// Tab that comes from outside goes on to the first object, or the last.
void ScreenSurface::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  if (event->reason() == Qt::TabFocusReason) keys_.Step(true);
  if (event->reason() == Qt::BacktabFocusReason) keys_.Step(false);
}

bool ScreenSurface::focusNextPrevChild(bool next) {
  // A box that is hidden because it is being dragged gets the keyboard back when it is dropped.
  if (main_.DragSource != nullptr) {
    setFocus(Qt::OtherFocusReason);
    return true;
  }
  const bool has_gone = HasJustHidden(QApplication::focusWidget());
  if (keys_.Step(next)) return true;
  if (has_gone && keys_.Step(!next)) return true;
  // Out of the screen, from the surface's own place among the widgets of the window.
  setFocus(Qt::OtherFocusReason);
  return has_gone || QWidget::focusNextPrevChild(next);
}

// --- Making its widgets --------------------------------------------------------------------------

// A new text, which comes with every exchange of a run, needs no other room.
template <class Widget>
void ScreenSurface::ShowChange(Widget* widget) {
  const QRect place = widget->geometry();
  const bool was_hidden = widget->isHidden();
  widget->ShowControl();
  if (widget->geometry() != place || widget->isHidden() != was_hidden) Grow(widget);
}

QWidget* ScreenSurface::MakeValue(int index) {
  TextBox& control = main_.RAM_LOC_VAL(index);
  auto* box = new ScreenBox(control, this);
  control.SetView([this, box] { ShowChange(box); });
  Grow(box);
  return box;
}

QWidget* ScreenSurface::MakeName(int index) {
  TextBox& control = main_.RAM_LOC_TEXT(index);
  auto* box = new ScreenBox(control, this);
  control.SetView([this, box, index] {
    ShowChange(box);
    DescribeSoon(index);
  });
  Grow(box);
  DescribeSoon(index);
  return box;
}

QWidget* ScreenSurface::MakeCheck(int index) {
  CheckBox& control = main_.RAM_LOC_CHECK(index);
  auto* box = new ScreenCheck(control, this);
  control.SetView([this, box] { ShowChange(box); });
  Grow(box);
  WidgetsOf(ItemKind::kCheck)[index] = box;
  DescribeSoon(index);
  return box;
}

// When a whole screen is up, and not while the user waits for it.
void ScreenSurface::DescribeSoon(int index) {
  undescribed_.push_back(index);
  FitSoon();
}

// Whoever cannot see beside which name a check box and a value box stand hears it.
void ScreenSurface::DescribeBoxes(int index) {
  if (!main_.RAM_LOC_TEXT.Has(index)) return;
  const QString name = ToQt(main_.RAM_LOC_TEXT(index).Text.get());
  QWidget* check = WidgetOf({ItemKind::kCheck, index});
  if (check != nullptr) check->setAccessibleName(tr("Scan %1").arg(name));
  QWidget* value = WidgetOf({ItemKind::kValue, index});
  if (value != nullptr) value->setAccessibleDescription(name);
}

QWidget* ScreenSurface::MakeLabel(int index) {
  Label& control = main_.lbl_TextInfo(index);
  auto* label = new ScreenLabel(control, this);
  control.SetView([this, label] { ShowChange(label); });
  Grow(label);
  return label;
}

}  // namespace tarnlink
