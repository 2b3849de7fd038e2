#include "graph/picture_commands.h"

#include <optional>

#include "common/run_time_error.h"

namespace tarnlink {

PictureCommands::PictureCommands(frmGraphic& graph, frmContextMenu& menu) : graph_(graph) {
  menu.mnuCopyPicture.Click = [this] {
    if (CopyPicture) CopyPicture();
  };
  menu.mnuSavePicture.Click = [this] { mnuSavePicture(); };
}

void PictureCommands::mnuSavePicture() {
  if (!PngBytes) return;
  // As it is now, not as it has become while the user looks for a folder.
  const std::string bytes = PngBytes();
  Platform& platform = graph_.platform();
  const std::string name =
      FormatDate(graph_.Now(), "ddmmmyy-hhnnss", platform.locale().Months()) + ".png";
  const std::optional<std::string> path =
      platform.dialogs().SaveFile({.title = "Save picture",
                                   .filter = "Picture (*.png)|*.png",
                                   .file_name = name,
                                   .extension = "png",
                                   .confirm_overwrite = true});
  if (!path) return;
  try {
    platform.files().WriteWhole(*path, bytes);
  } catch (const RunTimeError& error) {
    platform.dialogs().MessageBox({.text = "Error saving file",
                                   .title = "Saving file",
                                   .icon = Icon::kCritical,
                                   .detail = error.what()});
  }
}

}  // namespace tarnlink
