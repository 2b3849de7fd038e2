#include "ui/file_progress_dialog.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/mnemonics.h"

namespace tarnlink {

namespace {

constexpr int kWidth = 420;  // pixels; a longer path is cut in its middle

}  // namespace

FileProgressDialog::FileProgressDialog(frmFileProgress& form, QWidget* parent)
    : QDialog(parent), form_(form), file_(new QLabel(this)), share_(new QProgressBar(this)) {
  setObjectName(ToQt(form_.form.name()));
  file_->setObjectName(ToQt(form_.lblFile.name()));
  file_->setTextFormat(Qt::PlainText);
  share_->setObjectName(ToQt(form_.prgShare.name()));
  share_->setMinimumWidth(kWidth);
  auto* cancel = new QPushButton(this);
  Bind(cancel, form_.cmdCancel);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(file_);
  layout->addWidget(share_);
  layout->addWidget(cancel, 0, Qt::AlignRight);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  GiveMnemonics(this);
  form_.form.SetView([this] { ShowForm(); });
  form_.caption.SetView([this] { ShowFile(); });
  form_.lblFile.SetView([this] { ShowFile(); });
  form_.prgShare.SetView([this] { share_->setValue(form_.prgShare.Value); });
  ShowForm();
}

FileProgressDialog::~FileProgressDialog() {
  form_.form.SetView({});
  form_.caption.SetView({});
  form_.lblFile.SetView({});
  form_.prgShare.SetView({});
}

void FileProgressDialog::done(int) { form_.cmdCancel.Press(); }

void FileProgressDialog::ShowFile() {
  setWindowTitle(ToQt(form_.caption.Caption.get()));
  const QString path = ToQt(form_.lblFile.Caption.get());
  file_->setText(file_->fontMetrics().elidedText(path, Qt::ElideMiddle, kWidth));
  file_->setToolTip(PlainToolTip(form_.lblFile.Caption.get()));
}

void FileProgressDialog::ShowForm() {
  if (form_.form.Visible == isVisible()) return;
  if (form_.form.Visible) {
    ShowFile();
    share_->setValue(form_.prgShare.Value);
    setAttribute(Qt::WA_ShowWithoutActivating, !form_.TakesFocus);
    setModal(form_.TakesFocus);
  }
  setVisible(form_.form.Visible);
}

}  // namespace tarnlink
