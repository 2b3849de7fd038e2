// The entries of the graph's menu that open, save, export and print.
#pragma once

#include <functional>
#include <string>

#include "graph/auto_save.h"
#include "graph/frm_context_menu.h"
#include "graph/frm_graph2_printer.h"
#include "graph/frm_graphic.h"
#include "graph/graph_display.h"
#include "graph/measure_files.h"

namespace tarnlink {

// What the graph has of the program around it.
struct GraphProject {
  // Where the dialogs for measurements and for properties open; kept from one start of the program
  // to the next. Both outlive the graph.
  std::string& mss_folder;
  std::string& grp_folder;
  std::function<bool(const std::string& FileName)> HasFile;
  std::function<void(const std::string& FileName)> AddFile;
};

class FileCommands {
 public:
  // Binds the entries. All arguments outlive it.
  FileCommands(frmGraphic& graph, frmContextMenu& menu, GraphDisplay& display, MeasureFiles& files,
               frmGraph2Printer& printer, GraphProject& project);

  // Reads a properties file, as "Open properties" does with the one that is chosen.
  void OpenProperties(const std::string& FileName);
  // The base name of a file becomes the heading of the next page. The path's first character never
  // belongs to it.
  void SetDefaultHeader(const std::string& FileName);

 private:
  void mnuOpenMeasure();
  void mnuSaveMeasure();
  void mnuExport();
  void mnuOpenProperties();
  void mnuSaveProperties();
  void OfferToAdd(const std::string& FileName);
  void mnuAutoSave();
  void StartAutoSave();
  void mnuPrint();
  std::string NameOfToday(const std::string& behind) const;
  Dialogs& dialogs() const { return graph_.platform().dialogs(); }

  frmGraphic& graph_;
  frmContextMenu& menu_;
  GraphDisplay& display_;
  MeasureFiles& files_;
  frmGraph2Printer& printer_;
  GraphProject& project_;
};

}  // namespace tarnlink
