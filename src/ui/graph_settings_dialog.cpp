#include "ui/graph_settings_dialog.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/click_label.h"
#include "ui/frames.h"
#include "ui/line_rows.h"
#include "ui/mnemonics.h"
#include "ui/palette.h"

namespace tarnlink {

namespace {

constexpr int kNumberWidth = 90;  // pixels

// What is hidden leaves its place empty, so that nothing jumps.
void KeepPlace(QWidget* widget) {
  QSizePolicy policy = widget->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  widget->setSizePolicy(policy);
}

}  // namespace

GraphSettingsDialog::GraphSettingsDialog(frmGraphConf& form, QWidget* parent)
    : QDialog(parent), form_(form) {
  setObjectName(ToQt(form_.form.name()));
  setWindowTitle(ToQt(form_.caption.Caption.get()));
  setModal(true);
  QWidget* list = BuildList();  // first, as the keyboard goes
  auto* right = new QVBoxLayout;
  right->addWidget(BuildDetails());
  right->addWidget(BuildAdvanced());
  right->addStretch();
  right->addWidget(BuildColours());
  auto* close = new QPushButton(tr("&Close"), this);
  close->setObjectName(QStringLiteral("cmdClose"));
  close->setAutoDefault(false);
  connect(close, &QPushButton::clicked, this, [this] { done(Accepted); });
  right->addWidget(close, 0, Qt::AlignRight);
  auto* layout = new QHBoxLayout(this);
  layout->addWidget(list);
  layout->addLayout(right);
  form_.form.SetView([this] { ShowForm(); });
  GiveMnemonics(this);
  ShowForm();
}

GraphSettingsDialog::~GraphSettingsDialog() { form_.form.SetView({}); }

// There is no cancel: what was changed is in force.
void GraphSettingsDialog::done(int) { form_.Close(); }

void GraphSettingsDialog::ShowForm() {
  if (form_.form.Visible == isVisible()) return;
  setVisible(form_.form.Visible);
  if (form_.form.Visible) names_.front()->setFocus(Qt::OtherFocusReason);
}

QWidget* GraphSettingsDialog::BuildList() {
  auto* list = new ScrolledList(this);
  auto* rows = new QGridLayout;
  rows->setVerticalSpacing(0);  // the samples are one strip in the graph's colour
  for (int row = 0; row < frmGraphConf::kRows; ++row) {
    auto* name = new RowName(form_.lblCap(row), list);
    name->Picked = [this, row] { form_.lblCapClick(row); };
    name->Stepped = [this, row](int step) { Go(row, step); };
    names_.push_back(name);
    auto* line = new QCheckBox(list);
    Bind(line, form_.chkLine(row));
    auto* caption = new QCheckBox(list);
    Bind(caption, form_.chkCap(row));
    for (QCheckBox* box : {line, caption}) name->AddBeside(box);
    rows->addWidget(name, row, 0);
    rows->addWidget(new LineSampleView(form_.lblLine(row), list), row, 1);
    rows->addWidget(line, row, 2);
    rows->addWidget(caption, row, 3);
  }
  scroll_ = new QScrollBar(Qt::Vertical, list);
  Bind(scroll_, form_.VScroll1);
  list->Follow(scroll_);
  auto* middle = new QHBoxLayout;
  middle->addLayout(rows);
  middle->addWidget(scroll_);
  auto* layout = new QVBoxLayout(list);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addLayout(middle);
  QGroupBox* view = RadioFrame(QString(), form_.optView, 2);
  Bind(view, form_.Frame1);
  layout->addWidget(view);
  return list;
}

// Beyond the ends of the list it moves.
void GraphSettingsDialog::Go(int row, int step) {
  const int next = row + step;
  if (next < 0 || next >= frmGraphConf::kRows) {
    scroll_->setValue(scroll_->value() + step);
  } else if (QWidget* name = names_.at(static_cast<std::size_t>(next)); name->isVisible()) {
    name->setFocus(Qt::TabFocusReason);
  }
}

QWidget* GraphSettingsDialog::BuildDetails() {
  auto* frame = new QGroupBox(this);
  auto* layout = new QGridLayout(frame);
  auto* fixed = new RowName(form_.lblFixedCap, frame);
  fixed->Picked = [this] { form_.lblFixedCapClick(); };
  layout->addWidget(fixed, 0, 0, 1, 3);
  const auto add_text = [&](int row, const QString& caption, TextBox& box) {
    auto* edit = new QLineEdit(frame);
    Bind(edit, box);
    KeepPlace(edit);
    SetPlaceholder(edit, caption);
    edit->setAccessibleName(caption);
    layout->addWidget(edit, row, 0, 1, 3);
  };
  add_text(1, tr("Alias"), form_.txtAlias);
  add_text(2, tr("Description"), form_.txtDescription);
  auto* label = new QLabel(frame);
  Bind(label, form_.lblStyle);
  KeepPlace(label);
  layout->addWidget(label, 3, 0);
  auto* style = new QComboBox(frame);
  Bind(style, form_.cmbDrawStyle);
  KeepPlace(style);
  style->setAccessibleName(tr("Line style"));
  layout->addWidget(style, 3, 1);
  auto* colour = new ColourButtonView(form_.cmdLineColor, frame);
  KeepPlace(colour);
  layout->addWidget(colour, 3, 2);
  auto* line = new QCheckBox(frame);
  Bind(line, form_.chkShowLine);
  KeepPlace(line);
  layout->addWidget(line, 4, 0);
  auto* caption = new QCheckBox(frame);
  Bind(caption, form_.chkShowCaption);
  KeepPlace(caption);
  layout->addWidget(caption, 4, 1);
  auto* advanced = new QPushButton(frame);
  Bind(advanced, form_.cmdAdvanced);
  KeepPlace(advanced);
  advanced->setAutoDefault(false);
  layout->addWidget(advanced, 4, 2);
  return frame;
}

QWidget* GraphSettingsDialog::BuildAdvanced() {
  auto* frame = new QWidget(this);
  auto* layout = new QGridLayout(frame);
  layout->setColumnStretch(1, 1);
  int row = 0;
  const auto add = [&](QWidget* field) {
    auto* label = new QLabel(frame);
    Bind(label, form_.lblAdvanced(row));
    KeepPlace(label);
    KeepPlace(field);
    label->setBuddy(field);
    layout->addWidget(label, row, 0);
    layout->addWidget(field, row, 1, Qt::AlignLeft);
    ++row;
  };
  for (TextBox* box :
       {&form_.txtID, &form_.txtSlaveAddress, &form_.txtClass, &form_.txtData, &form_.txtFactor}) {
    auto* edit = new QLineEdit(frame);
    edit->setMaximumWidth(kNumberWidth);
    Bind(edit, *box);
    add(edit);
  }
  for (PickBox* box : {&form_.cmbStoredAs, &form_.cmbUnit}) {
    auto* combo = new QComboBox(frame);
    Bind(combo, *box);
    add(combo);
  }
  return frame;
}

QWidget* GraphSettingsDialog::BuildColours() {
  auto* frame = new QGroupBox(tr("Colors"), this);
  auto* layout = new QGridLayout(frame);
  constexpr int kColumns = 2;
  for (int i = 0; i <= form_.cmdColor.last(); ++i) {
    auto* button = new ColourButtonView(form_.cmdColor(i), frame);
    layout->addWidget(button, i / kColumns, i % kColumns);
  }
  return frame;
}

}  // namespace tarnlink
