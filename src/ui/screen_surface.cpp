#include "ui/screen_surface.h"

#include <QCheckBox>
#include <QLabel>
#include <algorithm>

#include "platform/qt/qt_colour.h"
#include "platform/qt/qt_font.h"
#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/palette.h"
#include "ui/screen_box.h"
#include "ui/units.h"

namespace tarnlink {

namespace {

constexpr int kMargin = 16;  // pixels kept free right of and below the outermost object

// What a display has room for, and a font engine can draw, whatever a file says.
constexpr qsizetype kLongestCaption = 500;  // characters
constexpr float kLargestLetters = 300.0F;   // points

QFont FontOf(const Label& control) {
  Font font = control.TextFont;
  font.size = std::min(font.size, kLargestLetters);
  return ToScreenFont(font);
}

void ShowLabel(QLabel* label, const Label& control) {
  label->setText(ToQt(control.Caption.get()).left(kLongestCaption));
  label->setFont(FontOf(control));
  SetColours(label, ToQColor(control.BackColor), ToQColor(control.ForeColor));
  label->adjustSize();
  label->move(ToPixels(control.Left), ToPixels(control.Top));
  ShowCommon(label, control);
}

}  // namespace

ScreenSurface::ScreenSurface(frm_Main& main, QWidget* parent) : QWidget(parent), main_(main) {
  setObjectName("screen");
  setAutoFillBackground(true);
  setFont(ToScreenFont(Font{}));
  Follow(main_.RAM_LOC_VAL, values_, [this](int index) { return MakeValue(index); });
  Follow(main_.RAM_LOC_TEXT, names_, [this](int index) { return MakeName(index); });
  Follow(main_.RAM_LOC_CHECK, checks_, [this](int index) { return MakeCheck(index); });
  Follow(main_.lbl_TextInfo, labels_, [this](int index) { return MakeLabel(index); });
  ShowColour();
}

ScreenSurface::~ScreenSurface() {
  const auto release = [](auto& array, const std::unordered_map<int, QWidget*>& widgets) {
    array.Loaded = {};
    array.Unloading = {};
    for (const auto& [index, widget] : widgets) array(index).SetView({});
  };
  release(main_.RAM_LOC_VAL, values_);
  release(main_.RAM_LOC_TEXT, names_);
  release(main_.RAM_LOC_CHECK, checks_);
  release(main_.lbl_TextInfo, labels_);
}

template <class Array, class Make>
void ScreenSurface::Follow(Array& array, std::unordered_map<int, QWidget*>& widgets, Make make) {
  array.Loaded = [&array, &widgets, make](int index) {
    auto& control = array(index);
    auto& widget = widgets[index];
    control.SetView([&control, &widget, make, index] {
      if (!control.Visible) return;
      // The widget sets a view of its own in place of this function, which must outlive that.
      auto& made = widget;
      const auto keep = make;
      made = keep(index);
    });
  };
  array.Unloading = [this, &array, &widgets](int index) {
    array(index).SetView({});
    const auto widget = widgets.find(index);
    if (widget == widgets.end()) return;
    delete widget->second;
    widgets.erase(widget);
    Shrink();
  };
}

QSize ScreenSurface::sizeHint() const { return needed_; }

void ScreenSurface::ShowColour() { SetColours(this, ToQColor(main_.form.BackColor), Qt::black); }

// The surface only grows while objects are shown and moved; an empty one begins anew.
void ScreenSurface::Grow(const QWidget* widget) {
  if (widget->isHidden()) return;
  const QRect place = widget->geometry();
  const QSize wanted =
      needed_.expandedTo(QSize(place.right() + 1 + kMargin, place.bottom() + 1 + kMargin));
  if (wanted == needed_) return;
  needed_ = wanted;
  setMinimumSize(needed_);
}

void ScreenSurface::Shrink() {
  if (!values_.empty() || !names_.empty() || !checks_.empty() || !labels_.empty()) return;
  needed_ = QSize(0, 0);
  setMinimumSize(needed_);
}

QWidget* ScreenSurface::MakeValue(int index) {
  TextBox& control = main_.RAM_LOC_VAL(index);
  auto* box = new ScreenBox(control, this);
  control.SetView([this, box] {
    box->ShowControl();
    Grow(box);
  });
  Grow(box);
  return box;
}

QWidget* ScreenSurface::MakeName(int index) {
  TextBox& control = main_.RAM_LOC_TEXT(index);
  auto* box = new ScreenBox(control, this);
  control.SetView([this, box, index] {
    box->ShowControl();
    Grow(box);
    NameCheck(index);
  });
  Grow(box);
  return box;
}

QWidget* ScreenSurface::MakeCheck(int index) {
  CheckBox& control = main_.RAM_LOC_CHECK(index);
  auto* box = new QCheckBox(this);
  box->setObjectName(ToQt(control.name()));
  const auto show = [this, box, &control] {
    box->setChecked(control.Value);
    box->setGeometry(PlaceOf(control));
    ShowCommon(box, control);
    Grow(box);
  };
  control.SetView(show);
  connect(box, &QCheckBox::clicked, [&control](bool checked) { control.Value = checked; });
  show();
  checks_[index] = box;
  NameCheck(index);
  return box;
}

// A check box has no caption: whoever cannot see what it stands beside hears it.
void ScreenSurface::NameCheck(int index) {
  const auto check = checks_.find(index);
  if (check == checks_.end() || check->second == nullptr || !main_.RAM_LOC_TEXT.Has(index)) return;
  check->second->setAccessibleName(tr("Scan %1").arg(ToQt(main_.RAM_LOC_TEXT(index).Text.get())));
}

QWidget* ScreenSurface::MakeLabel(int index) {
  Label& control = main_.lbl_TextInfo(index);
  auto* label = new QLabel(this);
  label->setObjectName(ToQt(control.name()));
  label->setTextFormat(Qt::PlainText);
  label->setAutoFillBackground(true);
  const auto show = [this, label, &control] {
    ShowLabel(label, control);
    Grow(label);
  };
  control.SetView(show);
  show();
  return label;
}

}  // namespace tarnlink
