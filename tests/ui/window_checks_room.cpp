// The room of texts, and the way of the tabulator.

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QStyleOptionComboBox>
#include <QTabBar>
#include <QTableView>
#include <QTest>
#include <algorithm>
#include <set>
#include <vector>

#include "ui/mnemonics.h"
#include "ui/screen_label.h"
#include "ui/window_checks.h"

namespace tarnlink {
namespace {

// All that can be seen of a window, without the windows above it.
std::vector<QWidget*> PartsOf(const QWidget& window) {
  std::vector<QWidget*> parts;
  for (QWidget* part : window.findChildren<QWidget*>()) {
    if (part->window() == &window && part->isVisible()) parts.push_back(part);
  }
  return parts;
}

QString Quoted(const QWidget& part, const QString& text) {
  return part.objectName() + " \"" + text + "\"";
}

// --- Room ----------------------------------------------------------------------------------------

int WidthOf(const QWidget& part, const QString& text) {
  return part.fontMetrics().size(Qt::TextShowMnemonic, text).width();
}

bool IsCut(const QLabel& label) {
  if (label.text().isEmpty() || dynamic_cast<const ScreenLabel*>(&label) != nullptr) return false;
  // One that takes whatever room there is shows what does not fit in another way.
  if (label.sizePolicy().horizontalPolicy() == QSizePolicy::Ignored) return false;
  if (label.wordWrap()) return label.heightForWidth(label.width()) > label.height();
  return label.sizeHint().width() > label.width() ||
         label.fontMetrics().height() > label.contentsRect().height();
}

bool IsCut(const QAbstractButton& button) {
  if (button.text().isEmpty()) return false;
  constexpr int kFrame = 4;  // pixels of a button beside its text
  const bool is_push = qobject_cast<const QPushButton*>(&button) != nullptr;
  const int needed =
      is_push ? WidthOf(button, button.text()) + kFrame : button.minimumSizeHint().width();
  return needed > button.width() || button.fontMetrics().height() > button.height();
}

bool IsCut(const QComboBox& box) {
  if (box.isEditable()) return false;
  QStyleOptionComboBox option;
  option.initFrom(&box);
  const int room =
      box.style()
          ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &box)
          .width();
  return WidthOf(box, box.currentText()) > room;
}

QStringList CutSections(const QHeaderView& header) {
  QStringList cut;
  if (header.orientation() != Qt::Horizontal || header.model() == nullptr) return cut;
  for (int i = 0; i < header.count(); ++i) {
    const QString text = header.model()->headerData(i, Qt::Horizontal).toString();
    const bool fits = WidthOf(header, text) < header.sectionSize(i);
    if (!header.isSectionHidden(i) && !fits) cut << Quoted(header, text);
  }
  return cut;
}

// A text that may be long, and has a tip that shows all of it, is let be.
QStringList CutCells(const QTableView& table) {
  QStringList cut;
  for (int row = 0; row < table.model()->rowCount(); ++row) {
    for (int column = 0; column < table.model()->columnCount(); ++column) {
      const QModelIndex cell = table.model()->index(row, column);
      const bool has_tip = !cell.data(Qt::ToolTipRole).toString().isEmpty();
      const bool fits = table.sizeHintForIndex(cell).width() <= table.columnWidth(column);
      if (!fits && !has_tip) cut << Quoted(table, cell.data().toString());
    }
  }
  return cut;
}

QStringList CutTabs(const QTabBar& bar) {
  QStringList cut;
  for (int i = 0; i < bar.count(); ++i) {
    const QRect place = bar.tabRect(i);
    // Tabs that a small window has no room for are scrolled.
    const bool is_there = bar.rect().contains(place) || bar.usesScrollButtons();
    const bool fits = is_there && WidthOf(bar, bar.tabText(i)) < place.width();
    if (!fits) cut << Quoted(bar, bar.tabText(i));
  }
  return cut;
}

QStringList CutTexts(const QWidget& part) {
  if (const auto* header = qobject_cast<const QHeaderView*>(&part)) return CutSections(*header);
  if (const auto* table = qobject_cast<const QTableView*>(&part)) return CutCells(*table);
  if (const auto* bar = qobject_cast<const QTabBar*>(&part)) return CutTabs(*bar);
  QString text;
  bool is_cut = false;
  if (const auto* label = qobject_cast<const QLabel*>(&part)) {
    text = label->text();
    is_cut = IsCut(*label);
  } else if (const auto* button = qobject_cast<const QAbstractButton*>(&part)) {
    text = button->text();
    is_cut = IsCut(*button);
  } else if (const auto* box = qobject_cast<const QComboBox*>(&part)) {
    text = box->currentText();
    is_cut = IsCut(*box);
  } else if (const auto* group = qobject_cast<const QGroupBox*>(&part)) {
    text = group->title();
    is_cut = WidthOf(part, text) > part.width();
  } else if (const auto* edit = qobject_cast<const QLineEdit*>(&part)) {
    text = edit->placeholderText();
    is_cut = WidthOf(part, text) > part.width();
  }
  return is_cut ? QStringList(Quoted(part, text)) : QStringList();
}

std::string AllCutTexts(const QWidget& window) {
  QStringList cut;
  for (const QWidget* part : PartsOf(window)) cut << CutTexts(*part);
  return cut.join("; ").toStdString();
}

// --- Tabulator -----------------------------------------------------------------------------------

// The screen itself takes the keyboard only while there is nothing on it.
bool IsForTab(const QWidget& part) {
  return part.isEnabled() && (part.focusPolicy() & Qt::TabFocus) != 0 &&
         part.focusProxy() == nullptr && part.objectName() != QLatin1String("screen");
}

std::string NameOf(const QWidget* part) {
  if (part == nullptr) return "nothing";
  const std::string name = part->objectName().toStdString();
  return name.empty() ? part->metaObject()->className() : name;
}

// Of two controls of one group, whether the second is read before the first.
bool IsBackwards(const QWidget& first, const QWidget& second) {
  if (first.parentWidget() != second.parentWidget()) return false;
  // The screen has an order of its own, and rows that only nearly are rows.
  if (first.parentWidget()->objectName() == QLatin1String("screen")) return false;
  const QRect from = first.geometry();
  const QRect to = second.geometry();
  const bool are_beside = from.top() < to.bottom() && to.top() < from.bottom();
  return are_beside ? to.right() < from.left()
                    : to.bottom() < from.top() && to.left() <= from.left();
}

}  // namespace

