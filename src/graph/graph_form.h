// The life of the graph's form: how it begins and how it is left.
#pragma once

#include <functional>

#include "graph/auto_save.h"
#include "graph/frm_context_menu.h"
#include "graph/frm_graphic.h"
#include "graph/graph_acquisition.h"
#include "graph/measure_files.h"

namespace tarnlink {

class GraphForm {
 public:
  // Binds the menu's last entry. All arguments outlive it.
  GraphForm(frmGraphic& graph, frmContextMenu& menu, GraphAcquisition& acquisition,
            AutoSave& auto_save, MeasureFiles& files);

  // The default lines without samples, following the clock; then the acquisition begins and the
  // form appears.
  void Load();
  // From the beginning of `Load` on, until it is unloaded.
  bool IsLoaded() const { return is_loaded_; }
  // Saves once more if that is on, lets the port go and hides the form. Only once. What is being
  // written is written to its end behind that. A file that could not be written brings the form
  // back, with automatic saving off, so that the samples can be kept elsewhere.
  void Unload();

  // The form has gone for good, and its files are done; the next one begins anew.
  std::function<void()> Unloaded;
  // It has not gone.
  std::function<void()> Returned;

 private:
  void ComeBack();

  frmGraphic& graph_;
  frmContextMenu& menu_;
  GraphAcquisition& acquisition_;
  AutoSave& auto_save_;
  MeasureFiles& files_;
  bool is_loaded_ = false;
};

}  // namespace tarnlink
