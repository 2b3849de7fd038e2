#include "ui/gen_par_file_dialog.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/frames.h"

namespace tarnlink {

namespace {

constexpr int kWidth = 300;  // pixels: as wide as its title asks for

}  // namespace

GenParFileDialog::GenParFileDialog(frmGenParFile& form, SettingsStore& settings, QWidget* parent)
    : ToolDialog(form.form, parent), form_(form) {
  setWindowTitle(ToQt(form_.caption.Caption.get()));
  setMinimumWidth(kWidth);
  auto* layout = new QVBoxLayout(this);
  QGroupBox* frame = CheckFrame(tr("From the screen"),
                                {&form_.chkClass5, &form_.chkClass7EE, &form_.chkClass7RAM});
  first_ = frame->findChild<QCheckBox*>();
  layout->addWidget(frame);
  auto* count = new QLabel(this);
  Bind(count, form_.lblCount);
  count->setWordWrap(true);
  count->setMinimumHeight(2 * count->fontMetrics().lineSpacing());
  count->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  layout->addWidget(count);
  layout->addStretch();
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(Button(form_.cmdSave, this));
  buttons->addWidget(Button(form_.cmdCancel, this));
  layout->addLayout(buttons);
  Begin(settings);
}

void GenParFileDialog::done(int) { form_.Hide(); }

void GenParFileDialog::FormChanged() {
  if (!isVisible()) first_->setFocus();
}

void GenParFileDialog::Enter() { form_.cmdSave.Press(); }

}  // namespace tarnlink
