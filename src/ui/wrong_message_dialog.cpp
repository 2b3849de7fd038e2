#include "ui/wrong_message_dialog.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <array>

#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/coloured_edit.h"

namespace tarnlink {

namespace {

constexpr int kBoxWidth = 34;   // pixels: two digits
constexpr int kNameWidth = 56;  // pixels: a name's longest word
constexpr int kNameLines = 3;

// Of the groups of boxes: the first and the last one.
constexpr std::array<std::array<int, 2>, 3> kGroups = {{{3, 6}, {7, 10}, {11, 14}}};

// The rows of the grid.
enum Row { kGroupRow, kNameRow, kSentRow, kReceivedRow };

}  // namespace

WrongMessageDialog::WrongMessageDialog(frm_IPMsgErr& form, QWidget* parent)
    : QDialog(parent), form_(form) {
  setObjectName(ToQt(form_.form.name()));
  setWindowTitle(ToQt(form_.caption.Caption.get()));
  setModal(true);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(BuildFrame());
  layout->addWidget(BuildAnswer());
  layout->addWidget(BuildButtons());
  layout->setSizeConstraint(QLayout::SetFixedSize);
  form_.form.SetView([this] { ShowForm(); });
  ShowForm();
}

WrongMessageDialog::~WrongMessageDialog() { form_.form.SetView({}); }

void WrongMessageDialog::done(int) { form_.Unload(); }

void WrongMessageDialog::ShowForm() {
  if (form_.form.Visible != isVisible()) setVisible(form_.form.Visible);
}

QWidget* WrongMessageDialog::BuildFrame() {
  auto* frame = new QWidget(this);
  auto* rows = new QGridLayout(frame);
  rows->setContentsMargins(0, 0, 0, 0);
  for (int i = 0; i <= form_.lblGroup.last(); ++i) {
    auto* group = new QLabel(frame);
    Bind(group, form_.lblGroup(i));
    group->setAlignment(Qt::AlignCenter);
    group->setFrameShape(QFrame::StyledPanel);
    const auto [first, last] = kGroups.at(static_cast<std::size_t>(i));
    rows->addWidget(group, kGroupRow, first + 1, 1, last - first + 1);
  }
  for (int i = 0; i < frm_IPMsgErr::kBoxes; ++i) {
    auto* name = new QLabel(frame);
    Bind(name, form_.lblByte(i));
    name->setWordWrap(true);
    name->setFixedSize(kNameWidth, kNameLines * name->fontMetrics().lineSpacing());
    name->setAlignment(Qt::AlignHCenter | Qt::AlignBottom);
    rows->addWidget(name, kNameRow, i + 1);
  }
  AddRow(*rows, kSentRow, form_.txt_ErrMsg, tr("Sent"));
  AddRow(*rows, kReceivedRow, form_.txt_RecErrMsg, tr("Received"));
  return frame;
}

void WrongMessageDialog::AddRow(QGridLayout& rows, int row, FixedArray<ArrayText>& boxes,
                                const QString& name) {
  auto* label = new QLabel(name, rows.parentWidget());
  rows.addWidget(label, row, 0);
  for (int i = 0; i < frm_IPMsgErr::kBoxes; ++i) {
    auto* box = new QLineEdit(rows.parentWidget());
    box->setFixedWidth(kBoxWidth);
    box->setAlignment(Qt::AlignCenter);
    box->setAccessibleName(name + QLatin1Char(' ') + ToQt(form_.lblByte(i).Caption.get()));
    BindColoured(box, boxes(i));
    rows.addWidget(box, row, i + 1, Qt::AlignHCenter);
  }
}

QWidget* WrongMessageDialog::BuildAnswer() {
  auto* answer = new QWidget(this);
  auto* rows = new QGridLayout(answer);
  rows->setContentsMargins(0, 0, 0, 0);
  const auto add = [&](int row, Label& caption, TextBox& text) {
    auto* label = new QLabel(answer);
    Bind(label, caption);
    auto* edit = new QLineEdit(answer);
    Bind(edit, text);
    label->setBuddy(edit);
    edit->setReadOnly(true);
    rows->addWidget(label, row, 0);
    rows->addWidget(edit, row, 1);
  };
  add(0, form_.lblReturnedData, form_.txt_ReturnedData);
  add(1, form_.lblStatus, form_.txtStatus);
  return answer;
}

QWidget* WrongMessageDialog::BuildButtons() {
  auto* foot = new QWidget(this);
  auto* row = new QHBoxLayout(foot);
  row->setContentsMargins(0, 0, 0, 0);
  for (int i = 0; i <= form_.chk_IPMsgErr.last(); ++i) {
    auto* box = new QCheckBox(foot);
    Bind(box, form_.chk_IPMsgErr(i));
    row->addWidget(box);
  }
  row->addStretch();
  row->addWidget(new QLabel(tr("Tx"), foot));
  row->addWidget(new Lamp(form_.shp_Tx, tr("Sending"), foot));
  row->addWidget(new QLabel(tr("Rx"), foot));
  row->addWidget(new Lamp(form_.shp_Rx, tr("Receiving"), foot));
  row->addStretch();
  auto* send = new QPushButton(foot);
  Bind(send, form_.cmd_SendErrMsg);
  send->setDefault(true);
  row->addWidget(send);
  for (CommandButton* control : {&form_.cmd_ResetDefault, &form_.cmd_CloseErrGen}) {
    auto* button = new QPushButton(foot);
    Bind(button, *control);
    button->setAutoDefault(false);
    row->addWidget(button);
  }
  return foot;
}

}  // namespace tarnlink
