// The browse buttons of the options dialog.

#include "common/text.h"
#include "monitor/frm_main.h"
#include "monitor/frm_options.h"
#include "monitor/memory_map.h"
#include "platform/path_resolver.h"

namespace tarnlink {

void frm_Options::BrowseMapFile() {
  const auto chosen =
      platform_.dialogs().OpenFile({.title = "Memory map file",
                                    .filter = "Memory map file (*.map,*.lst)|*.map;*.lst",
                                    .folder = FolderOf(txt_MapFile.Text.get(), platform_.files())});
  if (!chosen) return;

  const std::int16_t type = CheckMapFileType(platform_.files(), *chosen);
  static constexpr const char* kFound[] = {"ATMEGA map file found.", "XMEGA map file found.",
                                           "NEC map file found."};
  if (type == kUnknownMap) {
    platform_.dialogs().MessageBox({.text = "Unkonwn map file.",
                                    .title = std::string(kProgramTitle),
                                    .icon = Icon::kExclamation});
    return;
  }
  platform_.dialogs().MessageBox(
      {.text = kFound[type], .title = std::string(kProgramTitle), .icon = Icon::kInformation});
  MicroSelect.Select(type);
  txt_MapFile.Text = *chosen;
}

void frm_Options::Browse(TextBox& box, const std::string& title, const std::string& filter) {
  const auto chosen = platform_.dialogs().OpenFile(
      {.title = title, .filter = filter, .folder = FolderOf(box.Text.get(), platform_.files())});
  if (chosen) box.Text = *chosen;
}

void frm_Options::BrowseFolder(TextBox& box, const std::string& title) {
  const auto chosen =
      platform_.dialogs().PickFolder(title, UsableFolder(box.Text.get(), platform_.files()));
  if (!chosen) return;
  // A path ends at its first NUL and has at most 260 characters.
  constexpr int kLongestPath = 260;
  std::string path = chosen->substr(0, chosen->find('\0'));
  while (CharacterCount(path) > kLongestPath) path.pop_back();
  box.Text = path;
}

}  // namespace tarnlink
