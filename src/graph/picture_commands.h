// The picture of the graph for other programs: to the clipboard, to a PNG file.
#pragma once

#include <functional>
#include <string>

#include "graph/frm_context_menu.h"
#include "graph/frm_graphic.h"

namespace tarnlink {

class PictureCommands {
 public:
  // Binds the two entries. Both forms outlive it.
  PictureCommands(frmGraphic& graph, frmContextMenu& menu);

  // The view knows how it looks.
  std::function<void()> CopyPicture;
  std::function<std::string()> PngBytes;

 private:
  void mnuSavePicture();

  frmGraphic& graph_;
};

}  // namespace tarnlink
