// The letters and the names of controls.

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QGroupBox>
#include <QKeySequence>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>
#include <QTabWidget>
#include <QToolButton>
#include <algorithm>
#include <map>
#include <set>
#include <vector>

#include "ui/mnemonics.h"
#include "ui/window_checks.h"

namespace tarnlink {
namespace {

// --- Letters -------------------------------------------------------------------------------------

QString MarkOf(const QString& caption) {
  return QKeySequence::mnemonic(caption).toString().right(1);
}

// Each letter with the caption that has it.
class Marks {
 public:
  explicit Marks(std::string window) : window_(std::move(window)) {}

  // Without a letter it is false.
  bool Take(const QString& caption) {
    const QString mark = MarkOf(caption);
    if (mark.isEmpty()) return false;
    const auto [other, is_new] = owners_.try_emplace(mark, caption);
    EXPECT_TRUE(is_new) << window_ << ": " << caption.toStdString() << " and "
                        << other->second.toStdString();
    return true;
  }
  bool Has(QChar letter) const { return owners_.count(QString(letter.toUpper())) > 0; }

 private:
  std::string window_;
  std::map<QString, QString> owners_;
};

void ExpectEntries(const QMenu& menu, const std::string& name) {
  Marks marks(name);
  for (const QAction* entry : menu.actions()) {
    // One with a digit before it can have any text.
    const bool has_digit = entry->property("Digit").isValid() && !entry->icon().isNull();
    if (entry->isSeparator() || has_digit) continue;
    EXPECT_TRUE(marks.Take(entry->text())) << name << ": " << entry->text().toStdString();
  }
}

// What is chosen by its caption, as far as it is seen.
std::vector<QString> CaptionsOf(const QWidget& window) {
  std::vector<QString> captions;
  for (const auto* widget : window.findChildren<QWidget*>()) {
    if (widget->window() != &window || !widget->isVisible()) continue;
    const auto* button = qobject_cast<const QAbstractButton*>(widget);
    if (button != nullptr && qobject_cast<const QToolButton*>(button) == nullptr) {
      captions.push_back(button->text());
    }
    if (const auto* bar = qobject_cast<const QMenuBar*>(widget)) {
      for (const QAction* menu : bar->actions()) captions.push_back(menu->text());
    }
    const auto* label = qobject_cast<const QLabel*>(widget);
    if (label != nullptr && label->buddy() != nullptr) captions.push_back(label->text());
    const auto* tabs = qobject_cast<const QTabWidget*>(widget);
    for (int i = 0; tabs != nullptr && i < tabs->count(); ++i) captions.push_back(tabs->tabText(i));
  }
  return captions;
}

void ExpectCaptions(const QWidget& window, const std::string& name) {
  Marks marks(name);
  std::vector<QString> without;
  constexpr int kRows = 3;  // the same caption again and again
  // A frame needs none, but one that it has nobody else can have.
  for (const auto* frame : window.findChildren<QGroupBox*>()) {
    if (frame->window() == &window && frame->isVisible()) marks.Take(frame->title());
  }
  const std::vector<QString> captions = CaptionsOf(window);
  for (const QString& caption : captions) {
    if (std::count(captions.begin(), captions.end(), caption) >= kRows) continue;
    const bool may_go_without = caption.compare("OK", Qt::CaseInsensitive) == 0 ||
                                caption == "Cancel" ||
                                std::none_of(caption.begin(), caption.end(),
                                             [](QChar one) { return one.isLetterOrNumber(); });
    if (!marks.Take(caption) && !may_go_without) without.push_back(caption);
  }
  for (const QString& caption : without) {
    // Letters that are not seen to be taken are those of hidden controls: a few at most.
    const auto is_free = [&](QChar one) { return one.isLetterOrNumber() && !marks.Has(one); };
    const auto free = std::count_if(caption.begin(), caption.end(), is_free);
    EXPECT_LE(free, caption.size() / 2) << name << ": " << caption.toStdString();
  }
}

// --- Names ---------------------------------------------------------------------------------------

// What a person does something with, or looks at.
bool IsControl(QAccessibleInterface& part) {
  static const std::set<QAccessible::Role> kControls = {
      QAccessible::Button,       QAccessible::CheckBox, QAccessible::RadioButton,
      QAccessible::EditableText, QAccessible::ComboBox, QAccessible::Slider,
      QAccessible::SpinBox,      QAccessible::PageTab,  QAccessible::MenuItem,
      QAccessible::Table,        QAccessible::Tree,     QAccessible::List,
      QAccessible::Graphic,      QAccessible::ListItem, QAccessible::Indicator};
  // A form, and what only scrolls or parts it, takes the keyboard for its controls.
  static const std::set<QAccessible::Role> kFrames = {
      QAccessible::Window,   QAccessible::Dialog,    QAccessible::Pane,
      QAccessible::Client,   QAccessible::Grouping,  QAccessible::PageTabList,
      QAccessible::Splitter, QAccessible::ScrollBar, QAccessible::PopupMenu,
      QAccessible::Cell,     QAccessible::MenuBar};
  if (kControls.count(part.role()) > 0) return true;
  return part.state().focusable && kFrames.count(part.role()) == 0;
}

// As programmers call a control: txt_Alias, cmdOk, opt_Protocol(1), RAM_LOC_VAL(2).
bool IsCodeName(const std::string& name) {
  static const QRegularExpression kCode(
      "^(txt|cmd|opt|chk|lbl|lst|cmb|fra|frm|mnu|sld|qt)_?[A-Z_]\\w*(\\(\\d+\\))?$|"
      "^\\w+\\(\\d+\\)$");
  return kCode.match(QString::fromStdString(name)).hasMatch();
}

// The titles of the groups and pages around a part.
std::string PlaceOf(QAccessibleInterface& part) {
  std::string place;
  for (auto* around = part.parent(); around != nullptr; around = around->parent()) {
    const bool counts =
        around->role() == QAccessible::Grouping || around->role() == QAccessible::Table;
    if (counts) place += around->text(QAccessible::Name).toStdString() + "/";
  }
  return place;
}

class TreeWalk {
 public:
  explicit TreeWalk(std::string window) : window_(std::move(window)) {}