void ExpectRoom(QWidget& window, const std::string& name) {
  EXPECT_EQ(AllCutTexts(window), "") << name;
  if (qobject_cast<QMenu*>(&window) != nullptr) return;
  const QSize usual = window.size();
  window.resize(window.minimumSizeHint().expandedTo(window.minimumSize()));
  EXPECT_EQ(AllCutTexts(window), "") << name << " in its smallest size";
  window.resize(usual);
}

void ExpectTabReachesAll(QWidget& window, const std::string& name) {
  std::set<const QWidget*> wanted;
  for (const QWidget* part : PartsOf(window)) {
    if (IsForTab(*part)) wanted.insert(part);
  }
  std::set<const QWidget*> reached;
  const QWidget* last = nullptr;
  int back = 0;  // steps; once round there is one
  constexpr int kMost = 200;
  for (int i = 0; i < kMost; ++i) {
    QTest::keyClick(window.windowHandle(), Qt::Key_Tab);
    const QWidget* now = window.focusWidget();
    if (now == nullptr || !reached.insert(now).second) break;
    if (last != nullptr && IsBackwards(*last, *now)) {
      EXPECT_LE(++back, 1) << name << ": " << NameOf(last) << ", " << NameOf(now);
    }
    last = now;
  }
  for (const QWidget* one : wanted) {
    EXPECT_EQ(reached.count(one), 1U) << name << ": " << NameOf(one) << " is not reached";
  }
}

}  // namespace tarnlink
