#include "platform/qt/dialog_memory.h"

#include <QColorDialog>
#include <QFileDialog>
#include <QHeaderView>
#include <QSettings>
#include <QSplitter>
#include <QTreeView>
#include <QUrl>

#include "platform/qt/qt_text.h"

namespace tarnlink {
namespace {

constexpr const char* kSection = "Dialogs";
constexpr const char* kView = "FileView";
constexpr const char* kSplitter = "FileSplitter";
constexpr const char* kColumns = "FileColumns";
constexpr const char* kShortcuts = "FileShortcuts";
constexpr const char* kColours = "Colours";
constexpr const char* kDetails = "details";
constexpr const char* kList = "list";
// Not in an address, nor in the name of a colour.
const QLatin1Char kBetween(' ');

std::string Base64(const QByteArray& bytes) { return bytes.toBase64().toStdString(); }

QByteArray FromBase64(const std::string& text) {
  return QByteArray::fromBase64(QByteArray::fromStdString(text));
}

// Qt's names of them; null in the desktop's own dialog.
QSplitter* SplitterOf(const QFileDialog& dialog) {
  return dialog.findChild<QSplitter*>(QStringLiteral("splitter"));
}

QTreeView* DetailsOf(const QFileDialog& dialog) {
  return dialog.findChild<QTreeView*>(QStringLiteral("treeView"));
}

}  // namespace

DialogMemory::DialogMemory(SettingsStore* settings) : settings_(settings) {
  // A place that never is: what cannot be opened is not waited for either.
  QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/dev/null"));
}

void DialogMemory::Restore(QFileDialog& dialog) const {
  QSplitter* splitter = SplitterOf(dialog);
  const QTreeView* details = DetailsOf(dialog);
  if (settings_ == nullptr || splitter == nullptr || details == nullptr) return;
  dialog.setViewMode(settings_->GetSetting(kSection, kView, kList) == kDetails ? QFileDialog::Detail
                                                                               : QFileDialog::List);
  splitter->restoreState(FromBase64(settings_->GetSetting(kSection, kSplitter, "")));
  details->header()->restoreState(FromBase64(settings_->GetSetting(kSection, kColumns, "")));
  const std::string kept = settings_->GetSetting(kSection, kShortcuts, "");
  if (kept.empty()) return;
  QList<QUrl> shortcuts;
  for (const QString& address : ToQt(kept).split(kBetween, Qt::SkipEmptyParts))
    shortcuts.push_back(QUrl(address));
  dialog.setSidebarUrls(shortcuts);
}

void DialogMemory::Keep(const QFileDialog& dialog) {
  const QSplitter* splitter = SplitterOf(dialog);
  const QTreeView* details = DetailsOf(dialog);
  if (settings_ == nullptr || splitter == nullptr || details == nullptr) return;
  Save(kView, dialog.viewMode() == QFileDialog::Detail ? kDetails : kList);
  Save(kSplitter, Base64(splitter->saveState()));
  Save(kColumns, Base64(details->header()->saveState()));
  QStringList shortcuts;
  for (const QUrl& url : dialog.sidebarUrls())
    shortcuts.push_back(QString::fromLatin1(url.toEncoded()));
  Save(kShortcuts, FromQt(shortcuts.join(kBetween)));
}

void DialogMemory::RestoreColours() const {
  if (settings_ == nullptr) return;
  const QStringList names = ToQt(settings_->GetSetting(kSection, kColours, "")).split(kBetween);
  for (int i = 0; i < names.size() && i < QColorDialog::customCount(); ++i) {
    if (const QColor colour(names[i]); colour.isValid()) QColorDialog::setCustomColor(i, colour);
  }
}

void DialogMemory::KeepColours() {
  if (settings_ == nullptr) return;
  QStringList names;
  for (int i = 0; i < QColorDialog::customCount(); ++i)
    names.push_back(QColorDialog::customColor(i).name());
  Save(kColours, FromQt(names.join(kBetween)));
}

// Most dialogs are left as they were found.
void DialogMemory::Save(const char* key, const std::string& value) {
  if (settings_->GetSetting(kSection, key, "") != value)
    settings_->SaveSetting(kSection, key, value);
}

}  // namespace tarnlink
