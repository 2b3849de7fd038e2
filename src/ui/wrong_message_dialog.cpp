#include "ui/wrong_message_dialog.h"

#include <QCheckBox>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <array>

#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/coloured_edit.h"
#include "ui/scrolled_page.h"

namespace tarnlink {

namespace {

constexpr int kBoxWidth = 34;    // pixels: two digits
constexpr int kNameWidth = 60;   // pixels: a name's longest word
constexpr int kBlockGap = 10;    // pixels
constexpr int kEditMargin = 12;  // pixels around a text in its field

struct Boxes {
  int first;
  int last;
};

// Those that have a name together, and the lines that the frame is broken into.
constexpr std::array<Boxes, 3> kGroups = {{{3, 6}, {7, 10}, {11, 14}}};
constexpr std::array<Boxes, 2> kBlocks = {{{0, 6}, {7, 15}}};

// The rows of the grid.
enum Row { kGroupRow, kNameRow, kSentRow, kReceivedRow };

}  // namespace

WrongMessageDialog::WrongMessageDialog(frm_IPMsgErr& form, SettingsStore& settings, QWidget* parent)
    : ToolDialog(form.form, parent), form_(form) {
  setWindowTitle(ToQt(form_.caption.Caption.get()));
  auto* content = new QWidget;
  auto* parts = new QVBoxLayout(content);
  parts->setContentsMargins(0, 0, 0, 0);
  for (const Boxes& block : kBlocks) {
    parts->addLayout(BuildBlock(block.first, block.last));
    parts->addSpacing(kBlockGap);
  }
  parts->addLayout(BuildAnswer());
  parts->addLayout(BuildOptions());
  parts->addStretch();
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(new ScrolledPage(content), 1);
  layout->addLayout(BuildButtons());
  Begin(settings);
}

void WrongMessageDialog::done(int) { form_.Unload(); }

void WrongMessageDialog::Enter() {
  const bool is_box = std::find(sent_.begin(), sent_.end(), focusWidget()) != sent_.end();
  if (is_box) form_.cmd_SendErrMsg.Press();
}

bool WrongMessageDialog::eventFilter(QObject* watched, QEvent* event) {
  auto* box = qobject_cast<QLineEdit*>(watched);
  if (event->type() == QEvent::MouseButtonRelease && box != nullptr && !box->isReadOnly()) {
    box->selectAll();
  }
  return ToolDialog::eventFilter(watched, event);
}

// --- The frame -----------------------------------------------------------------------------------

QLayout* WrongMessageDialog::BuildBlock(int first, int last) {
  auto* rows = new QGridLayout;
  AddNames(*rows, first, last);
  AddRow(*rows, kSentRow, form_.txt_ErrMsg, first, last);
  AddRow(*rows, kReceivedRow, form_.txt_RecErrMsg, first, last);
  rows->setColumnStretch(last - first + 2, 1);
  return rows;
}

void WrongMessageDialog::AddNames(QGridLayout& rows, int first, int last) {
  for (std::size_t i = 0; i < kGroups.size(); ++i) {
    const Boxes& boxes = kGroups.at(i);
    if (boxes.first < first || boxes.last > last) continue;
    auto* group = new QLabel(this);
    Bind(group, form_.lblGroup(static_cast<int>(i)));
    group->setAlignment(Qt::AlignCenter);
    group->setFrameShape(QFrame::StyledPanel);
    rows.addWidget(group, kGroupRow, boxes.first - first + 1, 1, boxes.last - boxes.first + 1);
  }
  for (int i = first; i <= last; ++i) {
    auto* name = new QLabel(this);
    Bind(name, form_.lblByte(i));
    name->setWordWrap(true);
    name->setFixedWidth(kNameWidth);
    name->setMinimumHeight(name->heightForWidth(kNameWidth));
    name->setAlignment(Qt::AlignHCenter | Qt::AlignBottom);
    rows.addWidget(name, kNameRow, i - first + 1);
  }
}

void WrongMessageDialog::AddRow(QGridLayout& rows, int row, FixedArray<ArrayText>& boxes, int first,
                                int last) {
  const bool is_sent = row == kSentRow;
  const QString name = is_sent ? tr("Sent") : tr("Received");
  rows.addWidget(new QLabel(name, this), row, 0);
  for (int i = first; i <= last; ++i) {
    auto* box = new QLineEdit(this);
    box->setFixedWidth(kBoxWidth);
    box->setAlignment(Qt::AlignCenter);
    box->setAccessibleName(name + QLatin1Char(' ') + ToQt(form_.lblByte(i).Caption.get()));
    BindColoured(box, boxes(i));
    if (is_sent) {
      sent_.push_back(box);
      box->installEventFilter(this);
    }
    rows.addWidget(box, row, i - first + 1, Qt::AlignHCenter);
  }
}

// --- Around it -----------------------------------------------------------------------------------

QLayout* WrongMessageDialog::BuildAnswer() {
  auto* rows = new QGridLayout;
  const auto add = [&](int row, Label& caption, TextBox& text) {
    auto* label = new QLabel(this);
    Bind(label, caption);
    return AddField(*rows, row, 0, label, text);
  };
  add(0, form_.lblReturnedData, form_.txt_ReturnedData);
  QLineEdit* status = add(1, form_.lblStatus, form_.txtStatus);
  // What keeps the port can be longer than the field.
  auto* whole = new QLabel(this);
  whole->setObjectName(QStringLiteral("lblWholeStatus"));
  whole->setTextFormat(Qt::PlainText);
  whole->setWordWrap(true);
  whole->hide();
  rows->addWidget(whole, 2, 1);
  connect(status, &QLineEdit::textChanged, whole, [status, whole](const QString& text) {
    whole->setText(text);
    whole->setVisible(status->fontMetrics().horizontalAdvance(text) + kEditMargin >
                      status->width());
  });
  return rows;
}

QLayout* WrongMessageDialog::BuildOptions() {
  auto* row = new QHBoxLayout;
  for (int i = 0; i <= form_.chk_IPMsgErr.last(); ++i) {
    auto* box = new QCheckBox(this);
    Bind(box, form_.chk_IPMsgErr(i));
    row->addWidget(box);
  }
  row->addStretch();
  AddLamp(*row, tr("Tx"), form_.shp_Tx, tr("Sending"));
  AddLamp(*row, tr("Rx"), form_.shp_Rx, tr("Receiving"));
  return row;
}

void WrongMessageDialog::AddLamp(QHBoxLayout& row, const QString& caption, PlacedControl& control,
                                 const QString& name) {
  row.addWidget(new QLabel(caption, this));
  row.addWidget(new Lamp(control, name, this));
}

QLayout* WrongMessageDialog::BuildButtons() {
  auto* row = new QHBoxLayout;
  row->addStretch();
  for (CommandButton* control :
       {&form_.cmd_SendErrMsg, &form_.cmd_ResetDefault, &form_.cmd_CloseErrGen}) {
    row->addWidget(Button(*control, this));
  }
  return row;
}

}  // namespace tarnlink
