// The dialogs of the desktop, or Qt's own where there is no desktop. Each bears the name of its
// function as object name.
#pragma once

#include <QSize>
#include <QString>
#include <memory>
#include <optional>
#include <string>

#include "platform/dialogs.h"
#include "platform/qt/dialog_memory.h"
#include "platform/qt/qt_files.h"

class QPrinter;

namespace tarnlink {

class QtDialogs final : public Dialogs {
 public:
  // How the user left a dialog is kept in `settings`, which outlive this; with none, nowhere.
  explicit QtDialogs(SettingsStore* settings = nullptr);
  ~QtDialogs() override;

  Answer MessageBox(const MessageBoxRequest& request) override;
  std::optional<std::string> InputBox(const std::string& prompt, const std::string& title,
                                      const std::string& text) override;
  std::optional<std::string> OpenFile(const FileDialogRequest& request) override;
  std::optional<std::string> SaveFile(const FileDialogRequest& request) override;
  std::optional<std::string> PickFolder(const std::string& title,
                                        const std::string& folder) override;
  std::optional<Colour> PickColour(Colour colour) override;
  std::optional<Font> PickFont(const Font& font) override;
  std::optional<PageSetup> PickPrinter(const PageSetup& setup) override;
  void Preview(const PreviewRequest& request) override;

  // The printer picked last, or the system's own before that.
  QPrinter& printer();

 private:
  DialogMemory memory_;
  std::unique_ptr<QPrinter> printer_;
  QString last_folder_;
  QtFiles files_;       // for what a preview saves
  QSize preview_size_;  // as the user left it
};

}  // namespace tarnlink
