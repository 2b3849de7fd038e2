#include "ui/settings_dialog.h"

#include <QCompleter>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QRegularExpressionValidator>
#include <QToolButton>
#include <QVBoxLayout>

#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/frames.h"
#include "ui/mnemonics.h"

namespace tarnlink {

namespace {

constexpr int kDigits = 5;       // the most that a short box has to show
constexpr int kClassDigits = 3;  // the same of a class
constexpr int kNameLines = 20;

QLineEdit* ShortBox(TextBox& control, const QString& name) {
  auto* box = new QLineEdit;
  Bind(box, control);
  box->setAccessibleName(name);
  constexpr int kFrame = 2;  // the box's own, in digits
  const QString longest(kDigits + kFrame, '0');
  box->setFixedWidth(box->fontMetrics().horizontalAdvance(longest));
  return box;
}

// What cannot be a digit cannot be typed.
QLineEdit* DigitBox(TextBox& control, const QString& name, const QString& digits) {
  QLineEdit* box = ShortBox(control, name);
  box->setValidator(new QRegularExpressionValidator(QRegularExpression(digits), box));
  return box;
}

QWidget* Arrows(SpinButton& control, const QString& name) {
  auto* arrows = new QWidget;
  auto* layout = new QHBoxLayout(arrows);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  auto* up = new QToolButton;
  auto* down = new QToolButton;
  up->setArrowType(Qt::UpArrow);
  down->setArrowType(Qt::DownArrow);
  up->setAccessibleName(QObject::tr("%1 up").arg(name));
  down->setAccessibleName(QObject::tr("%1 down").arg(name));
  for (QToolButton* button : {up, down}) {
    button->setAutoRepeat(true);
    layout->addWidget(button);
  }
  Bind(up, down, control);
  return arrows;
}

QLabel* LabelFor(QWidget* widget, const QString& text) {
  auto* label = new QLabel(text);
  label->setBuddy(widget);
  return label;
}

}  // namespace

SettingsDialog::SettingsDialog(frm_Settings& form, QWidget* parent) : QDialog(parent), form_(form) {
  setObjectName(ToQt(form_.form.name()));
  setWindowTitle(ToQt(form_.caption.Caption.get()));
  setModal(true);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(BuildNames());
  layout->addWidget(BuildColumns());
  layout->addWidget(BuildButtons());
  form_.form.SetView([this] { ShowForm(); });
  GiveMnemonics(this);
  ShowForm();
}

SettingsDialog::~SettingsDialog() { form_.form.SetView({}); }

// Escape and the frame's close button are the Cancel button.
void SettingsDialog::reject() { form_.cmd_Cancel.Press(); }

void SettingsDialog::ShowForm() {
  if (form_.form.Visible == isVisible()) return;
  // First, so that the dialog does not come up with the button that last closed it.
  alias_->setFocus();
  setVisible(form_.form.Visible);
  if (form_.form.Visible) alias_->selectAll();
}

// --- Names ---------------------------------------------------------------------------------------

QWidget* SettingsDialog::BuildNames() {
  auto* names = new QWidget(this);
  auto* layout = new QFormLayout(names);
  layout->setContentsMargins(0, 0, 0, 0);
  alias_ = new QLineEdit;
  Bind(alias_, form_.txt_Alias);
  alias_->setAccessibleName(ToQt(form_.lbl_Alias.Caption.get()));
  QComboBox* variable = NameBox();
  layout->addRow(LabelFor(alias_, ToQt(form_.lbl_Alias.Caption.get())), alias_);
  layout->addRow(LabelFor(variable, ToQt(form_.lbl_ActualVariable.Caption.get())), variable);
  return names;
}

// A controller has up to a thousand names: what is typed shows those that hold it.
QComboBox* SettingsDialog::NameBox() {
  auto* box = new QComboBox;
  box->setEditable(true);
  box->setInsertPolicy(QComboBox::NoInsert);
  box->setMaxVisibleItems(kNameLines);
  box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  auto* completer = new QCompleter(box->model(), box);
  completer->setCompletionMode(QCompleter::PopupCompletion);
  completer->setFilterMode(Qt::MatchContains);
  completer->setCaseSensitivity(Qt::CaseInsensitive);
  completer->setMaxVisibleItems(kNameLines);
  box->setCompleter(completer);
  Bind(box, form_.cmbActualVariable);
  box->setAccessibleName(ToQt(form_.lbl_ActualVariable.Caption.get()));
  return box;
}

// --- Frames --------------------------------------------------------------------------------------

QWidget* SettingsDialog::BuildColumns() {
  QGroupBox* storage = RadioFrame({}, form_.opt_StorageType, 1);
  Bind(storage, form_.frmStorageType);
  QGroupBox* select = RadioFrame({}, form_.optSelectByte, 3);
  Bind(select, form_.frmSelectByte);
  auto* columns = new QWidget(this);
  auto* layout = new QHBoxLayout(columns);
  layout->setContentsMargins(0, 0, 0, 0);
  for (QWidget* column :
       {Column({SpecificationFrame(), AddressFrame(), BitFrame(), select}),
        Column({storage, RadioFrame(tr("Representation"), form_.opt_Representation, 1)}),
        Column({SlaveFrame(), FunctionFrame(), RegistersFrame(), LoggingFrame(),
                CheckFrame(tr("Scan Control"),
                           {&form_.chk_DisableScanning, &form_.chk_contwrite})})}) {
    layout->addWidget(column, 1, Qt::AlignTop);
  }
  return columns;
}

QGroupBox* SettingsDialog::SpecificationFrame() {
  QGroupBox* frame = RadioFrame({}, form_.optSpecification, 1);
  Bind(frame, form_.Frame9);
  auto* box = new QComboBox;
  box->setEditable(true);
  box->setInsertPolicy(QComboBox::NoInsert);
  box->setValidator(new QRegularExpressionValidator(QRegularExpression("[0-9]{0,3}"), box));
  Bind(box, form_.cmbClass);
  box->setAccessibleName(tr("Class"));
  box->setMinimumContentsLength(kClassDigits);
  box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  auto* layout = static_cast<QGridLayout*>(frame->layout());
  layout->addWidget(layout->itemAtPosition(0, 0)->widget(), 0, 0, 1, 2);
  layout->addWidget(box, 1, 1, Qt::AlignRight);
  // The revision of an ID file is of any length; the frame below this one gives it its width.
  frame->setSizePolicy(QSizePolicy::Ignored, frame->sizePolicy().verticalPolicy());
  return frame;
}

QGroupBox* SettingsDialog::AddressFrame() {
  auto* frame = new QGroupBox;
  Bind(frame, form_.frmAddress);
  auto* layout = new QHBoxLayout(frame);
  QLineEdit* hexadecimal = DigitBox(form_.txt_Address, tr("Hex"), "[0-9A-Fa-f]{0,4}");
  QLineEdit* decimal = DigitBox(form_.txt_Address_dec, tr("Dec"), "[0-9]{0,5}");
  layout->addWidget(LabelFor(hexadecimal, tr("Hex")));
  layout->addWidget(hexadecimal);
  layout->addWidget(LabelFor(decimal, tr("Dec")));
  layout->addWidget(decimal);
  layout->addStretch();
  return frame;
}

QGroupBox* SettingsDialog::BitFrame() {
  auto* frame = new QGroupBox;
  Bind(frame, form_.frm_BitAddress);
  auto* layout = new QHBoxLayout(frame);
  layout->addWidget(DigitBox(form_.txt_BitAddress, tr("Bit"), "[0-9A-Fa-f]{0,2}"));
  layout->addStretch();
  return frame;
}

QGroupBox* SettingsDialog::SlaveFrame() {
  auto* frame = new QGroupBox;
  Bind(frame, form_.Frame10);
  auto* layout = new QHBoxLayout(frame);
  layout->addWidget(ShortBox(form_.txt_SlaveAddress, tr("Slave Address")));
  layout->addWidget(Arrows(form_.UpDown1, tr("Slave Address")));
  layout->addStretch();
  return frame;
}

QGroupBox* SettingsDialog::FunctionFrame() {
  auto* frame = new QGroupBox;
  Bind(frame, form_.Function_code);
  auto* layout = new QHBoxLayout(frame);
  auto* box = new QComboBox;
  box->setMinimumContentsLength(static_cast<int>(kNoFunctionCode.size()) + 1);
  Bind(box, form_.CmbFunc);
  box->setAccessibleName(tr("Function Code"));
  layout->addWidget(box);
  layout->addStretch();
  return frame;
}

QGroupBox* SettingsDialog::RegistersFrame() {
  auto* frame = new QGroupBox(tr("# of Registers"));
  auto* layout = new QHBoxLayout(frame);
  layout->addWidget(DigitBox(form_.txt_NumReg, tr("Number of Registers"), "[0-9]{0,3}"));
  layout->addStretch();
  return frame;
}

QGroupBox* SettingsDialog::LoggingFrame() {
  QGroupBox* frame = CheckFrame(tr("Logging"), {&form_.chk_Log, &form_.chk_UseDDE});
  auto* row = new QHBoxLayout;
  QLineEdit* column = DigitBox(form_.txt_ExcelColumn, tr("Spreadsheet column"), "[0-9]{0,5}");
  row->addWidget(LabelFor(column, tr("Column")));
  row->addWidget(column);
  row->addWidget(Arrows(form_.ud_Col, tr("Spreadsheet column")));
  row->addStretch();
  static_cast<QVBoxLayout*>(frame->layout())->addLayout(row);
  return frame;
}

QWidget* SettingsDialog::BuildButtons() {
  auto* row = new QWidget(this);
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  auto* remove = new QPushButton(row);
  Bind(remove, form_.cmdDeleteLocation);
  remove->setAutoDefault(false);
  auto* ok = new QPushButton(row);
  // Enter presses it from any box, whose text then has to be taken over first.
  connect(ok, &QPushButton::pressed, ok, [ok] { ok->setFocus(); });
  Bind(ok, form_.cmd_Ok);
  ok->setDefault(true);
  auto* cancel = new QPushButton(row);
  Bind(cancel, form_.cmd_Cancel);
  layout->addWidget(remove);
  layout->addStretch();
  layout->addWidget(ok);
  layout->addWidget(cancel);
  return row;
}

}  // namespace tarnlink
