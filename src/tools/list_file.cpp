#include "tools/list_file.h"

#include "common/run_time_error.h"
#include "common/text_file.h"
#include "platform/path_resolver.h"

namespace tarnlink {

void SaveListFile(Platform& platform, const ListFile& list) {
  const auto path =
      platform.dialogs().SaveFile({.title = "Save list",
                                   .filter = "Text File (*.txt)|*.txt",
                                   .file_name = list.file_name,
                                   .folder = UsableFolder(list.folder, platform.files()),
                                   .extension = "txt",
                                   .confirm_overwrite = true});
  if (!path || path->empty()) return;
  std::string text;
  LineReader lines(list.text);
  for (std::string_view line; lines.Next(line);) text.append(line).append(kLineEnd);
  try {
    platform.files().WriteWhole(*path, EncodeText(text));
  } catch (const RunTimeError& error) {
    platform.dialogs().MessageBox({.text = "The list can not be saved.",
                                   .title = list.title,
                                   .icon = Icon::kCritical,
                                   .detail = error.what()});
  }
}

}  // namespace tarnlink
