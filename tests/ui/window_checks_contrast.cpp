// How letters stand out, measured on pictures.

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStyleOptionButton>
#include <QStyleOptionGroupBox>
#include <QTabBar>
#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <vector>

#include "ui/click_label.h"
#include "ui/coloured_edit.h"
#include "ui/label_panel.h"
#include "ui/line_rows.h"
#include "ui/screen_box.h"
#include "ui/screen_label.h"
#include "ui/text_plate.h"
#include "ui/window_checks.h"

namespace tarnlink {
namespace {

constexpr double kReadable = 4.5;  // of small letters

// Of a colour as an eye sees it, from 0 to 1.
double Luminance(QRgb colour) {
  const auto part = [](int value) {
    constexpr double kMost = 255;
    const double share = value / kMost;
    return share <= 0.03928 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * part(qRed(colour)) + 0.7152 * part(qGreen(colour)) + 0.0722 * part(qBlue(colour));
}

double Contrast(QRgb one, QRgb other) {
  const auto [dark, bright] = std::minmax({Luminance(one), Luminance(other)});
  return (bright + 0.05) / (dark + 0.05);
}

// What most of a place is, against what differs most from it.
double ContrastAt(const QImage& picture, const QRect& place) {
  std::unordered_map<QRgb, int> counts;
  const QRect inside = place & picture.rect();
  for (int y = inside.top(); y <= inside.bottom(); ++y) {
    for (int x = inside.left(); x <= inside.right(); ++x) ++counts[picture.pixel(x, y)];
  }
  if (counts.empty()) return kReadable;
  const QRgb ground = std::max_element(counts.begin(), counts.end(), [](auto& one, auto& other) {
                        return one.second < other.second;
                      })->first;
  double contrast = 1;
  for (const auto& [colour, count] : counts) {
    contrast = std::max(contrast, Contrast(colour, ground));
  }
  return contrast;
}

struct Text {
  QString text;
  QRect place;  // in the window
};

// A place of a part as one of the window, as far as it is in sight.
QRect Seen(const QWidget& part, const QRect& place) {
  const QRect seen = place & part.visibleRegion().boundingRect();
  return {part.mapTo(part.window(), seen.topLeft()), seen.size()};
}

void AddButton(const QAbstractButton& button, std::vector<Text>& texts) {
  constexpr int kEdge = 6;  // pixels: the frame of a button, and that of the keyboard
  QRect place = button.rect().adjusted(kEdge, kEdge, -kEdge, -kEdge);
  QStyleOptionButton option;
  option.initFrom(&button);
  const bool is_check = qobject_cast<const QCheckBox*>(&button) != nullptr;
  if (is_check || qobject_cast<const QRadioButton*>(&button) != nullptr) {
    place = button.style()->subElementRect(
        is_check ? QStyle::SE_CheckBoxContents : QStyle::SE_RadioButtonContents, &option, &button);
  }
  texts.push_back({button.text(), Seen(button, place)});
}

void AddItems(const QAbstractItemView& view, std::vector<Text>& texts) {
  constexpr int kRows = 30;
  if (view.model() == nullptr || !view.isEnabled()) return;
  for (int row = 0; row < std::min(view.model()->rowCount(), kRows); ++row) {
    for (int column = 0; column < view.model()->columnCount(); ++column) {
      const QModelIndex cell = view.model()->index(row, column);
      const bool is_marked = view.selectionModel()->isSelected(cell);
      const QRect place = view.visualRect(cell) & view.viewport()->rect();
      if (is_marked || cell.data().toString().isEmpty() || !place.isValid()) continue;
      // What is seen of a row at an edge may have no letters.
      if (place.height() < view.visualRect(cell).height()) continue;
      texts.push_back({cell.data().toString(), Seen(*view.viewport(), place)});
    }
  }
}

void AddTabs(const QTabBar& bar, std::vector<Text>& texts) {
  constexpr int kEdge = 5;
  for (int i = 0; i < bar.count(); ++i) {
    texts.push_back(
        {bar.tabText(i), Seen(bar, bar.tabRect(i).adjusted(kEdge, kEdge, -kEdge, -kEdge))});
  }
}

void AddGroup(const QGroupBox& group, std::vector<Text>& texts) {
  QStyleOptionGroupBox option;
  option.initFrom(&group);
  option.text = group.title();
  option.subControls = QStyle::SC_GroupBoxLabel;
  const QRect place =
      group.style()->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxLabel, &group);
  texts.push_back({group.title(), Seen(group, place)});
}

// A grey label belongs to fields that cannot be used.
bool IsOff(const QLabel& label) {
  return label.palette().color(QPalette::WindowText) ==
         QApplication::palette(&label).color(QPalette::Disabled, QPalette::WindowText);
}

void AddTexts(QWidget& part, std::vector<Text>& texts) {
  constexpr int kEdge = 3;  // pixels: a frame
  const QRect inside = part.rect().adjusted(kEdge, kEdge, -kEdge, -kEdge);
  if (dynamic_cast<ScreenLabel*>(&part) != nullptr || dynamic_cast<ScreenBox*>(&part) != nullptr) {
    return;
  }
  if (const auto* label = qobject_cast<QLabel*>(&part)) {
    if (!IsOff(*label)) texts.push_back({label->text(), Seen(part, part.rect())});
  } else if (const auto* button = qobject_cast<QAbstractButton*>(&part)) {
    AddButton(*button, texts);
  } else if (const auto* edit = qobject_cast<QLineEdit*>(&part)) {
    if (edit->hasSelectedText()) return;  // in the desktop's own colours
    texts.push_back(
        {edit->text().isEmpty() ? edit->placeholderText() : edit->text(), Seen(part, inside)});
  } else if (const auto* plate = dynamic_cast<TextPlate*>(&part)) {
    texts.push_back({plate->text(), Seen(part, inside)});
  } else if (const auto* box = qobject_cast<QComboBox*>(&part)) {
    if (!box->isEditable()) texts.push_back({box->currentText(), Seen(part, inside)});
  } else if (const auto* text = qobject_cast<QPlainTextEdit*>(&part)) {
    texts.push_back({text->toPlainText().left(1).trimmed(), Seen(part, inside)});
  } else if (const auto* bar = qobject_cast<QTabBar*>(&part)) {
    AddTabs(*bar, texts);
  } else if (const auto* group = qobject_cast<QGroupBox*>(&part)) {
    AddGroup(*group, texts);
  } else if (const auto* view = qobject_cast<QAbstractItemView*>(&part)) {
    AddItems(*view, texts);
  } else if (dynamic_cast<BitLamp*>(&part) != nullptr) {
    constexpr int kLamp = 20;
    texts.push_back({part.accessibleName(), Seen(part, part.rect().adjusted(kLamp, 0, 0, 0))});
  } else if (const auto* panel = dynamic_cast<LabelPanel*>(&part)) {
    for (const LabelPanel::Shown& shown : panel->ShownLabels()) {
      // Of one letter or two in the small font, no pixel may lie under a stroke as a whole.
      constexpr int kEnough = 3;
      if (shown.text.size() >= kEnough) texts.push_back({shown.text, Seen(part, shown.place)});
    }
  } else if (dynamic_cast<RowName*>(&part) != nullptr) {
    if (!part.hasFocus()) texts.push_back({part.accessibleName(), Seen(part, inside)});
  } else if (dynamic_cast<ClickLabel*>(&part) != nullptr) {
    texts.push_back({part.accessibleName(), Seen(part, inside)});
  }
}

}  // namespace

void ExpectContrast(QWidget& window, const std::string& name) {
  if (window.devicePixelRatio() != 1) return;  // the colours are the same
  std::vector<Text> texts;
  if (auto* menu = qobject_cast<QMenu*>(&window)) {
    for (QAction* entry : menu->actions()) {
      const bool counts =
          entry->isEnabled() && !entry->isSeparator() && entry != menu->activeAction();
      if (counts) texts.push_back({entry->text(), menu->actionGeometry(entry)});
    }
  }
  for (QWidget* part : window.findChildren<QWidget*>()) {
    const bool counts = part->window() == &window && part->isVisible() && part->isEnabled();
    if (counts) AddTexts(*part, texts);
  }
  const QImage picture = window.grab().toImage().convertToFormat(QImage::Format_RGB32);
  for (const Text& text : texts) {
    constexpr int kLeast = 8;  // pixels that a letter takes
    const bool is_seen = text.place.width() >= kLeast && text.place.height() >= kLeast;
    if (text.text.trimmed().isEmpty() || !is_seen) continue;
    EXPECT_GE(ContrastAt(picture, text.place), kReadable)
        << name << ": " << text.text.left(60).toStdString();
  }
}

}  // namespace tarnlink