  void Visit(QAccessibleInterface& part) {
    constexpr int kMost = 200;  // the rows of a long table are alike
    if (!part.isValid() || part.state().invisible) return;
    if (IsControl(part)) Look(part);
    // A list that is closed is a window of its own.
    if (part.role() == QAccessible::ComboBox) return;
    for (int i = 0; i < std::min(part.childCount(), kMost); ++i) {
      if (QAccessibleInterface* child = part.child(i)) Visit(*child);
    }
  }
  int looked() const { return looked_; }

 private:
  void Look(QAccessibleInterface& part) {
    // Lines between the entries of a menu.
    if (part.role() == QAccessible::MenuItem && part.state().disabled) return;
    ++looked_;
    const std::string name = part.text(QAccessible::Name).toStdString();
    std::string object;
    if (part.object() != nullptr) object = part.object()->objectName().toStdString();
    if (object == "qt_msgboxex_icon_label") return;  // the sign of a box, which its text tells
    std::string about = window_ + ": \"" + name + "\", which is " + object;
    about += " of role " + std::to_string(part.role());
    EXPECT_FALSE(name.empty()) << about;
    EXPECT_FALSE(IsCodeName(name)) << about;
    const bool is_told_apart =
        part.role() == QAccessible::EditableText || part.role() == QAccessible::CheckBox;
    if (!is_told_apart) return;
    const std::string place = PlaceOf(part);
    EXPECT_TRUE(names_.insert(place + name).second) << about << " is there twice in " << place;
  }

  std::string window_;
  int looked_ = 0;
  std::set<std::string> names_;
};

}  // namespace

void ExpectMnemonics(const QWidget& window, const std::string& name) {
  if (const auto* menu = qobject_cast<const QMenu*>(&window)) {
    ExpectEntries(*menu, name);
  } else {
    ExpectCaptions(window, name);
  }
}

void ExpectNames(QWidget& window, const std::string& name) {
  QAccessibleInterface* reader = QAccessible::queryAccessibleInterface(&window);
  ASSERT_NE(reader, nullptr) << name;
  TreeWalk walk(name);
  walk.Visit(*reader);
  EXPECT_GE(walk.looked(), 1) << name;
}

}  // namespace tarnlink
