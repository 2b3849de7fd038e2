// How the user left Qt's own dialogs: the file dialog's view, columns and shortcuts, the colours
// put aside in the colour dialog. Kept among the program's settings and not where Qt keeps them,
// for Qt would wait for the disk with the window.
#pragma once

#include "platform/settings_store.h"

class QFileDialog;

namespace tarnlink {

class DialogMemory {
 public:
  // `settings` outlives it; with none, nothing is kept. From then on no dialog of Qt writes a file.
  explicit DialogMemory(SettingsStore* settings);

  // For a dialog that is not shown yet. What cannot be read leaves it as Qt makes it.
  void Restore(QFileDialog& dialog) const;
  // For one that was shown. The desktop's own dialog has a memory of its own.
  void Keep(const QFileDialog& dialog);

  // Of all colour dialogs.
  void RestoreColours() const;
  void KeepColours();

 private:
  void Save(const char* key, const std::string& value);

  SettingsStore* settings_;
};

}  // namespace tarnlink
