#include "platform/qt/qt_dialogs.h"

#include <QApplication>
#include <QColorDialog>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontDatabase>
#include <QFontDialog>
#include <QFontInfo>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPageLayout>
#include <QPixmapCache>
#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QRegularExpression>
#include <QStandardPaths>

#include "platform/qt/file_filter.h"
#include "platform/qt/print_preview.h"
#include "platform/qt/qt_colour.h"
#include "platform/qt/qt_font.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/question_box.h"

namespace tarnlink {
namespace {

// The window that a new dialog stands on: the dialog that is up already, or the active window.
QWidget* Owner() {
  QWidget* dialog = QApplication::activeModalWidget();
  return dialog != nullptr ? dialog : QApplication::activeWindow();
}

bool DesktopHasDialogs() { return QGuiApplication::platformName() != QStringLiteral("offscreen"); }

// Shows `dialog` until the user has done with it. Null if its owner took it down meanwhile. What Qt
// keeps of its icons would never be found again: each dialog has its own.
template <class Dialog>
std::unique_ptr<Dialog> Run(std::unique_ptr<Dialog> dialog, const QString& name) {
  dialog->setObjectName(name);
  QPointer<Dialog> watched(dialog.release());
  watched->exec();
  QPixmapCache::clear();
  return std::unique_ptr<Dialog>(watched.data());
}

// Texts come from files and from the line; Qt would take some of them for markup.
void ShowTextsPlain(QWidget& dialog) {
  for (QLabel* label : dialog.findChildren<QLabel*>()) label->setTextFormat(Qt::PlainText);
}

QString ShownText(const std::string& text) {
  return ToQt(text).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
}

// The family's own word for this weight and slant; the dialog would offer any other style without
// it. Empty if the family has none.
QString StyleOf(const QFont& font) {
  for (const QString& style : QFontDatabase::styles(font.family())) {
    if (QFontDatabase::bold(font.family(), style) == font.bold() &&
        QFontDatabase::italic(font.family(), style) == font.italic()) {
      return style;
    }
  }
  return {};
}

// What is pasted into one line may hold line ends and tabs all the same.
QString OneLine(QString text) {
  for (QChar& letter : text) {
    if (letter.category() == QChar::Other_Control) letter = QLatin1Char(' ');
  }
  return text;
}

QMessageBox::Icon ToQtIcon(Icon icon) {
  switch (icon) {
    case Icon::kCritical:
      return QMessageBox::Critical;
    case Icon::kQuestion:
      return QMessageBox::Question;
    case Icon::kExclamation:
      return QMessageBox::Warning;
    case Icon::kInformation:
      return QMessageBox::Information;
    case Icon::kNone:
      break;
  }
  return QMessageBox::NoIcon;
}

struct ButtonPair {
  QMessageBox::StandardButton first;
  QMessageBox::StandardButton second;
};

ButtonPair ToQtButtons(Buttons buttons) {
  switch (buttons) {
    case Buttons::kOkCancel:
      return {QMessageBox::Ok, QMessageBox::Cancel};
    case Buttons::kYesNo:
      return {QMessageBox::Yes, QMessageBox::No};
    case Buttons::kOk:
      break;
  }
  return {QMessageBox::Ok, QMessageBox::Ok};
}

Answer ToAnswer(int button) {
  switch (button) {
    case QMessageBox::Yes:
      return Answer::kYes;
    case QMessageBox::No:
      return Answer::kNo;
    case QMessageBox::Cancel:
      return Answer::kCancel;
    default:
      return Answer::kOk;
  }
}

std::unique_ptr<QFileDialog> MakeFileDialog(const FileDialogRequest& request,
                                            const QString& last_folder,
                                            const DialogMemory& memory) {
  auto dialog = std::make_unique<QFileDialog>(Owner(), ToQt(request.title));
  dialog->setOption(QFileDialog::DontUseNativeDialog, !DesktopHasDialogs());
  memory.Restore(*dialog);
  const QString folder = ToQt(request.folder);
  if (!folder.isEmpty() && QDir(folder).exists()) {
    dialog->setDirectory(folder);
  } else if (!last_folder.isEmpty()) {
    dialog->setDirectory(last_folder);
  } else {
    dialog->setDirectory(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
  }
  const QStringList filters = ToNameFilters(request.filter, DesktopHasDialogs());
  if (!filters.isEmpty()) dialog->setNameFilters(filters);
  dialog->setDefaultSuffix(ToQt(request.extension));
  return dialog;
}

std::unique_ptr<QFileDialog> RunFileDialog(std::unique_ptr<QFileDialog> dialog, const QString& name,
                                           DialogMemory& memory) {
  auto shown = Run(std::move(dialog), name);
  if (shown != nullptr) memory.Keep(*shown);
  return shown;
}

// A name follows the filter that the user picks, where each has one extension.
void FollowFilter(QFileDialog& dialog) {
  const auto extension_of = [](const QString& filter) {
    static const QRegularExpression kOnly(QStringLiteral(R"(\(\*\.(\w+)( \*\.\w+)?\)$)"));
    return kOnly.match(filter).captured(1);
  };
  QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog,
                   [&dialog, extension_of](const QString& filter) {
                     const QString next = extension_of(filter);
                     const QFileInfo file(dialog.selectedFiles().value(0));
                     if (next.isEmpty() || next == dialog.defaultSuffix()) return;
                     if (file.suffix() == dialog.defaultSuffix()) {
                       dialog.selectFile(file.completeBaseName() + QLatin1Char('.') + next);
                     }
                     dialog.setDefaultSuffix(next);
                   });
}

// The one path that was chosen; the folder is kept for the next dialog.
std::optional<std::string> Chosen(const QFileDialog* dialog, QString& last_folder) {
  if (dialog == nullptr || dialog->result() != QDialog::Accepted ||
      dialog->selectedFiles().isEmpty()) {
    return std::nullopt;
  }
  const QString chosen = dialog->selectedFiles().constFirst();
  last_folder = QFileInfo(chosen).absolutePath();
  return FromQt(chosen);
}

}  // namespace

QtDialogs::QtDialogs(SettingsStore* settings) : memory_(settings) {}
QtDialogs::~QtDialogs() = default;

Answer QtDialogs::MessageBox(const MessageBoxRequest& request) {
  std::unique_ptr<QMessageBox> box = std::make_unique<QuestionBox>(Owner());
  box->setIcon(ToQtIcon(request.icon));
  box->setWindowTitle(ToQt(request.title));
  box->setText(ShownText(request.text));
  if (!request.detail.empty()) box->setInformativeText(ShownText(request.detail));
  ShowTextsPlain(*box);
  box->setTextFormat(Qt::PlainText);

  const ButtonPair buttons = ToQtButtons(request.buttons);
  box->setStandardButtons(buttons.first | buttons.second);
  box->setDefaultButton(request.second_is_default ? buttons.second : buttons.first);
  const auto shown = Run(std::move(box), QStringLiteral("MessageBox"));
  const int pressed = shown == nullptr ? QMessageBox::Cancel : shown->result();
  return request.buttons == Buttons::kOk ? Answer::kOk : ToAnswer(pressed);
}

std::optional<std::string> QtDialogs::InputBox(const std::string& prompt, const std::string& title,
                                               const std::string& text) {
  auto dialog = std::make_unique<QInputDialog>(Owner());
  dialog->setInputMode(QInputDialog::TextInput);
  dialog->setWindowTitle(ToQt(title));
  dialog->setLabelText(ShownText(prompt));
  dialog->setTextValue(ToQt(text));
  constexpr int kLettersInSight = 50;
  dialog->resize(dialog->fontMetrics().averageCharWidth() * kLettersInSight, dialog->height());
  ShowTextsPlain(*dialog);
  const auto shown = Run(std::move(dialog), QStringLiteral("InputBox"));
  if (shown == nullptr || shown->result() != QDialog::Accepted) return std::nullopt;
  return FromQt(OneLine(shown->textValue()));
}

std::optional<std::string> QtDialogs::OpenFile(const FileDialogRequest& request) {
  auto dialog = MakeFileDialog(request, last_folder_, memory_);
  dialog->setFileMode(QFileDialog::ExistingFile);
  if (!request.file_name.empty()) dialog->selectFile(ToQt(request.file_name));
  return Chosen(RunFileDialog(std::move(dialog), QStringLiteral("OpenFile"), memory_).get(),
                last_folder_);
}

std::optional<std::string> QtDialogs::SaveFile(const FileDialogRequest& request) {
  auto dialog = MakeFileDialog(request, last_folder_, memory_);
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->setFileMode(QFileDialog::AnyFile);
  dialog->setOption(QFileDialog::DontConfirmOverwrite, !request.confirm_overwrite);
  if (!request.file_name.empty()) dialog->selectFile(ToQt(request.file_name));
  FollowFilter(*dialog);
  return Chosen(RunFileDialog(std::move(dialog), QStringLiteral("SaveFile"), memory_).get(),
                last_folder_);
}

std::optional<std::string> QtDialogs::PickFolder(const std::string& title,
                                                 const std::string& folder) {
  FileDialogRequest request;
  request.title = title;
  request.folder = folder;
  auto dialog = MakeFileDialog(request, last_folder_, memory_);
  dialog->setFileMode(QFileDialog::Directory);
  dialog->setOption(QFileDialog::ShowDirsOnly);
  QString not_kept;
  return Chosen(RunFileDialog(std::move(dialog), QStringLiteral("PickFolder"), memory_).get(),
                not_kept);
}

std::optional<Colour> QtDialogs::PickColour(Colour colour) {
  memory_.RestoreColours();
  auto dialog = std::make_unique<QColorDialog>(ToQColor(colour), Owner());
  dialog->setOption(QColorDialog::DontUseNativeDialog, !DesktopHasDialogs());
  const auto shown = Run(std::move(dialog), QStringLiteral("PickColour"));
  memory_.KeepColours();
  if (shown == nullptr || shown->result() != QDialog::Accepted) return std::nullopt;
  return ToColour(shown->selectedColor());
}

std::optional<Font> QtDialogs::PickFont(const Font& font) {
  // The family that is really shown: the dialog knows no bold one of a generic family, and would
  // take the bold away.
  QFont initial = ToPaperFont(font);
  initial.setFamily(QFontInfo(initial).family());
  initial.setStyleName(StyleOf(initial));
  auto dialog = std::make_unique<QFontDialog>(initial, Owner());
  dialog->setOption(QFontDialog::DontUseNativeDialog, !DesktopHasDialogs());
  const Font offered = ToFont(dialog->currentFont());
  const auto shown = Run(std::move(dialog), QStringLiteral("PickFont"));
  if (shown == nullptr || shown->result() != QDialog::Accepted) return std::nullopt;
  // The dialog offers whole points and the families of this machine only. What the user leaves as
  // it was offered stays as it was.
  Font picked = ToFont(shown->selectedFont());
  if (picked.name == offered.name) picked.name = font.name;
  if (picked.size == offered.size) picked.size = font.size;
  if (picked.bold == offered.bold && picked.italic == offered.italic) {
    picked.bold = font.bold;
    picked.italic = font.italic;
  }
  return picked;
}

std::optional<PageSetup> QtDialogs::PickPrinter(const PageSetup& setup) {
  printer().setPageOrientation(setup.landscape ? QPageLayout::Landscape : QPageLayout::Portrait);
  auto dialog = std::make_unique<QPrintDialog>(&printer(), Owner());
  // Pages are always printed all.
  dialog->setOption(QAbstractPrintDialog::PrintPageRange, false);
  const auto shown = Run(std::move(dialog), QStringLiteral("PickPrinter"));
  if (shown == nullptr || shown->result() != QDialog::Accepted) return std::nullopt;
  return PageSetup{printer().pageLayout().orientation() == QPageLayout::Landscape};
}

void QtDialogs::Preview(const PreviewRequest& request) {
  const bool has_printer = !QPrinterInfo::availablePrinters().isEmpty();
  auto preview =
      std::make_unique<PrintPreview>(request, *this, files_, printer(), has_printer, Owner());
  if (preview_size_.isValid()) preview->resize(preview_size_);
  const auto shown = Run(std::move(preview), QStringLiteral("Preview"));
  if (shown != nullptr) preview_size_ = shown->size();
}

QPrinter& QtDialogs::printer() {
  // Asking for a printer takes a while, so only when one is wanted.
  if (!printer_) printer_ = std::make_unique<QPrinter>(QPrinter::HighResolution);
  return *printer_;
}

}  // namespace tarnlink
