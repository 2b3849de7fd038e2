#include "contract/dialogs_benches.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QColorDialog>
#include <QFileDialog>
#include <QFontDialog>
#include <QFontInfo>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QTimer>

#include "platform/qt/qt_colour.h"
#include "platform/qt/qt_font.h"

namespace tarnlink {
namespace {

QMessageBox::StandardButton ButtonOf(Answer answer) {
  switch (answer) {
    case Answer::kCancel:
      return QMessageBox::Cancel;
    case Answer::kYes:
      return QMessageBox::Yes;
    case Answer::kNo:
      return QMessageBox::No;
    case Answer::kOk:
      break;
  }
  return QMessageBox::Ok;
}

}  // namespace

void QtUser::With(const std::string& name, std::function<void(QWidget&)> action) {
  QTimer::singleShot(1, qApp, [this, name, action = std::move(action)] {
    QWidget* dialog = QApplication::activeModalWidget();
    if (dialog == nullptr || dialog->objectName().toStdString() != name) return With(name, action);
    action(*dialog);
  });
}

void QtUser::Leaves(const std::string& name) {
  With(name, [](QWidget& dialog) { dialog.close(); });
}

void QtUser::Presses(const MessageBoxRequest&, Answer answer) {
  With("MessageBox", [answer](QWidget& dialog) {
    QAbstractButton* button = dynamic_cast<QMessageBox&>(dialog).button(ButtonOf(answer));
    if (button == nullptr) {
      ADD_FAILURE() << "There is no such button.";
      dialog.close();
    } else {
      button->click();
    }
  });
}

void QtUser::WaitsIn(const MessageBoxRequest&, const std::function<bool()>& condition) {
  With("MessageBox", [this, condition](QWidget& dialog) {
    EXPECT_TRUE(RunUntil(condition));
    dialog.close();
  });
}

void QtUser::Opens(const MessageBoxRequest&, const std::function<void()>& inside) {
  With("MessageBox", [inside](QWidget& dialog) {
    inside();
    dialog.close();
  });
}

void QtUser::Types(const std::string&, const std::string&, const std::string& text) {
  With("InputBox", [text](QWidget& dialog) {
    auto& box = dynamic_cast<QInputDialog&>(dialog);
    box.setTextValue(QString::fromStdString(text));
    box.accept();
  });
}

void QtUser::ChoosesFile(const std::string& name, const std::string& path) {
  With(name, [path](QWidget& dialog) {
    auto* edit = dialog.findChild<QLineEdit*>("fileNameEdit");
    ASSERT_NE(edit, nullptr);
    edit->setText(QString::fromStdString(path));
    // As its button does; the slot is protected.
    QMetaObject::invokeMethod(&dialog, "accept");
  });
}

void QtUser::PicksColour(Colour colour) {
  With("PickColour", [colour](QWidget& dialog) {
    auto& picker = dynamic_cast<QColorDialog&>(dialog);
    picker.setCurrentColor(ToQColor(colour));
    picker.accept();
  });
}

void QtUser::PicksFont(const Font& font) {
  With("PickFont", [font](QWidget& dialog) {
    auto& picker = dynamic_cast<QFontDialog&>(dialog);
    // A real family: a generic one has no bold style to pick.
    QFont wanted = ToPaperFont(font);
    wanted.setFamily(QFontInfo(wanted).family());
    picker.setCurrentFont(wanted);
    picker.accept();
  });
}

void QtUser::PicksPrinter(bool landscape) {
  With("PickPrinter", [landscape](QWidget& dialog) {
    auto& picker = dynamic_cast<QPrintDialog&>(dialog);
    picker.printer()->setPageOrientation(landscape ? QPageLayout::Landscape
                                                   : QPageLayout::Portrait);
    picker.done(QDialog::Accepted);
  });
}

void QtUser::LooksAtPreview(const std::function<void()>& look) {
  With("Preview", [look](QWidget& dialog) {
    look();
    dialog.close();
  });
}

}  // namespace tarnlink
