#include "ui/about_dialog.h"

#include <QLabel>
#include <QVBoxLayout>

#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/mnemonics.h"

namespace tarnlink {

AboutDialog::AboutDialog(frmAbout& about, QWidget* parent) : QDialog(parent), about_(about) {
  setObjectName(ToQt(about_.form.name()));
  setWindowTitle(ToQt(about_.caption.Caption.get()));
  setModal(true);
  auto* layout = new QVBoxLayout(this);
  auto* title = new QLabel(ToQt(kProgramTitle));
  QFont large = title->font();
  large.setPointSizeF(large.pointSizeF() * 1.6);
  large.setBold(true);
  title->setFont(large);
  auto* version = new QLabel(ToQt(about_.lblVersion.Caption.get()));
  version->setObjectName(ToQt(about_.lblVersion.name()));
  auto* purpose = new QLabel(tr("A service tool for the digital controllers of gas boilers."));
  auto* ok = new QPushButton(this);
  Bind(ok, about_.cmdOk);
  ok->setDefault(true);
  layout->addWidget(title);
  layout->addWidget(version);
  layout->addWidget(purpose);
  layout->addSpacing(8);
  layout->addWidget(ok, 0, Qt::AlignRight);
  GiveMnemonics(this);
  about_.form.SetView([this] { setVisible(about_.form.Visible); });
  setVisible(about_.form.Visible);
}

AboutDialog::~AboutDialog() { about_.form.SetView({}); }

void AboutDialog::reject() { about_.cmdOk.Press(); }

}  // namespace tarnlink
